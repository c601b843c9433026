#!/usr/bin/python3
"""Reads a program's windows as a screen reader does, over AT-SPI.

Takes JSON lines from the standard input and answers each with one. {"op":"listen"} begins to note what
programs announce, {"op":"heard"} returns the notes, {"op":"objects","program":NAME} every object in sight."""
import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

WHAT_READERS_HEAR = (
    "object:property-change:accessible-name",
    "object:property-change:accessible-value",
    "object:state-changed:focused",
    "object:state-changed:showing",
    "object:state-changed:checked",
    "window:activate",
)
STATES = {
    "focused": Atspi.StateType.FOCUSED,
    "focusable": Atspi.StateType.FOCUSABLE,
    "enabled": Atspi.StateType.ENABLED,
    "checked": Atspi.StateType.CHECKED,
    "showing": Atspi.StateType.SHOWING,
    "editable": Atspi.StateType.EDITABLE,
}
notes = []


def value_of(thing):
    face = thing.get_value_iface()
    return face.get_current_value() if face else None


def role_of(thing):
    """Returns the role's name; newer versions of AT-SPI have shortened that of push buttons."""
    name = thing.get_role_name()
    return "push button" if name == "button" else name


def note(event):
    try:
        notes.append({"type": event.type, "on": event.detail1, "role": role_of(event.source),
                      "name": event.source.get_name(), "value": value_of(event.source)})
    except GLib.Error:
        pass  # It has gone already.


def labels_of(thing):
    return [relation.get_target(index).get_name()
            for relation in thing.get_relation_set()
            if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
            for index in range(relation.get_n_targets())]


def walk(thing, window, found):
    states = thing.get_state_set()
    found.append({"name": thing.get_name(), "role": role_of(thing), "window": window,
                  "description": thing.get_description(), "labels": labels_of(thing), "value": value_of(thing),
                  "states": [name for name, state in STATES.items() if states.contains(state)]})
    for index in range(thing.get_child_count()):
        child = thing.get_child_at_index(index)
        if child is not None:
            walk(child, window, found)


def objects_of(program):
    found = []
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is None or application.get_name() != program:
            continue
        application.clear_cache()
        for window in range(application.get_child_count()):
            top = application.get_child_at_index(window)
            if top is not None:
                walk(top, top.get_name(), found)
    return found


def answer(question):
    if question["op"] == "objects":
        return {"ok": True, "objects": objects_of(question["program"])}
    return {"ok": True, "heard": notes}


def on_line(channel, condition):
    line = sys.stdin.readline()
    if not line:
        Atspi.event_quit()
        return False
    try:
        text = json.dumps(answer(json.loads(line)))
    except GLib.Error as error:
        text = json.dumps({"ok": False, "error": str(error)})
    print(text, flush=True)
    return True


Atspi.init()
listener = Atspi.EventListener.new(note)
for kind in WHAT_READERS_HEAR:
    listener.register(kind)
GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_IN | GLib.IO_HUP, on_line)
Atspi.event_main()
