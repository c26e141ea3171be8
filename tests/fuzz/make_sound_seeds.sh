#!/bin/sh
# Seeds of mpeg_header and open_decode_seek: a small file of every kind.
set -eu
cd "$(dirname "$0")/corpus"
make() { out=$1; shift; ffmpeg -v error -y -f lavfi -i "sine=frequency=440:sample_rate=44100:duration=0.12" -fflags +bitexact -map_metadata -1 "$@" open_decode_seek/$out; }
make layer3.mp3 -ac 2 -b:a 64k -write_xing 1 -id3v2_version 0
make layer3_tags.mp3 -ac 1 -ar 22050 -b:a 32k -metadata title=t -write_id3v1 1
make layer3_vbr.mp3 -ac 1 -ar 32000 -q:a 9
make layer2.mp2 -ac 1 -b:a 64k -f mp2
make pcm16.wav -ac 2 -ar 8000
make pcm24.wav -ac 1 -ar 8000 -c:a pcm_s24le
make float.wav -ac 1 -ar 8000 -c:a pcm_f32le
make six.wav -ac 6 -ar 8000
make alaw.wav -ac 1 -ar 8000 -c:a pcm_alaw
make mulaw.wav -ac 1 -ar 8000 -c:a pcm_mulaw
make ms.wav -ac 2 -ar 8000 -c:a adpcm_ms
make ima.wav -ac 2 -ar 8000 -c:a adpcm_ima_wav
make mp3.wav -ac 1 -ar 22050 -c:a libmp3lame -b:a 32k
lame --quiet --freeformat -b 168 -t open_decode_seek/pcm16.wav open_decode_seek/free.mp3
for file in open_decode_seek/*.mp3 open_decode_seek/*.mp2 open_decode_seek/mp3.wav; do head -c 3000 "$file" > mpeg_header/$(basename "$file"); done
