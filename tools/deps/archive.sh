# Asks the archives of this machine for Debian source packages, with an apt configuration of its own; sourced by source.sh.
#
# The machine's own lists and configuration are only read: its archives, keys and proxies are used, but lists and files go to
# the cache. apt checks the signature of the index, and every file against the index.

# Releases whose sources are known to build here, for when the machine's own release cannot be had from the archive.
declare -A other_releases=([debian]="trixie bookworm" [ubuntu]="noble jammy")

# source_stanzas OWN OTHERS : the stanzas (*.sources) on standard input as sources of source packages. With OTHERS only those
# that have a suite of the list OWN, and in its place the suites OTHERS.
source_stanzas() {
    awk -v own="$1" -v others="$2" '
        function flush(    stanza, i, n, names, wanted) {
            wanted = suites
            if (others != "") {
                wanted = ""
                n = split(suites, names)
                for (i = 1; i <= n; i++) if (index(" " own " ", " " names[i] " ")) wanted = " " others
            }
            stanza = "Types: deb-src\nSuites:" wanted "\n" body
            if (body != "" && wanted != "" && body !~ /\n?[Uu][Rr][Ii][Ss]:[ \t]*cdrom:/ && !seen[stanza]++) print stanza
            body = suites = field = ""
        }
        /^[ \t]*$/ { flush(); next }
        /^#/ { next }
        /^[^ \t]/ { field = tolower($0); sub(/[ \t]*:.*/, "", field) }
        field == "types" { next }
        field == "suites" { sub(/^[^ \t:]+[ \t]*:/, ""); gsub(/[ \t]+/, " "); suites = suites " " $0; next }
        { body = body $0 "\n" }
        END { flush() }'
}

# source_lines OWN OTHERS : the same for the one-line form
source_lines() {
    awk -v own="$1" -v others="$2" '
        !/^[ \t]*deb(-src)?[ \t]/ { next }
        {
            sub(/#.*/, ""); sub(/^[ \t]*deb(-src)?[ \t]+/, "")
            options = ""
            if (/^\[/) { options = substr($0, 1, index($0, "]")) " "; $0 = substr($0, index($0, "]") + 1) }
            if ($1 ~ /^cdrom:/) next
            n = 1; names[1] = $2
            if (others != "") n = index(" " own " ", " " $2 " ") ? split(others, names) : 0
            for (i = 1; i <= n; i++) {
                $2 = names[i]
                line = "deb-src " options $0
                if (!seen[line]++) print line
            }
        }'
}

# each_file FILE... : those of the files that are there, with an empty line after each
each_file() {
    local file
    for file in "$@"; do
        if [ -f "$file" ]; then
            cat "$file"
            printf '\n\n'
        fi
    done
}

# private_apt DIR [OTHERS] : writes DIR/apt.conf and fetches the source index unless DIR has one; with OTHERS, names of
# releases, that of those instead of the machine's own. An archive that does not answer is none of ours to complain of: only
# whether the sources can be had counts.
private_apt() {
    local dir=$1 others=${2:-} list='' parts='' own
    if [ -e "$dir/ready" ]; then return; fi
    rm -rf "$dir"
    mkdir -p "$dir"/{lists/partial,archives/partial,sources.list.d}
    own="$(. /etc/os-release && echo "${VERSION_CODENAME:-}") oldstable stable testing unstable sid"
    eval "$(apt-config shell list Dir::Etc::sourcelist/f parts Dir::Etc::sourceparts/d)"

    each_file "$parts"/*.sources | source_stanzas "$own" "$others" >"$dir/sources.list.d/machine.sources"
    each_file "$list" "$parts"/*.list | source_lines "$own" "$others" >"$dir/sources.list"

    cat >"$dir/apt.conf" <<CONF
Dir::Etc::sourcelist "$dir/sources.list";
Dir::Etc::sourceparts "$dir/sources.list.d";
Dir::State::Lists "$dir/lists";
Dir::Cache "$dir";
APT::Sandbox::User "";
Acquire::Languages "none";
Acquire::Retries "3";
CONF
    APT_CONFIG="$dir/apt.conf" apt-get -q update >"$dir/update.log" 2>&1 || true
    touch "$dir/ready"
}

# download_version APT_DIR DIR PACKAGE VERSION : true when the description and all that it lists are in DIR, and whole. A
# missing detached signature makes apt-get report failure although all that counts has arrived.
download_version() {
    local apt=$1 dir=$2 dsc
    rm -f "$dir"/*
    (cd "$dir" && LC_ALL=C APT_CONFIG=$apt/apt.conf apt-get -q source --download-only --only-source "$3=$4") \
        >"$dir/apt.log" 2>&1 || true
    dsc=$(find "$dir" -maxdepth 1 -name '*.dsc')
    [ -n "$dsc" ] && (cd "$dir" && dsc_files "$dsc" | sha256sum --check --status -)
}

# download_source APT_DIR DIR PACKAGE VERSION : a source package in DIR, of another version when no archive of this machine
# has that one in full
download_source() {
    local apt=$1 dir=$2 package=$3 version=$4 lists other missing
    private_apt "$apt/own"
    if download_version "$apt/own" "$dir" "$package" "$version"; then return; fi
    if [ -n "$(find "$apt/own/ready" -mmin +5)" ]; then # the archive may have moved on since
        rm -rf "$apt/own" "$apt/others"
    fi
    private_apt "$apt/own"
    if download_version "$apt/own" "$dir" "$package" "$version"; then return; fi
    missing=$(sed -nE 's|^E: Failed to fetch .*/([^/ ]+) .*|\1|p' "$dir/apt.log" | tr '\n' ' ')
    cp "$dir/apt.log" "$apt/failed.log"

    # shellcheck disable=SC1091
    private_apt "$apt/others" "$(. /etc/os-release && echo "${other_releases[$ID]:-}")"
    for lists in own others; do
        for other in $(APT_CONFIG=$apt/$lists/apt.conf apt-cache showsrc --only-source "$package" 2>/dev/null |
            sed -n 's/^Version: //p' | sort -Vru); do
            if [ "$other" != "$version" ] && download_version "$apt/$lists" "$dir" "$package" "$other"; then
                echo "deps: the archive does not serve $package $version${missing:+ (missing: ${missing% })}; taking $other" >&2
                return
            fi
        done
    done
    cat "$apt/failed.log" >&2
    echo "deps: no archive of this machine serves the source of $package $version${missing:+ (missing: ${missing% })}, nor of" \
        "another version. Please try again later, or with another mirror in /etc/apt." >&2
    return 1
}
