"""Programs on the bus that send what nobody should send: calls, signals and answers of the wrong types."""

import unittest

import bus
import bus_bodies
import dbus
import dbus.lowlevel
import proof
from harness import DesktopTest, main

# The second for what only some desktops have.
REFUSALS = ("org.freedesktop.DBus.Error.InvalidArgs", "org.freedesktop.DBus.Error.UnknownMethod")


class BusValues(unittest.TestCase):
    def test_calls_and_signals_of_the_wrong_type_break_nothing(self):
        row, = bus.wrong_bodies()
        self.assertTrue(row.is_clean(), row)

    def test_random_calls_signals_and_answers_break_nothing(self):
        row, = bus.random_bodies(proof.Budget(8))
        self.assertTrue(row.is_clean(), row)


class Refusal(DesktopTest):
    def test_a_call_of_the_wrong_type_is_refused(self):
        self.desktop.set_preferences(language="english")
        self.start_and_wait()
        connection = self.desktop.bus()
        for path, interface, member, right in bus.METHODS:
            for signature in ("v", "(isvu)", right + "s"):
                with self.subTest(f"{interface}.{member}({signature})"):
                    message = dbus.lowlevel.MethodCallMessage(bus.NAME, path, interface, member)
                    arguments = bus_bodies.body(proof.Budget(0, 1).chance, signature)
                    with self.assertRaises(dbus.DBusException) as refused:
                        connection.send_message_with_reply_and_block(bus_bodies.fill(message, signature, arguments), 5)
                    self.assertIn(refused.exception.get_dbus_name(), REFUSALS)


if __name__ == "__main__":
    main()
