#!/bin/bash
# Checks format (clang-format) and common mistakes (clang-tidy) of C++ files that changed, those not yet committed included.
# usage: tools/lint.sh [--fix] [--all] [BASE]
#   BASE    what to compare with; main when there is such a branch, else the last commit
#   --all   every file in the repository
#   --fix   formats instead of complaining; clang-tidy still only reports
# clang-tidy reads the native build, and the win64 build for what is only in that one; a file that is in neither gets the
# format check alone.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fix=false all=false base=
for argument in "$@"; do
    case $argument in
        --fix) fix=true ;;
        --all) all=true ;;
        *) base=$argument ;;
    esac
done
if [ -z "$base" ]; then
    base=$(git rev-parse -q --verify main || git rev-parse HEAD)
fi

if $all; then
    listed=$(git ls-files)
else
    listed=$(git diff --name-only --diff-filter=d "$(git merge-base "$base" HEAD)"; git ls-files --others --exclude-standard)
fi
mapfile -t files < <(grep -E '\.(h|cpp)$' <<<"$listed" | sort -u)
if [ ${#files[@]} -eq 0 ]; then
    echo "lint: no C++ file changed"
    exit 0
fi

status=0
if $fix; then
    clang-format -i "${files[@]}"
else
    clang-format --dry-run -Werror "${files[@]}" || status=1
fi

# tidy PRESET [ARGUMENT...] : checks the files on standard input as that build compiles them
tidy() {
    local preset=$1
    shift
    tr '\n' '\0' | nice xargs -0 -r -n 1 -P "$(nproc)" \
        clang-tidy --quiet -p "build/$preset" --warnings-as-errors='*' "$@" 2>/dev/null
}

# compiled PRESET : which of the files that build compiles
compiled() {
    [ -e "build/$1/compile_commands.json" ] || cmake --preset "$1" >/dev/null
    for file in "${files[@]}"; do
        if grep -qF "\"file\": \"$PWD/$file\"" "build/$1/compile_commands.json"; then echo "$file"; fi
    done
}

native=$(compiled native)
windows=$(comm -13 <(echo "$native") <(compiled win64))
if [ -n "$native" ]; then
    tidy native <<<"$native" || status=1
fi
if [ -n "$windows" ]; then
    # Clang does not find the headers of the cross compiler's C++ library by itself.
    mapfile -t headers < <(x86_64-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | sed -n 's#^ \(/.*/c++.*\)#--extra-arg=-isystem\1#p')
    tidy win64 --extra-arg=--target=x86_64-w64-windows-gnu "${headers[@]}" <<<"$windows" || status=1
fi
if [ $status -eq 0 ]; then
    echo "lint: nothing to say about ${#files[@]} files"
fi
exit $status
