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

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo "Downloading $url"
curl -fsSL --retry 3 -o "$work/benchmark.tar.gz" "$url"
echo "$sha256  $work/benchmark.tar.gz" | sha256sum -c --quiet - || {
  echo "fetch-benchmark: digest mismatch for $url" >&2; exit 1; }
tar -xzf "$work/benchmark.tar.gz" -C "$work"
src=$(find "$work" -mindepth 1 -maxdepth 1 -type d | head -n 1)

# Moved into place whole, so that an interrupted run leaves nothing half-done.
mkdir -p "$(dirname "$dest")"
rm -rf "$dest.part"
mkdir "$dest.part"
cp -r "$src/include" "$src/src" "$src/LICENSE" "$dest.part/"
echo "$version" > "$dest.part/VERSION"
rm -rf "$dest"
mv "$dest.part" "$dest"
echo "Google Benchmark $version sources in $dest"
