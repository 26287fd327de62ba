"""What a screen reader finds, and what a real one says: every control of every screen, in both languages."""

import json
import pathlib
import re
import subprocess
import sys

import dbus

from harness import PREFERENCES_KEY, DesktopTest, main, read_json, wait_for

MAKE_HISTORY = pathlib.Path(__file__).resolve().parents[2] / "tools" / "make_history.py"
# A push button is called "button" since at-spi2-core 2.53.
CONTROLS = {"push button", "button", "check box", "radio button", "spin button", "toggle button", "link", "menu item",
            "page tab", "combo box", "text", "entry", "slider"}
SECTIONS = {"english": ["Focus", "History", "Statistics", "Settings", "About"],
            "zh-Hans": ["专注", "记录", "统计", "设置", "关于"]}
PAUSE = {"english": "Pause", "zh-Hans": "暂停"}
MORE = {"english": "More", "zh-Hans": "更多"}
# What the sections but the first must have, whatever else is there.
ROLES = ({"heading", "list", "list item"}, {"heading", "list", "list item", "radio button"},
         {"heading", "spin button", "check box", "radio button"}, {"heading", "link"})
SPOKEN_IN_BOTH = {"简体中文", "English", "Brevlin"}  # a language is offered under its own name
FOREIGN = {"english": re.compile("[\u4e00-\u9fff]"), "zh-Hans": re.compile("[A-Za-z]{3}|\ufffd")}

# Orca reads this file of the user's as it starts, and writes here what it says, a line each; an Orca of another display is
# none of its business. What it says it tells its log, by a function with another name in the Orca of each Debian.
SPEECH_TO_FILE = """
import __main__
from orca import debug
__main__.otherOrcas = list
name = "print_message" if hasattr(debug, "print_message") else "println"
tell = getattr(debug, name)
speech = open({path!r}, "a", encoding="utf-8", buffering=1)
def listen(level, text="", *options):
    if text.startswith("SPEECH OUTPUT: "):
        print(text, file=speech)
    tell(level, text, *options)
setattr(debug, name, listen)
"""


def walk():
    """In a process of its own with the desktop's bus: prints all that is there."""
    import pyatspi  # pylint: disable=import-outside-toplevel

    def visit(element, window, found):
        states = {pyatspi.stateToString(state) for state in element.getState().getStates()}
        if "showing" not in states:
            return
        entry = {"window": window, "role": element.getRoleName(), "name": element.name, "states": sorted(states)}
        if element.getRoleName() == "spin button":
            value = element.queryValue()
            entry["range"] = [value.minimumValue, value.currentValue, value.maximumValue]
        found.append(entry)
        for child in element:
            if child:
                visit(child, window, found)

    found = []
    for application in pyatspi.Registry.getDesktop(0):
        if application and application.name == "Brevlin":
            for window in application:
                visit(window, window.name, found)
    print(json.dumps(found))


class Orca(DesktopTest):
    def setUp(self):
        super().setUp()
        desktop = self.desktop
        desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        desktop.run_in_background(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        bus = desktop.bus()
        wait_for("the accessibility bus", lambda: bus.name_has_owner("org.a11y.Bus"))
        folder = desktop.home / ".local" / "share" / "orca"
        folder.mkdir(parents=True)
        self.speech = desktop.folder / "speech"
        (folder / "orca-customizations.py").write_text(SPEECH_TO_FILE.format(path=str(self.speech)))
        desktop.environment["SPEECHD_CMD"] = "/bin/false"  # nobody is there to listen
        desktop.run_in_background(["orca", "--disable=braille"])
        wait_for("Orca", lambda: self.said(0), 30)

    def elements(self, window=None):
        """All that is shown, each with a role and what can be used with a name of the user's language."""
        output = subprocess.run([sys.executable, __file__, "--walk"], env=self.desktop.environment, check=True,
                                stdout=subprocess.PIPE, timeout=30).stdout
        found = json.loads(output.splitlines()[-1])
        for element in found:
            role, name = element["role"], element["name"]
            self.assertNotIn(role, ("unknown", "invalid", "filler"), element)
            if role in CONTROLS | {"frame"} or "focusable" in element["states"]:
                self.assertTrue(name.strip(), element)
                if name not in SPOKEN_IN_BOTH:
                    self.assertIsNone(FOREIGN[self.language].search(name.replace("Brevlin", "")), element)
            if "range" in element:
                least, value, most = element["range"]
                self.assertTrue(least < most and least <= value <= most, element)
        return [element for element in found if window in (None, element["window"])]

    def open_panel(self):
        """As a bar of the desktop does it."""
        item = self.desktop.bus().get_object("com.quillmark.Brevlin", "/StatusNotifierItem")
        dbus.Interface(item, "org.kde.StatusNotifierItem").Activate(640, 10)

    def said(self, begin):
        """What Orca has said since, a line each."""
        text = self.speech.read_text("utf-8") if self.speech.exists() else ""
        return text.splitlines()[begin:]

    def hear(self, act, *texts):
        """All that Orca says after the act until it has said these texts."""
        begin = len(self.said(0))
        act()
        try:
            wait_for("", lambda: all(text in "\n".join(self.said(begin)) for text in texts))
        except AssertionError:
            self.fail(f"Orca was to say {texts}; it said {self.said(begin)}")
        return self.said(begin)

    def press(self, key, *texts):
        return self.hear(lambda: self.desktop.press(key), *texts)

    @staticmethod
    def spoken(element):
        """What Orca says of a control when the keyboard comes to it."""
        name, role = element["name"], element["role"]
        if role == "radio button":
            return [f"'{name}", "selected radio button"]
        if role == "check box":
            return [f"{name} check box {'checked' if 'checked' in element['states'] else 'not checked'}"]
        if role == "spin button":
            return [f"'{name} ", f" {element['range'][1]:.0f}", "spin button"]
        return [name, "List with"] if role == "list" else [f"{name} {role}"]

    @staticmethod
    def stops(elements):
        """What Tab reaches, in the order of the tree."""
        def is_stop(element):
            states, role = element["states"], element["role"]
            chosen = {"radio button": "checked", "page tab": "selected"}.get(role, "enabled")
            return role in CONTROLS | {"list"} and {"focusable", "enabled", chosen} <= set(states)

        return [element for element in elements if is_stop(element)]

    def tab_through(self, section):
        """From the selected section once around; the window's own buttons come last."""
        stops = self.stops(self.elements(window="Brevlin"))
        self.assertEqual(stops[0]["name"], section)
        for control in stops[4:]:
            begin = len(self.said(0))
            self.press("Tab", *self.spoken(control))
            if control["role"] == "list":
                items = [each["name"] for each in self.elements() if each["role"] == "list item"]
                wait_for(f"one of {items}", lambda: any(item in "".join(self.said(begin)) for item in items))
        for control in stops[1:4] + stops[:1]:
            self.press("Tab", *self.spoken(control))
        return stops[4:]

    def change_the_settings(self, controls):
        """The first stepper, switch and picker; from the selected section and back to it."""
        for place, control in enumerate(controls):
            self.press("Tab", *self.spoken(control))
            role = control["role"]
            if role in [each["role"] for each in controls[:place]]:
                continue
            if role == "spin button":
                # In its name or alone: after the first change Debian 13's Orca says the former value beside it.
                self.press("Up", f"{control['range'][1] + 1:.0f}")
            elif role == "check box":
                self.press("space", "'checked'")
            elif role == "radio button":
                names = [each["name"] for each in self.elements() if each["role"] == role]
                self.press("Right", f"'{names[names.index(control['name']) + 1]}", "selected radio button")
        stored = read_json(self.desktop.config / f"{PREFERENCES_KEY}.json")["timerSettings"]
        self.assertEqual((stored["focusDuration"], stored["autoStartBreaks"], stored["alertIntensity"]),
                         (60, True, "strong"))
        # The last one asks before it clears the history.
        self.press("space", " dialog ")
        dialog = [each for each in self.elements() if each["role"] == "dialog"][0]["name"]
        buttons = self.stops(self.elements(window=dialog))
        self.press("Tab", *self.spoken(buttons[0]))
        self.press("Tab", *self.spoken(buttons[1]))
        self.press("Escape", *self.spoken(controls[-1]))
        self.pass_own_buttons()

    def pass_own_buttons(self):
        """Tab leads from the last control over the window's own buttons back to the section."""
        for text in (" ", " ", " ", " page tab"):
            self.press("Tab", text)

    def start_and_end_a_phase(self, intention, start, pause):
        self.press("Tab", *self.spoken(intention))
        self.press("Tab", *self.spoken(start))
        begin = len(self.said(0))
        self.press("space", f"'{pause} ")
        wait_for("the end", lambda: "notification" in "".join(self.said(begin)))
        elements = self.elements()
        headline = [each["name"] for each in elements if each["role"] == "notification"][0]
        focused = [each for each in elements if {"focused", "focusable"} <= set(each["states"])][0]
        wait_for("the next phase", lambda: self.spoken(focused)[0] in "".join(self.said(begin)))
        # Without the key, and the role that the Orca of Debian 13 says by itself.
        said = [line for line in self.said(begin) if not re.search("'(space ?|notification)'", line)]
        # Once, and no second before it.
        self.assertEqual([line.count(headline) for line in said].count(1), 1, said)
        self.assertEqual(len(said), 3, said)
        self.pass_own_buttons()

    def start_and_be_heard(self, begin):
        """On a busy machine Orca now and then misses the window of a program that has just come; then it starts anew."""
        for _ in range(3):
            process, _ = self.start_and_wait()
            wait_for("the program on the accessibility bus", self.elements)
            try:
                wait_for("a label", lambda: any(each["role"] == "label" and each["name"] in "".join(self.said(begin))
                                                for each in self.elements(window="Brevlin")), 8)
                return
            except AssertionError:
                self.desktop.stop(process)
        raise AssertionError("Orca says nothing of the window")

    def listen_to_everything(self, language):
        self.language, sections = language, SECTIONS[language]
        begin = len(self.said(0))
        self.desktop.set_preferences(language=language)
        self.desktop.data.mkdir(parents=True)
        subprocess.run([sys.executable, MAKE_HISTORY, "--records", "9", "--days", "3",
                        self.desktop.data / "sessions-v1.json"], check=True)
        self.start_and_be_heard(begin)
        for element in self.elements(window="Brevlin"):
            if element["role"] == "label":
                wait_for(element["name"], lambda: element["name"] in "".join(self.said(begin)))
        self.press("Tab", f"'{sections[0]} page tab")
        intention, start = self.tab_through(sections[0])
        self.start_and_end_a_phase(intention, start, PAUSE[language])
        for section, roles in zip(sections[1:], ROLES):
            self.press("Right", f"'{section} page tab")
            self.assertLessEqual(roles, {element["role"] for element in self.elements()})
            controls = self.tab_through(section)
            if section == sections[3]:
                self.change_the_settings(controls)
        self.press("ctrl+comma", f"'{sections[3]} frame")
        self.press("Tab", *self.spoken(self.stops(self.elements(window=sections[3]))[0]))
        self.press("Escape", "Brevlin frame", f"'{sections[4]} page tab")
        self.hear(self.open_panel, " frame")
        more = [each for each in self.elements() if each["name"] == MORE[language]][0]
        for control in self.stops(self.elements(window=more["window"])):
            self.press("Tab", *self.spoken(control))
        self.press("Escape", f"'{sections[4]} page tab")
        self.desktop.press("Escape")  # once more, for the alert of the end
        self.desktop.wait_for_state("idle")

    def test_orca_says_every_control_and_what_becomes_of_it(self):
        self.listen_to_everything("english")

    def test_orca_says_it_in_chinese(self):
        self.listen_to_everything("zh-Hans")


if __name__ == "__main__":
    if sys.argv[1:2] == ["--walk"]:
        walk()
    else:
        main()
