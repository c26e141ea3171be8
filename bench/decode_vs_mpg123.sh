#!/bin/bash
# Decodes a ten-minute MP3 to memory and to WAVE, beside the mpg123 program, each five times in turn; prints the best
# times in seconds and their ratio to mpg123's. Usage: decode_vs_mpg123.sh BUILD_FOLDER
set -eu
ours=$(realpath "$1/bench/decode_wave")
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir"
ffmpeg -v error -f lavfi -i "anoisesrc=color=pink:amplitude=0.3:seed=1:duration=600" -f lavfi -i "sine=frequency=440:duration=600" \
  -filter_complex amix=inputs=2 -ac 2 -ar 44100 -b:a 128k a.mp3
declare -A best
run() {
  local name=$1; shift
  local t; t=$( { TIMEFORMAT=%R; time "$@" > out 2> /dev/null; } 2>&1 )
  if [ -z "${best[$name]:-}" ] || [ "$(echo "$t < ${best[$name]}" | bc)" = 1 ]; then best[$name]=$t; fi
}
for i in 1 2 3 4 5; do
  run "mpg123 memory" mpg123 -q -t a.mp3
  run "vbmp3 memory" "$ours" memory a.mp3
  run "mpg123 wave" mpg123 -q -w m.wav a.mp3
  run "vbmp3 wave 1" "$ours" wave a.mp3 v1.wav 1
  run "vbmp3 wave 2" "$ours" wave a.mp3 v2.wav 2
done
cmp v1.wav v2.wav && echo "one and two processors: the same bytes"
for name in "mpg123 memory" "vbmp3 memory" "mpg123 wave" "vbmp3 wave 1" "vbmp3 wave 2"; do
  case $name in *memory) base=${best[mpg123 memory]} ;; *) base=${best[mpg123 wave]} ;; esac
  printf '%-14s %6.3f s  %5.2f\n' "$name" "${best[$name]}" "$(echo "scale=3; ${best[$name]} / $base" | bc)"
done
