#!/usr/bin/env bash
# check-layers.sh [ROOT]: fails when a file below ROOT/Source includes a header of a floor that its own floor may
# not include, or Qt where it may not. An include says the path from Source, so the path tells the floor; a test
# stands in the folder of what it tests, says "Tests/..." for the helpers of tests, keeps to the same rule, and sees
# Qt where its floor stands on the interface. The floors stand in floors.txt beside this script; ROOT is the
# project's folder unless given (the tests give one of their own).
set -euo pipefail

tools="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
root="${1:-$tools/..}"
cd "$root"

find Source Tests Tools Benchmarks -path Tools/CMake -prune -o -type f \( -name '*.h' -o -name '*.cpp' \) -print | LC_ALL=C sort | awk -v floors="$tools/floors.txt" '
    function trim(text) { gsub(/^[ \t]+|[ \t]+$/, "", text); return text }
    function complain(text) { print text; ++faults }

    # The floor of a file: the longest folder of floors.txt that holds it, or "".
    function floor_of(path,   folder, best) {
        best = ""
        for (folder in floor_at)
            if (index(path, folder "/") == 1 && length(folder) > length(best)) best = folder
        return best == "" ? "" : floor_at[best]
    }

    function read_floors(   line, column, folder, allowed, n, i) {
        while ((getline line < floors) > 0) {
            if (line ~ /^#/ || split(line, column, "|") != 4) continue
            column[1] = trim(column[1])
            qt[column[1]] = trim(column[3]) == "yes"
            may[column[1], column[1]] = 1
            n = split(trim(column[2]), allowed, /[ \t]+/)
            for (i = 1; i <= n; ++i) {
                if (!(allowed[i] in qt)) complain(floors ": " column[1] " may include " allowed[i] ", which is not a lower floor")
                may[column[1], allowed[i]] = 1
            }
            n = split(column[4], folder, ",")
            for (i = 1; i <= n; ++i) floor_at[trim(folder[i])] = column[1]
        }
        close(floors)
    }

    # Where a file of the house, or of its tests, stands in the house.
    function storey(path) {
        if (floor_of(path) == "") sub(/^Tests\//, "Source/", path)
        return path
    }

    function check_include(path, number, quoted, included,   from, to) {
        if (included ~ /^Resources\//) return  # the numbers of texts, which are nobody'"'"'s
        from = floor_of(storey(path))
        if (included ~ /^(Qt[A-Za-z0-9]*\/|Q[A-Z][A-Za-z0-9]*$|q[a-z0-9]+\.h$)/) {
            if (!qt[from] && !(path ~ /^Tests\// && (from, "interface") in may))
                complain(path ":" number ": floor " from " includes Qt: " included)
            return
        }
        to = included in known ? included : "Source/" included
        if (!(to in known) && (!quoted || included !~ /\.h$/)) return
        if (included ~ /^Tests\// && path !~ /^(Tests|Benchmarks)\//) complain(path ":" number ": includes a test: " included)
        else if (!(to in known)) complain(path ":" number ": no header of this path: " included)
        else if (!((from, floor_of(storey(to))) in may))
            complain(path ":" number ": floor " from " includes " included " of floor " floor_of(storey(to)))
    }

    BEGIN { read_floors() }

    {
        files[++count] = $0
        known[$0]
        if (floor_of(storey($0)) == "") complain($0 ": belongs to no floor")
    }

    END {
        for (i = 1; i <= count; ++i) {
            number = 0
            while ((getline line < files[i]) > 0) {
                ++number
                if (line !~ /^[ \t]*#[ \t]*include[ \t]*["<]/) continue
                quoted = line ~ /^[^<]*"/
                sub(/^[^"<]*["<]/, "", line)
                sub(/[">].*$/, "", line)
                check_include(files[i], number, quoted, line)
            }
            close(files[i])
        }
        if (faults) exit 1
        print "layers: " count " files keep to their floors"
    }'
