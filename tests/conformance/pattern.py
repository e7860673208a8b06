"""The picture that all films show: every frame carries its number as a barcode of large blocks; its luma is a
texture that does not repeat, so that a crop that is one pixel off misses it by 20 dB; its chroma is a sum of waves
that can be evaluated at any point, so that the right value of a chroma sample is known wherever it lies and no
filter is needed to tell it. Values are those of video range, in 4096ths of the range of code values."""

import array
import dataclasses
import itertools
import math
import operator
import random

from bench import Margins, require

WIDTH, HEIGHT = 200, 136
CELL, BITS = 8, 8
# The barcode lies around the middle of the stored frame: the number in one row of cells, its complement below.
BAR_LEFT, BAR_TOP = WIDTH // 2 - CELL * BITS // 2, HEIGHT // 2 - CELL
DARK, LIGHT = 64 * 16, 192 * 16
# Odd offsets on all sides, and a crop of even size that holds the barcode in every orientation.
ODD = Margins(31, 17, 13, 9)
PHASES = 8

# What the first two numbers of a display matrix's four make of the picture; (a, b, c, d) as in the track header.
ORIENTATIONS = {
    "upright": (1, 0, 0, 1),
    "mirrored": (-1, 0, 0, 1),
    "turned by 180°": (-1, 0, 0, -1),
    "flipped": (1, 0, 0, -1),
    "transposed": (0, 1, 1, 0),
    "turned by 90°": (0, 1, -1, 0),
    "transposed the other way": (0, -1, -1, 0),
    "turned by 270°": (0, -1, 1, 0),
}

# Where the first chroma sample lies, in luma pixels, by the names that ffprobe uses.
SITINGS = {"left": (0, 0.5), "unspecified": (0, 0.5), "center": (0.5, 0.5), "topleft": (0, 0), "top": (0.5, 0)}


@dataclasses.dataclass(frozen=True)
class Format:
    """A pixel format of FFmpeg: how many luma pixels share a chroma sample, and bits a sample."""

    name: str
    across: int
    down: int
    depth: int = 8


FORMATS = {f.name: f for f in (
    Format("yuv420p", 2, 2), Format("yuvj420p", 2, 2), Format("yuv422p", 2, 1), Format("yuvj422p", 2, 1),
    Format("yuv444p", 1, 1), Format("yuvj444p", 1, 1), Format("yuv420p10le", 2, 2, 10), Format("yuv422p10le", 2, 1, 10),
    Format("yuv444p10le", 1, 1, 10), Format("yuv420p12le", 2, 2, 12), Format("yuv422p12le", 2, 1, 12),
    Format("yuv444p12le", 1, 1, 12), Format("yuv411p", 4, 1), Format("yuv440p", 1, 2), Format("gbrp", 1, 1))}


def _texture():
    noise = random.Random(11)
    wide, high = WIDTH + 3 * PHASES, HEIGHT + 2 * PHASES
    rows = [[noise.randrange(DARK, LIGHT + 1) for _ in range(wide)] for _ in range(high)]
    return [[(row[x] * 2 + row[x - 1] + above[x]) // 4 for x in range(wide)] for row, above in zip(rows, rows[-1:] + rows)]


def waves(xs, ys, *terms):
    """Rows of Σ amplitude · sin(fx·x + px) · cos(fy·y + py) around the middle value."""
    across = [[amplitude * math.sin(fx * x + px) for x in xs] for amplitude, fx, px, _, _ in terms]
    down = [[math.cos(fy * y + py) for y in ys] for _, _, _, fy, py in terms]
    return [[2048 + sum(map(operator.mul, column, point)) for point in zip(*across)] for column in zip(*down)]


def chroma(plane, phase, xs, ys):
    """Detailed, but band-limited to what 4:2:0 can hold: some ten luma pixels a wave."""
    shift = phase * 0.7
    if plane == "u":
        return waves(xs, ys, (16 * 16, 0.61, shift, 0.43, 0.2), (8 * 16, 0.23, 1, 0.55, -shift))
    return waves(xs, ys, (15 * 16, 0.38, 2 - shift, 0.60, 0.9), (9 * 16, 0.57, 0.4, 0.19, shift))


def smooth_luma(phase, xs, ys):
    """Luma for frames that must be resampled."""
    return waves(xs, ys, (34 * 16, 0.47, phase * 0.7, 0.11, 0.2), (26 * 16, 0.13, 1, 0.52, phase * 0.5))


TEXTURE = _texture()


class Film:
    """So many frames of the pattern, as they are stored."""

    def __init__(self, frames=8, pixel_format="yuv420p", full=False, siting="left", aspect=None):
        self.frames = frames
        self.format = FORMATS[pixel_format]
        self.full = full or pixel_format.startswith("yuvj")
        self.siting = siting
        # Width of a pixel in heights of a pixel.
        self.aspect = aspect
        self._cache = {}

    # As values of the pattern:

    def luma(self, number):
        phase = number % PHASES
        if self.aspect:
            rows = self._once("y", phase, lambda: smooth_luma(phase, range(WIDTH), range(HEIGHT)))
        else:
            rows = [row[3 * phase : 3 * phase + WIDTH] for row in TEXTURE[2 * phase : 2 * phase + HEIGHT]]
        rows = list(rows)
        for part in (0, 1):
            bar = [LIGHT if (number >> bit & 1) != part else DARK for bit in range(BITS) for _ in range(CELL)]
            for y in range(BAR_TOP + part * CELL, BAR_TOP + (part + 1) * CELL):
                rows[y] = rows[y][:BAR_LEFT] + bar + rows[y][BAR_LEFT + len(bar) :]
        return rows

    def chroma(self, plane, number):
        xs = [i * self.format.across + (SITINGS[self.siting][0] if self.format.across == 2 else 0)
              for i in range(WIDTH // self.format.across)]
        ys = [i * self.format.down + (SITINGS[self.siting][1] if self.format.down == 2 else 0)
              for i in range(HEIGHT // self.format.down)]
        phase = number % PHASES
        return self._once(plane, phase, lambda: chroma(plane, phase, xs, ys))

    def _once(self, plane, phase, make):
        if (plane, phase) not in self._cache:
            self._cache[plane, phase] = make()
        return self._cache[plane, phase]

    # As raw video for the ffmpeg command:

    def raw(self):
        return b"".join(self._frame(number) for number in range(self.frames))

    def _frame(self, number):
        planes = self.luma(number), self.chroma("u", number), self.chroma("v", number)
        if self.format.name == "gbrp":
            return self._rgb(*planes)
        return b"".join(self._coded(rows, luma) for rows, luma in zip(planes, (True, False, False)))

    def _coded(self, rows, is_luma):
        table = self._codes(is_luma)
        codes = (table[int(value + 0.5)] for value in itertools.chain.from_iterable(rows))
        return bytes(codes) if self.format.depth == 8 else array.array("H", codes).tobytes()

    def _codes(self, is_luma):
        """From a value of the pattern to a code value of the format."""
        top, one = (1 << self.format.depth) - 1, 1 << self.format.depth - 8
        if not self.full:
            return self._once("codes", is_luma, lambda: [round(v * one / 16) for v in range(4096)])
        scale = (lambda v: (v / 16 - 16) / 219 * top) if is_luma else (lambda v: (v / 16 - 128) / 224 * top + 128 * one)
        return self._once("codes", is_luma, lambda: [min(max(round(scale(v)), 0), top) for v in range(4096)])

    def _rgb(self, *planes):
        """BT.709, full range, in the order green, blue, red."""
        y, u, v = (list(itertools.chain.from_iterable(rows)) for rows in planes)
        y = [(value / 16 - 16) / 219 * 255 for value in y]
        u = [(value / 16 - 128) / 224 * 255 for value in u]
        v = [(value / 16 - 128) / 224 * 255 for value in v]
        red = map(lambda a, c: a + 1.5748 * c, y, v)
        green = map(lambda a, b, c: a - 0.187324 * b - 0.468124 * c, y, u, v)
        blue = map(lambda a, b: a + 1.8556 * b, y, u)
        return b"".join(bytes(min(max(round(s), 0), 255) for s in plane) for plane in (green, blue, red))


class View:
    """The film as it is to appear: turned, with square pixels, cropped."""

    def __init__(self, film, margins=Margins(), orientation="upright"):
        self.film = film
        self.margins = margins
        self.matrix = ORIENTATIONS[orientation]
        self.stretch = float(film.aspect or 1)
        self.stored = round(WIDTH * self.stretch), HEIGHT
        a, b, c, d = self.matrix
        self.swapped = a == 0
        displayed = self.stored[::-1] if self.swapped else self.stored
        self.size = (displayed[0] - margins.left - margins.right, displayed[1] - margins.top - margins.bottom)
        wide, high = self.stored
        self.origin = (wide - 1) * (a < 0) + (high - 1) * (c < 0), (wide - 1) * (b < 0) + (high - 1) * (d < 0)

    @property
    def translation(self):
        """The last row of the display matrix that moves the picture back to the origin."""
        a, b, c, d = self.matrix
        wide, high = self.stored
        return wide * (a < 0) + high * (c < 0), wide * (b < 0) + high * (d < 0)

    def stored_position(self, x, y):
        """The point of the stored frame that lies at a point of the crop."""
        a, b, c, d = self.matrix
        x, y = x + self.margins.left - self.origin[0], y + self.margins.top - self.origin[1]
        x, y = a * x + b * y, c * x + d * y
        return (x + 0.5) / self.stretch - 0.5, y

    def _grid(self, values, across, down, shift):
        """Evaluates a function of stored columns and rows at the samples of a plane of the crop."""
        xs = [i * across + shift[0] for i in range(self.size[0] // across)]
        ys = [i * down + shift[1] for i in range(self.size[1] // down)]
        if self.swapped:
            rows = values([self.stored_position(0, y)[0] for y in ys], [self.stored_position(x, 0)[1] for x in xs])
            return list(zip(*rows))
        return values([self.stored_position(x, 0)[0] for x in xs], [self.stored_position(0, y)[1] for y in ys])

    def luma(self, number, shift=(0, 0)):
        """Rows of the crop, or of one that lies a few pixels from it."""
        if self.film.aspect:
            return self._grid(lambda xs, ys: smooth_luma(number % PHASES, xs, ys), 1, 1, shift)
        rows = self.film.luma(number)
        return self._grid(lambda xs, ys: [[row[int(x)] for x in xs] for row in (rows[int(y)] for y in ys)], 1, 1, shift)

    def chroma(self, plane, number, siting):
        return self._grid(lambda xs, ys: chroma(plane, number % PHASES, xs, ys), 2, 2, SITINGS[siting])

    def number(self, luma, depth):
        """The number that a frame of the crop names; luma is a flat sequence of code values."""
        a, b, c, d = self.matrix
        found = [0, 0]
        for part in (0, 1):
            for bit in range(BITS):
                x = (BAR_LEFT + bit * CELL + CELL / 2 + 0.5) * self.stretch - 0.5
                y = BAR_TOP + part * CELL + CELL / 2
                column = a * x + c * y + self.origin[0] - self.margins.left
                row = b * x + d * y + self.origin[1] - self.margins.top
                if luma[int(row) * self.size[0] + int(column)] >= 128 << depth - 8:
                    found[part] |= 1 << bit
        require(found[0] ^ found[1] == (1 << BITS) - 1, f"a frame names no number ({found[0]:b}, {found[1]:b})")
        return found[0]


def psnr(codes, rows, depth):
    """Between code values of a plane and the pattern's values, in dB of the range of code values."""
    scale = 1 << 12 - depth
    pairs = zip(codes, itertools.chain.from_iterable(rows))
    error = sum((code * scale - value) ** 2 for code, value in pairs) / len(codes)
    return math.inf if error == 0 else 10 * math.log10(4080**2 / error)
