#!/usr/bin/env python3
"""Makes one sheet a screen in build/contact-sheets/: the real program where there is little room, in both languages,
light and dark, to be looked at for cut texts.

Usage: tools/take_contact_sheets.py [-o FOLDER] [-p PROGRAM] [SCREEN …]     (default: all screens)
Each row of a sheet is a desk: 1024 x 600, 1920 x 1080 at 200 %, 1366 x 768 with text at 125 %.
Needs what take_pictures.py needs.
"""
import argparse
import pathlib
import subprocess
import tempfile

from pictured_program import ROOT, open_panel, press, running_program, turn_wheel, virtual_display

DESKS = (("1024x600", 96), ("1920x1080", 192), ("1366x768", 120))  # the screen and its dots per inch


def in_state(state):
    return state, "timer", lambda environment, window: window


def in_panel(state):
    return state, "timer", lambda environment, window: open_panel(environment)


def at_section(section, *keys, turns=0):
    def arrange(environment, window):
        if keys:
            press(environment, *keys)
        if turns:
            turn_wheel(environment, window, turns)
        return window
    return "idle", section, arrange


SCREENS = {
    **{f"focus-{state}": in_state(state) for state in ("idle", "running", "paused", "ringing")},
    **{f"panel-{state}": in_panel(state) for state in ("idle", "running", "paused", "ringing")},
    "history": at_section("history"),
    **{f"statistics-{period}": at_section("statistics", str(key))
       for key, period in enumerate(("day", "week", "month", "year"), 1)},
    **{f"statistics-{period}-below": at_section("statistics", str(key), turns=40)
       for key, period in enumerate(("day", "week", "month", "year"), 1)},
    **{f"settings-{turns}": at_section("settings", turns=turns) for turns in (0, 4, 8, 12, 40)},
    "about": at_section("about"),
}


def take(screen, program, display, folder, file, language, scheme):
    state, section, arrange = SCREENS[screen]
    with running_program(program, display, folder, state, language, scheme, section) as (environment, window):
        subprocess.run(["import", "-window", arrange(environment, window), file], env=environment, check=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("-o", "--output", type=pathlib.Path, default=ROOT / "build/contact-sheets")
    parser.add_argument("-p", "--program", type=pathlib.Path, default=ROOT / "build/release/src/brevlin")
    parser.add_argument("screens", nargs="*", metavar="SCREEN", choices=[*SCREENS, []])
    arguments = parser.parse_args()
    arguments.output.mkdir(parents=True, exist_ok=True)
    screens = arguments.screens or list(SCREENS)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for row, (size, dpi) in enumerate(DESKS):
            with virtual_display(folder, size, dpi) as display:
                for screen in screens:
                    for column, (language, scheme) in enumerate(
                            [("zh", "light"), ("en", "light"), ("zh", "dark"), ("en", "dark")]):
                        take(screen, arguments.program, display, folder, folder / f"{screen}-{row}-{column}.png",
                             language, scheme)
        for screen in screens:
            sheet = arguments.output / f"{screen}.png"
            rows = []
            for row in range(len(DESKS)):
                rows += ["(", *sorted(folder.glob(f"{screen}-{row}-[0-9].png")), "+append", ")"]
            subprocess.run(["convert", "-background", "#808080", "-bordercolor", "#808080", "-border", "12", *rows,
                            "-append", sheet], check=True)
            print(sheet)


if __name__ == "__main__":
    main()
