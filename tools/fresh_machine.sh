#!/bin/bash
# Makes a machine that has nothing but Debian in a folder, runs the README's commands there as a newcomer would, and tells
# how long they take. Runs as root; docs/machines.md has what came out.
# usage: tools/fresh_machine.sh RELEASE [--sources list|sources] [--user root|sudo|plain] [--steps "run again test warm"]
#                               [--folder FOLDER] [--keep]
#   RELEASE    as debootstrap knows it: bookworm, trixie
#   --sources  how /etc/apt names the archive: one line for each (list), or in stanzas (sources, the default)
#   --user     who types: root (the default), one who may use sudo, or one who may not
#   --steps    run: ./run.sh until its end, with the time of the first sound; again: ./run.sh once more; test: ./test.sh;
#              warm: ./test.sh once more. run, again and test by default.
#   --folder   where; a new folder in /var/tmp by default
#   --keep     leaves the folder, and one that is there already is gone on with
#
# The archive, proxies and time limits are those of this machine's apt configuration. Everything that is started there ends
# with this script.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { echo "fresh machine: $*" >&2; }
usage() {
    sed -n '/^# usage/,/^#   --keep/p' "${BASH_SOURCE[0]}" | cut -c3- >&2
    exit 2
}

release=${1:-} sources=sources user=root steps='run again test' machine='' keep=false
[[ $release =~ ^[a-z]+$ ]] || usage
shift
while [ $# -gt 0 ]; do
    case $1 in
        --sources) sources=$2; shift ;;
        --user) user=$2; shift ;;
        --steps) steps=$2; shift ;;
        --folder) machine=$2; shift ;;
        --keep) keep=true ;;
        *) usage ;;
    esac
    shift
done
[[ $sources =~ ^(list|sources)$ && $user =~ ^(root|sudo|plain)$ ]] || usage
if [ "$(id -u)" -ne 0 ] || ! command -v debootstrap >/dev/null; then
    say "needs root and the package debootstrap"
    exit 1
fi
# In name spaces of its own: mounts and processes go with it.
if [ -z "${FRESH_MACHINE_INSIDE:-}" ]; then
    machine=${machine:-/var/tmp/quenlox-fresh-$release-$sources-$user}
    options=(--sources "$sources" --user "$user" --steps "$steps" --folder "$machine")
    if $keep; then options+=(--keep); fi
    FRESH_MACHINE_INSIDE=1 exec unshare --mount --pid --fork --kill-child -- "${BASH_SOURCE[0]}" "$release" "${options[@]}"
fi

# archive SUITE : where this machine's apt has the suite of its own release from ("" or "-security")
archive() {
    local own
    own=$(. /etc/os-release && echo "$VERSION_CODENAME")
    apt-get indextargets --format '$(CODENAME) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
        awk -v suite="$own$1" '$1 == suite && $2 == "main" { print $3; exit }'
}

make_machine() {
    local machine=$machine.part
    rm -rf "$machine"
    mkdir -p "$machine"
    local main security keys=/usr/share/keyrings/debian-archive-keyring.gpg from="$machine/etc/apt/sources.list"
    main=$(archive "") security=$(archive -security)
    debootstrap --variant=minbase --include=ca-certificates,sudo "$release" "$machine" "${main:?no archive in /etc/apt}" >"$machine.log"
    rm -f "$from" "$machine"/etc/apt/sources.list.d/*
    if [ "$sources" = list ]; then
        echo "deb $main $release main" >"$from"
        echo "deb [signed-by=$keys] $main $release-updates main" >>"$from"
        if [ -n "$security" ]; then echo "deb $security $release-security main" >>"$from"; fi
    else
        from=$machine/etc/apt/sources.list.d/debian.sources
        printf '%s\n' "Types: deb" "URIs: $main" "Suites: $release $release-updates" "Components: main" "Signed-By: $keys" "" >"$from"
        if [ -n "$security" ]; then
            printf '%s\n' "Types: deb" "URIs: $security" "Suites: $release-security" "Components: main" "Signed-By: $keys" >>"$from"
        fi
    fi
    apt-config dump Acquire | grep -E '^Acquire::(https?|ftp|Retries|Check-)' >"$machine/etc/apt/apt.conf.d/99machine" || true
    rm -rf "$machine"/var/lib/apt/lists/* "$machine"/var/cache/apt/archives/*.deb
    chroot "$machine" useradd --create-home --shell /bin/bash newcomer
    if [ "$user" = sudo ]; then echo 'newcomer ALL=(ALL) NOPASSWD: ALL' >"$machine/etc/sudoers.d/newcomer"; fi
    mv "$machine" "${machine%.part}"
}

home=/root who=root
if [ "$user" != root ]; then home=/home/newcomer who=newcomer; fi

# typed COMMAND : what the newcomer types in the checkout
typed() {
    local proxies=() name
    for name in http_proxy https_proxy no_proxy; do
        if [ -n "${!name:-}" ]; then proxies+=("$name=${!name}"); fi
    done
    chroot --userspec="$who:$who" "$machine" env -i HOME=$home USER=$who PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin \
        LANG=C.UTF-8 "${proxies[@]}" bash -c "cd ~/quenlox && $1"
}

# first_sound : waits for a sound server of the product's and prints the seconds of this script when it is heard
first_sound() {
    local socket
    until socket=$(find "$machine/tmp" -path '*/quenlox-*/pulse.socket' 2>/dev/null | head -n 1) && [ -n "$socket" ]; do sleep 0.1; done
    # The server may offer its socket before it has the sink; what records ends with a broken pipe when the first byte came.
    until [ "$(chroot "$machine" parec -s "unix:${socket#"$machine"}" -d null.monitor --raw --latency-msec=20 2>/dev/null |
        tr -d '\0' | head -c 1 | wc -c)" = 1 ]; do sleep 0.1; done
    date +%s.%N
}

seconds() { awk -v from="$1" -v to="$2" 'BEGIN { printf "%.1f", to - from }'; }

# step NAME COMMAND : runs it with its output in MACHINE.NAME.log and on the screen; leaves $took, $used (processor seconds)
step() {
    local start
    say "$2"
    start=$(date +%s.%N)
    TIMEFORMAT='%U %S'
    { time { typed "$2" 2>&1 | tee "$machine.$1.log" >&3; }; } 3>&2 2>"$machine.time" || result=1
    took=$(seconds "$start" "$(date +%s.%N)")
    used=$(tail -n 1 "$machine.time" | awk '{ printf "%.0f", $1 + $2 }')
}

mount --make-rprivate /
if [ -d "$machine" ] && ! $keep; then
    say "$machine is there already: remove it, or go on in it with --keep"
    exit 1
fi
result=0
if [ ! -d "$machine" ]; then
    say "making Debian $release in $machine"
    make_machine
fi
mount -t proc proc "$machine/proc"
mount --rbind /sys "$machine/sys"
mount --rbind /dev "$machine/dev"
mount -t tmpfs tmpfs "$machine/dev/shm"
cp /etc/resolv.conf /etc/hosts "$machine/etc/"
if [ ! -d "$machine$home/quenlox" ]; then
    git clone -q "$root" "$machine$home/quenlox"
    chroot "$machine" chown -R $who: $home/quenlox
fi

for step in $steps; do
    if [ $result -ne 0 ]; then break; fi # what comes after a failure tells nothing
    case $step in
        run | again)
            rm -rf "$machine"/tmp/quenlox-*
            start=$(date +%s.%N)
            first_sound >"$machine.sound" &
            listener=$!
            step "$step" ./run.sh
            sleep 1
            kill $listener 2>/dev/null || true
            heard=$(cat "$machine.sound")
            echo "$release, $sources, $user, $step: first sound after ${heard:+$(seconds "$start" "$heard")} s, end after $took s, $used s of processors"
            ;;
        test | warm)
            step "$step" ./test.sh
            echo "$release, $sources, $user, $step: $took s, $used s of processors, $(tail -n 1 "$machine.$step.log")"
            ;;
        *) usage ;;
    esac
done
if ! $keep; then rm -rf --one-file-system "$machine"; fi
exit $result
