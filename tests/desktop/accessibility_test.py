"""What a screen reader finds: every control of every window has a name in the language, a role and its state."""

import json
import re
import subprocess
import sys

import dbus

from harness import DesktopTest, main, wait_for

CONTROLS = {"push button", "check box", "radio button", "spin button", "toggle button", "link", "menu item", "page tab",
            "combo box", "text", "entry", "slider"}
CHINESE = re.compile("[\u4e00-\u9fff]")
SPOKEN_IN_BOTH = {"简体中文", "English"}  # a language is offered under its own name


def walk(press):
    """In a process of its own with the desktop's bus: presses the named button, if any, and prints all that is there."""
    import pyatspi  # pylint: disable=import-outside-toplevel

    def visit(element, window, found):
        states = {pyatspi.stateToString(state) for state in element.getState().getStates()}
        if "showing" not in states and element.getRoleName() != "frame":
            return
        entry = {"window": window, "role": element.getRoleName(), "name": element.name, "states": sorted(states)}
        if element.getRoleName() == "spin button":
            value = element.queryValue()
            entry["range"] = [value.minimumValue, value.currentValue, value.maximumValue]
        found.append(entry)
        if press and element.name == press and element.getRoleName() in CONTROLS:
            element.queryAction().doAction(0)
        for child in element:
            if child:
                visit(child, window, found)

    found = []
    for application in pyatspi.Registry.getDesktop(0):
        if application and application.name == "Brevlin":
            for window in application:
                visit(window, window.name, found)
    print(json.dumps(found))


class Accessibility(DesktopTest):
    def setUp(self):
        super().setUp()
        self.desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self.desktop.run_in_background(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        bus = self.desktop.bus()
        wait_for("the accessibility bus", lambda: bus.name_has_owner("org.a11y.Bus"))

    def elements(self, press=""):
        output = subprocess.run([sys.executable, __file__, "--walk", press], env=self.desktop.environment, check=True,
                                stdout=subprocess.PIPE, timeout=30).stdout
        return json.loads(output.splitlines()[-1])

    def check(self, screen, elements):
        controls = [element for element in elements if element["role"] in CONTROLS]
        self.assertGreater(len(controls), 3, screen)
        for control in controls:
            told = f"{screen}: {control}"
            self.assertTrue(control["name"].strip(), told)
            self.assertIn("showing", control["states"], told)
            if screen == "timer":  # elsewhere some leave the keyboard to their neighbour
                self.assertIn("focusable", control["states"], told)
            if control["name"] not in SPOKEN_IN_BOTH:
                self.assertIsNone(CHINESE.search(control["name"]), told)
            if "range" in control:
                least, value, most = control["range"]
                self.assertTrue(least < most and least <= value <= most, told)
        return {(control["role"], "checked" in control["states"]) for control in controls}

    def test_a_screen_reader_finds_every_control(self):
        desktop = self.desktop
        desktop.set_preferences(focus=600, language="english")
        self.start_and_wait()
        wait_for("the program on the accessibility bus", self.elements)
        self.check("timer", self.elements())
        roles = set()
        for section in ("History", "Statistics", "About", "Settings"):
            self.elements(press=section)
            wait_for(f"the section {section}", lambda: self.elements())
            roles |= self.check(section, self.elements())
        self.assertGreaterEqual(roles, {("push button", False), ("spin button", False), ("check box", False),
                                        ("check box", True), ("radio button", False), ("radio button", True)})
        # The capsule and the settings' own window.
        desktop.press("ctrl+comma")
        title = "Settings"
        wait_for("the settings window", lambda: {element["window"] for element in self.elements()} >= {"Brevlin", title})
        self.check("settings window", [e for e in self.elements() if e["window"] == title])
        self.elements(press="Focus")
        wait_for("the timer's controls", lambda: [e for e in self.elements() if e["name"].startswith("Start ")])
        self.elements(press="Start Focus")
        desktop.wait_for_state("running")
        desktop.move_pointer(640, 33)
        wait_for("the wide capsule's controls", lambda: [
            element for element in self.elements()
            if element["name"] == "Add 5 minutes"])
        self.check("capsule", [e for e in self.elements() if e["window"] not in ("Brevlin", title)])

        # The panel of the status item, as a bar of the desktop opens it.
        item = desktop.bus().get_object("com.quillmark.Brevlin", "/StatusNotifierItem")
        dbus.Interface(item, "org.kde.StatusNotifierItem").Activate(640, 10)
        wait_for("the panel", lambda: [element for element in self.elements() if element["name"] == "More"])
        self.check("panel", self.elements())


if __name__ == "__main__":
    if sys.argv[1:2] == ["--walk"]:
        walk(sys.argv[2])
    else:
        main()
