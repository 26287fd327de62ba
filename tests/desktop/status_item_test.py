"""The status item on the desktops that show one: Xfce's panel, Ayatana's service and a tray of the older kind."""

import pathlib
import re
import shutil

import dbus

from harness import SECTION_KEY, DesktopTest, holds_for, main, read_json, wait_for

AYATANA = "/usr/libexec/ayatana-indicator-application/ayatana-indicator-application-service"
WATCHER = "org.kde.StatusNotifierWatcher"

FOCUS_RED = (221, 45, 74)


class StatusItemTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.desktop.set_preferences(focus=1500.0, language="english")
        self.process, self.window = self.start_and_wait()
        self.bus = self.desktop.bus()

    def item(self):
        """Everything that a host reads of the item."""
        item = self.bus.get_object("com.quillmark.Brevlin", "/StatusNotifierItem")
        return dbus.Interface(item, dbus.PROPERTIES_IFACE).GetAll("org.kde.StatusNotifierItem")

    def menu(self):
        """The interface of the menu and its rows: text to identifier."""
        menu = dbus.Interface(self.bus.get_object("com.quillmark.Brevlin", "/StatusNotifierItem/Menu"),
                              "com.canonical.dbusmenu")
        _, (_, _, rows) = menu.GetLayout(0, -1, [])
        return menu, {str(row[1]["label"]): row[0] for row in rows if "label" in row[1]}

    def choose(self, text):
        menu, rows = self.menu()
        menu.Event(rows[text], "clicked", "", dbus.UInt32(0))

    def start_ayatana(self):
        process = self.desktop.run_in_background([AYATANA])
        wait_for("Ayatana's service", lambda: self.bus.name_has_owner("org.ayatana.indicator.application"))
        return process

    def ayatana_labels(self):
        service = self.bus.get_object("org.ayatana.indicator.application", "/org/ayatana/indicator/application/service")
        applications = dbus.Interface(service, "org.ayatana.indicator.application.service").GetApplications()
        return [str(application[5]) for application in applications]

    def panel(self):
        """The item's panel, or nothing while it is closed."""
        shown = self.desktop.ask("xdotool", "search", "--onlyvisible", "--name", "^Brevlin$").split()
        return next((int(window) for window in shown if int(window) != self.window), None)

    def has_red(self, rectangle):
        crop = "{2}x{3}+{0}+{1}".format(*rectangle)
        pixels = self.desktop.picture("root", "-crop", crop, "+repage")
        return bytes(FOCUS_RED) in pixels

    def start_in_the_panel_and_close_it(self, spot):
        """Gives where the panel lay, once a second click on the item has closed it."""
        self.desktop.click_at(*spot)
        x, y, width, height = self.desktop.geometry(wait_for("the panel", self.panel))
        self.desktop.click_at(x + width // 2, y + height - 28)
        self.desktop.wait_for_state("running")
        self.desktop.click_at(*spot)
        wait_for("a closed panel", lambda: not self.panel())
        holds_for("a panel that a second click has closed", lambda: not self.panel(), 0.6)
        return x, y, width, height

    def test_xfce_shows_the_item_and_a_click_opens_its_panel(self):
        self.desktop.run_in_background(["xfwm4", "--replace", "--compositor=off"])
        wait_for("xfwm4", lambda: "Xfwm4" in self.desktop.ask("wmctrl", "-m"))
        folder = self.desktop.home / ".config/xfce4/xfconf/xfce-perchannel-xml"
        folder.mkdir(parents=True)
        shutil.copy(pathlib.Path(__file__).with_name("xfce4-panel.xml"), folder)
        self.desktop.run_in_background([str(next(pathlib.Path("/usr/lib").glob("*/xfce4/xfconf/xfconfd")))])
        wait_for("Xfce's settings", lambda: self.bus.name_has_owner("org.xfce.Xfconf"))
        self.desktop.run_in_background(["xfce4-panel", "--disable-wm-check"])
        icon = (4, 4, 24, 24)
        wait_for("the logo in Xfce's panel", lambda: self.has_red(icon), 15)

        _, y, width, _ = self.start_in_the_panel_and_close_it((16, 15))
        self.assertEqual(width, 300)
        self.assertGreaterEqual(y, 30, "below the desktop's own panel")
        self.desktop.click_at(16, 15)
        wait_for("the panel again", self.panel)
        self.desktop.press("space")
        self.desktop.wait_for_state("paused")
        self.desktop.press("Escape")
        wait_for("a panel closed by Escape", lambda: not self.panel())
        self.desktop.click_at(16, 15)
        wait_for("the panel once more", self.panel)
        self.desktop.click_at(1200, 850)
        wait_for("a panel closed by a click elsewhere", lambda: not self.panel())

    def test_ayatana_shows_the_clock_beside_the_icon(self):
        self.desktop.run_in_background(["dbus-monitor", "--session", "member='XAyatanaNewLabel'"])
        self.start_ayatana()
        wait_for("the item without a label", lambda: self.ayatana_labels() == [""])
        self.choose("Start Focus")
        seen = wait_for("a clock as the label", lambda: next(
            (label for label in self.ayatana_labels() if re.fullmatch("2[45]:[0-9]{2}", label)), None))
        wait_for("another second", lambda: self.ayatana_labels() not in ([seen], [""]))
        # For hosts that never ask.
        wait_for("labels of three seconds", lambda: len(set(re.findall(
            r'string "(2[45]:[0-9]{2})"', self.desktop.output_of("dbus-monitor")))) >= 3)
        item = self.item()
        self.assertRegex(item["Title"], r"^Brevlin, Focus, 24:\d\d$")
        self.assertRegex(item["ToolTip"][3], r"^Focus · 24:\d\d$")
        self.assertIn("Pause", self.menu()[1])
        self.assertRegex(next(iter(self.menu()[1])), r"^Focus · 24:\d\d$")
        self.choose("Pause")
        self.desktop.wait_for_state("paused")
        self.desktop.press("ctrl+w")
        wait_for("a closed window", lambda: not self.desktop.windows())
        self.choose("Statistics")
        self.desktop.wait_for_window()
        wait_for("the section", lambda: read_json(self.desktop.config / f"{SECTION_KEY}.json") == "statistics")
        self.choose("Quit Brevlin")
        self.assertEqual(self.process.wait(timeout=5), 0)

    def test_a_host_that_starts_late_or_again_gets_the_item(self):
        holds_for("no host", lambda: not self.bus.name_has_owner(WATCHER), 10)
        host = self.start_ayatana()
        wait_for("the item", lambda: len(self.ayatana_labels()) == 1, 5)
        self.desktop.stop(host)
        wait_for("no host", lambda: not self.bus.name_has_owner(WATCHER))
        self.start_ayatana()
        wait_for("the item again", lambda: len(self.ayatana_labels()) == 1, 5)

    def test_a_tray_of_the_older_kind_embeds_the_item(self):
        self.desktop.run_in_background(["trayer", "--edge", "bottom", "--align", "left", "--widthtype", "pixel",
                                        "--width", "60", "--heighttype", "pixel", "--height", "28"])
        place = (0, 872, 60, 28)
        wait_for("the logo in the tray", lambda: self.has_red(place), 10)
        red = self.desktop.picture("root", "-crop", "60x28+0+872", "+repage").index(bytes(FOCUS_RED)) // 3
        _, y, _, height = self.start_in_the_panel_and_close_it((red % 60, 872 + red // 60))
        self.assertLessEqual(y + height, 872, "above the tray")


# Of a collector that reads the item when it is made known, and never again.
READ_ONCE = """
item = dbus.SessionBus().get_object('com.quillmark.Brevlin', args[0])
pictures = len(item.Get('org.kde.StatusNotifierItem', 'IconPixmap', dbus_interface=dbus.PROPERTIES_IFACE))
menu = dbus.SessionBus().get_object('com.quillmark.Brevlin', args[0] + '/Menu')
rows = len(menu.GetLayout(0, -1, [], dbus_interface='com.canonical.dbusmenu')[1][2])
self.read = (pictures, rows)
"""


class StatusItemAtTheStart(DesktopTest):
    def test_an_item_is_made_known_with_its_pictures_and_its_menu(self):
        desktop = self.desktop
        mock = desktop.start_mock("--session", WATCHER, "/StatusNotifierWatcher", WATCHER, name=WATCHER,
                                  path="/StatusNotifierWatcher")
        mock.AddProperty(WATCHER, "IsStatusNotifierHostRegistered", True)
        mock.AddMethod(WATCHER, "RegisterStatusNotifierItem", "s", "", READ_ONCE)
        mock.AddMethod(WATCHER, "WhatWasRead", "", "ai", "ret = list(getattr(self, 'read', ()))")
        desktop.set_preferences(focus=1500.0)
        self.start_and_wait()
        watcher = dbus.Interface(desktop.bus().get_object(WATCHER, "/StatusNotifierWatcher"), WATCHER)
        pictures, rows = wait_for("an item", lambda: [int(count) for count in watcher.WhatWasRead()])
        self.assertGreater(pictures, 0)
        self.assertGreater(rows, 5)


if __name__ == "__main__":
    main()
