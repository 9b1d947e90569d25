#!/usr/bin/env bash
# make-screenshots.sh [FOLDER]: makes the pictures of the user's guide and of README.md, in FOLDER
# (Documentation/Images). Walks through the lessons of the guide with the program in build/bin, on a
# screen, with settings and in a folder of its own: nothing of the user's is touched. Needs the package
# groups "build" and "guide", a finished build and about two minutes. Times and orbits differ a little
# from one run to the next, since a run is as long as the machine is fast.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
images="$(realpath -m "${1:-Documentation/Images}")"
program="$PWD/build/bin/orvek"
examples="$PWD/build/examples"
[[ -x $program && -d $examples ]] || { echo "Please build first: make examples run" >&2; exit 1; }
mkdir -p "$images"

# --- A desktop of its own ---

desk="$(mktemp -d)"
declare -A running=()

tidy_up() {
    for name in program manager screen; do
        [[ -z ${running[$name]:-} ]] || kill "${running[$name]}" 2>/dev/null || true
    done
    rm -rf "$desk"
}
trap tidy_up EXIT

mkdir -p "$desk"/{config,data,state,cache,runtime,Documents}
chmod 700 "$desk/runtime"
export HOME="$desk" XDG_CONFIG_HOME="$desk/config" XDG_DATA_HOME="$desk/data" \
    XDG_STATE_HOME="$desk/state" XDG_CACHE_HOME="$desk/cache" XDG_RUNTIME_DIR="$desk/runtime" \
    LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER XDG_CURRENT_DESKTOP QT_QPA_PLATFORMTHEME \
    QT_STYLE_OVERRIDE QT_SCALE_FACTOR

start_screen() {  # WIDTHxHEIGHT
    mkfifo "$desk/number"
    Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp 3>"$desk/number" 2>/dev/null &
    running[screen]=$!
    read -r number <"$desk/number"
    rm "$desk/number"
    export DISPLAY=":$number"
    openbox --sm-disable 2>/dev/null &
    running[manager]=$!
    until xdotool get_desktop >/dev/null 2>&1; do sleep 0.1; done
}

stop_screen() {
    kill "${running[manager]}" "${running[screen]}"
    wait "${running[manager]}" "${running[screen]}" 2>/dev/null || true
    unset 'running[manager]' 'running[screen]'
}

# --- The program ---

start_program() {  # DOCUMENT...
    (cd "$desk/Documents" && exec "$program" --no-gallery "$@") &
    running[program]=$!
}

stop_program() {
    kill "${running[program]}"
    wait "${running[program]}" 2>/dev/null || true
    unset 'running[program]'
    rm -rf "$desk/state/orvek"
}

# The identifier of the window with that title, when there is one; fails after ten seconds.
window() {  # TITLE
    local found
    for ((i = 0; i < 100; i++)); do
        found="$(xdotool search --onlyvisible --name "^$1\*?$" 2>/dev/null | tail -n 1 || true)"
        [[ -z $found ]] || { echo "$found"; return; }
        sleep 0.1
    done
    echo "There is no window \"$1\"" >&2
    return 1
}

# --- Hand and keyboard. Waits are for what cannot be seen from outside: that a window has answered. ---

pause() { sleep "${1:-0.5}"; }

use() {  # TITLE: brings the window to the front
    xdotool windowactivate --sync "$(window "$1")"
    pause
}

place() {  # TITLE X Y [WIDTH HEIGHT]
    local id
    id="$(window "$1")"
    xdotool windowmove --sync "$id" "$2" "$3"
    [[ $# -lt 5 ]] || xdotool windowsize --sync "$id" "$4" "$5"
    pause
}

press() {  # KEY...
    for key in "$@"; do
        xdotool key --clearmodifiers "$key"
        pause 0.3
    done
}

type_text() { xdotool type --delay 20 "$1"; pause 0.2; }

click() {  # TITLE X Y [COUNT]
    xdotool mousemove --window "$(window "$1")" "$2" "$3"
    pause 0.1
    xdotool click --repeat "${4:-1}" --delay 80 1
    pause
}

# Where things are in a simulation's window.
declare -A entry=([name]="200 99" [mass]="200 127" [radius]="200 155" [x]="120 241" [y]="120 269"
    [z]="120 297" [vx]="330 241" [vy]="330 269" [vz]="330 297")

choose() {  # TITLE ROW NAME: in "Edit:" (ROW 71) or "Relative to:" (ROW 185)
    click "$1" 200 "$2"
    type_text "$3"
    press Return
}

fill_in() {  # TITLE ENTRY TEXT
    # shellcheck disable=SC2086  # two numbers
    click "$1" ${entry[$2]} 3
    type_text "$3"
    press Return
}

# The line of the pace, above the time line of a display.
set_pace() {  # TITLE TEXT
    click "$1" 90 "$(($(height "$1") - 68))" 3
    type_text "$2"
    press Return Tab
}

height() {  # TITLE
    xdotool getwindowgeometry --shell "$(window "$1")" | sed -n 's/^HEIGHT=//p'
}

# On the time line at the display's foot; parts of the window's width.
drag_knob() {  # TITLE FROM TO
    local id width y
    id="$(window "$1")"
    width="$(xdotool getwindowgeometry --shell "$id" | sed -n 's/^WIDTH=//p')"
    y="$(($(height "$1") - 30))"
    xdotool mousemove --window "$id" "$(awk "BEGIN {print int($width * $2)}")" "$y" mousedown 1
    pause 0.3
    xdotool mousemove --window "$id" "$(awk "BEGIN {print int($width * $3)}")" "$y"
    pause 0.3
    xdotool mouseup 1
}

# --- Pictures ---

# The window with its frame. Few colours are used: a palette makes files of a third.
picture() {  # NAME TITLE
    use "$2"
    xdotool mousemove 1 1
    pause 0.3
    import -frame -window "$(window "$2")" "$desk/$1.png"
    keep "$1" "$desk/$1.png"
}

keep() {  # NAME FILE
    convert "$2" -strip -dither None -colors 200 -define png:compression-level=9 "$images/$1.png"
    echo "$1.png, $(stat -c %s "$images/$1.png") bytes"
}

side_by_side() {  # NAME TITLE...
    local name=$1 parts=()
    shift
    for title in "$@"; do
        import -frame -window "$(window "$title")" "$desk/part${#parts[@]}.png"
        parts+=("$desk/part${#parts[@]}.png")
    done
    convert "${parts[@]}" -background white -gravity north +smush 12 "$desk/$name.png"
    keep "$name" "$desk/$name.png"
}

# --- The lessons of the guide, step by step ---

readonly N="New Simulation" S="Star system"

# Steps 1 and 2: the two bodies.
lesson_bodies() {
    start_program
    window "$N" >/dev/null
    window "Projection of $N" >/dev/null
    place "$N" 4 56
    side_by_side first-windows "$N" "Projection of $N"
    choose "$N" 71 Arrakis
    fill_in "$N" name Star
    fill_in "$N" mass "1.1 Ms"
    choose "$N" 71 BoskVeld
    fill_in "$N" name Planet
    fill_in "$N" mass "1 Mj"
    fill_in "$N" radius "70000 km"
    fill_in "$N" vx 0
    fill_in "$N" vy "75000 kph"
    fill_in "$N" vz "2 km/s"
    picture body-settings "$N"
}

# Steps 3 and 4: a third body; a run that is watched, and centuries.
lesson_run() {
    use "$N"
    press ctrl+b
    use "Projection of $N"
    press ctrl+l minus minus minus ctrl+g
    pause 5
    set_pace "Projection of $N" max
    pause 2
    side_by_side running "$N" "Projection of $N"
    press ctrl+g
    pause 1
    set_pace "Projection of $N" Auto
}

# Steps 5 and 6: the epochs; an earlier one is taken up again, and its edit makes a branch.
lesson_epochs() {
    local list="Epochs for $N"
    use "$N"
    press ctrl+e
    use "$list"
    press F2
    type_text "Two planets"
    press Return
    click "$list" 60 47 2
    use "Projection of $N"
    press alt+d Up Return
    choose "$N" 71 Planet
    fill_in "$N" vy "14 km/s"
    use "$N"
    press ctrl+g
    pause 1
    press ctrl+g
    pause 1
    use "$list"
    press F2
    type_text "Narrow orbit"
    press Return
    picture epochs "$list"
}

# Steps 7 and 8: a moon, told from its planet, and the group of both.
lesson_group() {
    local list="Epochs for $N"
    click "$list" 60 47 2
    choose "$N" 71 Planet
    use "$N"
    press ctrl+b
    fill_in "$N" name Moon
    choose "$N" 185 Planet
    fill_in "$N" x "1000000 km"
    fill_in "$N" y 0
    fill_in "$N" z 0
    fill_in "$N" vx 0
    fill_in "$N" vy 11.3
    fill_in "$N" vz 0
    fill_in "$N" mass "0.01 Me"
    fill_in "$N" radius "1700 km"
    use "$N"
    press ctrl+shift+g
    type_text "Planet and Moon"
    click "Group Bodies" 18 83
    picture group "Group Bodies"
    press Return
}

# Step 9: a colour.
lesson_color() {
    choose "$N" 71 Moon
    use "$N"
    press ctrl+t
    picture trail-disc "Display options for $N"
    press ctrl+w
}

# Step 10: a second display, which follows the planet.
lesson_display() {
    use "$N"
    press ctrl+j
    press ctrl+l alt+v Down Right Down Down Down Return alt+d Return
    type_text "4000000 km"
    import -frame -window "$(window "Choose Display Scale")" "$desk/scale.png"
    press Return alt+d Down Return
    import -frame -window "$(window "Choose Suppressed Axis")" "$desk/axis.png"
    press Escape
    convert "$desk/scale.png" "$desk/axis.png" -background white -gravity north +smush 12 "$desk/dialogs.png"
    keep scale-axis "$desk/dialogs.png"
    press ctrl+g
    pause 9
    press ctrl+g
    pause 1
    picture moon "Projection of $N"
}

# Step 11: wound back, typed, gone and compared.
lesson_what_if() {
    use "Projection of $N"
    press Home
    pause 1
    choose "$N" 71 Moon
    fill_in "$N" vy "13 km/s"
    use "Projection of $N"
    press ctrl+g
    pause 3
    press ctrl+g
    pause 1
    press alt+v Down Down Down Down Right Up Up Return
    pause 1
    picture two-stories "Projection of $N"
    press alt+v Down Down Down Down Right Return
}

# Step 12: saving, closing, opening again.
lesson_file() {
    use "$N"
    press ctrl+s
    pause 1
    type_text "$desk/Documents/$S"
    press Return
    window "$S" >/dev/null
    use "$S"
    press ctrl+q
    wait "${running[program]}"
    unset 'running[program]'
    [[ -s "$desk/Documents/$S" ]]
    start_program "$S"
    window "$S" >/dev/null
    window "Epochs for $S" >/dev/null
    stop_program
}

# The second lesson: a fall, and the way back.
lesson_collision() {
    start_program
    window "$N" >/dev/null
    use "$N"
    press ctrl+b
    choose "$N" 71 BoskVeld
    fill_in "$N" vx 0
    fill_in "$N" vy 0
    fill_in "$N" vz 0
    set_pace "Projection of $N" "30 d"
    use "$N"
    press ctrl+g
    pause 9
    press ctrl+g
    pause 1
    picture merged "$N"
    drag_knob "Projection of $N" 0.977 0.62
    pause 1
    picture wound-back "Projection of $N"
    stop_program
}

# --- README.md, and other looks ---

planets() {
    cp "$examples/planets.orvek" "$desk/Documents/planets"
    start_program planets
    window planets >/dev/null
    place planets 4 56
    use "Projection of planets"
    press ctrl+l equal equal
    set_pace "Projection of planets" max
    press ctrl+g
    pause 6
    side_by_side planets planets "Projection of planets"
    stop_program
}

trails() {
    cp "$examples/pythagorean.orvek" "$desk/Documents/pythagorean"
    start_program pythagorean
    window pythagorean >/dev/null
    use "Projection of pythagorean"
    set_pace "Projection of pythagorean" max
    press ctrl+g
    pause 2
    press ctrl+g
    pause 1
    picture trails "Projection of pythagorean"
    stop_program
}

space() {
    cp "$examples/planets.orvek" "$desk/Documents/planets"
    start_program planets
    window planets >/dev/null
    use planets
    press ctrl+shift+j
    use "Space of planets"
    press ctrl+g
    pause 6
    press ctrl+g equal equal
    pause 1
    picture space "Space of planets"
    stop_program
}

chart() {
    cp "$examples/planets.orvek" "$desk/Documents/planets"
    start_program planets
    window planets >/dev/null
    use planets
    press ctrl+h
    use "Chart of planets"
    press ctrl+g
    pause 6
    press ctrl+g
    pause 1
    picture chart "Chart of planets"
    stop_program
}

hands() {
    local shown
    cp "$examples/planets.orvek" "$desk/Documents/planets"
    start_program planets
    window planets >/dev/null
    use planets
    press ctrl+shift+j
    use "Space of planets"
    shown="$(window "Space of planets")"
    xdotool mousemove --window "$shown" 560 330 keydown ctrl mousedown 1
    pause
    xdotool mousemove --window "$shown" 566 300
    pause
    xdotool mousemove --window "$shown" 570 285
    pause 3
    # The mouse stays where it is.
    import -frame -window "$shown" "$desk/hands.png"
    keep hands "$desk/hands.png"
    xdotool key Escape mouseup 1 keyup ctrl
    stop_program
}

dark() {
    cat >"$XDG_CONFIG_HOME/kdeglobals" <<'END'
[Colors:Window]
BackgroundNormal=49,54,59
ForegroundNormal=239,240,241
[Colors:Button]
BackgroundNormal=60,66,72
ForegroundNormal=239,240,241
[Colors:View]
BackgroundNormal=35,38,41
BackgroundAlternate=41,45,49
ForegroundNormal=239,240,241
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=255,255,255
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=239,240,241
END
    export XDG_CURRENT_DESKTOP=KDE KDE_SESSION_VERSION=5
    start_program
    window "$N" >/dev/null
    window "Projection of $N" >/dev/null
    use "$N"
    press ctrl+e
    place "Epochs for $N" 460 56
    side_by_side dark "$N" "Epochs for $N"
    stop_program
    unset XDG_CURRENT_DESKTOP KDE_SESSION_VERSION
    rm "$XDG_CONFIG_HOME/kdeglobals"
}

twice_as_large() {
    export QT_SCALE_FACTOR=2
    start_program
    picture double-size "$N"
    stop_program
    unset QT_SCALE_FACTOR
}

start_screen 1400x1000
lesson_bodies
lesson_run
lesson_epochs
lesson_group
lesson_color
lesson_display
lesson_what_if
lesson_file
lesson_collision
planets
trails
space
chart
hands
dark
stop_screen
start_screen 2800x2000
twice_as_large
