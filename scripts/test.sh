#!/usr/bin/env bash
# Everything that must hold, from nothing: style, warnings under two compilers, the tests plain and under the sanitizers,
# a short fuzzing of every reader, and the real installer on a real screen.   scripts/test.sh [step...]   to run some only
set -euo pipefail
cd "$(dirname "$0")/.."
export CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$(($(nproc) * 2))}
fuzz_seconds=${FUZZ_SECONDS:-10}

step() {
    local began=$SECONDS
    echo "== $1"
    "step_$1"
    echo "== $1: $((SECONDS - began)) s"
}

# build_and_test PRESET [test target...]: all of them, or only these.
build_and_test() {
    local preset=$1 only=()
    shift
    cmake --preset "$preset" >/dev/null
    if [ $# -gt 0 ]; then
        only=(-L "^($(printf '%s|' "$@" | sed 's/test_//g; s/platform_win32_/platform.win32./g; s/platform_mfc/platform.mfc/; s/tools_/tools./; s/|$//'))\$")
        cmake --build --preset "$preset" --target "$@"
    else
        cmake --build --preset "$preset"
    fi
    ctest --preset "$preset" -j "$CTEST_PARALLEL_LEVEL" "${only[@]}"
}

step_style() { scripts/format.sh --check; }
step_release() { build_and_test release; }
step_asan() { build_and_test asan; }
step_tsan() { # the rooms where threads meet, and what draws and runs on them
    build_and_test tsan test_platform_win32_{kernel,shell,screen,user,gdi,comctl,advapi,setupapi} test_platform_mfc \
        test_skinwnd test_setup test_client test_tools_skinview
}

# Builds all of ours with clang, too.
step_fuzz() {
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz
    local running=0 name
    mkdir -p build/fuzz/findings
    for target in build/fuzz/fuzz/fuzz_*; do
        name=$(basename "$target")
        # New inputs stay out of the tree; the corpus in it only grows by hand.
        mkdir -p "build/fuzz/corpus/$name"
        "$target" -max_total_time="$fuzz_seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=0 -verbosity=0 \
            -artifact_prefix="build/fuzz/findings/$name-" "build/fuzz/corpus/$name" "fuzz/corpus/${name#fuzz_}" \
            >"build/fuzz/$name.log" 2>&1 || { cat "build/fuzz/$name.log"; exit 1; } &
        running=$((running + 1))
        [ $((running % $(nproc))) -ne 0 ] || wait_all
    done
    wait_all
}
wait_all() { for pid in $(jobs -p); do wait "$pid"; done; }

# Reads the sources as the sanitizers' presets compile them, several in one: most of the time goes into the headers.
step_tidy() {
    cmake --preset asan >/dev/null
    sed -n 's/^ *"file": "\(.*\)",*$/\1/p' build/asan/compile_commands.json | sort -u |
        grep -vE '/(tests|examples)/|\.res\.cpp$' |
        xargs -n 2 -P "$(nproc)" clang-tidy -p build/asan --quiet 2>/dev/null
}

step_package() { scripts/package.sh; }

step_desktop() {
    env -u DISPLAY scripts/run.sh
    scripts/desktop-windows.sh
}

scripts/deps.sh
steps=("$@")
[ ${#steps[@]} -gt 0 ] || steps=(style release package asan tsan fuzz tidy desktop)
for name in "${steps[@]}"; do
    step "$name"
done
