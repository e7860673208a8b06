"""QuickTime and ISO base media boxes (ISO/IEC 14496-12; QuickTime File Format): reading a movie's tables and
times, and changing the header of a movie whose header stands last."""

import dataclasses
import fractions
import itertools
import struct

CONTAINERS = {b"moov", b"trak", b"mdia", b"minf", b"stbl", b"edts"}
IDENTITY = (1, 0, 0, 1)


def pack(kind, content):
    return struct.pack(">I4s", len(content) + 8, kind) + content


def split(data):
    """(kind, content) of each box; a trailing zero word, as QuickTime's udta has, ends the list."""
    at = 0
    while at + 8 <= len(data):
        size, kind = struct.unpack_from(">I4s", data, at)
        if size < 8:
            return
        yield kind, data[at + 8 : at + size]
        at += size


class Box:
    """A box of the movie header that can be changed: children for containers, bytes for others."""

    def __init__(self, kind, content=b"", children=None):
        self.kind = kind
        self.content = content
        self.children = children

    @classmethod
    def parse(cls, kind, content):
        if kind not in CONTAINERS:
            return cls(kind, content)
        return cls(kind, children=[cls.parse(k, c) for k, c in split(content)])

    def bytes(self):
        inner = self.content if self.children is None else b"".join(child.bytes() for child in self.children)
        return pack(self.kind, inner)

    def all(self, kind):
        return [child for child in self.children if child.kind == kind]

    def get(self, path):
        """The first box at a path such as "mdia/mdhd"; None if there is none."""
        box = self
        for kind in path.encode().split(b"/"):
            box = next(iter(box.all(kind)), None)
            if box is None:
                return None
        return box

    def put(self, kind, content, before=None):
        """Adds a box in the place of those of its kind."""
        self.drop(kind)
        place = next((i for i, child in enumerate(self.children) if child.kind == before), len(self.children))
        self.children.insert(place, Box.parse(kind, content))

    def drop(self, kind):
        self.children = [child for child in self.children if child.kind != kind]


@dataclasses.dataclass
class Shown:
    """A frame as the viewer sees it: its place in display order, and from when to when in seconds."""

    index: int
    start: fractions.Fraction
    end: fractions.Fraction
    is_key: bool


@dataclasses.dataclass
class Sample:
    pts: int
    duration: int
    is_key: bool


def runs(content):
    """Values of an stts or ctts box, one a sample."""
    count = struct.unpack_from(">I", content, 4)[0]
    pairs = struct.iter_unpack(">Ii", content[8 : 8 + 8 * count])
    return list(itertools.chain.from_iterable(itertools.repeat(value, n) for n, value in pairs))


class Track:
    """A view of a trak box. Times count in ticks of its own timescale."""

    def __init__(self, trak):
        self.trak = trak
        header = trak.get("tkhd").content
        wide = header[0] == 1
        self.enabled = bool(header[3] & 1)
        self.id, self.duration = struct.unpack_from(">I4xQ" if wide else ">I4xI", header, 20 if wide else 12)
        matrix = struct.unpack_from(">9i", header, 52 if wide else 40)
        self.matrix = tuple(matrix[i] / 65536 for i in (0, 1, 3, 4))
        self.track_size = tuple(v >> 16 for v in struct.unpack_from(">II", header, 88 if wide else 76))
        media = trak.get("mdia/mdhd").content
        self.timescale, self.media_duration, self.language = struct.unpack_from(
            ">IQH" if media[0] == 1 else ">IIH", media, 20 if media[0] == 1 else 12)
        self.handler = trak.get("mdia/hdlr").content[8:12]
        self._read_description(trak.get("mdia/minf/stbl/stsd").content)
        self._read_samples(trak.get("mdia/minf/stbl"))

    def _read_description(self, stsd):
        self.entry, entry = next(split(stsd[8:]))
        self.entry_size = struct.unpack_from(">HH", entry, 24) if self.handler == b"vide" else None
        self.extensions = dict(split(entry[78:])) if self.handler == b"vide" else {}

    def _read_samples(self, stbl):
        durations = runs(stbl.get("stts").content)
        offsets = runs(stbl.get("ctts").content) if stbl.get("ctts") else [0] * len(durations)
        keys = stbl.get("stss")
        known = set(struct.unpack_from(f">{(len(keys.content) - 8) // 4}I", keys.content, 8)) if keys else None
        starts = itertools.accumulate(durations[:-1], initial=0)
        self.samples = [Sample(dts + offset, duration, known is None or number in known) for number, (dts, duration, offset)
                        in enumerate(zip(starts, durations, offsets), 1)]

    @property
    def language_code(self):
        """ISO 639-2; numbers below 0x400 are those of an older list."""
        code = self.language
        return "".join(chr((code >> shift & 31) + 0x60) for shift in (10, 5, 0)) if code >= 0x400 else f"old {code}"

    @property
    def extended_language(self):
        box = self.trak.get("mdia/elng")
        return box.content[4:].rstrip(b"\0").decode() if box else None

    @property
    def edits(self):
        """(segment duration, media time) of each edit."""
        box = self.trak.get("edts/elst")
        if box is None:
            return []
        form, size = (">Qqi", 20) if box.content[0] == 1 else (">Iii", 12)
        count = struct.unpack_from(">I", box.content, 4)[0]
        return [struct.unpack_from(form, box.content, 8 + i * size)[:2] for i in range(count)]

    def places(self):
        """(offset, 1) of each chunk in the file."""
        stbl = self.trak.get("mdia/minf/stbl")
        box = stbl.get("stco") or stbl.get("co64")
        form, size = ("I", 4) if box.kind == b"stco" else ("Q", 8)
        count = struct.unpack_from(">I", box.content, 4)[0]
        return [(at, 1) for at in struct.unpack_from(f">{count}{form}", box.content, 8)]

    def in_display_order(self):
        """(start, end, is key) of each sample on the media's own time line, in ticks."""
        samples = sorted(self.samples, key=lambda s: s.pts)
        if not samples:
            return []
        # Durations count in decoding order; what they add up to is the length of all.
        whole = samples[0].pts + sum(s.duration for s in samples)
        ends = [s.pts for s in samples[1:]] + [max(whole, samples[-1].pts + samples[-1].duration)]
        return [(s.pts, end, s.is_key) for s, end in zip(samples, ends)]


class Movie:
    """What stands in a finished file."""

    def __init__(self, top, moov, brand):
        self.top = top
        self.moov = moov
        self.brand = brand
        header = moov.get("mvhd").content
        self.timescale, self.duration = struct.unpack_from(">IQ" if header[0] == 1 else ">II", header,
                                                           20 if header[0] == 1 else 12)
        self.tracks = [Track(trak) for trak in moov.all(b"trak")]

    @classmethod
    def read(cls, path):
        data = path.read_bytes()
        top = top_boxes(data)
        at, size = next((at, size) for kind, at, size in top if kind == b"moov")
        brand = next((data[a + 8 : a + 12] for kind, a, _ in top if kind == b"ftyp"), b"")
        return cls(top, Box.parse(b"moov", data[at + 8 : at + size]), brand)

    @property
    def video(self):
        return next(track for track in self.tracks if track.handler == b"vide")

    @property
    def audio(self):
        return [track for track in self.tracks if track.handler == b"soun"]

    @property
    def seconds(self):
        return fractions.Fraction(self.duration, self.timescale)

    def holds(self, at, size):
        return any(kind == b"mdat" and start + 8 <= at and at + size <= start + length for kind, start, length in self.top)

    def shown(self, track):
        """The frames in the order in which they are shown, with edits obeyed: each edit shows the part of
        the media that it names, the first and the last frame possibly for a part of their time."""
        media = track.in_display_order()
        edits = track.edits or [(-(-media[-1][1] * self.timescale // track.timescale), 0)]
        found, at = [], fractions.Fraction(0)
        for length, start in edits:
            seconds = fractions.Fraction(length, self.timescale)
            if start >= 0:
                stop = start + seconds * track.timescale
                for index, (begin, end, is_key) in enumerate(media):
                    if begin < stop and end > start:
                        found.append(Shown(index, at + fractions.Fraction(max(begin, start) - start) / track.timescale,
                                           at + fractions.Fraction(min(end, stop) - start) / track.timescale, is_key))
            at += seconds
        return found


def top_boxes(data):
    """(kind, offset, size) of the boxes of a file; the last one may claim more than there is."""
    found, at = [], 0
    while at + 8 <= len(data):
        size, kind = struct.unpack_from(">I4s", data, at)
        if size == 1:
            size = struct.unpack_from(">Q", data, at + 8)[0]
        elif size == 0:
            size = len(data) - at
        if size < 8:
            break
        found.append((kind, at, size))
        at += size
    return found


def change(path, *edits):
    """Applies functions of the moov box to a movie whose header stands behind its data."""
    data = path.read_bytes()
    top = top_boxes(data)
    assert [kind for kind, _, _ in top][-1] == b"moov", "the header must stand last"
    at, size = next((at, size) for kind, at, size in top if kind == b"moov")
    moov = Box.parse(b"moov", data[at + 8 : at + size])
    for edit in edits:
        edit(moov)
    path.write_bytes(data[:at] + moov.bytes())


# Changes of one header, for `change`. Tracks are counted from 0 in the file's order.


def _with(content, at, form, *values):
    changed = bytearray(content)
    struct.pack_into(form, changed, at, *values)
    return bytes(changed)


def set_enabled(track, enabled):
    def edit(moov):
        header = moov.all(b"trak")[track].get("tkhd")
        header.content = _with(header.content, 3, "B", header.content[3] & ~1 | enabled)
    return edit


def set_matrix(track, matrix, translation):
    def edit(moov):
        header = moov.all(b"trak")[track].get("tkhd")
        a, b, c, d = (v * 65536 for v in matrix)
        tx, ty = (v * 65536 for v in translation)
        header.content = _with(header.content, 40, ">9i", a, b, 0, c, d, 0, tx, ty, 1 << 30)
    return edit


def set_movie_timescale(timescale):
    """Also converts what counts in it: the durations of the movie and of its tracks, and their edits."""
    def edit(moov):
        header = moov.get("mvhd")
        old, duration = struct.unpack_from(">II", header.content, 12)
        header.content = _with(header.content, 12, ">II", timescale, duration * timescale // old)
        for trak in moov.all(b"trak"):
            box = trak.get("tkhd")
            length = struct.unpack_from(">I", box.content, 20)[0]
            box.content = _with(box.content, 20, ">I", length * timescale // old)
            edits = Track(trak).edits
            if edits:
                put_edits(trak, [(length * timescale // old, start) for length, start in edits])
    return edit


def put_edits(trak, edits):
    entries = b"".join(struct.pack(">Iii", length, start, 0x10000) for length, start in edits)
    trak.put(b"edts", pack(b"elst", struct.pack(">II", 0, len(edits)) + entries), before=b"mdia")


def set_edits(track, edits):
    """(segment duration in ticks of the movie, media time); movie and track get their length."""
    def edit(moov):
        trak = moov.all(b"trak")[track]
        put_edits(trak, edits)
        length = sum(duration for duration, _ in edits)
        box = trak.get("tkhd")
        box.content = _with(box.content, 20, ">I", length)
        longest = max(Track(other).duration for other in moov.all(b"trak"))
        header = moov.get("mvhd")
        header.content = _with(header.content, 16, ">I", longest)
    return edit


def set_durations(track, timescale, durations):
    """Another timescale and other sample durations; the edit list goes. For tracks without reordering."""
    def edit(moov):
        trak = moov.all(b"trak")[track]
        stbl = trak.get("mdia/minf/stbl")
        assert not stbl.get("ctts")
        entries = b"".join(struct.pack(">II", 1, duration) for duration in durations)
        stbl.get("stts").content = struct.pack(">II", 0, len(durations)) + entries
        media = trak.get("mdia/mdhd")
        media.content = _with(media.content, 12, ">II", timescale, sum(durations))
        trak.drop(b"edts")
        header, box = moov.get("mvhd"), trak.get("tkhd")
        scale = struct.unpack_from(">I", header.content, 12)[0]
        length = sum(durations) * scale // timescale
        box.content = _with(box.content, 20, ">I", length)
        header.content = _with(header.content, 16, ">I", max(Track(other).duration for other in moov.all(b"trak")))
    return edit


def set_language(track, code, tag=None):
    """ISO 639-2 in mdhd, and a BCP 47 tag in elng."""
    def edit(moov):
        media = moov.all(b"trak")[track].get("mdia")
        header = media.get("mdhd")
        packed = sum((ord(letter) - 0x60) << shift for letter, shift in zip(code, (10, 5, 0)))
        header.content = _with(header.content, 20, ">H", packed)
        if tag:
            media.put(b"elng", b"\0\0\0\0" + tag.encode() + b"\0", before=b"hdlr")
    return edit


def put_in_track(track, kind, content):
    def edit(moov):
        moov.all(b"trak")[track].put(kind, content)
    return edit


def put_in_movie(kind, content):
    def edit(moov):
        moov.put(kind, content)
    return edit


def meta_items(*items):
    """Content of a `meta` box as QuickTime movies have it, of (key, type, value) items."""
    handler = pack(b"hdlr", struct.pack(">II4s12x", 0, 0, b"mdta") + b"\0")
    keys = pack(b"keys", struct.pack(">II", 0, len(items)) + b"".join(pack(b"mdta", key) for key, _, _ in items))
    values = b"".join(pack(struct.pack(">I", number), pack(b"data", struct.pack(">II", kind, 0) + value))
                      for number, (_, kind, value) in enumerate(items, 1))
    return handler + keys + pack(b"ilst", values)


def items_of(meta):
    """The (key, type, value) items of a `meta` box's content."""
    if meta[4:8] != b"hdlr":
        meta = meta[4:]
    parts = dict(split(meta))
    keys = [key for _, key in split(parts[b"keys"][8:])]
    found = []
    for number, item in split(parts[b"ilst"]):
        data = dict(split(item))[b"data"]
        found.append((keys[struct.unpack(">I", number)[0] - 1], struct.unpack_from(">I", data)[0], data[8:]))
    return found


def clean_apertures(width, height):
    """Content of a `tapt` box."""
    size = struct.pack(">III", 0, width << 16, height << 16)
    return pack(b"clef", size) + pack(b"prof", size) + pack(b"enof", size)
