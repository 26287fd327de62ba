#!/usr/bin/python3
"""Takes the capsule's pictures of docs/pictures/: the real program on a virtual display, in its four states, three
appearances and both languages, and the moving picture of the README.

Usage: tools/take_capsule_pictures.py [PROGRAM]     (default: build/release/src/brevlin)
Needs what the desktop tests need.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
os.environ["BREVLIN_PROGRAM"] = str(pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else
                                                 ROOT / "build/release/src/brevlin").resolve())
sys.path.insert(0, str(ROOT / "tests/desktop"))
sys.dont_write_bytecode = True

from harness import Desktop, wait_for  # noqa: E402

PICTURES = ROOT / "docs" / "pictures"
AREA = (370, 0, 600, 142)  # of the screen, around the capsule at its first place
BACKDROP = "#a9b8c9"

PLAIN_BACKDROP = """<openbox_config xmlns="http://openbox.org/3.4/rc"><applications>
<application title="Backdrop"><decor>no</decor><maximized>yes</maximized></application>
</applications></openbox_config>"""


class Stage:
    """A desktop with a compositor, a plain backdrop and the capsule of a focus phase that ends soon."""

    def __init__(self, language, appearance, remaining):
        self.desktop = Desktop()
        desktop = self.desktop
        rules = desktop.folder / "openbox.xml"
        rules.write_text(PLAIN_BACKDROP)
        desktop.start_display(("openbox", "--sm-disable", "--config-file", str(rules)))
        desktop.start_bus()
        desktop.run_in_background(["picom", "--backend", "xrender", "--config", "/dev/null"])
        wait_for("a compositor", lambda: desktop.ask("xdotool", "search", "--name", "picom"))
        desktop.run_in_background(["xmessage", "-bg", BACKDROP, "-fg", BACKDROP, "-buttons", "", "-title", "Backdrop", " "])
        wait_for("the backdrop", lambda: desktop.windows("Backdrop"))
        desktop.set_preferences(focus=1500, short_break=300, language=language, appearance=appearance)
        now = time.time() - 978307200
        desktop.store_timer({"phase": "focus", "runState": "running", "plannedDuration": 1500,
                             "accumulatedPauseSeconds": 0, "interruptionCount": 0, "completedFocusCount": 2,
                             "sessionID": "6D0C54C4-37FC-4D42-8BF4-2D4D1B0A8C11", "startedAt": now + remaining - 1500,
                             "expectedEndAt": now + remaining})
        desktop.move_pointer(640, 500)
        desktop.start_program()
        window = desktop.wait_for_window()
        desktop.ask("xdotool", "windowminimize", str(window))
        time.sleep(0.8)

    def picture(self, name):
        left, top, width, height = AREA
        subprocess.run(["import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "+repage", "-strip", name],
                       env=self.desktop.environment, check=True)

    def point(self, x, y, *then):
        self.desktop.move_pointer(x, y)
        if then:
            self.desktop.ask("xdotool", *then)
        # Until every motion has ended, and before the help appears.
        time.sleep(0.5)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.desktop.close()


def take_states(language, appearance, folder):
    """The circle, the wide capsule, the island and the minimised one; the files."""
    files = [folder / f"{language}-{appearance}-{state}.png" for state in range(4)]
    with Stage(language, appearance, remaining=944.5) as stage:
        stage.picture(files[0])
        stage.point(640, 33)
        stage.picture(files[1])
    with Stage(language, appearance, remaining=3) as stage:
        stage.desktop.wait_for_state("ringing")
        time.sleep(0.8)
        stage.picture(files[2])
        stage.point(410 + 460 - 20 - 27 - 12 - 14, 47, "click", "1")
        stage.point(640, 500)
        stage.picture(files[3])
    return files


def take_motion(folder, target):
    """A hover, and the end of a phase, as they move."""
    frames = []

    def record(seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            file = folder / f"frame-{len(frames):03}.png"
            frames.append((file, time.monotonic()))
            stage.picture(file)

    with Stage("english", "dark", remaining=5.2) as stage:
        record(0.5)
        stage.desktop.move_pointer(640, 33)
        record(1.1)
        stage.desktop.move_pointer(640, 300)
        record(3.4)
        record(1.2)
    command = ["convert", "-loop", "0"]
    for (file, start), following in zip(frames, [*frames[1:], None]):
        hundredths = round((following[1] - start) * 100) if following else 150
        command += ["-delay", str(max(hundredths, 2)), str(file)]
    subprocess.run([*command, "-layers", "OptimizeTransparency", "-colors", "64", "+dither", "-layers", "Optimize", target],
                   check=True)


def main():
    PICTURES.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        take_motion(folder, PICTURES / "capsule.gif")
        for language, short in (("zh-Hans", "zh"), ("english", "en")):
            columns = []
            for appearance in ("systemBlur", "light", "dark"):
                files = take_states(language, appearance, folder)
                column = folder / f"{short}-{appearance}.png"
                subprocess.run(["convert", *files, "-append", column], check=True)
                columns.append(column)
            subprocess.run(["convert", *columns, "+append", "-strip", PICTURES / f"capsule-{short}.png"], check=True)


if __name__ == "__main__":
    main()
