"""Bad input: a clear line, nothing left over, the destination as it was."""

import subprocess

import quicktime
from bench import Case, Margins, equal, ffmpeg, require
from look import check_pictures
from pattern import ODD, Film, View
from sound_cases import tone
from sources import PLAIN, REORDERED, make_film

NO_VIDEO = "This file has no readable video track."
BAD_CROP = "The crop must fit inside the video and have even dimensions of at least two pixels."
NO_FORMAT = "Cannot read the original audio format."


def no_video(name, file, *arguments):
    def run(bench):
        source = bench.path(file)
        ffmpeg(*tone(seconds=0.3), *arguments, source)
        return bench.refused(source, NO_VIDEO)
    return Case("Bad input", name, run)


def bytes_of_a_file(name, file, content, line=None):
    def run(bench):
        source = bench.path(file)
        source.write_bytes(content)
        return bench.refused(source, line) if line else f"refused: {bench.failed(source)}"
    return Case("Bad input", name, run)


def bad_crop(name, margins):
    def run(bench):
        return bench.refused(make_film(bench.path("in.mov"), Film(2), *PLAIN), BAD_CROP, margins)
    return Case("Bad input", f"crop {name}", run)


def missing(bench):
    return f"refused: {bench.failed(bench.path('nothing.mov'))}"


def a_folder(bench):
    source = bench.path("folder.mov")
    source.mkdir()
    return f"refused: {bench.failed(source)}"


def cut(file, share, *options):
    """The file ends after this share of its bytes."""
    def run(bench):
        source = make_film(bench.path(file), Film(30), *PLAIN, inputs=tone(), after=("-c:a", "aac", *options))
        data = source.read_bytes()
        source.write_bytes(data[: int(len(data) * share)])
        return f"refused: {bench.failed(source, ODD)}"
    where = ", header in front" if options else ""
    return Case("Bad input", f"{file[3:].upper()}{where}, cut after {share:.1%}", run)


def header_alone(bench):
    source = make_film(bench.path("in.mov"), Film(12), *PLAIN, after=("-movflags", "+faststart"))
    data = source.read_bytes()
    at = next(at for kind, at, _ in quicktime.top_boxes(data) if kind == b"mdat")
    source.write_bytes(data[: at + 8])
    return f"refused: {bench.failed(source, ODD)}"


def damaged(name, options, inputs=(), where=0.5, length=60):
    """Bytes in the middle are wrong: a few frames may be lost, or the crop fails; never more, never silently."""
    def run(bench):
        film = Film(48)
        source = make_film(bench.path("in.mov"), film, *options, inputs=inputs, after=("-c:a", "aac"))
        data = bytearray(source.read_bytes())
        at, size = next((at, size) for kind, at, size in quicktime.top_boxes(data) if kind == b"mdat")
        begin = at + int(size * where)
        data[begin : begin + length] = bytes(value ^ 0xA5 for value in data[begin : begin + length])
        source.write_bytes(data)
        run = bench.attempt(source, ODD)
        if run.returncode == 0:
            frames = len(bench.finished(run.stdout, "h264").video.samples)
            require(frames >= 40, f"only {frames} of 48 frames")
            return f"{frames} of 48 frames"
        equal(run.returncode, 1, "exit code")
        equal(len(run.stderr.splitlines()), 1, "lines")
        bench.untouched()
        return f"refused: {run.stderr.strip()}"
    return Case("Bad input", name, run)


def without_duration(name, file, *options):
    """The file does not tell how long it is; the movie is as long as what it shows."""
    def run(bench):
        film = Film(24)
        made = make_film(bench.path("made.mov"), film, *PLAIN, "-g", "12")
        source = bench.path(file)
        source.write_bytes(ffmpeg("-i", made, "-c", "copy", *options, "-"))
        movie = bench.cropped(source, ODD)
        check_pictures(bench.destination, View(film, ODD), range(24))
        require(abs(movie.seconds - 24 / 25) < 0.002, f"{float(movie.seconds)} s")
        return f"{float(movie.seconds):.3f} s"
    return Case("Bad input", f"no duration: {name}", run)


def audio_without_format(bench):
    """A codec that nobody knows."""
    source = make_film(bench.path("in.mkv"), Film(4), *PLAIN, inputs=tone(seconds=0.3), after=("-c:a", "libmp3lame"))
    data = source.read_bytes()
    require(data.count(b"A_MPEG/L3") == 1, "no codec to change")
    source.write_bytes(data.replace(b"A_MPEG/L3", b"A_NONE/99"))
    return bench.refused(source, NO_FORMAT, ODD)


def wrong_usage(*options):
    def run(bench):
        source = make_film(bench.path("in.mov"), Film(2), *PLAIN)
        done = subprocess.run([bench.program, source, bench.destination, *options], capture_output=True, check=False)
        equal((done.returncode, done.stdout), (64, b""), "exit code and output")
        require(not bench.destination.exists(), "something was written")
        return "exit 64"
    return Case("Bad input", "wrong usage " + " ".join(options), run)


def cases():
    yield no_video("sound alone, M4A", "in.m4a", "-c:a", "aac")
    yield no_video("sound alone, MOV", "in.mov", "-c:a", "aac")
    yield no_video("sound alone, MKV", "in.mkv", "-c:a", "aac")
    yield no_video("cover art, M4A", "in.m4a", "-f", "lavfi", "-i", "color=red:s=64x64:r=25:d=0.04", "-map", "0", "-map", "1", "-c:a", "aac",
                   "-c:v", "mjpeg", "-frames:v", "1", "-disposition:v", "attached_pic")
    yield no_video("cover art, MKV", "in.mkv", "-f", "lavfi", "-i", "color=red:s=64x64:r=25:d=0.04", "-map", "0", "-map", "1", "-c:a", "aac",
                   "-c:v", "mjpeg", "-frames:v", "1", "-disposition:v", "attached_pic")
    yield Case("Bad input", "no such file", missing)
    yield Case("Bad input", "a folder", a_folder)
    yield bytes_of_a_file("empty MOV", "in.mov", b"")
    yield bytes_of_a_file("empty MKV", "in.mkv", b"")
    yield bytes_of_a_file("text as MOV", "in.mov", b"not a movie at all\n" * 100)
    yield bytes_of_a_file("noise as MP4", "in.mp4", bytes(i * i * 7 % 251 for i in range(20000)))
    yield bytes_of_a_file("a header of nothing", "in.mov", quicktime.pack(b"ftyp", b"qt  \0\0\0\0qt  ") + quicktime.pack(b"moov", b""))
    yield bad_crop("of odd width", Margins(31, 17, 14, 9))
    yield bad_crop("of odd height", Margins(31, 17, 13, 10))
    yield bad_crop("past the right edge", Margins(left=200))
    yield bad_crop("of no width", Margins(left=100, right=100))
    yield bad_crop("of nothing and beyond", Margins(top=100, bottom=80))
    for share in (0.02, 0.25, 0.5, 0.9, 0.999):
        yield cut("in.mov", share, "-movflags", "+faststart")
    for share in (0.3, 0.8):
        yield cut("in.mp4", share)
        yield cut("in.mp4", share, "-movflags", "+frag_keyframe+empty_moov", "-g", "6")
        yield cut("in.mkv", share)
        yield cut("in.avi", share)
    yield Case("Bad input", "header without data", header_alone)
    yield damaged("damage in a picture", REORDERED)
    yield damaged("damage in several pictures", REORDERED, length=4000)
    yield damaged("damage in sound and picture", REORDERED, inputs=tone(seconds=1.9), length=2000)
    yield damaged("damage in the first picture", REORDERED, where=0.01)
    yield without_duration("MKV", "in.mkv", "-f", "matroska")
    yield without_duration("fragmented MP4", "in.mp4", "-f", "mp4", "-movflags", "frag_keyframe+empty_moov")
    yield without_duration("fragmented MOV", "in.mov", "-f", "mov", "-movflags", "frag_every_frame+empty_moov")
    yield without_duration("MPEG-TS", "in.ts", "-f", "mpegts")
    yield Case("Bad input", "sound of an unknown codec", audio_without_format)
    yield wrong_usage("--mbps", "0")
    yield wrong_usage("--mbps", "inf")
    yield wrong_usage("--codec", "vp9")
    yield wrong_usage("--left")
