#!/usr/bin/env bash
# Fetches Google Benchmark's sources (Debian's source tarball of the version Debian ships
# for Linux, checked against its known digest) for the Windows build's bench programs:
# Debian ships no Google Benchmark for mingw-w64.
# Usage: tools/fetch-benchmark.sh [dest]   (default build/third_party/benchmark)
# Needs curl (Debian packages curl, ca-certificates). Does nothing when the sources are there.
set -euo pipefail
cd "$(dirname "$0")/.."
dest=${1:-build/third_party/benchmark}
version=1.7.1
url=http://deb.debian.org/debian/pool/main/b/benchmark/benchmark_${version}.orig.tar.gz
sha256=6430e4092653380d9dc4ccb45a1e2dc9259d581f4866dc0759713126056bc1d7

if [[ -s $dest/include/benchmark/benchmark.h && -s $dest/src/benchmark.cc ]]; then
  echo "Google Benchmark sources present in $dest"
  exit 0
fi
command -v curl >/dev/null || {
  echo "fetch-benchmark: 'curl' is missing (apt-get install curl ca-certificates)" >&2; exit 1; }

source tools/fetch-source.sh
fetch_source fetch-benchmark "$url" "$sha256"

# Moved into place whole, so that an interrupted run leaves nothing half-done.
mkdir -p "$(dirname "$dest")"
rm -rf "$dest.part"
mkdir "$dest.part"
cp -r "$src/include" "$src/src" "$src/LICENSE" "$dest.part/"
echo "$version" > "$dest.part/VERSION"
rm -rf "$dest"
mv "$dest.part" "$dest"
echo "Google Benchmark $version sources in $dest"
