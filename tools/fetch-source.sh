# Sourced by the tools/fetch-*.sh scripts: downloads a Debian source tarball, checks it
# against its known digest and unpacks it into a temporary folder removed on exit.
# fetch_source TOOL URL SHA256 sets $work (the folder) and $src (the unpacked tree).
fetch_source() {
  local tool=$1 url=$2 sha256=$3 archive
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  archive="$work/$(basename "$url")"
  echo "Downloading $url"
  curl -fsSL --retry 3 -o "$archive" "$url"
  echo "$sha256  $archive" | sha256sum -c --quiet - || {
    echo "$tool: digest mismatch for $url" >&2; exit 1; }
  tar -xaf "$archive" -C "$work"
  src=$(find "$work" -mindepth 1 -maxdepth 1 -type d | head -n 1)
}
