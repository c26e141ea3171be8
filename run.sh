#!/bin/bash
# Builds Quenlox and starts it under Wine with FILE, or with the demonstration tune. Without a display it plays a few
# seconds on a virtual one and leaves a picture in build/quenlox.png.
# usage: ./run.sh [FILE]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
file=$(realpath -m -- "${1:-$root/demo/quenlox-demo.mp3}")
cd "$root"
source tools/deps/common.sh

tools/setup.sh
tools/deps.sh >/dev/null
mkdir -p build
logged build/configure.log cmake --preset win64
nice cmake --build --preset stage -- --quiet

exec /usr/bin/python3 tools/run_product.py "$file"
