#!/usr/bin/python3
"""What a screen reader finds in the windows of a program. To every line on its standard input it
answers with one line of JSON: "tree" with a list of what is showing, each a "name", "description",
"role", "states", the "place" on the screen (left, top, width, height) and the "path" of its parents'
names; "press NAME" with whether a control of that name was pressed.

usage: accessible_tree.py PROCESS
"""

import json
import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

ROOT = "/org/a11y/atspi/accessible/root"
ACCESSIBLE = "org.a11y.atspi.Accessible"
STATES = {8: "enabled", 11: "focusable", 12: "focused", 4: "checked", 25: "showing"}


class Bus:
    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION, None)
        address, = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                     None, None, 0, -1, None).unpack()
        self._connection = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)

    def ask(self, node, interface, method, arguments=None):
        """The first value of the answer; None when the object has gone meanwhile."""
        try:
            answer = self._connection.call_sync(*node, interface, method, arguments, None, 0, 5000, None)
        except GLib.Error:
            return None
        return answer.unpack()[0] if answer.n_children() else None

    def property(self, node, name):
        return self.ask(node, "org.freedesktop.DBus.Properties", "Get",
                        GLib.Variant("(ss)", (ACCESSIBLE, name))) or ""

    def children(self, node):
        return self.ask(node, ACCESSIBLE, "GetChildren") or []

    def states(self, node):
        words = self.ask(node, ACCESSIBLE, "GetState") or [0, 0]
        return [name for bit, name in STATES.items() if words[0] >> bit & 1]

    def place(self, node):
        on_screen = GLib.Variant("(u)", (0,))
        return self.ask(node, "org.a11y.atspi.Component", "GetExtents", on_screen)

    def application(self, process):
        for node in self.children(("org.a11y.atspi.Registry", ROOT)):
            owner = self.ask(("org.freedesktop.DBus", "/org/freedesktop/DBus"), "org.freedesktop.DBus",
                             "GetConnectionUnixProcessID", GLib.Variant("(s)", (node[0],)))
            if owner == process:
                return node
        return None

    def showing(self, node, path=()):
        """All below it that is showing, in the order of the tree."""
        for child in self.children(node):
            states = self.states(child)
            if "showing" not in states:
                continue
            name = self.property(child, "Name")
            yield child, {"name": name, "description": self.property(child, "Description"),
                          "role": self.ask(child, ACCESSIBLE, "GetRoleName"),
                          "states": states, "place": self.place(child), "path": list(path)}
            yield from self.showing(child, (*path, name))


def answer(bus, application, line):
    if line == "tree":
        return [found for _, found in bus.showing(application)]
    name = line.removeprefix("press ")
    for node, found in bus.showing(application):
        if found["name"] == name and "focusable" in found["states"]:
            return bool(bus.ask(node, "org.a11y.atspi.Action", "DoAction", GLib.Variant("(i)", (0,))))
    return False


def main():
    bus = Bus()
    application = bus.application(int(sys.argv[1]))
    for line in sys.stdin:
        print(json.dumps(answer(bus, application, line.strip()), ensure_ascii=False), flush=True)


if __name__ == "__main__":
    main()
