"""Sound: packets and decoded samples as they were, at their times; languages, records and enabled state kept;
formats that QuickTime movies cannot hold refused."""

import json
import fractions

import quicktime
from bench import Case, call, equal, ffmpeg, probe, require, streams
from pattern import ODD, Film
from sources import PLAIN, REORDERED, make_film

REFUSAL = "The original audio cannot be copied into a MOV file."
NAME = quicktime.pack(b"name", b"Commentary")
TRACK_META = quicktime.meta_items((b"com.example.note", 1, "Übersetzung".encode()))


def tone(frequency=440, seconds=1.3, rate=44100, channels=1):
    """An input of ffmpeg: a tone that slides, so that no two packets are alike."""
    wave = "|".join(f"0.4*sin({frequency + 90 * c}*2*PI*t*(1+t/5))" for c in range(channels))
    return ("-f", "lavfi", "-i", f"aevalsrc={wave}:s={rate}:d={seconds}")


def packets(path, number):
    found = probe(path, "-show_packets", "-show_data_hash", "sha256", "-select_streams", f"a:{number}", "-show_entries",
                  "packet=pts_time,duration_time,size,data_hash")["packets"]
    return [(p["data_hash"], p["size"]) for p in found], [p.get("pts_time") for p in found]


def samples(path, number):
    """(start, duration, hash) of each decoded frame."""
    frames = call("ffmpeg", "-v", "error", "-i", path, "-map", f"0:a:{number}", "-f", "framehash", "-").decode()
    rows = [line.split(",") for line in frames.splitlines() if not line.startswith("#")]
    return [tuple(row[column].strip() for column in (2, 3, 5)) for row in rows]


def first_samples(path, number):
    """The decoded samples of the first packet that has any."""
    return call("ffmpeg", "-v", "error", "-i", path, "-map", f"0:a:{number}", "-frames:a", "1", "-f", "f32le", "-")


def like(source):
    """The source itself, or, where every packet has a header that files do without, its packets in a file."""
    if source.suffix != ".ts":
        return source
    bare = source.with_name("bare.mkv")
    ffmpeg("-i", source, "-map", "0:a", "-c", "copy", bare)
    return bare


def check_sound(source, path, number):
    """One track against the source's; times of other containers count in ticks of their own, a millisecond or less."""
    exact = source.suffix in (".mov", ".mp4", ".3gp")
    (ours, our_times), (theirs, their_times) = packets(path, number), packets(like(source), number)
    require(theirs, "the source has no sound")
    equal(len(ours), len(theirs), "packets")
    require(ours == theirs, "packets differ")
    if exact:
        require(our_times == their_times, f"times of packets: {our_times[:3]}, not {their_times[:3]}")
    else:
        their_times = packets(source, number)[1]
        start = fractions.Fraction(probe(source, "-show_format")["format"]["start_time"]) if source.suffix == ".ts" else 0
        known = [(fractions.Fraction(a), fractions.Fraction(b) - start) for a, b in zip(our_times, their_times) if b]
        worst = max((abs(a - b) for a, b in known), default=0)
        require(worst <= fractions.Fraction(1, 900), f"a packet is {float(worst) * 1000:.2f} ms from its time")
    our_frames, their_frames = samples(path, number), samples(source, number)
    rate = int(streams(path, f"a:{number}")[0]["sample_rate"])
    if not exact and int(our_frames[-1][1]) > int(their_frames[-1][1]):
        # Other containers tell how many samples of the last packet count; here the sample table does.
        last = fractions.Fraction(probe(path, "-show_packets", "-select_streams", f"a:{number}", "-show_entries",
                                        "packet=duration_time")["packets"][-1]["duration_time"])
        require(abs(last * rate - int(their_frames[-1][1])) < rate / 500, f"the last packet lasts {float(last)} s")
        our_frames[-1] = their_frames[-1]
    if not exact and our_times[0] and float(our_times[0]) < 0:
        # What lies before the start of other containers only prepares the decoder; here the edit leaves it out.
        hidden = int(their_frames[0][1]) - int(our_frames[0][1])
        require(abs(hidden + float(our_times[0]) * rate) < 1, f"{hidden} samples before the start are hidden")
        require(first_samples(source, number).endswith(first_samples(path, number)), "samples at the start differ")
        our_frames[0] = their_frames[0]
    require([frame[2] for frame in our_frames] == [frame[2] for frame in their_frames], "decoded samples differ")
    require(not exact or our_frames == their_frames, "decoded samples have other times")
    return f"{len(ours)} packets and their samples equal"


def kept(name, file, *codec, rate=44100, channels=2):
    """A codec in a container."""
    def run(bench):
        source = make_film(bench.path(file), Film(8), *PLAIN, inputs=tone(rate=rate, channels=channels),
                           after=("-strict", "-2", "-c:a", *codec))
        bench.cropped(source, ODD)
        return check_sound(source, bench.destination, 0)
    return Case("Sound", f"{name} in {file[3:].upper()}", run)


def turned_away(name, file, *codec, rate=48000):
    def run(bench):
        source = make_film(bench.path(file), Film(4), *PLAIN, inputs=tone(rate=rate, seconds=0.3),
                           after=("-strict", "-2", "-c:a", *codec))
        return bench.refused(source, REFUSAL, ODD)
    return Case("Sound", f"{name} in {file[3:].upper()}", run)


def three_tracks(bench):
    """Languages, tags, records and enabled state of each track, as the tools read them too."""
    source = make_film(bench.path("in.mov"), Film(30), *REORDERED, inputs=(*tone(300), *tone(500), *tone(700)),
                       after=("-map", "0:v", "-map", "1:a", "-map", "2:a", "-map", "3:a", "-c:a", "aac"))
    quicktime.change(source, quicktime.set_language(1, "eng", "en-GB"), quicktime.set_language(2, "ger", "de-AT"),
                     quicktime.set_language(3, "jpn"), quicktime.set_enabled(2, False), quicktime.set_enabled(3, False),
                     quicktime.put_in_track(2, b"udta", NAME), quicktime.put_in_track(3, b"meta", TRACK_META))
    movie = bench.cropped(source, ODD)
    tracks = movie.audio
    equal([track.language_code for track in tracks], ["eng", "ger", "jpn"], "languages")
    equal([track.extended_language for track in tracks], ["en-GB", "de-AT", None], "language tags")
    equal([track.enabled for track in tracks], [True, False, False], "enabled")
    users = [track.trak.get("udta") for track in tracks]
    equal([box and dict(quicktime.split(box.content)) for box in users], [None, {b"name": b"Commentary"}, None], "udta")
    metas = [track.trak.get("meta") for track in tracks]
    equal([box and quicktime.items_of(box.content) for box in metas],
          [None, None, [(b"com.example.note", 1, "Übersetzung".encode())]], "meta")
    told = streams(bench.destination, "a")
    equal([s["tags"].get("language") for s in told], ["eng", "ger", "jpn"], "ffprobe's languages")
    equal([s["disposition"]["default"] for s in told], [1, 0, 0], "ffprobe's enabled state")
    exif = json.loads(call("exiftool", "-j", "-G1", "-a", "-ee", "-MediaLanguageCode", bench.destination))[0]
    equal([exif.get(f"Track{n}:MediaLanguageCode") for n in (2, 3, 4)], ["eng", "ger", "jpn"], "exiftool's languages")
    info = json.loads(call("mediainfo", "--Output=JSON", bench.destination))["media"]["track"]
    sounds = [track for track in info if track["@type"] == "Audio"]
    equal([track.get("Language", "")[:2] for track in sounds], ["en", "de", "ja"], "mediainfo's languages")
    equal([track.get("Default") for track in sounds], ["Yes", "No", "No"], "mediainfo's enabled state")
    for number in range(3):
        check_sound(source, bench.destination, number)
    return "eng en-GB, ger de-AT off with udta, jpn off with meta: three tools agree; packets and samples equal"


def single_disabled(bench):
    source = make_film(bench.path("in.mov"), Film(12), *PLAIN, inputs=tone(), after=("-c:a", "aac"))
    quicktime.change(source, quicktime.set_enabled(1, False))
    movie = bench.cropped(source, ODD)
    equal([track.enabled for track in movie.tracks], [True, False], "enabled")
    equal(streams(bench.destination, "a")[0]["disposition"]["default"], 0, "ffprobe's enabled state")
    return "off; " + check_sound(source, bench.destination, 0)


def records_of_mp4(bench):
    """A full box there, a plain one here."""
    source = make_film(bench.path("in.mp4"), Film(12), *PLAIN, inputs=tone(), after=("-c:a", "aac"))
    quicktime.change(source, quicktime.put_in_track(1, b"meta", b"\0\0\0\0" + TRACK_META), quicktime.set_language(1, "fra", "fr-CA"))
    track = bench.cropped(source, ODD).audio[0]
    equal(track.trak.get("meta").content[4:8], b"hdlr", "form of meta")
    equal(quicktime.items_of(track.trak.get("meta").content)[0][0], b"com.example.note", "key")
    equal((track.language_code, track.extended_language), ("fra", "fr-CA"), "language")
    return check_sound(source, bench.destination, 0)


def edited(name, *edits, codec=("aac",), seconds=1.3, frames=30, video=PLAIN):
    """Edits of sound; the movie's length is that of its longest track."""
    def run(bench):
        source = make_film(bench.path("in.mov"), Film(frames), *video, inputs=tone(seconds=seconds), after=("-c:a", *codec))
        quicktime.change(source, *edits)
        movie, original = bench.cropped(source, ODD), quicktime.Movie.read(source)
        equal([(fractions.Fraction(d, movie.timescale), start) for d, start in movie.audio[0].edits],
              [(fractions.Fraction(d, original.timescale), start) for d, start in original.audio[0].edits], "edits")
        off = abs(movie.seconds - original.seconds)
        require(off <= fractions.Fraction(1, original.timescale), f"{movie.seconds} s, not {original.seconds} s")
        return f"{check_sound(source, bench.destination, 0)}, {float(movie.seconds):.3f} s"
    return Case("Sound", name, run)


def cases():
    for name, codec in (("AAC", "aac"), ("ALAC", "alac"), ("MP3", "libmp3lame"), ("MP2", "mp2"), ("AC-3", "ac3"),
                        ("E-AC-3", "eac3"), ("PCM 16 bit", "pcm_s16le"), ("PCM 24 bit", "pcm_s24le")):
        for file in ("in.mov", "in.mkv"):
            yield kept(name, file, codec, rate=48000)
    for name, codec in (("PCM 16 bit big-endian", "pcm_s16be"), ("PCM 24 bit big-endian", "pcm_s24be"),
                        ("PCM 32 bit", "pcm_s32le"), ("PCM float", "pcm_f32le"), ("PCM double", "pcm_f64be"),
                        ("PCM 8 bit signed", "pcm_s8"), ("PCM 8 bit unsigned", "pcm_u8"),
                        ("µ-law", "pcm_mulaw"), ("A-law", "pcm_alaw")):
        yield kept(name, "in.mov", codec, channels=1)
    yield kept("DTS", "in.mkv", "dca", rate=48000)
    yield kept("AAC", "in.mp4", "aac")
    yield kept("AAC", "in.ts", "aac", rate=48000)
    yield kept("AAC 5.1", "in.mov", "aac", rate=48000, channels=6)
    yield kept("AAC", "in.3gp", "aac", channels=1)
    yield kept("MP3", "in.avi", "libmp3lame")
    yield kept("PCM 16 bit", "in.avi", "pcm_s16le")
    yield kept("µ-law", "in.avi", "pcm_mulaw")
    yield kept("MP2", "in.ts", "mp2", rate=48000)

    yield turned_away("Opus", "in.mkv", "libopus")
    yield turned_away("Opus", "in.mp4", "libopus")
    yield turned_away("FLAC", "in.mkv", "flac")
    yield turned_away("FLAC", "in.mp4", "flac")
    yield turned_away("Vorbis", "in.mkv", "libvorbis")
    yield turned_away("TrueHD", "in.mkv", "truehd")
    yield turned_away("WavPack", "in.mkv", "wavpack")
    yield turned_away("TTA", "in.mkv", "tta")
    yield turned_away("WMA", "in.mkv", "wmav2")
    yield turned_away("WMA", "in.asf", "wmav2")
    yield turned_away("Speex", "in.mkv", "libspeex", rate=16000)
    yield turned_away("G.722", "in.mkv", "g722", rate=16000)
    yield turned_away("MS ADPCM", "in.avi", "adpcm_ms")

    yield Case("Sound", "three tracks of different languages", three_tracks)
    yield Case("Sound", "single disabled track", single_disabled)
    yield Case("Sound", "records of an MP4 track", records_of_mp4)
    yield edited("AAC with its usual edit")
    yield edited("longer than the pictures", seconds=2.4)
    yield edited("shorter than the pictures", seconds=0.4)
    # 44100 ticks a second; AAC begins 1024 samples before.
    yield edited("begins after the pictures", quicktime.set_edits(1, [(500, -1), (1200, 1024)]))
    yield edited("begins within a packet", quicktime.set_edits(1, [(1000, 1024 + 4711)]))
    yield edited("several edits", quicktime.set_edits(1, [(400, 1024), (500, 1024 + 30000)]))
    yield edited("overlapping edits", quicktime.set_edits(1, [(700, 1024), (600, 1024 + 10000)]))
    yield edited("PCM, several edits", quicktime.set_edits(1, [(400, 0), (500, 30000)]), codec=("pcm_s16le",))
    yield edited("movie of 600 ticks", quicktime.set_movie_timescale(600))
