#!/usr/bin/python3
"""Kills the running program with exports in its session folder: the next start clears what it left
and works, another program that runs keeps its own, and the user's files stay as they are."""

import argparse
import pathlib
import tempfile

from running_program import (GROUP, RunningProgram, Sessions, UserFiles, begun_export, check,
                             exports, find, finished_export, open_and_export, wait_for,
                             wait_for_review, write_film, write_png)


def die_after_an_export(path, folder, picture, sessions):
    with RunningProgram(path, folder, picture) as program:
        session = sessions.one_besides(set())
        root = open_and_export(program)
        wait_for("the finished export", lambda: finished_export(session))
        wait_for_review(root)
        program.die()
    return session


def die_while_exporting(path, folder, film, sessions, known):
    with RunningProgram(path, folder, film) as program:
        session = sessions.one_besides(known)
        open_and_export(program)
        wait_for("the movie", lambda: begun_export(session))
        program.die()
    return session


def travel(path, folder):
    home = pathlib.Path(folder)
    picture, film = home / "picture.png", home / "film.mp4"
    write_png(picture, 400, 300)
    write_film(film)
    files = UserFiles(home, picture, film)
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
    files.check_untouched()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    program = parser.parse_args().program
    with tempfile.TemporaryDirectory() as folder:
        travel(program, folder)


if __name__ == "__main__":
    main()
