#!/usr/bin/python3
"""A window with one field of each kind, by the toolkit version of the first argument and with the
title of the second. Says on its standard output which field has the focus."""

import sys

import gi

version = sys.argv[1]
gi.require_version("Gtk", version)
from gi.repository import GLib, Gtk  # noqa: E402


def fields():
    password = Gtk.Entry() if version == "3.0" else Gtk.PasswordEntry()
    if version == "3.0":
        password.set_visibility(False)
    area = Gtk.TextView()
    area.set_accepts_tab(False)
    read_only_area = Gtk.TextView()
    read_only_area.set_accepts_tab(False)
    read_only_area.set_editable(False)
    read_only_line = Gtk.Entry()
    read_only_line.set_editable(False)
    label = Gtk.Label(label="to be read")
    label.set_selectable(True)
    return {
        "line": Gtk.Entry(),
        "password": password,
        "area": area,
        "search": Gtk.SearchEntry(),
        "number": Gtk.SpinButton.new_with_range(0, 9, 1),
        "read-only-line": read_only_line,
        "read-only-area": read_only_area,
        "label": label,
        "button": Gtk.Button(label="Press"),
    }


def report(widget, _property, name):
    if widget.has_focus():
        print("focus", name, flush=True)


def report_version_4(window, _property, names):
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
        if version == "3.0":
            widget.connect("notify::has-focus", report, name)
            box.add(widget)
        else:
            box.append(widget)
    window = Gtk.Window(title=sys.argv[2])
    if version == "3.0":
        window.add(box)
        window.show_all()
    else:
        window.connect("notify::focus-widget", report_version_4, names)
        window.connect("notify::is-active", report_version_4, names)
        window.set_child(box)
        window.present()
    GLib.MainLoop().run()


if version == "4.0":
    Gtk.init()
main()
