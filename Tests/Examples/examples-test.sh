#!/usr/bin/env bash
# examples-test.sh RUNNER FOLDER: every document of FOLDER runs, and its orbits fit the picture that it is
# shown in.
set -euo pipefail

runner="$1"
folder="$2"

count=0
for document in "$folder"/*.orvek; do
    "$runner" --quiet --steps 20 "$document"
    count=$((count + 1))
done
[[ $count -ge 17 ]] || { echo "FAIL: only $count documents in $folder"; exit 1; }

reports="$(mktemp)"
trap 'rm -f "$reports"' EXIT

# fits EXAMPLE TIME SHARE: within TIME no body leaves the picture that the display shows, about the origin, and
# the orbits fill SHARE of it.
texts="$(cd "$(dirname "$0")/../../Examples" && pwd)"
fits() {
    local picture
    picture="$(awk '$1 == "picture" { print $2 * ($3 == "AU" ? 1.4959787066e11 : 1e3) }' "$texts/$1.txt")"
    "$runner" --quiet --for "$2" --every 50 --csv "$reports" "$folder/$1.orvek"
    awk -F, -v name="$1" -v half="$picture" -v share="$3" '
        function size(x) { return x < 0 ? -x : x }
        NR > 1 { if (size($5) > most) most = size($5); if (size($6) > most) most = size($6) }
        END {
            used = most / (half / 2)
            if (used > 1 || used < share) { print "FAIL: " name " fills " used " of its picture"; exit 1 }
        }' "$reports"
}
# Pluto takes too long to go round.
fits planets "1 yr" 0
fits outer-planets "165 yr" 0.75
fits earth-moon "56 dy" 0.75
fits figure-eight "1.1 yr" 0.75
fits pythagorean "9 yr" 0.75
fits circumbinary "230 dy" 0.75
fits trojans "12 yr" 0.7
fits horseshoe "1 dy" 0.75
fits kirkwood "12 yr" 0.75
fits precession "3 yr" 0.75
fits lagrange-ring "1.4 yr" 0.75
fits trappist-1 "19 dy" 0.75
fits slingshot "6.8 yr" 0.75
fits capture "10 dy" 0.75

echo "examples: $count documents run"
