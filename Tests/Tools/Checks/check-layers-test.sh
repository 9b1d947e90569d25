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
    file "$1" "Source/Platform/Support/Low.cpp" '#include "Low.h"' '// #include "Middle.h"'
    file "$1" "Source/Model/Middle.h" '#include "Low.h"'
    file "$1" "Source/Application/Prefs/Store.h" '#include <Low.h>'
    file "$1" "Source/Simulation/Document/Paper.h" '#include "Middle.h"'
    file "$1" "Source/Platform/Interface/Glass.h" '#include <QWidget>' '#include "Low.h"'
    file "$1" "Source/Interface Widgets/Box.h" '#include "Glass.h"' '  #  include "Middle.h"'
    file "$1" "Source/Simulation/Top.cpp" '#include "Paper.h"' '#include "Box.h"'
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
file upward "Source/Platform/Kernel/Up.cpp" '' '#include "Middle.h"'
expect_fault upward 'Source/Platform/Kernel/Up.cpp:2: floor platform includes Middle.h of floor model'

good angled
file angled "Source/Platform/Kernel/Up.h" '#  include <Middle.h>'
expect_fault angled 'Source/Platform/Kernel/Up.h:1: floor platform includes Middle.h of floor model'

# A lower floor by number, but not one that this floor builds on.
good sideways
file sideways "Source/Simulation/Document/Paper.cpp" '#include "Store.h"'
expect_fault sideways 'floor document includes Store.h of floor prefs'

good folder
file folder "Source/Model/Up.cpp" '#include "Simulation/Document/Paper.h"'
expect_fault folder 'floor model includes Simulation/Document/Paper.h of floor document'

# The interface floor lies in the platform's folder and is a floor of its own.
good glass
file glass "Source/Platform/Support/Up.cpp" '#include "Glass.h"'
expect_fault glass 'floor platform includes Glass.h of floor interface'

number=0
for include in '<QString>' '<QtCore/QString>' '"qglobal.h"'; do
    number=$((number + 1))
    good "qt$number"
    file "qt$number" "Source/Run/Main.cpp" "#include $include"
    expect_fault "qt$number" 'Source/Run/Main.cpp:1: floor run includes Qt: '
done

# One floor is the bridge to Qt; those above it go by way of it.
good bridge
file bridge "Source/Interface Widgets/Box.cpp" '#include <QLabel>'
expect_fault bridge 'Source/Interface Widgets/Box.cpp:1: floor widgets includes Qt: QLabel'

good homeless
file homeless "Source/Elsewhere/Lost.h" '#pragma once'
expect_fault homeless 'Source/Elsewhere/Lost.h: belongs to no floor'

good twins
file twins "Source/Model/Low.h" '#pragma once'
expect_fault twins 'Source/Platform/Support/Low.h: there is a second header of this name: Source/Model/Low.h'

if [[ $failures -gt 0 ]]; then exit 1; fi
echo "check-layers: all trees judged as they should be"
