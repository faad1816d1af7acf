#!/usr/bin/python3 -B
"""What can go wrong around the program, provoked for real: the game goes on, and what can be kept is kept.

    tests/faults.py PROGRAM
"""

import itertools
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path
from signal import SIGCONT, SIGHUP, SIGINT, SIGKILL, SIGSTOP, SIGTERM

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

INI = b"; note\r\n[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n[Other]\r\nX=1\r\n"
CHANGED = b"[Other]\nY=2\n[Options]\nFontSz=20\nAutoCallTm=20\n"


def fill(folder):
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8k", "none", folder], check=True)
    (folder / "vellomir.ini").write_bytes(INI)
    (folder / "filler").write_bytes(bytes(4096))


def content(file):
    """The bytes of a file up to what was added to make it huge, or None when there is no file."""
    if not file.is_file():
        return None
    with file.open("rb") as opened:
        return opened.read(1000).rstrip(b"\0")


# What is done to the settings file before the start and while the program runs, the boxes then, and the file in the end.
SETTINGS = {
    "no fault": (None, None, ["36", "5"], INI.replace(b"36", b"40")),
    "folder not writable": (lambda file: file.parent.chmod(0o500), None, ["36", "5"], INI.replace(b"36", b"40")),
    "folder full": (lambda file: fill(file.parent), None, ["36", "5"], INI.replace(b"36", b"40")),
    "folder vanished": (None, lambda file: shutil.rmtree(file.parent), ["36", "5"], None),
    "a folder": (lambda file: (file.unlink(), file.mkdir()), None, ["33", "10"], None),
    "1 GB": (lambda file: os.truncate(file, 1 << 30), None, ["33", "10"], INI),
    "unreadable": (lambda file: file.chmod(0), None, ["33", "10"], INI),
    "changed meanwhile": (None, lambda file: file.write_bytes(CHANGED), ["36", "5"],
                          b"[Other]\nY=2\n[Options]\nFontSz=40\nAutoCallTm=5\n"),
}  # fmt: skip

# Where the settings are kept when the environment lacks some variables.
FOLDERS = [
    (["AppData"], "config"),
    (["AppData", "XDG_CONFIG_HOME"], ".config"),
    (["HOME"], "settings"),
    (["AppData", "HOME"], "config"),
    (["AppData", "HOME", "XDG_CONFIG_HOME"], None),
]

# What is done to the help text, the box that tells of it, and the end of what is shown.
HELP = {
    "missing": (lambda file: file.unlink(), "Help file missing", ""),
    "unreadable": (lambda file: file.chmod(0), "Help file missing", ""),
    "1 GB": (lambda file: os.truncate(file, 1 << 30), None, "\n(The file goes on. Only its beginning is shown.)\n"),
}

# Keys that choose from the main window's menus.
VOICES, HELP_KEYS, ABOUT = ["Down", "Return"], ["Right", "Down", "Return"], ["Right", "Down", "Down", "Return"]


class Faults(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop())
        cls.environment = cls.desktop.environment

    def setUp(self):
        self.renew_home()

    def renew_home(self):
        """A home in which nothing has gone wrong yet, for the programs that are started from now on."""
        self.home = Path(tempfile.mkdtemp(dir=self.desktop.home))
        folders = {"HOME": self.home, "AppData": self.home / "settings", "XDG_CONFIG_HOME": self.home / "config"}
        self.desktop.environment = self.environment | {name: str(folder) for name, folder in folders.items()}
        self.file = self.home / "settings" / "vellomir" / "vellomir.ini"
        self.file.parent.mkdir(parents=True)
        self.file.write_bytes(INI)

    def start(self, *wrapper, program=PROGRAM, title="Vellomir"):
        return Program(self.desktop, *wrapper, *UNPRIVILEGED, program, title=title)

    def serve(self, mood):
        """Starts a speech service that programs started from now on will find."""
        socket = self.home / "speech"
        socket.unlink(missing_ok=True)
        with (self.home / "heard").open("w") as heard:
            self.service = subprocess.Popen([FAKE_SPEECHD, socket, mood], stdout=heard, stderr=subprocess.DEVNULL)
        self.addCleanup(self.service.wait)
        self.addCleanup(self.service.kill)
        self.desktop.environment["SPEECHD_ADDRESS"] = f"unix_socket:{socket}"
        self.wait_until_served("listening")

    def wait_until_served(self, line):
        heard = self.home / "heard"
        wait_until(lambda: line in heard.read_text().splitlines(), f"the service did not hear {line!r}")

    def choose(self, program, keys):
        self.desktop.xdotool("windowactivate", "--sync", program.window)
        program.key("alt", *keys)

    def enter(self, program, text, box="Number to call"):
        program.click(box)
        program.key("ctrl+a")
        program.type(f"{text}\r")

    def call(self, program, number, count):
        self.enter(program, number)
        program.the(f"Balls Called: {count}", "label")

    def titles(self, program):
        return [window.get_name() for window in program.windows()]

    def is_active(self, window):
        return window.get_state_set().contains(Atspi.StateType.ACTIVE)

    def can_mount(self, what):
        if not MAY_MOUNT:
            print(f"skipped, because nothing may be mounted here: {what}")
        return MAY_MOUNT

    def assert_closes(self, program):
        start = time.monotonic()
        self.assertEqual(program.close(), (0, ""))
        self.assertLess(time.monotonic() - start, 2)

    # ---- Settings

    def test_settings(self):
        for fault, (before, meanwhile, shown, after) in SETTINGS.items():
            if fault == "folder full" and not self.can_mount(fault):
                continue
            self.renew_home()
            if before:
                before(self.file)
            with self.subTest(fault), self.start() as program:
                self.assertEqual([box.get_name() for box in program.all("combo box")], shown)
                if meanwhile:
                    meanwhile(self.file)
                self.enter(program, 40, "Font size")
                self.call(program, 7, 1)
                self.assertEqual(self.titles(program), ["Vellomir"])
                self.assert_closes(program)
                self.assertEqual(content(self.file), after)

    def test_folders(self):
        for lacking, folder in FOLDERS:
            if folder is None and not self.can_mount("no folder at all"):
                continue
            self.renew_home()
            shutil.rmtree(self.file.parent)
            for name in lacking:
                del self.desktop.environment[name]
            with self.subTest(lacking), self.start(*([] if folder else READ_ONLY)) as program:
                self.call(program, 7, 1)
                self.assert_closes(program)
                kept = [str(file.relative_to(self.home)) for file in self.home.rglob("*.ini")]
                self.assertEqual(kept, [f"{folder}/vellomir/vellomir.ini"] if folder else [])

    # ---- The end from outside

    def open_printer_dialog(self, program):
        self.choose(program, HELP_KEYS)
        program.the("QOR Help", "frame")
        program.key("alt", "Right", "Return")
        program.the("Print", "dialog")

    def hear_sample(self, program):
        self.choose(program, VOICES)
        program.click("German")
        program.click("Listen")
        self.wait_until_served("SPEAK")

    def test_ends_from_outside(self):
        states = {
            "board": lambda program: None,
            "question": lambda program: (program.click("Clear Board"), program.the("Clear Board", "alert")),
            "menu": lambda program: (self.choose(program, ["Down"]), program.the("Exit", "menu item")),
            "list": lambda program: (program.click("5", "combo box"), program.the("20", "list item")),
            "printer dialog": self.open_printer_dialog,
            "sample": self.hear_sample,
        }
        signals = itertools.cycle([SIGTERM, SIGINT, SIGHUP])
        for (state, reach), is_display in itertools.product(states.items(), (False, True)):
            self.renew_home()
            self.serve("silent")
            display = self.desktop.open_screen() if is_display else None
            with self.subTest(state, display=is_display), self.start() as program:
                reach(program)
                self.file.unlink()
                os.dup2(os.open(os.devnull, os.O_RDONLY), program.process.stderr.fileno())  # who listens goes too
                display.kill() if display else program.process.send_signal(next(signals))
                self.assertEqual(program.process.wait(1), 1 if display else 0)
                self.assertEqual(self.file.read_bytes(), b"[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n")

    def test_end_at_the_error_box_of_the_start(self):
        self.desktop.environment.update(SPEECHD_CMD="/none", SPEECHD_ADDRESS="unix_socket:/none")
        with self.start(title="Run-Time Error") as program:
            program.process.send_signal(SIGTERM)
            self.assertEqual(program.process.wait(1), 0)
            self.assertEqual(self.file.read_bytes(), INI)

    # ---- Speech

    def assert_error(self, program, description, number):
        text = f"Desc: {description}\nErr #: {number}"
        wait_until(lambda: program.find(text), f"no box says {text!r}")
        program.key("Return")
        program.wait_until_gone("Run-Time Error")

    def test_speech(self):
        self.desktop.environment["SPEECHD_CMD"] = "/none"
        for fault, *error in (
            (SIGKILL, "The speech service was lost.", 2),
            (SIGSTOP, "The speech service does not answer.", 3),
        ):
            self.serve("silent")
            with self.subTest(fault), self.start() as program:
                program.click("Make Voice Calls")
                self.call(program, 7, 1)
                self.wait_until_served("Bee, 7")
                self.service.send_signal(fault)
                self.assert_error(program, *error)
                self.service.kill()
                self.serve("normal")
                self.call(program, 33, 2)
                self.wait_until_served("En, 33")
                self.wait_until_served("En, 3 , 3")
                self.assert_closes(program)

    def test_no_speech(self):
        self.desktop.environment.update(SPEECHD_CMD="/none", SPEECHD_ADDRESS="unix_socket:/none")
        with self.start(title="Run-Time Error") as program:
            self.assert_error(program, "No speech service is installed.", 1)
            program.click("Make Voice Calls")
            for count in (1, 2):
                self.enter(program, count)
                self.assert_error(program, "There is no voice to speak with.", 1)
                program.the(f"Balls Called: {count}", "label")

    # ---- Help and browser

    def test_help(self):
        for fault, (before, box, end) in HELP.items():
            self.renew_home()
            (self.home / "help.txt").write_text("Some line.\n" * 400_000)
            before(self.home / "help.txt")
            with self.subTest(fault), self.start(program=shutil.copy(PROGRAM, self.home)) as program:
                self.choose(program, HELP_KEYS)
                if box:
                    program.the(box)
                    program.key("Return")
                program.the("QOR Help", "frame")
                self.assertEqual(program.text("Help text")[-50:], end)
                self.assert_closes(program)

    def test_no_browser(self):
        with self.start("env", "PATH=/none") as program:
            self.choose(program, ABOUT)
            program.click("Go To Website")
            self.assertEqual(self.titles(program), ["Vellomir", "About"])
            self.assertEqual(program.close()[0], 0)  # Qt says on standard error what it missed

    # ---- Time

    def set_clock(self, offset):
        (self.home / "clock").write_text(offset)

    def start_countdown(self, monotonic):
        """The program after its first draw. Its clocks follow set_clock: the monotonic one too, or not."""
        if not FAKETIME:
            self.skipTest("faketime is not installed")
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

    def test_clock_set(self):
        program = self.start_countdown(monotonic=False)
        for draws, offset in enumerate(("-1d", "+1d"), start=2):
            start = time.monotonic()
            self.set_clock(offset)
            for left in (4, 3, 2, 1, 5):
                program.the(f"Auto Call In : {left}")
            self.assertAlmostEqual(time.monotonic() - start, 5, delta=0.5)
            self.assertTrue(program.find(f"Balls Called: {draws}"))

    def test_sleep(self):
        program = self.start_countdown(monotonic=True)
        program.process.send_signal(SIGSTOP)
        self.set_clock("+1h")
        program.process.send_signal(SIGCONT)
        program.the("Auto Call In : 3")
        self.assertTrue(program.find("Balls Called: 1"), "the draws that were slept through came all at once")

    # ---- The operator

    def test_hasty_keys(self):
        with self.start() as program:
            program.click("Number to call")
            self.desktop.xdotool("type", "--delay", 4, "".join(f"{number}\r" for number in range(1, 76)))
            program.the("Balls Called: 75", "label")
            self.assertEqual(program.text("Past numbers").split(), ["O74", "O73", "O72", "O71"])
            program.key("alt+F4", "alt+F4")
            self.assertEqual(program.wait_for_end(), (0, ""))

    def test_windows_closed_from_outside(self):
        with self.start() as program:
            bingo = [button for button in program.all("push button") if button.get_name() == "Bingo"]
            announce = max(bingo, key=lambda button: button.get_position(Atspi.CoordType.SCREEN).y)
            self.desktop.xdotool("windowmove", program.window, -3000, -3000)
            for keys in (VOICES, HELP_KEYS, ABOUT, None):
                self.choose(program, keys) if keys else announce.do_action(0)
                wait_until(lambda: len(self.titles(program)) == 2 and self.is_active(program.windows()[1]))
                program.key("alt+F4")
                wait_until(lambda: self.titles(program) == ["Vellomir"])
            self.assert_closes(program)


if __name__ == "__main__":
    unittest.main(verbosity=2)
