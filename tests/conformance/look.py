"""Looks at the pictures and times of a finished movie: which source frames it shows, where, and when."""

import array
import fractions
import itertools

from bench import equal, call, probe, require
from pattern import BAR_TOP, psnr

# dB against the pattern, with compression that takes little.
LEAST_LUMA, LEAST_CHROMA = 44.0, 44.0
# The crop that fits best must be the right one among those that lie this many pixels from it.
REACH = range(-2, 3)


class Pictures:
    """The decoded frames of a movie, as planes of code values."""

    def __init__(self, path, size):
        stream = probe(path, "-show_streams", "-select_streams", "v")["streams"][0]
        self.siting = stream.get("chroma_location", "left")
        self.format = stream["pix_fmt"]
        require(self.format in ("yuv420p", "yuv420p10le"), f"pixel format {self.format}")
        self.depth = 10 if self.format.endswith("10le") else 8
        data = call("ffmpeg", "-v", "error", "-i", path, "-map", "0:v:0", "-fps_mode", "passthrough", "-f", "rawvideo", "-")
        codes = data if self.depth == 8 else array.array("H", data)
        luma, chroma = size[0] * size[1], size[0] * size[1] // 4
        whole = luma + 2 * chroma
        require(len(codes) % whole == 0, f"{len(codes)} samples are no whole number of frames")
        self.frames = [(codes[at : at + luma], codes[at + luma : at + luma + chroma], codes[at + luma + chroma : at + whole])
                       for at in range(0, len(codes), whole)]


def best_shift(view, number, luma, depth):
    """How far from the chosen crop the picture lies, and how much better it fits there than elsewhere in dB."""
    wide = view.size[0]
    lines = view.luma(number)
    rows = range(8, known_rows(view) - 8, 9)
    part = list(itertools.chain.from_iterable(luma[y * wide + 8 : (y + 1) * wide - 8] for y in rows))

    def fit(dx, dy):
        return psnr(part, [lines[y + dy][8 + dx : wide - 8 + dx] for y in rows], depth)

    ranked = sorted(((fit(dx, dy), (dx, dy)) for dx, dy in itertools.product(REACH, REACH)), reverse=True)
    return ranked[0][1], ranked[0][0] - ranked[1][0]


def known_rows(view):
    """How many rows from the top are known: a resampled film's only down to the barcode."""
    return BAR_TOP - view.margins.top - 4 if view.film.aspect else view.size[1]


def check_pictures(path, view, numbers, luma=LEAST_LUMA, chroma=LEAST_CHROMA):
    """Every frame shows the source frame of its number, at the right place, in the right colours."""
    pictures = Pictures(path, view.size)
    found = [view.number(frame[0], pictures.depth) for frame in pictures.frames]
    equal(found, [number % 256 for number in numbers], "source frames")
    for at in {0, len(numbers) - 1}:
        shift, lead = best_shift(view, numbers[at], pictures.frames[at][0], pictures.depth)
        require(shift == (0, 0) and lead > 3, f"frame {at} lies {shift} from the crop")
    high = known_rows(view)
    lowest = [999.0, 999.0, 999.0]
    for at in sorted({0, len(numbers) // 3, len(numbers) // 2, len(numbers) - 1}):
        y, u, v = pictures.frames[at]
        values = (psnr(y[: high * view.size[0]], view.luma(numbers[at])[:high], pictures.depth),
                  psnr(u, view.chroma("u", numbers[at], pictures.siting), pictures.depth),
                  psnr(v, view.chroma("v", numbers[at], pictures.siting), pictures.depth))
        lowest = list(map(min, lowest, values))
    words = f"Y {lowest[0]:.1f}, U {lowest[1]:.1f}, V {lowest[2]:.1f} dB"
    require(lowest[0] >= luma and min(lowest[1:]) >= chroma, words)
    return words


def check_times(path, movie, expected, duration, source_timescale, track_timescale):
    """The frames' times and the movie's length, from its tables and as ffprobe tells them. `expected` holds
    (start, end) in seconds, `duration` seconds; the timescales are the source's, in ticks a second."""
    tick, movie_tick = fractions.Fraction(1, track_timescale), fractions.Fraction(1, source_timescale)
    shown = movie.shown(movie.video)
    equal(len(shown), len(expected), "frames in the tables")
    for at, (frame, (start, end)) in enumerate(zip(shown, expected)):
        require(abs(frame.start - start) < tick, f"frame {at} starts at {float(frame.start)} s, not {float(start)} s")
        last = at == len(expected) - 1
        # Where the source pauses, the frame before may stay.
        ends = {end, frame.end if end is None else end if last else expected[at + 1][0]}
        if last and end is not None and duration - end < fractions.Fraction(1, 100):
            # The source's movie is rounded up to its own, coarser ticks.
            ends.add(duration)
        require(min(abs(frame.end - known) for known in ends if known is not None) < (tick + movie_tick if last else tick),
                f"frame {at} ends at {float(frame.end)} s, not {float(end or 0)} s")
    off = abs(movie.seconds - duration)
    require(off <= movie_tick, f"duration {float(movie.seconds)} s, not {float(duration)} s")
    told = [packet["pts"] for packet in probe(path, "-show_frames", "-select_streams", "v:0", "-show_entries",
                                              "frame=pts")["frames"]]
    scale = movie.video.timescale
    require(len(told) == len(expected) and all(abs(pts - start * scale) < 1 for pts, (start, _) in zip(told, expected)),
            "ffprobe tells other times than the tables")
    return f"{len(shown)} frames in {float(movie.seconds):.3f} s"


def check_like(path, movie, source, view):
    """Pictures and times are those of a QuickTime source, by its own tables."""
    shown = source.shown(source.video)
    check_pictures(path, view, [frame.index for frame in shown])
    return check_times(path, movie, [(frame.start, frame.end) for frame in shown], source.seconds, source.timescale,
                       source.video.timescale)
