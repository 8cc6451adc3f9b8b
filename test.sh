#!/usr/bin/env bash
# Builds and checks everything, on a fresh machine too: installs what is missing, then the release build with style
# checks, the tests of whole programs and those that need no device; what shares state between threads under
# ThreadSanitizer; and all tests under AddressSanitizer with UBSan.
set -euo pipefail
cd "$(dirname "$0")"

usage() {
    cat <<'END'
usage: ./test.sh [--quick] [--long]
       ./test.sh --on armhf | debian13

Installs what is missing, builds, and runs every check and test: the release build with the style checks, what shares
state between threads under ThreadSanitizer, and all tests under AddressSanitizer.

  --quick   the release build alone, with all tests
  --long    what takes hours as well: the long show, an hour of each fuzzer, all faults and damages, random tests with
            other seeds each day; goes on to the end whatever fails
  --on      instead: builds and tests for 32-bit ARM, emulated, or on Debian 13 with its Qt (docs/portability.md)
  --help    this text; nothing is installed or built
END
}

if [ "${1:-}" = --on ]; then
    case $#:${2:-} in
    2:armhf | 2:debian13) exec tools/test-on "$2" ;;
    esac
    echo 'test.sh: "--on" goes with armhf or debian13, and with nothing else' >&2
    exit 2
fi

quick=false
long=()
status=0
# Whole devices run beside each other on few processors. What fails is tried once more; its first output stays in the
# log, and is a defect to be found.
once_more=(--repeat until-pass:2)
for argument; do
    case $argument in
    --quick) quick=true ;;
    --long)
        long=(--build-config Long)
        once_more=()
        ;;
    --help | -h)
        usage
        exit
        ;;
    *)
        printf 'test.sh: "%s" is no option; "./test.sh --help" lists them\n' "$argument" >&2
        exit 2
        ;;
    esac
done

jobs=$(nproc)
# Most tests wait more than they compute.
tests=$((jobs + 1))
step() { printf '\n=== %s (%s)\n' "$1" "$(date +%T)"; }

build() { # PRESET UNIT_TESTS [TARGETS...]
    cmake --preset "$1" -DSLATE_WARNINGS_AS_ERRORS=ON -DSLATE_UNIT_TESTS="$2" \
        -DSLATE_BENCHMARKS="$([ "$1" = release ] && echo ON || echo OFF)" >/dev/null
    cmake --build "build/$1" --parallel "$jobs" ${3:+--target "${@:3}"} -- --quiet
}

run() { # CTEST_ARGUMENTS...
    ctest "$@" --no-tests=error "${long[@]}" && return
    status=1
    [ ${#long[@]} -gt 0 ]
}

step "install what is missing"
tools/install-dependencies

step "build: release"
build release $quick
step "checks and tests: release"
run --preset release --parallel "$tests" "${once_more[@]}"
if $quick; then exit "$status"; fi

step "build: tsan"
build tsan true thread_tests
step "test: tsan"
run --preset tsan --label-regex '^threads$'

# Last, so that the run ends with the summary of all tests.
step "build: asan"
build asan true
step "test: asan"
run --preset asan --parallel "$tests" "${once_more[@]}"
exit "$status"
