#!/usr/bin/env bash
# install-packages.sh GROUP...: installs what is missing of these groups of packages.txt.
# Quick and silent when nothing is missing: one question to the package database.
set -euo pipefail

list="$(dirname "${BASH_SOURCE[0]}")/packages.txt"
wanted=()
for group in "$@"; do
    mapfile -t -O "${#wanted[@]}" wanted < <(awk -v group="$group" '$1 == group { print $2 }' "$list")
done
if [[ ${#wanted[@]} -eq 0 ]]; then
    echo "usage: install-packages.sh GROUP... (groups: $(awk '!/^#/ && NF { print $1 }' "$list" | sort -u | xargs))" >&2
    exit 2
fi

if ! command -v dpkg-query >/dev/null; then
    echo "Not a Debian system: please see to the counterparts of ${wanted[*]} yourself." >&2
    exit 0
fi

# dpkg-query fails when it does not know a package; what it does not list as installed is missing.
installed=" $({ dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' "${wanted[@]}" 2>/dev/null || true; } |
    awk '$1 == "ii" { print $2 }' | xargs) "
missing=()
for package in "${wanted[@]}"; do
    [[ $installed == *" $package "* ]] || missing+=("$package")
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

root=()
if [[ $EUID -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
        echo "Please install as root: apt-get install ${missing[*]}" >&2
        exit 1
    fi
    root=(sudo)
fi
echo "Installing ${missing[*]}"
"${root[@]}" apt-get update
"${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
