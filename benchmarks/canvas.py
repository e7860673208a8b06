"""What one step of the canvas costs on the main thread."""

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


class CanvasBenchmarks:
    def __init__(self, binaries, runs):
        self.binaries, self.runs = binaries, runs
        self.section = Section(
            "Canvas",
            f"Processor time of one step of the plain rules, medians of {runs} runs.",
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

    def run(self):
        for program, measures in PROGRAMS.items():
            times = self.nanoseconds(program)
            for name, measure in measures.items():
                microseconds = statistics.median(times[name]) / 1000
                self.section.add(measure, f"< {BAR} µs", f"{microseconds:.3f} µs", microseconds < BAR)
