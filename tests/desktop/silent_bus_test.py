"""Buses that accept connections and do not answer, as a stopped process does, and what comes when they do."""

import signal
import sys
import time

from harness import DesktopTest, main, wait_for

NAME = "com.quillmark.Brevlin"
# Beyond the usual: the program waits half a second for the session's bus, one second more for the accessibility.
LONGEST_START = 5.0

# Collects status items for nobody, says so once, and falls silent.
TIRED_COLLECTOR = """
import time, dbus, dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib
class Collector(dbus.service.Object):
    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="ss", out_signature="v",
                         async_callbacks=("answer", "refuse"))
    def Get(self, interface, name, answer, refuse):
        answer(False)
        self.connection.flush()
        time.sleep(60)
    @dbus.service.method("org.kde.StatusNotifierWatcher", in_signature="s")
    def RegisterStatusNotifierItem(self, item):
        pass
name = dbus.service.BusName("org.kde.StatusNotifierWatcher", dbus.SessionBus(mainloop=DBusGMainLoop()))
collector = Collector(name, "/StatusNotifierWatcher")
GLib.MainLoop().run()
"""


class SilentBuses(DesktopTest):
    def silence_buses(self):
        daemons = [process for process in self.desktop.processes if process.args[0] == "dbus-daemon"]
        for daemon in daemons:
            daemon.send_signal(signal.SIGSTOP)
        return daemons

    def start_silent_buses(self):
        self.desktop.start_bus("DBUS_SYSTEM_BUS_ADDRESS")
        return self.silence_buses()

    def start(self):
        began = time.monotonic()
        process, window = self.start_and_wait()
        self.assertLess(time.monotonic() - began, LONGEST_START, "the window does not wait for the bus")
        return process, window

    def check_the_timer_runs(self):
        self.desktop.press("space")
        self.desktop.wait_for_state("running", seconds=3)
        self.desktop.wait_for_records(1, seconds=6)

    def check_the_end_is_quick(self, process):
        began = time.monotonic()
        self.assertEqual(self.desktop.stop(process), 0)
        self.assertLess(time.monotonic() - began, 2)

    def test_silent_buses_hold_nothing_up_and_are_used_when_they_answer(self):
        desktop = self.desktop
        desktop.set_preferences(focus=2, language="english")
        daemons = self.start_silent_buses()
        process, _ = self.start()
        self.check_the_timer_runs()
        second = desktop.start_program()
        self.assertEqual(second.wait(timeout=LONGEST_START), 0, "a second start finds the first")

        for daemon in daemons:
            daemon.send_signal(signal.SIGCONT)
        bus = desktop.bus()
        wait_for("the name on the bus", lambda: bus.name_has_owner(NAME))
        wait_for("the status item", lambda: bus.name_has_owner(f"org.kde.StatusNotifierItem-{process.pid}-1"))
        self.assertEqual(desktop.stop(process), 0)

    def test_buses_that_stay_silent_do_not_hold_up_the_end(self):
        self.start_silent_buses()
        self.check_the_end_is_quick(self.start()[0])

    def test_a_silent_system_bus_holds_up_nothing_and_the_sessions_neither_when_it_falls_silent(self):
        desktop = self.desktop
        desktop.set_preferences(focus=2, language="english")
        desktop.start_bus("DBUS_SYSTEM_BUS_ADDRESS")
        desktop.processes[-1].send_signal(signal.SIGSTOP)
        process, _ = self.start()
        bus, item = desktop.bus(), f"org.kde.StatusNotifierItem-{process.pid}-1"
        wait_for("the status item", lambda: bus.name_has_owner(item))
        # Answered behind what Qt asks in line when it makes the icon for older trays.
        for _ in range(2):
            bus.call_blocking(item, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get", "ss",
                              ["org.kde.StatusNotifierItem", "Status"])
        self.silence_buses()
        self.check_the_timer_runs()
        self.check_the_end_is_quick(process)

    def test_an_accessibility_and_a_collector_of_status_items_that_are_silent_hold_nothing_up(self):
        desktop = self.desktop
        desktop.set_preferences(focus=2, language="english")
        service = desktop.bus()  # which nobody reads from
        service.request_name("org.a11y.Bus")
        desktop.run_in_background([sys.executable, "-c", TIRED_COLLECTOR])
        wait_for("the collector", lambda: desktop.bus().name_has_owner("org.kde.StatusNotifierWatcher"))
        process, _ = self.start()
        self.check_the_timer_runs()
        self.check_the_end_is_quick(process)


if __name__ == "__main__":
    main()
