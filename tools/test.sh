#!/usr/bin/env bash
# Builds and runs the whole suite under each preset given (default: default, asan, fuzz,
# win64-mingw and msi; fuzz builds the libFuzzer targets and runs each for
# ZINTRA_FUZZ_SECONDS (default 10) beyond the replay of every kept input that the normal
# and asan suites do; win64-mingw cross-builds the Windows host and runs its tests under
# Wine; msi builds the installer packages of both bitnesses and installs and removes them
# under Wine).
# The Windows presets run beside the Linux ones (ZINTRA_TEST_LANES=1: one after another):
# their tests spend most of their time waiting on Wine, which the Linux builds fill. Their
# output comes after the Linux presets' (from build/test-windows.log).
set -euo pipefail
cd "$(dirname "$0")/.."
presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(default asan fuzz win64-mingw msi)

# Exit 3 from the Windows scripts: a Wine tool failed outside the checks (its services now
# and then do not come up after a server restart); that run says nothing of our programs
# and is made once more. A failed check (exit 1) is never run again.
once_more_after_wine_failure() {
  local status=0
  "$@" || status=$?
  if [ $status = 3 ]; then
    echo "== $*: once more, after a failure of Wine's own =="
    "$@"
    return
  fi
  return $status
}

run_preset() {
  local preset=$1
  if [ "$preset" = win64-mingw ]; then
    once_more_after_wine_failure bash tools/test-windows.sh
    return
  fi
  if [ "$preset" = msi ]; then
    echo "== installer packages =="
    bash tools/build-msi.sh
    # With 32-bit Wine (ZINTRA_WINE32=1 bash tools/setup-debian.sh) the 32-bit DLL is loaded
    # by the 32-bit test host too.
    if dpkg-query -W -f='${Status}' wine32:i386 2>/dev/null | grep -q "install ok installed"; then
      cmake --build build/win32-mingw --target com_host_tests -j "$(nproc)"
    fi
    once_more_after_wine_failure bash tools/test-msi.sh
    return
  fi
  if [ "$preset" = fuzz ]; then
    bash tools/fuzz.sh "${ZINTRA_FUZZ_SECONDS:-10}"
    return
  fi
  echo "== preset $preset =="
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$(nproc)"
  ctest --preset "$preset"
}

linux=() windows=()
for preset in "${presets[@]}"; do
  case $preset in
    win64-mingw | msi) windows+=("$preset") ;;
    *) linux+=("$preset") ;;
  esac
done
if [ "${ZINTRA_TEST_LANES:-2}" = 1 ] || [ ${#linux[@]} = 0 ] || [ ${#windows[@]} = 0 ]; then
  for preset in "${presets[@]}"; do run_preset "$preset"; done
  exit 0
fi

mkdir -p build
windows_log=build/test-windows.log
# Each lane is a subshell of its own started with &, so that a failing step ends its lane
# (errexit holds there, as it would not in a subshell whose status is tested).
( for preset in "${windows[@]}"; do run_preset "$preset"; done ) >"$windows_log" 2>&1 &
windows_lane=$!
( for preset in "${linux[@]}"; do run_preset "$preset"; done ) &
linux_lane=$!
linux_status=0 windows_status=0
wait "$linux_lane" || linux_status=$?
wait "$windows_lane" || windows_status=$?
echo "== ${windows[*]} (ran beside the above; $windows_log) =="
cat "$windows_log"
[ $linux_status = 0 ] || echo "test.sh: ${linux[*]} failed" >&2
[ $windows_status = 0 ] || echo "test.sh: ${windows[*]} failed" >&2
[ $linux_status = 0 ] && [ $windows_status = 0 ]
