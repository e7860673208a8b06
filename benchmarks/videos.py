"""What crop-once does with films, beside the ffmpeg command with the same encoder and options."""

import json
import re
import subprocess
import sys
from dataclasses import dataclass

from films import DESCRIPTION, FRAME_RATE, Films
from measure import MEBIBYTE, Section, compare, described, measure, measure_in_turn, output_of, tool

# Between key frames, in seconds and, beyond any film's length, in frames.
KEY_FRAME_SECONDS, GROUP_FRAMES = 2, 32767
PRESETS = {
    "libx264": ["ultrafast", "superfast", "veryfast", "faster", "medium"],
    "libx265": ["ultrafast", "superfast", "veryfast", "fast"],
}
CODECS = {"h264": "H.264", "hevc": "HEVC"}
# Megabits per second; after the first length a film that begins in black is still coming up.
RATES = {(1280, 720): [1, 4, 8], (1920, 1080): [8, 20]}
LENGTHS = [1, 5, 20]
# Of a comparison, for each run that was asked for; and the length of its film.
PAIRS, COMPARED_SECONDS = 2, 2


@dataclass
class Crop:
    """Within the displayed picture, whose size is `source`."""

    source: tuple
    left: int
    top: int
    width: int
    height: int

    def margins(self):
        width, height = self.source
        return ["--left", str(self.left), "--right", str(width - self.left - self.width),
                "--top", str(self.top), "--bottom", str(height - self.top - self.height)]  # fmt: skip

    def filters(self, is_turned):
        if not is_turned:
            return f"crop={self.width}:{self.height}:{self.left}:{self.top}"
        # What is displayed after a quarter turn to the right, in the stored frame.
        top = self.source[0] - self.left - self.width
        return f"crop={self.height}:{self.width}:{self.top}:{top},transpose=clock"


class VideoBenchmarks:
    def __init__(self, binaries, runs, folder, kept):
        self.binaries, self.runs, self.folder = binaries, runs, folder
        self.ffmpeg, self.ffprobe = tool("ffmpeg"), tool("ffprobe")
        self.films = Films(binaries, kept)
        self.section = Section(
            "Films",
            f"{DESCRIPTION} Both sides of a ratio have the same encoder, preset, rate control, key "
            "frames and threads, copy the sound, and put the header in front; they run at the "
            f"same time, over {COMPARED_SECONDS} seconds of film. Their ratios and times are medians of "
            f"{PAIRS * runs} such pairs, memory is the highest of them.",
        )
        version = output_of(self.ffmpeg, "-version").splitlines()[0]
        self.program = version.split(" Copyright")[0]
        major = re.search(r"version n?(\d+)\.(\d+)", version)
        is_old = major and (int(major[1]), int(major[2])) < (5, 1)
        self.passthrough = ["-vsync" if is_old else "-fps_mode", "passthrough"]

    def encoder_options(self, codec, width, height, mbps, preset=None):
        """What crop-once opens its encoder with, as arguments of the ffmpeg command."""
        report = json.loads(output_of(self.binaries / "print_encoder_options", codec, str(width),
                                      str(height), str(FRAME_RATE), str(mbps)))
        arguments = ["-c:v", report["encoder"]]
        for name, value in report["options"]:
            arguments += [f"-{name}", preset if preset and name == "preset" else value]
        arguments += [
            "-b:v", str(report["averageRate"]), "-maxrate", str(report["maxRate"]),
            "-bufsize", str(report["bufferSize"]), "-g", str(GROUP_FRAMES),
            "-force_key_frames", f"expr:gte(t,n_forced*{KEY_FRAME_SECONDS})",
        ]  # fmt: skip
        return arguments

    def ours(self, film, crop, codec, mbps, target="ours.mov"):
        return [self.binaries / "crop-once", film, target, *crop.margins(),
                "--codec", codec, "--mbps", str(mbps)]  # fmt: skip

    def theirs(self, film, crop, codec, mbps, is_turned):
        turned = ["-noautorotate"] if is_turned else []
        return [
            self.ffmpeg, "-y", "-nostdin", "-v", "error", *turned, "-i", film, "-map", "0:v", "-map",
            "0:a", "-vf", crop.filters(is_turned),
            *self.encoder_options(codec, crop.width, crop.height, mbps), "-c:a", "copy",
            "-movflags", "+faststart", *self.passthrough, "theirs.mov",
        ]  # fmt: skip

    def compare(self, name, film, crop, codec, mbps, bar, is_turned=False, is_odd=False):
        ours = self.ours(film, crop, codec, mbps)
        theirs = self.theirs(film, crop, codec, mbps, is_turned)
        our, their, times = compare(ours, theirs, PAIRS * self.runs, self.folder)
        for kind, ratio in (("wall", times.wall), ("processor", times.processor)):
            self.section.add(f"{name}, {kind} time of `ffmpeg`", f"≤ {bar:.2f}", f"{ratio:.3f}",
                             ratio <= bar)
        memory = our.peak_bytes / their.peak_bytes
        self.section.add(f"{name}, peak memory of `ffmpeg`", "≤ 1.25", f"{memory:.2f}",
                         memory <= 1.25)
        preset = theirs[theirs.index("-preset") + 1]
        self.section.details.append(
            f"{name}, {mbps} Mbit/s, {preset}: ours {described(our, self.folder / 'ours.mov')}; "
            f"`ffmpeg` {described(their, self.folder / 'theirs.mov')}."
        )
        self.check_same_film(is_odd)

    def check_same_film(self, is_odd):
        """A comparison counts only if both encoded the same pictures."""
        frames = [self.frame_sizes(self.folder / file) for file in ("ours.mov", "theirs.mov")]
        if len(frames[0]) != len(frames[1]):
            sys.exit("crop-once and ffmpeg made films of different length")
        # At odd offsets the crop of ffmpeg is a pixel off.
        if is_odd:
            return
        psnr, _ = self.likeness(self.folder / "ours.mov", self.folder / "theirs.mov")
        if psnr < 30:
            sys.exit(f"crop-once and ffmpeg made different pictures: {psnr} dB")

    def frame_sizes(self, film):
        listing = output_of(self.ffprobe, "-v", "error", "-select_streams", "v:0", "-show_entries",
                            "packet=size", "-of", "csv=p=0", film)
        return [int(size.rstrip(",")) for size in listing.split()]

    def likeness(self, film, reference):
        """PSNR in dB and SSIM of luma, of the stored frames: ffmpeg leaves the turn noted in its own."""
        # Both by the number of the frame: times are rounded differently.
        by_number = f"setpts=N/{FRAME_RATE}/TB"
        graph = (f"[0:v]{by_number},split[a][b];[1:v]{by_number},split[c][d];"
                 "[a][c]psnr;[b][d]ssim")
        report = subprocess.run(
            [self.ffmpeg, "-nostdin", "-noautorotate", "-i", film, "-noautorotate", "-i", reference,
             "-lavfi", graph, "-f", "null", "-"],
            capture_output=True, text=True,
        ).stderr  # fmt: skip
        found = re.search(r"PSNR y:(inf|[\d.]+)", report)
        if found is None:
            sys.exit(f"{film} and {reference} cannot be compared:\n{report}")
        psnr = found[1]
        return float(psnr), float(re.search(r"SSIM Y:([\d.]+)", report)[1])

    def memory_by_length(self, film, long):
        """Peak memory for a film and for one of four times its length."""
        crop = Crop((1920, 1080), 320, 180, 1280, 720)
        for codec, title in CODECS.items():
            short_run, long_run = (
                measure(self.ours(source, crop, codec, 4), self.folder) for source in (film, long)
            )
            ratio = long_run.peak_bytes / short_run.peak_bytes
            self.section.add(f"{title}, peak memory at four times the length", "≤ 1.05",
                             f"{ratio:.2f}", ratio <= 1.05)
            self.section.details.append(
                f"{title}, peak memory: {short_run.peak_bytes / MEBIBYTE:.0f} MiB, at four times the "
                f"length {long_run.peak_bytes / MEBIBYTE:.0f} MiB."
            )

    def real_time(self, film, seconds):
        """The whole picture in HEVC, decoding included."""
        whole = Crop((1920, 1080), 0, 0, 1920, 1080)
        (run,) = measure_in_turn([self.ours(film, whole, "hevc", 8)], min(self.runs, 3), self.folder)
        speed = seconds / run.wall
        self.section.add("1080p to HEVC, speed in terms of the film's", "> 1.00", f"{speed:.2f}",
                         speed > 1)

    def presets(self, film, width, height, seconds, mbps=8):
        """Speed and quality of the encoders alone, by the ffmpeg command."""
        self.section.tables += [
            f"Encoders at {width} × {height} and {mbps} Mbit/s, by the `ffmpeg` command: pixels for a "
            "second of one core, decoding taken off, and luma against the source.",
            "",
            "| Encoder | Preset | Mpixel/s per core | Frames/s on two cores | PSNR | SSIM |",
            "|---|---|---|---|---|---|",
        ]
        read = [self.ffmpeg, "-nostdin", "-v", "error", "-i", film, "-an"]
        decoding = measure([*read, "-f", "null", "-"], self.folder).processor
        for codec, encoder in (("h264", "libx264"), ("hevc", "libx265")):
            for preset in PRESETS[encoder]:
                options = self.encoder_options(codec, width, height, mbps, preset)
                run = measure([*read, *options, "-y", "preset.mov"], self.folder)
                frames = seconds * FRAME_RATE / (run.processor - decoding)
                psnr, ssim = self.likeness(self.folder / "preset.mov", film)
                self.section.tables.append(
                    f"| {encoder} | {preset} | {frames * width * height / 1e6:.0f} | "
                    f"{frames * 2:.0f} | {psnr:.2f} | {ssim:.4f} |"
                )
        self.section.tables.append("")

    def rates(self, films):
        """How far `crop-once` is off the rate that was asked for; by what kind of film each is."""
        columns = [f"{kind}, {length} s" for kind in films for length in LENGTHS]
        self.section.tables += [
            "Video rate of `crop-once` against the one asked for:",
            "",
            f"| Codec | Picture | Mbit/s | {' | '.join(columns)} |",
            "|---|---|---|" + "---|" * len(columns),
        ]
        worst = {(kind, length): 0.0 for kind in films for length in LENGTHS}
        for codec, title in CODECS.items():
            for (width, height), rates in RATES.items():
                for mbps in rates:
                    errors = {
                        (kind, length): self.rate_error(kind, film, length, codec, width, height, mbps)
                        for kind, film in films.items() for length in LENGTHS
                    }  # fmt: skip
                    for case, error in errors.items():
                        worst[case] = max(worst[case], abs(error))
                    cells = " | ".join(f"{error:+.1%}" for error in errors.values())
                    self.section.tables.append(
                        f"| {title} | {width} × {height} | {mbps} | {cells} |")
        self.section.tables.append("")
        for (kind, length), error in worst.items():
            bar = 0.10 if length < 5 else 0.05
            self.section.add(f"Rate of films {kind} of {length} s, farthest off", f"≤ {bar:.0%}",
                             f"{error:.1%}", error <= bar)

    def rate_error(self, kind, film, length, codec, width, height, mbps):
        source = self.films.shortened(f"rate-{kind.replace(' ', '-')}-{length}.mov", film, length)
        crop = Crop((1920, 1080), (1920 - width) // 2, (1080 - height) // 2, width, height)
        measure(self.ours(source, crop, codec, mbps, "rate.mov"), self.folder)
        sizes = self.frame_sizes(self.folder / "rate.mov")
        return sum(sizes) * 8 / (len(sizes) / FRAME_RATE) / (mbps * 1e6) - 1

    def run(self):
        seconds = 6
        film = self.films.make("film-1080.mov", 1920, 1080, seconds)
        large = self.films.make("film-2160.mov", 3840, 2160, 4)
        slow = self.films.make("film-slow-start.mov", 1920, 1080, max(LENGTHS), fade=True)
        part = self.films.shortened("film-1080-part.mov", film, COMPARED_SECONDS)
        large_part = self.films.shortened("film-2160-part.mov", large, COMPARED_SECONDS)
        turned = self.films.turned("film-turned-part.mov", part)
        long = self.films.repeated("long.mov", film, 4)
        inner = Crop((1920, 1080), 320, 180, 1280, 720)
        odd = Crop((1920, 1080), 321, 181, 1280, 720)
        upright = Crop((1080, 1920), 180, 320, 720, 1280)
        # First, as it alone has nothing beside it that a busy machine slows as well.
        self.real_time(film, seconds)
        self.compare("1080p to 720p, H.264", part, inner, "h264", 4, 1.00)
        self.compare("1080p to 720p, HEVC", part, inner, "hevc", 4, 1.00)
        self.compare("4K to 1440p, H.264", large_part, Crop((3840, 2160), 640, 360, 2560, 1440), "h264",
                     12, 1.00)
        self.compare("1080p at odd offsets, H.264", part, odd, "h264", 4, 1.03, is_odd=True)
        self.compare("1080p after a quarter turn, H.264", turned, upright, "h264", 4, 1.03,
                     is_turned=True)
        self.memory_by_length(film, long)
        self.presets(film, 1920, 1080, seconds)
        self.rates({"from black": slow, "in full light": long})
        self.section.machine.append(self.program)
