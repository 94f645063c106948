# Shared by the scripts of this folder; sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1

die() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# run_quietly LOG COMMAND...: the command's output goes to LOG and is shown only when it fails.
run_quietly() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 && return 0
    local status=$?
    tail -n 200 "$log" >&2
    die "'$*' failed ($status); everything it said is in $log"
}

# build PRESET TARGET...
build() {
    local preset=$1
    shift
    local log=build/logs/$preset
    run_quietly "$log-configure.log" cmake --preset "$preset"
    run_quietly "$log-build.log" cmake --build --preset "$preset" --target "$@"
}

# start_display: an Xvfb of our own, gone when the script ends; sets DISPLAY.
start_display() {
    local pipe
    pipe=$(mktemp -u)
    mkfifo "$pipe"
    Xvfb -displayfd 3 -screen 0 "${1:-1280x800x24}" -nolisten tcp -noreset 3>"$pipe" >/dev/null 2>&1 &
    display_pid=$!
    local number
    read -r -t 30 number <"$pipe" || die "Xvfb does not start"
    rm -f "$pipe"
    export DISPLAY=:$number
}

stop_display() {
    [ -z "${display_pid:-}" ] || kill "$display_pid" 2>/dev/null
    display_pid=
}

# wait_for_text FILE TEXT SECONDS PID: until the file holds the text; fails when the process ends or time is up.
wait_for_text() {
    local tries=$(($3 * 10))
    until grep -qF -- "$2" "$1" 2>/dev/null; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] && kill -0 "$4" 2>/dev/null || return 1
        sleep 0.1
    done
}

# newest_site DIR: the site whose volume of reflectivity was written last, as its header names it.
newest_site() {
    local newest
    newest=$(find "$1" -maxdepth 1 -name '*.CAPZ' -printf '%T@ %p\n' | sort -n | tail -1 | cut -d' ' -f2-)
    [ -z "$newest" ] || dd if="$newest" bs=1 skip=422 count=16 status=none | tr -d '\0' | sed 's/ *$//' | tr '[:lower:]' '[:upper:]'
}

# make_demo [DATA_DIR]: prints the home directory of the demo installation, made at first use; with a directory, of one
# that shows the products of that directory.
make_demo() {
    if [ -n "${1:-}" ]; then
        local home=build/demo/given/home demo site path=${1//[&|\\]/\\&}
        demo=$(make_demo) || return 1
        site=$(newest_site "$1")
        mkdir -p "$home/.config"
        rm -rf "$home/.config/Halmera"
        cp -r "$demo/.config/Halmera" "$home/.config/" # its colours, style and views
        sed -i -e "/^geolayer=/d" -e "s|^data3d=.*|data3d=$path|" -e "s|^data2d=.*|data2d=$path|" -e "s|^livemode_site=.*|livemode_site=$site|" \
            "$home/.config/Halmera/TORV3D.conf"
        echo "$root/$home"
        return
    fi
    local site=build/demo/site
    if [ ! -e "$site/home/.config/Halmera/TORV3D.conf" ]; then
        rm -rf "$site"
        run_quietly build/logs/demo.log build/release/tools/radarsim/torv3dsim --out "$site" --hours 1
    fi
    echo "$root/$site/home"
}

# wait_until_still LOG: until the viewer has drawn all that it wants to draw.
wait_until_still() {
    local before= now
    now=$(wc -l <"$1")
    until [ "$now" = "$before" ]; do
        sleep 1
        before=$now
        now=$(wc -l <"$1")
    done
}

# look_aslant: turns the scene on the display with the keys of its camera.
look_aslant() {
    xdotool mousemove 760 440 click 1
    xdotool key --repeat 105 --delay 5 shift+Up
    xdotool key --repeat 55 --delay 5 shift+Right
    xdotool key --repeat 16 --delay 5 plus
}

# take_screenshot HOME FILE [VIEWER OPTION...]: what the window shows once its picture has come to rest.
take_screenshot() {
    local home=$1 picture=$2 log=build/demo/viewer.log
    shift 2
    mkdir -p build/demo "$(dirname "$picture")"
    start_display 1280x800x24
    : >"$log" # what an earlier viewer said must not be waited for
    HOME=$home XDG_CONFIG_HOME='' build/release/src/torv3dview --loglevel=3 "$@" >"$log" 2>&1 &
    local viewer=$!
    if ! wait_for_text "$log" "..total visualization time" 120 "$viewer"; then
        kill "$viewer" 2>/dev/null
        cat "$log" >&2
        die "the viewer shows no picture"
    fi
    wait_until_still "$log"
    if ! grep -q '^\[VIEWANGLE\]' "$home/.config/Halmera/TORV3D.conf"; then
        look_aslant # the view is not one that was saved
        wait_until_still "$log"
    fi
    QT_LOGGING_RULES='*=false' build/release/tools/screengrab/torv3dgrab "$picture" || die "no screenshot"
    kill "$viewer" 2>/dev/null
    stop_display
    echo "$picture"
}
