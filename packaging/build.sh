#!/bin/bash
# Builds what users download into build/packages: the portable folder as Quenlox-VERSION.zip, and Quenlox-VERSION-setup.exe.
# usage: packaging/build.sh
#
# The same commit gives the same bytes: times are those of the commit, entries are sorted, rights are fixed, and the
# program files hold neither times nor paths (cmake/compile_options.cmake).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
source tools/deps/common.sh
umask 022
export LC_ALL=C TZ=UTC

tools/setup.sh
mkdir -p build
logged build/packages-configure.log cmake --preset win64
logged build/packages-build.log nice cmake --build --preset stage
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/win64/CMakeCache.txt)
# Outside a checkout any fixed time does.
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || echo 1700000000)}

# Installed anew and not taken from build/quenlox, where settings and lists of a trial may be.
packages=$root/build/packages
product=$packages/Quenlox
rm -rf "$packages"
mkdir -p "$product"
logged build/packages-install.log cmake --install build/win64 --prefix "$product" --component product --strip
find "$product" -type d -exec chmod 755 {} +
find "$product" -type f -exec chmod 644 {} +
find "$product" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +

portable() {
    (cd "$packages" && find Quenlox -type f | sort | zip -q -X -9 -@ "Quenlox-$version.zip")
}

portable
logged build/packages-installer.log packaging/installer/make.sh "$product" "$version" "$packages"
rm -r "$product"
(cd "$packages" && sha256sum Quenlox-"$version"*)
