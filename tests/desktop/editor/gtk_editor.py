#!/usr/bin/python3
"""A text field of GTK for the desktop tests. To every line on its standard input it answers with one
line of JSON, the "text" that stands in the field; the line "clear" empties it first.

usage: gtk_editor.py 3.0|4.0 TITLE
"""

import json
import sys

import gi

gi.require_version("Gtk", sys.argv[1])
from gi.repository import GLib, Gtk  # noqa: E402


def answer(field, line):
    text = field.get_buffer()
    if line == "clear":
        text.set_text("", 0)
    print(json.dumps({"text": text.get_text(*text.get_bounds(), True)}), flush=True)


def listen(field):
    def receive(source, _condition):
        line = source.readline()
        if line:
            answer(field, line.strip())
        return bool(line)

    GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IO_IN, receive)
    print("ready", flush=True)


def show(window, place, present):
    field = Gtk.TextView()
    place(field)
    window.set_default_size(600, 300)
    present()
    field.grab_focus()
    listen(field)


def main():
    if sys.argv[1] == "3.0":
        window = Gtk.Window(title=sys.argv[2])
        show(window, window.add, window.show_all)
        Gtk.main()
        return
    application = Gtk.Application()

    def activate(_application):
        window = Gtk.ApplicationWindow(application=application, title=sys.argv[2])
        show(window, window.set_child, window.present)

    application.connect("activate", activate)
    application.run()


if __name__ == "__main__":
    main()
