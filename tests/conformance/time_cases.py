"""Time: every shown frame once, at its own time, for its own time; edits obeyed; key frames often enough."""

import fractions

import quicktime
from bench import Case, check_keys, ffmpeg, probe
from look import check_like, check_pictures, check_times
from pattern import ODD, Film, View
from sources import H264, PLAIN, REORDERED, make_film

UNEVEN = [40, 41, 17, 300, 1, 99, 60, 33, 34, 33, 250, 12, 40, 40, 7, 505, 66, 67, 66, 20, 20, 20, 100, 129]
# Seconds between the frames of some of these are more than a key frame's.
SLOW = [600, 600, 900, 1500, 30, 30, 2400, 60, 60, 60, 1199, 1, 600, 600, 300, 900]


def film_case(name, options, frames, *edits, rate="25", codec="h264", file="in.mov"):
    """A QuickTime film with changes of its header; its tables then tell what must be shown."""
    def run(bench):
        film = Film(frames)
        source = make_film(bench.path(file), film, *options, rate=rate)
        quicktime.change(source, *edits)
        movie = bench.cropped(source, ODD, codec=codec)
        words = check_like(bench.destination, movie, quicktime.Movie.read(source), View(film, ODD))
        return f"{words}, key frames {float(check_keys(movie)):.2f} s apart at most"
    return Case("Time", name, run)


def remuxed(name, file, *options, durations=None, rate="25", audio=False):
    """Other containers: times are those that ffprobe tells of the source, from the first of all packets on."""
    def run(bench):
        film = Film(24)
        sound = ("-f", "lavfi", "-i", "sine=440:duration=0.9") if audio else ()
        made = make_film(bench.path("made.mov"), film, *options, rate=rate, inputs=sound)
        if durations:
            quicktime.change(made, quicktime.set_durations(0, 1000, durations))
        source = bench.path(file)
        ffmpeg("-i", made, "-map", "0", "-c:v", "copy", "-c:a", "mp2", source)
        told = probe(source, "-show_streams", "-show_frames", "-select_streams", "v", "-show_entries",
                     "frame=best_effort_timestamp:stream=time_base")
        base = fractions.Fraction(told["streams"][0]["time_base"])
        first = min(fractions.Fraction(packet.get("pts_time") or packet.get("dts_time")) for packet in
                    probe(source, "-show_packets", "-show_entries", "packet=pts_time,dts_time")["packets"])
        starts = [frame["best_effort_timestamp"] * base - first for frame in told["frames"]]
        starts = [fractions.Fraction(round(start / base)) * base for start in starts]
        movie = bench.cropped(source, ODD)
        check_pictures(bench.destination, View(film, ODD), range(24))
        return check_times(bench.destination, movie, list(zip(starts, starts[1:] + [None])),
                           fractions.Fraction(probe(source, "-show_format")["format"]["duration"]), 1000, base.denominator)
    return Case("Time", name, run)


def cases():
    yield film_case("24000/1001 frames a second, reordered", REORDERED, 50, rate="24000/1001")
    yield film_case("24000/1001 frames a second, to HEVC", REORDERED, 50, rate="24000/1001", codec="hevc")
    yield film_case("30 frames a second, one group of 150", (*REORDERED, "-g", "300"), 150, rate="30")
    yield film_case("30 frames a second, one group of 150, to HEVC", H264, 150, rate="30", codec="hevc")
    yield film_case("60000/1001 frames a second in MP4", REORDERED, 60, rate="60000/1001", file="in.mp4")
    for codec in ("h264", "hevc"):
        yield film_case(f"uneven frames, to {codec}", PLAIN, 24, quicktime.set_durations(0, 1000, UNEVEN), codec=codec)
        yield film_case(f"slow and uneven frames, to {codec}", PLAIN, 16, quicktime.set_durations(0, 600, SLOW), codec=codec)
    yield film_case("uneven frames, 90000 ticks", PLAIN, 24,
                    quicktime.set_movie_timescale(90000), quicktime.set_durations(0, 90000, [d * 89 + 7 for d in UNEVEN]))
    yield film_case("movie of 600 ticks", REORDERED, 20, quicktime.set_movie_timescale(600))
    yield film_case("movie of 44100 ticks, 30000/1001 frames a second", REORDERED, 31,
                    quicktime.set_movie_timescale(44100), rate="30000/1001")
    yield film_case("movie of 601 ticks", REORDERED, 20, quicktime.set_movie_timescale(601))
    yield film_case("last frame of 4 s", PLAIN, 10, quicktime.set_durations(0, 1000, [40] * 9 + [4000]))
    yield film_case("one frame of 3 s", PLAIN, 1, quicktime.set_durations(0, 600, [1800]))
    # 25 frames a second make 12800 ticks a second and 512 a frame; B-frames start at 1024.
    yield film_case("begins after half a second", PLAIN, 12, quicktime.set_edits(0, [(500, -1), (480, 0)]))
    yield film_case("begins after half a second, reordered", REORDERED, 30, quicktime.set_edits(0, [(500, -1), (1200, 1024)]))
    yield film_case("begins within a group", REORDERED, 30, quicktime.set_edits(0, [(720, 1024 + 7 * 512)]))
    yield film_case("ends early", REORDERED, 30, quicktime.set_edits(0, [(600, 1024)]))
    yield film_case("begins and ends within a frame", REORDERED, 30, quicktime.set_edits(0, [(725, 1024 + 7 * 512 + 256)]))
    yield film_case("several edits", REORDERED, 40,
                    quicktime.set_edits(0, [(400, 1024), (320, 1024 + 15 * 512), (480, 1024 + 28 * 512)]))
    yield film_case("several edits with a pause", REORDERED, 40,
                    quicktime.set_edits(0, [(400, 1024), (240, -1), (480, 1024 + 28 * 512)]))
    yield film_case("overlapping edits", REORDERED, 40, quicktime.set_edits(0, [(800, 1024), (1000, 1024 + 15 * 512)]))
    yield film_case("edits in reverse", REORDERED, 40, quicktime.set_edits(0, [(400, 1024 + 26 * 512), (600, 1024 + 2 * 512)]))
    yield film_case("several edits within frames", REORDERED, 40,
                    quicktime.set_edits(0, [(410, 1024), (315, 1024 + 15 * 512 + 128), (480, 1024 + 28 * 512)]))
    yield remuxed("MKV, uneven", "in.mkv", *PLAIN, durations=UNEVEN)
    yield remuxed("MKV, reordered", "in.mkv", *REORDERED)
    yield remuxed("AVI", "in.avi", *PLAIN)
    yield remuxed("MPEG-TS, begins anywhere", "in.ts", *REORDERED)
    yield remuxed("MPEG-TS with sound", "in.ts", *REORDERED, audio=True)
