#!/usr/bin/env bash
# Builds and runs the whole suite under each preset given (default: default and asan).
set -euo pipefail
cd "$(dirname "$0")/.."
presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(default asan)
for preset in "${presets[@]}"; do
  echo "== preset $preset =="
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$(nproc)"
  ctest --preset "$preset"
done
