"""How near a dithered picture comes to the one it stands for. Pictures are arrays of code values 0 .. 255."""

import numpy
from scipy.ndimage import gaussian_filter

EYE = 2.0  # pixels: the sigma of what a reader's eye mixes at arm's length
FIELD = 64  # pixels: the side of a field that is averaged for the tone


def light_of(codes):
    """Relative luminance of sRGB code values (IEC 61966-2-1)."""
    v = numpy.asarray(codes, dtype=numpy.float64) / 255
    return numpy.where(v <= 0.04045, v / 12.92, ((v + 0.055) / 1.055) ** 2.4)


def lightness_of(light):
    """CIE 1976 L* of relative luminance."""
    return numpy.where(light > 216 / 24389, 116 * numpy.cbrt(light) - 16, light * 24389 / 27)


def _fields(values):
    rows, columns = (side // FIELD * FIELD for side in values.shape)
    cut = values[:rows, :columns].reshape(rows // FIELD, FIELD, columns // FIELD, FIELD)
    return cut.mean(axis=(1, 3))


def _psnr(a, b, peak):
    error = numpy.mean((a - b) ** 2)
    return float("inf") if error == 0 else 10 * numpy.log10(peak**2 / error)


def _ssim(a, b, peak):
    """Wang, Bovik, Sheikh and Simoncelli 2004, with its window of sigma 1.5."""
    c1, c2 = (0.01 * peak) ** 2, (0.03 * peak) ** 2
    window = lambda values: gaussian_filter(values, 1.5)
    ma, mb = window(a), window(b)
    va, vb, vab = window(a * a) - ma * ma, window(b * b) - mb * mb, window(a * b) - ma * mb
    return float(numpy.mean((2 * ma * mb + c1) * (2 * vab + c2) / ((ma**2 + mb**2 + c1) * (va + vb + c2))))


def pattern(field):
    """How much a dithered flat field is of one pattern: its highest spectral peak, where white noise of as many dots
    has 1 at each frequency; dots in a regular grid or in rows reach hundreds. Mean of tiles. None if it is solid."""
    field = numpy.asarray(field, numpy.float64)
    variance = field.var()
    if variance == 0:
        return None
    tile = 64
    count = field.shape[0] // tile
    tiles = (field - field.mean())[: count * tile, : count * tile].reshape(count, tile, count, tile).swapaxes(1, 2)
    power = (numpy.abs(numpy.fft.fft2(tiles)) ** 2).mean(axis=(0, 1)) / (variance * tile**2)
    return float(power.max())


def measure(picture, wanted):
    """Figures of one picture beside the undithered one that is wanted, both of one size."""
    picture, wanted = numpy.asarray(picture, numpy.float64), numpy.asarray(wanted, numpy.float64)
    shown, meant = light_of(picture), light_of(wanted)
    blurred, blurred_wanted = gaussian_filter(picture, EYE), gaussian_filter(wanted, EYE)
    return {
        "greys": len(numpy.unique(picture)),
        "tone_code": float(numpy.mean(numpy.abs(_fields(picture) - _fields(wanted)))),
        "tone_light": float(
            numpy.mean(numpy.abs(lightness_of(_fields(shown)) - lightness_of(_fields(meant))))
        ),
        "psnr_code": _psnr(blurred, blurred_wanted, 255),
        "psnr_light": _psnr(gaussian_filter(shown, EYE), gaussian_filter(meant, EYE), 1),
        "ssim": _ssim(blurred, blurred_wanted, 255),
    }
