#!/usr/bin/env python3
"""Makes the fonts that Brevlin brings along, from packaged ones and for the characters of its own texts only.

Usage: tools/make_fonts.py list SOURCES OUTPUT     writes the characters beyond ASCII of all sources below a folder
       tools/make_fonts.py make LIST FOLDER        writes the fonts, and characters.inc: what they cover

Needs fontTools (https://fonttools.readthedocs.io/en/latest/subset/) and the packages named in FONTS. Inter and Noto Sans CJK
are under the SIL Open Font License 1.1, DejaVu under that of Bitstream Vera; both want another name for what is changed.
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


if __name__ == "__main__":
    if len(sys.argv) != 4 or sys.argv[1] not in ("list", "make"):
        sys.exit(__doc__)
    if sys.argv[1] == "list":
        list_characters(pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3]))
    else:
        make_fonts(pathlib.Path(sys.argv[2]).read_text(), pathlib.Path(sys.argv[3]))
