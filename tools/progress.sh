# One line per stage of a long piece of work: what it does and how far it is. Sourced by scripts; writes to standard error.

# show_progress : standard input has lines "DONE TOTAL TITLE...", where TOTAL may be "%"; another title begins another line
# on the screen. On a terminal the line is a bar drawn in place. Elsewhere a stage that lasts says every ten seconds how far
# it is, and at its end how long it took. A stage that is over at once says nothing.
show_progress() {
    local count total name title='' since=0 said=0 far bar width=30 filled terminal=false
    if [ -t 2 ]; then terminal=true; fi
    end_stage() {
        if [ -z "$title" ]; then
            return
        elif $terminal; then
            echo >&2
        elif [ $((SECONDS - since)) -gt 1 ]; then
            echo "$title: $((SECONDS - since)) s" >&2
        fi
    }
    while read -r count total name; do
        if [ "$name" != "$title" ]; then
            end_stage
            title=$name since=$SECONDS said=0
        fi
        if [ "$total" = % ]; then far="$count %"; else far="$count of $total"; fi
        if $terminal; then
            filled=$((${total/\%/100} > 0 ? count * width / ${total/\%/100} : 0))
            printf -v bar '%*s' $filled ''
            printf '\r%-20s [%-*s] %s ' "$title" $width "${bar// /#}" "$far" >&2
        elif [ $((SECONDS - since - said)) -ge 10 ]; then
            said=$((SECONDS - since))
            echo "$title $far" >&2
        fi
    done
    end_stage
}

# try_with_progress LOG FILTER COMMAND... : runs a command with what it says in LOG; FILTER LOG turns its standard output into
# the lines of show_progress.
try_with_progress() {
    local log=$1 filter=$2
    shift 2
    : >"$log"
    ("$@" 2>>"$log" | $filter "$log" | show_progress; exit "${PIPESTATUS[0]}")
}

# with_progress LOG FILTER COMMAND... : the same; when the command fails, its errors are shown, or else the end of its log
with_progress() {
    try_with_progress "$@" && return
    {
        echo "failed: ${*:3}"
        grep -m 3 -A 15 -E '^FAILED:|^E: |error:' "$1" || tail -n 40 "$1"
        echo "all of it: $1"
    } >&2
    return 1
}

# FILTERs: for cmake --build with Ninja, and for the status lines of apt-get in the C locale.
ninja_progress() {
    tee -a "$1" | sed -unE 's#^\[([0-9]+)/([0-9]+)\] (Building|Linking).*#\1 \2 compiling#p'
}
apt_progress() {
    sed -unE 's#^dlstatus:.* ([0-9]+) of ([0-9]+).*#\1 \2 downloading#p
              s#^pmstatus:.*:([0-9]+)\.[0-9]+:.*#\1 % installing#p'
}
