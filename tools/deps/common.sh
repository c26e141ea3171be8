# Shared by the scripts that keep things outside the checkout; sourced, not run.

# The folder where built libraries, their sources and Wine prefixes are kept between checkouts.
quenlox_cache() { echo "${QUENLOX_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quenlox}"; }

# hash_of FILE... : a short key of the files' contents
hash_of() { cat -- "$@" | sha256sum | cut -c1-12; }

# logged LOG COMMAND... : runs quietly; when the command fails, the end of its log tells why
logged() {
    local log=$1
    shift
    if ! "$@" >"$log" 2>&1; then
        { echo "failed: $*"; tail -n 40 "$log"; } >&2
        return 1
    fi
}
