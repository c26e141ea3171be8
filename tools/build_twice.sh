#!/bin/bash
# Builds the packages of the commit that is checked out twice, in two fresh clones in folders of different names, nothing
# taken from a cache but the libraries' source packages, and compares every byte. To be run before a release.
# usage: tools/build_twice.sh [--shared-libraries]     the libraries are built once, as is done between checkouts anyway
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$root/tools/deps/common.sh"
# What is signed holds the time at which it was.
unset QUENLOX_SIGN

commit=$(git -C "$root" rev-parse HEAD)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$root/tools/deps.sh" --sources >/dev/null
folders=("$work/one" "$work/another-place/with-a-longer-name")
for folder in "${folders[@]}"; do
    git clone -q "$root" "$folder"
    git -C "$folder" checkout -q --detach "$commit"
    if [ "${1:-}" = --shared-libraries ]; then
        (cd "$folder" && CCACHE_DISABLE=1 packaging/build.sh >/dev/null)
    else
        mkdir -p "$folder.cache"
        cp -r "$(quenlox_cache)/sources" "$folder.cache/"
        (cd "$folder" && CCACHE_DISABLE=1 QUENLOX_CACHE="$folder.cache" packaging/build.sh >/dev/null)
    fi
    echo "built in ${folder#"$work"/}"
done

result=0
for part in packages quenlox; do
    diff -rq "${folders[0]}/build/$part" "${folders[1]}/build/$part" || result=1
done
# The folder that run.sh and the tests use has the very programs of the zip.
python3 -m zipfile -e "${folders[0]}/build/packages/Quenlox-$(head -1 "${folders[0]}/build/win64/version.txt").zip" "$work"
for file in Quenlox.exe vbmp3.dll gogo.dll; do
    cmp "$work/Quenlox/$file" "${folders[0]}/build/quenlox/$file" || result=1
done
if [ "$result" -eq 0 ]; then
    echo "the same bytes:"
    cat "${folders[0]}/build/packages/SHA256SUMS"
fi
exit "$result"
