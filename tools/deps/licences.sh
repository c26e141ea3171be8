# What is said with the libraries about where they come from and under which terms; sourced.

# licence_texts DIR : adds to DIR every licence that one of its notices leaves to Debian's folder of common licences, as
# NAME.txt; fails when the machine has no copy of one. Users have no such folder.
licence_texts() {
    local dir=$1 name names
    names=$(grep -rhoE '/usr/share/common-licenses/[A-Za-z0-9.-]*[A-Za-z0-9]' "$dir" | sed 's|.*/||' | sort -u)
    for name in $names; do
        if ! cp -L "/usr/share/common-licenses/$name" "$dir/$name.txt"; then
            echo "licences: no copy of $name on this machine; the package base-files has it" >&2
            return 1
        fi
    done
}

# library_notices NAME SOURCE DIR : what a library's own source says of its terms and authors, and Debian's list of who
# holds which file, as NAME*.txt in DIR
library_notices() {
    local name=$1 source=$2 dir=$3 file found=
    cp "$source/debian/copyright" "$dir/$name.txt" || return
    for file in "$source"/COPYING* "$source"/LICENSE "$source"/AUTHORS "$source"/LICENSES/*; do
        [ -f "$file" ] || continue
        [[ ${file##*/} = COPYING* ]] && found=yes
        cp "$file" "$dir/$name-$(basename "${file%.[Tt][Xx][Tt]}").txt" || return
    done
    if [ -z "$found" ]; then
        echo "licences: the source of $name has no licence beside it" >&2
        return 1
    fi
}
