#!/bin/bash
# Makes the installer of a folder: packaging/installer/make.sh PRODUCT VERSION TARGET -> TARGET/Quenlox-VERSION-setup.exe
# QUENLOX_SIGN, a command that signs the file behind it, is called for the uninstaller and for the installer; QUENLOX_HOME is
# the publisher's page.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
product=$(realpath "$1") version=$2 target=$(realpath "$3")
export LC_ALL=C

# The macros that copy every file and take every file away again: the uninstaller touches nothing else.
file_lists() {
    local file folder
    echo '!macro InstallFiles'
    while read -r folder; do
        echo "  SetOutPath \"\$INSTDIR${folder:+\\${folder//\//\\}}\""
        while read -r file; do
            echo "  File \"$file\""
        done < <(find "$product${folder:+/$folder}" -maxdepth 1 -type f | sort)
    done < <(find "$product" -type d -printf '%P\n' | sort)
    printf '!macroend\n!macro RemoveFiles\n'
    while read -r file; do
        echo "  Delete \"\$INSTDIR\\${file//\//\\}\""
    done < <(find "$product" -type f -printf '%P\n' | sort)
    while read -r folder; do
        echo "  RMDir \"\$INSTDIR\\${folder//\//\\}\""
    done < <(find "$product" -mindepth 1 -type d -printf '%P\n' | sort -r)
    echo '!macroend'
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
file_lists >"$work/files.nsh"
# An installer keeps the times of its files, and a checkout gives them the time of day.
cp "$root/packaging/installer/side.bmp" "$work/"
touch -d "@${SOURCE_DATE_EPOCH:-1700000000}" "$work/side.bmp"
size=$(find "$product" -type f -printf '%s\n' | awk '{ bytes += $1 } END { print int(bytes / 1024) }')
makensis -V3 -WX -INPUTCHARSET UTF8 -DVERSION="$version" -DNUMBERS="${version%%-*}" -DHOME="${QUENLOX_HOME:-}" \
    -DSIGN="${QUENLOX_SIGN:-}" -DSIZE_KB="$size" -DFILES="$work/files.nsh" \
    -DSIDE="$work/side.bmp" -DROOT="$root" -DOUT="$target/Quenlox-$version-setup.exe" "$root/packaging/installer/quenlox.nsi"
[ -z "${QUENLOX_SIGN:-}" ] || $QUENLOX_SIGN "$target/Quenlox-$version-setup.exe"
