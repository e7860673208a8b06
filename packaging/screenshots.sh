#!/usr/bin/env bash
# Photographs the program on a virtual display, at one and two device pixels a point.
# Usage: packaging/screenshots.sh BIN-FOLDER OUTPUT-FOLDER
set -euo pipefail
bin=$(realpath "$1")
mkdir -p "$2"
out=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A landscape at dusk: something to look at, and nobody's picture.
convert -size 4032x3024 gradient:'#22407a-#f3c887' \
  -fill '#ffeed0' -draw 'circle 2700,1680 2700,1860' \
  -fill '#4e4a6b' -draw 'polygon 0,1980 560,1600 1010,1910 1610,1370 2150,1940 2570,1660 3110,2010 3580,1700 4032,2030 4032,3024 0,3024' \
  -fill '#2f3352' -draw 'polygon 0,2270 660,1930 1270,2260 1810,2010 2510,2360 3110,2100 3830,2360 4032,2360 4032,3024 0,3024' \
  -fill '#1e2a47' -draw 'rectangle 0,2360 4032,3024' -quality 92 "$work/dusk.jpg"

# shoot SCALE: opens the picture, types margins, exports, and photographs each window on the way.
shoot() {
  local scale=$1
  QT_SCALE_FACTOR=$scale xvfb-run -a -s "-screen 0 $((1400 * scale))x$((900 * scale))x24 -nolisten tcp" \
    bash -c '
      set -eu
      bin=$1 work=$2 out=$3 scale=$4
      openbox >/dev/null 2>&1 &
      manager=$!
      window() { timeout 60 xdotool search --sync --onlyvisible --name "$1" | tail -n 1; }
      # Waits until two pictures of the window, a while apart, are the same.
      settled() {
        local before= now
        for _ in $(seq 40); do
          now=$(import -window "$1" rgb:- | cksum)
          [ "$now" != "$before" ] || return 0
          before=$now
          sleep 0.5
        done
      }
      take() { settled "$1" && import -window "$1" "$out/$2@${scale}x.png"; }
      "$bin/vantrel" >/dev/null 2>&1 &
      program=$!
      take "$(window "^Vantrel$")" empty
      kill $program
      wait $program || true
      "$bin/vantrel" "$work/dusk.jpg" >/dev/null 2>&1 &
      program=$!
      editor=$(window "^dusk.jpg$")
      take "$editor" image-whole
      # Past the crop, its eight handles and the four fields beside it.
      xdotool windowfocus --sync "$editor" key --delay 60 $(yes Tab | head -n 14) \
        2 8 8 Return Tab 4 1 2 Return
      take "$editor" image
      xdotool windowfocus --sync "$editor" key --clearmodifiers ctrl+shift+e
      take "$(window "dusk-framed")" review
      kill $program
      wait $program || true
      kill $manager' run "$bin" "$work" "$out" "$scale"
}

shoot 1
shoot 2
ls "$out"
