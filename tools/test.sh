#!/usr/bin/env bash
# Builds and runs the whole suite under each preset given (default: default, asan, fuzz,
# win64-mingw and msi; fuzz builds the libFuzzer targets and runs each for
# ZINTRA_FUZZ_SECONDS (default 10) beyond the replay of every kept input that the normal
# and asan suites do; win64-mingw cross-builds the Windows host and runs its tests under
# Wine; msi builds the installer packages of both bitnesses and installs and removes them
# under Wine).
set -euo pipefail
cd "$(dirname "$0")/.."
presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(default asan fuzz win64-mingw msi)
for preset in "${presets[@]}"; do
  if [ "$preset" = win64-mingw ]; then
    bash tools/test-windows.sh
    continue
  fi
  if [ "$preset" = msi ]; then
    echo "== installer packages =="
    bash tools/build-msi.sh
    # With 32-bit Wine (ZINTRA_WINE32=1 bash tools/setup-debian.sh) the 32-bit DLL is loaded
    # by the 32-bit test host too.
    if dpkg-query -W -f='${Status}' wine32:i386 2>/dev/null | grep -q "install ok installed"; then
      cmake --build build/win32-mingw --target com_host_tests -j "$(nproc)"
    fi
    bash tools/test-msi.sh
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
