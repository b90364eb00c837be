#!/usr/bin/env bash
# Builds the installer and runs it. With a DISPLAY it simply opens. Without one it is installed for show: on a screen of
# its own (Xvfb), in a home of its own, with real clicks, and taken away again; everything is checked on the way, and
# pictures are saved.   RUN_WM=openbox scripts/run.sh   under a window manager (or metacity, "dbus-run-session -- xfwm4")
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
skin=$PWD/build/release/assets/skin.bmp
pictures=$PWD/build/pictures
mkdir -p "$pictures"
start_desktop "${RUN_WM:-}"

# looks WxH+X+Y X Y: this part of the window shows the skin's picture from X, Y on, pixel for pixel.
looks() {
    shoot "$window" "$work/now.png"
    convert "$work/now.png" -crop "$1" +repage "$work/shown.png"
    convert "$skin" -crop "${1%%+*}+$2+$3" +repage "$work/wanted.png"
    [ "$(compare -metric AE "$work/wanted.png" "$work/shown.png" null: 2>&1)" = 0 ]
}
page() { looks 510x349+0+0 0 $(($1 * 349)); }
upper_part_of_page() { looks 510x140+0+0 0 $(($1 * 349)); }
pixel() { convert "$work/now.png" -format "%[hex:p{$1,$2}]" info:; }
# How many pixels of that colour are in that part of a picture.
count() { convert "$1" -crop "$2" +repage -fill black +opaque "$3" -fill white -opaque "$3" -format "%[fx:round(mean*w*h)]" info:; }
part_of_the_bar() {
    upper_part_of_page 2 && [ "$(pixel 60 262)" = "$(pixel 30 262)" ] && [ "$(pixel 470 262)" != "$(pixel 30 262)" ] &&
        [ "$(count "$work/now.png" 370x14+100+240 '#666666')" -ge 3 ]
}
keep() { cp "$work/now.png" "$pictures/$1.png"; }
now() { date +%s%N; }
move_to() { xdotool mousemove --window "$window" "$1" "$2"; }

# Starts the installer and waits for its window.
open_setup() {
    "$setup" &
    setup_pid=$!
    wait_for "the window" window_of "$setup_pid"
    window=$(window_of "$setup_pid")
}

# ends_with_error NUMBER: the checking page names it and offers the exit alone.
ends_with_error() {
    open_setup
    wait_for "the exit of error $1" looks 78x30+392+288 392 637
    [ "$(count "$work/now.png" 300x30+128+185 '#FF0000')" -ge 100 ]
    [ "$(pixel 340 303)" = F4F7FA ] # no install button
    keep "error-$1"
    click "$window" 430 303
    wait "$setup_pid"
    echo "error $1: shown in red, exit code 0"
}

# Films the checking page, then tells how many squares it had when. Never more than 12, never fewer than before.
film_checking() {
    local began frame squares before=0 told=
    began=$(now)
    while [ $(($(now) - began)) -lt 3000000000 ]; do
        import -window "$window" "ppm:$work/frame-$((($(now) - began) / 1000000)).ppm"
    done
    for frame in $(ls "$work" | sed -n 's/^frame-//p' | sort -n); do
        squares=$(($(count "$work/frame-$frame" 260x1+128+180 '#339FFE') / 10))
        [ "$squares" -ne 7 ] || convert "$work/frame-$frame" "$pictures/1-checking.png"
        [ "$squares" -ne 0 ] || [ "$before" -eq 0 ] || break # the page was turned
        [ "$squares" -ge "$before" ] && [ "$squares" -le 12 ]
        [ "$squares" -eq "$before" ] || told+=" $squares@${frame%.ppm}"
        before=$squares
    done
    echo "busy squares at ms:$told"
    [ "$before" -ge 8 ] # the camera is slow, but not that slow
}

for own in notes.txt .config/other/settings .local/share/other/data; do # as in any home
    mkdir -p "$(dirname "$HOME/$own")"
    echo "mine" >"$HOME/$own"
done
home_before=$(state_of_home)

began=$(now)
open_setup
film_checking
wait_for "the ready page" page 1
keep 2-ready
move_to 340 303
wait_for "install to answer the mouse" looks 78x30+302+288 20 1396
keep 2-ready-hovered
xdotool mousedown 1
wait_for "install to look pressed" looks 78x30+302+288 302 637
move_to 200 200
xdotool mouseup 1
wait_for "nothing to come of a release elsewhere" page 1
click "$window" 352 309 # not where it was pressed: that would be a double click
job_began=$(now)
wait_for "a part of the bar and a file's name" part_of_the_bar
keep 3-installing
wait_for "the finished page" page 3
job_ended=$(now)
keep 4-finished
for y in 146 174; do
    click "$window" 37 $((y + 6))
    wait_for "the box to be empty" looks "13x13+31+$y" 370 1396
    keep "4-finished-$y-off"
    click "$window" 41 $((y + 10)) # not there again: that would be a double click
    wait_for "the box to be ticked" looks "13x13+31+$y" 350 1396
done
peak=$(awk '/VmHWM/ { print $2 }' "/proc/$setup_pid/status")
click "$window" 340 303
wait "$setup_pid"
echo "installer: exit code 0, peak memory $peak kB"
wait_for "the client" client_window
wait_for "the client's picture" shoot "$(client_window)" "$pictures/5-client.png"

good=yes
size=$(stat -c %s "$setup")
over=$((size - $(stat -c %s "$XDG_DATA_HOME/Varnhal/Update/TeskSetup")))
echo "installer: $size bytes, $over more than its payload"
[ "$over" -le 3000000 ] || good=no
scripts/check-install.sh || good=no
awk -v all=$(($(now) - began)) -v job=$((job_ended - job_began)) \
    'BEGIN { printf "elapsed: %.2f s in all, %.2f s from the click on install to the last page\n", all / 1e9, job / 1e9 }'

end_client
"$XDG_DATA_HOME/Varnhal/Tesk/Uninstall.exe" --yes || good=no
if [ "$(state_of_home)" = "$home_before" ]; then
    echo "home after Uninstall: as it was, bit for bit"
else
    diff <(echo "$home_before") <(state_of_home) || true
    good=no
fi

mkdir -p "$XDG_DATA_HOME"
touch "$XDG_DATA_HOME/Varnhal"
ends_with_error 1001
rm "$XDG_DATA_HOME/Varnhal"
mkdir -p "$XDG_DATA_HOME/Varnhal/Update/TeskSetup/folder"
ends_with_error 1002
echo "pictures:"
printf '  %s\n' "$pictures"/*.png
[ "$good" = yes ]
