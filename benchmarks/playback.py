"""How movies are sought, scrubbed and played, beside mpv."""

import json
import os
import statistics
import subprocess
import time

from barcoded_films import SOUGHT_FILMS, played_film
from films import DESCRIPTION, Films
from measure import Section, output_of, tool
from mpv import Mpv

# All for one run of the five that are the default.
SEEKS, COMPARED_SEEKS, PLAYED_SECONDS = 200, 40, 12
SCRUB_SECONDS, REQUESTS_PER_SECOND = 4, 60
SEED = 5
# The part of a film that a sweep reaches, as in playback_benchmark.
SWEPT_PART = 0.99


def median(values):
    return statistics.median(values)


def percentile_95(values):
    return sorted(values)[int(len(values) * 0.95)]


class PlaybackBenchmarks:
    def __init__(self, binaries, runs, folder, kept):
        self.binaries, self.runs, self.folder = binaries, runs, folder
        self.films = Films(binaries, kept)
        self.section = Section(
            "Playback",
            f"{DESCRIPTION} Here they bear the numbers of their pictures and last 20 s, at 1280 × 720 "
            "pixels and 25 pictures a second where nothing else is said. Each seek goes to a random "
            "time, when the one before has landed; its time ends when the picture is the current one. "
            f"The player and mpv run in turn, {runs} times each, both without sound and a window; mpv "
            "seeks exactly and tells of its pictures by `playback-restart`.",
        )

    def player(self, *arguments, seeks=()):
        environment = {**os.environ, "SDL_AUDIODRIVER": "dummy", "LIBGL_ALWAYS_SOFTWARE": "1"}
        run = subprocess.run(
            [self.binaries / "playback_benchmark", *map(str, arguments)], check=True, text=True,
            stdout=subprocess.PIPE, env=environment, input="\n".join(str(seek) for seek, _ in seeks),
        )  # fmt: skip
        return json.loads(run.stdout)

    def seek_exactly(self, paths):
        count = SEEKS * self.runs
        self.section.tables += [
            f"{count} seeks of the player:", "",
            "| Film | Exact | Median | 95th percentile |", "|---|---|---|---|",
        ]  # fmt: skip
        exact = 0
        for film, path in paths:
            seeks = film.random_seeks(count, SEED)
            landings = self.player("seek", path, seeks=seeks)
            right = sum(number == wanted for (number, _), (_, wanted) in zip(landings, seeks, strict=True))
            times = [milliseconds for _, milliseconds in landings]
            self.section.tables.append(
                f"| {film.title} | {right} | {median(times):.1f} ms | {percentile_95(times):.1f} ms |")
            exact += right
        self.section.tables.append("")
        share = exact / (count * len(paths))
        self.section.add(f"Exact seeks of {count} in each of {len(paths)} films", "100 %", f"{share:.2%}",
                         exact == count * len(paths))

    def seek_beside_mpv(self, film, path):
        ours, theirs = [], []
        for run in range(self.runs):
            seeks = film.random_seeks(COMPARED_SEEKS, SEED + 1 + run)
            ours += [milliseconds for _, milliseconds in self.player("seek", path, seeks=seeks)]
            with Mpv(path, self.folder) as mpv:
                theirs += [mpv.seek_latency(microseconds / 1e6) for microseconds, _ in seeks]
        return ours, theirs

    def scrub_beside_mpv(self, film, path):
        """Pictures a second of both, and whether each last request of ours has landed."""
        ours, theirs, has_landed = [], [], True
        for _ in range(self.runs):
            report = self.player("scrub", path, SCRUB_SECONDS)
            ours.append(report["shown"] / SCRUB_SECONDS)
            wanted = report["wanted"] / 1e6
            last = report["last"]
            has_landed &= film.start(last) <= wanted < film.start(last + 1)
            with Mpv(path, self.folder) as mpv:
                theirs.append(self.scrub(mpv, film.seconds) / SCRUB_SECONDS)
        return median(ours), median(theirs), has_landed

    def scrub(self, mpv, seconds):
        """The number of pictures that mpv shows during a sweep forward and back."""
        mpv.seek_latency(0)
        before, start, requests = len(mpv.shown), time.perf_counter(), 0
        while (passed := time.perf_counter() - start) < SCRUB_SECONDS:
            part = 1 - abs(2 * passed / SCRUB_SECONDS - 1)
            mpv.seek(part * seconds * SWEPT_PART)
            requests += 1
            time.sleep(max(0, start + requests / REQUESTS_PER_SECOND - time.perf_counter()))
        return len(mpv.shown) - before

    def compare(self, paths):
        self.section.tables += [
            f"Beside mpv: medians of {COMPARED_SEEKS * self.runs} seeks, and pictures a second while "
            f"scrubbing over the film and back in {SCRUB_SECONDS} s, at {REQUESTS_PER_SECOND} requests a "
            "second:", "",
            "| Film | Seek | mpv's | Ratio | Scrubbing | mpv's | Ratio |", "|---|---|---|---|---|---|---|",
        ]  # fmt: skip
        for film, path in paths:
            ours, theirs = map(median, self.seek_beside_mpv(film, path))
            our_rate, their_rate, has_landed = self.scrub_beside_mpv(film, path)
            seek, scrub = ours / theirs, our_rate / max(their_rate, 1 / SCRUB_SECONDS)
            self.section.tables.append(
                f"| {film.title} | {ours:.1f} ms | {theirs:.1f} ms | {seek:.2f} | {our_rate:.1f} | "
                f"{their_rate:.1f} | {scrub:.2f} |")
            self.section.add(f"{film.title}: median seek of mpv's", "≤ 1.00", f"{seek:.2f}", seek <= 1)
            self.section.add(f"{film.title}: pictures while scrubbing of mpv's", "≥ 1.50", f"{scrub:.2f}",
                             scrub >= 1.5)
            self.section.add(f"{film.title}: the last request lands", "always", "yes" if has_landed else "no",
                             has_landed)
        self.section.tables.append("")

    def play(self, film, path, *drawn):
        pictures = self.player("play", path, film.seconds, *drawn)
        where = "drawn at 1280 × 800" if drawn else "not drawn"
        numbers = [number for number, _ in pictures]
        # The last may come when the time is over.
        missing = len(set(range(film.pictures() - 1)) - set(numbers))
        in_order = numbers == sorted(set(numbers))
        self.section.add(f"{film.title}, {film.seconds} s, {where}: pictures dropped", "0",
                         f"{missing}" if in_order else f"{missing}, out of order", missing == 0 and in_order)
        apart = [abs(heard - film.start(number)) * 1000 for number, heard in pictures if heard is not None]
        worst = max(apart, default=None)
        self.section.add(f"{film.title}, {film.seconds} s, {where}: sound and picture apart, worst", "≤ 40 ms",
                         "no sound" if worst is None else f"{worst:.1f} ms", worst is not None and worst <= 40)
        if apart:
            self.section.details.append(f"Sound and picture, {where}: {median(apart):.1f} ms apart in the median, "
                                        f"{percentile_95(apart):.1f} ms in the 95th percentile.")

    def run(self):
        scene = self.films.make("film-1080.mov", 1920, 1080, 6)
        paths = [(film, film.make(self.films, scene)) for film in SOUGHT_FILMS]
        self.seek_exactly(paths)
        self.compare(paths)
        film = played_film(PLAYED_SECONDS * self.runs)
        path = film.make(self.films, scene)
        self.play(film, path)
        self.play(film, path, "draw")
        self.section.machine.append(output_of(tool("mpv"), "--version").splitlines()[0].split(" Copyright")[0])
