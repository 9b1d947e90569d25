#!/usr/bin/env bash
# run-sanitized.sh PRESET [TEST...]: builds the tests of these names under the sanitizers of the preset (asan, tsan)
# and runs them; without names all of them. Those that drive widgets are left out under tsan, for which the toolkit
# is not built.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset="$1"
shift
which=()
if [[ $# -gt 0 ]]; then
    which=(-R "^($(IFS='|'; echo "$*"))\$")
elif [[ "$preset" == tsan ]]; then
    which=(-LE qt)
fi
cmake --preset "$preset" >/dev/null
ninja -C "build-$preset" --quiet "${@:-all}"
# The sanitizer of threads wants its shadow memory where address randomisation may put a program.
fixed=()
if setarch "$(uname -m)" -R true 2>/dev/null; then fixed=(setarch "$(uname -m)" -R); fi
"${fixed[@]}" ctest --preset "$preset" --no-tests=error "${which[@]}"
