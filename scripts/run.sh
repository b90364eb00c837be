#!/usr/bin/env bash
# Builds the installer and runs it. With a DISPLAY it simply opens. Without one it is installed for show: on a screen of
# its own (Xvfb), in a home of its own, with real clicks; every number is then checked and pictures are saved.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target setup
setup=$PWD/build/release/setup
if [ -n "${DISPLAY:-}" ]; then
    exec "$setup"
fi

source scripts/desktop.sh
pages=$PWD/build/release/assets/skin.bmp
pictures=$PWD/build/pictures
mkdir -p "$pictures"
start_desktop

# shows_page N [part]: the window shows page picture N, pixel for pixel: whole, or in this part of it.
shows_page() {
    local part=${2:-510x349+0+0}
    shoot "$window" "$work/now.png"
    convert "$pages" -crop "510x349+0+$(($1 * 349))" +repage -crop "$part" +repage "$work/wanted.png"
    convert "$work/now.png" -crop "$part" +repage "$work/shown.png"
    [ "$(compare -metric AE "$work/wanted.png" "$work/shown.png" null: 2>&1)" = 0 ]
}
above_what_moves=510x140+0+0
pixel() { convert "$work/now.png" -format "%[hex:p{$1,$2}]" info:; }
# The sixth square, and the middle of the bar, are there once their place has another colour than on the page.
shows_squares() { shows_page 0 "$above_what_moves" && [ "$(pixel 233 180)" = 339FFE ]; }
shows_half_the_bar() { shows_page 2 "$above_what_moves" && [ "$(pixel 252 262)" != "$(pixel 470 262)" ]; }

began=$(date +%s%N)
"$setup" &
setup_pid=$!
wait_for "the window" window_of "$setup_pid"
window=$(window_of "$setup_pid")
wait_for "the busy squares" shows_squares
cp "$work/now.png" "$pictures/1-checking.png"
wait_for "the ready page" shows_page 1
cp "$work/now.png" "$pictures/2-ready.png"
click "$window" 340 303
job_began=$(date +%s%N)
wait_for "half of the bar" shows_half_the_bar
cp "$work/now.png" "$pictures/3-installing.png"
wait_for "the finished page" shows_page 3
job_ended=$(date +%s%N)
cp "$work/now.png" "$pictures/4-finished.png"
peak=$(awk '/VmHWM/ { print $2 }' "/proc/$setup_pid/status")
click "$window" 340 303
wait "$setup_pid"
echo "installer: exit code 0, peak memory $peak kB"
wait_for "the client" client_window
wait_for "the client's picture" shoot "$(client_window)" "$pictures/5-client.png"

good=yes
scripts/check-install.sh || good=no
awk -v all=$(($(date +%s%N) - began)) -v job=$((job_ended - job_began)) \
    'BEGIN { printf "elapsed: %.2f s in all, %.2f s from the click on install to the last page\n", all / 1e9, job / 1e9 }'
echo "pictures:"
printf '  %s\n' "$pictures"/*.png
[ "$good" = yes ]
