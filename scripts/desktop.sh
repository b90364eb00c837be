# Sourced by the scripts that run programs on a screen without a monitor: Xvfb, a home of its own, clicks and pictures.
# Everything that was started ends with the script.

work=$(mktemp -d)
end_desktop() {
    local pids
    pids=$(pgrep -f "^$work/home/" || true) # the client, should it still run
    kill ${pids:-} ${setup_pid:-} ${wm_pid:-} ${xvfb_pid:-} 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$work"
}

# start_desktop [WINDOW MANAGER, AND ITS ARGUMENTS]: a screen and a home; sets DISPLAY, HOME and the desktop's folders.
start_desktop() {
    trap end_desktop EXIT
    Xvfb -displayfd 3 -screen 0 1024x768x24 -noreset 3>"$work/display" 2>"$work/xvfb.log" &
    xvfb_pid=$!
    wait_for "a screen" test -s "$work/display"
    export DISPLAY=":$(cat "$work/display")"
    if [ -n "${1:-}" ]; then # with a home of its own: what it writes is not ours to account for
        mkdir -p "$work/wm"
        HOME=$work/wm XDG_CONFIG_HOME=$work/wm XDG_CACHE_HOME=$work/wm $1 >"$work/wm.log" 2>&1 &
        wm_pid=$!
        wait_for "$1" eval 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'
    fi
    export HOME=$work/home
    export XDG_DATA_HOME=$HOME/.local/share XDG_CONFIG_HOME=$HOME/.config XDG_STATE_HOME=$HOME/.local/state
    unset SCREEN ACP
    mkdir -p "$HOME"
}

# wait_for WHAT CONDITION...: until the condition holds; after 60 s the script fails, naming WHAT.
wait_for() {
    local what=$1 end=$((SECONDS + 60))
    shift
    until "$@" >/dev/null 2>&1; do
        if [ "$SECONDS" -ge "$end" ]; then
            echo "waited in vain for $what" >&2
            [ ! -e "$work/now.png" ] || cp "$work/now.png" build/pictures/failed.png
            return 1
        fi
        sleep 0.05 # between two looks: the screen and the disk have no descriptor in common to wait on
    done
}

window_of() { xdotool search --onlyvisible --pid "$1" 2>/dev/null | head -n 1 | grep .; }
client_window() { window_of "$(pgrep -f '^[^ ]*/Tesk/PelkVarnhal.exe' | head -n 1)"; }
shoot() { import -window "$1" "png:$2"; }
has_files() { [ "$(find "$XDG_DATA_HOME/Varnhal/Tesk" -type f | wc -l)" -ge "$1" ]; }

# click WINDOW X Y: where a person would, at that place of the window.
click() { xdotool mousemove --window "$1" "$2" "$3" click 1; }

# The names, kinds, permissions and contents of everything in the home.
state_of_home() {
    (cd "$HOME" && find . -printf '%p %y %m %l\n' | sort && find . -type f -print0 | sort -z | xargs -0 -r sha256sum)
}

end_client() {
    local pid
    for pid in $(pgrep -f '^[^ ]*/Tesk/PelkVarnhal.exe'); do
        [[ $(readlink "/proc/$pid/exe") != "$work"/* ]] || kill "$pid"
        while [ -e "/proc/$pid" ]; do sleep 0.05; done
    done
}
