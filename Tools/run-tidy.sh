#!/usr/bin/env bash
# run-tidy.sh [EXCEPT [OPTION...]]: clang-tidy over every source that the build compiles, without those whose
# path matches the expression EXCEPT, with these further options. Needs a build in build/. Options and pragmas that
# are the compiler's own it need not know.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# A header that g++ has precompiled is of no use to it.
database="$(mktemp -d)"
trap 'rm -rf "$database"' EXIT
sed 's/ -Winvalid-pch -include [^ ]*//; s/ -fpch-preprocess//' build/compile_commands.json >"$database/compile_commands.json"

sed -n 's/^ *"file": "\(.*\.cpp\)",\{0,1\}$/\1/p' build/compile_commands.json |
    grep -v -e "^$PWD/build/" -e "${1:-^$}" | sort -u | xargs -d '\n' ls -S |
    xargs -d '\n' -n 1 -P "$(nproc)" clang-tidy -p "$database" --quiet \
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-unknown-pragmas "${@:2}"
