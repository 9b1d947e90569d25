#!/usr/bin/env bash
# texts-test.sh ROOT: every text that the program asks for by a number of its own stands in the resources.
set -euo pipefail
cd "$1"

# "kTextSomething = 1234" and the like, over one line or two.
used="$(find Source -name '*.h' -o -name '*.cpp' | sort | tr '\n' '\0' | xargs -0 cat | tr '\n' ' ' |
    { grep -oE '\bk(Label|Text|Command)[A-Za-z]* = +[0-9]{4}\b' || true; } | sed 's/.* //' | sort -u)"
there="$(sed -nE 's/^resource\(([0-9]{4})[,)].*/\1/p' Resources/*.rdef | sort -u)"

if (($(wc -l <<<"$used") < 200)); then
    echo "FAIL: hardly any text is used, so this check does not see them"
    exit 1
fi
missing="$(comm -23 <(echo "$used") <(echo "$there"))"
if [[ -n $missing ]]; then
    echo "FAIL: without a text:" $missing
    exit 1
fi
