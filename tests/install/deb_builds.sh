#!/usr/bin/env bash
# Builds the .deb from the build folder and checks what a fresh Debian 12 needs of it:
# dependencies read from the linked libraries, and the files where an installed
# Velunta and the desktop look for them.
#   deb_builds.sh <cpack> <build folder>
set -euo pipefail
cpack=$1 build=$2
for tool in dpkg-deb dpkg-shlibdeps; do
  command -v $tool >/dev/null || { echo "$tool is missing (scripts/deps installs dpkg-dev)"; exit 77; }
done
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
"$cpack" -G DEB --config "$build/CPackConfig.cmake" -B "$tmp" >"$tmp/cpack.log" 2>&1 || { cat "$tmp/cpack.log"; exit 1; }
deb=$(ls "$tmp"/velunta_*.deb)
fail() { echo "FAIL: $*"; exit 1; }
depends=$(dpkg-deb -f "$deb" Depends)
for package in libqt6widgets6 libqt6gui6 libqt6svg6 libjpeg62-turbo; do
  [[ $depends == *"$package"* ]] || fail "Depends lacks $package: $depends"
done
files=$(dpkg-deb -c "$deb" | awk '{print $6}')
id=com.zolvane.Velunta
for f in ./usr/bin/velunta ./usr/share/velunta/velunta-data.txt ./usr/share/applications/$id.desktop \
         ./usr/share/metainfo/$id.metainfo.xml ./usr/share/icons/hicolor/48x48/apps/$id.png \
         ./usr/share/icons/hicolor/scalable/apps/$id.svg; do
  grep -qx -- "$f" <<<"$files" || fail "$f is not in the package"
done
echo "$(basename "$deb"): Depends: $depends"
