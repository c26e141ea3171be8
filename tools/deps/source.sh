# Fetches Debian source packages with an apt configuration of its own; sourced by tools/deps.sh.
#
# The machine's package lists and configuration are only read: the same archives are asked for their sources, but lists
# and files go to the cache. apt checks the index's signature and the description's hash against the index; every file
# is then checked against the description.

# private_apt DIR : writes DIR/apt.conf and fetches the source index unless DIR has one
private_apt() {
    local dir=$1 file
    if [ -e "$dir/ready" ]; then return; fi
    rm -rf "$dir"
    mkdir -p "$dir"/{lists/partial,archives/partial,sources.list.d}

    # Each stanza or line of the machine's sources, with its type turned to deb-src; duplicates would make apt complain.
    for file in /etc/apt/sources.list.d/*.sources; do
        [ -e "$file" ] && { grep -v '^#' "$file"; echo; }
    done | awk -v RS= -v ORS='\n\n' '
        { gsub(/(^|\n)[Tt]ypes:[^\n]*/, ""); sub(/^\n/, "") }
        !seen[$0]++ { print "Types: deb-src\n" $0 }' >"$dir/sources.list.d/machine.sources"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -e "$file" ] && sed -nE 's/^[[:space:]]*deb(-src)?[[:space:]]+/deb-src /p' "$file"
    done | sort -u >"$dir/sources.list" || true

    cat >"$dir/apt.conf" <<CONF
Dir::Etc::sourcelist "$dir/sources.list";
Dir::Etc::sourceparts "$dir/sources.list.d";
Dir::State::Lists "$dir/lists";
Dir::Cache "$dir";
APT::Sandbox::User "";
Acquire::Languages "none";
Acquire::Retries "3";
CONF
    APT_CONFIG="$dir/apt.conf" logged "$dir/update.log" apt-get -q update
    touch "$dir/ready"
}

# dsc_files DSC : "sha256  name" of the files that a description lists, without detached signatures, which the archives
# of some mirrors lack and which nothing here reads
dsc_files() {
    awk '/^Checksums-Sha256:/ { on = 1; next } /^[^ ]/ { on = 0 } on && $3 !~ /\.asc$/ { print $1 "  " $3 }' "$1"
}

# version_in DSC : the version that a description is of
version_in() { awk '$1 == "Version:" { print $2; exit }' "$1"; }

# source_hashes DSC : "sha256  name" of the description and of the files that it lists
source_hashes() {
    (cd "${1%/*}" && sha256sum "${1##*/}")
    dsc_files "$1"
}

# check_source DSC : the files are those of the description, and where tools/deps/sources.sha256 has the names, those that
# it names
check_source() {
    local dsc=$1 known=${BASH_SOURCE[0]%/*}/sources.sha256 hash name
    (cd "${dsc%/*}" && dsc_files "$dsc" | sha256sum --check --quiet - >&2) || return
    while read -r hash name; do
        if ! grep -qF "  $name" "$known"; then
            echo "deps: $name is not in tools/deps/sources.sha256: its archive's signature alone vouches for it" >&2
        elif ! grep -qxF "$hash  $name" "$known"; then
            echo "deps: $dsc: $name is not the file that tools/deps/sources.sha256 names" >&2
            return 1
        fi
    done < <(source_hashes "$dsc")
}

# fetch_source APT_DIR STORE PACKAGE VERSION : the checked files of a source package in STORE; prints the .dsc's path
fetch_source() {
    local apt=$1 store=$2/$3_${4//:/%} package=$3 version=$4 dsc=
    dsc=$(find "$root/third-party/sources" -name "${package}_*.dsc" 2>/dev/null || true)
    if [ -z "$dsc" ] && [ -d "$store" ]; then
        dsc=$(find "$store" -maxdepth 1 -name '*.dsc')
    fi
    if [ -z "$dsc" ]; then
        private_apt "$apt"
        local work="$store.part.$$"
        rm -rf "$work"
        mkdir -p "$work"
        # A missing detached signature makes apt-get report failure although all that counts has arrived; the check
        # of the files below decides. A version that has left the archive is replaced by the one that is there now.
        (cd "$work" && APT_CONFIG="$apt/apt.conf" apt-get -q source --download-only --only-source "$package=$version") \
            >"$work/apt.log" 2>&1 ||
            find "$work" -name '*.dsc' | grep -q . ||
            (cd "$work" && APT_CONFIG="$apt/apt.conf" apt-get -q source --download-only --only-source "$package") \
                >>"$work/apt.log" 2>&1 || true
        dsc=$(find "$work" -maxdepth 1 -name '*.dsc')
        if [ -z "$dsc" ]; then
            { echo "deps: could not fetch the source of $package $version"; cat "$work/apt.log"; } >&2
            return 1
        fi
        store=$2/${package}_$(version_in "$dsc" | sed 's/:/%/g')
        rm -rf "$store"
        mv "$work" "$store"
        dsc=$store/${dsc##*/}
    fi
    check_source "$dsc" || return
    echo "$dsc"
}

# unpack_source DSC DIR : upstream's files with Debian's patches applied
unpack_source() {
    local dsc=$1 dir=$2 files patch
    files=$(dsc_files "$dsc" | cut -d' ' -f3)
    rm -rf "$dir"
    mkdir -p "$dir"
    tar -xf "${dsc%/*}/$(grep -E '\.orig\.tar\.[a-z0-9]+$' <<<"$files")" -C "$dir" --strip-components=1
    tar -xf "${dsc%/*}/$(grep -E '\.debian\.tar\.[a-z0-9]+$' <<<"$files")" -C "$dir"
    [ -e "$dir/debian/patches/series" ] || return 0
    sed 's/[[:space:]]*#.*//; s/[[:space:]].*//; /^$/d' "$dir/debian/patches/series" | while read -r patch; do
        patch -s -p1 -d "$dir" <"$dir/debian/patches/$patch"
    done
}
