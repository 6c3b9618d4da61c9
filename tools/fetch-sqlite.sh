#!/usr/bin/env bash
# Fetches SQLite's sources (Debian's source tarball, checked against its known digest) and
# builds the single-file amalgamation that the Windows build compiles into the error log.
# Usage: tools/fetch-sqlite.sh [dest]   (default build/third_party/sqlite)
# Needs curl and tclsh (Debian packages curl, ca-certificates, tcl). Does nothing when the
# amalgamation is already there.
set -euo pipefail
cd "$(dirname "$0")/.."
dest=${1:-build/third_party/sqlite}
version=3.40.1
url=http://deb.debian.org/debian/pool/main/s/sqlite3/sqlite3_${version}.orig.tar.xz
sha256=aaa776260ab4dc976db34aa7891819484c8676b5b2783123ebc6301e2ca5d655

if [[ -s $dest/sqlite3.c && -s $dest/sqlite3.h ]]; then
  echo "SQLite amalgamation present in $dest"
  exit 0
fi
for tool in curl tclsh make cc; do
  command -v "$tool" >/dev/null || { echo "fetch-sqlite: '$tool' is missing (apt-get install curl ca-certificates tcl build-essential)" >&2; exit 1; }
done

source tools/fetch-source.sh
fetch_source fetch-sqlite "$url" "$sha256"
mkdir -p "$work/bld"
(cd "$work/bld" && "$src/configure" --disable-tcl >/dev/null && make -s sqlite3.c >/dev/null)

# Written under temporary names first so that an interrupted run leaves nothing half-done.
mkdir -p "$dest"
for f in sqlite3.c sqlite3.h; do
  cp "$work/bld/$f" "$dest/$f.part"
done
cp "$src/LICENSE.md" "$dest/LICENSE.md" 2>/dev/null || true
echo "$version" > "$dest/VERSION"
for f in sqlite3.c sqlite3.h; do mv "$dest/$f.part" "$dest/$f"; done
echo "SQLite $version amalgamation in $dest"
