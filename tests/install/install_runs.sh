#!/usr/bin/env bash
# Installs the build into a temporary prefix, checks what lies where and runs the
# validators over the launcher and the AppStream data, then starts the installed
# program from its read-only prefix the way a file manager's "Open with" does. It must
# keep its files in the user's folders and write nothing beside itself.
#   install_runs.sh <cmake> <build folder>
set -euo pipefail

if [ "${1:-}" = "--inside" ]; then
  # Under the X server: start, wait for the load to finish, look, stop.
  shift
  prefix=$1 picture=$2 tmp=$3
  "$prefix/bin/velunta" "$picture" >"$tmp/velunta.log" 2>&1 &
  pid=$!
  for _ in $(seq 1 120); do
    if [ -f "$XDG_CONFIG_HOME/Zolvane/Velunta.conf" ] &&
       ls -d "$XDG_STATE_HOME"/Zolvane/Velunta/recovery/session-*/ >/dev/null 2>&1; then
      break
    fi
    kill -0 $pid 2>/dev/null || { echo "the installed program ended at start:"; cat "$tmp/velunta.log"; exit 1; }
    sleep 0.5
  done
  sleep 1
  kill -0 $pid 2>/dev/null || { echo "the installed program ended:"; cat "$tmp/velunta.log"; exit 1; }
  kill $pid
  wait $pid 2>/dev/null || true
  exit 0
fi

cmake=$1 build=$2
for tool in desktop-file-validate appstreamcli convert; do
  command -v $tool >/dev/null || { echo "$tool is missing (scripts/deps installs it)"; exit 77; }
done
tmp=$(mktemp -d)
trap 'chmod -R u+w "$tmp"; rm -rf "$tmp"' EXIT
prefix=$tmp/prefix
"$cmake" --install "$build" --prefix "$prefix" >/dev/null

id=com.zolvane.Velunta
fail() { echo "FAIL: $*"; exit 1; }
for f in bin/velunta share/applications/$id.desktop share/metainfo/$id.metainfo.xml \
         share/icons/hicolor/scalable/apps/$id.svg share/velunta/velunta-data.txt \
         share/velunta/manual/index.html share/velunta/manual/images/main-window.png; do
  [ -e "$prefix/$f" ] || fail "$f is not installed"
done
for size in 16 22 24 32 48 64 128 256 512; do
  png=$prefix/share/icons/hicolor/${size}x${size}/apps/$id.png
  [ "$(identify -format '%wx%h' "$png")" = "${size}x${size}" ] || fail "$png is not ${size}x${size}"
done
grep -q '^MimeType=.*image/bmp;.*image/jpeg;.*image/gif;.*image/png;.*image/x-icon;.*image/wmf;.*image/emf;' \
  "$prefix/share/applications/$id.desktop" || fail "the launcher misses a picture type"
desktop-file-validate "$prefix/share/applications/$id.desktop" || fail "desktop-file-validate"
appstreamcli validate --no-net "$prefix/share/metainfo/$id.metainfo.xml" || fail "appstreamcli validate"
# What a desktop builds from the launcher to offer "Open with Velunta" for each type.
if command -v update-desktop-database >/dev/null; then
  update-desktop-database "$prefix/share/applications"
  for type in image/bmp image/jpeg image/gif image/png image/x-icon image/wmf image/emf; do
    grep -q "^$type=.*$id.desktop" "$prefix/share/applications/mimeinfo.cache" || fail "no Open with for $type"
  done
fi

# An effect program as a package ships it; the installed program links it for the user.
mkdir -p "$prefix/libexec/velunta/effects"
printf '#!/bin/sh\nexit 0\n' >"$prefix/libexec/velunta/effects/Sample"
chmod +x "$prefix/libexec/velunta/effects/Sample"
convert -size 40x30 xc:red "$tmp/red picture.bmp"
chmod -R a-w "$prefix"
touch "$tmp/started"
sleep 1 # a file written in the same second as the mark would hide from -newer

export HOME=$tmp/home XDG_CONFIG_HOME=$tmp/config XDG_DATA_HOME=$tmp/data XDG_STATE_HOME=$tmp/state
export XDG_CACHE_HOME=$tmp/cache XDG_RUNTIME_DIR=$tmp/runtime VELUNTA_NO_SPLASH_WAIT=1
unset VELUNTA_HOME VELUNTA_DATA QT_QPA_PLATFORM
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
if command -v xvfb-run >/dev/null; then
  xvfb-run -a -s "-screen 0 1024x768x24" "$0" --inside "$prefix" "$tmp/red picture.bmp" "$tmp"
else
  QT_QPA_PLATFORM=offscreen "$0" --inside "$prefix" "$tmp/red picture.bmp" "$tmp"
fi

user=$XDG_DATA_HOME/Zolvane/Velunta
[ -d "$user/temp" ] || fail "no per-user folder with its temp folder"
[ "$(readlink "$user/effects/Sample")" = "$prefix/libexec/velunta/effects/Sample" ] ||
  fail "the bundled effect is not linked into the user's effects folder"
grep -q 'red picture.bmp' "$XDG_CONFIG_HOME/Zolvane/Velunta.conf" ||
  fail "the picture given on the command line was not opened"
written=$(find "$prefix" -newer "$tmp/started")
[ -z "$written" ] || fail "the installed program wrote into its prefix: $written"
echo "installed program runs from a read-only prefix"
