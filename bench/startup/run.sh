#!/usr/bin/env bash
# The start-up table: run.sh BUILD_DIRECTORY [RUNS]. Starts an X server and a home of its own; ends both.
set -euo pipefail
build=$1
runs=${2:-15}
here=$build/bench/startup
sheet=$build/assets/skin.bmp

home=$(mktemp -d)
trap 'kill "${server:-}" 2>/dev/null; rm -rf "$home"' EXIT
mkfifo "$home/display"
Xvfb -displayfd 5 -screen 0 1024x700x24 -noreset -nolisten tcp 5>"$home/display" 2>/dev/null &
server=$!
read -r number <"$home/display"

export DISPLAY=:$number HOME=$home XDG_DATA_HOME=$home/data XDG_CONFIG_HOME=$home/config XDG_RUNTIME_DIR=$home
unset SCREEN WAYLAND_DISPLAY
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"

programs=()
[ -x "$build/setup" ] && programs+=(setup "$build/setup")
programs+=("our plain window" "$here/plain_window $sheet $home/payload")
for peer in fltk sdl gtk qt; do
    programs+=("$peer" "$here/peer_$peer $sheet")
done
"$here/startup_watch" "$runs" "$sheet" "${programs[@]}"
