"""The silence while a focus phase runs, on the real dunst and xfce4-notifyd: kept, given back, left to the user."""

import glob
import signal

import dbus

from harness import DesktopTest, holds_for, main, read_json, wait_for, wait_for_equal
from notifications_test import Dunst

SERVER = "org.freedesktop.Notifications"
XFCONF = "org.xfce.Xfconf"
PROPERTY = ("xfce4-notifyd", "/do-not-disturb")


class Quiet(DesktopTest):
    def start(self, focus=1500, **preferences):
        self.desktop.set_preferences(language="english", focus=focus, **preferences)
        (self.desktop.config / "Brevlin.addedPreferences.v1.json").write_text('{"silencesNotifications":true,"later":[1]}')
        self.process, self.window = self.start_and_wait()

    def note(self):
        return read_json(self.desktop.config / "Brevlin.silencedNotifications.v1.json")

    def wait_for_silence(self, is_silent=True):
        wait_for_equal(is_silent, "silence", self.is_silent)
        wait_for_equal(is_silent, "a note", lambda: self.note() is not None)

    def notify(self):
        """By another program."""
        server = dbus.Interface(self.desktop.bus().get_object(SERVER, "/org/freedesktop/Notifications"), SERVER)
        server.Notify("Other", 0, "", "Something else", "", [], {}, -1)

    def kill_and_start_again(self, change=lambda timer: None):
        """What the timer's document says may change while the program is gone."""
        self.desktop.stop(self.process, signal.SIGKILL)
        timer = self.desktop.timer()
        change(timer)
        self.desktop.store_timer(timer)
        self.process, self.window = self.start_and_wait()


def pause(timer):
    timer.update(runState="paused", pausedAt=timer["startedAt"] + 1, pausedRemainingSeconds=1000)


class QuietDunst(Quiet):
    def setUp(self):
        super().setUp()
        self.server = Dunst(self.desktop)
        self.server.start()

    def is_silent(self):
        return self.desktop.ask("dunstctl", "is-paused").strip() == "true"

    def turn(self, is_silent):
        self.desktop.ask("dunstctl", "set-paused", str(is_silent).lower())

    def titles(self):
        return [title for title, *_ in self.server.shown()]

    def test_focus_is_silent_and_its_end_is_announced_where_it_is_seen(self):
        self.start(focus=4)
        self.desktop.start_phase()
        self.wait_for_silence()
        self.assertEqual(self.note(), {"switch": "dunst", "wasSilent": False, "isSilent": True})
        self.notify()
        holds_for("silence", lambda: not self.server.shown(), 1)
        wait_for("the announcement", lambda: "Focus complete" in self.titles(), 5)
        self.wait_for_silence(False)
        self.assertCountEqual(self.titles(), ["Something else", "Focus complete"])

    def test_silence_is_given_back_after_a_kill_and_lost_by_no_restart_of_the_server(self):
        self.start()
        self.desktop.start_phase()
        self.wait_for_silence()
        self.kill_and_start_again()
        holds_for("silence", self.is_silent, 1)
        self.server.kill()
        self.server.start()
        self.wait_for_silence()
        self.kill_and_start_again(pause)
        self.wait_for_silence(False)
        self.desktop.press("space")
        self.wait_for_silence()
        self.desktop.stop(self.process)
        self.assertFalse(self.is_silent() or self.note())
        self.assertEqual(read_json(self.desktop.config / "Brevlin.addedPreferences.v1.json")["later"], [1])

    def test_what_the_user_turns_is_the_users(self):
        self.start()
        for is_silent in (False, True):  # the second time without a change
            self.desktop.start_phase()
            self.wait_for_silence()
            self.turn(is_silent)
            wait_for("no note", lambda: not self.note())
            self.desktop.press("space")
            self.desktop.wait_for_state("paused")
            self.desktop.press("space")
            self.desktop.wait_for_state("running")
            holds_for("what the user wants", lambda value=is_silent: self.is_silent() == value, 0.5)
            self.desktop.stop(self.process)
            self.assertEqual(self.is_silent(), is_silent)
            (self.desktop.config / "Brevlin.activeTimerSnapshot.v1.json").unlink()
            self.process, self.window = self.start_and_wait()

    def test_a_hung_server_holds_up_neither_the_end_nor_what_follows(self):
        self.start(focus=3)
        self.desktop.start_phase()
        self.wait_for_silence()
        self.server.process.send_signal(signal.SIGSTOP)
        record, = self.desktop.wait_for_records(1)
        self.assertEqual(record["outcomeRawValue"], "completed")
        self.server.process.send_signal(signal.SIGCONT)
        self.wait_for_silence(False)
        wait_for("the announcement", lambda: self.server.count() == 1)


class QuietXfce(Quiet):
    def setUp(self):
        super().setUp()
        for program, name in (("xfce4/xfconf/xfconfd", XFCONF), ("xfce4/notifyd/xfce4-notifyd", SERVER)):
            self.desktop.run_in_background(glob.glob(f"/usr/lib/*/{program}")[:1])
            wait_for(name, lambda name=name: self.desktop.bus().name_has_owner(name))
        self.xfconf = dbus.Interface(self.desktop.bus().get_object(XFCONF, "/org/xfce/Xfconf"), XFCONF)

    def is_silent(self):
        return bool(self.xfconf.PropertyExists(*PROPERTY) and self.xfconf.GetProperty(*PROPERTY))

    def test_silence_ends_with_the_phase_the_kill_and_the_display_and_is_the_users_where_the_user_turns_it(self):
        self.start()
        self.desktop.start_phase()
        self.wait_for_silence()
        self.desktop.press("space")
        self.wait_for_silence(False)
        self.desktop.press("space")
        self.wait_for_silence()
        self.kill_and_start_again(pause)
        self.wait_for_silence(False)
        self.desktop.press("space")
        self.wait_for_silence()
        self.xfconf.SetProperty(*PROPERTY, False)
        wait_for("no note", lambda: not self.note())
        self.desktop.press("space", "space")
        holds_for("the user's choice", lambda: not self.is_silent(), 1)
        self.kill_and_start_again()
        self.wait_for_silence()
        self.desktop.display.kill()
        self.process.wait(timeout=10)
        self.wait_for_silence(False)


class QuietSettings(Quiet):
    KEY = ("org.gnome.desktop.notifications", "show-banners")

    def setUp(self):
        super().setUp()
        self.desktop.run_in_background(["/usr/libexec/dconf-service"])
        shell = self.desktop.start_mock(SERVER, "/org/freedesktop/Notifications", SERVER, name=SERVER,
                                        path="/org/freedesktop/Notifications")
        shell.AddMethod(SERVER, "GetCapabilities", "", "as", 'ret = ["body"]')
        shell.AddMethod(SERVER, "GetServerInformation", "", "ssss", 'ret = ("gnome-shell", "GNOME", "43", "1.2")')

    def is_silent(self):
        return self.desktop.ask("gsettings", "get", *self.KEY).strip() == "false"

    def test_silence_is_kept_in_the_settings_of_the_desktop_and_is_the_users_where_the_user_turns_it(self):
        self.start()
        self.desktop.start_phase()
        self.wait_for_silence()
        self.kill_and_start_again(pause)
        self.wait_for_silence(False)
        self.desktop.press("space")
        self.wait_for_silence()
        self.desktop.ask("gsettings", "set", "org.gnome.desktop.interface", "enable-animations", "false")
        holds_for("silence", self.is_silent, 0.5)
        self.desktop.ask("gsettings", "reset", *self.KEY)
        wait_for("no note", lambda: not self.note())
        self.desktop.stop(self.process)
        self.assertFalse(self.is_silent())


if __name__ == "__main__":
    main()
