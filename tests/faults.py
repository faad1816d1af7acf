#!/usr/bin/python3 -B
"""What can go wrong around the program, provoked for real: the game goes on, and what can be kept is kept.

    tests/faults.py PROGRAM
"""

import itertools
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path
from unittest import mock

from support.desktop import Atspi, Desktop, Program, wait_until

# Mounts are made in a namespace of the test's own, in which most systems let any user make them.
NAMESPACE = ["unshare", "--mount", *([] if os.geteuid() == 0 else ["--map-root-user"])]
if "MAY_MOUNT" not in os.environ:
    possible = subprocess.run([*NAMESPACE, "true"], capture_output=True, check=False).returncode == 0
    os.environ["MAY_MOUNT"] = "yes" if possible else ""
    if possible:
        os.execvp(NAMESPACE[0], [*NAMESPACE, sys.executable, "-B", *sys.argv])
MAY_MOUNT = bool(os.environ["MAY_MOUNT"])

PROGRAM = Path(sys.argv.pop(1)).resolve()
UNPRIVILEGED = [shutil.which("setpriv"), "--bounding-set=-all", "--inh-caps=-all"] if os.geteuid() == 0 else []
READ_ONLY = ["unshare", "--mount", "sh", "-c", 'mount -o remount,bind,ro / && exec "$@"', "sh"]
FAKE_SPEECHD = Path(__file__).parent / "support" / "fake_speechd.py"
FAKETIME = next(Path("/usr/lib").glob("*/faketime/libfaketime.so.1"), None)

BEFORE = b"; note\r\n[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n[Other]\r\nX=1\r\n"
SAVED = BEFORE.replace(b"36", b"40")
CHANGED = b"[Other]\nY=2\n[Options]\nFontSz=20\nAutoCallTm=20\n"
CHANGED_AND_SAVED = b"[Other]\nY=2\n[Options]\nFontSz=40\nAutoCallTm=5\n"


def fill(folder):
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8k", "none", folder], check=True)
    (folder / "vellomir.ini").write_bytes(BEFORE)
    (folder / "filler").write_bytes(bytes(4096))


# Fault, what is done to the settings file before the start and while the program runs, the two settings shown, and
# the file in the end. A box without a text goes by its name.
SETTINGS = [
    ("none", None, None, ["36", "5"], SAVED),
    ("folder not writable", lambda file: file.parent.chmod(0o500), None, ["36", "5"], BEFORE),
    ("folder full", lambda file: fill(file.parent), None, ["36", "5"], BEFORE),
    ("folder vanished", None, lambda file: shutil.rmtree(file.parent), ["36", "5"], None),
    ("a folder", lambda file: (file.unlink(), file.mkdir()), None, ["Font size", "10"], None),
    ("1 GB", lambda file: os.truncate(file, 1 << 30), None, ["Font size", "10"], BEFORE),
    ("unreadable", lambda file: file.chmod(0), None, ["Font size", "10"], BEFORE),
    ("changed meanwhile", None, lambda file: file.write_bytes(CHANGED), ["36", "5"], CHANGED_AND_SAVED),
]

# What the environment lacks, and where the settings are then kept.
FOLDERS = [
    (["AppData"], "config"),
    (["AppData", "XDG_CONFIG_HOME"], ".config"),
    (["HOME"], "settings"),
    (["AppData", "HOME"], "config"),
    (["AppData", "HOME", "XDG_CONFIG_HOME"], None),
]

NO_SPEECH = {"SPEECHD_CMD": "/nonexistent", "SPEECHD_ADDRESS": "unix_socket:/nonexistent"}

# Fault, what is done to the help text before the start, the box that says so, and the end of what is shown.
HELP = [
    ("missing", lambda file: file.unlink(), "Help file missing", ""),
    ("unreadable", lambda file: file.chmod(0), "Help file missing", ""),
    ("1 GB", lambda file: os.truncate(file, 1 << 30), None, "\n(The file goes on. Only its beginning is shown.)\n"),
]


class Faults(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop())

    def setUp(self):
        self.enterContext(mock.patch.dict(self.desktop.environment))
        self.renew_settings()

    def renew_settings(self):
        """A home in which nothing has gone wrong yet."""
        self.home = Path(tempfile.mkdtemp(dir=self.desktop.home))
        folders = {"HOME": self.home, "AppData": self.home / "settings", "XDG_CONFIG_HOME": self.home / "config"}
        self.desktop.environment.update({name: str(folder) for name, folder in folders.items()})
        self.file = self.home / "settings" / "vellomir" / "vellomir.ini"
        self.file.parent.mkdir(parents=True)
        self.file.write_bytes(BEFORE)

    def start(self, *wrapper, program=PROGRAM, title="Vellomir"):
        return Program(self.desktop, *wrapper, *UNPRIVILEGED, program, title=title)

    def serve(self, mood):
        """A speech service, which is ready to listen."""
        socket = self.home / "speech"
        socket.unlink(missing_ok=True)
        service = self.service = subprocess.Popen([FAKE_SPEECHD, socket, mood], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(service.communicate)
        self.addCleanup(service.kill)
        self.desktop.environment["SPEECHD_ADDRESS"] = f"unix_socket:{socket}"
        self.wait_for_line(service, "listening")
        return service

    def wait_for_line(self, service, line):
        self.assertIn(line + "\n", iter(service.stdout.readline, ""))

    def enter(self, program, text):
        program.click("Number to call")
        program.type(f"{text}\r")

    def call(self, program, number, count):
        self.enter(program, number)
        program.the(f"Balls Called: {count}", "label")

    def open_menu(self, program, *keys):
        self.desktop.xdotool("windowactivate", "--sync", program.window)
        program.key("alt", *keys)

    def titles(self, program):
        return [window.get_name() for window in program.windows()]

    def assert_ends(self, end, patience=2):
        start = time.monotonic()
        self.assertEqual(end(), (0, ""))
        self.assertLess(time.monotonic() - start, patience)

    def test_settings(self):
        for fault, before, meanwhile, shown, after in SETTINGS:
            if fault == "folder full" and not MAY_MOUNT:
                print("skipped: a full folder, because nothing may be mounted here")
                continue
            with self.subTest(fault):
                self.renew_settings()
                if before:
                    before(self.file)
                with self.start() as program:
                    self.assertEqual([box.get_name() for box in program.all("combo box")], shown)
                    if meanwhile:
                        meanwhile(self.file)
                    program.click("Font size")
                    program.key("ctrl+a")
                    program.type("40\r")
                    self.call(program, 7, 1)
                    self.assertEqual(self.titles(program), ["Vellomir"])
                    self.assert_ends(program.close)
                self.file.is_file() and self.file.chmod(0o600)
                self.assertEqual(self.file.read_bytes()[: len(BEFORE)] if self.file.is_file() else None, after)

    def test_folders(self):
        for lacking, folder in FOLDERS:
            if folder is None and not MAY_MOUNT:
                print("skipped: no folder at all, because nothing may be mounted here")
                continue
            with self.subTest(lacking):
                self.renew_settings()
                shutil.rmtree(self.file.parent)
                for name in lacking:
                    del self.desktop.environment[name]
                with self.start(*([] if folder else READ_ONLY)) as program:
                    self.call(program, 7, 1)
                    self.assert_ends(program.close)
                kept = [str(file.relative_to(self.home)) for file in self.home.rglob("*.ini")]
                self.assertEqual(kept, [f"{folder}/vellomir/vellomir.ini"] if folder else [])

    # ---- Signals

    def open_printer_dialog(self, program):
        self.open_menu(program, "Right", "Down", "Return")
        program.the("QOR Help", "frame")
        program.key("alt", "Right", "Return")
        program.the("Print", "dialog")

    def hear_sample(self, program):
        self.open_menu(program, "Down", "Return")
        program.click("German")
        program.click("Listen")
        self.wait_for_line(self.service, "SPEAK")

    def test_signals(self):
        states = {
            "board": lambda program: None,
            "question": lambda program: (program.click("Clear Board"), program.the("Clear Board", "alert")),
            "menu": lambda program: (self.open_menu(program, "Down"), program.the("Exit", "menu item")),
            "list": lambda program: (program.click("5", "combo box"), program.the("20", "list item")),
            "printer dialog": self.open_printer_dialog,
            "sample": self.hear_sample,
        }
        signals = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)
        for (state, reach), number in zip(states.items(), itertools.cycle(signals)):
            with self.subTest(state, number=number):
                self.renew_settings()
                self.serve("silent")
                with self.start() as program:
                    reach(program)
                    self.file.unlink()
                    program.process.send_signal(number)
                    self.assert_ends(program.wait_for_end, 1)
                self.assertEqual(self.file.read_bytes(), b"[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n")

    def test_signal_at_the_error_box_of_the_start(self):
        self.desktop.environment.update(NO_SPEECH)
        with self.start(title="Run-Time Error") as program:
            program.process.send_signal(signal.SIGTERM)
            self.assert_ends(program.wait_for_end, 1)
        self.assertEqual(self.file.read_bytes(), BEFORE)

    # ---- The display

    def test_display_gone(self):
        states = {
            "board": lambda program: None,
            "question": lambda program: (program.click("Clear Board"), program.the("Clear Board", "alert")),
            "nobody to hear of it": lambda program: os.dup2(os.open(os.devnull, os.O_RDONLY), program.process.stderr.fileno()),
        }
        for state, reach in states.items():
            with self.subTest(state):
                self.renew_settings()
                display = self.desktop.open_screen()
                with self.start() as program:
                    reach(program)
                    self.file.unlink()
                    display.kill()
                    self.assertEqual(program.process.wait(2), 1)
                self.assertEqual(self.file.read_bytes(), b"[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n")

    # ---- Speech

    def assert_error(self, program, description, number, patience):
        text = f"Desc: {description}\nErr #: {number}"
        wait_until(lambda: program.find(text), f"no box says {text!r}", patience)
        program.key("Return")
        program.wait_until_gone("Run-Time Error")

    def test_speech(self):
        faults = {
            signal.SIGKILL: ("The speech service was lost.", 2),
            signal.SIGSTOP: ("The speech service does not answer.", 3),
        }
        for fault, error in faults.items():
            self.serve("silent")
            with self.subTest(fault), self.start() as program:
                program.click("Make Voice Calls")
                self.call(program, 7, 1)
                self.wait_for_line(self.service, "Bee, 7")
                self.service.send_signal(fault)
                self.assert_error(program, *error, 20)
                self.service.kill()
                self.serve("normal")
                self.call(program, 33, 2)
                self.wait_for_line(self.service, "En, 33")
                self.wait_for_line(self.service, "En, 3 ,3")
                self.assert_ends(program.close)

    def test_no_speech(self):
        self.desktop.environment.update(NO_SPEECH)
        with self.start(title="Run-Time Error") as program:
            self.assert_error(program, "No speech service is installed.", 1, 5)
            program.click("Make Voice Calls")
            for count in (1, 2):
                self.enter(program, count)
                self.assert_error(program, "There is no voice to speak with.", 1, 5)
                program.the(f"Balls Called: {count}", "label")
            program.key("alt+F4")
            self.assert_ends(program.wait_for_end)

    # ---- Help and browser

    def open_help(self, program):
        self.open_menu(program, "Right", "Down", "Return")
        program.the("QOR Help", "frame")

    def test_help(self):
        for fault, before, box, end in HELP:
            with self.subTest(fault):
                help_text = self.home / "help.txt"
                help_text.unlink(missing_ok=True)
                help_text.write_text("Some line.\n" * 50_000)
                before(help_text)
                with self.start(program=shutil.copy(PROGRAM, self.home)) as program:
                    self.open_menu(program, "Right", "Down", "Return")
                    if box:
                        program.the(box)
                        program.key("Return")
                    program.the("QOR Help", "frame")
                    self.assertEqual(program.text("Help text")[-50:], end)
                    self.assert_ends(program.close)

    def test_no_browser(self):
        with self.start("env", "PATH=/nonexistent") as program:
            self.open_menu(program, "Right", "Down", "Down", "Return")
            program.click("Go To Website")
            program.key("alt+F4")
            program.wait_until_gone("Go To Website")
            self.assertEqual(program.close()[0], 0)  # Qt says on standard error what it missed

    # ---- Time

    def set_clock(self, offset):
        (self.home / "clock").write_text(offset)

    def start_countdown(self, monotonic):
        """A program in its first countdown, whose clocks follow set_clock: the monotonic one too, or not."""
        self.set_clock("+0")
        self.desktop.environment.update(
            LD_PRELOAD=str(FAKETIME),
            FAKETIME_TIMESTAMP_FILE=str(self.home / "clock"),
            FAKETIME_NO_CACHE="1",
            FAKETIME_DONT_FAKE_MONOTONIC="0" if monotonic else "1",
        )
        program = self.enterContext(self.start())
        program.click("Auto Draw Every")
        program.the("Auto Call In : 5")
        return program

    def count(self, program):
        return next(int(n[13:]) for n in (a.get_name() for a in program.all("label")) if n.startswith("Balls"))

    @unittest.skipUnless(FAKETIME, "faketime is not installed")
    def test_clock_set(self):
        program = self.start_countdown(monotonic=False)
        for draws, offset in enumerate(("-1d", "+1d"), start=2):
            start = time.monotonic()
            self.set_clock(offset)
            for left in (4, 3, 2, 1, 5):
                program.the(f"Auto Call In : {left}")
            self.assertAlmostEqual(time.monotonic() - start, 5, delta=0.5)
            self.assertEqual(self.count(program), draws)
        self.assert_ends(program.close)

    @unittest.skipUnless(FAKETIME, "faketime is not installed")
    def test_sleep(self):
        program = self.start_countdown(monotonic=True)
        program.process.send_signal(signal.SIGSTOP)
        self.set_clock("+1h")
        program.process.send_signal(signal.SIGCONT)
        program.the("Auto Call In : 3")
        self.assertEqual(self.count(program), 1)
        self.assert_ends(program.close)

    # ---- The operator

    def test_hasty_keys(self):
        with self.start() as program:
            program.click("Number to call")
            self.desktop.xdotool("type", "--delay", 4, "".join(f"{number}\r" for number in range(1, 76)))
            program.the("Balls Called: 75", "label")
            self.assertEqual(program.text("Past numbers").split(), ["O74", "O73", "O72", "O71"])
            program.key("alt+F4", "alt+F4")
            self.assert_ends(program.wait_for_end)

    def test_windows_closed_by_the_desktop(self):
        self.serve("normal")
        with self.start() as program:
            self.desktop.xdotool("windowmove", program.window, -3000, -3000)
            announce = max(
                (button for button in program.all("push button") if button.get_name() == "Bingo"),
                key=lambda button: button.get_position(Atspi.CoordType.SCREEN).y,
            )
            for open_window in (
                lambda: self.open_menu(program, "Down", "Return"),
                lambda: self.open_menu(program, "Right", "Down", "Return"),
                lambda: self.open_menu(program, "Right", "Down", "Down", "Return"),
                lambda: announce.do_action(0),
            ):
                open_window()
                wait_until(lambda: len(self.titles(program)) == 2)
                program.key("alt+F4")
                wait_until(lambda: self.titles(program) == ["Vellomir"])
            self.assert_ends(program.close)


if __name__ == "__main__":
    unittest.main(verbosity=2)
