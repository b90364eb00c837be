#!/usr/bin/env bash
# Formats every C++ file of the tree; with --check changes nothing and fails if something would change.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(-i)
[ "${1:-}" = --check ] && mode=(--dry-run -Werror)
git ls-files -z '*.cpp' '*.h' | xargs -0 -r -n 40 -P "$(nproc)" clang-format "${mode[@]}"
