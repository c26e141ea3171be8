#!/bin/bash
# Builds Quenlox and starts it under Wine with FILE, or with the demonstration tune. Without a display it plays a few
# seconds on a virtual one and leaves a picture in build/quenlox.png.
# usage: ./run.sh [FILE]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
file=$(realpath -m -- "${1:-$root/demo/quenlox-demo.mp3}")
cd "$root"
source tools/deps/common.sh
source tools/progress.sh

tools/setup.sh run
mkdir -p build
/usr/bin/python3 tools/run_product.py --prepare & # takes a while on the first run; meanwhile the program is built
libraries=$(tools/deps.sh)
if [ ! -e build/win64/build.ninja ]; then
    logged build/configure.log cmake --preset play
elif ! grep -qF "=$libraries/" build/win64/CMakeCache.txt; then # what is configured for the tests as well stays so
    logged build/configure.log cmake build/win64
fi
with_progress build/build.log ninja_progress nice cmake --build --preset stage -j "${QUENLOX_JOBS:-$(nproc)}"

exec /usr/bin/python3 tools/run_product.py "$file"
