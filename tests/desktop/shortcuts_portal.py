"""A template of python-dbusmock: the portal for global shortcuts, whose user chooses Ctrl+F1 to Ctrl+F5 in its dialog.

Once he has, the keys are listed in every session, also by a portal that starts anew with the parameter "bound"."""

import dbus
from dbusmock import MOCK_IFACE

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.GlobalShortcuts"
SYSTEM_BUS = False
ACTIONS = ("toggle", "skip", "addTime", "show", "silence")


def load(mock, parameters):
    mock.bound = bool(parameters.get("bound"))
    mock.session = None
    mock.AddProperty(MAIN_IFACE, "version", dbus.UInt32(1))


def keys(mock):
    keys = [(action, {"trigger_description": f"Ctrl+F{number}"}) for number, action in enumerate(ACTIONS, 1)]
    return dbus.Array(keys if mock.bound else [], signature="(sa{sv})")


def respond(mock, sender, options, results):
    path = f"{MAIN_OBJ}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
    mock.EmitSignalDetailed("org.freedesktop.portal.Request", "Response", "ua{sv}", [dbus.UInt32(0), results],
                            {"path": path, "destination": sender})
    return dbus.ObjectPath(path)


@dbus.service.method("org.freedesktop.host.portal.Registry", in_signature="sa{sv}")
def Register(self, app_id, options):
    pass


@dbus.service.method(MAIN_IFACE, in_signature="a{sv}", out_signature="o", sender_keyword="sender")
def CreateSession(self, options, sender=None):
    self.session = f"{MAIN_OBJ}/session/{sender[1:].replace('.', '_')}/{options['session_handle_token']}"
    return respond(self, sender, options, {"session_handle": self.session})


@dbus.service.method(MAIN_IFACE, in_signature="oa{sv}", out_signature="o", sender_keyword="sender")
def ListShortcuts(self, session, options, sender=None):
    return respond(self, sender, options, {"shortcuts": keys(self)})


@dbus.service.method(MAIN_IFACE, in_signature="oa(sa{sv})sa{sv}", out_signature="o", sender_keyword="sender")
def BindShortcuts(self, session, shortcuts, parent_window, options, sender=None):
    self.bound = [str(name) for name, _ in shortcuts] == list(ACTIONS) and parent_window.startswith("x11:")
    return respond(self, sender, options, {"shortcuts": keys(self)})


@dbus.service.method(MOCK_IFACE, in_signature="s")
def Press(self, action):
    self.EmitSignal(MAIN_IFACE, "Activated", "osta{sv}",
                    [dbus.ObjectPath(self.session), action, dbus.UInt64(1), dbus.Dictionary({}, signature="sv")])
