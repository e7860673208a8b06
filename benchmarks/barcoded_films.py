"""Films whose pictures bear their number, for the playback benchmarks; made with the ffmpeg command and kept."""

import random
from dataclasses import dataclass
from fractions import Fraction

BARS, BAR_WIDTH, BAR_HEIGHT = 12, 16, 16
# Some containers count in milliseconds: a seek stays this far from where a picture begins and ends.
MARGIN_MICROSECONDS = 1000

X264 = ("-c:v", "libx264", "-preset", "veryfast", "-crf", "22", "-bf", "3", "-sc_threshold", "0")
UNEVEN = "settb=1/1000,setpts='40*N+mod(N*7,11)*3-mod(N,2)*8'"


def grouped(frames):
    return ("-g", str(frames), "-keyint_min", str(frames))


def uneven_start(picture):
    """In seconds, as UNEVEN says; the gaps between pictures are from 20 to 69 milliseconds."""
    return Fraction(picture * 40 + picture * 7 % 11 * 3 - picture % 2 * 8, 1000)


@dataclass
class BarcodedFilm:
    title: str
    file: str
    options: tuple
    rate: int = 25
    size: tuple = (1280, 720)
    seconds: int = 20
    # Changes the times of the pictures.
    filter: str = ""
    pixels: str = "yuv420p"
    has_sound: bool = False

    def pictures(self):
        return self.rate * self.seconds

    def start(self, picture):
        """Seconds at which a picture begins."""
        return uneven_start(picture) if self.filter else Fraction(picture, self.rate)

    def random_seeks(self, count, seed):
        """Microseconds, and the number of the picture that is shown then."""
        source, seeks = random.Random(seed), []
        for _ in range(count):
            picture = source.randrange(self.pictures() - 1)
            start, end = (int(self.start(number) * 1_000_000) for number in (picture, picture + 1))
            seeks.append((source.randint(start + MARGIN_MICROSECONDS, end - MARGIN_MICROSECONDS), picture))
        return seeks

    def make(self, films, scene):
        """`scene` is a film of any length, over and over."""
        width, height = self.size
        bars = (f"nullsrc=s={BARS * BAR_WIDTH}x{BAR_HEIGHT}:r={self.rate},format=yuv420p,"
                f"geq=lum='if(mod(floor(N/pow(2,floor(X/{BAR_WIDTH}))),2),200,40)':cb=128:cr=128")
        graph = (f"[0:v]settb=1/{self.rate},setpts=N,scale={width}:{height}[scene];{bars}[bars];"
                 f"[scene][bars]overlay=0:0:shortest=1,trim=end_frame={self.pictures()}"
                 + (f",{self.filter}" if self.filter else "") + f",format={self.pixels}[out]")  # fmt: skip
        sound = ("-f", "lavfi", "-t", str(self.seconds), "-i", "anoisesrc=color=pink:amplitude=0.1")
        return films.convert(
            self.file, "-stream_loop", "-1", "-i", scene, *(sound if self.has_sound else ()),
            "-filter_complex", graph, "-map", "[out]",
            *(("-map", "1:a", "-c:a", "aac") if self.has_sound else ("-an",)),
            *(("-fps_mode", "vfr", "-enc_time_base", "1:1000") if self.filter else ("-r", str(self.rate))),
            *self.options,
        )  # fmt: skip


SOUGHT_FILMS = [
    BarcodedFilm("H.264, groups of 250, B pictures", "seek-h264.mp4", (*X264, *grouped(250))),
    BarcodedFilm("HEVC of 10 bits, groups of 100", "seek-hevc.mp4",
                 ("-c:v", "libx265", "-preset", "ultrafast", "-x265-params",
                  "log-level=none:keyint=100:min-keyint=100:scenecut=0:bframes=4:b-pyramid=1"),
                 pixels="yuv420p10le"),
    BarcodedFilm("H.264 of uneven times", "seek-uneven.mp4", (*X264, *grouped(100)), filter=UNEVEN),
    BarcodedFilm("VP9 in WebM", "seek-vp9.webm",
                 ("-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used", "8", "-b:v", "3M", "-g", "120",
                  "-row-mt", "1")),
    BarcodedFilm("H.264 in MPEG-TS", "seek-h264.ts", (*X264, *grouped(50))),
]  # fmt: skip


def played_film(seconds):
    return BarcodedFilm("1080p30 H.264 with sound", f"play-1080-{seconds}.mov", (*X264, *grouped(60)), rate=30,
                        size=(1920, 1080), seconds=seconds, has_sound=True)
