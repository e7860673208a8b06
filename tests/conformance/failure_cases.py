"""Failures from outside: a disk that fills up, a folder that cannot be written, a source that changes, a request to
stop. Always a clear line, nothing left over, the destination as it was."""

import os
import resource
import signal
import subprocess

from bench import Case, equal, ffmpeg, require
from look import check_pictures
from pattern import ODD, Film, View
from sound_cases import tone
from sources import REORDERED, make_film

CANCELLED = "Export cancelled"
NOBODY = 65534


def sample(bench):
    return make_film(bench.path("in.mov"), Film(30), *REORDERED, inputs=tone(), after=("-c:a", "aac"))


def full_disk(name, limit_of):
    """Files may not grow past a limit, which is told from the size of the finished movie."""
    def run(bench):
        source = sample(bench)
        bench.cropped(source, ODD)
        limit = limit_of(bench.destination.stat().st_size)

        def confine():
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))

        line = bench.failed(source, ODD, process={"preexec_fn": confine})
        require(line.endswith("could not be saved: File too large"), f"line {line!r}")
        return f"{limit} bytes: {line}"
    return Case("Failure", f"disk full at {name}", run)


def small_disk(name, share):
    """A file system of this share of the finished movie's size."""
    def run(bench):
        source = sample(bench)
        bench.cropped(source, ODD)
        size = int(bench.destination.stat().st_size * share)
        mount = ["mount", "-t", "tmpfs", "-o", f"size={size}", "none", bench.target]
        if subprocess.run(mount, capture_output=True, check=False).returncode != 0:
            return "not tried: nothing can be mounted here"
        try:
            line = bench.failed(source, ODD)
        finally:
            subprocess.run(["umount", bench.target], check=True)
        require(line.endswith("could not be saved: No space left on device"), f"line {line!r}")
        return line
    return Case("Failure", f"no space left for {name}", run)


def ordinary_user():
    """Options of a process that has no more rights than an ordinary user."""
    return {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.geteuid() == 0 else {}


def read_only_folder(bench):
    source = sample(bench)
    bench.destination.write_bytes(bench.OLD)
    os.chmod(bench.target, 0o555)
    run = subprocess.run(bench.command(source, ODD), capture_output=True, text=True, check=False, **ordinary_user())
    equal((run.returncode, run.stdout), (1, ""), f"exit code ({run.stderr.strip()})")
    bench.untouched()
    lines = run.stderr.splitlines()
    require(len(lines) == 1 and lines[0].endswith("Permission denied"), f"line {run.stderr!r}")
    return lines[0]


def unreadable_source(bench):
    source = sample(bench)
    os.chmod(source, 0)
    os.chmod(bench.target, 0o777)
    line = bench.failed(source, ODD, process=ordinary_user())
    require(line.endswith("Permission denied"), f"line {line!r}")
    return line


def missing_folder(bench):
    """Folders on the way to the destination are made."""
    source = sample(bench)
    bench.target.rmdir()
    bench.target = bench.target / "a" / "b"
    bench.destination = bench.target / "out.mov"
    run = subprocess.run(bench.command(source, ODD), capture_output=True, text=True, check=False)
    equal(run.returncode, 0, f"exit code ({run.stderr.strip()})")
    bench.finished(run.stdout, "h264")
    return check_pictures(bench.destination, View(Film(30), ODD), range(30))


def long_film(bench, name="in.avi"):
    """Uncompressed, so that reading goes on as long as encoding does."""
    source = bench.path(name)
    ffmpeg("-f", "lavfi", "-i", "testsrc2=s=640x480:r=25:d=8", *tone(seconds=8), "-c:v", "rawvideo", "-pix_fmt", "yuv420p",
           "-c:a", "pcm_s16le", source)
    return source


def started(bench, source, codec="h264"):
    """The program at work, with its progress on a pipe."""
    bench.destination.write_bytes(bench.OLD)
    command = bench.command(source, progress=True, codec=codec, mbps=8)
    return subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, encoding="utf-8")


def at_line(number):
    """Waits until so many lines of progress have come."""
    def wait(process, _):
        for _ in range(number):
            require(process.stderr.readline(), "the program ended before its time")
    return wait


def at_share(share):
    """Waits for progress of so much: the first number of a line from 0 to 1, as it is printed."""
    def wait(process, _):
        for line in process.stderr:
            numbers = [word for word in line.replace(",", " ").replace(":", " ").split() if word[:2] in ("0.", "1.")]
            if numbers and float(numbers[0]) >= share:
                return
        raise AssertionError("the program ended before its time")
    return wait


def at_work_folder(process, bench):
    """Waits until the working folder is there."""
    while not any(entry.startswith("Vantrel-") for entry in os.listdir(bench.target)):
        require(process.poll() is None, "the program ended before its time")


def stopped(name, number, wait, codec="h264", may_finish=False):
    """The program is asked to stop at some moment. In the last moments it may be too late."""
    def run(bench):
        process = started(bench, long_film(bench), codec)
        wait(process, bench)
        process.send_signal(number)
        output, words = process.communicate(timeout=60)
        if may_finish and process.returncode == 0:
            bench.finished(output, codec)
            return "too late: finished"
        equal((process.returncode, output), (2, ""), f"exit code ({words[-200:]})")
        equal(words.splitlines()[-1], CANCELLED, "line")
        bench.untouched()
        return "exit 2: " + CANCELLED
    return Case("Failure", f"{signal.Signals(number).name} {name}", run)


def source_cut_meanwhile(bench):
    source = long_film(bench)
    process = started(bench, source)
    at_line(1)(process, bench)
    os.truncate(source, 3000000)
    output, words = process.communicate(timeout=60)
    equal((process.returncode, output), (1, ""), f"exit code ({words[-200:]})")
    bench.untouched()
    return words.splitlines()[-1]


def source_gone_meanwhile(bench):
    """What is open can be read to its end."""
    source = long_film(bench)
    process = started(bench, source)
    at_line(1)(process, bench)
    source.unlink()
    output, words = process.communicate(timeout=60)
    if process.returncode == 0:
        frames = len(bench.finished(output, "h264").video.samples)
        equal(frames, 200, "frames")
        return "finished, 200 frames"
    equal((process.returncode, output), (1, ""), f"exit code ({words[-200:]})")
    bench.untouched()
    return words.splitlines()[-1]


def cases():
    for name, limit_of in (("the first byte", lambda size: 0), ("the header", lambda size: 20),
                           ("the first frames", lambda size: size // 4), ("later frames", lambda size: size * 3 // 4),
                           ("the trailer", lambda size: size - 1500), ("the last byte", lambda size: size - 1)):
        yield full_disk(name, limit_of)
    yield small_disk("the frames", 0.5)
    yield small_disk("the rewrite", 1.5)
    yield Case("Failure", "read-only folder", read_only_folder)
    yield Case("Failure", "unreadable source", unreadable_source)
    yield Case("Failure", "missing folders", missing_folder)
    yield Case("Failure", "source cut during the export", source_cut_meanwhile)
    yield Case("Failure", "source removed during the export", source_gone_meanwhile)
    for number in (signal.SIGINT, signal.SIGTERM):
        yield stopped("with the working folder there", number, at_work_folder)
        yield stopped("at the first progress", number, at_line(1))
        yield stopped("half-way", number, at_share(0.5))
        yield stopped("while finishing", number, at_share(0.99), may_finish=True)
    yield stopped("half-way to HEVC", signal.SIGINT, at_share(0.5), codec="hevc")
