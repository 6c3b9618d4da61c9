#!/usr/bin/env bash
# Installs the Debian packages the build and tests need; does nothing when all are present.
set -euo pipefail
packages=(g++ cmake ninja-build pkg-config libgtest-dev libgmock-dev googletest libbenchmark-dev
  libsqlite3-dev sqlite3 nlohmann-json3-dev libgmime-3.0-dev libcli11-dev
  # The Windows host: cross compiler, Wine to run its tests, and what builds SQLite for it.
  g++-mingw-w64-x86-64-posix wine wine64 xvfb xauth tcl curl ca-certificates xz-utils
  # The fuzz targets (tools/fuzz.sh): clang with libFuzzer and the sanitizers' runtimes.
  clang libclang-rt-14-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo_cmd=""
  [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
