#!/usr/bin/env bash
# Builds the Windows host with mingw-w64 and runs its test programs under Wine.
# Usage: tools/test-windows.sh [build-dir]   (default build/$ZINTRA_WINDOWS_PRESET)
# ZINTRA_WINDOWS_PRESET: win64-mingw (default), or win32-mingw for the 32-bit programs,
# which need 32-bit Wine (ZINTRA_WINE32=1 bash tools/setup-debian.sh).
set -Eeuo pipefail
cd "$(dirname "$0")/.."
source tools/wine-steps.sh
preset=${ZINTRA_WINDOWS_PRESET:-win64-mingw}
build=${1:-build/$preset}
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPREFIX=${WINEPREFIX:-$PWD/$build/wine-prefix}

echo "== preset $preset ($build) =="
# A failed build is ours, not Wine's: it ends the run with exit 1, never tried again.
cmake --preset "$preset" -B "$build" >/dev/null || exit 1
cmake --build "$build" -j "$(nproc)" || exit 1

# A fresh prefix each run: registration tests must start from a known registry.
rm -rf "$WINEPREFIX"
timeout 120 wineboot -i >/dev/null 2>&1 || true
# A crash must end the run at once instead of waiting on a dialog.
wine_reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null

# Test programs that load the add-in, the options page control or the toolbar library
# through COM, as Outlook does: they run once ZintraAddin.dll, ZintraControls.ocx,
# Quillbar.dll and ZintraKeepAlive.exe are registered (below), the keep-alive program's own
# tests (which register it themselves) once COM's services can start, the others on a
# registry without them.
registered_tests=" com_host_tests options_page_tests toolbar_library_tests "
own_registration_tests=" keep_alive_tests "
needs_registration() { [[ "$registered_tests$own_registration_tests" == *" $(basename "$1" .exe) "* ]]; }

failed=0
while IFS= read -r test; do
  needs_registration "$test" && continue
  echo "== $(basename "$test") =="
  if ! timeout 300 wine "$test" --gtest_brief=1; then
    echo "FAILED: $test"
    failed=1
  fi
done < <(find "$build/tests/win32" -name '*_tests.exe' | sort)
wineserver -k || true

# COM's services (the running object table, local servers) start in a prefix only once
# its first server has been restarted, as it was just now; now and then Wine's service
# still fails to come up (every call into it then fails or waits), so a failed run is
# tried once more with a new server.
for name in $own_registration_tests; do
  test="$build/tests/win32/keepalive/$name.exe"
  echo "== $name =="
  if ! timeout 300 wine "$test" --gtest_brief=1; then
    echo "== $name, once more with a new Wine server =="
    wineserver -k || true
    if ! timeout 300 wine "$test" --gtest_brief=1; then
      echo "FAILED: $test"
      failed=1
    fi
  fi
done
wineserver -k || true

# Forms, dialogs, message boxes and the tray icon need a desktop: their suites (named
# *OnDesktop, skipped above) run again under a virtual X server, with a Wine virtual
# desktop so that each tray-icon delete does not wait two seconds.
if command -v xvfb-run >/dev/null; then
  wine_reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null
  wine_reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d 1024x768 /f >/dev/null
  wineserver -k || true; wineserver -w || true
  while IFS= read -r test; do
    needs_registration "$test" && continue
    # A program without such a suite (its names are strings in the program) is not started
    # again: each start of Wine under a new X server costs seconds.
    grep -q -a OnDesktop "$test" || continue
    echo "== $(basename "$test") (desktop) =="
    if ! timeout 300 xvfb-run -a sh -c \
        "wine '$test' --gtest_brief=1 --gtest_filter='*OnDesktop*'; rc=\$?; wineserver -k; wineserver -w; exit \$rc"; then
      echo "FAILED: $test (desktop)"
      failed=1
    fi
  done < <(find "$build/tests/win32" -name '*_tests.exe' | sort)
else
  echo "xvfb-run is missing: the *OnDesktop suites were skipped"
fi

# The add-in registered as a user installs it: regsvr32 (per user, no administrator
# rights). Wine 8 resolves classes from HKLM\Software\Classes only, so the class keys are
# copied there for the tests, which run on the virtual desktop (the add-in makes hidden
# windows) when there is one. Afterwards regsvr32 /u and the removal of the copies must
# leave the keys registration touches exactly as they were.
reg_snapshot() {
  mkdir -p "$1"
  local key
  for key in 'HKCU\Software\Classes' 'HKCU\Software\Microsoft' 'HKLM\Software\Classes'; do
    timeout 60 wine reg export "$key" "$1/${key//\\/_}.reg" /y >/dev/null 2>&1 \
      || echo "absent" >"$1/${key//\\/_}.reg"
  done
}
addin_dll=$(winepath -w "$build/win32/addin/ZintraAddin.dll")
controls_ocx=$(winepath -w "$build/win32/controls/ZintraControls.ocx")
page_picture=$(winepath -w "$build")\\options-page.bmp
keep_alive_exe="$build/win32/keepalive/ZintraKeepAlive.exe"
toolbar_dll=$(winepath -w "$build/win32/toolbar_library/Quillbar.dll")
registry_before="$build/registry-before"
registry_after="$build/registry-after"
rm -rf "$registry_before" "$registry_after"
reg_snapshot "$registry_before"
echo "== regsvr32 ZintraAddin.dll ZintraControls.ocx Quillbar.dll, ZintraKeepAlive.exe /RegServer =="
if timeout 60 wine regsvr32 /s "$addin_dll" \
    && timeout 60 wine regsvr32 /s "$controls_ocx" \
    && timeout 60 wine regsvr32 /s "$toolbar_dll" \
    && wine_reg query 'HKCU\Software\Microsoft\Office\Outlook\Addins\ZintraAddin.Connect' \
      /v LoadBehavior >/dev/null \
    && timeout 60 wine "$keep_alive_exe" /RegServer; then
  prog_ids=(ZintraAddin.Connect ZintraAddin.WordLetterHandler ZintraControls.OutlookPropertiesPage
    ZintraKeepAlive.KeepAlive Quillbar.ToolbarHelper)
  class_keys=("${prog_ids[@]}")
  for prog_id in "${prog_ids[@]}"; do
    clsid=$(wine_reg query "HKCU\\Software\\Classes\\$prog_id\\CLSID" /ve \
      | grep -o "{[0-9A-Fa-f-]*}" | head -1 || true)
    class_keys+=("CLSID\\$clsid")
  done
  for key in "${class_keys[@]}"; do
    wine_reg copy "HKCU\\Software\\Classes\\$key" "HKLM\\Software\\Classes\\$key" /s /f \
      >/dev/null
  done
  # Each test's own server starts with its display: the one the registration started,
  # and each test's before the next, must be gone first, or a test joins it and finds
  # no display (and skips its desktop suites).
  wineserver -k || true; wineserver -w || true
  while IFS= read -r test; do
    [[ "$registered_tests" == *" $(basename "$test" .exe) "* ]] || continue
    echo "== $(basename "$test") =="
    if command -v xvfb-run >/dev/null; then
      run=(xvfb-run -a sh -c "wine '$test' --gtest_brief=1; rc=\$?; wineserver -k; wineserver -w; exit \$rc")
    else
      run=(wine "$test" --gtest_brief=1)
    fi
    # The options page's tests leave a picture of the page (as docs/options-page.png).
    if ! ZINTRA_REQUIRE_ADDIN=1 ZINTRA_PAGE_SNAPSHOT="$page_picture" timeout 300 "${run[@]}"; then
      echo "FAILED: $test"
      failed=1
    fi
  done < <(find "$build/tests/win32" -name '*_tests.exe' | sort)
  if [[ -f "$build/options-page.bmp" ]]; then
    python3 tools/bmp2png.py "$build/options-page.bmp" "$build/options-page.png" \
      && echo "the options page as the tests left it: $build/options-page.png"
  fi
  echo "== regsvr32 /u ZintraAddin.dll =="
  timeout 60 wine regsvr32 /s /u "$addin_dll" || { echo "FAILED: regsvr32 /u"; failed=1; }
  echo "== regsvr32 /u ZintraControls.ocx =="
  timeout 60 wine regsvr32 /s /u "$controls_ocx" || { echo "FAILED: regsvr32 /u ocx"; failed=1; }
  echo "== ZintraKeepAlive.exe /UnregServer =="
  timeout 60 wine "$keep_alive_exe" /UnregServer || { echo "FAILED: /UnregServer"; failed=1; }
  echo "== regsvr32 /u Quillbar.dll =="
  timeout 60 wine regsvr32 /s /u "$toolbar_dll" || { echo "FAILED: regsvr32 /u Quillbar.dll"; failed=1; }
  for key in "${class_keys[@]}"; do
    timeout 60 wine reg delete "HKLM\\Software\\Classes\\$key" /f >/dev/null 2>&1 || true
  done
  reg_snapshot "$registry_after"
  if ! diff -r "$registry_before" "$registry_after" >/dev/null; then
    echo "FAILED: the registry differs after removing the add-in:"
    for f in "$registry_before"/*.reg; do
      diff <(iconv -f UTF-16 -t UTF-8 "$f" 2>/dev/null || cat "$f") \
        <(iconv -f UTF-16 -t UTF-8 "$registry_after/$(basename "$f")" 2>/dev/null \
          || cat "$registry_after/$(basename "$f")") | head -20 || true
    done
    failed=1
  fi
else
  echo "FAILED: registering ZintraAddin.dll, ZintraControls.ocx, Quillbar.dll or ZintraKeepAlive.exe"
  failed=1
fi
wineserver -k || true

exit $failed
