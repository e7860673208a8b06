"""How soon the window is there, how long it is held up, and what it leaves behind."""

import json
import os
import statistics
import subprocess
import time

from films import Films
from measure import MEBIBYTE, Section, output_of, tool

# For one run of the five that are the default.
PAIRS, ROUNDS = 8, 20
# Of the picture.
WIDTH, HEIGHT = 12000, 8000
PHASES = {"load": "loading", "export": "exporting", "review": "opening the review of"}
# Resident memory is not exact: allocators keep what they may need again.
GROWTH_MEBIBYTES = 4


class WindowBenchmarks:
    def __init__(self, binaries, runs, folder, kept):
        self.binaries, self.runs, self.folder = binaries, runs, folder
        self.films = Films(binaries, kept)
        self.section = Section(
            "Window",
            "From the start of the process until its first window has been painted, in turn with a program "
            f"that shows an empty QMainWindow; medians of {PAIRS * runs} pairs, files in the page cache. Then "
            f"turns of the main event loop of an editor with a JPEG of {WIDTH} × {HEIGHT} pixels and a film, "
            "drawn by the software renderer, which waits for its threads in them; and memory over "
            f"{ROUNDS * runs} windows, from half of them on.",
        )

    def start(self, program):
        """Seconds on the clock and of the processor until the first paint."""
        environment = {
            **os.environ,
            "QT_PLUGIN_PATH": str(self.binaries / "plugins"),
            "QT_QPA_GENERIC_PLUGINS": "first_paint",
        }
        begin = time.clock_gettime(time.CLOCK_MONOTONIC)
        run = subprocess.run([self.binaries / program], check=True, capture_output=True, text=True,
                             env=environment)
        painted, processor = map(float, run.stdout.split())
        return painted - begin, processor

    def starts(self):
        programs = ("vantrel", "empty_window")
        times = {program: [] for program in programs}
        # The first fills the caches.
        for number in range(PAIRS * self.runs + 1):
            for program in programs:
                measured = self.start(program)
                if number > 0:
                    times[program].append(measured)
        medians = {
            program: [statistics.median(kind) for kind in zip(*measured)] for program, measured in times.items()
        }
        (our_wall, our_processor), (their_wall, their_processor) = (medians[name] for name in programs)
        ratio = our_wall / their_wall
        self.section.add("Start to the first painted window, of an empty QMainWindow's", "≤ 1.50",
                         f"{ratio:.2f}", ratio <= 1.5)
        self.section.details.append(
            f"Start to the first painted window: {our_wall * 1000:.1f} ms, {our_processor * 1000:.1f} ms of "
            f"the processor; an empty QMainWindow {their_wall * 1000:.1f} ms, {their_processor * 1000:.1f} ms.")

    def make_photo(self):
        make = lambda *command: subprocess.run(command, check=True, cwd=self.folder)
        make(self.binaries / "make_photo", str(WIDTH), str(HEIGHT), "large.ppm")
        make(tool("convert"), "large.ppm", "-quality", "90", "large.jpg")
        return self.folder / "large.jpg"

    def turns(self, files):
        environment = {**os.environ, "SDL_AUDIODRIVER": "dummy"}
        reports = [
            json.loads(subprocess.run(
                [self.binaries / "window_benchmark", "turns", *files.values()], check=True,
                stdout=subprocess.PIPE, text=True, env=environment).stdout)
            for _ in range(self.runs)
        ]  # fmt: skip
        for name, file in files.items():
            for phase, what in PHASES.items():
                wall, processor = (
                    statistics.median(report[str(file)][phase][kind] for report in reports)
                    for kind in ("wall", "processor")
                )
                self.section.add(f"Longest turn of the event loop while {what} {name}", "≤ 50 ms",
                                 f"{wall:.1f} ms", wall <= 50)
                self.section.details.append(
                    f"Longest turn while {what} {name}: {processor:.1f} ms of the main thread's processor time.")

    def growth(self, files):
        for name, file in {"nothing": None, **files}.items():
            report = json.loads(output_of(self.binaries / "window_benchmark", "growth",
                                          str(ROUNDS * self.runs), *([file] if file else [])))
            grown = (report["after"] - report["before"]) / MEBIBYTE
            self.section.add(f"Memory that {ROUNDS * self.runs} windows with {name} leave behind",
                             f"≤ {GROWTH_MEBIBYTES} MiB", f"{grown:.1f} MiB", grown <= GROWTH_MEBIBYTES)

    def run(self):
        self.starts()
        film = self.films.make("film-1080.mov", 1920, 1080, 6)
        photo = self.make_photo()
        self.turns({"a picture": photo, "a film": film})
        subprocess.run([tool("convert"), photo, "-resize", "10%", self.folder / "small.jpg"], check=True)
        self.growth({"a picture": self.folder / "small.jpg", "a film": film})
