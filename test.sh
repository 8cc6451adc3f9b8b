#!/usr/bin/env bash
# Builds and checks everything, on a fresh machine too: installs what is missing, then the release build with style
# checks and tests, the same tests under AddressSanitizer with UBSan, and what shares state between threads under
# ThreadSanitizer.
set -euo pipefail
cd "$(dirname "$0")"

usage() {
    echo "usage: ./test.sh [--quick] [--long]" >&2
    echo "  --quick: the release build and its tests alone" >&2
    echo "  --long: random tests go on for longer, with other seeds each day" >&2
    exit 2
}

quick=false
long=()
for argument; do
    case $argument in
    --quick) quick=true ;;
    --long) long=(--build-config Long) ;;
    *) usage ;;
    esac
done

jobs=$(nproc)
# Whole devices run beside each other on few processors. What fails is tried once more; its first output stays in the
# log, and is a defect to be found.
once_more=(--repeat until-pass:2)
step() { printf '\n=== %s (%s)\n' "$1" "$(date +%T)"; }

build() { # PRESET [TARGETS...]
    cmake --preset "$1" -DSLATE_WARNINGS_AS_ERRORS=ON >/dev/null
    cmake --build "build/$1" --parallel "$jobs" ${2:+--target "${@:2}"} -- --quiet
}

step "install what is missing"
tools/install-dependencies

# The sanitizers' builds come first, so that the run ends with the summary of the complete test list.
if ! $quick; then
    step "build: tsan"
    build tsan thread_tests
    step "test: tsan"
    ctest --preset tsan --label-regex '^threads$' --no-tests=error

    step "build: asan"
    build asan
    step "test: asan"
    ctest --preset asan --parallel "$jobs" --no-tests=error "${long[@]}" "${once_more[@]}"
fi

step "build: release"
build release
step "checks and tests: release"
ctest --preset release --parallel "$jobs" --no-tests=error "${long[@]}" "${once_more[@]}"
