#!/usr/bin/python3
"""Ends the running program by the signals that ask for it: it goes at once and in order, without a
question, and leaves nothing in its session folder and nothing beside the user's files."""

import argparse
import pathlib
import signal
import subprocess
import tempfile

from running_program import (PATIENCE, RunningProgram, Sessions, UserFiles, begun_export, check,
                             finished_export, open_and_export, wait_for, wait_for_review,
                             write_film, write_png)


def end(program, number):
    program.process.send_signal(number)
    try:
        check(program.process.wait(PATIENCE) == 0, f"it died of signal {number}")
    except subprocess.TimeoutExpired:
        check(False, f"signal {number} did not end it")


def end_with_a_review(path, folder, picture, sessions, number):
    # As desktops and shells name files, the one and the other.
    for name in (picture, picture.as_uri()):
        with RunningProgram(path, folder, name) as program:
            session = sessions.one_besides(set())
            wait_for_review(open_and_export(program))
            check(finished_export(session), "the review is of no export")
            end(program, number)
        check(not sessions.all(), "a session is left")


def end_while_exporting(path, folder, film, sessions, number):
    with RunningProgram(path, folder, film) as program:
        session = sessions.one_besides(set())
        open_and_export(program)
        wait_for("the movie", lambda: begun_export(session))
        end(program, number)
    check(not sessions.all(), "a session is left")


def leave_ignored_signals_alone(path, folder, picture):
    """As nohup starts programs."""
    before = signal.signal(signal.SIGHUP, signal.SIG_IGN)
    try:
        with RunningProgram(path, folder, picture) as program:
            program.root()
            status = pathlib.Path(f"/proc/{program.process.pid}/status").read_text()
            ignored = int(status.split("SigIgn:")[1].split()[0], 16)
            check(ignored & 1 << signal.SIGHUP - 1, "it no longer ignores SIGHUP")
            end(program, signal.SIGTERM)
    finally:
        signal.signal(signal.SIGHUP, before)


def travel(path, folder):
    home = pathlib.Path(folder)
    picture, film = home / "the picture.png", home / "film.mp4"
    write_png(picture, 400, 300)
    write_film(film)
    files = UserFiles(home, picture, film)
    sessions = Sessions(home)

    end_with_a_review(path, folder, picture, sessions, signal.SIGTERM)
    for number in (signal.SIGINT, signal.SIGHUP):
        end_while_exporting(path, folder, film, sessions, number)
    leave_ignored_signals_alone(path, folder, picture)
    files.check_untouched()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    program = parser.parse_args().program
    with tempfile.TemporaryDirectory() as folder:
        travel(program, folder)


if __name__ == "__main__":
    main()
