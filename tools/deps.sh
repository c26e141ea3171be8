#!/bin/bash
# Cross-builds the static libraries of the Windows product from Debian's sources and prints the folder that holds them.
# usage: tools/deps.sh                   builds what is not built yet
#        tools/deps.sh tests             the same for the test library, and prints its folder
#        tools/deps.sh --change LIBRARY  puts its source into third-party/LIBRARY, to be changed there
#        tools/deps.sh --sources         prints the folder of each library's source package
#
# What was built is kept outside the checkout under a key of the libraries' versions, the compiler and these scripts, so
# that it is built once per machine. A folder appears under its key only when everything in it is complete. The versions
# are those of the installed -dev packages: the native tests and the product use the same ones.
#
# A folder third-party/LIBRARY takes the place of that library's source. third-party/sources, which comes with the source
# of a release, has the source packages, so that nothing is fetched.
set -euo pipefail
shopt -s inherit_errexit
set -E
trap 'echo "deps: failed at line $LINENO of ${BASH_SOURCE[0]}: $BASH_COMMAND" >&2' ERR
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$root/tools/deps/common.sh"
source "$root/tools/deps/source.sh"
source "$root/tools/deps/licences.sh"
source "$root/tools/progress.sh"

triple=x86_64-w64-mingw32
toolchain=$root/cmake/mingw.cmake
libraries=(mpg123 lame soundtouch kissfft)
packages=(libmpg123-dev libmp3lame-dev libsoundtouch-dev libkissfft-dev)
# Of these the run-time parts are linked into every program file.
packages+=(gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev)
folder=win64
if [ "${1:-}" = tests ]; then
    libraries=(googletest)
    packages=(googletest)
    folder=win64-tests
fi
jobs=${QUENLOX_JOBS:-$(nproc)}

versions=$(dpkg-query -W -f '${source:Package} ${source:Version}\n' "${packages[@]}" | sort -u)
version_of() { awk -v p="$1" '$1 == p { print $2 }' <<<"$versions"; }
compiler=$($triple-g++-posix -dumpfullversion)
cache=$(quenlox_cache)
changed=$root/third-party

package_of() { fetch_source "$cache/apt" "$cache/sources" "$1" "$(version_of "$1")"; }

case ${1:-} in
    --change)
        [[ " ${libraries[*]} " = *" ${2:-} "* ]] || { echo "deps: one of ${libraries[*]}" >&2; exit 1; }
        [ ! -e "$changed/$2" ] || { echo "deps: $changed/$2 is there already" >&2; exit 1; }
        dsc=$(package_of "$2")
        unpack_source "$dsc" "$changed/$2"
        echo "$changed/$2"
        exit 0 ;;
    --sources)
        for library in "${libraries[@]}"; do
            dsc=$(package_of "$library")
            dirname "$dsc"
        done
        exit 0 ;;
esac

# changed_hash LIBRARY : of all files below third-party/LIBRARY; nothing when there is no such folder
changed_hash() {
    [ -d "$changed/$1" ] || return 0
    (cd "$changed/$1" && find . -type f -print0 | LC_ALL=C sort -z | xargs -0 sha256sum) | sha256sum | cut -c1-64
}
declare -A changes
for library in "${libraries[@]}"; do
    changes[$library]=$(changed_hash "$library")
done
key=$({
    echo "$versions $compiler ${changes[*]}"
    cat "$toolchain" "$root/tools/deps.sh" "$root"/tools/deps/*.sh
} | hash_of -)
prefix=$cache/$folder-$key

if [ -e "$prefix/complete" ]; then
    echo "$prefix"
    exit 0
fi

mkdir -p "$cache"
exec 9>"$cache/deps.lock" # the source index is one for both
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
# As the program's own code (cmake/compile_options.cmake): a buffer that overflows ends the program, and a crash can be told
# by its line.
flags="$same_names -g1 -fstack-protector-strong -D_FORTIFY_SOURCE=2"

notices=$stage$prefix/licences

# fetched LIBRARY : its source in $work/LIBRARY, and what that is in the records
fetched() {
    local library=$1 dsc version
    if [ -n "${changes[$library]}" ]; then
        cp -r "$changed/$library" "$work/$library"
        echo "$library changed, sha256 of its files ${changes[$library]}" >>"$notices/versions.txt"
        return
    fi
    dsc=$(package_of "$library")
    unpack_source "$dsc" "$work/$library"
    version=$(version_in "$dsc")
    echo "$library $version" >>"$notices/versions.txt"
    if [ "$version" != "$(version_of "$library")" ]; then
        echo "deps: $library is built from $version; the native tests use $(version_of "$library")" >&2
    fi
    source_hashes "$dsc" >>"$notices/sources.sha256"
}

# cmake_library SOURCE_DIR BUILD_DIR OPTIONS...
cmake_library() {
    local source=$1 build=$2
    shift 2
    cmake -S "$source" -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF \
        -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
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
        AR=$triple-ar RANLIB=$triple-ranlib STRIP=$triple-strip NM=$triple-nm CFLAGS="-O2 $flags" &&
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
        $triple-gcc-posix -O3 -ffast-math $flags -c "$source/$file.c" -o "$object/$file.o" || return
    done
    $triple-ar rcsD "$stage$prefix/lib/libkissfft-float.a" "$object"/*.o &&
        cp "$source"/kiss_fft{,r,_log}.h "$stage$prefix/include/kissfft/"
}

build_googletest() {
    cmake_library /usr/src/googletest "$work/build-googletest" -DBUILD_GMOCK=ON
}

# Licences travel with the libraries: the product's folder takes them from here.
collect_notices() {
    local library
    for library in "${libraries[@]}"; do
        library_notices "$library" "$work/$library" "$notices" || return
    done
    cp /usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright "$notices/gcc-runtime.txt" &&
        cp /usr/share/doc/mingw-w64-x86-64-dev/copyright "$notices/mingw-w64-runtime.txt" &&
        licence_texts "$notices"
}

fetch_all() {
    local library count=0
    mkdir -p "$notices"
    for library in "${libraries[@]}"; do
        echo "$((count++)) ${#libraries[@]} fetching libraries"
        fetched $library || return
    done
    grep -E '^(gcc-mingw-w64|mingw-w64) ' <<<"$versions" >>"$notices/versions.txt"
}

# Side by side: while one is configured, another has the processors.
build_all() {
    local library count=0 status=0
    for library in "${libraries[@]}"; do
        logged "$work/$library.log" build_$library &
    done
    for library in "${libraries[@]}"; do
        echo "$((count++)) ${#libraries[@]} building libraries"
        wait -n || status=1
    done
    return $status
}

if [ $folder = win64 ]; then
    fetch_all | show_progress
fi
build_all | show_progress
if [ $folder = win64 ]; then
    collect_notices
fi
touch "$stage$prefix/complete"
rm -rf "$prefix"
mv "$stage$prefix" "$prefix"
echo "$prefix"
