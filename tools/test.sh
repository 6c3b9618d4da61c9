#!/usr/bin/env bash
# Builds and runs the whole suite under each preset given (default: default, asan and
# win64-mingw; the last cross-builds the Windows host and runs its tests under Wine).
# "fuzz" builds the libFuzzer targets and runs each for ZINTRA_FUZZ_SECONDS (default 10);
# the normal and asan suites already replay every kept fuzz input.
set -euo pipefail
cd "$(dirname "$0")/.."
presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(default asan win64-mingw)
for preset in "${presets[@]}"; do
  if [ "$preset" = win64-mingw ]; then
    bash tools/test-windows.sh
    continue
  fi
  if [ "$preset" = fuzz ]; then
    bash tools/fuzz.sh "${ZINTRA_FUZZ_SECONDS:-10}"
    continue
  fi
  echo "== preset $preset =="
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$(nproc)"
  ctest --preset "$preset"
done
