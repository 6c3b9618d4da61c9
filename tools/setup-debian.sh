#!/usr/bin/env bash
# Installs the Debian packages the build and tests need; does nothing when all are present.
set -euo pipefail
packages=(g++ cmake ninja-build pkg-config libgtest-dev libgmock-dev googletest libbenchmark-dev
  libsqlite3-dev sqlite3 nlohmann-json3-dev libgmime-3.0-dev libcli11-dev libpff-dev libbfio-dev
  # The Windows host: cross compiler, Wine to run its tests, and what builds SQLite for it.
  g++-mingw-w64-x86-64-posix wine wine64 xvfb xauth tcl curl ca-certificates xz-utils
  # The 32-bit DLL (32-bit Outlook) and the installer packages.
  g++-mingw-w64-i686-posix wixl msitools
  # The fuzz targets (tools/fuzz.sh): clang with libFuzzer and the sanitizers' runtimes.
  clang libclang-rt-14-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo_cmd=""
  [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
  # A mirror in the middle of a sync now and then serves an index that does not match its
  # release file: the install is tried with the lists the update did get, and the whole is
  # tried again before giving up.
  for attempt in 1 2 3; do
    $sudo_cmd apt-get update -qq \
      || echo "setup-debian: apt-get update failed (attempt $attempt of 3)" >&2
    if DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends \
        "${missing[@]}"; then
      break
    fi
    [ "$attempt" = 3 ] && { echo "setup-debian: could not install ${missing[*]}" >&2; exit 1; }
    sleep 15
  done
fi

# 32-bit Wine runs the 32-bit DLL (registration and loading in tools/test-msi.sh); it needs
# Debian's i386 architecture, so it is installed only when asked: ZINTRA_WINE32=1. Without
# it the 32-bit packages are still installed and removed under 64-bit Wine.
if [ "${ZINTRA_WINE32:-0}" = 1 ] && ! dpkg-query -W -f='${Status}' wine32:i386 2>/dev/null \
    | grep -q "install ok installed"; then
  sudo_cmd=""
  [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
  $sudo_cmd dpkg --add-architecture i386
  if ! { $sudo_cmd apt-get update -qq && DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install \
      -y -qq --no-install-recommends wine32:i386; }; then
    echo "setup-debian: 32-bit Wine could not be installed; the 32-bit DLL will not be loaded" >&2
    $sudo_cmd dpkg --remove-architecture i386 || true
    $sudo_cmd apt-get update -qq || true
  fi
fi
