"""The running program as assistive tools meet it, over AT-SPI: to find what it shows, and to use it."""

import os
import struct
import subprocess
import sys
import time
import zlib

import pyatspi

PATIENCE = 60  # seconds, for what comes in its own time

# The names of a role in older and newer releases.
GROUP = ("panel", "grouping")
FIELD = ("text", "entry")
SLIDER = ("slider",)
BUTTON = ("push button", "button")


class NotYet(Exception):
    """What was looked at is not as it is to become."""


def wait_for(what, look):
    """What `look` finds. While the program is on its way there it finds nothing, or fails, also
    because what it reads is gone already."""
    end = time.monotonic() + PATIENCE
    failure = ""
    while time.monotonic() < end:
        try:
            found = look()
            if found:
                return found
        except Exception as error:
            failure = f": {error}"
        time.sleep(0.05)
    sys.exit(f"{what} never came{failure}")


def check(holds, what):
    if not holds:
        sys.exit(f"wrong: {what}")


def expect(what, got, wanted):
    if got != wanted:
        raise NotYet(f"{what} is {got!r}, not {wanted!r}")


def items_below(item):
    for child in item:
        if child is not None:
            yield child
            yield from items_below(child)


def find(root, name, roles):
    for item in items_below(root):
        if item.name == name and item.getRoleName() in roles:
            return item
    return None


def press(root, name):
    """Presses the button of this name as soon as it can be pressed."""
    def usable():
        button = find(root, name, BUTTON)
        return button if button and button.getState().contains(pyatspi.STATE_ENABLED) else None

    wait_for(f"the button {name}", usable).queryAction().doAction(0)


class RunningProgram:
    """Within `with`, the program with these arguments; what it writes beside its files lies in
    `folder`."""

    def __init__(self, path, folder, *arguments):
        self._command = [path, *arguments]
        self._environment = {**os.environ, "HOME": folder, "TMPDIR": folder}
        self.process = None

    def __enter__(self):
        self.process = subprocess.Popen(self._command, env=self._environment)
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def root(self):
        """Its item on the bus."""
        def look():
            if self.process.poll() is not None:
                sys.exit("the program has ended")
            for item in pyatspi.Registry.getDesktop(0):
                if item is not None and item.get_process_id() == self.process.pid:
                    return item
            return None

        return wait_for("the program", look)

    def die(self):
        """Ends it as a crash does: at once, and before it can clean up."""
        self.process.kill()
        self.process.wait()


class Sessions:
    """The session folders of all programs that were given this folder for what is temporary."""

    def __init__(self, folder):
        self._root = folder / "Vantrel-Exports"

    def all(self):
        return {entry for entry in self._root.iterdir() if entry.is_dir()}

    def one_besides(self, known):
        """The session that came as soon as there is one."""
        return wait_for("the session folder", lambda: self.all() - known).pop()


def exports(session):
    return [entry for entry in session.iterdir() if entry.name != "session.lock"]


def finished_export(session):
    """The finished export of a session that has a review open."""
    return next((entry for entry in exports(session) if entry.is_file()), None)


def begun_export(session):
    """The movie that is being written."""
    return next((file for file in session.glob("Vantrel-*/Export.mov") if file.stat().st_size > 0),
                None)


def facts(path):
    return path.read_bytes(), path.stat().st_mtime_ns, path.stat().st_mode


def open_and_export(program):
    root = program.root()
    wait_for("the crop", lambda: find(root, "Crop", GROUP))
    press(root, "Export")
    return root


def wait_for_review(root):
    """Of an export that has ended."""
    return wait_for("the review", lambda: [window for window in root if "-framed" in window.name])


def write_film(path):
    """Long enough to still be exported when somebody looks."""
    subprocess.run(
        ["ffmpeg", "-v", "error", "-nostdin", "-f", "lavfi", "-i",
         "testsrc2=size=1280x720:rate=25:duration=60", "-c:v", "libx264", "-preset", "ultrafast",
         path], check=True)


class UserFiles:
    """What lies in a folder, which is to stay as it is but for the session folders."""

    def __init__(self, folder, *files):
        self._folder, self._facts = folder, {file: facts(file) for file in files}

    def check_untouched(self):
        check({file: facts(file) for file in self._facts} == self._facts,
              "the user's files have changed")
        names = {entry.name for entry in self._folder.iterdir() if not entry.name.startswith(".")}
        check(names == {file.name for file in self._facts} | {"Vantrel-Exports"},
              "something lies beside the files")


def write_png(path, width, height):
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    rows = b"".join(
        b"\0" + bytes((x * 5 + y * 3) % 256 for x in range(width)) for y in range(height)
    )
    with open(path, "wb") as file:
        file.write(
            b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows))
            + chunk(b"IEND", b"")
        )
