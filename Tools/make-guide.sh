#!/usr/bin/env bash
# make-guide.sh GUIDE.md GUIDE.html: the guide as a page for the program's own window and for browsers. The page has no
# colours of its own. What leads to files that are not installed with it becomes plain text.
set -euo pipefail

title="$(sed -n '1s/^# *//p' "$1")"
body="$(sed -E 's/\[([^]]*)\]\(\.\.\/[^)]*\)/\1/g' "$1" | cmark-gfm --extension table |
    awk '
        # Headings get the names by which links in the text lead to them.
        /^<h[1-6]>/ {
            name = tolower($0)
            gsub(/<[^>]*>/, "", name)
            gsub(/&[a-z]+;|[^a-z0-9 _-]/, "", name)
            gsub(/ /, "-", name)
            sub(/>/, "><a name=\"" name "\"></a>")
        }
        { print }')"
cat >"$2" <<END
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>$title</title>
<style>
body { max-width: 50em; margin: 1em auto; padding: 0 1em; }
img { max-width: 100%; }
td, th { padding: 2px 10px 2px 0; text-align: left; vertical-align: top; }
</style>
</head>
<body>
$body
</body>
</html>
END
