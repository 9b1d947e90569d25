#!/usr/bin/env bash
# check-words-test.sh SCRIPT: the word check passes a clean tree and catches each kind of word.
# The words are put together here, so that this file passes the check itself.
set -euo pipefail

script="$1"
tree="$(mktemp -d)"
trap 'rm -rf "$tree"' EXIT
git -C "$tree" init -q

printf '%s\n' 'the special species of a party' 'a particle 4.2' 'user.h''aiku.BEOS:TYPE' \
    'tissue paper' 'framework/work/' >"$tree/fine.txt"
"$script" "$tree"

for bad in 'see P''art 4.2' 'as the sp''ec says' 'the Specif''ication' 'iss''ue 2' 'on H''aiku' \
    '/wo''rk/main' 'cd "/ho''me/someone"' '/t''mp/build'; do
    echo "$bad" >"$tree/bad.txt"
    if "$script" "$tree" >/dev/null 2>&1; then
        echo "FAIL: passes: $bad"
        exit 1
    fi
done
