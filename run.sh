#!/usr/bin/env bash
# Installs what is missing, builds, and starts the frame: in a window where there is a display, else as a short show
# that leaves its pictures in out/. Takes the options of slate-run.
set -euo pipefail
project=$(cd "$(dirname "$0")" && pwd)

"$project/tools/install-dependencies"
(
    cd "$project"
    cmake --preset release >/dev/null
    cmake --build build/release --target picture_stand slate-run slatectl slate-window -- --quiet
)

stage=$project/build/release/stage/bin
if [ -n "${WAYLAND_DISPLAY:-}${DISPLAY:-}" ]; then
    exec "$stage/slate-run" "$@"
fi
exec "$project/tools/show" "$stage" "$project/out" "$@"
