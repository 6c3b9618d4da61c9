#!/usr/bin/env bash
# Installs and removes Zintra's packages under Wine, as users and administrators do:
#   - each package (per user, per machine; 64-bit, and 32-bit as far as Wine can run it):
#     msiexec /i /qn, the files land only in the scope's folder and the registry entries only
#     in the scope's hive, they are exactly what the programs' own registrations write (the
#     add-in's, the options page control's, the toolbar library's and ZintraKeepAlive.exe's),
#     the test host activates ZintraAddin.Connect by ProgID and logs a mail and a phone call
#     from the installed toolbar, opens Outlook's Options dialog, where the add-in puts the
#     installed options page, configures a folder set on it and sees the next mail logged,
#     and is held open by the installed keep-alive program, msiexec /x /qn, and the registry
#     (Software of both hives) and drive C are as they were before;
#   - an upgrade replaces the older version and a downgrade is refused;
#   - a broken install (a missing file, a failure after the registry was written) rolls back
#     and leaves nothing.
# Usage: tools/test-msi.sh   (after tools/build-msi.sh, and the win64-mingw build of
# com_host_tests that tools/test-windows.sh makes; the activation is skipped without it)
# Exit status: 0 all passed, 1 a check failed, 3 a step outside the checks failed.
set -Eeuo pipefail
cd "$(dirname "$0")/.."
source tools/wine-steps.sh  # a Wine tool failing outside the checks: exit 3
msi_dir=${ZINTRA_MSI_OUT:-build/msi}
# The add-in's version (major.minor.tweak of project(VERSION) in CMakeLists.txt).
version_part() {
  sed -n "s/^project(Zintra VERSION \([0-9]*\)\.\([0-9]*\)\.[0-9]*\.\([0-9]*\).*/\\$1/p" CMakeLists.txt
}
major=$(version_part 1) minor=$(version_part 2) revision=$(version_part 3)
version=$major.$minor.$revision
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPREFIX=$PWD/$msi_dir/wine-prefix
work=$msi_dir/test
rm -rf "$work" && mkdir -p "$work"

failed=0
fail() { echo "FAILED: $*"; failed=1; }
step() { echo "== $* ($SECONDS s) =="; }

# The test's own packages: an older version, and two broken ones.
ZINTRA_MSI_OUT=$work ZINTRA_MSI_VERSION=$major.$minor.$((revision - 1)) \
  bash tools/build-msi.sh x64 >/dev/null || exit 1  # ours, not Wine's: never tried again
for broken in BrokenMedia FailAfterRegistration; do
  ZINTRA_MSI_OUT=$work/$broken bash tools/build-msi.sh x64 -- -D $broken=1 >/dev/null || exit 1
done

# What Windows decides before installing anything, from the packages' own tables: the
# platform (a 64-bit package is refused by 32-bit Windows), whether elevation is needed
# (word count bit 8 set: a per-user install asks for no administrator rights), ALLUSERS
# (1: per machine), and no self-registration or custom actions.
step "package properties"
if command -v msiinfo >/dev/null; then
  for arch in x64 x86; do
    for scope in user machine; do
      msi=$msi_dir/Zintra-$version-$arch-$scope.msi
      [ -f "$msi" ] || continue
      template=$(msiinfo suminfo "$msi" | sed -n 's/^Template: //p')
      word_count=$(msiinfo suminfo "$msi" | sed -n 's/^Source: \([0-9]*\).*/\1/p')
      all_users=$(msiinfo export "$msi" Property | tr -d '\r' | awk -F '\t' '$1 == "ALLUSERS" { print $2 }')
      platform=x64 no_elevation=8 expected_all_users=""
      [ "$arch" = x86 ] && platform=Intel
      [ "$scope" = machine ] && no_elevation=0 expected_all_users=1
      [ "$template" = "$platform;1033" ] || fail "$msi: platform $template, not $platform"
      [ $((word_count & 8)) = $no_elevation ] || fail "$msi: word count $word_count"
      [ "$all_users" = "$expected_all_users" ] || fail "$msi: ALLUSERS '$all_users'"
      msiinfo tables "$msi" | grep -q -x SelfReg && fail "$msi: has a SelfReg table"
      [ "$(msiinfo export "$msi" CustomAction | wc -l)" = 3 ] || fail "$msi: has custom actions"
    done
  done
else
  echo "(msiinfo is missing: apt-get install msitools)"
fi

step "a fresh Wine prefix: $WINEPREFIX"
rm -rf "$WINEPREFIX"
timeout 120 wineboot -i >/dev/null 2>&1 || true
wine_reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null
wine_reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null
wine_reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d 1024x768 /f >/dev/null
wine32=0
[ -e "$WINEPREFIX/drive_c/windows/syswow64/kernel32.dll" ] && wine32=1
profile=./users/$(id -un)  # Wine names the profile after the Unix user

# The state an install may touch: the Software keys of both hives, read from the prefix's
# registry files (written when wineserver exits), and every path on drive C. Left out:
# timestamps, Wine's list of network cards (rewritten whenever a program asks), and the
# empty keys Windows Installer keeps for its own records (and the list of installed
# programs) once a product is gone.
state() {
  # The server kills its processes (a crashed one's debugger among them) as it ends; the
  # state is read once it is gone.
  wineserver -k 2>/dev/null || true
  wineserver -w 2>/dev/null || true
  mkdir -p "$1"
  local hive
  for hive in system user; do
    awk 'BEGIN { RS = ""; ORS = "" }
      /^\[Software\\\\/ {
        n = split($0, line, "\n"); text = ""; values = 0
        for (i = 1; i <= n; i++) {
          if (line[i] ~ /^#time=/) continue
          if (i == 1) sub(/\] [0-9]+$/, "]", line[i]); else values++
          text = text line[i] "\n"
        }
        if (line[1] ~ /\\\\NetworkCards(\\\\|\])/) next
        if (values == 0 && line[1] ~ /\\\\(Microsoft|CurrentVersion|Classes)\\\\Installer(\\\\|\])/) next
        if (values == 0 && line[1] ~ /\\\\CurrentVersion\\\\Uninstall\]/) next
        print text "\n"
      }' "$WINEPREFIX/$hive.reg" >"$1/$hive.txt"
  done
  # Left out too: the caches of device INF files Wine writes in the background for a new
  # prefix (windows/inf/*.pnf), whenever its device setup gets to them.
  # find reports (and fails on) a file that went away while it listed; such a file was not
  # the install's, and the listing of everything else is complete.
  (cd "$WINEPREFIX/drive_c" && { find . 2>/dev/null || true; } | grep -v -x './windows/Installer' \
    | grep -v -x '\./windows/inf/[^/]*\.pnf' | sort) >"$1/files.txt"
}
# The user's settings (Software\Brellow\Zintra, in either hive and view) stay when the add-in
# is removed, and so does the data the add-in wrote while it ran (its log folder).
settings() {  # state-dir hive
  awk 'BEGIN { RS = ""; ORS = "" }
    /^\[Software\\\\(Wow6432Node\\\\)?Brellow(\\\\|\])/ { print $0 "\n\n" }' "$1/$2.txt"
}
without_user_data() {  # state-dir: a copy without settings and the add-in's data
  mkdir -p "$1.cmp"
  local hive
  for hive in system user; do
    awk 'BEGIN { RS = ""; ORS = "" }
      !/^\[Software\\\\(Wow6432Node\\\\)?Brellow(\\\\|\])/ { print $0 "\n\n" }' \
      "$1/$hive.txt" >"$1.cmp/$hive.txt"
  done
  grep -v -i -e '/Zintra Log\(/\|$\)' -e '/ZINTRAERRORS\.MDB\(-journal\)\?$' "$1/files.txt" >"$1.cmp/files.txt" || true
}
same_state() {  # before after what
  without_user_data "$1"
  without_user_data "$2"
  # Removal deletes the keys it leaves empty, up to Software, as the DLL's own unregistration
  # does: a key that was there but empty (in a fresh prefix, Classes\Wow6432Node\CLSID) may
  # go. Every other difference, an empty key left behind included, counts.
  local hive
  for hive in system user; do
    awk 'BEGIN { RS = ""; ORS = "" }
      FNR == NR { split($0, line, "\n"); present[line[1]] = 1; next }
      { n = split($0, line, "\n"); if (n == 1 && !(line[1] in present)) next; print $0 "\n\n" }' \
      "$2.cmp/$hive.txt" "$1.cmp/$hive.txt" >"$1.cmp/$hive.kept"
    mv "$1.cmp/$hive.kept" "$1.cmp/$hive.txt"
  done
  if ! diff -r "$1.cmp" "$2.cmp" >"$2.diff"; then
    fail "$3: the registry or drive C differs from before:"
    head -30 "$2.diff"
  fi
}
# The keys COM and Outlook read: classes, and Office's add-in keys (both registry views).
registration() {  # state-dir hive
  awk 'BEGIN { RS = ""; ORS = "" }
    /^\[Software\\\\(Wow6432Node\\\\)?(Classes|Microsoft\\\\Office)(\\\\|\])/ &&
    !/^\[Software\\\\Classes\\\\Installer/ { print $0 "\n\n" }' "$1/$2.txt"
}
msiexec() {  # /i or /x, package, log
  timeout 180 wine msiexec "$1" "$(winepath -w "$2")" /qn /l*v "$(winepath -w "$3")"
}
log_end() {  # an installer's log: its last lines say why it failed
  echo "(the end of $(basename "$1"):)"
  tr -d '\r' <"$1" | tail -15 || true
}

install_round_trip() {  # arch scope
  local arch=$1 scope=$2 name=$1-$2
  local msi=$msi_dir/Zintra-$version-$arch-$scope.msi
  local hive=user other=system folder=$profile/AppData/Local/Programs/Zintra
  local regsvr_scope=() objdump=x86_64-w64-mingw32-objdump format=pei-x86-64
  if [ "$scope" = machine ]; then
    hive=system other=user folder="./Program Files/Zintra" regsvr_scope=(/n /i:machine)
  fi
  if [ "$arch" = x86 ]; then
    objdump=i686-w64-mingw32-objdump format=pei-i386
    [ "$scope" = machine ] && folder="./Program Files (x86)/Zintra"
  fi
  step "$name: msiexec /i $(basename "$msi") /qn"
  [ -f "$msi" ] || { fail "$msi is missing (run tools/build-msi.sh)"; return; }
  state "$work/$name-before"
  msiexec /i "$msi" "$work/$name-install.log" \
    || { fail "$name: install"; log_end "$work/$name-install.log"; return; }
  state "$work/$name-installed"

  # Files only in the scope's folder (and Windows Installer's copy of the package).
  local added
  added=$(comm -13 "$work/$name-before/files.txt" "$work/$name-installed/files.txt" \
    | grep -v "^\./windows/Installer/[^/]*\.msi$" | grep -v -F -x -e "$folder" -e "${folder%/*}" \
    | grep -v -F "$folder/" || true)
  [ -z "$added" ] || fail "$name: files outside $folder: $added"
  local dll="$WINEPREFIX/drive_c/$folder/ZintraAddin.dll"
  [ -f "$dll" ] || fail "$name: $folder/ZintraAddin.dll was not installed"
  local ocx="$WINEPREFIX/drive_c/$folder/ZintraControls.ocx"
  [ -f "$ocx" ] || fail "$name: $folder/ZintraControls.ocx (the options page) was not installed"
  [ -f "$WINEPREFIX/drive_c/$folder/Letter macro/ZintraLetter.bas" ] \
    || fail "$name: the letter macro was not installed"
  local keep_alive="$WINEPREFIX/drive_c/$folder/ZintraKeepAlive.exe"
  [ -f "$keep_alive" ] || fail "$name: $folder/ZintraKeepAlive.exe was not installed"
  [ -f "$dll" ] && ! "$objdump" -f "$dll" | grep -q "file format $format" \
    && fail "$name: the installed DLL is not $format"
  local toolbar_dll="$WINEPREFIX/drive_c/$folder/Quillbar.dll"
  [ -f "$toolbar_dll" ] || fail "$name: $folder/Quillbar.dll (the toolbar library) was not installed"
  # Registry entries only in the scope's hive.
  if registration "$work/$name-installed" "$other" \
      | grep -q -i 'ZintraAddin\|9BEC0744\|0A55C397\|ZintraControls\|8126899C\|ZintraKeepAlive\|136B76B5\|Quillbar\|7D2A4C61'; then
    fail "$name: the add-in was registered in the other hive"
  fi
  registration "$work/$name-installed" "$hive" >"$work/$name-msi.reg"
  grep -q '"LoadBehavior"=dword:00000003' "$work/$name-msi.reg" \
    || fail "$name: Outlook's loader values are missing"

  if [ "$arch" = x64 ] || [ $wine32 = 1 ]; then
    # The same entries as the programs' own registrations of that scope write.
    local dll_w ocx_w toolbar_w keep_alive_scope=()
    dll_w=$(winepath -w "$dll")
    ocx_w=$(winepath -w "$ocx")
    toolbar_w=$(winepath -w "$toolbar_dll")
    [ "$scope" = machine ] && keep_alive_scope=(/Machine)
    timeout 60 wine regsvr32 /s /u "${regsvr_scope[@]}" "$dll_w" || fail "$name: regsvr32 /u"
    timeout 60 wine regsvr32 /s /u "${regsvr_scope[@]}" "$ocx_w" || fail "$name: regsvr32 /u ocx"
    timeout 60 wine regsvr32 /s /u "${regsvr_scope[@]}" "$toolbar_w" \
      || fail "$name: regsvr32 /u Quillbar.dll"
    timeout 60 wine "$keep_alive" /UnregServer "${keep_alive_scope[@]}" \
      || fail "$name: ZintraKeepAlive.exe /UnregServer"
    state "$work/$name-unregistered"
    registration "$work/$name-unregistered" "$hive" >"$work/$name-none.reg"
    registration "$work/$name-before" "$hive" | diff - "$work/$name-none.reg" >/dev/null \
      || fail "$name: regsvr32 /u did not remove what the package wrote"
    timeout 60 wine regsvr32 /s "${regsvr_scope[@]}" "$dll_w" || fail "$name: regsvr32"
    timeout 60 wine regsvr32 /s "${regsvr_scope[@]}" "$ocx_w" || fail "$name: regsvr32 ocx"
    timeout 60 wine "$keep_alive" /RegServer "${keep_alive_scope[@]}" \
      || fail "$name: ZintraKeepAlive.exe /RegServer"
    timeout 60 wine regsvr32 /s "${regsvr_scope[@]}" "$toolbar_w" || fail "$name: regsvr32 Quillbar.dll"
    state "$work/$name-regsvr32"
    registration "$work/$name-regsvr32" "$hive" >"$work/$name-regsvr32.reg"
    if ! diff "$work/$name-regsvr32.reg" "$work/$name-msi.reg" >"$work/$name-reg.diff"; then
      fail "$name: the package's registry entries differ from the programs' own (< theirs, > package):"
      head -20 "$work/$name-reg.diff"
    fi
  else
    echo "(32-bit Wine is not installed: the 32-bit DLL is neither registered nor loaded)"
  fi

  local preset=win64-mingw
  [ "$arch" = x86 ] && preset=win32-mingw
  local host=build/$preset/tests/win32/com_host/com_host_tests.exe
  if [ -f "$host" ] && command -v xvfb-run >/dev/null && { [ "$arch" = x64 ] || [ $wine32 = 1 ]; }; then
    local copies=()
    if [ "$scope" = user ]; then
      # Wine resolves classes from HKLM only: the per-user classes are copied there for the run.
      copies=(ZintraAddin.Connect 'CLSID\{9BEC0744-C867-448C-B6F9-3BDDCEC8859F}'
        ZintraControls.OutlookPropertiesPage 'CLSID\{8126899C-11C0-49FE-BA19-AA4AAB4DAE1B}'
        ZintraKeepAlive.KeepAlive 'CLSID\{136B76B5-1DE6-4486-BA20-73E19DF74AAA}'
        Quillbar.ToolbarHelper 'CLSID\{7D2A4C61-93B5-4E0F-A8D3-5C1E6B9F2A47}')
      local key
      for key in "${copies[@]}"; do
        wine_reg copy "HKCU\\Software\\Classes\\$key" "HKLM\\Software\\Classes\\$key" /s /f >/dev/null
      done
      wineserver -k || true
    fi
    step "$name: the test host loads ZintraAddin.Connect by ProgID and logs a mail and a phone call from the toolbar; its Options dialog shows the page; ZintraKeepAlive.KeepAlive holds it"
    ZINTRA_REQUIRE_ADDIN=1 timeout 300 xvfb-run -a sh -c "wine '$host' --gtest_brief=1 \
      --gtest_filter=ComHostOnDesktop.NewMailIsLoggedOnceAndSentMailAgainstItsRecipients:ComHostOnDesktop.APhoneCallButtonOfTheToolbarOpensAJournalEntryForTheSelectedContact:ComHostOnDesktop.AFolderSetConfiguredOnTheOptionsPageLogsTheNextMail:ComHostOnDesktop.ClosingOutlookDuringAJobKeepsItAliveUntilTheJobIsDone; \
      rc=\$?; wineserver -k; exit \$rc" \
      || fail "$name: the installed add-in did not log the mail or the phone call, the options page failed, or the keep-alive program did not hold Outlook"
    for key in "${copies[@]}"; do
      wine_reg delete "HKLM\\Software\\Classes\\$key" /f >/dev/null
    done
  else
    echo "(no $host for Wine to run: the add-in is not loaded)"
  fi

  # A setting of the user's (and the machine's, for a per-machine install) to outlive removal.
  wine_reg add 'HKCU\Software\Brellow\Zintra' /v ProcessingDelay /t REG_DWORD \
    /d 5000 /f >/dev/null
  [ "$scope" = machine ] && wine_reg add 'HKLM\Software\Brellow\Zintra' \
    /v ProcessingDelay /t REG_DWORD /d 5000 /f >/dev/null
  state "$work/$name-used"

  step "$name: msiexec /x /qn"
  msiexec /x "$msi" "$work/$name-uninstall.log" \
    || { fail "$name: uninstall"; log_end "$work/$name-uninstall.log"; return; }
  state "$work/$name-removed"
  same_state "$work/$name-before" "$work/$name-removed" "$name: after msiexec /x"
  for hive in system user; do
    settings "$work/$name-used" $hive | diff - <(settings "$work/$name-removed" $hive) >/dev/null \
      || fail "$name: removing the add-in changed the settings under Software\\Brellow\\Zintra"
  done
  timeout 60 wine reg delete 'HKCU\Software\Brellow' /f >/dev/null 2>&1 || true
  timeout 60 wine reg delete 'HKLM\Software\Brellow' /f >/dev/null 2>&1 || true
}

for arch in x64 x86; do
  for scope in user machine; do
    install_round_trip "$arch" "$scope"
  done
done

step "upgrade: $major.$minor.$((revision - 1)) then $version (x64, per user)"
older=$work/Zintra-$major.$minor.$((revision - 1))-x64-user.msi
current=$msi_dir/Zintra-$version-x64-user.msi
state "$work/upgrade-before"
msiexec /i "$older" "$work/upgrade-older.log" || fail "upgrade: installing the older version"
msiexec /i "$current" "$work/upgrade-current.log" || fail "upgrade: installing over the older version"
if msiexec /i "$older" "$work/downgrade.log"; then fail "downgrade: the older version installed over the newer"; fi
# Removing the current version leaves nothing only if the upgrade removed the older one.
msiexec /x "$current" "$work/upgrade-uninstall.log" || fail "upgrade: uninstall"
state "$work/upgrade-removed"
same_state "$work/upgrade-before" "$work/upgrade-removed" "upgrade"

for broken in BrokenMedia:user FailAfterRegistration:machine; do
  scope=${broken#*:} broken=${broken%:*}
  step "a broken install rolls back: $broken, per $scope"
  state "$work/$broken-$scope-before"
  if msiexec /i "$work/$broken/Zintra-$version-x64-$scope.msi" "$work/$broken-$scope.log"; then
    fail "$broken ($scope): the broken package installed"
  fi
  # The failure came where it was meant to: copying the files, or after the registry
  # entries were written (the installer's log names each action and its result).
  if [ "$broken" = BrokenMedia ]; then
    failing='/InstallFiles\. Return value 0/ { ok = 1 }'
  else
    failing='/WriteRegistryValues\. Return value 1/ { written = 1 }
      /FailAfterRegistration\. Return value 0/ { ok = written }'
  fi
  awk "$failing END { exit !ok }" "$work/$broken-$scope.log" \
    || fail "$broken ($scope): the install did not fail where the package breaks it"
  state "$work/$broken-$scope-after"
  same_state "$work/$broken-$scope-before" "$work/$broken-$scope-after" "$broken ($scope)"
done
wineserver -k || true

[ $failed = 0 ] && echo "msi: all install and removal checks passed"
exit $failed
