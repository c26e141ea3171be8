#!/bin/bash
# Installs the Debian packages of tools/apt-packages.txt that are missing. Silent and fast when nothing is.
# usage: tools/setup.sh
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

mapfile -t wanted < <(sed 's/#.*//' "$here/apt-packages.txt" | tr -s '[:space:]' '\n' | grep .)

if ! command -v dpkg-query >/dev/null; then
    echo "setup: not a Debian system; please install yourself what tools/apt-packages.txt names" >&2
    exit 1
fi

missing_packages() {
    local installed
    installed=$(dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' "${wanted[@]}" 2>/dev/null | sed -n 's/^ii *//p' || true)
    comm -23 <(printf '%s\n' "${wanted[@]}" | sort -u) <(sort -u <<<"$installed")
}

mapfile -t missing < <(missing_packages)
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: needs root or sudo to install: ${missing[*]}" >&2; exit 1; }
    as_root=(sudo)
fi
apt_get() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0 -o Acquire::Retries=3 "$@"
}

log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "setup: installing ${missing[*]}" >&2
# The lists on the machine usually do; they are fetched again only when the installation fails with them.
if ! apt_get install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1; then
    if ! { apt_get update && apt_get install -y --no-install-recommends "${missing[@]}"; } >>"$log" 2>&1; then
        cat "$log" >&2
        exit 1
    fi
fi
