# Debian source packages: kept, checked and unpacked; sourced by tools/deps.sh.
#
# apt checks the index's signature and the description's hash against the index (archive.sh); every file is then checked
# against the description.
source "${BASH_SOURCE[0]%/*}/archive.sh"

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

# fetch_source APT_DIR STORE PACKAGE VERSION : the checked files of a source package below STORE; prints the .dsc's path
fetch_source() {
    local apt=$1 wanted=$2/$3_${4//:/%} package=$3 version=$4 dsc= store
    dsc=$(find "$root/third-party/sources" -name "${package}_*.dsc" 2>/dev/null || true)
    if [ -z "$dsc" ] && [ -d "$wanted" ]; then
        dsc=$(find "$wanted/" -maxdepth 1 -name '*.dsc')
    fi
    if [ -z "$dsc" ]; then
        local work="$wanted.part.$$"
        rm -rf "$work"
        mkdir -p "$work"
        download_source "$apt" "$work" "$package" "$version" || return
        dsc=$(find "$work" -maxdepth 1 -name '*.dsc')
        store=$2/${package}_$(version_in "$dsc" | sed 's/:/%/g')
        rm -rf "$wanted" "$store"
        mv "$work" "$store"
        # Another version is kept under its own name, and found again.
        [ "$store" = "$wanted" ] || ln -s "${store##*/}" "$wanted"
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
