"""What the canvas costs: its rules, and a window that is driven by events."""

import functools
import json
import statistics

from measure import Section, output_of

# Microseconds.
BAR = 5
# By program, the names of its benchmarks and what they measure.
PROGRAMS = {
    "canvas_camera_benchmark": {
        "cameraLayout": "One layout of the camera",
        "cameraTick": "One tick of a camera's move",
        "cameraZoomAround": "One zoom at the pointer",
    },
}
# Of the picture in the window.
WIDTH, HEIGHT = 12000, 8334


class CanvasBenchmarks:
    def __init__(self, binaries, runs):
        self.binaries, self.runs = binaries, runs
        self.section = Section(
            "Canvas",
            "Processor time of one step of the plain rules; then a window of 1280 × 800 with a picture "
            f"of {WIDTH} × {HEIGHT} pixels, driven by events and drawn by the software renderer, where "
            "times of the main thread are processor time from the event to the frame's submission. "
            f"Medians of {runs} runs.",
        )

    def nanoseconds(self, program):
        """By benchmark, the processor times of its runs."""
        times = {}
        report = json.loads(
            output_of(
                self.binaries / program,
                "--benchmark_format=json",
                f"--benchmark_repetitions={self.runs}",
            )
        )
        for entry in report["benchmarks"]:
            if entry["run_type"] == "iteration":
                times.setdefault(entry["run_name"], []).append(entry["cpu_time"])
        return times

    def rules(self):
        for program, measures in PROGRAMS.items():
            times = self.nanoseconds(program)
            for name, measure in measures.items():
                microseconds = statistics.median(times[name]) / 1000
                self.section.add(measure, f"< {BAR} µs", f"{microseconds:.3f} µs", microseconds < BAR)

    def window(self):
        program = self.binaries / "canvas_window_benchmark"
        reports = [
            json.loads(output_of(program, "--width", str(WIDTH), "--height", str(HEIGHT)))
            for _ in range(self.runs)
        ]

        def median(*path):
            return statistics.median(functools.reduce(dict.get, path, report) for report in reports)

        def milliseconds(name, bar, *path):
            value = median(*path)
            self.section.add(name, f"< {bar} ms", f"{value:.1f} ms", value < bar)

        milliseconds("First picture on the screen", 500, "open", "milliseconds")
        milliseconds("Longest turn of the event loop while opening", 50, "open", "turn", "most")
        steps = {
            "dragging the crop": ("drag",),
            "zooming by a notch": ("zoom",),
            "panning at 100 %": ("panPixels", "event"),
        }
        for name, path in steps.items():
            milliseconds(f"Main thread, one step of {name}", 4, *path, "median")
        for key, zoom in (("panWhole", "25 %"), ("panPixels", "100 %")):
            frames = median(key, "framesPerSecond")
            self.section.add(f"Panning at {zoom}, frames a second", "≥ 30", f"{frames:.0f}", frames >= 30)
        for name, path in steps.items():
            self.section.details.append(
                f"95 of 100 steps of {name} take less than {median(*path, 'p95'):.1f} ms."
            )

    def run(self):
        self.rules()
        self.window()
