"""reader.py KELVO PACK: a screen reader's walk through the window, from the pack's page to the end of
an install. Run by reader_test.sh."""
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

heard = []


def wait_for(what, condition):
    context = GLib.MainContext.default()
    end = time.monotonic() + 60
    while time.monotonic() < end:
        while context.iteration(False):
            pass
        try:
            result = condition()
        except GLib.Error:  # what was asked has gone meanwhile
            result = None
        if result:
            return result
        time.sleep(0.02)
    sys.exit(f"FAILED: waited in vain for {what}; heard {heard[-20:]}")


def states(node):
    node.clear_cache()
    return [state.value_nick for state in node.get_state_set().get_states()]


def all_in(node):
    node.clear_cache()
    yield node
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is not None:
            yield from all_in(child)


def find(role, name):
    desktop = Atspi.get_desktop(0)
    return next((node for node in all_in(desktop) if node.get_name() == name and
                 node.get_role_name() == role and "showing" in states(node)), None)


def the(role, name):
    return wait_for(f'{role} "{name}"', lambda: find(role, name))


def act(node, action):
    names = [Atspi.Action.get_action_name(node, i) for i in range(node.get_n_actions())]
    node.do_action(names.index(action))  # fails if there is no answer in time


def wait_for_state(node, state, is_on):
    wait_for(f"{node.get_name()}: {state} {is_on}", lambda: (state in states(node)) == is_on)
    wait_for(f"{node.get_name()} to be announced",
             lambda: (f"object:state-changed:{state}", node.get_name(), int(is_on)) in heard)


Atspi.set_timeout(30000, 30000)  # milliseconds; by itself a call gives a busy machine 800
listener = Atspi.EventListener.new(
    lambda event: heard.append((event.type, event.source.get_name(), event.detail1)))
for kind in ("object:state-changed", "object:property-change:accessible-value"):
    listener.register(kind)
program = subprocess.Popen(sys.argv[1:])
try:
    page = the("label", "Seite des Modpacks")
    title = "Nachtschicht \u2013 Das Stra\u00dfenpaket"
    the("label", title)
    if sum(node.get_name() == title for node in all_in(Atspi.get_desktop(0))) != 1:
        sys.exit("FAILED: the title is read twice")

    picture = the("page tab", "Bild")
    description = the("page tab", "Beschreibung")
    if "selected" not in states(picture) or "selected" in states(description):
        sys.exit("FAILED: the picture's tab is to be the selected one")
    act(description, "Press")
    wait_for_state(description, "selected", True)
    wait_for_state(picture, "selected", False)

    act(the("list item", "Brummer 7,5 t"), "Toggle")
    wait_for("a tick less", lambda: "checked" not in states(the("list item", "Brummer 7,5 t")))
    act(the("push button", "Optionen"), "Press")
    wait_for_state(picture, "enabled", False)
    act(the("push button", "Ok"), "Press")
    wait_for_state(picture, "enabled", True)

    act(the("push button", "Install"), "Press")  # its answer comes before the run and its message
    act(the("push button", "OK"), "Press")
    wait_for("progress", lambda: any("accessible-value" in kind for kind, _, _ in heard))
    wait_for_state(picture, "enabled", True)
    act(the("push button", "Ende"), "Press")
    if program.wait(60) != 0:
        sys.exit(f"FAILED: the program ended with status {program.returncode}")
finally:
    program.kill()
    program.wait()
print("Everything was read and used.")
