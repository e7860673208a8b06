#!/usr/bin/python3
"""Goes the whole way through the running program as an assistive tool does, over AT-SPI alone: opens
a file by the dialog, crops by numbers, chooses the encoding, exports, saves by the review's dialog.
On its way it walks through every window and looks for what has no name or no value. The user's
language writes numbers otherwise; the program does not."""

import argparse
import os
import shutil
import subprocess
import tempfile

import pyatspi

from running_program import (
    BUTTON, FIELD, GROUP, SLIDER, RunningProgram, find, items_below, press, wait_for, write_png)

WIDTH, HEIGHT = 400, 300
CHOICE = ("radio button",)
WINDOW = ("frame", "dialog", "alert", "file chooser", "window")
CONTROLS = FIELD + SLIDER + BUTTON + CHOICE + (
    "progress bar", "check box", "page tab", "menu", "menu item")


def has(item, *states):
    set_of_them = item.getState()
    return all(set_of_them.contains(state) for state in states)


def window_named(root, name):
    """The window that is shown under this name; a changed document has a mark after it."""
    def look():
        for item in root:
            if item is not None and item.getRoleName() in WINDOW and has(
                    item, pyatspi.STATE_SHOWING) and item.name.rstrip("*") == name:
                return item
        return None

    return wait_for(f"the window {name}", look)


def gone(root, name):
    wait_for(f"the end of the window {name}", lambda: not any(
        item is not None and item.name.rstrip("*") == name for item in root))


def fault_of(item):
    role = item.getRoleName()
    if not has(item, pyatspi.STATE_VISIBLE, pyatspi.STATE_SHOWING):
        return None
    if (role in CONTROLS or has(item, pyatspi.STATE_FOCUSABLE)) and not item.name:
        return "no name"
    if role in SLIDER + ("progress bar",):
        value = item.queryValue()
        if not value.minimumValue <= value.currentValue <= value.maximumValue:
            return "no value"
    if role in FIELD:
        item.queryText()
    return None


def walk(window):
    """Fails when anything that is shown and can be used lacks a name or a value."""
    met = 0
    for item in items_below(window):
        fault = fault_of(item)
        if fault:
            raise SystemExit(f"in {window.name}: {item.getRoleName()} “{item.name}” has {fault}")
        met += item.getRoleName() in CONTROLS
    if met == 0:
        raise SystemExit(f"in {window.name} there is nothing to use")


def answer_dialog(root, title, button, path):
    dialog = window_named(root, title)
    # Its other fields are in the list of files.
    field = wait_for("the field of the name", lambda: next(
        item for item in items_below(dialog)
        if item.getRoleName() in FIELD and has(item, pyatspi.STATE_EDITABLE)
        and item.name.startswith("File")))
    field.queryComponent().grabFocus()
    field.queryEditableText().setTextContents(path)
    wait_for("the typed path", lambda: field.queryText().getText(0, -1) == path)
    press(dialog, button)
    gone(root, title)


def type_number(window, field_name, number):
    field = wait_for(field_name, lambda: next(
        item for item in items_below(window)
        if item.name == field_name and item.getRoleName() in FIELD))
    field.queryComponent().grabFocus()
    field.queryEditableText().setTextContents(str(number))
    return field


def shows(window, text):
    wait_for(f"“{text}”", lambda: any(
        item.name == text and has(item, pyatspi.STATE_SHOWING) for item in items_below(window)))


def choose(window, name):
    choice = wait_for(name, lambda: find(window, name, CHOICE))
    choice.queryAction().doAction(0)
    wait_for(f"the chosen {name}", lambda: has(choice, pyatspi.STATE_CHECKED))


def set_slider(window, name, number):
    slider = wait_for(name, lambda: find(window, name, SLIDER))
    before = slider.queryValue().currentValue
    slider.queryValue().currentValue = number
    # It goes to the closest of its steps.
    wait_for(f"{name} at {number}", lambda: slider.queryValue().currentValue != before)
    reached = slider.queryValue().currentValue
    if abs(reached - number) > slider.queryValue().minimumIncrement / 2 + 1e-9:
        raise SystemExit(f"{name} is at {reached}, not at {number}")
    return reached


def menu_item(window, menu_name, name):
    """Chooses from the menus of a window."""
    bar = wait_for("the menus", lambda: next(
        item for item in items_below(window) if item.getRoleName() == "menu bar"))
    entry = wait_for(name, lambda: next(
        item for item in items_below(bar) if item.name == name
        and has(item, pyatspi.STATE_ENABLED)))
    entry.queryAction().doAction(0)


def export(root, window, stem):
    press(window, "Export")
    review = window_named(root, f"{stem}-framed")
    return review


def save(root, review, path):
    menu_item(review, "File", "Save…")
    answer_dialog(root, "Save", "Save", path)
    wait_for("the saved file", lambda: os.path.exists(path) and os.path.getsize(path) > 0)
    wait_for("the end of saving", lambda: not review.name.endswith("*"))
    stem = review.name
    menu_item(review, "File", "Close Window")
    gone(root, stem)


def measure(path):
    answer = subprocess.run(
        ["ffprobe", "-v", "error", "-select_streams", "v", "-show_entries",
         "stream=codec_name,width,height", "-of", "csv=p=0", path],
        check=True, capture_output=True, text=True)
    return answer.stdout.strip()


def expect_file(path, wanted):
    got = measure(path)
    if got != wanted:
        raise SystemExit(f"{path} holds {got}, not {wanted}")


def crop_a_picture(root, folder):
    empty = window_named(root, "Vantrel")
    walk(empty)
    press(empty, "Open…")
    answer_dialog(root, "Open", "Open", f"{folder}/photo.png")
    window = window_named(root, "photo.png")
    type_number(window, "Left crop margin in pixels", 12)
    type_number(window, "Top crop margin in pixels", 7)
    shows(window, f"{WIDTH - 12} × {HEIGHT - 7} px")
    choose(window, "JPEG")
    set_slider(window, "JPEG quality", 0.5)
    walk(window)
    review = export(root, window, "photo")
    walk(review)
    save(root, review, f"{folder}/saved.jpg")
    expect_file(f"{folder}/saved.jpg", f"mjpeg,{WIDTH - 12},{HEIGHT - 7}")


def crop_a_film(root, folder):
    window = window_named(root, "photo.png")
    press(window, "Open…")
    answer_dialog(root, "Open", "Open", f"{folder}/clip.mp4")
    window = window_named(root, "clip.mp4")
    wait_for("the playback", lambda: find(window, "Play", BUTTON))
    type_number(window, "Left crop margin in pixels", 20)
    shows(window, "140 × 120 px")
    choose(window, "H.264")
    bitrate = set_slider(window, "Video bitrate in Mbps", 2.5)
    shows(window, f"{bitrate:.2f} Mbps")
    set_slider(window, "Playback position", 0.5)
    shows(window, "0.5 / 1.0 s")
    walk(window)
    review = export(root, window, "clip")
    walk(review)
    save(root, review, f"{folder}/saved.mov")
    expect_file(f"{folder}/saved.mov", "h264,140,120")


def meet_an_alert(root, folder):
    with open(f"{folder}/broken.png", "w", encoding="ascii") as file:
        file.write("no picture")
    window = window_named(root, "clip.mp4")
    press(window, "Open…")
    answer_dialog(root, "Open", "Open", f"{folder}/broken.png")
    alert = window_named(root, "Could Not Open File")
    walk(alert)
    press(alert, "OK")
    gone(root, "Could Not Open File")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    program_path = parser.parse_args().program
    os.environ["LC_ALL"] = "de_DE.UTF-8"
    os.environ["LANGUAGE"] = "de"
    with tempfile.TemporaryDirectory() as folder:
        write_png(f"{folder}/photo.png", WIDTH, HEIGHT)
        subprocess.run(
            ["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc=size=160x120:rate=25:duration=1",
             "-pix_fmt", "yuv420p", f"{folder}/clip.mp4"], check=True)
        with RunningProgram(program_path, folder) as program:
            root = program.root()
            crop_a_picture(root, folder)
            crop_a_film(root, folder)
            meet_an_alert(root, folder)


if __name__ == "__main__":
    main()
