"""The real program on the desktop that the environment names, with real keys and a real mouse, and read from outside,
as a screen reader does: by accessible names."""

import contextlib
import re
import subprocess
import time
from signal import SIGKILL

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

PATIENCE = 60  # seconds until something that was waited for counts as missing

# Qt says this itself: 6.11 of a question by at-spi2 2.62 that it does not know; from 6.8 on, of one about what has gone
# since. Nothing else that is said is left out.
SAID_BY_QT = r'(?m)^qt\.accessibility\.atspi: (.* "GetApplicationBusAddress"|Could not find accessible on path).*\n'


def wait_until(condition, what):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        with contextlib.suppress(GLib.Error):  # The accessible went away while it was read.
            if result := condition():
                return result
        time.sleep(0.02)
    raise AssertionError(f"{what() if callable(what) else what} did not come")


def run(*command):
    done = subprocess.run(list(map(str, command)), capture_output=True, text=True, timeout=PATIENCE, check=False)
    return done.stdout.strip()


class Program:
    """The program from its first window to its end. `command` may begin with others that run it in their place."""

    def __init__(self, *command):
        self.process = subprocess.Popen(command, stderr=subprocess.PIPE, text=True, restore_signals=False)

    def __enter__(self):
        wait_until(self.activate, "the first window")
        return self

    def __exit__(self, failure, *_):
        """Closes the window as its close button does, unless the program has ended; then all must be well."""
        if self.process.poll() is None and not failure:
            self.activate()
            self.key("alt+F4")
            said = self.process.communicate(timeout=PATIENCE)[1]
            ended = self.process.returncode, re.sub(SAID_BY_QT, "", said)
            assert ended == (0, ""), ended
        self.end(SIGKILL)
        self.process.stderr.close()

    def send(self, signal):
        self.process.send_signal(signal)
        return self

    def end(self, signal=0):
        """Waits for the end, and answers the exit code."""
        self.send(signal)
        return self.process.wait(PATIENCE)

    def activate(self):
        """Brings the window to the front that the program begins with."""
        assert self.process.poll() is None, f"ended with {self.process.returncode}: {self.process.stderr.read()}"
        titles = "^(Vellomir|Run-Time Error)$"
        found = self.windows() and run("xdotool", "search", "--onlyvisible", "--name", titles).split()
        if found:
            self.window = found[0]
            run("xdotool", "windowactivate", "--sync", self.window)
        return found

    def windows(self):
        for application in children(Atspi.get_desktop(0)):
            if application and application.get_process_id() == self.process.pid:
                application.set_cache_mask(Atspi.Cache.NONE)  # Nothing is remembered from one look to the next.
                return children(application)
        return []

    def the(self, name, role=None):
        """Waits for the last on screen of that name, whatever its state is (and role, as "button")."""

        def is_meant(found):
            role_name = found.get_role_name().removeprefix("push ")  # which newer systems leave out
            return f"{found.get_name()}, ".startswith(f"{name}, ") and role in (None, role_name)

        return wait_until(lambda: [found for w in self.windows() for found in walk(w) if is_meant(found)], name)[-1]

    def see(self, name, role=None):
        self.the(name, role)
        return self

    def focus(self, name):
        """Waits until it has the focus, or is selected in what has it."""
        wait_until(lambda: has(self.the(name), "FOCUSED") or has(self.the(name), "SELECTED"), f"the focus on {name}")
        return self

    def become(self, *windows):
        """Waits until these are the titles of the windows, the active one marked with a star."""

        def titles():
            return [w.get_name() + "*" * has(w, "ACTIVE") for w in self.windows() if has(w, "SHOWING")]

        wait_until(lambda: titles() == list(windows), f"the windows {windows}")
        return self

    def click(self, name, role=None, times=1):
        at = self.the(name, role).get_extents(Atspi.CoordType.SCREEN)
        run("xdotool", "mousemove", at.x + at.width // 2, at.y + at.height // 2)
        run("xdotool", "click", "--repeat", times, "--delay", 80, 1)
        return self

    def type(self, text, delay=12):
        run("xdotool", "type", "--delay", delay, text)
        return self

    def key(self, *keys):
        """Presses keys, each by its X name: "Return", "alt+F4"."""
        run("xdotool", "key", "--clearmodifiers", *keys)
        return self

    def hold(self, key):
        run("xdotool", "keydown", key, "sleep", 1, "keyup", key)
        return self

    def choose(self, *keys):
        """Chooses from the menu bar with the keys behind Alt."""
        self.activate()
        wait_until(lambda: has(self.the("Vellomir", "frame"), "ACTIVE"), "the window in front")
        return self.key("alt", *keys)


def children(accessible):
    return [accessible.get_child_at_index(i) for i in range(accessible.get_child_count())]


def walk(accessible):
    """What is on screen of it: itself, and all that is in it."""
    with contextlib.suppress(GLib.Error):  # It went away while it was read.
        if accessible and has(accessible, "SHOWING"):
            yield accessible
            for child in children(accessible):
                yield from walk(child)


def has(accessible, state):
    return accessible.get_state_set().contains(getattr(Atspi.StateType, state))
