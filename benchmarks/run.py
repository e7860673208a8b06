#!/usr/bin/env python3
"""Runs the benchmarks and writes RESULTS.md beside this file.

    benchmarks/run.py --bin build/release/bin [--runs N] [--only images|canvas|video|playback|window] [--out FILE]

What is compared runs in turn, or at the same time, on the same machine, and medians are compared, so
that a busy machine slows both sides. Needs ImageMagick (convert, identify), heif-enc,
ffmpeg and mpv, and a display for the canvas and the window.
"""

import argparse
import datetime
import json
import os
import pathlib
import platform
import subprocess
import sys
import tempfile

from canvas import CanvasBenchmarks
from measure import MEBIBYTE, Section, described, measure_in_turn, output_of, tool
from playback import PlaybackBenchmarks
from videos import VideoBenchmarks
from window import WindowBenchmarks

# The source has 24 megapixels, the crop 12, at odd margins.
WIDTH, HEIGHT = 6000, 4000
LEFT, TOP, CROP_WIDTH, CROP_HEIGHT = 877, 585, 4243, 2829
SOURCE_BYTES = WIDTH * HEIGHT * 3
JPEG_QUALITY = 90


class ImageBenchmarks:
    def __init__(self, binaries, runs, folder):
        self.binaries, self.runs, self.folder = binaries, runs, folder
        self.convert, self.identify = tool("convert"), tool("identify")
        self.section = Section(
            "Pictures",
            f"The picture is made by `make_photo`: {WIDTH} × {HEIGHT} pixels, cropped to "
            f"{CROP_WIDTH} × {CROP_HEIGHT}; it compresses like a photograph. Both sides of a ratio run "
            f"in turn; times are medians of {runs} runs, memory is the highest of them.",
        )
        self.add = self.section.add

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
        self.section.details.append(
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
        self.section.details.append(f"{kind}: ours {described(our, self.folder / f'ours.{target}')}; "
                                    "ImageMagick "
                                    f"{described(their, self.folder / f'theirs.{target}')}.")
        if target == "png":
            self.check_same_pixels()

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
        magick = output_of(self.convert, "-version").splitlines()[0].split("https")[0]
        self.section.machine.append(magick.replace("Version: ", "").strip())


def processor_name():
    try:
        for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return platform.processor() or platform.machine()


def machine(load_before):
    """Where and when a section was measured."""
    count = len(os.sched_getaffinity(0)) if hasattr(os, "sched_getaffinity") else os.cpu_count()
    linux = sys.platform == "linux"
    system = platform.freedesktop_os_release()["PRETTY_NAME"] if linux else "macOS"
    return [
        f"{datetime.date.today().isoformat()}, {system}, {platform.system()} {platform.release()}",
        f"{processor_name()}, {count} processors",
        f"load average before and after: {load_before:.1f}, {os.getloadavg()[0]:.1f}",
    ]


def earlier_sections(path):
    """The sections of a file of results by their titles, each as its lines."""
    sections, title = {}, None
    for line in path.read_text(encoding="utf-8").splitlines() if path.exists() else []:
        if line.startswith("## "):
            title = line.removeprefix("## ")
        if title is not None:
            sections.setdefault(title, []).append(line)
    return sections


def write_results(measured, path):
    """What was not measured this time stays as it was."""
    earlier = earlier_sections(path)
    parts = [["# Benchmark results", "", "Written by `benchmarks/run.py` (`./dev bench`)."]]
    for title in ("Pictures", "Canvas", "Films", "Playback", "Window"):
        parts.append(measured[title].lines() if title in measured else earlier.get(title, []))
    texts = ["\n".join(lines).strip("\n") for lines in parts if lines]
    path.write_text("\n\n".join(texts) + "\n", encoding="utf-8")


def main():
    here = pathlib.Path(__file__).resolve().parent
    parser = argparse.ArgumentParser(description="Runs the benchmarks and writes their results.")
    parser.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    parser.add_argument("--runs", type=int, default=5, help="measured runs of each (default: 5)")
    parser.add_argument("--only", choices=["images", "canvas", "video", "playback", "window"], help="one part of the benchmarks")
    parser.add_argument("--films", type=pathlib.Path, default=here.parent / "build" / "bench-films",
                        help="folder where the films are kept (default: build/bench-films)")
    parser.add_argument("--out", type=pathlib.Path, default=here / "RESULTS.md")
    arguments = parser.parse_args()
    binaries, measured = arguments.bin.resolve(), {}
    with tempfile.TemporaryDirectory(prefix="vantrel-bench-") as name:
        folder = pathlib.Path(name)
        parts = []
        if arguments.only in (None, "images"):
            parts.append(ImageBenchmarks(binaries, arguments.runs, folder))
        if arguments.only in (None, "canvas"):
            parts.append(CanvasBenchmarks(binaries, arguments.runs))
        if arguments.only in (None, "video"):
            parts.append(VideoBenchmarks(binaries, arguments.runs, folder, arguments.films.resolve()))
        if arguments.only in (None, "playback"):
            parts.append(PlaybackBenchmarks(binaries, arguments.runs, folder, arguments.films.resolve()))
        if arguments.only in (None, "window"):
            parts.append(WindowBenchmarks(binaries, arguments.runs, folder, arguments.films.resolve()))
        for part in parts:
            before = os.getloadavg()[0]
            part.run()
            part.section.machine[:0] = machine(before)
            measured[part.section.title] = part.section
            write_results(measured, arguments.out)
            for row in part.section.rows:
                print(f"{row.name}: {row.value} ({row.bar})")


if __name__ == "__main__":
    main()
