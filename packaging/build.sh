#!/bin/bash
# Builds what is published into build/packages:
#   Quenlox-VERSION.zip           the portable folder
#   Quenlox-VERSION-setup.exe     the installer
#   Quenlox-VERSION-source.zip    this source, that of the libraries, and what builds them
#   Quenlox-VERSION-symbols.zip   line tables, for tools/explain_crash.py
#   Quenlox-VERSION.spdx.json     what the program consists of
#   SHA256SUMS                    of all of these
# usage: packaging/build.sh
#
# VERSION is the number of CMakeLists.txt alone only for a commit with its tag, else "-dev" and the commit follow. Who
# publishes, and how files are signed, stands in packaging/publisher.conf.
#
# The same commit gives the same bytes (tools/build_twice.sh sees to it): times are those of the commit, entries are sorted,
# rights are fixed, and the program files hold neither times nor paths (cmake/compile_options.cmake).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
source tools/deps/common.sh
source tools/deps/licences.sh
source packaging/publisher.conf
export QUENLOX_HOME QUENLOX_SIGN
umask 022
export LC_ALL=C TZ=UTC

tools/setup.sh
mkdir -p build
logged build/packages-configure.log cmake --preset win64 -DQUENLOX_HOME="$QUENLOX_HOME"
{ read -r version; read -r commit; read -r SOURCE_DATE_EPOCH; } <build/win64/version.txt
export SOURCE_DATE_EPOCH
logged build/packages-build.log nice cmake --build --preset stage

packages=$root/build/packages
product=$packages/Quenlox
rm -rf "$packages"
mkdir -p "$product"

# packed FOLDER ZIP : a folder of build/packages as a zip of the same bytes each time; the folder goes
packed() {
    chmod -R u=rwX,go=rX "$packages/$1"
    find "$packages/$1" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
    (cd "$packages" && find "$1" -not -type d | sort | zip -q -X -y -9 -@ "$2")
    rm -r "${packages:?}/$1"
}

# text SOURCE NAME : a text of this tree as users of Windows open it
text() { sed "s/@VERSION@/$version/g; s/\$/\r/" "$1" >"$product/$2"; }

# A release says where reports go, has a dated entry in the list of changes, and is made of sources that this tree names.
check_release() {
    local unknown
    if [ -z "$QUENLOX_SECURITY" ]; then
        echo "build: set QUENLOX_SECURITY in packaging/publisher.conf before a release" >&2
        return 1
    fi
    if ! grep -qE "^## ${version//./\\.}, [0-9]{4}-[0-9]{2}-[0-9]{2}\$" CHANGELOG.md; then
        echo "build: CHANGELOG.md has no dated entry of $version" >&2
        return 1
    fi
    unknown=$(grep -vxFf tools/deps/sources.sha256 "$product/licences/sources.sha256" || true)
    if [ -n "$unknown" ] || grep ' changed, ' "$product/licences/versions.txt" >&2; then
        echo "build: sources of libraries that tools/deps/sources.sha256 does not name: $unknown" >&2
        return 1
    fi
}

# Installed anew and not taken from build/quenlox, where settings and lists of a trial may be.
product_folder() {
    logged build/packages-install.log cmake --install build/win64 --prefix "$product" --component product --strip
    text packaging/README.txt README.txt
    text CHANGELOG.md CHANGELOG.txt
    text SECURITY.md SECURITY.txt
    printf '\r\nAddress for reports: %s\r\n' "${QUENLOX_SECURITY:-none yet, this is no release}" >>"$product/SECURITY.txt"
    # The installer holds parts of the program that makes it.
    cp /usr/share/doc/nsis/copyright "$product/licences/nsis.txt"
    licence_texts "$product/licences"
    [[ $version = *-* ]] || check_release
    if [ -n "$QUENLOX_SIGN" ]; then
        for file in "$product"/{Quenlox.exe,vbmp3.dll,gogo.dll}; do
            $QUENLOX_SIGN "$file"
        done
    fi
    chmod -R u=rwX,go=rX "$product"
    find "$product" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
}

# The files of this tree as they are now, changed libraries included, and the libraries' source packages.
source_folder() {
    local folder=$packages/Quenlox-$version-source package
    mkdir -p "$folder"
    if [ -e .git ]; then
        git ls-files -z
        find third-party -mindepth 1 -not -path 'third-party/sources*' -type f -print0 2>/dev/null || true
    else
        find . -path ./build -prune -o -path ./third-party/sources -prune -o -not -type d -print0
    fi | tar -c --null -T - | tar -x -C "$folder"
    printf '%s\n' "$version" "$commit" "$SOURCE_DATE_EPOCH" >"$folder/packaging/version.txt"
    mkdir -p "$folder/third-party/sources"
    while read -r package; do
        find "$package/" -type f -not -name '*.log' -exec cp {} "$folder/third-party/sources/" \;
    done < <(tools/deps.sh --sources)
}

symbols_folder() {
    local folder=$packages/Quenlox-$version-symbols
    mkdir -p "$folder"
    cp build/win64/version.txt "$folder/"
    find build/win64/app build/win64/libraries -name '*.exe' -exec cp {} "$folder/" \; \
        -o -name '*.dll' -exec cp {} "$folder/" \;
}

product_folder
packaging/spdx.py "$product" "$version" "$commit" >"$packages/Quenlox-$version.spdx.json"
logged build/packages-installer.log packaging/installer/make.sh "$product" "$version" "$packages"
packed Quenlox "Quenlox-$version.zip"
source_folder
packed "Quenlox-$version-source" "Quenlox-$version-source.zip"
symbols_folder
packed "Quenlox-$version-symbols" "Quenlox-$version-symbols.zip"
(cd "$packages" && sha256sum Quenlox-* | tee SHA256SUMS)
