#!/usr/bin/env python3
"""Crops pictures of every kind with crop-once and with other tools, and compares the pixels.

Usage: run.py --bin DIRECTORY-OF-CROP-ONCE [--extra FOLDER] [--out TABLE.md]

The other tools are ImageMagick and, for HEIC, heif-convert. Sources are made here; --extra adds the
pictures of a folder. Prints a Markdown table and exits 1 when a row does not come out as told.
"""

import argparse
import array
import math
import pathlib
import random
import struct
import subprocess
import sys
import tempfile

LEFT, TOP, RIGHT, BOTTOM = 31, 17, 13, 9
WIDTH, HEIGHT = 203, 151
MULTIPLE = "Animated images and images with multiple pages are not supported."
UNREADABLE = "This image could not be read."
# Least PSNR in dB, at quality 1, where the picture must be compressed again.
LEAST_PSNR = 40.0


def call(*command, **options):
    return subprocess.run([str(c) for c in command], check=True, capture_output=True, **options).stdout


def convert(*arguments):
    return call("convert", *arguments)


def write_source(folder):
    """A picture with smooth parts, edges and noise: RGB and RGBA, 16 bits, as PAM."""
    noise = random.Random(7)
    for name, channels, kind in (("rgb", 3, "RGB"), ("rgba", 4, "RGB_ALPHA")):
        samples = array.array("H")
        for y in range(HEIGHT):
            for x in range(WIDTH):
                base = (x * 257 * 255 // WIDTH, y * 257 * 255 // HEIGHT, (x ^ y) % 256 * 257)
                samples.extend((v + noise.randrange(9001)) % 65536 for v in base)
                if channels == 4:
                    samples.append((x + y) * 65535 // (WIDTH + HEIGHT))
        samples.byteswap()
        header = f"P7\nWIDTH {WIDTH}\nHEIGHT {HEIGHT}\nDEPTH {channels}\nMAXVAL 65535\nTUPLTYPE {kind}\nENDHDR\n"
        (folder / f"{name}.pam").write_bytes(header.encode() + samples.tobytes())


def with_orientation(jpeg, value):
    """The JPEG with an EXIF segment that holds nothing but the orientation (EXIF 2.3, tag 0x0112)."""
    tiff = b"II*\0" + struct.pack("<IHHHIHHI", 8, 1, 0x0112, 3, 1, value, 0, 0)
    body = b"Exif\0\0" + tiff
    return jpeg[:2] + b"\xff\xe1" + struct.pack(">H", len(body) + 2) + body + jpeg[2:]


def box(kind, content):
    return struct.pack(">I", len(content) + 8) + kind + content


def boxes_of(data):
    """(kind, content) of each box of an ISO base media file (ISO/IEC 14496-12, 4.2)."""
    at = 0
    while at < len(data):
        size, kind = struct.unpack_from(">I4s", data, at)
        yield kind, data[at + 8 : at + size]
        at += size


def with_properties(heic, properties):
    """The HEIC with properties added to every item that has one (ISO/IEC 23008-12, 9.3)."""

    def iprp(content):
        (_, ipco), (_, ipma) = boxes_of(content)
        count = len(list(boxes_of(ipco)))
        new = [0x80 | (count + 1 + i) for i in range(len(properties))]
        items, at, out = struct.unpack_from(">I", ipma, 4)[0], 8, ipma[:8]
        for _ in range(items):
            item, known = struct.unpack_from(">HB", ipma, at)
            out += struct.pack(">HB", item, known + len(new)) + ipma[at + 3 : at + 3 + known] + bytes(new)
            at += 3 + known
        return box(b"ipco", ipco + b"".join(properties)) + box(b"ipma", out)

    def iloc(content, shift):
        """All sizes are of four bytes, as heif-enc writes them; method 1 counts from the box idat."""
        version, count = content[0], struct.unpack_from(">H", content, 6)[0]
        assert version <= 1 and content[4:6] == b"\x44\x40", content[:6]
        out, at = content[:8], 8
        for _ in range(count):
            head = 6 if version == 1 else 4
            base, extents = struct.unpack_from(">IH", content, at + head)
            in_file = version == 0 or content[at + 3] & 15 == 0
            out += content[at : at + head] + struct.pack(">IH", base + shift * in_file, extents)
            at += head + 6
            out += content[at : at + 8 * extents]
            at += 8 * extents
        return out

    def meta(content, shift):
        change = {b"iprp": iprp, b"iloc": lambda old: iloc(old, shift)}
        return content[:4] + b"".join(
            box(kind, change.get(kind, lambda old: old)(old)) for kind, old in boxes_of(content[4:]))

    parts = dict(boxes_of(heic))
    shift = len(meta(parts[b"meta"], 0)) - len(parts[b"meta"])
    return b"".join(
        box(kind, meta(old, shift) if kind == b"meta" else old) for kind, old in boxes_of(heic))


def make_sources(folder):
    """Yields (name, path, expectation): None for equal pixels, "lossy", or the line of a refusal."""
    rgb, rgba = folder / "rgb.pam", folder / "rgba.pam"

    def made(name, file, *arguments, expect=None):
        path = folder / file
        convert(*arguments, path)
        return name, path, expect

    yield made("PNG 8 bit", "p8.png", rgb, "-depth", 8, "-define", "png:color-type=2")
    yield made("PNG 16 bit", "p16.png", rgb, "-define", "png:bit-depth=16", "-define", "png:color-type=2")
    yield made("PNG grey", "pg.png", rgb, "-colorspace", "Gray", "-depth", 8, "-define", "png:color-type=0")
    yield made("PNG grey 16 bit", "pg16.png", rgb, "-colorspace", "Gray", "-define", "png:color-type=0",
               "-define", "png:bit-depth=16")
    for bits in (1, 2, 4):
        yield made(f"PNG grey {bits} bit", f"pg{bits}.png", rgb, "-colorspace", "Gray", "-depth", bits, "-define",
                   "png:color-type=0", "-define", f"png:bit-depth={bits}")
    yield made("PNG grey with alpha", "pga.png", rgba, "-colorspace", "Gray", "-depth", 8, "-define",
               "png:color-type=4")
    yield made("PNG with alpha", "pa.png", rgba, "-depth", 8, "-define", "png:color-type=6")
    yield made("PNG with alpha 16 bit", "pa16.png", rgba, "-define", "png:bit-depth=16", "-define",
               "png:color-type=6")
    yield made("PNG palette", "pp.png", rgb, "-depth", 8, "-colors", 200, "-define", "png:color-type=3")
    path = folder / "ppa.png"
    convert(rgba, "-depth", 8, "-channel", "A", "-threshold", "50%", "+channel", "-colors", 100, f"PNG8:{path}")
    yield "PNG palette with alpha", path, None
    yield made("PNG interlaced", "pi.png", rgb, "-depth", 8, "-interlace", "PNG", "-define", "png:color-type=2")
    yield made("PNG interlaced 16 bit with alpha", "pi16.png", rgba, "-interlace", "PNG", "-define",
               "png:bit-depth=16", "-define", "png:color-type=6")

    yield made("JPEG baseline 4:4:4", "j444.jpg", rgb, "-sampling-factor", "1x1", "-quality", 90)
    yield made("JPEG baseline 4:2:0", "j420.jpg", rgb, "-sampling-factor", "2x2", "-quality", 90)
    yield made("JPEG progressive", "jp.jpg", rgb, "-interlace", "JPEG", "-quality", 90)
    yield made("JPEG grey", "jg.jpg", rgb, "-colorspace", "Gray", "-quality", 90)
    yield made("JPEG CMYK", "jc.jpg", rgb, "-colorspace", "CMYK", "-quality", 95, expect="lossy")
    jpeg = (folder / "j444.jpg").read_bytes()
    for value in range(1, 9):
        path = folder / f"jo{value}.jpg"
        path.write_bytes(with_orientation(jpeg, value))
        yield f"JPEG orientation {value}", path, None

    yield made("TIFF strips", "ts.tif", rgb, "-depth", 8, "-compress", "None", "-define", "tiff:rows-per-strip=16")
    yield made("TIFF tiles", "tt.tif", rgb, "-depth", 8, "-define", "tiff:tile-geometry=64x48")
    yield made("TIFF LZW", "tl.tif", rgb, "-depth", 8, "-compress", "LZW")
    yield made("TIFF 16 bit", "t16.tif", rgb, "-depth", 16, "-compress", "Zip")
    yield made("TIFF big-endian", "tm.tif", rgb, "-depth", 16, "-endian", "MSB")
    yield made("TIFF with alpha", "ta.tif", rgba, "-depth", 16)
    yield made("TIFF grey", "tg.tif", rgb, "-colorspace", "Gray", "-depth", 8)
    yield made("TIFF bilevel", "tb.tif", rgb, "-monochrome", "-compress", "Group4")
    yield made("TIFF palette", "tp.tif", rgb, "-depth", 8, "-colors", 200, "-type", "Palette")
    yield made("TIFF planes", "tpl.tif", rgb, "-depth", 8, "-interlace", "Plane")
    path = folder / "big.tif"
    convert(rgb, "-depth", 8, f"TIFF64:{path}")
    yield "BigTIFF", path, None
    for value, name in ((3, "BottomRight"), (6, "RightTop"), (7, "RightBottom")):
        yield made(f"TIFF orientation {value}", f"to{value}.tif", rgb, "-depth", 8, "-orient", name)
    path = folder / "pages.tif"
    convert(folder / "ts.tif", folder / "ts.tif", "-adjoin", path)
    yield "TIFF two pages", path, MULTIPLE

    for name, source, options in (
        ("HEIC", "p8.png", []),
        ("HEIC 10 bit", "p16.png", ["-b", "10"]),
        ("HEIC with alpha", "pa.png", []),
    ):
        path = folder / (name.replace(" ", "-") + ".heic")
        call("heif-enc", "-q", 90, *options, "-o", path, folder / source)
        yield name, path, None
    plain = (folder / "HEIC.heic").read_bytes()
    for name, boxes in (
        ("HEIC turned", [box(b"irot", b"\x01")]),
        ("HEIC turned and mirrored", [box(b"irot", b"\x03"), box(b"imir", b"\x01")]),
    ):
        path = folder / (name.replace(" ", "-") + ".heic")
        path.write_bytes(with_properties(plain, boxes))
        yield name, path, None


def reference(path, folder):
    """The upright picture by the other tools, as a file that ImageMagick reads."""
    if path.suffix.lower() not in (".heic", ".heif"):
        return path
    other = folder / "other.png"
    call("heif-convert", path, other)
    return other


def size_of(path):
    width, height = convert(path, "-auto-orient", "-format", "%w %h", "info:").split()[:2]
    return int(width), int(height)


def pixels(path, channels, crop=None):
    cut = ["-crop", crop, "+repage"] if crop else []
    data = array.array("H")
    data.frombytes(convert(path, "-auto-orient", "+repage", *cut, "-depth", 16, "-endian", "LSB", f"{channels}:-"))
    return data


def psnr(a, b):
    error = sum((x - y) ** 2 for x, y in zip(a, b)) / len(a)
    return math.inf if error == 0 else 10 * math.log10(65535**2 / error)


def compare(program, path, expect, folder):
    """(what came out, whether it is right)"""
    out = folder / ("out.jpg" if expect == "lossy" else "out.png")
    out.unlink(missing_ok=True)
    options = ["--format", "jpeg", "--quality", "1"] if expect == "lossy" else ["--format", "png"]
    run = subprocess.run(
        [program, path, out, "--left", str(LEFT), "--top", str(TOP), "--right", str(RIGHT), "--bottom", str(BOTTOM),
         *options], capture_output=True, text=True, check=False)
    if run.returncode != 0:
        line = run.stderr.strip()
        return f"refused: {line}", line == expect and not out.exists()
    if expect not in (None, "lossy"):
        return "opened", False
    other = reference(path, folder)
    width, height = size_of(other)
    crop = f"{width - LEFT - RIGHT}x{height - TOP - BOTTOM}+{LEFT}+{TOP}"
    channels = "cmyk" if expect == "lossy" else "rgba"
    ours, theirs = pixels(out, channels), pixels(other, channels, crop)
    if len(ours) != len(theirs):
        return f"{len(ours)} samples instead of {len(theirs)}", False
    if expect == "lossy":
        value = psnr(ours, theirs)
        return f"CMYK kept, {value:.1f} dB after compression", value >= LEAST_PSNR
    different = sum(a != b for a, b in zip(ours, theirs))
    if different:
        most = max(abs(a - b) for a, b in zip(ours, theirs))
        return f"{different} of {len(ours)} samples differ, by {most} of 65535 at most", False
    return "equal", True


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--bin", required=True, type=pathlib.Path)
    parser.add_argument("--extra", type=pathlib.Path)
    parser.add_argument("--out", type=pathlib.Path)
    arguments = parser.parse_args()
    rows, wrong = [], 0
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        write_source(folder)
        sources = list(make_sources(folder))
        if arguments.extra:
            sources += [(p.name, p, None) for p in sorted(arguments.extra.iterdir()) if p.is_file()]
        for name, path, expect in sources:
            try:
                result, right = compare(arguments.bin / "crop-once", path, expect, folder)
            except subprocess.CalledProcessError as error:
                result, right = f"{error.cmd[0]}: {error.stderr.decode(errors='replace').strip()[:100]}", False
            wrong += not right
            rows.append(f"| {name} | {result} | {'yes' if right else '**no**'} |")
    table = "| Source | Against an independent crop | As told |\n|---|---|---|\n" + "\n".join(rows) + "\n"
    print(table)
    if arguments.out:
        arguments.out.write_text(table)
    print(f"{len(rows) - wrong} passed, {wrong} failed")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
