#!/usr/bin/env python3
"""Runs the benchmarks and writes RESULTS.md beside this file.

    benchmarks/run.py --bin build/release/bin [--runs N] [--output FILE]

What is compared runs in turn, in the same minutes on the same machine, and medians are compared, so
that a busy machine slows both sides. Needs ImageMagick (convert, identify) and heif-enc.
"""

import argparse
import datetime
import json
import os
import pathlib
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

# The source has 24 megapixels, the crop 12, at odd margins.
WIDTH, HEIGHT = 6000, 4000
LEFT, TOP, CROP_WIDTH, CROP_HEIGHT = 877, 585, 4243, 2829
SOURCE_BYTES = WIDTH * HEIGHT * 3
JPEG_QUALITY = 90
MEBIBYTE = 1 << 20


@dataclass
class Run:
    wall: float
    processor: float
    peak_bytes: int


@dataclass
class Row:
    """One line of the table; `met` is None for what has no bar."""

    name: str
    bar: str
    value: str
    met: bool | None


def measure(command, folder):
    start = time.perf_counter()
    process = subprocess.Popen(command, cwd=folder, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}: exit status {process.returncode}")
    unit = 1 if sys.platform == "darwin" else 1024
    return Run(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * unit)


def medians(runs):
    return Run(
        statistics.median(run.wall for run in runs),
        statistics.median(run.processor for run in runs),
        max(run.peak_bytes for run in runs),
    )


def measure_in_turn(commands, runs, folder):
    """Medians of each command, after one run of each that fills the caches."""
    results = [[] for _ in commands]
    for number in range(runs + 1):
        for command, result in zip(commands, results):
            run = measure(command, folder)
            if number > 0:
                result.append(run)
    return [medians(result) for result in results]


def tool(name):
    """The distribution's own program first: a wrapper of that name would be measured too."""
    system = f"/usr/bin/{name}"
    path = system if os.access(system, os.X_OK) else shutil.which(name)
    if path is None:
        sys.exit(f"{name} is missing")
    return path


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class Benchmarks:
    def __init__(self, binaries, runs, folder):
        self.binaries, self.runs, self.folder = binaries, runs, folder
        self.convert, self.identify = tool("convert"), tool("identify")
        self.rows, self.details, self.load = [], [], ""

    def add(self, name, bar, value, met=None):
        self.rows.append(Row(name, bar, value, met))

    def make_sources(self):
        make = lambda *command: subprocess.run(command, check=True, cwd=self.folder)
        make(self.binaries / "make_photo", str(WIDTH), str(HEIGHT), "photo.ppm")
        make(self.convert, "photo.ppm", "photo.png")
        make(self.convert, "photo.ppm", "-quality", str(JPEG_QUALITY), "photo.jpg")
        make(self.convert, "photo.ppm", "-compress", "LZW", "photo.tiff")
        make(tool("heif-enc"), "-q", str(JPEG_QUALITY), "photo.png", "-o", "photo.heic")

    def crop_margins(self):
        report = json.loads(
            output_of(self.binaries / "crop_margins_benchmark", "--benchmark_format=json")
        )
        for entry in report["benchmarks"]:
            milliseconds = entry["cpu_time"]
            step = entry["name"].rsplit(":", 1)[-1]
            self.add(
                f"A million calls of `CropMargins::set`, step {step}",
                "< 20 ms",
                f"{milliseconds:.1f} ms",
                milliseconds < 20,
            )

    def png_writer(self):
        program = self.binaries / "png_writer_benchmark"
        report = json.loads(
            subprocess.run(
                [program, "--runs", str(self.runs)],
                check=True,
                capture_output=True,
                cwd=self.folder,
            ).stdout
        )
        ours, theirs = report["ours"], report["libpng"]
        processor = ours["processor"] / theirs["processor"]
        size = ours["bytes"] / theirs["bytes"]
        self.add("PNG writer, processor time of libpng at level 6", "≤ 0.35", f"{processor:.3f}",
                 processor <= 0.35)
        self.add("PNG writer, size of libpng at level 6", "≤ 1.02", f"{size:.3f}", size <= 1.02)
        walls = {int(threads): wall for threads, wall in report["wallByThreads"].items()}
        ordered = [walls[threads] for threads in sorted(walls)]
        falls = len(ordered) > 1 and all(a > b for a, b in zip(ordered, ordered[1:]))
        text = ", ".join(f"{threads}: {walls[threads]:.2f} s" for threads in sorted(walls))
        self.add("PNG writer, shortest wall time by threads", "falls", text,
                 falls if len(ordered) > 1 else None)
        pixels = report["width"] * report["height"]
        self.details.append(
            f"PNG writer, {pixels / 1e6:.0f} megapixels: ours {ours['processor']:.2f} s of processor "
            f"time, {ours['bytes'] / 1e6:.2f} MB; libpng {theirs['processor']:.2f} s, "
            f"{theirs['bytes'] / 1e6:.2f} MB."
        )

    def crop(self, source, target, bar):
        ours = [
            self.binaries / "crop-once", source, f"ours.{target}",
            "--left", str(LEFT), "--right", str(WIDTH - LEFT - CROP_WIDTH),
            "--top", str(TOP), "--bottom", str(HEIGHT - TOP - CROP_HEIGHT),
        ]  # fmt: skip
        theirs = [
            self.convert, source,
            "-crop", f"{CROP_WIDTH}x{CROP_HEIGHT}+{LEFT}+{TOP}", "+repage", f"theirs.{target}",
        ]  # fmt: skip
        if target == "jpg":
            ours += ["--format", "jpeg", "--quality", str(JPEG_QUALITY / 100)]
            theirs[-1:-1] = ["-quality", str(JPEG_QUALITY)]
        our, their = measure_in_turn([ours, theirs], self.runs, self.folder)
        kind = f"{pathlib.Path(source).suffix[1:].upper()} to {target.upper()}"
        ratio = our.wall / their.wall
        met = None if bar is None else ratio <= bar
        self.add(f"`crop-once`, {kind}, wall time of ImageMagick",
                 "reported" if bar is None else f"≤ {bar:.2f}", f"{ratio:.3f}", met)
        beyond = (our.peak_bytes - SOURCE_BYTES) / MEBIBYTE
        self.add(f"`crop-once`, {kind}, peak memory beyond the bitmap", "≤ 80 MiB",
                 f"{beyond:.0f} MiB", beyond <= 80)
        self.details.append(f"{kind}: ours {self.describe(our, f'ours.{target}')}; ImageMagick "
                            f"{self.describe(their, f'theirs.{target}')}.")
        if target == "png":
            self.check_same_pixels()

    def describe(self, run, file):
        size = (self.folder / file).stat().st_size
        return (f"{run.wall:.2f} s wall, {run.processor:.2f} s processor, "
                f"{run.peak_bytes / MEBIBYTE:.0f} MiB peak, {size / 1e6:.2f} MB")

    def check_same_pixels(self):
        """A comparison counts only if both made the same picture."""
        signatures = {
            output_of(self.identify, "-format", "%#", self.folder / file)
            for file in ("ours.png", "theirs.png")
        }
        if len(signatures) != 1:
            sys.exit("crop-once and ImageMagick made different pictures")

    def run(self):
        self.crop_margins()
        self.png_writer()
        self.make_sources()
        self.crop("photo.png", "png", 0.30)
        self.crop("photo.jpg", "jpg", 0.60)
        self.crop("photo.tiff", "png", None)
        self.crop("photo.heic", "jpg", None)


def processor_name():
    try:
        for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return platform.processor() or platform.machine()


def write_results(benchmarks, path):
    count = len(os.sched_getaffinity(0)) if hasattr(os, "sched_getaffinity") else os.cpu_count()
    marks = {True: "yes", False: "**no**", None: "–"}
    magick = output_of(benchmarks.convert, "-version").splitlines()[0].split("https")[0]
    linux = sys.platform == "linux"
    system = platform.freedesktop_os_release()["PRETTY_NAME"] if linux else "macOS"
    lines = [
        "# Benchmark results",
        "",
        "Written by `benchmarks/run.py` (`./dev bench`). The picture is made by `make_photo`: "
        f"{WIDTH} × {HEIGHT} pixels, cropped to {CROP_WIDTH} × {CROP_HEIGHT}; it compresses like a "
        "photograph. Both sides of a ratio run in turn; times are medians of "
        f"{benchmarks.runs} runs, memory is the highest of them.",
        "",
        "| Measure | Bar | Value | Met |",
        "|---|---|---|---|",
        *(f"| {row.name} | {row.bar} | {row.value} | {marks[row.met]} |" for row in benchmarks.rows),
        "",
        "## In figures",
        "",
        *(f"- {detail}" for detail in benchmarks.details),
        "",
        "## Machine",
        "",
        f"- {datetime.date.today().isoformat()}, {system}, {platform.system()} {platform.release()}",
        f"- {processor_name()}, {count} processors",
        f"- load average before and after: {benchmarks.load}",
        f"- {magick.replace('Version: ', '').strip()}",
        "",
    ]
    path.write_text("\n".join(lines), encoding="utf-8")


def main():
    here = pathlib.Path(__file__).resolve().parent
    parser = argparse.ArgumentParser(description="Runs the benchmarks and writes their results.")
    parser.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    parser.add_argument("--runs", type=int, default=5, help="measured runs of each (default: 5)")
    parser.add_argument("--output", type=pathlib.Path, default=here / "RESULTS.md")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="vantrel-bench-") as folder:
        benchmarks = Benchmarks(arguments.bin.resolve(), arguments.runs, pathlib.Path(folder))
        before = os.getloadavg()[0]
        benchmarks.run()
        benchmarks.load = f"{before:.1f}, {os.getloadavg()[0]:.1f}"
        write_results(benchmarks, arguments.output)
    for row in benchmarks.rows:
        print(f"{row.name}: {row.value} ({row.bar})")


if __name__ == "__main__":
    main()
