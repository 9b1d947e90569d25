#!/usr/bin/env bash
# check-words.sh [ROOT]: fails when a file of the project speaks of things that are not of the project:
# papers that a reader does not have, folders of one machine. A letter of each pattern stands in
# brackets, so that this file passes its own check.
set -euo pipefail

cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"

patterns=(
    '\b[P]arts? [0-9]+\.[0-9]+'               # of a paper
    '\b[s]pec(s|ification|ifications)?\b'
    '\b[i]ssues?\b'
    '\b[h]aiku\b'                             # allowed below as the prefix of attribute names
    '\b[B]eOS\b'
    '(^|[^[:alnum:]_.])/([w]ork|[h]ome|[r]oot)/'   # folders of one machine
    '/[t]mp/[[:alnum:]_]'
    '\.[l]ibrary\b'
    '\b[t]his session\b'
)
allowed='user\.[h]aiku\.|BEOS:|\$HOME'

expression="$(IFS='|'; echo "${patterns[*]}")"
# Tracked files, and those that are about to be.
found="$(git ls-files -z --cached --others --exclude-standard |
    { xargs -0 grep -nHIiE -e "$expression" -- /dev/null || true; } |
    { grep -vE "$allowed" || true; })"
if [[ -n $found ]]; then
    echo "$found"
    echo "Please say these lines in other words." >&2
    exit 1
fi
echo "words: nothing to mend"
