"""The settings, changed by keyboard and by mouse in both of their places, and what is on the disk afterwards."""

from harness import PREFERENCES_KEY, SECTION_KEY, DesktopTest, main, read_json, wait_for, wait_for_equal

DEFAULTS = {
    "timerSettings": {"focusDuration": 1500, "shortBreakDuration": 300, "longBreakDuration": 900,
                      "focusSessionsPerLongBreak": 4, "autoStartBreaks": False, "autoStartFocus": False,
                      "alertIntensity": "standard"},
    "showTopCapsuleWhileRunning": True, "playCompletionSound": True, "topTimerAppearance": "dark",
    "appLanguage": "zh-Hans"}
OTHERS = {
    "timerSettings": {"focusDuration": 2520, "shortBreakDuration": 360, "longBreakDuration": 840,
                      "focusSessionsPerLongBreak": 5, "autoStartBreaks": True, "autoStartFocus": True,
                      "alertIntensity": "strong"},
    "showTopCapsuleWhileRunning": False, "playCompletionSound": False, "topTimerAppearance": "light",
    "appLanguage": "english"}
# From one control to the next by Tab, and the keys that change it. Three are passed by: the question about time away, the
# button of the notification row, which is there because there is no server, and the language, which is changed last.
KEYS = (("4", "2", "Return"), ("Up",), ("Down",), ("Up",), ("space",), ("space",), (), ("Right",), ("space",), (), (),
        ("Left",), ("space",))

# Places in the window of its own, in pixels from its corner, while it is not scrolled.
PLUS, MINUS = (484, 72), (445, 72)
SWITCHES = {"autoStartBreaks": (480, 255), "autoStartFocus": (480, 301)}
GENTLE, STRONG = (290, 462), (456, 462)


class Settings(DesktopTest):
    def stored(self):
        return read_json(self.desktop.config / f"{PREFERENCES_KEY}.json")

    def timer_settings(self):
        return self.stored()["timerSettings"]

    def wait_for_stored(self, expected):
        wait_for_equal(expected, "the preferences", self.stored)

    def start_in_settings(self):
        self.desktop.config.mkdir(mode=0o700, parents=True, exist_ok=True)
        (self.desktop.config / f"{SECTION_KEY}.json").write_text('"settings"')
        return self.start_and_wait()

    def open_window(self, title):
        self.desktop.press("ctrl+comma")
        return self.desktop.wait_for_window(title)

    def test_every_setting_is_changed_by_keyboard_and_outlives_the_program(self):
        desktop = self.desktop
        desktop.set_preferences(1500, 300, 900, sound=True)
        process, _ = self.start_and_wait()
        self.open_window("设置")
        for keys in KEYS[:9]:
            desktop.press("Tab", *keys)
        wait_for("no sound", lambda: not self.stored()["playCompletionSound"])
        self.assertTrue(self.stored()["showTopCapsuleWhileRunning"], "the sound's switch is the sound's")
        for keys in KEYS[9:]:
            desktop.press("Tab", *keys)
        wait_for("the changed capsule", lambda: not self.stored()["showTopCapsuleWhileRunning"])
        desktop.press("shift+Tab", "shift+Tab", "Right")
        self.wait_for_stored(OTHERS)
        desktop.wait_for_window("Settings")
        desktop.press("Escape")
        wait_for("a closed window", lambda: not desktop.windows("Settings"))
        desktop.stop(process)

        self.start_in_settings()
        self.wait_for_stored(OTHERS)
        self.open_window("Settings")
        # To the last controls from the other end: backups, import and then the defaults, as there is nothing to clear.
        desktop.press("shift+Tab", "shift+Tab", "shift+Tab", "space")
        self.wait_for_stored(DEFAULTS)
        desktop.wait_for_window("设置")
        desktop.press("ctrl+w")
        wait_for("a closed window", lambda: not desktop.windows("设置"))
        self.assertTrue(desktop.windows(), "the main window stays")

    def test_settings_are_changed_by_mouse_and_both_places_agree(self):
        desktop = self.desktop
        desktop.set_preferences(1500, 300, 900, language="english", sound=True)
        _, main_window = self.start_in_settings()
        desktop.ask("xdotool", "windowmove", str(main_window), "0", "0")
        before = desktop.picture(main_window)
        window = self.open_window("Settings")
        desktop.ask("xdotool", "mousemove", "--window", str(window), *map(str, PLUS), "mousedown", "1")
        wait_for("a number that runs while the button is held", lambda: self.timer_settings()["focusDuration"] >= 1800)
        desktop.ask("xdotool", "mouseup", "1")
        for name, place in SWITCHES.items():
            desktop.click(window, *place)
            wait_for(name, lambda name=name: self.timer_settings()[name])
        held = self.timer_settings()["focusDuration"]  # what was pressed since is stored, so this stands still
        desktop.click(window, *MINUS)
        wait_for("one minute less", lambda: self.timer_settings()["focusDuration"] == held - 60)
        desktop.click(window, *STRONG)
        wait_for("strong alerts", lambda: self.timer_settings()["alertIntensity"] == "strong")
        desktop.click(window, *GENTLE)
        wait_for("gentle alerts", lambda: self.timer_settings()["alertIntensity"] == "gentle")
        desktop.press("Escape")
        wait_for("a closed window", lambda: not desktop.windows("Settings"))
        self.assertNotEqual(desktop.picture(main_window), before, "the section shows the same values")


if __name__ == "__main__":
    main()
