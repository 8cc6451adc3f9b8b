#!/usr/bin/env bash
# Installs what is missing, builds, and starts the frame: in a window where there is a display, else as a short show
# that leaves its pictures in out/. Takes the options of slate-run.
set -euo pipefail
project=$(cd "$(dirname "$0")" && pwd)

usage() {
    cat <<'END'
usage: ./run.sh [OPTIONS] [-- PROGRAM ARGUMENTS...]

Installs what is missing, builds, and starts the picture frame: in a window where there is a display, else as a show of
five pictures that keeps what the panel showed in out/. Another program runs on the device as it is, without a window there.

  --photos DIR      show a folder of yours, read-only, as /mnt/ext1/Photo/<its name>
  --profile NAME    kind of device, kept between starts: grey-6, grey-6-hd, grey-8, colour-6, keys-6
  --language L      the device's language, kept between starts: en, de, fr, es, it, pl, uk, ru, zh_CN, ja
  --root DIR        the device's folder; made on first use (default: $XDG_DATA_HOME/picture_stand/device)
  --temporary       a fresh device, removed at the end
  --samples         sample pictures on a temporary device
  --orientation N   how the previous program left the screen turned: 0 to 3
  --headless        no window
  --meminfo FILE    serve FILE as /proc/meminfo
  --direct          no sandbox, on a machine that has /mnt/ext1 and /devroot itself
  --version         the version, once it is built
  --help            this text; nothing is installed or built
END
}

complain() {
    printf 'run.sh: %s\n' "$1" >&2
    exit 2
}

# A mistake is told before anything is installed or built; what values mean, slate-run knows.
waiting=
program=false
for argument; do
    if [ "$argument" = -- ]; then
        program=true
        break
    fi
    if [ -n "$waiting" ]; then
        waiting=
        continue
    fi
    case $argument in
    --help | -h)
        usage
        exit
        ;;
    --photos | --profile | --language | --root | --orientation | --meminfo) waiting=$argument ;;
    --photos=* | --profile=* | --language=* | --root=* | --orientation=* | --meminfo=*) ;;
    --temporary | --samples | --headless | --direct | --version) ;;
    *) complain "\"$argument\" is no option; \"./run.sh --help\" lists them" ;;
    esac
done
[ -z "$waiting" ] || complain "$waiting needs a value; \"./run.sh --help\" tells more"

"$project/tools/install-dependencies"
(
    cd "$project"
    cmake --preset release >/dev/null
    cmake --build build/release --target picture_stand slate-run slatectl slate-window -- --quiet |
        sed '/^ninja: no work to do\.$/d' >&2
)

stage=$project/build/release/stage/bin
if [ -n "${WAYLAND_DISPLAY:-}${DISPLAY:-}" ]; then
    exec "$stage/slate-run" "$@"
fi
if $program; then
    exec "$stage/slate-run" --headless "$@"
fi
exec "$project/tools/show" "$stage" "$project/out" "$@"
