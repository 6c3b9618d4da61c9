#!/usr/bin/env bash
# Builds ZintraAddin.dll and the Windows benches with mingw-w64 and runs them under Wine:
# addin_startup_bench loads the registered DLL through COM, as Outlook does, and times
# its start-up and shut-down over a large served profile. Not a test: tools/test-windows.sh
# does not run it. Google Benchmark's flags pass through (--benchmark_format=json, ...).
# Usage: tools/bench-windows.sh [benchmark flags...]   (build dir: $ZINTRA_WIN_BUILD,
# default build/win64-mingw)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${ZINTRA_WIN_BUILD:-build/win64-mingw}
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
# A prefix of its own, so that the test prefix's registry is left as it was.
export WINEPREFIX=${WINEPREFIX:-$PWD/$build/wine-bench-prefix}

cmake --preset win64-mingw -B "$build" >/dev/null
cmake --build "$build" --target ZintraAddin addin_startup_bench -j "$(nproc)"
bench="$build/bench/win32/addin_startup_bench.exe"
[[ -f $bench ]] || { echo "bench-windows: $bench was not built (Google Benchmark's sources missing? tools/fetch-benchmark.sh)" >&2; exit 1; }

if [[ ! -d $WINEPREFIX ]]; then
  timeout 120 wineboot -i >/dev/null 2>&1 || true
  timeout 60 wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null
  # The add-in's hidden windows need a desktop: a virtual one under a virtual X server.
  timeout 60 wine reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null
  timeout 60 wine reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d 1024x768 /f >/dev/null
fi

# Registered per user, as a user installs it; Wine 8 resolves classes from HKLM only,
# so the class keys are copied there (as tools/test-windows.sh does), and removed after.
addin_dll=$(winepath -w "$build/win32/addin/ZintraAddin.dll")
timeout 60 wine regsvr32 /s "$addin_dll"
class_keys=(ZintraAddin.Connect ZintraAddin.WordLetterHandler)
for prog_id in ZintraAddin.Connect ZintraAddin.WordLetterHandler; do
  clsid=$(timeout 60 wine reg query "HKCU\\Software\\Classes\\$prog_id\\CLSID" /ve \
    | grep -o "{[0-9A-Fa-f-]*}" | head -1 || true)
  class_keys+=("CLSID\\$clsid")
done
for key in "${class_keys[@]}"; do
  timeout 60 wine reg copy "HKCU\\Software\\Classes\\$key" "HKLM\\Software\\Classes\\$key" /s /f >/dev/null
done
cleanup() {
  timeout 60 wine regsvr32 /s /u "$addin_dll" || true
  for key in "${class_keys[@]}"; do
    timeout 60 wine reg delete "HKLM\\Software\\Classes\\$key" /f >/dev/null 2>&1 || true
  done
  wineserver -k || true
}
trap cleanup EXIT
wineserver -k || true  # the bench's own server starts with its display

quoted=""
(($# > 0)) && quoted=$(printf " '%s'" "$@")
if command -v xvfb-run >/dev/null; then
  timeout 900 xvfb-run -a sh -c "wine '$bench'$quoted; rc=\$?; wineserver -k; exit \$rc"
else
  timeout 900 wine "$bench" "$@"
fi
