#!/usr/bin/env python3
"""Takes the pictures of docs/pictures/: the real program on a virtual display, in every state, language and scheme.

Usage: tools/take_pictures.py [PROGRAM]     (default: build/release/src/brevlin)
Needs Xvfb, xrdb, openbox, dbus-daemon, xdotool and ImageMagick.
"""
import pathlib
import subprocess
import sys
import tempfile

from pictured_program import ROOT, open_panel, press, running_program, turn_wheel, virtual_display

PICTURES = ROOT / "docs" / "pictures"
PROGRAM = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release/src/brevlin")


def keep(window, name, environment):
    target = PICTURES / f"{name}.png"
    subprocess.run(["import", "-window", window, "-strip", target], env=environment, check=True)
    print(target.relative_to(ROOT))


def take(state, language, scheme, display, folder, section="timer"):
    with running_program(PROGRAM, display, folder, state, language, scheme, section) as (environment, window):
        if section == "timer":
            keep(window, f"dashboard-{state}-{language}-{scheme}", environment)
            if state in ("idle", "running"):
                keep(open_panel(environment), f"panel-{state}-{language}-{scheme}", environment)
        elif section == "statistics":
            for key, period in enumerate(("day", "week", "month", "year"), 1):
                press(environment, str(key))
                keep(window, f"{section}-{period}-{language}-{scheme}", environment)
        else:
            keep(window, f"{section}-{language}-{scheme}", environment)
            if section == "settings":
                turn_wheel(environment, window, 40)
                keep(window, f"{section}-scrolled-{language}-{scheme}", environment)


def main():
    PICTURES.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        with virtual_display(folder) as display:
            for language in ("zh", "en"):
                for scheme in ("light", "dark"):
                    for state in ("idle", "running", "paused", "ringing"):
                        take(state, language, scheme, display, folder)
                    for section in ("settings", "about", "history", "statistics"):
                        take("idle", language, scheme, display, folder, section)
    subprocess.run(["convert", PICTURES / "dashboard-running-zh-light.png", PICTURES / "dashboard-paused-en-dark.png",
                    "-bordercolor", "none", "-border", "12", "+append", "-resize", "1400x", "-strip",
                    PICTURES / "overview.png"], check=True)


if __name__ == "__main__":
    main()
