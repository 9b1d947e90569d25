#!/usr/bin/env bash
# run-tidy.sh [EXCEPT [OPTION...]]: clang-tidy over every source that the build compiles, without those whose
# path matches the expression EXCEPT, with these further options. Needs a build in build/. Options and pragmas that
# are the compiler's own it need not know.
#
# Most of its time goes into headers, so sources are read by the dozen, as one that includes them all. Sources that
# do not agree (two of them have a helper of one name, say) are read one by one.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
# A header that g++ has precompiled is of no use to clang-tidy.
sed 's/ -Winvalid-pch -include [^ ]*//; s/ -fpch-preprocess//' build/compile_commands.json >"$work/compile_commands.json"

# Writes the batches, and the database that tells how each is compiled: as its first source is, which has the same
# options as the others. A batch takes a source when none of the names that are the source's own is taken.
mkdir "$work/batches"
awk -v build="$PWD/build/" -v except="${1:-^$}" -v work="$work" -v most=12 '
    function Own(file, names,    line, inside, count, found) {
        count = 0
        while ((getline line < file) > 0) {
            if (line ~ /^namespace \{/) inside = 1
            else if (line ~ /^}  \/\/ namespace/) inside = 0
            else if (line ~ /^#define /) { split(line, found, /[ (]/); names[count++] = found[2] }
            else if (line ~ /^int main\(/) names[count++] = "main"
            else if (inside && match(line, /^(constexpr|const|static|inline) .*[ *&][A-Za-z_0-9]+(\[[^]]*\])?( =|\{|;)/)) {
                sub(/(\[[^]]*\])*( =|\{|;).*/, "", line); sub(/.*[ *&]/, "", line); names[count++] = line
            }
            else if (inside && match(line, /^(class|struct|enum|union|using) +(class )?[A-Za-z_0-9]+/)) {
                line = substr(line, 1, RLENGTH); sub(/.* /, "", line); names[count++] = line
            }
            else if (inside && match(line, /^[A-Za-z_][^=(]*[ *&][A-Za-z_0-9]+\(/)) {
                line = substr(line, 1, RLENGTH - 1); sub(/.*[ *&]/, "", line); names[count++] = line
            }
        }
        close(file)
        return count
    }
    function Fits(batch, names, count,    i) {
        if (size[batch] >= most) return 0
        for (i = 0; i < count; i++) if ((batch, names[i]) in taken) return 0
        return 1
    }
    /^ *"directory":/ { directory = $0 }
    /^ *"command":/ { command = $0 }
    /^ *"file":.*\.cpp"/ {
        file = $0; sub(/^ *"file": "/, "", file); sub(/",?$/, "", file)
        if (index(file, build) == 1 || file ~ except || file in seen) next
        seen[file] = 1
        options = command; sub(/ -o .*/, "", options)
        count = Own(file, names)
        for (b = 0; b < batches[options] && !Fits(options SUBSEP b, names, count); b++) {}
        batch = options SUBSEP b
        if (b == batches[options] + 0) {
            batches[options]++
            path[batch] = sprintf("%s/batches/%03d.cpp", work, total++)
            printf("%s{\n%s\n%s -o batch.o -c %s\",\n  \"file\": \"%s\"\n}", (total == 1) ? "[\n" : ",\n",
                directory, options, path[batch], path[batch]) > (work "/batches/compile_commands.json")
        }
        size[batch]++
        for (i = 0; i < count; i++) taken[batch, names[i]] = 1
        printf "#include \"%s\"\n", file > path[batch]
    }
    END { print "]" > (work "/batches/compile_commands.json") }
' "$work/compile_commands.json"

# read_batch BATCH OPTION...: what is found in the batch; its sources are asked when there is something, or when they
# do not agree.
read_batch() {
    local batch="$1"
    shift
    local common=(--quiet --config-file="$PWD/.clang-tidy" "$@"
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-unknown-pragmas)
    clang-tidy -p "$work/batches" "${common[@]}" "$batch" >/dev/null 2>&1 ||
        sed 's/^#include "\(.*\)"$/\1/' "$batch" | xargs -d '\n' -n 1 clang-tidy -p "$work" "${common[@]}" 2>/dev/null
}
export work
export -f read_batch

# The longest first, so that no processor idles at the end.
find "$work/batches" -name '*.cpp' -printf '%s %p\n' | sort -rn | cut -d' ' -f2- |
    xargs -d '\n' -P "$(nproc)" -I{} bash -c 'read_batch "$@"' read_batch {} "${@:2}"
