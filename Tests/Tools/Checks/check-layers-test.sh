#!/usr/bin/env bash
# check-layers-test.sh SCRIPT: the layer check passes a good tree and catches each kind of violation.
set -euo pipefail

script="$1"
trees="$(mktemp -d)"
trap 'rm -rf "$trees"' EXIT
failures=0

# file TREE PATH LINE...: writes a source file of these lines.
file() {
    local path="$trees/$1/$2"
    mkdir -p "$(dirname "$path")"
    printf '%s\n' "${@:3}" >"$path"
}

# A house with a file on every kind of floor, in which nothing is wrong.
good() {
    file "$1" "Source/Platform/Support/Low.h" '#pragma once' '#include <vector>'
    file "$1" "Source/Platform/Support/Low.cpp" '#include "Platform/Support/Low.h"' '// #include "Model/Units/Middle.h"'
    file "$1" "Source/Model/Units/Middle.h" '#include "Platform/Support/Low.h"'
    file "$1" "Source/Application/Prefs/Store.h" '#include <Platform/Support/Low.h>'
    file "$1" "Source/Simulation/Document/Paper.h" '#include "Model/Units/Middle.h"'
    file "$1" "Source/Platform/Interface/Server/Glass.h" '#include <QWidget>' '#include "Platform/Support/Low.h"'
    file "$1" "Source/Interface Widgets/Box.h" '#include "Platform/Interface/Server/Glass.h"' '  #  include "Model/Units/Middle.h"'
    file "$1" "Source/Simulation/Top.cpp" '#include "Simulation/Document/Paper.h"' '#include "Interface Widgets/Box.h"'
    file "$1" "Tests/Platform/Helper.h" '#include "Platform/Support/Low.h"'
    file "$1" "Tests/Interface Widgets/BoxTest.cpp" '#include <QTest>' '#include "Interface Widgets/Box.h"' '#include "Tests/Platform/Helper.h"'
    file "$1" "Tools/Made/Maker.h" '#include "Model/Units/Middle.h"'
    file "$1" "Tests/Tools/Made/MakerTest.cpp" '#include "Tools/Made/Maker.h"'
    file "$1" "Benchmarks/Bench.cpp" '#include "Tests/Platform/Helper.h"'
}

# expect_pass TREE
expect_pass() {
    if ! "$script" "$trees/$1" >"$trees/output" 2>&1; then
        echo "FAIL: $1 should pass:"
        cat "$trees/output"
        failures=$((failures + 1))
    fi
}

# expect_fault TREE TEXT: the check fails and says TEXT.
expect_fault() {
    if "$script" "$trees/$1" >"$trees/output" 2>&1; then
        echo "FAIL: $1 passes, but should be refused with: $2"
        failures=$((failures + 1))
    elif ! grep -qF "$2" "$trees/output" || [[ $(wc -l <"$trees/output") -ne 1 ]]; then
        echo "FAIL: $1 should be refused with one line: $2"
        cat "$trees/output"
        failures=$((failures + 1))
    fi
}

good fine
expect_pass fine

good upward
file upward "Source/Platform/Kernel/Up.cpp" '' '#include "Model/Units/Middle.h"'
expect_fault upward 'Source/Platform/Kernel/Up.cpp:2: floor platform includes Model/Units/Middle.h of floor model'

good angled
file angled "Source/Platform/Kernel/Up.h" '#  include <Model/Units/Middle.h>'
expect_fault angled 'Source/Platform/Kernel/Up.h:1: floor platform includes Model/Units/Middle.h of floor model'

# A lower floor by number, but not one that this floor builds on.
good sideways
file sideways "Source/Simulation/Document/Paper.cpp" '#include "Application/Prefs/Store.h"'
expect_fault sideways 'floor document includes Application/Prefs/Store.h of floor prefs'

# A path that leaves the floor to be guessed.
good flat
file flat "Source/Simulation/Flat.cpp" '#include "Middle.h"'
expect_fault flat 'Source/Simulation/Flat.cpp:1: no header of this path: Middle.h'

# The interface floor lies in the platform's folder and is a floor of its own.
good glass
file glass "Source/Platform/Support/Up.cpp" '#include "Platform/Interface/Server/Glass.h"'
expect_fault glass 'floor platform includes Platform/Interface/Server/Glass.h of floor interface'

# Tests keep to the floor of what they test.
good tests
file tests "Tests/Model/UpTest.cpp" '#include "Simulation/Document/Paper.h"'
expect_fault tests 'Tests/Model/UpTest.cpp:1: floor model includes Simulation/Document/Paper.h of floor document'

good helper
file helper "Tests/Simulation/Helper.h" '#include "Simulation/Document/Paper.h"'
file helper "Tests/Model/UpTest.cpp" '#include "Tests/Simulation/Helper.h"'
expect_fault helper 'Tests/Model/UpTest.cpp:1: floor model includes Tests/Simulation/Helper.h of floor simulation'

good tested
file tested "Source/Simulation/Down.cpp" '#include "Tests/Platform/Helper.h"'
expect_fault tested 'Source/Simulation/Down.cpp:1: includes a test: Tests/Platform/Helper.h'

number=0
for include in '<QString>' '<QtCore/QString>' '"qglobal.h"'; do
    number=$((number + 1))
    good "qt$number"
    file "qt$number" "Source/Run/Main.cpp" "#include $include"
    expect_fault "qt$number" 'Source/Run/Main.cpp:1: floor run includes Qt: '
done

# One floor is the bridge to Qt; those above it go by way of it, and tests of floors below it have no use for it.
good bridge
file bridge "Source/Interface Widgets/Box.cpp" '#include <QLabel>'
expect_fault bridge 'Source/Interface Widgets/Box.cpp:1: floor widgets includes Qt: QLabel'

good below
file below "Tests/Simulation/Document/PaperTest.cpp" '#include <QTest>'
expect_fault below 'Tests/Simulation/Document/PaperTest.cpp:1: floor document includes Qt: QTest'

good homeless
file homeless "Source/Elsewhere/Lost.h" '#pragma once'
expect_fault homeless 'Source/Elsewhere/Lost.h: belongs to no floor'

if [[ $failures -gt 0 ]]; then exit 1; fi
echo "check-layers: all trees judged as they should be"
