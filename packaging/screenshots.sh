#!/usr/bin/env bash
# Photographs the program on a virtual display in all its states, light and dark, at one and two device pixels a
# point, and lays each of these four sets out on one sheet.
# Usage: packaging/screenshots.sh BIN-FOLDER OUTPUT-FOLDER
set -euo pipefail
bin=$(realpath "$1")
mkdir -p "$2/pictures"
out=$(realpath "$2")
drawing=tools/screenshots/draw_pictures
# A video in HDR takes its time.
[ "$out/pictures/harbour.mov" -nt "$drawing" ] || "$drawing" "$out/pictures"

# shoot LOOK SCALE
shoot() {
  local look=$1 scale=$2
  local set=$out/$look@${scale}x
  mkdir -p "$set"
  rm -f "$set"/*.png
  QT_SCALE_FACTOR=$scale SDL_AUDIODRIVER=dummy xvfb-run -a \
    -s "-screen 0 $((1360 * scale))x$((900 * scale))x24 +extension GLX -nolisten tcp" bash -c '
      # The first window must not come before the manager that is to place it.
      ready=$(mktemp -u)
      openbox --startup "touch $ready" >/dev/null 2>&1 &
      manager=$!
      for _ in $(seq 100); do [ -e "$ready" ] && break; sleep 0.1; done
      rm -f "$ready"
      "$@"
      status=$?
      kill $manager 2>/dev/null
      exit $status' run \
    "$bin/vantrel-screenshots" "$look" "$out/pictures" "$bin/../share/vantrel/Vantrel Sample.mov" "$set"
  montage -label '%t' "$set"/*.png -resize 640x400 -geometry '640x400+12+12' -tile 4x -background '#808080' \
    "$out/sheet-$look@${scale}x.png"
}

for look in light dark; do
  for scale in 1 2; do shoot $look $scale; done
done
ls "$out"
