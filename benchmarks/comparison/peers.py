"""The tools that people use, each with the words that make it do its best with 16 fixed greys on one processor."""

import math
import shutil
import subprocess

# Nearest level, by Pillow, is what no dithering looks like.
PILLOW = """
import sys
from PIL import Image
source, out, width, height, how = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4]), sys.argv[5]
picture = Image.open(source)
picture.draft("L", (width, height))
picture = picture.convert("L").resize((width, height), Image.LANCZOS)
if how == "diffuse":
    palette = Image.new("P", (1, 1))
    palette.putpalette([grey for level in range(16) for grey in (level * 17,) * 3] * 16)
    # A grey picture would not be dithered.
    picture = picture.convert("RGB").quantize(palette=palette, dither=Image.FLOYDSTEINBERG).convert("L")
else:
    picture = picture.point([(value + 8) // 17 * 17 for value in range(256)])
picture.save(out)
"""

_MAGICK = "convert -limit thread 1 -define jpeg:size={w2}x{h2} {source} -grayscale Rec601Luma -resize {w}x{h}!"

# name, programs it needs, package, command. {source} JPEG, {out}.pgm or .png, {w} {h} the size that is wanted, {w2} {h2}
# twice that, {n} eighths that djpeg decodes, {levels} a picture of the 16 greys.
_PEERS = [
    ("ImageMagick, Floyd-Steinberg", ["convert"], "imagemagick", _MAGICK + " -dither FloydSteinberg -remap {levels}.pgm {out}.pgm"),
    ("ImageMagick, Riemersma", ["convert"], "imagemagick", _MAGICK + " -dither Riemersma -remap {levels}.pgm {out}.pgm"),
    ("ImageMagick, ordered", ["convert"], "imagemagick", _MAGICK + " -ordered-dither o8x8,16 {out}.pgm"),
    (
        "GraphicsMagick",
        ["gm"],
        "graphicsmagick",
        "gm convert -limit threads 1 -size {w2}x{h2} {source} -colorspace Gray -resize {w}x{h}! -dither -map {levels}.pgm {out}.pgm",
    ),
    (
        "netpbm",
        ["djpeg", "pamscale", "pnmremap"],
        "netpbm libjpeg-turbo-progs",
        "djpeg -grayscale -scale {n}/8 {source} | pamscale -width {w} -height {h} | pnmremap -mapfile {levels}.pgm -fs > {out}.pgm",
    ),
    ("Pillow", ["python3"], "python3-pil", "/usr/bin/python3 {pillow} {source} {out}.pgm {w} {h} diffuse"),
    ("nearest level (Pillow)", ["python3"], "python3-pil", "/usr/bin/python3 {pillow} {source} {out}.pgm {w} {h} nearest"),
    ("libvips, own levels", ["vips"], "libvips-tools", "VIPS_CONCURRENCY=1 vips thumbnail {source} {out}.v {w} --height {h} --size force --no-rotate && "
     "VIPS_CONCURRENCY=1 vips colourspace {out}.v {out}.grey.v b-w && VIPS_CONCURRENCY=1 vips pngsave {out}.grey.v {out}.png --palette --bitdepth 4 --dither 1"),
]
for _kind in ("floyd_steinberg", "sierra2_4a"):
    _PEERS.append(
        (
            f"ffmpeg, {_kind}",
            ["ffmpeg"],
            "ffmpeg",
            "ffmpeg -nostdin -loglevel error -y -threads 1 -filter_threads 1 -i {source} -i {palette}.png -filter_complex_threads 1 "
            f"-lavfi '[0]extractplanes=y,scale={{w}}:{{h}}:flags=lanczos:in_range=full:out_range=full,format=rgb24[x];[x][1]paletteuse=dither={_kind}' "
            "-pix_fmt rgb24 -frames:v 1 {out}.png",
        )
    )

_VERSIONS = {
    "imagemagick": "convert -version | head -n 1 | cut -d' ' -f3",
    "graphicsmagick": "gm version | head -n 1 | cut -d' ' -f2",
    "netpbm libjpeg-turbo-progs": "dpkg-query -W -f '${Version}' netpbm",
    "python3-pil": "/usr/bin/python3 -c 'import PIL; print(PIL.__version__)'",
    "ffmpeg": "ffmpeg -version | head -n 1 | cut -d' ' -f3",
    "libvips-tools": "vips --version | cut -d- -f2",
    "libjpeg62-turbo": "dpkg-query -W -f '${Version}' libjpeg62-turbo",
    "mate-backgrounds": "dpkg-query -W -f '${Version}' mate-backgrounds",
}


def all_packages():
    """Of the peers, and of what measures them."""
    peers = {package for peer in _PEERS for package in peer[2].split()}
    return sorted(peers | {"libjpeg-turbo-progs", "mate-backgrounds", "python3-numpy", "python3-pil", "python3-scipy", "time"})


def installed():
    """(name, command) of each that is there."""
    return [(name, command) for name, needs, _, command in _PEERS if all(map(shutil.which, needs))]


def versions():
    found = {package for name, needs, package, _ in _PEERS if all(map(shutil.which, needs))}
    found |= {"libjpeg62-turbo", "mate-backgrounds"}
    ask = lambda package: subprocess.run(_VERSIONS[package], shell=True, capture_output=True, text=True).stdout.strip()
    return ", ".join(f"{package.split()[0]} {ask(package)}" for package in sorted(found))


def eighths(source_size, size):
    """The N of the smallest scale N/8 that is not below the wanted size."""
    return min(8, max(math.ceil(8 * want / have) for have, want in zip(source_size, size)))
