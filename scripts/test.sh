#!/usr/bin/env bash
# Builds the whole tree with ASan and UBSan and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
BUILD=${BUILD_DIR:-build-sanitize}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVTX_SANITIZE=ON
cmake --build "$BUILD" -j"$(nproc)"
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ctest --test-dir "$BUILD" --output-on-failure -j"$(nproc)"
