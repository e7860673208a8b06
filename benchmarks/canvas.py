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
    "crop_overlay_benchmark": {
        "overlayHitTest": "One look for what a press takes hold of",
        "overlayCursor": "One look for the cursor",
        "overlayDragStep/ratio:0": "One step of dragging a corner",
        "overlayDragStep/ratio:1": "One step of dragging a corner that keeps its ratio",
        "overlayRectangles": "What is drawn around the crop, once",
    },
}
# By film of video_picture_benchmark, what it is and the bar for drawing one picture, in
# milliseconds: what a film of 30 pictures a second leaves.
FILMS = {
    "hd": ("1920 × 1080, 8 bits", 33),
    "uhd": ("3840 × 2160, 10 bits", None),
    "uhdPq": ("3840 × 2160, PQ", None),
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
            "times of the main thread are processor time from the event until its frame is on its way there. "
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

    def videos(self):
        program = self.binaries / "video_picture_benchmark"
        reports = [json.loads(output_of(program)) for _ in range(self.runs)]
        for film, (kind, bar) in FILMS.items():
            for zoom, where in (("fitted", "fitted"), ("pixels", "at 100 %")):

                def median(time):
                    return statistics.median(report[film][zoom][time] for report in reports)

                wall = median("wall")
                self.section.add(
                    f"A new picture of a video, {kind}, {where}",
                    f"< {bar} ms" if bar else "reported",
                    f"{wall:.1f} ms",
                    wall < bar if bar else None,
                )
                self.section.details.append(
                    f"A new picture of {kind}, {where}, takes {median('main'):.1f} ms of the main thread "
                    f"and {median('processor'):.1f} ms of all."
                )

    def run(self):
        self.rules()
        self.window()
        self.videos()
