#!/usr/bin/env bash
# measure-ranks.sh [BUILD [CASE...]]: seconds that clusters of stars take on one thread, two threads and two
# ranks of one thread each, and how long messages between two ranks take. For Documentation/Scaling.md; on a
# machine that does nothing else. CASE: BODIES:ORDER:STEPS.
set -euo pipefail

build="${1:-build}"
shift || true
cases=("$@")
[[ ${#cases[@]} -gt 0 ]] || cases=(1000:4:1000 5000:4:40 1000:16:30 5000:16:4)
export OMPI_ALLOW_RUN_AS_ROOT=1 OMPI_ALLOW_RUN_AS_ROOT_CONFIRM=1

folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT

# The best of three: seconds and digest.
measure() {
    for _ in 1 2 3; do
        "$@" | sed -E 's/.*"seconds":([^,]*),.*"sha256":"([^"]*)".*/\1 \2/'
    done | sort -g | head -1
}

printf '%8s %6s %6s %10s %10s %10s %10s %10s\n' bodies order steps "1 thread" "2 threads" "2 ranks" "to 1" "to 2"
for case in "${cases[@]}"; do
    IFS=: read -r bodies order steps <<<"$case"
    sed "s/stars 1000/stars $bodies/" Examples/cluster.txt >"$folder/cluster.txt"
    "$build/bin/example-builder" "$folder/cluster.txt" "$folder/cluster"
    run=(--order "$order" --cutoff 1e-11 --steps "$steps" --quiet --json "$folder/cluster")
    read -r one digest < <(measure "$build/bin/orvek-run" --threads 1 "${run[@]}")
    read -r two twoDigest < <(measure "$build/bin/orvek-run" --threads 2 "${run[@]}")
    read -r ranks ranksDigest < <(measure mpirun -n 2 "$build/bin/orvek-run-mpi" --threads 1 "${run[@]}")
    [[ $twoDigest == "$digest" && $ranksDigest == "$digest" ]] || echo "The digests differ." >&2
    awk -v n="$bodies" -v o="$order" -v s="$steps" -v a="$one" -v b="$two" -v c="$ranks" 'BEGIN {
        printf "%8d %6d %6d %10.3f %10.3f %10.3f %10.2f %10.2f\n", n, o, s, a, b, c, a / c, b / c }'
done

[[ -x $build/bin/orvek-ranks-bench ]] || exit 0
echo
mpirun -n 2 "$build/bin/orvek-ranks-bench"
