#!/usr/bin/python3
# Debian's own interpreter, which has the bindings of the accessibility bus.
"""The console as a screen reader meets it: over the accessibility bus of a session of its own.

tst_screenreader.py CONSOLE PLUGIN-DIRECTORY
"""

import ctypes
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib

PATIENCE = 20.0

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36
libc = ctypes.CDLL(None)


class Session:
    """A display, a message bus, and the console on both.

    The services that the bus starts come to this process when their parent ends, so that close()
    leaves nothing behind; should this process be killed, the kernel ends its children.
    """

    def __init__(self, console, plugins):
        self.processes = []
        self.directory = tempfile.mkdtemp()
        self.log = open(os.path.join(self.directory, "log"), "w+", encoding="utf-8")
        libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        for name in ("AT_SPI_BUS_ADDRESS", "WAYLAND_DISPLAY", "XAUTHORITY"):
            os.environ.pop(name, None)
        os.environ.update(HOME=self.directory, XDG_RUNTIME_DIR=self.directory, LC_ALL="C.UTF-8")
        try:
            # A server that resets after its last client turns away who comes just then.
            display = self.start("Xvfb", "-displayfd", "1", "-screen", "0", "1024x768x24",
                                 "-nolisten", "tcp", "-noreset")
            os.environ["DISPLAY"] = ":" + first_line(display)
            bus = self.start("dbus-daemon", "--session", "--nofork", "--print-address")
            os.environ["DBUS_SESSION_BUS_ADDRESS"] = first_line(bus)
            start_accessibility_bus()
            os.environ.update(QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                              QT_PLUGIN_PATH=plugins)
            self.start(console)
        except BaseException:
            self.close()
            raise

    def start(self, *command):
        process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=self.log,
            preexec_fn=lambda: libc.prctl(PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0))
        self.processes.append(process)
        return process

    def report(self):
        self.log.seek(0)
        return self.log.read()

    def close(self):
        # The display goes last: the others talk to it.
        for process in reversed(self.processes[1:]):
            end(process)
        display = self.processes[:1]
        end_services(spared={process.pid for process in display})
        for process in display:
            end(process)
        self.log.close()
        shutil.rmtree(self.directory)


def start_accessibility_bus():
    """Waits until the accessibility bus has its name, as in the session of a desktop.

    Its launcher writes the address to the display first. A Qt program that finds the address before
    the name exists connects, but never registers.
    """
    Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
        Gio.DBusCallFlags.NONE, int(PATIENCE * 1000))


def first_line(process):
    line = process.stdout.readline().decode().strip()
    if not line:
        raise RuntimeError(f"{process.args[0]} did not start")
    return line


def end(process):
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
    process.stdout.close()


def end_services(spared):
    """Ends what the bus started, and what that started in its turn."""
    deadline = time.monotonic() + 5
    while left := set(children()) - spared:
        for pid in left:
            os.kill(pid, signal.SIGTERM if time.monotonic() < deadline else signal.SIGKILL)
        time.sleep(0.02)
        for pid in left:
            os.waitpid(pid, os.WNOHANG)


def children():
    with open(f"/proc/self/task/{os.getpid()}/children", encoding="ascii") as listed:
        return [int(pid) for pid in listed.read().split()]


def wait_for(condition, what):
    """What @p condition gives as soon as it is true; events are delivered meanwhile."""
    deadline = time.monotonic() + PATIENCE
    while True:
        while GLib.MainContext.default().iteration(False):
            pass
        try:
            if result := condition():
                return result
        except GLib.Error:
            pass  # the console is not there yet
        if time.monotonic() > deadline:
            raise AssertionError(f"not within {PATIENCE:.0f} s: {what}")
        time.sleep(0.02)


def descendants(accessible):
    for i in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(i)
        if child:
            yield child
            yield from descendants(child)


def application():
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for i in range(desktop.get_child_count()):
        found = desktop.get_child_at_index(i)
        if not found:
            continue
        # A name that was asked for while the program registered would stay empty.
        found.clear_cache()
        if found.get_name() == "kivconsole":
            return found
    return None


def window():
    """The console on the bus, once its window shows what the feed delivers."""
    console = application()
    if not console:
        return None
    # Everything is requested again: what was asked while the window was being made would stay.
    console.clear_cache()
    console.set_cache_mask(Atspi.Cache.NONE)
    if any(found.get_description().startswith("Overview, page 1 of ") for found in descendants(console)):
        return console
    return None


def has(accessible, state):
    return accessible.get_state_set().contains(state)


def act(accessible, name):
    for i in range(Atspi.Action.get_n_actions(accessible)):
        if Atspi.Action.get_action_name(accessible, i) == name:
            assert Atspi.Action.do_action(accessible, i)
            return
    raise AssertionError(f"{accessible.get_name()} has no action {name}")


class Events:
    """What the bus sends while it listens: (event, name, present description)."""

    def __init__(self, *kinds):
        self.kinds = kinds
        self.heard = []
        self.listener = Atspi.EventListener.new(self.hear)

    def __enter__(self):
        for kind in self.kinds:
            assert self.listener.register(kind)
        return self

    def __exit__(self, *_):
        for kind in self.kinds:
            self.listener.deregister(kind)

    def hear(self, event):
        self.heard.append((event.type, event.source.get_name(), event.detail1))

    def wait(self, kind, name, detail=None):
        wait_for(lambda: any(heard[0].startswith(kind) and heard[1] == name and
                             detail in (None, heard[2]) for heard in self.heard),
                 f"{kind} of {name}, only {self.heard}")


class Console(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.console = wait_for(window, "the console on the bus")

    def find(self, role, name):
        return wait_for(lambda: next((found for found in descendants(self.console)
                                      if found.get_role() == role and found.get_name() == name),
                                     None), f"{role.value_nick} {name}")

    def show_page(self, name):
        act(self.find(Atspi.Role.PAGE_TAB, name), "Press")
        pages = self.find(Atspi.Role.LAYERED_PANE, "Pages")
        wait_for(lambda: pages.get_description().startswith(name + ", page "), f"page {name}")

    def tearDown(self):
        self.show_page("Overview")

    def test_everything_has_a_name(self):
        spoken = {Atspi.Role.PUSH_BUTTON, Atspi.Role.CHECK_BOX, Atspi.Role.PAGE_TAB,
                  Atspi.Role.DIAL, Atspi.Role.PROGRESS_BAR}
        counts = dict.fromkeys(spoken, 0)
        for found in descendants(self.console):
            role = found.get_role()
            if role in spoken:
                counts[role] += 1
                self.assertTrue(found.get_name(), f"a {role.value_nick} without a name")
                self.assertNotRegex(found.get_name(), "^(system|battery|charge|loadBar|mainSwitch)$")
        # Two icons and six tiles; two commands; three entries of the drawer; Copy and
        # Clear; six of the pages of events and trends, whose filters and curves are checked.
        self.assertEqual(counts, {Atspi.Role.PUSH_BUTTON: 21, Atspi.Role.CHECK_BOX: 21,
                                  Atspi.Role.PAGE_TAB: 7, Atspi.Role.DIAL: 4,
                                  Atspi.Role.PROGRESS_BAR: 6})

    def test_gauges(self):
        for role, name, minimum, maximum, unit in (
                (Atspi.Role.DIAL, "Load", 0, 100, " %"),
                (Atspi.Role.DIAL, "Battery", 0, 100, " %"),
                (Atspi.Role.DIAL, "Input", 170, 290, " V"),
                (Atspi.Role.PROGRESS_BAR, "Battery charge", 0, 100, " %"),
                (Atspi.Role.PROGRESS_BAR, "Input voltage", 170, 290, " V ")):
            with self.subTest(name):
                gauge = self.find(role, name)
                self.assertTrue(has(gauge, Atspi.StateType.READ_ONLY))
                self.assertEqual(Atspi.Value.get_minimum_value(gauge), minimum)
                self.assertEqual(Atspi.Value.get_maximum_value(gauge), maximum)
                # The value may change between the two questions.
                wait_for(lambda: gauge.get_description() ==
                         f"{Atspi.Value.get_current_value(gauge):.0f}{unit}",
                         f"text and value of {name}")
        charge = self.find(Atspi.Role.DIAL, "Battery")
        self.assertGreater(Atspi.Value.get_current_value(charge), 90)
        Atspi.Value.set_current_value(charge, 5)
        for action in ("Increase", "Decrease"):
            act(charge, action)
        self.assertGreater(Atspi.Value.get_current_value(charge), 90)

    def test_values_are_announced(self):
        with Events("object:property-change:accessible-value",
                    "object:property-change:accessible-description") as events:
            events.wait("object:property-change:accessible-value", "Input")
            events.wait("object:property-change:accessible-description", "Input")

    def test_tabs(self):
        overview = self.find(Atspi.Role.PAGE_TAB, "Overview")
        power = self.find(Atspi.Role.PAGE_TAB, "Power")
        bar = self.find(Atspi.Role.PROGRESS_BAR, "Input voltage")
        self.assertTrue(has(overview, Atspi.StateType.SELECTED))
        self.assertFalse(has(power, Atspi.StateType.SELECTED))
        self.assertFalse(has(bar, Atspi.StateType.SHOWING))
        self.show_page("Power")
        self.assertFalse(has(overview, Atspi.StateType.SELECTED))
        self.assertTrue(has(power, Atspi.StateType.SELECTED))
        wait_for(lambda: has(bar, Atspi.StateType.SHOWING), "the page in sight")

    def test_switch_and_alarm(self):
        ups = self.find(Atspi.Role.PUSH_BUTTON, "UPS")
        self.assertIn("no alarm", ups.get_description())
        self.show_page("Control")
        lock = self.find(Atspi.Role.CHECK_BOX, "Lock")
        self.assertFalse(has(lock, Atspi.StateType.CHECKED))
        with Events("object:state-changed:checked") as events:
            # What is dangerous takes two presses.
            act(lock, "Toggle")
            self.assertFalse(has(lock, Atspi.StateType.CHECKED))
            act(lock, "Toggle")
            wait_for(lambda: has(lock, Atspi.StateType.CHECKED), "the switch to be on")
            events.wait("object:state-changed:checked", "Lock", 1)
        wait_for(lambda: ups.get_description().startswith("Locked"), "the UPS to be locked")
        tab = self.find(Atspi.Role.PAGE_TAB, "Overview")
        self.assertEqual(tab.get_description(), "Locked. Overview (Alt+1)")

        with Events("object:property-change:accessible-description") as events:
            act(self.find(Atspi.Role.PUSH_BUTTON, "Clear alarm"), "Press")
            wait_for(lambda: "no alarm" in ups.get_description(), "the alarm to be gone")
            events.wait("object:property-change:accessible-description", "UPS")
        self.assertFalse(has(lock, Atspi.StateType.CHECKED))

    def test_settings(self):
        dark = self.find(Atspi.Role.CHECK_BOX, "Dark theme")
        self.assertEqual(dark.get_description(), "Light on dark, for a dim room")
        self.show_page("Settings")
        act(dark, "Toggle")
        self.assertTrue(has(dark, Atspi.StateType.CHECKED))
        act(dark, "Toggle")
        self.assertFalse(has(dark, Atspi.StateType.CHECKED))

    def test_drawer(self):
        drawer = self.find(Atspi.Role.PANEL, "Quick commands")
        entry = self.find(Atspi.Role.PUSH_BUTTON, "Relink")
        self.assertTrue(has(drawer, Atspi.StateType.EXPANDABLE))
        self.assertTrue(has(drawer, Atspi.StateType.COLLAPSED))
        self.assertFalse(has(entry, Atspi.StateType.SHOWING))
        act(drawer, "Toggle")
        wait_for(lambda: has(drawer, Atspi.StateType.EXPANDED), "the open drawer")
        self.assertFalse(has(drawer, Atspi.StateType.COLLAPSED))
        self.assertTrue(has(entry, Atspi.StateType.SHOWING))
        act(drawer, "Toggle")
        wait_for(lambda: has(drawer, Atspi.StateType.COLLAPSED), "the closed drawer")


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: tst_screenreader.py CONSOLE PLUGIN-DIRECTORY")
    # Ends by way of close().
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    session = Session(*sys.argv[1:])
    try:
        Atspi.init()
        # The bindings call the one function for the names of actions deprecated.
        passed = unittest.main(argv=sys.argv[:1], exit=False, verbosity=2,
                               warnings="ignore").result.wasSuccessful()
        if not passed:
            print(session.report(), file=sys.stderr)
    finally:
        session.close()
    sys.exit(0 if passed else 1)


if __name__ == "__main__":
    main()
