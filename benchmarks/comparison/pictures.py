"""The pictures that are compared: one made here, and photographs of the distribution."""

import pathlib

import numpy
from PIL import Image

BENCH_SIZE = (4000, 6000)  # 24 megapixels, upright
PHOTOGRAPHS = pathlib.Path("/usr/share/backgrounds/mate/nature")


def _octave(random, height, width, cells):
    """Smooth noise of so many cells across, -1 .. 1."""
    rows = max(2, cells * height // width)
    coarse = random.random((rows + 1, cells + 1), dtype=numpy.float32) * 2 - 1
    return numpy.asarray(Image.fromarray(coarse).resize((width, height), Image.BICUBIC))


def bench_picture():
    """Noise at all scales, edges at all angles, a ramp and a wedge of 21 steps. The same at every call."""
    width, height = BENCH_SIZE
    ramp, wedge = height * 5 // 6, height * 11 // 12  # where they begin
    random = numpy.random.default_rng(8)
    light = numpy.full((height, width), 128, dtype=numpy.float32)
    cells = 2
    while cells < width:
        light += 46 * cells**-0.35 * _octave(random, height, width, cells)
        cells *= 2

    # Edges: a star of 24 dark and light rays in the middle.
    y, x = numpy.mgrid[0 : height : 1, 0 : width : 1].astype(numpy.float32)
    y -= height * 0.4
    x -= width * 0.5
    rays = (numpy.arctan2(y, x) * (24 / numpy.pi)).astype(numpy.int32) % 2
    star = numpy.hypot(x, y) < width * 0.3
    light[star] = light[star] * 0.5 + numpy.where(rays[star] == 1, 110, 12)

    light[ramp:wedge] = numpy.linspace(0, 255, width, dtype=numpy.float32)
    light[wedge:] = (numpy.arange(width) * 21 // width * 255 / 20).astype(numpy.float32)

    # What the sensor adds.
    light[:ramp] += random.normal(0, 4, (ramp, width)).astype(numpy.float32)

    # A little colour, so that the file holds what a camera's holds.
    warm = 14 * _octave(random, height, width, 6)
    warm[ramp:] = 0
    channels = numpy.stack([light + warm, light, light - warm], axis=2)
    return Image.fromarray(numpy.clip(channels + 0.5, 0, 255).astype(numpy.uint8), "RGB")


def make(folder):
    """Writes the bench picture once, baseline and progressive; both as a camera would. Their paths."""
    baseline, progressive = folder / "bench.jpg", folder / "bench-progressive.jpg"
    if not progressive.exists():
        picture = bench_picture()
        picture.save(baseline, quality=92, subsampling="4:2:0")
        picture.save(progressive, quality=92, subsampling="4:2:0", progressive=True)
    return baseline, progressive


# Beside black and white, beside and between levels.
FLAT_GREYS = (1, 2, 9, 13, 47, 60, 81, 110, 128, 132, 170, 200, 222, 240, 250, 254)
FLAT_SIDE = 512


def flat_fields(folder):
    """Writes a picture of flat fields, four by four. Grey and at full quality: each pixel has its field's grey."""
    path = folder / "fields.jpg"
    greys = numpy.array(FLAT_GREYS, numpy.uint8).reshape(4, 4)
    Image.fromarray(greys.repeat(FLAT_SIDE, 0).repeat(FLAT_SIDE, 1), "L").save(path, quality=100)
    return path


def photographs():
    return sorted(PHOTOGRAPHS.glob("*.jpg"))
