#!/usr/bin/python3 -B
"""The real program, played and disturbed from outside: tests/outside.py PROGRAM, on a screen and a bus of its own."""

import itertools
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path
from signal import SIGHUP, SIGINT, SIGKILL, SIGSTOP, SIGTERM

from support.desktop import Program, has, key, run, taskbar, wait_until

PROGRAM = Path(sys.argv.pop(1)).resolve()
UNPRIVILEGED = [shutil.which("setpriv"), "--bounding-set=-all", "--inh-caps=-all"] if os.geteuid() == 0 else []
FAKE_SPEECHD = Path(__file__).parent / "support" / "fake_speechd.py"
VOICES, HELP, ABOUT = ["Down", "Return"], ["Right", "Down", "Return"], ["Right", "Down", "Down", "Return"]
INI = b"; note\r\n[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n[Other]\r\nX=1\r\n"
DONE = INI.replace(b"36", b"40")
CHANGED = b"[Other]\nY=2\n[Options]\nFontSz=20\nAutoCallTm=20\n"

# What is done to the settings file before the start, before the end; the boxes then; the file in the end.
SETTINGS = {
    "no fault": (None, None, ["36", "5"], DONE),
    "folder not writable": (lambda file: file.parent.chmod(0o500), None, ["36", "5"], DONE),
    "file not writable": (lambda file: (file.chmod(0o400), file.parent.chmod(0o500)), None, ["36", "5"], INI),
    "folder vanished": (None, lambda file: shutil.rmtree(file.parent), ["36", "5"], None),
    "changed meanwhile": (None, lambda file: file.write_bytes(CHANGED), ["36", "5"],
                          b"[Other]\nY=2\n[Options]\nFontSz=40\nAutoCallTm=5\n"),
    "a folder": (lambda file: (file.unlink(), file.mkdir()), None, ["33", "10"], None),
    "unreadable": (lambda file: file.chmod(0), None, ["33", "10"], INI),
    "UTF-16": (lambda file: file.write_bytes(INI.decode().encode("utf-16")), None, ["33", "10"],
               INI.decode().encode("utf-16")),
    "1 GB": (lambda file: os.truncate(file, 1 << 30), None, ["33", "10"], INI),
}  # fmt: skip


class Outside(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        manager = subprocess.Popen(["openbox", "--sm-disable"])
        cls.addClassCleanup(manager.kill)
        cls.display = os.environ["DISPLAY"]
        wait_until(lambda: "window id" in run("xprop", "-root", "_NET_CLIENT_LIST"), "openbox")

    def setUp(self):
        self.home = Path(self.enterContext(tempfile.TemporaryDirectory()))
        os.environ.update(HOME=str(self.home), AppData=str(self.home / "settings"), XDG_CONFIG_HOME=str(self.home / "config"),
                          XDG_RUNTIME_DIR=str(self.home), SPEECHD_CMD="/none", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.file = self.home / "settings" / PROGRAM.name / f"{PROGRAM.name}.ini"
        self.file.parent.mkdir(parents=True)
        self.file.write_bytes(INI)
        self.serve("normal")

    def serve(self, mood):
        """Starts a speech service that programs started from now on will find."""
        socket = self.home / "speech"
        socket.unlink(missing_ok=True)
        os.environ["SPEECHD_ADDRESS"] = f"unix_socket:{socket}"
        with (self.home / "heard").open("w") as heard:
            self.service = subprocess.Popen([FAKE_SPEECHD, socket, mood], stdout=heard)
        self.addCleanup(self.service.wait)
        self.addCleanup(self.service.kill)
        self.heard("listening")

    def heard(self, line):
        wait_until(lambda: line in (self.home / "heard").read_text().splitlines(), f"{line!r} at the service")

    def start(self, *wrapper, program=PROGRAM, **options):
        program = Program(*wrapper, *UNPRIVILEGED, program, "-platform", "offscreen", **options)
        self.addCleanup(program.__exit__)
        return program

    def open_display(self):
        """A display that can be lost, for the programs that are started from now on; answers its server."""
        server = subprocess.Popen(["Xvfb", "-displayfd", "1"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(server.communicate)
        self.addCleanup(server.kill)
        os.environ["DISPLAY"] = ":" + server.stdout.readline().strip()
        self.addCleanup(subprocess.Popen("openbox").kill)
        wait_until(lambda: "window id" in run("xprop", "-root", "_NET_CLIENT_LIST"), "openbox")
        return server

    def hold(self, name, seconds=1.5):
        run("xdotool", "keydown", name, "sleep", seconds, "keyup", name)

    def test_a_game(self):
        program = self.start()
        entry = "Number to call"

        def count(number):
            return program.the(f"Balls Called: {number}", "label")

        wait_until(lambda: has(program.the(entry), "FOCUSED"), "the focus")
        program.click("B 7")
        count(1)
        program.type("N33\r7\r")
        program.the("Clearing button,\nAre you sure?")
        key("y")
        program.gone("Clearing button,\nAre you sure?")
        program.the("B 7, not called")
        program.the("N 33, called")
        self.hold("r")
        count(3)
        self.hold("7")
        self.assertGreater(len(program.text(entry)), 5)
        key("alt+r", "super+7", "p")
        self.assertEqual(program.text(entry), "")
        program.click("Auto Draw Every")
        program.the("Auto Call In : 5")
        count(4)
        for name, caption in ("Return", "Play"), ("space", "Pause"), ("Return", "Play"):
            self.hold(name)
            program.the(caption, "push button")
        program.click("Clear Board")
        program.the("Clearing board,\nAre you sure?")
        key("y")
        count(0)
        program.type("".join(f"{n}\r" for n in range(1, 76)), delay=4)
        count(75)
        self.assertEqual(program.the("Past numbers").get_description(), "O 74, O 73, O 72, O 71")
        self.assertEqual(program.the("Current number").get_description(), "O 75")
        key("r")
        program.the("Full Board....")
        key("Return")
        x, y, width, height = program.place("Pause" if program.find("Pause") else "Play", "push button")
        run("xdotool", "mousemove", x + width + 50, y + height // 2, "click", "--repeat", 2, "--delay", 80, 1)
        wait_until(lambda: len(program.windows()) == 2, "the announcement")
        self.assertEqual(taskbar(), ["Vellomir"])
        time.sleep(1)
        x, y, *_ = program.place("B 8")
        run("xdotool", "mousemove", x + 9, y + 9, "click", "--repeat", 2, "--delay", 80, 1)
        wait_until(lambda: len(program.windows()) == 1, "the end of the announcement")
        time.sleep(1)
        self.assertEqual(program.windows(), ["Vellomir*"])
        self.assertEqual(program.close(), (0, ""))

    def test_windows(self):
        """Each from the menu, named to a screen reader, in front though it was minimized, and kept off the taskbar."""
        program = self.start()
        x, y, width, height = program.place("Vellomir", "frame")
        extents = list(map(int, re.findall(r"\d+", run("xprop", "-id", program.window, "_NET_FRAME_EXTENTS"))))
        left, right, top, bottom = extents[-4:]
        self.assertLessEqual(abs(2 * x + width + right - left - 1600), 2)
        self.assertLessEqual(abs(2 * y + height + bottom - top - 1000), 2)
        for opening, title, closing, listed in (
            (VOICES, "Form1", ["alt+F4"], True),
            (HELP, "QOR Help", ["alt", "Return"], False),
            (ABOUT, "About", ["Return"], False),
        ):
            program.choose(*opening)
            wait_until(lambda: f"{title}*" in program.windows(), title)
            self.assertEqual(len(taskbar()), 2 if listed else 1)
            focusable = [found for found in program.everything() if has(found, "FOCUSABLE")]
            wait_until(lambda: all(found.get_name() for found in focusable), f"a name for all in {title}")
            if listed:
                run("xdotool", "search", "--name", f"^{title}$", "windowminimize")
            program.choose(*opening)
            wait_until(lambda: f"{title}*" in program.windows(), f"{title} again")
            key(*closing)
            wait_until(lambda: program.windows() == ["Vellomir*"], f"the end of {title}")
        self.assertEqual(program.close(), (0, ""))

    def test_no_browser(self):
        program = self.start("env", f"PATH={self.home}")
        program.choose(*ABOUT)
        program.click("Go To Website")
        self.assertEqual(program.windows(), ["Vellomir", "About*"])
        self.assertEqual(program.close()[0], 0)  # Qt says on standard error what it missed.

    # ---- Settings

    def test_settings(self):
        for fault, (before, meanwhile, shown, after) in SETTINGS.items():
            with self.subTest(fault), tempfile.TemporaryDirectory() as folder:
                os.environ["AppData"] = folder
                file = Path(folder, PROGRAM.name, f"{PROGRAM.name}.ini")
                file.parent.mkdir()
                file.write_bytes(INI)
                before and before(file)
                with self.start() as program:
                    boxes = [found for found in program.everything() if found.get_role_name() == "combo box"]
                    self.assertEqual([box.get_name() for box in boxes], shown)
                    meanwhile and meanwhile(file)
                    program.click("Font size")
                    key("ctrl+a")
                    program.type("40\r")
                    self.assertEqual(program.close(), (0, ""))
                if file.is_file():
                    self.assertEqual(file.read_bytes()[:1000].rstrip(b"\0"), after.rstrip(b"\0"))
                self.assertEqual(file.is_file(), after is not None)

    def test_a_full_disk(self):
        program = self.start("prlimit", "--fsize=20")
        self.assertEqual(program.close(), (0, ""))
        self.assertEqual(self.file.read_bytes(), INI)

    def test_folders(self):
        """A program of another name has its own settings, and what the environment lacks is found elsewhere."""
        other = shutil.copy(PROGRAM, self.home / "caller")
        for lacking, folder in (["none"], "settings"), (["AppData"], "config"), (["AppData", "XDG_CONFIG_HOME"], ".config"):
            environment = {name: value for name, value in os.environ.items() if name not in lacking}
            program = self.start(program=other, env=environment)
            self.assertEqual(program.close(), (0, ""))
            self.assertTrue((self.home / folder / "caller" / "caller.ini").is_file(), folder)

    # ---- The end from outside

    def hear_sample(self, program):
        program.choose(*VOICES)
        program.click("German")
        program.click("Listen")
        self.heard("SPEAK")

    def print(self, program):
        program.choose(*HELP)
        program.the("QOR Help", "frame")
        key("alt", "Right", "Return")
        program.the("Print", "dialog")

    def test_ends_from_outside(self):
        states = {
            "board": lambda program: None,
            "question": lambda program: (program.click("Clear Board"), program.the("Clear Board", "alert")),
            "menu": lambda program: (program.choose("Down"), program.the("Exit", "menu item")),
            "printer dialog": self.print,
            "sample": self.hear_sample,
        }
        signals = itertools.cycle([SIGTERM, SIGINT, SIGHUP])
        self.serve("silent")
        for (state, reach), is_display in itertools.product(states.items(), (False, True)):
            with self.subTest(state, is_display=is_display):
                display = self.open_display() if is_display else None
                with self.start() as program:
                    reach(program)
                    self.file.unlink()
                    os.dup2(os.open(os.devnull, os.O_RDONLY), program.process.stderr.fileno())  # who listens goes too
                    display.kill() if display else program.process.send_signal(next(signals))
                    self.assertEqual(program.process.wait(20), 1 if display else 0)
                    self.assertEqual(self.file.read_bytes(), b"[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n")
                    self.file.write_bytes(INI)
                    os.environ["DISPLAY"] = self.display

    def test_nohup(self):
        program = self.start("sh", "-c", 'trap "" HUP; exec "$@"', "sh")
        program.process.send_signal(SIGHUP)
        program.click("B 7")
        program.the("Balls Called: 1")
        self.assertEqual(program.close(), (0, ""))

    def test_no_display(self):
        for display in ({}, {"DISPLAY": ":65000"}):
            environment = {"PATH": "/usr/bin:/bin", "HOME": "/nonexistent", **display}
            ended = subprocess.run([PROGRAM], env=environment, capture_output=True, text=True, timeout=30, check=False)
            self.assertGreater(ended.returncode, 0, "ended by a signal, or as if all were well")
            self.assertRegex(ended.stderr, r"\Avellomir: .*display.*\n\Z")

    # ---- Speech

    def assert_error(self, program, text):
        program.the(text)
        key("Return")
        program.gone("Run-Time Error")

    def test_speech(self):
        for fault, text in (
            (SIGKILL, "Desc: The speech service was lost.\nErr #: 2"),
            (SIGSTOP, "Desc: The speech service does not answer. The waiting calls were not spoken.\nErr #: 3"),
        ):
            with self.subTest(text):
                self.serve("silent")
                program = self.start()
                program.click("Make Voice Calls")
                program.click("B 7")
                self.heard("Bee, 7")
                self.service.send_signal(fault)
                self.assert_error(program, text)
                self.service.kill()
                self.serve("normal")
                program.click("N 33")
                self.heard("En, 3 , 3")
                self.assertEqual(program.close(), (0, ""))

    def test_no_speech(self):
        """Told once at the start, where the program can already be ended; then at each call."""
        self.service.kill()
        starter = self.home / "starter"
        starter.write_text("#!/bin/sh\necho Autospawn requested but disabled >&2\nexit 1\n")
        starter.chmod(0o700)
        for command, text in ("/none", "No speech service is installed."), (starter, "Autospawn requested but disabled"):
            with self.subTest(text):
                os.environ["SPEECHD_CMD"] = str(command)
                program = self.start(title="Run-Time Error")
                program.the(f"Desc: {text}\nErr #: 1")
                program.process.send_signal(SIGTERM)
                self.assertEqual(program.end()[0], 0)
                program = self.start(title="Run-Time Error")
                self.assert_error(program, f"Desc: {text}\nErr #: 1")
                program.title = "Vellomir"
                program.click("B 7")
                program.click("Make Voice Calls")
                program.click("N 33")
                wait_until(lambda: "Run-Time Error*" in program.windows(), "the box of the call")
                key("Return")
                program.the("Balls Called: 2")
                self.assertEqual(program.close(), (0, ""))


if __name__ == "__main__":
    unittest.main(verbosity=2)
