"""The container: density records follow the crop; no record of the old frame, no other metadata and no other track
survives."""

import json
import struct

import quicktime
from bench import Case, call, equal, ffmpeg, probe, require
from look import check_pictures
from pattern import HEIGHT, ODD, WIDTH, Film, View
from sound_cases import tone
from sources import PLAIN, make_film

DENSITY = b"com.apple.quicktime.pixeldensity"


def record(*values):
    return (DENSITY, 30, struct.pack(f">{len(values)}I", *values))


def density(name, items, expected, margins=ODD, file="in.mov"):
    """`items` stand in the source's track, `expected` are the four numbers that must come out, or None."""
    def run(bench):
        source = make_film(bench.path(file), Film(4), *PLAIN)
        full = b"\0\0\0\0" if file.endswith("mp4") else b""
        quicktime.change(source, quicktime.put_in_track(0, b"meta", full + quicktime.meta_items(*items)),
                         quicktime.put_in_track(0, b"tapt", quicktime.clean_apertures(WIDTH, HEIGHT)))
        track = bench.cropped(source, margins).video
        meta = track.trak.get("meta")
        if expected is None:
            require(meta is None, "a record came out")
            return "no record"
        equal(quicktime.items_of(meta.content), [record(*expected)], "record")
        told = json.loads(call("exiftool", "-j", "-G3", "-a", "-ee", bench.destination))[0]
        values = [value for name, value in told.items() if name.lower().endswith("pixeldensity")]
        require(len(values) == 1, f"exiftool tells {values}")
        return " × ".join(map(str, expected[:2])) + " pixels for " + " × ".join(map(str, expected[2:])) + " points"
    return Case("Container", name, run)


def metadata_gone(bench):
    title = "A title that must not survive"
    source = make_film(bench.path("in.mov"), Film(4), *PLAIN, after=(
        "-metadata", f"title={title}", "-metadata", f"comment={title}", "-metadata:s:v", f"title={title}",
        "-metadata", "location=+48.2+016.3/", "-movflags", "use_metadata_tags"))
    quicktime.change(source, quicktime.put_in_track(0, b"udta", quicktime.pack(b"name", title.encode())),
                     quicktime.put_in_movie(b"meta", quicktime.meta_items((b"com.example.title", 1, title.encode()))))
    require(title.encode() in source.read_bytes(), "the source has no title")
    bench.cropped(source, ODD)
    data = bench.destination.read_bytes()
    require(title.encode() not in data and b"+48.2+016.3" not in data, "metadata survived")
    tags = probe(bench.destination, "-show_format")["format"].get("tags", {})
    equal(sorted(set(tags) - {"major_brand", "minor_version", "compatible_brands"}), [], "tags")
    return "none"


def other_tracks(bench):
    """Subtitles, timecode and a second film stay behind."""
    words = bench.path("words.srt")
    words.write_text("1\n00:00:00,000 --> 00:00:00,100\nWords\n", encoding="utf-8")
    source = make_film(bench.path("in.mov"), Film(8), *PLAIN,
                       inputs=(*tone(seconds=0.3), "-i", words, "-f", "lavfi", "-i", "testsrc2=s=320x240:d=0.3"),
                       after=("-map", "0:v", "-map", "1:a", "-map", "2:s", "-map", "3:v", "-c:a", "aac", "-c:s", "mov_text",
                              "-timecode", "01:00:00:00"))
    equal(len(quicktime.Movie.read(source).tracks), 6, "tracks of the source")
    movie = bench.cropped(source, ODD)
    equal([track.handler for track in movie.tracks], [b"vide", b"soun"], "tracks")
    return f"one film and one sound of six tracks; {check_pictures(bench.destination, View(Film(8), ODD), range(8))}"


def still_beside_film(order):
    """A picture that poses as a track is not the film."""
    def run(bench):
        film, still, source = bench.path("film.mov"), bench.path("still.mov"), bench.path("in.mov")
        make_film(film, Film(8), *PLAIN)
        ffmpeg("-f", "lavfi", "-i", "color=red:s=320x240:r=25:d=0.04", "-c:v", "mjpeg", still)
        inputs = (still, film) if order == "before" else (film, still)
        ffmpeg("-i", inputs[0], "-i", inputs[1], "-map", "0", "-map", "1", "-c", "copy", source)
        equal([len(track.samples) for track in quicktime.Movie.read(source).tracks], [1, 8] if order == "before" else [8, 1],
              "samples of the source")
        bench.cropped(source, ODD)
        return check_pictures(bench.destination, View(Film(8), ODD), range(8))
    return Case("Container", f"still {order} the film", run)


def cases():
    yield density("density of 2 beside other items", [(b"com.example.lens", 1, b"35 mm"), record(200, 136, 100, 68)],
                  (156, 110, 78, 55))
    yield density("density in MP4", [record(200, 136, 100, 68)], (156, 110, 78, 55), file="in.mp4")
    yield density("density of 1.5, rounded", [record(300, 204, 200, 136)], (156, 110, 104, 73))
    yield density("density, halves away from zero", [record(400, 400, 100, 100)], (156, 110, 39, 28))
    yield density("density, one point at least", [record(10000, 10000, 20, 20)], (156, 110, 1, 1))
    yield density("density of the first of two", [record(200, 136, 100, 68), record(200, 136, 50, 34)], (156, 110, 78, 55))
    yield density("density after a damaged one", [record(200, 136, 0, 68), record(200, 136, 100, 68)], (156, 110, 78, 55))
    yield density("density without width", [record(200, 136, 0, 68)], None)
    yield density("density cut short", [(DENSITY, 30, bytes(12))], None)
    yield density("no density but other items", [(b"com.example.lens", 1, b"35 mm")], None)
    yield Case("Container", "metadata of movie and track", metadata_gone)
    yield Case("Container", "other tracks", other_tracks)
    yield still_beside_film("before")
    yield still_beside_film("after")
