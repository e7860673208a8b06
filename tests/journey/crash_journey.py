#!/usr/bin/python3
"""Kills the running program with exports in its session folder: the next start clears what it left
and works, another program that runs keeps its own, and the user's files stay as they are."""

import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

from running_program import GROUP, RunningProgram, find, press, wait_for, write_png


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


def die_after_an_export(path, folder, picture, sessions):
    with RunningProgram(path, folder, picture) as program:
        session = sessions.one_besides(set())
        root = open_and_export(program)
        wait_for("the finished export", lambda: finished_export(session))
        wait_for("the review", lambda: [w for w in root if "picture-framed" in w.name])
        program.die()
    return session


def die_while_exporting(path, folder, film, sessions, known):
    with RunningProgram(path, folder, film) as program:
        session = sessions.one_besides(known)
        open_and_export(program)
        wait_for("the movie", lambda: begun_export(session))
        program.die()
    return session


def check(holds, what):
    if not holds:
        sys.exit(f"wrong: {what}")


def travel(path, folder):
    home = pathlib.Path(folder)
    picture, film = home / "picture.png", home / "film.mp4"
    write_png(picture, 400, 300)
    subprocess.run(
        ["ffmpeg", "-v", "error", "-nostdin", "-f", "lavfi", "-i",
         "testsrc2=size=1280x720:rate=25:duration=60", "-c:v", "libx264", "-preset", "ultrafast",
         film], check=True)
    before = facts(picture), facts(film)
    sessions = Sessions(home)

    first = die_after_an_export(path, folder, picture, sessions)
    check(finished_export(first), "a crash removed the export")
    second = die_while_exporting(path, folder, film, sessions, {first})
    check(sessions.all() == {second}, "the next start left the first session")
    check(exports(second), "a crash removed the work folder")

    with RunningProgram(path, folder, picture) as other:
        third = sessions.one_besides({second})
        open_and_export(other)
        wait_for("the finished export", lambda: finished_export(third))
        check(sessions.all() == {third}, "the next start left the second session")
        with RunningProgram(path, folder, film) as program:
            sessions.one_besides({third})
            wait_for("the crop", lambda: find(program.root(), "Crop", GROUP))
            check(finished_export(third), "a start removed the export of a running program")
    check((facts(picture), facts(film)) == before, "the user's files have changed")
    check({entry.name for entry in home.iterdir() if not entry.name.startswith(".")}
          == {"picture.png", "film.mp4", "Vantrel-Exports"}, "something lies beside the files")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    program = parser.parse_args().program
    with tempfile.TemporaryDirectory() as folder:
        travel(program, folder)


if __name__ == "__main__":
    main()
