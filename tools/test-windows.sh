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

# Forms, dialogs, message boxes and the tray icon need a desktop: their suites (named
# *OnDesktop, skipped above) run again under a virtual X server, with a Wine virtual
# desktop so that each tray-icon delete does not wait two seconds.
if command -v xvfb-run >/dev/null; then
  timeout 60 wine reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null
  timeout 60 wine reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d 1024x768 /f >/dev/null
  wineserver -k || true
  while IFS= read -r test; do
    echo "== $(basename "$test") (desktop) =="
    if ! timeout 300 xvfb-run -a sh -c \
        "wine '$test' --gtest_brief=1 --gtest_filter='*OnDesktop*'; rc=\$?; wineserver -k; exit \$rc"; then
      echo "FAILED: $test (desktop)"
      failed=1
    fi
  done < <(find "$build/tests/win32" -name '*_tests.exe' | sort)
else
  echo "xvfb-run is missing: the *OnDesktop suites were skipped"
fi
exit $failed
