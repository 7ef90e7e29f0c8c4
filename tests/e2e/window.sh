# What the roads through the real window share: an X server, a window manager,
# folders of their own, and how the window is opened, closed and photographed.
# To be sourced; it sets $bin, $pictures and $work, and goes to $work.
#
#     ROAD BIN-FOLDER [FOLDER-FOR-PICTURES]
set -euo pipefail
bin=$(realpath "$1")
pictures=${2:+$(realpath "$2")}
if [ -z "${TONEQUILL_ROAD_INSIDE:-}" ]; then
    exec env TONEQUILL_ROAD_INSIDE=1 xvfb-run -a -s "-screen 0 1440x900x24" "$0" "$@"
fi

work=$(mktemp -d)
export XDG_DATA_HOME="$work/data" XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache" XDG_RUNTIME_DIR="$work/run"
export QT_QPA_PLATFORM=xcb QT_QUICK_BACKEND=software SDL_AUDIODRIVER=dummy LC_ALL=C.UTF-8 # which xdotool types Arabic in
mkdir -m 700 "$XDG_RUNTIME_DIR"
started=()
finish() {
    local pid
    for pid in "${started[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap finish EXIT

fail() {
    echo "FAILED: $1" >&2
    [ -z "$pictures" ] || import -window root "$pictures/failed.png"
    exit 1
}
picture() { [ -z "$pictures" ] || import -window root -crop 1180x740+0+0 +repage "$pictures/$1.png"; }
count() { "$bin/tonequill-cli" list | wc -l; }
# until_true SECONDS COMMAND…: waits for the command to succeed.
until_true() {
    local tries=$(($1 * 10))
    shift
    while ! "$@"; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || return 1
        sleep 0.1
    done
}
# busy: milliseconds that the window's threads have run or waited for a core.
busy() { cat /proc/"$app"/task/*/schedstat 2> /dev/null | awk '{ sum += $1 + $2 } END { printf "%d", sum / 1e6 }' || true; }
# settle SECONDS: waits so long, and on until the window has next to nothing left
# to do, however slow the machine is. Not while it plays.
settle() {
    local before after tries=100
    sleep "$1"
    after=$(busy)
    while
        before=$after
        sleep 0.2
        after=$(busy)
        tries=$((tries - 1))
        [ $((after - before)) -gt 40 ] && [ "$tries" -gt 0 ]
    do :; done
}
# press KEY…: one key after another, each with its time.
press() {
    local key
    for key in "$@"; do
        xdotool key --clearmodifiers "$key"
        settle 0.1
    done
}
has_sounds() { [ "$(count)" = "$1" ]; }
window_is_there() { window=$(xdotool search --onlyvisible --name '^Tonequill$' 2>/dev/null | head -n 1) && [ -n "$window" ]; }
open_window() {
    "$bin/tonequill" "$@" &
    app=$!
    started+=("$app")
    until_true 20 window_is_there || fail "the window did not open"
    xdotool windowmove "$window" 0 0 windowsize "$window" 1180 740 windowactivate --sync "$window"
    settle 0.8
}
close_window() {
    xdotool windowactivate --sync "$window" key --clearmodifiers ctrl+q
    until_true 10 bash -c "! kill -0 $app 2>/dev/null" || fail "the window did not close"
}
# open_other TITLE X Y PROGRAM…: a helper's window beside ours; its id is in $other.
open_other() {
    local title=$1 x=$2 y=$3
    shift 3
    "$@" &
    other_pid=$!
    started+=("$other_pid")
    other_is_there() { other=$(xdotool search --onlyvisible --name "^$title\$" 2>/dev/null | head -n 1) && [ -n "$other" ]; }
    until_true 10 other_is_there || fail "$title did not open"
    xdotool windowmove --sync "$other" "$x" "$y"
    sleep 0.3
}
# pick_up X Y: presses there and moves far enough for a drag to begin.
pick_up() {
    xdotool mousemove "$1" "$2" mousedown 1 mousemove $(($1 - 10)) "$2" mousemove $(($1 - 20)) "$2"
    settle 0.1
}
# carry X Y…: moves on through these points.
carry() {
    while [ $# -gt 0 ]; do
        xdotool mousemove "$1" "$2"
        sleep 0.05
        shift 2
    done
    settle 0.2
}
let_go() { xdotool mouseup 1; }

# No window decorations, so that the window stands where it is put.
mkdir -p "$work/config/openbox"
cat > "$work/config/openbox/rc.xml" <<'XML'
<openbox_config xmlns="http://openbox.org/3.4/rc"><applications><application class="*"><decor>no</decor></application></applications></openbox_config>
XML
openbox --config-file "$work/config/openbox/rc.xml" &
started+=($!)
sleep 0.5
cd "$work"
