"""A desktop of its own for the real program: a screen without a monitor, a window manager, a session bus with
accessibility, real keys and a real mouse. What the program shows is read from outside, as a screen reader and
an eye would: by accessible names and by pictures of the screen.

    with Desktop() as desktop, Program(desktop, path) as program:
        program.click("B 7")
        wait_until(lambda: program.text("Current number") == "B7")

Places are screen pixels, as (x, y, width, height).
"""

import contextlib
import os
import re
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 30  # seconds until something that was waited for counts as missing


class Missing(AssertionError):
    """What was waited for did not come."""


def wait_until(condition, what=None, patience=PATIENCE):
    """Waits until condition() is true, and returns what it returned."""
    end = time.monotonic() + patience
    while True:
        try:
            result = condition()
        except GLib.Error:  # the accessible went away while it was read
            result = None
        if result:
            return result
        if time.monotonic() > end:
            raise Missing(what or "waited in vain")
        time.sleep(0.02)


class Desktop:
    """The screen, its window manager and its session bus. One at a time in a process: the connection to the
    accessibility bus is the process's own."""

    def __init__(self, size="1600x1000"):
        self.home = Path(tempfile.mkdtemp(prefix="vellomir-desktop-"))
        self.children = []
        try:
            self._start(size)
        except BaseException:
            self.close()
            raise

    def _start(self, size):
        self.environment = {
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "HOME": str(self.home),
            "AppData": str(self._folder("settings")),
            "XDG_CONFIG_HOME": str(self._folder("config")),
            "XDG_RUNTIME_DIR": str(self._folder("runtime")),
            "NO_AT_BRIDGE": "1",  # for the window manager, which nobody reads
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
        }
        bus = self._first_line(["dbus-daemon", "--session", "--nofork", "--print-address=1"])
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus
        self.open_screen(size)
        os.environ.update({name: self.environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")})
        Atspi.init()

    def open_screen(self, size="1600x1000"):
        """Opens a screen with a window manager, for all that is started from now on; returns the X server."""
        display = self._first_line(
            ["Xvfb", "-displayfd", "1", "-screen", "0", f"{size}x24", "-nolisten", "tcp", "-noreset"]
        )
        server = self.children[-1]
        self.environment["DISPLAY"] = f":{display}"
        self._spawn(["openbox", "--sm-disable"])
        # The last thing that it does before it takes requests; one that comes earlier can be lost.
        wait_until(lambda: "window id" in self._property("_NET_CLIENT_LIST", "-root"), "openbox did not start")
        return server

    def _folder(self, name):
        folder = self.home / name
        folder.mkdir(mode=0o700)
        return folder

    def _spawn(self, command, **options):
        options = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **options}
        child = subprocess.Popen(command, env=self.environment, start_new_session=True, **options)
        self.children.append(child)
        return child

    def _first_line(self, command):
        child = self._spawn(command, stdout=subprocess.PIPE, text=True)
        line = child.stdout.readline().strip()
        if not line:
            raise Missing(f"{command[0]} did not start")
        return line

    def xdotool(self, *arguments, check=True):
        command = ["xdotool", *map(str, arguments)]
        options = {"capture_output": True, "text": True, "timeout": PATIENCE}
        return subprocess.run(command, env=self.environment, check=check, **options).stdout.strip()

    def key(self, *keys):
        """Presses keys, each by its X name: "Return", "alt+F4"."""
        self.xdotool("key", "--clearmodifiers", *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 20, text)

    def click_at(self, x, y):
        self.xdotool("mousemove", x, y, "click", 1)

    def _property(self, name, *window):
        command = ["xprop", *window, name]
        return subprocess.run(command, env=self.environment, capture_output=True, text=True, check=True).stdout

    def taskbar(self):
        """The titles of the windows that a taskbar lists."""
        windows = re.findall(r"0x\w+", self._property("_NET_CLIENT_LIST", "-root"))
        listed = [w for w in windows if "SKIP_TASKBAR" not in self._property("_NET_WM_STATE", "-id", w)]
        return [self.xdotool("getwindowname", window) for window in listed]

    def save_picture(self, file, window="root"):
        command = ["import", "-silent", "-window", window, str(file)]
        subprocess.run(command, env=self.environment, check=True)

    def pixels(self, place):
        """The colours in a place of the screen as it looks now: rows of (red, green, blue)."""
        x, y, width, height = place
        command = ["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8"]
        raw = subprocess.run([*command, "rgb:-"], env=self.environment, check=True, capture_output=True).stdout
        rows = [raw[3 * width * row : 3 * width * (row + 1)] for row in range(height)]
        return [[tuple(row[i : i + 3]) for i in range(0, len(row), 3)] for row in rows]

    def _end_speech_service(self):
        """Speech Dispatcher is started by the library that asks for it, and would outlive the desktop."""
        for file in self.home.glob("runtime/speech-dispatcher/pid/*.pid"):
            with contextlib.suppress(OSError, ValueError):
                service = int(file.read_text())
                os.kill(service, signal.SIGTERM)
                os.kill(service, signal.SIGCONT)  # a test may have stopped it

    def close(self):
        self._end_speech_service()
        for child in reversed(self.children):
            if child.poll() is None:
                os.killpg(child.pid, signal.SIGTERM)
            child.wait()
            if child.stdout:
                child.stdout.close()
        shutil.rmtree(self.home, ignore_errors=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class Program:
    """The program on a desktop, from its first window to its end. `command` may begin with others that run it
    in their place."""

    def __init__(self, desktop, *command, title="Vellomir"):
        self.desktop = desktop
        self.process = desktop._spawn(command, stderr=subprocess.PIPE, text=True)
        try:
            self.window = wait_until(lambda: self._find_window(title), "the program showed no window")
            desktop.xdotool("windowactivate", "--sync", self.window)
        except BaseException:
            self.kill()
            raise

    def _find_window(self, title):
        """The X window of that title, once it is on screen and readable from outside."""
        if self.process.poll() is not None:
            raise Missing(f"the program ended with {self.process.returncode}: {self.process.stderr.read()}")
        found = self.desktop.xdotool("search", "--onlyvisible", "--name", f"^{title}$", check=False).split()
        return self._application() and found and found[0]

    def _application(self):
        for application in self._children(Atspi.get_desktop(0)):
            if application and application.get_process_id() == self.process.pid:
                # Nothing is remembered from one look to the next.
                application.set_cache_mask(Atspi.Cache.NONE)
                application.clear_cache()
                return application
        return None

    @staticmethod
    def _children(accessible):
        return map(accessible.get_child_at_index, range(accessible.get_child_count()))

    @staticmethod
    def _shows(accessible):
        return accessible.get_state_set().contains(Atspi.StateType.SHOWING)

    def _walk(self, accessible):
        if accessible is not None:
            yield accessible
            for child in self._children(accessible):
                yield from self._walk(child)

    def everything(self):
        """All accessibles of the program, its windows first to last, each followed by what is in it."""
        return list(self._walk(self._application()))

    def windows(self):
        """The accessibles of the program's windows that are on screen."""
        return [window for window in self._children(self._application()) if self._shows(window)]

    def all(self, role):
        """All accessibles of a role, as "push button"."""
        return [found for found in self.everything() if found.get_role_name() == role]

    def find(self, name, role=None):
        """The accessible of that name (and role, as "push button") that is on screen, or None."""
        for found in self._walk(self._application()):
            if found.get_name() == name and role in (None, found.get_role_name()) and self._shows(found):
                return found
        return None

    def the(self, name, role=None):
        """The accessible of that name; waits for it."""
        return wait_until(lambda: self.find(name, role), f"nothing named {name!r} is on screen")

    def wait_until_gone(self, name):
        wait_until(lambda: not self.find(name), f"{name!r} is still on screen")

    def text(self, name):
        return Atspi.Text.get_text(self.the(name), 0, -1)

    def place(self, name, role=None):
        return self._rectangle(Atspi.Component.get_extents(self.the(name, role), Atspi.CoordType.SCREEN))

    def character_places(self, name, offsets):
        """Where the characters at these offsets of a text are on screen."""
        accessible = self.the(name)
        screen = Atspi.CoordType.SCREEN
        return [self._rectangle(Atspi.Text.get_character_extents(accessible, i, screen)) for i in offsets]

    @staticmethod
    def _rectangle(extents):
        return (extents.x, extents.y, extents.width, extents.height)

    def click(self, name, role=None):
        x, y, width, height = self.place(name, role)
        self.desktop.click_at(x + width // 2, y + height // 2)

    def key(self, *keys):
        self.desktop.key(*keys)

    def type(self, text):
        self.desktop.type(text)

    def is_focused(self, name):
        accessible = self.find(name)
        return accessible and accessible.get_state_set().contains(Atspi.StateType.FOCUSED)

    def save_picture(self, file):
        """A picture of the window without its frame."""
        self.desktop.save_picture(file, self.window)

    def close(self):
        """Closes the window as its close button does; returns the exit code and what was said on stderr."""
        self.desktop.xdotool("windowactivate", "--sync", self.window)
        self.key("alt+F4")
        return self.wait_for_end()

    def wait_for_end(self):
        _, said = self.process.communicate(timeout=PATIENCE)
        return self.process.returncode, said

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.communicate()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()
