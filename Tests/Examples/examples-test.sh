#!/usr/bin/env bash
# examples-test.sh RUNNER FOLDER: every document of FOLDER runs and is seen as it should be, and two of them do
# what they promise.
set -euo pipefail

runner="$1"
folder="$2"

count=0
for document in "$folder"/*.orvek; do
    "$runner" --quiet --steps 20 "$document"
    count=$((count + 1))
done
[[ $count -ge 6 ]] || { echo "FAIL: only $count documents in $folder"; exit 1; }

# column FILE NAME REPORT COLUMN: one number of a CSV file; REPORT "last" for the last one.
column() {
    awk -F, -v name="$2" -v report="$3" -v column="$4" '
        $4 == name && (report == "last" || $1 == report) { value = $column }
        END { print value }' "$1"
}

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

# After its period of 6.32591398 natural units the figure eight closes. The period is met to within a
# step, which moves a body by a few thousandths of the figure's size.
"$runner" --quiet --for 31772807 --every 1000000 --csv "$reports" "$folder/figure-eight.orvek"
for name in Ada Bea Cleo; do
    for axis in 5 6; do
        awk -v name="$name" -v first="$(column "$reports" "$name" 0 "$axis")" \
            -v last="$(column "$reports" "$name" last "$axis")" 'BEGIN {
                off = (last - first) / 1.4959787066e11
                if (off * off > 1e-4) { print "FAIL: " name " is off by " off; exit 1 }
            }'
    done
done

# The Earth on 1 January 2000 at noon, seen from the Sun: longitude 100.4 degrees, 0.9833 AU away.
"$runner" --quiet --steps 1 --csv "$reports" "$folder/planets.orvek"
awk -v x="$(column "$reports" "Earth and Moon" 0 5)" -v y="$(column "$reports" "Earth and Moon" 0 6)" \
    -v x0="$(column "$reports" Sun 0 5)" -v y0="$(column "$reports" Sun 0 6)" 'BEGIN {
        x -= x0; y -= y0
        longitude = atan2(y, x) * 45 / atan2(1, 1)
        distance = sqrt(x * x + y * y) / 1.4959787066e11
        if (longitude < 100.3 || longitude > 100.5 || distance < 0.983 || distance > 0.9836) {
            print "FAIL: the Earth is at " longitude " degrees, " distance " AU"
            exit 1
        }
    }'
echo "examples: $count documents run"
