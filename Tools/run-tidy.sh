#!/usr/bin/env bash
# run-tidy.sh [EXCEPT [OPTION...]]: clang-tidy over every source that the build compiles, without those whose
# path matches the expression EXCEPT, with these further options. Needs a build in build/. Options and pragmas that
# are the compiler's own it need not know.
#
# Most of its time goes into headers, so sources are read in batches. Those of a batch in which something is found,
# or whose sources do not agree, are read one by one.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
# How each source is compiled by itself. A header that g++ has precompiled is of no use to clang-tidy.
cmake --preset release -B "$work/plain" -DORVEK_BATCHES=OFF >/dev/null
sed "s#$work/plain#$PWD/build#g; s/ -Winvalid-pch -include [^ ]*//; s/ -fpch-preprocess//" \
    "$work/plain/compile_commands.json" >"$work/compile_commands.json"

# The options of each source and the source, with a tab between them, sorted; then a batch and its entry in a
# database of their own for each dozen of one kind of options.
mkdir "$work/batches"
awk -v build="$PWD/build/" -v except="${1:-^$}" '
    /^ *"directory":/ { directory = $0 }
    /^ *"command":/ { command = $0; sub(/ -o .*/, "", command) }
    /^ *"file":.*\.cpp"/ {
        file = $0; sub(/^ *"file": "/, "", file); sub(/",?$/, "", file)
        if (index(file, build) != 1 && file !~ except && !(file in seen)) print directory command "\t" file
        seen[file] = 1
    }
' "$work/compile_commands.json" | sort >"$work/sources"

database="$work/batches/compile_commands.json"
number=0
separator="["
while IFS= read -r options; do
    number=$((number + 1))
    options="$options" awk -F '\t' '$1 == ENVIRON["options"] { print $2 }' "$work/sources" |
        awk -f Tools/batch-sources.awk | while IFS=$'\t' read -r batch file; do
            printf '#include "%s"\n' "$file" >>"$work/batches/$number-$batch.cpp"
        done
    for batch in "$work/batches/$number-"*.cpp; do
        printf '%s{%s -o batch.o -c %s", "file": "%s"}\n' "$separator" "$options" "$batch" "$batch" >>"$database"
        separator=","
    done
done < <(cut -f1 "$work/sources" | uniq)
echo "]" >>"$database"

# read_batch BATCH OPTION...: what is found in the batch.
read_batch() {
    local batch="$1"
    shift
    local common=(--quiet --config-file="$PWD/.clang-tidy" "$@"
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-unknown-pragmas)
    clang-tidy -p "$work/batches" "${common[@]}" "$batch" >/dev/null 2>&1 ||
        sed 's/^#include "\(.*\)"$/\1/' "$batch" |
        xargs -d '\n' -n 1 clang-tidy -p "$work" "${common[@]}" 2>/dev/null
}
export work
export -f read_batch

# The longest first, so that no processor idles at the end.
find "$work/batches" -name '*.cpp' -printf '%s %p\n' | sort -rn | cut -d' ' -f2- |
    xargs -d '\n' -P "$(nproc)" -I{} bash -c 'read_batch "$@"' read_batch {} "${@:2}"
