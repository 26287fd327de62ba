#!/usr/bin/env python3
"""Makes the fonts that Brevlin brings along, from packaged ones and for the characters of its own texts only.

Usage: tools/make_fonts.py list SOURCES OUTPUT     writes the characters beyond ASCII of all sources below a folder
       tools/make_fonts.py make LIST FOLDER        writes the fonts, and characters.inc: what they cover
       tools/make_fonts.py license OURS OUTPUT     writes Brevlin's file of copyrights with those of the fonts

Needs fontTools (https://fonttools.readthedocs.io/en/latest/subset/) and the packages named in FONTS. Inter and Noto Sans
CJK are under the SIL Open Font License 1.1, DejaVu under that of Bitstream Vera; what is changed has another name.
"""
import pathlib
import sys

FOLDER = pathlib.Path("/usr/share/fonts")
LATIN = [*range(0x20, 0x180), *range(0x2010, 0x2060), *range(0x20a0, 0x20c0), *range(0x2190, 0x2194), 0x2212]
FIGURES = [ord(character) for character in "0123456789:"]
# What the calendar's locale data adds to the program's own words.
CHINESE_DATES = "年月日时分秒周星期一二三四五六七八九十上下午凌晨早中晚"
# Ours: the family, and by weight the packaged file, its package, and which font of a collection.
FONTS = {
    "latin": ("Brevlin Latin", "Inter-{}.otf", "fonts-inter", None, ("Regular", "Medium", "SemiBold", "Bold")),
    "chinese": ("Brevlin Chinese", "NotoSansCJK-{}.ttc", "fonts-noto-cjk", "Noto Sans CJK SC", ("Regular", "Bold")),
    "figures": ("Brevlin Figures", "DejaVuSansMono-{}.ttf", "fonts-dejavu-core", None, ("Bold",)),
}


def list_characters(sources, output):
    characters = set(CHINESE_DATES)
    for path in sources.rglob("*"):
        if path.suffix in (".cpp", ".h"):
            characters |= {character for character in path.read_text() if ord(character) > 0x7f}
    text = "".join(sorted(characters))
    if not output.exists() or output.read_text() != text:
        output.write_text(text)


def packaged(name, package):
    found = sorted(FOLDER.rglob(name))
    if not found:
        sys.exit(f"make_fonts.py: there is no {name} below {FOLDER}; the package {package} brings it")
    return found[0]


def make_font(source, member, family, weight, characters, output):
    """A font with these characters only; the characters that it got."""
    from fontTools import subset
    from fontTools.ttLib import TTCollection

    options = subset.Options()
    options.hinting = False  # the program draws without
    options.drop_tables += ["FFTM"]
    if member:
        names = [font["name"].getDebugName(1) for font in TTCollection(source).fonts]
        options.font_number = names.index(member)
    font = subset.load_font(str(source), options)
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=characters)
    subsetter.subset(font)
    # By name ID: family, weight, what identifies it, full name, PostScript name, and the first two once more.
    names = {1: family, 2: weight, 3: f"{family} {weight}", 4: f"{family} {weight}",
             6: f"{family}-{weight}".replace(" ", ""), 16: family, 17: weight}
    for record in font["name"].names:
        record.string = names.get(record.nameID, record.toUnicode())
    subset.save_font(font, str(output), options)
    return set(font.getBestCmap())


def make_fonts(characters, folder):
    folder.mkdir(parents=True, exist_ok=True)
    wanted = {ord(character) for character in characters}
    sets = {"latin": {*LATIN, *(code for code in wanted if code < 0x2e80)},
            "chinese": {code for code in wanted if code >= 0x2e80}, "figures": set(FIGURES)}
    covered = set()
    for name, (family, pattern, package, member, weights) in FONTS.items():
        for weight in weights:
            source = packaged(pattern.format(weight), package)
            covered |= make_font(source, member, family, weight, sets[name],
                                 folder / f"{name}-{weight}.font")
    missing = wanted - covered
    if missing:
        sys.exit(f"make_fonts.py: no font has {' '.join(map(chr, sorted(missing)))}")
    lines = "".join(f"{code:#x},\n" for code in sorted(covered))
    (folder / "characters.inc").write_text(lines)


def add_licenses(ours, output):
    """Each packaged file of copyrights says in its first stanza about all files who made them and under what."""
    text = ours.read_text().rstrip() + "\n"
    known = set()
    for _, pattern, package, _, _ in FONTS.values():
        stanzas = pathlib.Path(f"/usr/share/doc/{package}/copyright").read_text().split("\n\n")
        about = next(stanza for stanza in stanzas if stanza.lstrip().startswith("Files: *"))
        copyright_line, license_part = about[about.index("Copyright:"):].split("\nLicense:")
        name = license_part.split("\n")[0].split(" and ")[0].strip()
        copyright_line = "\n".join(line for line in copyright_line.split("\n") if line.strip())
        text += (f"\nFiles: {pattern.format('*')}\n{copyright_line}\nLicense: {name}\n"
                 "Comment: Some characters of it are part of the program.\n")
        if name not in known:
            known.add(name)
            full = next((stanza for stanza in stanzas if stanza.startswith(f"License: {name}\n")), None)
            text += "\n" + (full or f"License: {name}\n" + license_part.split("\n", 1)[1]).rstrip() + "\n"
    output.write_text(text)


if __name__ == "__main__":
    if len(sys.argv) != 4 or sys.argv[1] not in ("list", "make", "license"):
        sys.exit(__doc__)
    source, target = pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    if sys.argv[1] == "list":
        list_characters(source, target)
    elif sys.argv[1] == "make":
        make_fonts(source.read_text(), target)
    else:
        add_licenses(source, target)
