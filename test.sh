#!/bin/bash
# Builds everything and runs all tests. The last line is "N passed, N failed" over all of them.
# usage: ./test.sh [--quick]      --quick: the native tests only
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/deps/common.sh

jobs=${QUENLOX_JOBS:-$(nproc)}
passed=0 failed=0

# stage TITLE FUNCTION : runs one stage and says how long it took; a stage that cannot be run counts as one failure
stage() {
    local start=$SECONDS
    echo "== $1"
    if ! $2; then
        failed=$((failed + 1))
        echo "== $1 FAILED"
    fi
    echo "== $1: $((SECONDS - start)) s"
}

# count PASSED FAILED : a stage that reports failures of its own still ran
count() {
    passed=$((passed + $1))
    failed=$((failed + $2))
}

machine() {
    tools/setup.sh && tools/deps.sh >/dev/null && mkdir -p build
}

build() { # build PRESET [TARGET...]
    local preset=$1
    shift
    logged "build/$preset-configure.log" cmake --preset "$preset" &&
        logged "build/$preset-build.log" nice cmake --build "build/$preset" -j "$jobs" ${1:+--target "$@"}
}

# counted_ctest PRESET [WRAPPER] : runs a build's tests, those with the label $labels if it is set, and adds up what ctest
# says of them; what it leaves out with a reason counts neither way
counted_ctest() {
    local preset=$1 wrapper=${2:-} log=build/$1-tests.log
    $wrapper ctest --test-dir "build/$preset" ${labels:+-L "$labels"} ${repeat:+--repeat "$repeat"} -j "$jobs" \
        --output-on-failure >"$log" 2>&1
    if ! [[ $(grep 'tests failed out of' "$log") =~ ([0-9]+)\ tests\ failed\ out\ of\ ([0-9]+) ]]; then
        tail -n 30 "$log"
        return 1
    fi
    local failures=${BASH_REMATCH[1]} tests=${BASH_REMATCH[2]} skipped
    skipped=$(grep -c '\*\*\*Skipped' "$log")
    if [ "$failures" -gt 0 ]; then
        cat "$log"
    fi
    echo "   $((tests - failures - skipped)) passed, $failures failed, $skipped left out"
    count $((tests - failures - skipped)) "$failures"
}

native_build() { build native; }
native_tests() { counted_ctest native; }
thread_build() { build tsan unit_tests; }
thread_tests() { labels=unit counted_ctest tsan; }
windows_build() { build win64 all stage && logged build/packages.log packaging/build.sh; }
# Nobody records the sound here, and an unheard sound server's clock may stand still now and then: a second try decides.
windows_tests() { repeat=until-pass:2 counted_ctest win64 tools/in_wine.py; }

wine_scenarios() {
    local log=build/wine.log result
    tests/wine/run --jobs "$jobs" --again 2>&1 | tee "$log"
    result=$(tail -n 1 "$log")
    [[ $result =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]] || return 1
    count "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
}

# A function, so that bash has read all of this file before a long run begins.
main() {
    stage "set-up of the machine and the libraries" machine
    stage "native build" native_build
    stage "native tests, under AddressSanitizer and UndefinedBehaviorSanitizer" native_tests
    if [ "${1:-}" != --quick ]; then
        stage "Windows build, zip and installer" windows_build
        stage "Windows tests, under Wine" windows_tests
        stage "end-to-end scenarios, under Wine" wine_scenarios
        stage "build of the threads' tests" thread_build
        stage "threads' tests, under ThreadSanitizer" thread_tests
    fi
    echo "== all: $((SECONDS / 60)) min $((SECONDS % 60)) s"
    echo "$passed passed, $failed failed"
    [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}

main "$@"
exit $?
