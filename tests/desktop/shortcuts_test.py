"""Keys that are heard everywhere: recorded in the settings and pressed over another program's window, and those of a
portal that a stand-in plays."""

import pathlib
import signal
import sys

from harness import DesktopTest, holds_for, main, read_json, wait_for, wait_for_equal

ADDED_KEY = "Brevlin.addedPreferences.v1"
PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_PATH = "/org/freedesktop/portal/desktop"
ORANGE = (168, 84, 0)  # of what asks for attention, in the light scheme

# Back from the first control by shift+Tab, while no key is set and there is no history.
TO_THE_FIRST_KEY, TO_THE_DIALOG = 9, 5


HOLD_CTRL_ALT_K = """
import ctypes, time
x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
display = ctypes.c_void_p(x11.XOpenDisplay(None))
x11.XGrabKey(display, x11.XKeysymToKeycode(display, ord("k")), 4 | 8, x11.XDefaultRootWindow(display), 0, 1, 1)
x11.XSync(display, 0)
print("held", flush=True)
time.sleep(1000)
"""


class Shortcuts(DesktopTest):
    def setUp(self):
        super().setUp()
        self.desktop.set_preferences(1500, 300, 900, language="english")

    def open_at(self, control):
        """The settings' window, with the keyboard on this control."""
        self.desktop.press("ctrl+comma")
        window = self.desktop.wait_for_window("Settings")
        self.desktop.press(*["shift+Tab"] * control)
        return window

    def close_settings(self):
        self.desktop.press("Escape")
        wait_for("a closed window", lambda: not self.desktop.windows("Settings"))

    def wait_for_stored(self, action, key):
        wait_for_equal(key, f"the key of {action}",
                       lambda: (read_json(self.desktop.config / f"{ADDED_KEY}.json") or {}).get(f"{action}Shortcut"))

    def is_troubled(self, window):
        picture = self.desktop.picture(window)
        return bytes(ORANGE) in (picture[at:at + 3] for at in range(0, len(picture), 3))

    def is_running_after(self, key):
        self.desktop.press(key)
        try:
            return self.desktop.wait_for_state("running", 1)
        except AssertionError:
            return None

    def test_a_recorded_key_is_heard_over_other_windows_in_every_layout_and_after_a_restart(self):
        desktop = self.desktop
        process, _ = self.start_and_wait()
        self.open_at(TO_THE_FIRST_KEY)
        desktop.press("space", "q", "ctrl+alt+q")  # a letter alone is none
        self.wait_for_stored("toggle", "Ctrl+Alt+Q")
        # The key that is held already is another row's, and does nothing while somebody records.
        desktop.press("Tab", "Tab", "space", "Escape", "space", "ctrl+alt+q", "space", "ctrl+alt+shift+1")
        self.wait_for_stored("skip", "Ctrl+Alt+Shift+1")
        self.assertEqual(desktop.timer()["runState"], "idle")
        self.close_settings()
        desktop.cover()
        desktop.press("ctrl+alt+q")
        desktop.wait_for_state("running")
        for lock in ("Num_Lock", "Caps_Lock"):
            desktop.press(lock, "ctrl+alt+q")
            desktop.wait_for_state("paused")
            desktop.press("ctrl+alt+q")
            desktop.wait_for_state("running")
        desktop.ask("xdotool", "keydown", "ctrl", "keydown", "alt", "keydown", "q")
        paused = desktop.wait_for_state("paused")
        holds_for("one pause while the key repeats", lambda: desktop.timer() == paused, 1)
        desktop.ask("xdotool", "keyup", "q", "keyup", "alt", "keyup", "ctrl")
        desktop.ask("setxkbmap", "fr")  # where the Q is another key
        wait_for("a press of the new key", lambda: self.is_running_after("ctrl+alt+q"))
        desktop.ask("setxkbmap", "us")
        desktop.stop(process)

        desktop.start_program()
        desktop.wait_for_window()
        desktop.cover()
        desktop.press("ctrl+alt+shift+1")
        wait_for_equal("shortBreak", "the phase", lambda: desktop.timer()["phase"])

    def test_a_key_of_another_program_is_said_to_be_taken_until_it_is_free(self):
        desktop = self.desktop
        holder = desktop.run_in_background([sys.executable, "-c", HOLD_CTRL_ALT_K])
        wait_for("a key that is held", lambda: "held" in desktop.output_of(pathlib.Path(sys.executable).name))
        self.start_and_wait()
        window = self.open_at(TO_THE_FIRST_KEY)
        self.assertFalse(self.is_troubled(window))
        desktop.press("space", "ctrl+alt+k")
        self.wait_for_stored("toggle", "Ctrl+Alt+K")
        wait_for("a word about it", lambda: self.is_troubled(window))
        desktop.press("space", "alt+F4")  # the window manager's, while nobody records
        self.wait_for_stored("toggle", "Alt+F4")
        desktop.press("space", "BackSpace")
        self.wait_for_stored("toggle", None)
        wait_for("no word about it", lambda: not self.is_troubled(window))
        desktop.press("space", "ctrl+alt+k")
        wait_for("a word about it", lambda: self.is_troubled(window))
        self.close_settings()
        desktop.stop(holder)

        self.open_at(0)
        self.close_settings()
        desktop.cover()
        desktop.press("ctrl+alt+k")
        desktop.wait_for_state("running")

    def start_portal(self, bound=False):
        template = pathlib.Path(__file__).with_name("shortcuts_portal.py")
        parameters = '{"bound": true}' if bound else "{}"
        self.portal = self.desktop.start_mock("--template", str(template), "-p", parameters, name=PORTAL,
                                              path=PORTAL_PATH)
        return self.desktop.processes[-1]

    def calls(self):
        """The portal's methods in the order in which they were called."""
        return [str(name) for _, name, _ in self.portal.GetCalls() if name != "Press"]

    def wait_for_calls(self, *expected):
        wait_for_equal(list(expected), "the calls", self.calls)

    def test_a_portal_is_told_of_the_keys_on_a_click_alone_and_gives_them_after_every_start(self):
        desktop = self.desktop
        portal = self.start_portal()
        process, _ = self.start_and_wait()
        self.assertEqual(self.calls(), [], "who has no keys asks for none")
        self.open_at(TO_THE_DIALOG)
        self.wait_for_calls("Register")
        desktop.press("space")
        self.wait_for_calls("Register", "CreateSession", "ListShortcuts", "BindShortcuts")
        wait_for("what was bound", lambda: (read_json(desktop.config / f"{ADDED_KEY}.json") or {}).get(
            "hasBoundShortcutsOnce"))
        self.close_settings()
        self.portal.Press("toggle")
        desktop.wait_for_state("running")
        desktop.stop(process)

        self.portal.ClearCalls()
        desktop.start_program()
        self.wait_for_calls("Register", "CreateSession", "ListShortcuts")
        self.portal.Press("toggle")
        desktop.wait_for_state("paused")

        desktop.stop(portal, signal.SIGKILL)
        self.start_portal(bound=True)
        self.wait_for_calls("Register", "CreateSession", "ListShortcuts")
        self.portal.Press("toggle")
        desktop.wait_for_state("running")
        holds_for("no dialog without a click", lambda: "BindShortcuts" not in self.calls(), 0.5)


if __name__ == "__main__":
    main()
