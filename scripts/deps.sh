#!/usr/bin/env bash
# Installs what building, testing and running need on Debian 12: the one list of packages. Only what is missing is
# installed, as root or by sudo.   scripts/deps.sh [bench] [desktop]   with the peers that the benches measure against,
# with the window managers that windows are tried on
set -euo pipefail

build=(
    g++ cmake ninja-build pkg-config            # the compiler and the build
    clang clang-format clang-tidy               # second compiler, fuzzing, style
    libclang-rt-14-dev                          # clang's sanitizers and libFuzzer
    llvm-14                                     # llvm-rc: compiles resource scripts
    libxcb1-dev libxcb-shm0-dev libxcb-shape0-dev libxcb-randr0-dev libxcb-cursor-dev # the display
    libpixman-1-dev libpango1.0-dev             # regions and fills, text
    libsqlite3-dev                              # the registry
    libmspack-dev                               # reads the cabinet
    libgcab-dev libarchive-dev                  # makes the cabinet, and reads it once more to prove it
    librsvg2-dev                                # the pages are drawn from SVG
)
test=(
    libgtest-dev
    libxcb-xtest0-dev libxcb-damage0-dev        # real input and watching the screen
    xvfb xdotool openbox x11-utils x11-xserver-utils imagemagick  # a screen without a monitor, clicks, pictures of it
    sqlite3 desktop-file-utils strace cabextract procps
    dpkg-dev file                               # the .deb, and what it depends on
    fonts-dejavu-core fonts-wqy-zenhei          # what the pictures of text in tests are made with
)
bench=(
    libbenchmark-dev libfltk1.3-dev libsdl2-dev libgtk-3-dev qtbase5-dev
    libtinyxml2-dev libpugixml-dev libboost-serialization-dev
)

desktop=(
    openbox metacity i3-wm                      # window managers: two that stack, one that tiles
    xfwm4 xfconf dbus-daemon                    # a third that stacks, and what it asks for its settings
)

wanted=("${build[@]}" "${test[@]}")
for list in "$@"; do
    case $list in
    bench) wanted+=("${bench[@]}") ;;
    desktop) wanted+=("${desktop[@]}") ;;
    *) echo "no such list: $list" >&2 && exit 1 ;;
    esac
done

missing=()
for package in "${wanted[@]}"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
export DEBIAN_FRONTEND=noninteractive
echo "installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
