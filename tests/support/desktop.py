"""The real program on the desktop that the environment names, with real keys and a real mouse, and read from outside,
as a screen reader does: by accessible names."""

import contextlib
import re
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

PATIENCE = 120  # seconds until something that was waited for counts as missing

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


def wait_for(look, wanted):
    wait_until(lambda: look() == wanted, lambda: f"{wanted} in place of {look()}")


def run(*command):
    done = subprocess.run(list(map(str, command)), capture_output=True, text=True, timeout=PATIENCE, check=False)
    return done.stdout.strip()


def manage_windows():
    """Starts a window manager, which ends with the display."""
    subprocess.Popen(["openbox", "--sm-disable"], stderr=subprocess.DEVNULL)
    wait_until(lambda: "window id" in run("xprop", "-root", "_NET_CLIENT_LIST"), "openbox")


class Program(subprocess.Popen):
    """The program from its first window to its end. `command` may begin with others that run it in their place."""

    def __init__(self, *command):
        super().__init__(command, stderr=subprocess.PIPE, text=True, restore_signals=False)

    def __enter__(self):
        wait_until(self.activate, "the first window")
        return self

    def __exit__(self, failure, *rest):
        """Closes the window as its close button does, unless the end was waited for; then all must be well."""
        if self.returncode is None and not failure:
            self.activate()
            self.key("alt+F4")
            ended = re.sub(SAID_BY_QT, "", self.communicate(timeout=PATIENCE)[1]), self.returncode
            assert ended == ("", 0), ended
        self.kill()
        super().__exit__(failure, *rest)

    def send(self, signal):
        self.send_signal(signal)
        return self

    def activate(self):
        """Brings the window to the front that the program begins with."""
        assert self.poll() is None, f"ended with {self.returncode}: {self.stderr.read()}"
        search = "xdotool", "search", "--onlyvisible", "--name", "^(Vellomir|Run-Time Error)$"
        self.window = self.windows() and run(*search, "windowactivate", "--sync", "getactivewindow")
        return self.window

    def windows(self):
        desktop = Atspi.get_desktop(0)
        desktop.set_cache_mask(Atspi.Cache.NONE)  # Nothing is remembered from one look to the next.
        mine = [program for program in children(desktop) if program.get_process_id() == self.pid]
        return [window for program in mine for window in children(program) if has(window, "SHOWING")]

    def everything(self):
        """What is on screen: the windows, and all that is in them."""
        found = self.windows()
        for accessible in found:  # with what is added here
            found += [child for child in children(accessible) if has(child, "SHOWING")]
        return found

    def the(self, name):
        """Waits for the last on screen of that name and role, whatever its state is: "N 33", "File, menu item"."""

        def full_name(found):
            return f"{found.get_name()}, {found.get_role_name()}, "

        return wait_until(lambda: [f for f in self.everything() if full_name(f).startswith(f"{name}, ")], name)[-1]

    def see(self, name):
        self.the(name)
        return self

    def focus(self, name):
        """Waits until it is the active window, has the focus, or is selected in what has it."""
        wait_until(lambda: has(self.the(name), "ACTIVE", "FOCUSED", "SELECTED"), f"the focus on {name}")
        return self

    def become(self, *titles):
        """Waits until these are the titles of the windows, the active one marked with a star."""
        wait_for(lambda: [w.get_name() + "*" * has(w, "ACTIVE") for w in self.windows()], [*titles])
        return self

    def do(self, *action):
        """Moves the hand as xdotool's `action` says."""
        run("xdotool", *action)
        return self

    def click(self, name, times=1):
        at = self.the(name).get_extents(Atspi.CoordType.SCREEN)
        self.do("mousemove", at.x + at.width // 2, at.y + at.height // 2)
        return self.do("click", "--repeat", times, "--delay", 80, 1)

    def type(self, text):
        return self.do("type", text)

    def key(self, *keys):
        """Presses keys, each by its X name: "Return", "alt+F4"."""
        return self.do("key", "--clearmodifiers", *keys)

    def hold(self, key):
        return self.do("keydown", key, "sleep", 1, "keyup", key)

    def choose(self, *keys):
        """Chooses from the menu bar with the keys behind Alt."""
        self.activate()
        return self.focus("Vellomir, frame").key("alt", *keys)


def children(accessible):
    return list(filter(None, map(accessible.get_child_at_index, range(accessible.get_child_count()))))


def has(accessible, *states):
    return any(accessible.get_state_set().contains(getattr(Atspi.StateType, state)) for state in states)
