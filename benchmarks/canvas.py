"""What the canvas costs: its rules, and a window that is driven by events."""

import json

from measure import Section, output_of

# The renderer of a machine without a graphics processor.
RUNS = 3
WIDTH, HEIGHT = 12000, 8334


class CanvasBenchmarks:
    def __init__(self, binaries):
        self.binaries = binaries
        self.section = Section(
            "Canvas",
            f"A window of 1280 × 800 with a picture of {WIDTH} × {HEIGHT} pixels, driven by events and "
            "drawn by the software renderer. Times of the main thread are processor time from the "
            f"event to the frame's submission; of {RUNS} windows the medians.",
        )
        self.add = self.section.add

    def rules(self):
        for program in ("canvas_camera_benchmark", "crop_overlay_benchmark"):
            report = json.loads(output_of(self.binaries / program, "--benchmark_format=json"))
            for entry in report["benchmarks"]:
                microseconds = entry["cpu_time"] * {"ns": 1e-3, "us": 1}[entry["time_unit"]]
                self.add(f"`{entry['name']}`", "< 5 µs", f"{microseconds:.2f} µs", microseconds < 5)

    def window(self):
        program = self.binaries / "canvas_window_benchmark"
        reports = [
            json.loads(output_of(program, "--width", str(WIDTH), "--height", str(HEIGHT)))
            for _ in range(RUNS)
        ]

        def median(*path):
            values = []
            for report in reports:
                for key in path:
                    report = report[key]
                values.append(report)
            return sorted(values)[RUNS // 2]

        def milliseconds(name, bar, *path):
            value = median(*path)
            self.add(name, f"< {bar} ms", f"{value:.1f} ms", value < bar)

        milliseconds("First picture on the screen", 500, "open", "milliseconds")
        milliseconds("Longest turn of the event loop while opening", 50, "open", "turn", "most")
        milliseconds("Main thread, one step of dragging the crop", 4, "drag", "median")
        milliseconds("Main thread, one notch of zooming", 4, "zoom", "median")
        milliseconds("Main thread, one step of panning at 100 %", 4, "panPixels", "event", "median")
        for key, name in (("panWhole", "25 %"), ("panPixels", "100 %")):
            frames = median(key, "framesPerSecond")
            self.add(f"Panning at {name}, frames a second", "≥ 30", f"{frames:.0f}", frames >= 30)
        self.section.details.append(
            "95 of 100 steps take less than "
            + ", ".join(
                f"{median(*path, 'p95'):.1f} ms ({name})"
                for name, path in (
                    ("dragging", ("drag",)),
                    ("zooming", ("zoom",)),
                    ("panning", ("panPixels", "event")),
                )
            )
            + "."
        )

    def run(self):
        self.rules()
        self.window()
