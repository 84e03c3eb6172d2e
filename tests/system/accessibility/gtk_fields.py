#!/usr/bin/python3
"""A window with one field of each kind, by the toolkit version of the first argument and with the
title of the second. Says on its standard output which field has the focus."""

import os
import sys

# The graphics processor that version 4 would draw with is a slow imitation on a virtual display.
os.environ["GSK_RENDERER"] = "cairo"

import gi  # noqa: E402

version = sys.argv[1]
gi.require_version("Gtk", version)
from gi.repository import GLib, Gtk  # noqa: E402


def fields():
    area = Gtk.TextView()
    area.set_accepts_tab(False)
    read_only_area = Gtk.TextView()
    read_only_area.set_accepts_tab(False)
    read_only_area.set_editable(False)
    read_only_line = Gtk.Entry()
    read_only_line.set_editable(False)
    label = Gtk.Label(label="to be read")
    label.set_selectable(True)
    hidden = Gtk.Entry()
    hidden.set_visibility(False)
    editable_box = Gtk.ComboBoxText.new_with_entry()
    editable_box.append_text("one")
    list_box = Gtk.ComboBoxText()
    list_box.append_text("one")
    return {
        "line": Gtk.Entry(),
        # Version 3 knows passwords as entries that hide their characters only.
        "password": hidden if version == "3.0" else Gtk.PasswordEntry(),
        "area": area,
        "search": Gtk.SearchEntry(),
        "editable-box": editable_box,
        "list-box": list_box,
        "number": Gtk.SpinButton.new_with_range(0, 9, 1),
        "read-only-line": read_only_line,
        "read-only-area": read_only_area,
        "label": label,
        "check": Gtk.CheckButton(label="Check"),
        "button": Gtk.Button(label="Press"),
    } | ({} if version == "3.0" else {"hidden-line": hidden})


def report(window, names):
    """A window has a focus widget before it gets any keys."""
    widget = window.get_focus()
    while widget is not None and widget not in names:
        widget = widget.get_parent()
    if widget is not None and window.is_active():
        print("focus", names[widget], flush=True)


def main():
    box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
    names = {}
    for name, widget in fields().items():
        names[widget] = name
        box.add(widget) if version == "3.0" else box.append(widget)
    window = Gtk.Window(title=sys.argv[2])
    window.connect("notify::is-active", lambda *_: report(window, names))
    if version == "3.0":
        window.connect_after("set-focus", lambda *_: report(window, names))
        window.add(box)
        window.show_all()
    else:
        window.connect("notify::focus-widget", lambda *_: report(window, names))
        window.set_child(box)
        window.present()
    GLib.MainLoop().run()


if version == "4.0":
    Gtk.init()
main()
