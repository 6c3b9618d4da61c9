#!/usr/bin/env bash
# Builds the Windows host with mingw-w64 and runs its test programs under Wine.
# Usage: tools/test-windows.sh [build-dir]   (default build/win64-mingw)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/win64-mingw}
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPREFIX=${WINEPREFIX:-$PWD/$build/wine-prefix}

echo "== preset win64-mingw ($build) =="
cmake --preset win64-mingw -B "$build" >/dev/null
cmake --build "$build" -j "$(nproc)"

# A fresh prefix each run: registration tests must start from a known registry.
rm -rf "$WINEPREFIX"
timeout 120 wineboot -i >/dev/null 2>&1 || true
# A crash must end the run at once instead of waiting on a dialog.
timeout 60 wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null

failed=0
while IFS= read -r test; do
  echo "== $(basename "$test") =="
  if ! timeout 300 wine "$test" --gtest_brief=1; then
    echo "FAILED: $test"
    failed=1
  fi
done < <(find "$build/tests/win32" -name '*_tests.exe' | sort)
wineserver -k || true
exit $failed
