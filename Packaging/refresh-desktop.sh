#!/usr/bin/env bash
# refresh-desktop.sh DESTDIR PREFIX: after programs were installed below PREFIX or removed, has the desktop
# read its lists of programs, file types and icons again. Does nothing for an installation that is only
# being put together in DESTDIR; a tool that is missing is passed over.
set -euo pipefail

[[ -z $1 ]] || exit 0
share="$2/share"

refresh() {
    if command -v "$1" >/dev/null; then "$@" || echo "refresh-desktop.sh: $1 failed" >&2; fi
}
[[ ! -d $share/mime/packages ]] || refresh update-mime-database "$share/mime"
[[ ! -d $share/applications ]] || refresh update-desktop-database --quiet "$share/applications"
[[ ! -d $share/icons/hicolor ]] ||
    refresh gtk-update-icon-cache --quiet --ignore-theme-index "$share/icons/hicolor"
