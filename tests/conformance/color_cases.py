"""Colour: the source's tags in stream and container, on which ffprobe, exiftool and mediainfo agree; HDR."""

import json
import struct

import quicktime
from bench import Case, call, equal, ffmpeg, probe, require, streams
from look import check_pictures
from pattern import ODD, Film, View
from sources import H264, make_film

# Names of FFmpeg's options, code points of ITU-T H.273, and mediainfo's words for primaries, transfer and matrix.
PRIMARIES = {"bt709": (1, "BT.709"), "bt470bg": (5, "BT.601 PAL"), "smpte170m": (6, "BT.601 NTSC"), "bt2020": (9, "BT.2020"),
             "smpte432": (12, "Display P3")}
TRANSFERS = {"bt709": (1, "BT.709"), "smpte170m": (6, "BT.601"), "iec61966-2-1": (13, "sRGB/sYCC"),
             "bt2020-10": (14, "BT.2020 (10-bit)"), "smpte2084": (16, "PQ"), "arib-std-b67": (18, "HLG")}
MATRICES = {"bt709": (1, "BT.709"), "bt470bg": (5, "BT.470 System B/G"), "smpte170m": (6, "BT.601"),
            "bt2020nc": (9, "BT.2020 non-constant")}
BT709 = ("bt709", "bt709", "bt709")
DISPLAY = "G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,50)"
PQ_LINE = "HDR video requires HEVC. Select HEVC to preserve the video's dynamic range."


def options(tags):
    names = zip(("-color_primaries", "-color_trc", "-colorspace"), tags)
    return tuple(word for name, value in names if value for word in (name, value))


def check_tags(path, movie, tags, codec):
    """The same in the container, in the stream, and in what the tools read from them."""
    primaries, transfer, matrix = PRIMARIES[tags[0]], TRANSFERS[tags[1]], MATRICES[tags[2]]
    numbers = (primaries[0], transfer[0], matrix[0])
    equal(movie.video.extensions[b"colr"][:10], b"nclc" + struct.pack(">3H", *numbers), "colr")
    fields = ("color_primaries", "color_transfer", "color_space")
    bare = call("ffmpeg", "-v", "error", "-i", path, "-map", "0:v", "-c", "copy", "-f", codec, "-")
    stream = json.loads(call("ffprobe", "-v", "error", "-of", "json", "-show_streams", "-f", codec, "-i", "-",
                             input=bare))["streams"][0]
    for place, found in (("container", streams(path, "v")[0]), ("stream", stream)):
        equal(tuple(found.get(field) for field in fields), tags, f"ffprobe on the {place}")
        equal(found.get("color_range"), "tv", f"range in the {place}")
    exif = json.loads(call("exiftool", "-j", "-n", "-ColorPrimaries", "-TransferCharacteristics", "-MatrixCoefficients", path))[0]
    equal(tuple(exif.get(n) for n in ("ColorPrimaries", "TransferCharacteristics", "MatrixCoefficients")), numbers, "exiftool")
    info = media_info(path)
    equal(tuple(info.get(n) for n in ("colour_primaries", "transfer_characteristics", "matrix_coefficients")),
          (primaries[1], transfer[1], matrix[1]), "mediainfo")
    for name in ("colour_primaries", "transfer_characteristics", "matrix_coefficients"):
        # "HLG / HLG" where the stream says it twice.
        in_stream = info.get(f"{name}_Original", info[name]).split(" / ")
        require(set(in_stream) == {info[name]}, f"mediainfo finds {info[name]} in the container, {in_stream} in the stream")
    return " / ".join(tags)


def media_info(path, kind="Video"):
    tracks = json.loads(call("mediainfo", "--Output=JSON", path))["media"]["track"]
    return next(track for track in tracks if track["@type"] == kind)


def tagged(name, tags, codec="h264", expected=None, pixel_format="yuv420p", file="in.mov", full=False):
    def run(bench):
        film = Film(4, pixel_format, full)
        source = make_film(bench.path(file), film, *H264, tags=tags)
        movie = bench.cropped(source, ODD, codec=codec)
        words = check_tags(bench.destination, movie, expected or tags, codec)
        return f"{words}; {check_pictures(bench.destination, View(film, ODD), range(4))}"
    return Case("Colour", name, run)


def hdr_source(bench, film, file, transfer, primaries="bt2020", matrix="bt2020nc", static=True):
    light = f":master-display={DISPLAY}:max-cll=1000,400" if static else ""
    named = f":colorprim={primaries}" if primaries else ""
    named += f":colormatrix={matrix}" if matrix else ""
    return make_film(bench.path(file), film, "-c:v", "libx265", "-preset", "ultrafast",
                     "-x265-params", f"log-level=error:lossless=1:hdr10=1:repeat-headers=1{named}:transfer={transfer}{light}",
                     *(("-tag:v", "hvc1") if file.endswith("mov") else ()), tags=(primaries, transfer, matrix))


def check_hdr_form(path, movie):
    """Main 10 with its parameter sets in the sample description alone, as hvc1 has it."""
    stream = streams(path, "v")[0]
    equal((stream["profile"], stream["pix_fmt"], movie.video.entry), ("Main 10", "yuv420p10le", b"hvc1"), "form")
    data = path.read_bytes()
    for packet in probe(path, "-show_packets", "-select_streams", "v", "-show_entries", "packet=pos,size")["packets"]:
        at, end = int(packet["pos"]), int(packet["pos"]) + int(packet["size"])
        while at < end:
            kind = data[at + 4] >> 1 & 63
            require(kind not in (32, 33, 34), "parameter sets stand among the pictures")
            at += 4 + int.from_bytes(data[at : at + 4], "big")


def check_light(path, movie):
    """Mastering display and content light, in container and stream, as the source has them."""
    equal(movie.video.extensions.get(b"mdcv"), struct.pack(">8H2I", 13250, 34500, 7500, 3000, 34000, 16000, 15635, 16450,
                                                          10000000, 50), "mdcv")
    equal(movie.video.extensions.get(b"clli"), struct.pack(">HH", 1000, 400), "clli")
    frame = probe(path, "-show_frames", "-select_streams", "v", "-read_intervals", "%+#1")["frames"][0]
    data = {item["side_data_type"]: item for item in frame.get("side_data_list", [])}
    light = data.get("Content light level metadata", {})
    equal((light.get("max_content"), light.get("max_average")), (1000, 400), "light in the stream")
    shown = data.get("Mastering display metadata", {})
    equal((shown.get("red_x"), shown.get("min_luminance")), ("34000/50000", "50/10000"), "display in the stream")
    info = media_info(path)
    equal(info.get("MasteringDisplay_Luminance"), "min: 0.0050 cd/m2, max: 1000 cd/m2", "mediainfo")
    equal((info.get("MaxCLL"), info.get("MaxFALL")), ("1000 cd/m2", "400 cd/m2"), "mediainfo")


def hdr(name, file, transfer, static=True, untagged=False, margins=ODD):
    def run(bench):
        film = Film(8, "yuv420p10le")
        primaries, matrix = (None, None) if untagged else ("bt2020", "bt2020nc")
        source = hdr_source(bench, film, file, transfer, primaries, matrix, static)
        movie = bench.cropped(source, margins, codec="hevc")
        words = check_tags(bench.destination, movie, ("bt2020", transfer, "bt2020nc"), "hevc")
        check_hdr_form(bench.destination, movie)
        if static:
            check_light(bench.destination, movie)
        else:
            require(b"mdcv" not in movie.video.extensions, "a mastering display was invented")
        return f"{words}; {check_pictures(bench.destination, View(film, margins), range(8))}"
    return Case("Colour", name, run)


def hdr_to_h264(transfer):
    def run(bench):
        return bench.refused(hdr_source(bench, Film(2, "yuv420p10le"), "in.mov", transfer), PQ_LINE, ODD, codec="h264")
    return run


def in_container_alone(bench):
    """Tags of the colr box count where the stream has none."""
    film = Film(4)
    source = make_film(bench.path("in.mov"), film, *H264, tags=("smpte170m",) * 3)
    bare = bench.path("bare.mov")
    ffmpeg("-i", source, "-c", "copy", "-bsf:v",
           "h264_metadata=colour_primaries=2:transfer_characteristics=2:matrix_coefficients=2", *options(("smpte170m",) * 3), bare)
    require(b"colr" in quicktime.Movie.read(bare).video.extensions, "the source has no colr")
    movie = bench.cropped(bare, ODD)
    return check_tags(bench.destination, movie, ("smpte170m",) * 3, "h264")


def cases():
    for codec in ("h264", "hevc"):
        yield tagged(f"none, to {codec}", (None, None, None), codec, BT709)
        yield tagged(f"BT.709, to {codec}", BT709, codec)
        yield tagged(f"NTSC, to {codec}", ("smpte170m", "smpte170m", "smpte170m"), codec)
    yield tagged("PAL", ("bt470bg", "bt709", "bt470bg"))
    yield tagged("Display P3 with sRGB curve", ("smpte432", "iec61966-2-1", "bt709"), "hevc")
    yield tagged("BT.2020 SDR, 10 bit", ("bt2020", "bt2020-10", "bt2020nc"), "hevc", pixel_format="yuv420p10le")
    yield tagged("BT.709 with NTSC matrix", ("bt709", "bt709", "smpte170m"))
    yield tagged("full range", BT709, full=True)
    yield tagged("NTSC in MKV", ("smpte170m", "smpte170m", "smpte170m"), file="in.mkv")
    yield Case("Colour", "tags in the container alone", in_container_alone)
    yield hdr("HDR10 in MOV", "in.mov", "smpte2084")
    yield hdr("HDR10 in MKV", "in.mkv", "smpte2084")
    yield hdr("PQ without static metadata", "in.mov", "smpte2084", static=False)
    yield hdr("HLG", "in.mov", "arib-std-b67", static=False)
    yield hdr("HLG without primaries and matrix", "in.mkv", "arib-std-b67", static=False, untagged=True)
    yield Case("Colour", "PQ to H.264", hdr_to_h264("smpte2084"))
    yield Case("Colour", "HLG to H.264", hdr_to_h264("arib-std-b67"))
