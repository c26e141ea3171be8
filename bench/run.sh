#!/bin/bash
# Builds everything that is measured, runs every benchmark and writes the table in bench/README.md anew: bench/run.sh
# Takes about ten minutes and wants a quiet machine. --quick only shows that all of it works: its figures are rough and go
# to build/bench/quick.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source tools/deps/common.sh

tools/setup.sh
tools/deps.sh >/dev/null
mkdir -p build
logged build/configure.log cmake --preset bench
logged build/configure.log cmake --preset win64
nice cmake --build --preset bench -- --quiet
nice cmake --build --preset win64 --target stage wine_programs -- --quiet
exec /usr/bin/python3 bench/report.py "$@"
