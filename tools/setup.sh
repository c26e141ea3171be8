#!/bin/bash
# Installs the Debian packages of tools/apt-packages.txt that are missing. Silent and fast when nothing is.
# usage: tools/setup.sh [run]      run: only what building the program and playing need
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$root/tools/progress.sh"
export LC_ALL=C

say() { echo "setup: $*" >&2; }

if ! command -v dpkg-query >/dev/null; then
    say "no Debian or Ubuntu: please install by hand what stands for the packages of tools/apt-packages.txt"
    exit 1
fi

# wanted LIST : the lines of the list "run", or of all lists for "all": a package's names, the usual one first
wanted() {
    sed 's/#.*//; s/|/ /g' "$root/tools/apt-packages.txt" |
        awk -v list="$1" '/^\[/ { current = $1; next } NF && (list == "all" || current == "[" list "]")'
}

# missing LIST : those lines of which no name is installed
missing() {
    awk 'NR == FNR { if ($1 == "ii") installed[$2]; next }
         { for (i = 1; i <= NF; i++) if ($i in installed) next; print }' \
        <(dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n') <(wanted "$1")
}

# choose : for each line of names on standard input the first that apt can install, or else "? " and the line
choose() {
    local lines
    lines=$(cat)
    awk 'NR == FNR { if (/^[^ ]/) name = substr($1, 1, length($1) - 1)
                     else if ($1 == "Candidate:" && $2 != "(none)") known[name]
                     next }
         { for (i = 1; i <= NF; i++) if ($i in known) { print $i; next } print "? " $0 }' \
        <(xargs apt-cache policy <<<"$lines") - <<<"$lines"
}

lines=$(missing "${1:-all}")
[ -n "$lines" ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null || ! sudo -v; then
        say "packages are missing, and they can be installed only as root or with sudo. Please let somebody who may run:"
        say "    apt-get install --no-install-recommends $(choose <<<"$lines" | sed 's/^? //; s/ .*//' | tr '\n' ' ')"
        exit 1
    fi
    as_root=(sudo)
fi
# sudo takes most of the environment away; what leads to the archive stays. Another installation is waited for.
environment=(LC_ALL=C DEBIAN_FRONTEND=noninteractive)
for name in http_proxy https_proxy ftp_proxy no_proxy; do
    if [ -n "${!name:-}" ]; then environment+=("$name=${!name}"); fi
done
# apt-get ARGUMENTS... : says on standard output how far it is. Writing that must not wait, so that apt makes the descriptor
# non-blocking; what packages say goes elsewhere, to standard error. sudo closes all other descriptors: hence the shell.
apt_get() {
    "${as_root[@]}" env "${environment[@]}" sh -c 'exec "$@" 3>&1 >&2' sh apt-get -q -o Dpkg::Use-Pty=0 \
        -o APT::Status-Fd=3 -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 "$@"
}

mkdir -p "$root/build"
log=$root/build/setup.log

# The package lists on the machine usually do; they are fetched again when they lack something, or what they name is gone.
names=$(choose <<<"$lines")
say "installing" $(sed 's/^? //; s/ .*//' <<<"$names")
if grep -q '^?' <<<"$names" ||
    ! try_with_progress "$log" apt_progress apt_get install -y --no-install-recommends $names; then
    with_progress "$log" apt_progress apt_get update || say "not every package list could be fetched; trying with what there is"
    names=$(choose <<<"$lines")
    if grep -q '^?' <<<"$names"; then
        say "this machine's archives (/etc/apt) have no package with these names:"
        sed -n 's/^? */    /p' <<<"$names" | sed 's/\([^ ]\) \+/\1 or /g' >&2
        say "Is a release older than Debian 12 or Ubuntu 24.04 installed, or (Ubuntu) the component \"universe\" missing?"
        exit 1
    fi
    with_progress "$log" apt_progress apt_get install -y --no-install-recommends $names
fi
