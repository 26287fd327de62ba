#!/usr/bin/env python3
"""Writes docs/dbus.md from the description of the interface, in which a comment stands before what it is about.

make_bus_document.py [--check]: with it nothing is written, and the exit status tells whether it would change.
"""
import pathlib
import sys
import xml.etree.ElementTree as xml

ROOT = pathlib.Path(__file__).resolve().parent.parent
DESCRIPTION = ROOT / "src" / "remote" / "com.quillmark.Brevlin.Timer1.xml"
DOCUMENT = ROOT / "docs" / "dbus.md"

HEAD = """# The timer on the session bus

Name `com.quillmark.Brevlin`, object `/com/quillmark/Brevlin`, interface `{name}`. This page is made from
[its description](../src/remote/{file}) by `tools/make_bus_document.py`; packages install the description below
`/usr/share/dbus-1/interfaces/`, for what generates clients. Beside it the object has `org.freedesktop.Application`, whose
actions are the sections of the window (`timer`, `history`, `statistics`, `settings`, `about`) and the verbs of
[brevlin(1)](../src/command/line/commands.toml), which act without a window.

{text}

```sh
gdbus call --session -d com.quillmark.Brevlin -o /com/quillmark/Brevlin -m {name}.Start "{{'intention': <'Chapter 3'>}}"
gdbus monitor --session -d com.quillmark.Brevlin -o /com/quillmark/Brevlin
```
"""


def with_comments(parent):
    """Each element below the parent with the comment before it."""
    comment = ""
    for each in parent:
        if each.tag is xml.Comment:
            comment = " ".join(each.text.split())
        else:
            yield each, comment
            comment = ""


def arguments(element, direction):
    return ", ".join(f"{arg.get('name')} {arg.get('type')}" for arg in element.iter("arg")
                     if arg.get("direction", "out") == direction)


def document():
    root = xml.parse(DESCRIPTION, xml.XMLParser(target=xml.TreeBuilder(insert_comments=True))).getroot()
    (interface, text), = with_comments(root)
    lines = [HEAD.format(name=interface.get("name"), file=DESCRIPTION.name, text=text)]
    members = list(with_comments(interface))
    lines += ["## Properties", "", "All can be read, none written.", "", "| name | type | |", "| --- | --- | --- |"]
    for element, comment in members:
        if element.tag == "property":
            lines.append(f"| `{element.get('name')}` | `{element.get('type')}` | {comment} |")
    lines += ["", "## Methods", ""]
    for element, comment in members:
        if element.tag == "method":
            returned = arguments(element, "out")
            lines += [f"- `{element.get('name')}({arguments(element, 'in')})`" +
                      (f" gives `{returned}`" if returned else "") + f": {comment}"]
    lines += ["", "## Signals", ""]
    for element, comment in members:
        if element.tag == "signal":
            lines += [f"- `{element.get('name')}({arguments(element, 'out')})`: {comment}"]
    lines += ["- `org.freedesktop.DBus.Properties.PropertiesChanged` for every change of the properties above but `Remaining`."]
    return "\n".join(lines) + "\n"


def main():
    text = document()
    if "--check" in sys.argv[1:]:
        if not DOCUMENT.exists() or DOCUMENT.read_text(encoding="utf-8") != text:
            sys.exit("docs/dbus.md is not what tools/make_bus_document.py writes")
    else:
        DOCUMENT.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
