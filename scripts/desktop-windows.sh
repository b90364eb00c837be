#!/usr/bin/env bash
# Our windows on real desktops, a plain one and the gallery: without a window manager and with openbox, xfwm4, metacity
# and i3, each on an Xvfb of its own, driven by xdotool and checked on the screen. Then what a drag and an idle window
# cost.
#   scripts/desktop-windows.sh [filter]   runs some of it, as --gtest_filter does
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh desktop
cmake --preset release >/dev/null
cmake --build --preset release --target test_desktop
test=$PWD/build/release/tests/desktop/test_desktop
if [ $# -gt 0 ]; then
    exec "$test" --gtest_filter="$1"
fi

# In several processes, since most of it is waiting for programs to start.
export GTEST_TOTAL_SHARDS=4
running=()
for ((i = 0; i < GTEST_TOTAL_SHARDS; i++)); do
    GTEST_SHARD_INDEX=$i "$test" --gtest_brief=1 --gtest_filter=-'*Speed*' &
    running+=($!)
done
good=yes
for process in "${running[@]}"; do
    wait "$process" || good=no
done
unset GTEST_TOTAL_SHARDS
"$test" --gtest_brief=1 --gtest_filter='*Speed*' || good=no # alone: it is measured
[ "$good" = yes ]
