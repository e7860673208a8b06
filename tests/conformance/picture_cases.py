"""The picture: every format, coding, container and orientation shows exactly the chosen pixels."""

import fractions

import quicktime
from bench import Case, Margins
from look import check_pictures
from pattern import ODD, ORIENTATIONS, Film, View
from sources import FFV1, H264, HEVC, hevc_sited, make_film

EVEN = Margins(32, 18, 12, 8)
NONE = Margins()
# Sources that are compressed with loss themselves: the values are what ffmpeg's encoder leaves.
LOSSY = 38.0


def picture(name, file, options, pixel_format="yuv420p", margins=ODD, least=None, codec="h264", orientation="upright",
            file_format=None, frames=8, **kind):
    """A case of a film in one file. `least` is the least luma and chroma PSNR of lossy sources."""
    def run(bench):
        film = Film(frames, pixel_format, **kind)
        view = View(film, margins, orientation)
        source = make_film(bench.path(file), film, *options, pixel_format=file_format)
        if orientation != "upright":
            quicktime.change(source, quicktime.set_matrix(0, view.matrix, view.translation))
        bench.cropped(source, margins, codec=codec)
        return check_pictures(bench.destination, view, range(frames), *((least, least) if least else ()))
    return Case("Picture", name, run)


def turned_without_translation(bench):
    """Writers leave the translation out; the picture then lies at negative coordinates."""
    film = Film()
    view = View(film, ODD, "turned by 90°")
    source = make_film(bench.path("in.mov"), film, *H264)
    quicktime.change(source, quicktime.set_matrix(0, view.matrix, (0, 0)))
    bench.cropped(source, ODD)
    return check_pictures(bench.destination, view, range(film.frames))


def smallest(bench):
    """Two pixels by two, in the barcode's middle."""
    film = Film()
    source = make_film(bench.path("in.mov"), film, *H264)
    movie = bench.cropped(source, Margins(99, 67, 99, 67))
    width, height = movie.video.entry_size
    return f"{width} × {height}"


def cases():
    for offset, margins in (("even offsets", EVEN), ("odd offsets", ODD), ("odd left", Margins(31, 18, 13, 8)),
                            ("odd top", Margins(32, 17, 12, 9)), ("uncropped", NONE)):
        yield picture(f"H.264 4:2:0, {offset}", "in.mov", H264, margins=margins)
    yield picture("H.264 4:2:0, odd offsets, to HEVC", "in.mov", H264, codec="hevc")
    for orientation in list(ORIENTATIONS)[1:]:
        yield picture(f"H.264 4:2:0, {orientation}", "in.mov", H264, orientation=orientation)
    yield Case("Picture", "H.264 4:2:0, turned by 90° without translation", turned_without_translation)
    yield picture("H.264 4:2:2, turned by 270°", "in.mov", H264, "yuv422p", orientation="turned by 270°")
    yield picture("HEVC 4:4:4 10 bit, mirrored", "in.mov", (*HEVC, "-tag:v", "hvc1"), "yuv444p10le", orientation="mirrored")

    yield picture("H.264 4:2:0 full range", "in.mp4", H264, full=True)
    for pixel_format in ("yuv422p", "yuv444p", "yuv420p10le", "yuv422p10le", "yuv444p10le"):
        yield picture(f"H.264 {pixel_format}", "in.mov", H264, pixel_format)
    yield picture("H.264 4:2:2 10 bit full range", "in.mov", H264, "yuv422p10le", full=True)
    for pixel_format in ("yuv420p", "yuv422p", "yuv420p10le", "yuv420p12le", "yuv422p12le", "yuv444p12le"):
        yield picture(f"HEVC {pixel_format}", "in.mp4", HEVC, pixel_format)
    for siting in ("center", "topleft"):
        yield picture(f"HEVC 4:2:0 sited {siting}", "in.mkv", hevc_sited(siting), siting=siting)
        yield picture(f"HEVC 4:2:0 sited {siting}, even offsets", "in.mkv", hevc_sited(siting), siting=siting, margins=EVEN)
    yield picture("RGB by FFV1", "in.mkv", FFV1, "gbrp", file_format="gbrp")
    yield picture("RGB by H.264", "in.mov", ("-c:v", "libx264rgb", "-qp", "0"), "gbrp", file_format="rgb24")
    yield picture("RGB by QuickTime Animation", "in.mov", ("-c:v", "qtrle"), "gbrp", file_format="rgb24")
    yield picture("RGB with alpha by PNG", "in.mov", ("-c:v", "png"), "gbrp", file_format="rgba")
    for shape in (fractions.Fraction(3, 2), fractions.Fraction(4, 5)):
        yield picture(f"H.264, pixels {shape.numerator}:{shape.denominator}", "in.mov", H264, aspect=shape,
                      margins=Margins(21, 17, 13 if shape > 1 else 11, 9), least=42.0)

    # Codecs and containers.
    yield picture("FFV1 4:2:0 10 bit in MKV", "in.mkv", FFV1, "yuv420p10le")
    yield picture("FFV1 4:2:2 12 bit in MKV", "in.mkv", FFV1, "yuv422p12le")
    yield picture("HuffYUV 4:2:2 in AVI", "in.avi", ("-c:v", "huffyuv"), "yuv422p")
    yield picture("Ut Video 4:2:0 in AVI", "in.avi", ("-c:v", "utvideo"))
    yield picture("uncompressed 4:2:0 in AVI", "in.avi", ("-c:v", "rawvideo"))
    yield picture("uncompressed 4:2:2 packed in MOV", "in.mov", ("-c:v", "rawvideo"), "yuv422p", file_format="uyvy422")
    yield picture("uncompressed 4:2:2 10 bit in MOV", "in.mov", ("-c:v", "v210"), "yuv422p10le")
    yield picture("ProRes 4:2:2", "in.mov", ("-c:v", "prores_ks", "-profile:v", "3", "-q:v", "1"), "yuv422p10le", least=LOSSY)
    yield picture("ProRes 4:4:4", "in.mov", ("-c:v", "prores_ks", "-profile:v", "4", "-q:v", "1"), "yuv444p10le", least=LOSSY)
    yield picture("Motion JPEG 4:2:0 in MOV", "in.mov", ("-c:v", "mjpeg", "-q:v", "1"), "yuvj420p", siting="center", least=LOSSY)
    yield picture("Motion JPEG 4:2:2 in AVI", "in.avi", ("-c:v", "mjpeg", "-q:v", "1"), "yuvj422p", least=LOSSY)
    yield picture("MPEG-4 in AVI", "in.avi", ("-c:v", "mpeg4", "-q:v", "1"), least=LOSSY)
    yield picture("MPEG-4 in M4V", "in.m4v", ("-c:v", "mpeg4", "-q:v", "1"), least=LOSSY)
    yield picture("MPEG-2 in MPEG-TS", "in.ts", ("-c:v", "mpeg2video", "-q:v", "1"), least=LOSSY)
    yield picture("H.264 in MPEG-TS", "in.ts", H264)
    yield picture("H.264 in MKV", "in.mkv", H264)
    yield picture("H.264 in M4V", "in.m4v", H264)
    yield picture("H.264 in 3GP", "in.3gp", H264)
    yield picture("VP9 4:2:0 in WebM", "in.webm", ("-c:v", "libvpx-vp9", "-lossless", "1", "-cpu-used", "8"))
    yield picture("VP9 4:4:4 in MKV", "in.mkv", ("-c:v", "libvpx-vp9", "-lossless", "1", "-cpu-used", "8"), "yuv444p")
    yield Case("Picture", "smallest crop", smallest)
