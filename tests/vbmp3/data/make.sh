#!/bin/sh
# Makes the small files beside this script: MPEG-1 and MPEG-2 layer 2, Microsoft and IMA ADPCM, a quarter of a second
# of 440 Hz.
set -eu
cd "$(dirname "$0")"
for rate in 44100 22050; do
  ffmpeg -v error -y -f lavfi -i "sine=frequency=440:sample_rate=$rate:duration=0.25" -ac 1 -b:a 64k -f mp2 layer2_$rate.mp2
done
for coding in ms ima; do
  ffmpeg -v error -y -f lavfi -i "sine=frequency=440:sample_rate=22050:duration=0.25" -ac 1 -c:a adpcm_$( [ $coding = ms ] && echo ms || echo ima_wav ) -fflags +bitexact adpcm_$coding.wav
done
# layer1_48000.mp1 is not made here, since no encoder writes layer 1: 125 frames of 384 samples at 192 kbit/s, mono,
# 440 Hz as the samples of the lowest subband (15 bits each, scale factor 9).
