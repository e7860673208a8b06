"""Films of the pattern in every coding, made by the ffmpeg command."""

from bench import ffmpeg
from pattern import HEIGHT, WIDTH

# Options that lose nothing.
H264 = ("-c:v", "libx264", "-preset", "ultrafast", "-qp", "0")
HEVC = ("-c:v", "libx265", "-preset", "ultrafast", "-x265-params", "lossless=1:log-level=error")
FFV1 = ("-c:v", "ffv1")
# H.264 with reordered frames and several groups, as recordings have them; close to lossless.
REORDERED = ("-c:v", "libx264", "-preset", "fast", "-qp", "4", "-bf", "3", "-g", "12")
PLAIN = ("-c:v", "libx264", "-preset", "ultrafast", "-qp", "0", "-bf", "0")

# Where chroma samples lie, as ITU-T H.273 counts it.
LOCATION = {"left": 0, "center": 1, "topleft": 2}


def hevc_sited(siting):
    """The encoder's own option: ffmpeg's counts only in versions before 7."""
    return (*HEVC[:-1], f"{HEVC[-1]}:chromaloc={LOCATION[siting]}")


def make_film(path, film, *options, rate="25", inputs=(), pixel_format=None, tags=(None,) * 3, after=()):
    """Encodes the film; `inputs` are further inputs, `pixel_format` that of the file where it differs, `tags` the
    primaries, transfer and matrix of its colour, `after` what follows the video's options."""
    filters = [f"setsar={film.aspect.numerator}/{film.aspect.denominator}"] if film.aspect else []
    # Tags of the frames: ffmpeg's options for the encoder count only in versions before 7.
    named = zip(("color_primaries", "color_trc", "colorspace"), tags)
    filters += [f"setparams={name}={value}" for name, value in named if value]
    changes = ("-vf", ",".join(filters)) if filters else ()
    color = ("-color_range", "pc" if film.full or film.format.name == "gbrp" else "tv")
    ffmpeg("-f", "rawvideo", "-pix_fmt", film.format.name, *color, "-s", f"{WIDTH}x{HEIGHT}", "-r", rate, "-i", "-",
           *inputs, *changes, *(("-pix_fmt", pixel_format) if pixel_format else ()), *color, *options, *after, path,
           data=film.raw())
    return path
