#!/usr/bin/env bash
# run-fuzz.sh SECONDS [OPTION...]: lets every fuzz target that build-asan/ has look for inputs that it cannot take, each for
# so many seconds, as many at a time as there are processors, with further options of the fuzzer. What a target cannot
# take is kept in build-asan/found/; what leads it to new places, for its next run, in build-asan/corpus/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds="${1:?usage: run-fuzz.sh SECONDS [OPTION...]}"
shift
export seconds
mkdir -p build-asan/found build-asan/logs

export ASAN_OPTIONS="quarantine_size_mb=16"  # which counts as the target's memory
# An input may take ten seconds and half a gigabyte: each is small, and a user would not wait longer.
fuzz_one() {
    local name="$1" log="build-asan/logs/$1"
    shift
    mkdir -p "build-asan/corpus/$name"
    if "build-asan/bin/fuzz_$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=512 -max_len=8192 \
        -print_final_stats=1 -artifact_prefix="build-asan/found/$name-" "$@" \
        "build-asan/corpus/$name" "Tests/Fuzz/Corpus/$name" >"$log" 2>&1; then
        printf '%-12s %9d inputs\n' "$name" "$(awk '/number_of_executed_units/ { print $2 }' "$log")"
    else
        tail -n 60 "$log"
        printf '%-12s FAILED\n' "$name"
        return 1
    fi
}
export -f fuzz_one

# xargs fails when one of them does.
for name in $(ls Tests/Fuzz/Corpus); do
    if [[ -x "build-asan/bin/fuzz_$name" ]]; then echo "$name"; fi
done | xargs -P "$(nproc)" -I{} bash -c 'fuzz_one "$@"' fuzz_one {} "$@" || {
    echo "What could not be taken is in build-asan/found/. When it is mended it joins Tests/Fuzz/Corpus/." >&2
    exit 1
}
