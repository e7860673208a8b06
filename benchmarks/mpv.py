"""Drives mpv over its socket."""

import json
import socket
import subprocess
import threading
import time

from measure import tool

PATIENCE_SECONDS = 60


class Mpv:
    """A paused mpv with a film, which shows its pictures nowhere; to be used in a with statement."""

    def __init__(self, film, folder):
        self.path = folder / "mpv.socket"
        self.path.unlink(missing_ok=True)
        self.process = subprocess.Popen(
            [tool("mpv"), "--no-config", "--no-terminal", "--no-audio", "--vo=null", "--hr-seek=yes", "--pause",
             "--keep-open=yes", f"--input-ipc-server={self.path}", film],
            stdin=subprocess.DEVNULL,
        )  # fmt: skip
        # Each the moment at which a picture that was sought was shown.
        self.shown = []
        self.news = threading.Condition()
        self.socket = self.connect()
        threading.Thread(target=self.read, daemon=True).start()

    def __enter__(self):
        self.wait(0)
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
        self.socket.close()

    def connect(self):
        end = time.monotonic() + PATIENCE_SECONDS
        while True:
            connection = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
            try:
                connection.connect(str(self.path))
                return connection
            except OSError:
                connection.close()
                if time.monotonic() > end:
                    raise
                time.sleep(0.01)

    def read(self):
        for line in self.socket.makefile("rb"):
            if json.loads(line).get("event") == "playback-restart":
                with self.news:
                    self.shown.append(time.perf_counter())
                    self.news.notify()

    def wait(self, count):
        """Until more than so many pictures have been shown."""
        with self.news:
            if not self.news.wait_for(lambda: len(self.shown) > count, PATIENCE_SECONDS):
                raise TimeoutError("mpv shows nothing")

    def seek(self, seconds):
        command = {"command": ["seek", seconds, "absolute+exact"]}
        self.socket.sendall(json.dumps(command).encode() + b"\n")

    def seek_latency(self, seconds):
        """Milliseconds from the command to the picture."""
        before, start = len(self.shown), time.perf_counter()
        self.seek(seconds)
        self.wait(before)
        return (self.shown[before] - start) * 1000
