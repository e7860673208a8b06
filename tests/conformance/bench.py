"""What every case stands on: running programs, one crop at a time in a folder of its own, and what must
hold for every finished movie and for every failure."""

import dataclasses
import json
import os
import pathlib
import subprocess
import typing

import quicktime


class Wrong(Exception):
    """A result that is not as told."""


def require(condition, message):
    if not condition:
        raise Wrong(message)


def equal(actual, expected, what):
    require(actual == expected, f"{what}: {actual!r}, not {expected!r}")


def call(*command, **options):
    """Standard output of a program that must succeed."""
    run = subprocess.run([str(c) for c in command], capture_output=True, check=False, timeout=60, **options)
    if run.returncode != 0:
        words = run.stderr.decode(errors="replace").strip().splitlines()
        raise Wrong(f"{command[0]} failed: {' / '.join(words[-2:])[:300]}")
    return run.stdout


def ffmpeg(*arguments, data=None):
    return call("ffmpeg", "-v", "error", "-y", *arguments, input=data if data is not None else b"")


def probe(path, *arguments):
    return json.loads(call("ffprobe", "-v", "error", "-of", "json", *arguments, path))


def streams(path, kind):
    return probe(path, "-show_streams", "-select_streams", kind)["streams"]


@dataclasses.dataclass
class Margins:
    left: int = 0
    top: int = 0
    right: int = 0
    bottom: int = 0

    def options(self):
        pairs = dataclasses.asdict(self).items()
        return [text for name, value in pairs if value for text in (f"--{name}", str(value))]


@dataclasses.dataclass
class Case:
    """One row of the table. `run` takes a Bench and returns what was measured, or raises Wrong."""

    group: str
    name: str
    run: typing.Callable


class Bench:
    """A folder for one case, and the program under test."""

    OLD = b"what stood here before"

    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.target = folder / "to"
        self.target.mkdir()
        self.destination = self.target / "out.mov"

    def path(self, name):
        return self.folder / name

    def command(self, source, margins=Margins(), codec="h264", mbps=40, progress=False):
        rate = ["--mbps", str(mbps)] if mbps else []
        return [str(self.program), str(source), str(self.destination), *margins.options(), "--codec", codec, *rate,
                *(["--progress"] if progress else [])]

    def attempt(self, source, *arguments, process=None, **options):
        """Runs the program to its end over an existing destination."""
        self.destination.write_bytes(self.OLD)
        environment = dict(os.environ, LC_ALL="C.UTF-8")
        return subprocess.run(self.command(source, *arguments, **options), capture_output=True, text=True,
                              encoding="utf-8", errors="replace", check=False, env=environment, timeout=60,
                              **(process or {}))

    def untouched(self):
        """Holds after every failure: nothing left over, the destination as it was."""
        equal(sorted(os.listdir(self.target)), ["out.mov"], "files in the folder")
        require(self.destination.read_bytes() == self.OLD, "the destination has changed")

    def failed(self, source, *arguments, process=None, **options):
        """The line that the failing program prints."""
        run = self.attempt(source, *arguments, process=process, **options)
        equal(run.returncode, 1, f"exit code (it said {run.stderr.strip()[:200]!r})")
        equal(run.stdout, "", "standard output")
        lines = run.stderr.splitlines()
        require(len(lines) == 1 and lines[0].strip(), f"not one line but {run.stderr[:300]!r}")
        self.untouched()
        return lines[0]

    def refused(self, source, line, *arguments, **options):
        """Fails with exactly this line."""
        said = self.failed(source, *arguments, **options)
        equal(said, line, "line")
        return f"refused: {said}"

    def cropped(self, source, *arguments, process=None, **options):
        """The finished movie, after the checks that hold for every one."""
        run = self.attempt(source, *arguments, process=process, **options)
        require(run.returncode == 0, f"exit code {run.returncode}: {run.stderr.strip()[:300]}")
        return self.finished(run.stdout, options.get("codec", "h264"))

    def finished(self, standard_output, codec):
        equal(sorted(os.listdir(self.target)), ["out.mov"], "files in the folder")
        movie = quicktime.Movie.read(self.destination)
        check_report(json.loads(standard_output), movie, self.destination, codec)
        check_form(movie, codec)
        return movie


def check_report(report, movie, path, codec):
    video = movie.video
    equal(sorted(report), sorted(["kind", "width", "height", "bytes", "seconds", "frames", "codec", "hdr"]), "report")
    equal(report["kind"], "video", "kind")
    equal((report["width"], report["height"]), video.entry_size, "size in the report")
    equal(report["bytes"], path.stat().st_size, "bytes in the report")
    equal(report["frames"], len(video.samples), "frames in the report")
    equal(report["codec"].lower().replace(".", ""), codec, "codec in the report")


def check_form(movie, codec):
    """A QuickTime movie with its header in front and nothing of the old frame or of old metadata."""
    kinds = [kind for kind, _, _ in movie.top]
    equal(kinds[0], b"ftyp", "first box")
    equal(movie.brand, b"qt  ", "brand")
    require(kinds.index(b"moov") < kinds.index(b"mdat"), "moov stands behind mdat")
    require(not movie.moov.all(b"udta") and not movie.moov.all(b"meta"), "the movie header has metadata")
    video = movie.video
    require(not video.trak.all(b"tapt") and not video.trak.all(b"udta"), "old records in the video track")
    for extension in (b"clap", b"mvcC"):
        require(extension not in video.extensions, f"{extension} in the sample description")
    shape = video.extensions.get(b"pasp", bytes(8))
    equal(shape[:4], shape[4:8], "pixel shape")
    equal(video.entry, {"h264": b"avc1", "hevc": b"hvc1"}[codec], "sample entry")
    equal(video.matrix, quicktime.IDENTITY, "track matrix")
    equal(video.track_size, video.entry_size, "size of the track")
    for track in movie.tracks:
        require(all(movie.holds(at, size) for at, size in track.places()), f"track {track.id} points outside of mdat")
    check_keys(movie)


def check_keys(movie):
    """Two seconds apart at most, unless one frame lasts longer."""
    frames = movie.shown(movie.video)
    keys = [frame.start for frame in frames if frame.is_key] + [frames[-1].start]
    widest = max(b - a for a, b in zip(keys, keys[1:]))
    longest = max(frame.end - frame.start for frame in frames)
    require(frames[0].is_key, "the first frame is no key frame")
    require(widest <= max(2, longest), f"{float(widest):.3f} s between key frames")
    return widest
