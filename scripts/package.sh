#!/usr/bin/env bash
# Makes what is handed out, in build/package/: the library's .deb (shared library, headers, CMake package, skinview) and
# the installer, one executable. Then proves it: the .deb is unpacked into a folder of its own, every header in it
# compiles alone, and the example is built against it, with the library in its own build, too, and run off screen.
#   scripts/package.sh
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
package=$PWD/build/package
rm -rf "$package"
cmake --preset release >/dev/null
cmake --build --preset release --target pelkgui_shared skinview setup
(cd build/release && cpack >/dev/null)
rm -rf "$package/_CPack_Packages"
cp build/release/setup "$package/"
deb=$(ls "$package"/*.deb)
dpkg-deb --field "$deb" Package Version Depends Recommends

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
dpkg-deb --extract "$deb" "$work/root"

(cd "$work/root/usr/include/pelkgui" && find . -name '*.h' -printf '%P\n') | sort >"$work/headers"
grep -E '^(xml|look|skin|skinwnd)/|^[a-z0-9]+\.h$' "$work/headers" | xargs -P "$(nproc)" -I HEADER sh -c \
    "echo '#include <HEADER>' | g++ -std=c++20 -fsyntax-only -Wall -Wextra -Werror -I '$work/root/usr/include/pelkgui' -xc++ -"
echo "headers: $(wc -l <"$work/headers"), each that programs include compiles alone"

# prove_example HOW CMAKE OPTION...: the window shows its skin: border, close button, inside, border.
wanted='2,2 2F8F92
297,7 EEF3F2
10,40 FFFFFF
318,198 2F8F92'
prove_example() {
    local how=$1 build=$work/$1 got
    shift
    cmake -S examples/hello -B "$build" -G Ninja "$@" >/dev/null
    cmake --build "$build" --target hello >"$build/log" || { cat "$build/log" && return 1; }
    mkdir "$build/home"
    got=$(env -u DISPLAY HOME="$build/home" XDG_CONFIG_HOME="$build/home" XDG_DATA_HOME="$build/home" SCREEN=memory \
        timeout 20 "$build/hello" --pixels)
    [ "$got" = "$wanted" ] || { diff <(echo "$wanted") <(echo "$got") && return 1; }
    echo "example, by $how: shows its skin"
}
prove_example find_package -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$work/root/usr"
readelf -d "$work/find_package/hello" | grep -q 'NEEDED.*libpelkgui\.so'
# As quickly as the compilers can: unoptimised, and many sources at once, as the presets with sanitizers have them.
prove_example add_subdirectory -DPELKGUI_SOURCE="$PWD" -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=6
if readelf -d "$work/add_subdirectory/hello" | grep -q 'NEEDED.*libpelkgui'; then exit 1; fi

(cd examples/hello && env -u DISPLAY "$work/root/usr/bin/skinview" --check --res 131=hello.bmp hello.xml)

# What the installer asks of a system; README names the packages.
readelf -d build/release/setup | sed -n 's/.*NEEDED.*\[\(.*\)\]/\1/p' >"$work/needed"
echo "the installer needs: $(tr '\n' ' ' <"$work/needed")"
while read -r library; do
    grep -qF "$library" README.md || { echo "README does not name $library" >&2 && exit 1; }
done <"$work/needed"
ls -l "$package"
