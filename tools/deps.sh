#!/bin/bash
# Cross-builds the static libraries of the Windows product from Debian's sources and prints the folder that holds them.
# usage: tools/deps.sh
#
# What was built is kept outside the checkout under a key of the libraries' versions, the compiler and these scripts, so
# that it is built once per machine. A folder appears under its key only when everything in it is complete. The versions
# are those of the installed -dev packages: the native tests and the product use the same ones.
set -euo pipefail
shopt -s inherit_errexit
set -E
trap 'echo "deps: failed at line $LINENO of ${BASH_SOURCE[0]}: $BASH_COMMAND" >&2' ERR
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$root/tools/deps/common.sh"
source "$root/tools/deps/source.sh"

triple=x86_64-w64-mingw32
toolchain=$root/cmake/mingw.cmake
libraries=(mpg123 lame soundtouch kissfft)
dev_packages=(libmpg123-dev libmp3lame-dev libsoundtouch-dev libkissfft-dev)
# Of these the run-time parts are linked into every program file.
runtime_packages=(gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev)
jobs=${QUENLOX_JOBS:-$(nproc)}

versions=$(dpkg-query -W -f '${source:Package} ${source:Version}\n' "${dev_packages[@]}" "${runtime_packages[@]}" googletest | sort -u)
compiler=$($triple-g++-posix -dumpfullversion)
key=$({ echo "$versions $compiler"; cat "$toolchain" "$root/tools/deps.sh" "$root"/tools/deps/*.sh; } | hash_of -)
cache=$(quenlox_cache)
prefix=$cache/win64-$key

if [ -e "$prefix/complete" ]; then
    echo "$prefix"
    exit 0
fi

mkdir -p "$cache"
exec 9>"$cache/deps.lock"
flock 9
if [ -e "$prefix/complete" ]; then # another run built it while this one waited
    echo "$prefix"
    exit 0
fi

work=$(mktemp -d "$cache/building.XXXXXX")
trap 'rm -rf "$work"' EXIT
stage=$work/stage
export SOURCE_DATE_EPOCH=1700000000
export CCACHE_BASEDIR=$work CCACHE_NOHASHDIR=1
launcher=$(command -v ccache || true)
# Messages name the source file they stand in: always as ./library/file, wherever it is built and with or without ccache,
# so that the same sources give the same bytes.
same_names="-ffile-prefix-map=$work=. -ffile-prefix-map=..=. -ffile-prefix-map=../..=."

version_of() { awk -v p="$1" '$1 == p { print $2 }' <<<"$versions"; }

fetched() {
    local dsc
    dsc=$(fetch_source "$cache/apt" "$cache/sources" "$1" "$(version_of "$1")")
    unpack_source "$dsc" "$work/$1"
}

# cmake_library SOURCE_DIR BUILD_DIR OPTIONS...
cmake_library() {
    local source=$1 build=$2
    shift 2
    cmake -S "$source" -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF \
        -DCMAKE_C_FLAGS="$same_names" -DCMAKE_CXX_FLAGS="$same_names" \
        ${launcher:+-DCMAKE_C_COMPILER_LAUNCHER="$launcher" -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher"} "$@" || return
    cmake --build "$build" -j "$jobs" && DESTDIR=$stage cmake --install "$build"
}

build_mpg123() {
    cmake_library "$work/mpg123/ports/cmake" "$work/build-mpg123" \
        -DBUILD_LIBOUT123=OFF -DBUILD_PROGRAMS=OFF -DHAVE_FPU=ON
}

build_lame() (
    mkdir -p "$work/build-lame" && cd "$work/build-lame" || return
    "$work/lame/configure" --host=$triple --prefix="$prefix" --disable-shared --enable-static --disable-frontend \
        --disable-decoder --disable-gtktest --disable-dependency-tracking CC="${launcher:+$launcher }$triple-gcc-posix" \
        AR=$triple-ar RANLIB=$triple-ranlib STRIP=$triple-strip NM=$triple-nm CFLAGS="-O2 $same_names" &&
        make -j "$jobs" -C libmp3lame &&
        make -C libmp3lame DESTDIR="$stage" install &&
        make -C include DESTDIR="$stage" install
)

build_soundtouch() {
    cmake_library "$work/soundtouch" "$work/build-soundtouch" -DSOUNDSTRETCH=OFF
}

# Its own CMake installation is made for a shared library; the two files that are needed are simply compiled.
build_kissfft() {
    local source=$work/kissfft object=$work/build-kissfft file
    mkdir -p "$stage$prefix/include/kissfft" "$stage$prefix/lib" "$object"
    for file in kiss_fft kiss_fftr; do
        $triple-gcc-posix -O3 -ffast-math $same_names -c "$source/$file.c" -o "$object/$file.o" || return
    done
    $triple-ar rcsD "$stage$prefix/lib/libkissfft-float.a" "$object"/*.o &&
        cp "$source"/kiss_fft{,r,_log}.h "$stage$prefix/include/kissfft/"
}

build_googletest() {
    cmake_library /usr/src/googletest "$work/build-googletest" -DBUILD_GMOCK=ON
}

# Licences and versions travel with the libraries: the product's folder takes them from here.
collect_notices() {
    local package notices=$stage$prefix/licences
    mkdir -p "$notices"
    for package in "${libraries[@]}"; do
        cp "$work/$package/debian/copyright" "$notices/$package.txt"
    done
    cp /usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright "$notices/gcc-runtime.txt"
    cp /usr/share/doc/mingw-w64-x86-64-dev/copyright "$notices/mingw-w64-runtime.txt"
    grep -v '^googletest ' <<<"$versions" >"$notices/versions.txt"
}

for library in "${libraries[@]}"; do
    fetched $library
done
for library in "${libraries[@]}" googletest; do
    echo "deps: building $library $(version_of $library) for Windows" >&2
    logged "$work/$library.log" build_$library
done
collect_notices
touch "$stage$prefix/complete"
rm -rf "$prefix"
mv "$stage$prefix" "$prefix"
echo "$prefix"
