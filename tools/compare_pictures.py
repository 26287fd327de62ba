#!/usr/bin/env python3
"""Takes every screen with two programs, one after the other, and tells where a pixel differs; keeps those pictures.

Usage: tools/compare_pictures.py BEFORE [AFTER]     (default of AFTER: build/release/src/brevlin)
Both languages, light and dark, 1x and 2x. Pictures that differ stand in build/differences. Needs what take_pictures.py needs.
"""
import pathlib
import subprocess
import sys
import tempfile

from pictured_program import ROOT, virtual_display
from take_contact_sheets import SCREENS, take

DIFFERENCES = ROOT / "build" / "differences"
ATTEMPTS = 2  # the minute, or a fade of the clock, may lie between two pictures


def differing_pixels(first, second):
    result = subprocess.run(["compare", "-metric", "AE", first, second, "null:"], capture_output=True, text=True,
                            check=False)
    return result.stderr.strip()


def main():
    before = pathlib.Path(sys.argv[1])
    after = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else ROOT / "build/release/src/brevlin")
    DIFFERENCES.mkdir(parents=True, exist_ok=True)
    compared = different = 0
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for size, dpi in (("1280x900", 96), ("2560x1800", 192)):
            with virtual_display(folder, size, dpi) as display:
                for screen in SCREENS:
                    if screen.endswith("running"):
                        continue  # its clock runs
                    for language in ("zh", "en"):
                        for scheme in ("light", "dark"):
                            case = f"{screen}-{language}-{scheme}-{dpi}"
                            files = [DIFFERENCES / f"{case}-{which}.png" for which in ("before", "after")]
                            for _ in range(ATTEMPTS):
                                for program, file in zip((before, after), files):
                                    take(screen, program, display, folder, file, language, scheme)
                                pixels = differing_pixels(*files)
                                if pixels == "0":
                                    break
                            compared += 1
                            if pixels == "0":
                                for file in files:
                                    file.unlink()
                            else:
                                different += 1
                                print(f"{case}: {pixels} pixels differ", flush=True)
    print(f"{compared} pictures, {different} differ")
    sys.exit(1 if different else 0)


if __name__ == "__main__":
    main()
