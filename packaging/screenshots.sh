#!/usr/bin/env bash
# Photographs the program on a virtual display, light at one, one and a half and two device pixels a point,
# dark at one.
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

# The colours of a desktop that is dark, where the toolkit looks for them; the program brings its own.
for area in Window View Button; do
  printf '[Colors:%s]\nBackgroundNormal=30,30,30\nForegroundNormal=230,230,230\n' $area
done >"$work/kdeglobals"

# shoot SCALE LOOK: opens the picture, types margins, looks closer, exports, and photographs each window on
# the way. LOOK is empty or "-dark".
shoot() {
  local scale=$1 look=$2 screen=()
  read -ra screen < <(awk -v scale="$scale" 'BEGIN { print 1400 * scale, 900 * scale }')
  local -x QT_SCALE_FACTOR=$scale
  [ -z "$look" ] || local -x XDG_CONFIG_HOME=$work XDG_CURRENT_DESKTOP=KDE KDE_SESSION_VERSION=5
  xvfb-run -a -s "-screen 0 ${screen[0]}x${screen[1]}x24 +extension GLX -nolisten tcp" \
    bash -c '
      set -eu
      bin=$1 work=$2 out=$3 scale=$4 look=$5
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
      take() { settled "$1" && import -window "$1" "$out/$2$look@${scale}x.png"; }
      keys() { xdotool windowfocus --sync "$editor" key --delay 60 "$@"; }
      "$bin/vantrel" >/dev/null 2>&1 &
      program=$!
      take "$(window "^Vantrel$")" empty
      kill $program
      wait $program || true
      "$bin/vantrel" "$bin/../share/vantrel/Vantrel Sample.mov" >/dev/null 2>&1 &
      program=$!
      take "$(window "^Vantrel Sample.mov$")" video
      kill $program
      wait $program || true
      "$bin/vantrel" "$work/dusk.jpg" >/dev/null 2>&1 &
      program=$!
      editor=$(window "^dusk.jpg$")
      take "$editor" image-whole
      # The crop and its eight handles come before the fields beside it.
      keys Tab Tab Tab Tab Tab Tab Tab Tab Tab
      keys Tab 4 1 3 Tab 2 8 7 Tab 3 9 5 Tab 1 8 1 Return
      take "$editor" image
      keys ctrl+p
      take "$editor" preview
      keys Escape
      # The largest zoom, where a mountain meets the edge of the crop: the wheel keeps that under the pointer.
      eval "$(xdotool getwindowgeometry --shell "$editor")"
      xdotool mousemove --window "$editor" $((WIDTH * 1703 / 10000)) $((HEIGHT * 585 / 1000)) keydown Control_L
      xdotool click --repeat 60 --delay 20 4 keyup Control_L
      take "$editor" sharp
      keys ctrl+0 ctrl+shift+e
      take "$(window "dusk-framed")" review
      kill $program
      wait $program || true
      kill $manager' run "$bin" "$work" "$out" "$scale" "$look"
}

shoot 1 ''
shoot 1 -dark
shoot 1.5 ''
shoot 2 ''
ls "$out"
