#!/usr/bin/env python3
"""Crops films of every kind with crop-once and checks picture, colour, time, sound, container and failures.

Alone:     tests/conformance/run.py --bin build/bin
One group: tests/conformance/run.py --bin build/bin --only Sound
One case:  tests/conformance/run.py --bin build/bin --only 'ProRes 4:4:4' --keep /tmp/look

Sources are made here, by the ffmpeg command and, where that cannot, by changing boxes of the files that it made;
ffprobe, exiftool and mediainfo look at the results. Two cases run at once. Prints a Markdown table and exits 1
when a row does not come out as told. A case is one line in one of the *_cases modules.
"""

import argparse
import itertools
import multiprocessing
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import traceback

import bad_input_cases
import color_cases
import container_cases
import failure_cases
import picture_cases
import sound_cases
import time_cases
from bench import Bench, Wrong

MODULES = (picture_cases, color_cases, time_cases, sound_cases, container_cases, bad_input_cases, failure_cases)
CASES = [case for module in MODULES for case in module.cases()]


def try_case(work):
    """(index, what came out, whether it is right, seconds); any surprise makes the case fail."""
    index, program, folder = work
    folder = pathlib.Path(folder) / str(index)
    folder.mkdir()
    start = time.monotonic()
    try:
        result, right = CASES[index].run(Bench(program, folder)), True
    except Wrong as error:
        result, right = str(error), False
    except (Exception, subprocess.TimeoutExpired) as error:  # pylint: disable=broad-except
        where = traceback.extract_tb(error.__traceback__)[-1]
        result, right = f"{type(error).__name__} at {pathlib.Path(where.filename).name}:{where.lineno}: {error}", False
    return index, " ".join(result.split()).replace("|", "¦"), right, time.monotonic() - start


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", required=True, type=pathlib.Path, help="folder of crop-once")
    parser.add_argument("--only", default="", help="cases whose group or name contains this")
    parser.add_argument("--keep", type=pathlib.Path, help="a new folder that keeps the films")
    parser.add_argument("--out", type=pathlib.Path, help="also writes the table here")
    parser.add_argument("--times", action="store_true", help="tells the seconds of each case")
    arguments = parser.parse_args()
    chosen = [i for i, case in enumerate(CASES) if arguments.only in case.group or arguments.only in case.name]
    start = time.monotonic()
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        folder.chmod(0o755)
        if arguments.keep:
            arguments.keep.mkdir(parents=True)
            folder = arguments.keep
        # Cases that run it as an ordinary user may not reach the folder of the build.
        program = pathlib.Path(shutil.copy(arguments.bin / "crop-once", folder)).resolve()
        work = [(i, program, folder) for i in chosen]
        with multiprocessing.Pool(2) as pool:
            results = sorted(pool.imap_unordered(try_case, work))
    rows = [f"| {CASES[i].group} | {CASES[i].name} | {result}{f' ({took:.1f} s)' if arguments.times else ''} "
            f"| {'yes' if right else '**no**'} |" for i, result, right, took in results]
    table = "| Group | Case | Result | As told |\n|---|---|---|---|\n" + "\n".join(rows) + "\n"
    wrong = sum(not right for _, _, right, _ in results)
    print(table)
    print(f"{len(rows) - wrong} passed, {wrong} failed, {time.monotonic() - start:.0f} s")
    if arguments.out:
        arguments.out.write_text(table, encoding="utf-8")
    return 1 if wrong or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
