#!/usr/bin/env bash
# install-test.sh BUILD PACKAGING: installs the build into a folder and looks at what came: the files
# that are listed and no others, programs that run from there, manual pages that tell every option of
# --help, a file type that goes by the documents' first bytes.
set -euo pipefail

build="$1"
packaging="$2"
root="$(mktemp -d)"
trap 'rm -rf "$root"' EXIT
fail() {
    echo "FAIL: $*"
    exit 1
}

# Only where there is MPI.
[[ -e $build/bin/orvek-run-mpi ]] || without="bin/orvek-run-mpi"
cmake --install "$build" --prefix "$root/usr" >/dev/null
(cd "$root/usr" && find . -type f | sed 's|^\./||' | LC_ALL=C sort) |
    diff <(grep -v '^#' "$packaging/files.txt" | grep -vx "${without:-}") - || fail "installed (right) is not what is listed (left)"

for program in orvek orvek-run; do
    installed="$root/usr/bin/$program"
    version="$(cd / && "$installed" --version)"
    [[ $version == "$program "* ]] || fail "$program --version says: $version"
    page="$(zcat "$root/usr/share/man/man1/$program.1.gz")"
    [[ $page == *"Orvek ${version#* }"* ]] || fail "the manual of $program has another version"
    options="$("$installed" --help | grep -oE -- '(^| )--[a-z-]+' | sort -u)"
    [[ -n $options ]] || fail "$program --help has no options"
    for option in $options; do
        [[ $page == *"${option//-/\\-}"* ]] || fail "the manual of $program has no $option"
    done
done

magic="$(grep -oP '<match type="string" value="\K[^"]+(?=" offset="0")' "$packaging/orvek.xml")"
example="$root/usr/share/doc/orvek/examples/planets.orvek"
[[ -n $magic && $(head -c "${#magic}" "$example") == "$magic" ]] ||
    fail "a document does not begin with \"$magic\""
type="$(grep -oP '<mime-type type="\K[^"]+' "$packaging/orvek.xml")"
grep -q "^MimeType=$type;" "$packaging/orvek.desktop" || fail "the program does not open $type"
