#!/usr/bin/env bash
# Builds Zintra's Windows Installer packages with wixl (Debian package wixl) from
# installer/zintra.wxs: per user and per machine, for 64-bit and 32-bit Outlook.
# Usage: tools/build-msi.sh [x64|x86]...   (default: both)
# Cross-builds ZintraAddin.dll, ZintraControls.ocx (the options page), the toolbar library
# Quillbar.dll and ZintraKeepAlive.exe of each bitness first (presets win64-mingw and
# win32-mingw), checks that each is of that bitness and imports system DLLs only (and that
# each DLL exports COM's entry points), and writes
#   build/msi/Zintra-<version>-<x64|x86>-<user|machine>.msi
# Extra wixl definitions (-D NAME=VALUE) may follow "--" (tools/test-msi.sh builds its
# broken and older packages so).
set -euo pipefail
cd "$(dirname "$0")/.."
archs=()
extra=()
while [ $# -gt 0 ]; do
  case $1 in
    x64 | x86) archs+=("$1") ;;
    --) shift; extra=("$@"); break ;;
    *) echo "usage: tools/build-msi.sh [x64|x86]... [-- wixl options]" >&2; exit 2 ;;
  esac
  shift
done
[ ${#archs[@]} -gt 0 ] || archs=(x64 x86)
command -v wixl >/dev/null || { echo "build-msi: wixl is missing (apt-get install wixl)" >&2; exit 1; }

# The add-in's version, from the same numbers as the DLL's version resource.
# project(VERSION major.minor.patch.tweak) in CMakeLists.txt is the one declaration; the
# add-in's version is major.minor.tweak.
version_part() {
  sed -n "s/^project(Zintra VERSION \([0-9]*\)\.\([0-9]*\)\.[0-9]*\.\([0-9]*\).*/\\$1/p" CMakeLists.txt
}
version=${ZINTRA_MSI_VERSION:-$(version_part 1).$(version_part 2).$(version_part 3)}
out=${ZINTRA_MSI_OUT:-build/msi}
mkdir -p "$out"

# Windows' own DLLs, the only imports a DLL we ship may have (the C++ runtime is linked in).
system_dlls=(kernel32.dll user32.dll gdi32.dll advapi32.dll ole32.dll oleaut32.dll shell32.dll
  comctl32.dll version.dll msvcrt.dll)

for arch in "${archs[@]}"; do
  if [ "$arch" = x64 ]; then
    preset=win64-mingw triple=x86_64-w64-mingw32 format=pei-x86-64
  else
    preset=win32-mingw triple=i686-w64-mingw32 format=pei-i386
  fi
  echo "== ZintraAddin.dll, ZintraControls.ocx, Quillbar.dll, ZintraKeepAlive.exe ($arch, preset $preset) =="
  [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
  cmake --build "build/$preset" --target ZintraAddin ZintraControls Quillbar ZintraKeepAlive -j "$(nproc)"
  dll=build/$preset/win32/addin/ZintraAddin.dll
  ocx=build/$preset/win32/controls/ZintraControls.ocx
  toolbar_dll=build/$preset/win32/toolbar_library/Quillbar.dll
  exe=build/$preset/win32/keepalive/ZintraKeepAlive.exe

  for file in "$dll" "$ocx" "$toolbar_dll" "$exe"; do
    # The package of a bitness must carry programs of that bitness.
    actual=$("$triple-objdump" -f "$file" | sed -n 's/.*file format \(.*\)/\1/p')
    if [ "$actual" != "$format" ]; then
      echo "build-msi: $file is $actual, not $format" >&2
      exit 1
    fi
    imports=$("$triple-objdump" -p "$file" | sed -n 's/.*DLL Name: \(.*\)/\1/p' | tr '[:upper:]' '[:lower:]')
    [ -n "$imports" ] || { echo "build-msi: no import table in $file" >&2; exit 1; }
    for name in $imports; do
      if [[ " ${system_dlls[*]} " != *" $name "* ]]; then
        echo "build-msi: $file imports $name, which is not a Windows system DLL" >&2
        exit 1
      fi
    done
    echo "$(basename "$file") imports: ${imports//$'\n'/ }"
    [ "$file" = "$exe" ] && continue
    # COM finds the entry points by these undecorated names (a 32-bit stdcall name would
    # otherwise be exported as DllGetClassObject@12).
    exports=$("$triple-objdump" -p "$file" | sed -n '/Ordinal\/Name Pointer/,/^$/s/.*\] //p')
    for name in DllGetClassObject DllCanUnloadNow DllRegisterServer DllUnregisterServer; do
      grep -q -x "$name" <<<"$exports" || { echo "build-msi: $file does not export $name" >&2; exit 1; }
    done
  done

  for scope in user machine; do
    msi=$out/Zintra-$version-$arch-$scope.msi
    wixl -a "$arch" -D Scope="$scope" -D Arch="$arch" -D Version="$version" \
      -D AddinDll="$dll" -D ControlsOcx="$ocx" -D KeepAliveExe="$exe" -D ToolbarDll="$toolbar_dll" \
      -D MacroDir=installer/letter-macro "${extra[@]}" \
      -o "$msi" installer/zintra.wxs
    echo "$msi"
  done
done
