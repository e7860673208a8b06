"""Running programs and taking their time and memory."""

import os
import shutil
import statistics
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field

MEBIBYTE = 1 << 20


@dataclass
class Run:
    wall: float
    processor: float
    peak_bytes: int


@dataclass
class Ratio:
    """What our times are to theirs."""

    wall: float
    processor: float


@dataclass
class Row:
    """One line of a table; `met` is None for what has no bar."""

    name: str
    bar: str
    value: str
    met: bool | None


@dataclass
class Section:
    """A part of the results: what was measured, against its bars and in figures."""

    title: str
    introduction: str
    rows: list = field(default_factory=list)
    details: list = field(default_factory=list)
    # Lines of Markdown.
    tables: list = field(default_factory=list)
    machine: list = field(default_factory=list)

    def add(self, name, bar, value, met=None):
        self.rows.append(Row(name, bar, value, met))

    def figures(self):
        return ["In figures:", "", *(f"- {line}" for line in self.details), ""] if self.details else []

    def lines(self):
        marks = {True: "yes", False: "**no**", None: "–"}
        return [
            f"## {self.title}",
            "",
            self.introduction,
            "",
            "| Measure | Bar | Value | Met |",
            "|---|---|---|---|",
            *(f"| {row.name} | {row.bar} | {row.value} | {marks[row.met]} |" for row in self.rows),
            "",
            *self.tables,
            *self.figures(),
            "Machine:",
            "",
            *(f"- {line}" for line in self.machine),
            "",
        ]


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


def compare(ours, theirs, runs, folder):
    """Medians of both, and the medians of what each pair's times are to each other.

    Both of a pair run at the same time and share the machine: what slows it for a moment slows them
    alike, and whichever takes more of it, or makes worse use of its processors, ends later.
    """
    pairs = []
    with ThreadPoolExecutor(max_workers=2) as threads:
        for number in range(runs + 1):
            order = [ours, theirs] if number % 2 else [theirs, ours]
            pair = list(threads.map(lambda command: measure(command, folder), order))
            # After one that fills the caches.
            if number > 0:
                pairs.append(pair if number % 2 else pair[::-1])
    ratio = Ratio(
        statistics.median(our.wall / their.wall for our, their in pairs),
        statistics.median(our.processor / their.processor for our, their in pairs),
    )
    our, their = (medians(results) for results in zip(*pairs))
    return our, their, ratio


def described(run, file):
    return (f"{run.wall:.2f} s wall, {run.processor:.2f} s processor, "
            f"{run.peak_bytes / MEBIBYTE:.0f} MiB peak, {file.stat().st_size / 1e6:.2f} MB")


def tool(name):
    """The distribution's own program first: a wrapper of that name would be measured too."""
    system = f"/usr/bin/{name}"
    path = system if os.access(system, os.X_OK) else shutil.which(name)
    if path is None:
        sys.exit(f"{name} is missing")
    return path


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout
