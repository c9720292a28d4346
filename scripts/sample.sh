#!/usr/bin/env bash
# Builds the tool and runs its main job on the built-in sample outline.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
BUILD=${BUILD_DIR:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVTX_BUILD_TESTS=OFF -DVTX_BUILD_BENCH=OFF >/dev/null
cmake --build "$BUILD" --target otlctl -j"$(nproc)" >/dev/null
if "$BUILD/tools/otlctl/otlctl" --help | grep -q '^  sample'; then
  exec "$BUILD/tools/otlctl/otlctl" sample
fi
exec "$BUILD/tools/otlctl/otlctl" new
