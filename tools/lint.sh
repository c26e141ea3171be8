#!/bin/bash
# Checks format (clang-format) and common mistakes (clang-tidy) of C++ files that changed, those not yet committed included.
# usage: tools/lint.sh [--fix] [--all] [BASE]
#   BASE    what to compare with; main when there is such a branch, else the last commit
#   --all   every file in the repository
#   --fix   formats instead of complaining; clang-tidy still only reports
# clang-tidy reads the native build (cmake --preset native); files under platform/win32 and other code for Windows only
# are in no native build and get the format check alone.
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

database=build/native/compile_commands.json
[ -e "$database" ] || cmake --preset native >/dev/null
mapfile -t compiled < <(for file in "${files[@]}"; do
    if [[ $file == *.cpp ]] && grep -qF "\"file\": \"$PWD/$file\"" "$database"; then echo "$file"; fi
done)
if [ ${#compiled[@]} -gt 0 ]; then
    printf '%s\0' "${compiled[@]}" |
        nice xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build/native --warnings-as-errors='*' 2>/dev/null || status=1
fi
[ $status -eq 0 ] && echo "lint: ${#files[@]} files, ${#compiled[@]} of them compiled: nothing to say"
exit $status
