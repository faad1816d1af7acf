#!/usr/bin/python3 -B
"""The real program, played and disturbed from outside: outside.py PROGRAM, on a screen and a session bus of its own."""

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

from support.desktop import Program, click_at, has, key, open_window_manager, run, taskbar, wait_until

PROGRAM = Path(sys.argv.pop(1)).resolve()
UNPRIVILEGED = [shutil.which("setpriv"), "--bounding-set=-all", "--inh-caps=-all"] if os.geteuid() == 0 else []
FAKE_SPEECHD = Path(__file__).parent / "support" / "fake_speechd.py"
VOICES, HELP, ABOUT = ["Down", "Return"], ["Right", "Down", "Return"], ["Right", "Down", "Down", "Return"]
INI = b"; note\r\n[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n[Other]\r\nX=1\r\n"
DONE = INI.replace(b"36", b"40")
OTHER = b"[Other]\nY=2\n[Options]\nFontSz=20\nAutoCallTm=20\n"
UTF_16 = INI.decode().encode("utf-16")

# What is done to the settings file before the start, and before the end; what the boxes show; the file in the end.
SETTINGS = {
    "no fault": (None, None, "36 5", DONE),
    "folder not writable": (lambda file: file.parent.chmod(0o500), None, "36 5", DONE),
    "file not writable": (lambda file: (file.chmod(0o400), file.parent.chmod(0o500)), None, "36 5", INI),
    "folder vanished": (None, lambda file: shutil.rmtree(file.parent), "36 5", None),
    "changed meanwhile": (None, lambda file: file.write_bytes(OTHER), "36 5", OTHER.replace(b"20", b"40", 1).replace(b"20", b"5")),
    "a folder": (lambda file: (file.unlink(), file.mkdir()), None, "33 10", None),
    "unreadable": (lambda file: file.chmod(0), None, "33 10", INI),
    "UTF-16": (lambda file: file.write_bytes(UTF_16), None, "33 10", UTF_16),
    "1 GB": (lambda file: os.truncate(file, 1 << 30), None, "33 10", INI),
}  # fmt: skip


class Outside(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.addClassCleanup(open_window_manager().kill)
        cls.display = os.environ["DISPLAY"]

    def setUp(self):
        self.home = Path(self.enterContext(tempfile.TemporaryDirectory()))
        folders = {"HOME": "", "AppData": "settings", "XDG_CONFIG_HOME": "config", "XDG_RUNTIME_DIR": ""}
        os.environ.update({name: str(self.home / folder) for name, folder in folders.items()}, SPEECHD_CMD="/none")
        self.file = self.home / "settings" / PROGRAM.name / f"{PROGRAM.name}.ini"
        self.file.parent.mkdir(parents=True)
        self.file.write_bytes(INI)
        self.serve("normal")

    def spawn(self, *command, **options):
        process = subprocess.Popen(command, **options)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def serve(self, mood):
        """Starts a speech service that programs started from now on will find."""
        (self.home / "speech").unlink(missing_ok=True)
        os.environ["SPEECHD_ADDRESS"] = f"unix_socket:{self.home}/speech"
        with (self.home / "heard").open("w") as heard:
            self.service = self.spawn(FAKE_SPEECHD, self.home / "speech", mood, stdout=heard)
        self.heard("listening")

    def heard(self, line):
        wait_until(lambda: line in (self.home / "heard").read_text().splitlines(), f"{line!r} at the service")

    def start(self, *wrapper, program=PROGRAM, **options):
        started = Program(*wrapper, *UNPRIVILEGED, program, "-platform", "offscreen", **options)
        self.addCleanup(started.kill)
        return started

    def assert_closes(self, program):
        self.assertEqual(program.close(), (0, ""))

    def hold(self, name):
        run("xdotool", "keydown", name, "sleep", 1.5, "keyup", name)

    def test_a_game(self):
        program = self.start()
        entry = "Number to call"
        wait_until(lambda: has(program.the(entry), "FOCUSED"), "the focus")
        program.click("B 7")
        program.the("Balls Called: 1")
        program.type("N33\r7\r")
        program.the("Clearing button,\nAre you sure?")
        key("y")
        for name in ("B 7, not called", "N 33, called"):
            program.the(name)
        self.hold("r")
        program.the("Balls Called: 3")
        self.hold("7")
        self.assertGreater(len(program.text(entry)), 5)
        key("alt+r", "super+7", "p")
        self.assertEqual(program.text(entry), "")
        program.click("Auto Draw Every")
        program.the("Auto Call In : 5")
        program.the("Balls Called: 4")
        for name, caption in ("Return", "Play"), ("space", "Pause"), ("Return", "Play"):
            self.hold(name)
            program.the(caption, "push button")
        program.click("Auto Draw Every")
        program.click("Clear Board")
        program.the("Clearing board,\nAre you sure?")
        key("y")
        program.the("Balls Called: 0")
        program.type("".join(f"{n}\r" for n in range(1, 76)), delay=4)
        program.the("Balls Called: 75")
        self.assertEqual(program.the("Past numbers").get_description(), "O 74, O 73, O 72, O 71")
        key("r")
        program.the("Full Board....")
        key("Return")
        x, y, width, height = program.place("Play", "push button")
        click_at(x + width + 50, y + height // 2, times=2)
        wait_until(lambda: len(program.windows()) == 2, "the announcement")
        self.assertEqual(taskbar(), ["Vellomir"])
        time.sleep(1)
        self.assertEqual(len(program.windows()), 2)
        x, y, width, height = program.place("B 8")
        click_at(x + width // 2, y + height // 2, times=2)
        wait_until(lambda: len(program.windows()) == 1, "the end of the announcement")
        time.sleep(1)
        self.assertEqual(program.windows(), ["Vellomir*"])
        self.assert_closes(program)

    def test_windows(self):
        """Each from the menu, named to a screen reader, in front again, and off the taskbar where it is a tool."""
        program = self.start()
        x, y, width, height = program.place("Vellomir", "frame")
        extents = re.findall(r"\d+", run("xprop", "-id", program.window, "_NET_FRAME_EXTENTS"))
        left, right, top, bottom = map(int, extents[-4:])
        self.assertLessEqual(abs(2 * x + width + right - left - 1600), 2)
        self.assertLessEqual(abs(2 * y + height + bottom - top - 1000), 2)
        for opening, title, closing, listed in (
            (VOICES, "Form1", ["alt+F4"], 2),
            (HELP, "QOR Help", ["alt", "Return"], 1),
            (ABOUT, "About", ["Return"], 1),
        ):
            program.choose(*opening)
            wait_until(lambda: f"{title}*" in program.windows(), title)
            self.assertEqual(len(taskbar()), listed)
            focusable = [found for found in program.everything() if has(found, "FOCUSABLE")]
            wait_until(lambda: all(found.get_name() for found in focusable), f"a name for all in {title}")
            if listed == 2:
                run("xdotool", "search", "--name", f"^{title}$", "windowminimize")
            program.choose(*opening)
            wait_until(lambda: f"{title}*" in program.windows(), f"{title} again")
            key(*closing)
            wait_until(lambda: program.windows() == ["Vellomir*"], f"the end of {title}")
        self.assert_closes(program)

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
                program = self.start()
                boxes = [found for found in program.everything() if found.get_role_name() == "combo box"]
                self.assertEqual(" ".join(box.get_name() for box in boxes), shown)
                meanwhile and meanwhile(file)
                program.click("Font size")
                key("ctrl+a", "4", "0", "Return")
                self.assert_closes(program)
                self.assertEqual(file.is_file(), after is not None)
                self.assertTrue(after is None or file.read_bytes()[:1000].rstrip(b"\0") == after.rstrip(b"\0"))

    def test_a_full_disk(self):
        self.assert_closes(self.start("prlimit", "--fsize=20"))
        self.assertEqual(self.file.read_bytes(), INI)

    def test_folders(self):
        """A program of another name has its own settings, and what the environment lacks is found elsewhere."""
        other = shutil.copy(PROGRAM, self.home / "caller")
        for lacking, folder in (None, "settings"), ("AppData", "config"), ("XDG_CONFIG_HOME", ".config"):
            os.environ.pop(lacking or "", None)
            self.assert_closes(self.start(program=other))
            self.assertTrue((self.home / folder / "caller" / "caller.ini").is_file(), folder)

    # ---- The end from outside

    def hear_sample(self, program):
        program.choose(*VOICES)
        program.click("German")
        program.click("Listen")
        self.heard("SPEAK")

    def open_printer_dialog(self, program):
        program.choose(*HELP)
        program.the("QOR Help", "frame")
        key("alt", "Right", "Return")
        program.the("Print", "dialog")

    def open_display(self):
        """A display that can be lost, for the programs that are started from now on; answers its server."""
        server = self.spawn("Xvfb", "-displayfd", "1", stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        os.environ["DISPLAY"] = ":" + server.stdout.readline().decode().strip()
        self.addCleanup(open_window_manager().kill)
        return server

    def test_ends_from_outside(self):
        self.serve("silent")
        for state, reach, signal in (
            ("board", lambda program: None, SIGTERM),
            ("question", lambda program: (program.click("Clear Board"), program.the("Clear Board", "alert")), SIGINT),
            ("menu", lambda program: (program.choose("Down"), program.the("Exit", "menu item")), SIGHUP),
            ("printer dialog", self.open_printer_dialog, SIGTERM),
            ("sample", self.hear_sample, SIGTERM),
        ):
            for is_display in (False, True):
                os.environ["DISPLAY"] = self.display
                display = self.open_display() if is_display else None
                with self.subTest(state, is_display=is_display):
                    program = self.start()
                    reach(program)
                    self.file.unlink()
                    display.kill() if display else program.process.send_signal(signal)
                    self.assertEqual(program.process.wait(20), 1 if display else 0)
                    self.assertEqual(self.file.read_bytes(), b"[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n")

    def test_nohup(self):
        program = self.start("sh", "-c", 'trap "" HUP; exec "$@"', "sh")
        program.process.send_signal(SIGHUP)
        program.click("B 7")
        program.the("Balls Called: 1")
        self.assert_closes(program)

    def test_no_display(self):
        for display in ({}, {"DISPLAY": ":65000"}):
            environment = {"PATH": "/usr/bin:/bin", "HOME": "/nonexistent", **display}
            ended = subprocess.run([PROGRAM], env=environment, capture_output=True, text=True, timeout=30, check=False)
            self.assertGreater(ended.returncode, 0, "ended by a signal, or as if all were well")
            self.assertRegex(ended.stderr, r"\Avellomir: .*display.*\n\Z")

    # ---- Speech

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
                program.the(text)
                key("Return")
                self.service.kill()
                self.serve("normal")
                program.gone(text)
                program.click("N 33")
                self.heard("En, 3 , 3")
                self.assert_closes(program)

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
                program.process.send_signal(SIGTERM)
                self.assertEqual(program.end()[0], 0)
                program = self.start(title="Run-Time Error")
                program.the(f"Desc: {text}\nErr #: 1")
                key("Return")
                program.gone("Run-Time Error")
                program.title = "Vellomir"
                program.click("Make Voice Calls")
                program.click("N 33")
                wait_until(lambda: "Run-Time Error*" in program.windows(), "the box of the call")
                key("Return")
                program.the("Balls Called: 1")
                self.assert_closes(program)


if __name__ == "__main__":
    unittest.main(verbosity=2)
