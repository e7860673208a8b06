#!/usr/bin/python3
"""Meets the running program as an assistive tool does, over AT-SPI: finds the crop, its handles and
its fields and the controls of the panel, reads what they tell, and changes the crop and the
encoding through them."""

import argparse
import os
import tempfile

import pyatspi

from running_program import (
    BUTTON, FIELD, GROUP, SLIDER, NotYet, RunningProgram, expect, find, wait_for, write_png)

WIDTH, HEIGHT = 400, 300

CHOICE = ("radio button",)

CORNERS = ["Top left", "Top right", "Bottom right", "Bottom left"]
EDGES = ["Top", "Right", "Bottom", "Left"]


def place_of(item):
    return item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)


def is_seen(item):
    states = item.getState()
    return states.contains(pyatspi.STATE_VISIBLE) and states.contains(pyatspi.STATE_SHOWING)


def is_shown(crop, width, height, left, top):
    expect("the crop", crop.description, f"{width} × {height} pixels at {left}, {top}")
    place = place_of(crop)
    if not (place.width > 0 and abs(place.width / place.height - width / height) < 0.05):
        raise NotYet(f"the crop lies at {place}")
    return True


def has_handles(crop):
    whole = place_of(crop)
    for name in CORNERS + EDGES:
        handle = find(crop, f"{name} handle", SLIDER)
        if not handle:
            raise NotYet(f"there is no handle {name}")
        if not is_seen(handle) or not handle.getState().contains(pyatspi.STATE_FOCUSABLE):
            raise NotYet(f"the handle {name} cannot be used")
        place = place_of(handle)
        beside = (place.x + place.width <= whole.x + 1 or place.x >= whole.x + whole.width - 1
                  or place.y + place.height <= whole.y + 1
                  or place.y >= whole.y + whole.height - 1)
        if min(place.width, place.height) <= 0 or not beside:
            raise NotYet(f"the handle {name} lies at {place}, the crop at {whole}")
        value = handle.queryValue()
        span = WIDTH if name in ("Left", "Right") else HEIGHT
        expect(f"value of {name}", value.currentValue, 0)
        expect(f"range of {name}", (value.minimumValue, value.maximumValue), (0, span - 1))
    return True


def has_fields(crop, margins):
    for name, margin in margins.items():
        field = find(crop, f"{name} crop margin in pixels", FIELD)
        if not field or not is_seen(field) or place_of(field).width <= 0:
            raise NotYet(f"there is no field {name}")
        expect(f"field {name}", field.queryText().getText(0, -1), margin)
    return True


def change_a_value(crop):
    right = find(crop, "Right handle", SLIDER)
    right.queryValue().currentValue = 40
    wait_for("the right margin", lambda: right.queryValue().currentValue == 40)
    wait_for("the narrower crop", lambda: is_shown(crop, WIDTH - 40, HEIGHT, 0, 0))


def move_a_corner(crop):
    corner = find(crop, "Top left handle", SLIDER)
    action = corner.queryAction()
    names = [action.getName(index) for index in range(action.nActions)]
    action.doAction(names.index("MoveDown"))
    wait_for("the moved corner", lambda: corner.description == "Top 1, left 0 pixels")
    corner.queryComponent().grabFocus()
    wait_for("the focus", lambda: corner.getState().contains(pyatspi.STATE_FOCUSED))


def type_a_margin(crop):
    left = find(crop, "Left crop margin in pixels", FIELD)
    left.queryEditableText().setTextContents("12")
    wait_for("the typed margin", lambda: is_shown(crop, WIDTH - 52, HEIGHT - 1, 12, 1))


def is_chosen(item):
    return item.getState().contains(pyatspi.STATE_CHECKED)


def press(item):
    item.queryAction().doAction(0)


def change_the_encoding(root):
    formats = wait_for("the formats", lambda: find(root, "Format", GROUP))
    choice = {name: find(formats, name, CHOICE) for name in ("PNG", "JPEG")}
    wait_for("the chosen format", lambda: is_chosen(choice["PNG"]) and not is_chosen(choice["JPEG"]))
    press(choice["JPEG"])
    quality = wait_for("the quality", lambda: find(root, "JPEG quality", SLIDER))
    wait_for("the seen quality", lambda: is_seen(quality) and is_chosen(choice["JPEG"]))
    value = quality.queryValue()
    expect("the quality", (value.currentValue, value.minimumValue, value.maximumValue), (0.9, 0, 1))
    value.currentValue = 0.4
    wait_for("the lower quality", lambda: quality.queryValue().currentValue == 0.4)
    press(find(root, "Reset Quality", BUTTON))
    wait_for("the quality as it was", lambda: quality.queryValue().currentValue == 0.9)


def step_and_reset(root, crop):
    press(find(root, "Increase Top", BUTTON))
    wait_for("the stepped margin", lambda: is_shown(crop, WIDTH - 52, HEIGHT - 2, 12, 2))
    press(find(root, "Reset Crop", BUTTON))
    wait_for("the whole picture again", lambda: is_shown(crop, WIDTH, HEIGHT, 0, 0))


def meet(root):
    crop = wait_for("the crop", lambda: find(root, "Crop", GROUP))
    wait_for("the whole picture", lambda: is_shown(crop, WIDTH, HEIGHT, 0, 0))
    wait_for("the handles", lambda: has_handles(crop))
    wait_for("the fields", lambda: has_fields(crop, dict.fromkeys(EDGES, "0")))
    change_a_value(crop)
    move_a_corner(crop)
    type_a_margin(crop)
    wait_for("the new margins", lambda: has_fields(
        crop, {"Left": "12", "Top": "1", "Right": "40", "Bottom": "0"}))
    step_and_reset(root, crop)
    change_the_encoding(root)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    program_path = parser.parse_args().program
    with tempfile.TemporaryDirectory() as folder:
        # A name that is no UTF-8.
        picture = os.fsencode(folder) + b"/Bl\xfcte.png"
        write_png(picture, WIDTH, HEIGHT)
        with RunningProgram(program_path, folder, picture) as program:
            meet(program.root())


if __name__ == "__main__":
    main()
