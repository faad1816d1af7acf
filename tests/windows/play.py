#!/usr/bin/python3 -B
"""Vellomir for Windows, played under Wine with real keys and clicks: xvfb-run tests/windows/play.py ZIP"""

import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile
from pathlib import Path

ZIP = sys.argv.pop(1)
HERE = Path(__file__).parent
COMPILE = ["x86_64-w64-mingw32-g++-posix", "-std=c++20", "-static"]
SPEECH = r"HKLM\Software\Classes\CLSID\{96749377-3391-11D2-9EE3-00C04F797396}\InprocServer32"
SETTINGS = [
    [SPEECH, "/ve"],
    [r"HKLM\Software\Microsoft\Speech\Voices\Tokens\Anna", "/ve"],
    [r"HKLM\Software\Microsoft\Speech\Voices\Tokens\Bert", "/ve"],
    # As on every Windows. Without it Wine draws the I of Liberation Sans beside the place that it tells.
    [r"HKCU\Control Panel\Desktop", "/v", "FontSmoothingType", "/t", "REG_DWORD", "/d", "2"],
]

# Where things are in the main window, in pixels.
PLACES = {"entry": (1235, 72), "speak": (476, 195), "B7": (200, 57), "Clear": (117, 195), "Bingo": (1218, 196), "Help": (45, 8)}

# What the caller does: PLACES are clicked, ":N33" is typed, the rest are keys. Then: the windows beside the main one,
# the red numbers on its board, and what is said: voice, speed, alert boundary (phonemes), flags (at once, no XML), text.
STORY = [
    ("speak entry :n33 Return", "", [33], ["default 0 6 17 En, 33", "default 0 6 17 En, 3 , 3"]),
    ("B7", "", [7, 33], ["default 0 6 17 Bee, 7"] * 2),
    (":4 Return", "", [4, 7, 33], ["default 0 6 17 Bee, 4", "default 0 6 17 And After"]),
    ("Clear", "Clear Board", None, []),
    ("Escape alt+r", "", [4, 7, 33], []),
    ("alt Down Return", "Form1", None, []),
    ("Down Down Tab Right Right Tab space", "Form1", None, ["Bert 2 6 17 Bee 4, Oh 62, Eye 25"]),
    ("Tab space", "", [4, 7, 33], []),
    (":62 Return", "", [4, 7, 33, 62], ["Bert 2 6 17 Oh, 62", "Bert 2 6 17 Oh, 6 , 2"]),
    (":48 Return", "Run-Time Error", None, []),
    ("Return", "", [4, 7, 33, 48, 62], []),
    ("Help Down Return", "QOR Help", None, []),
    ("alt+F4", "", [4, 7, 33, 48, 62], []),
    ("Help Down Down Return", "About", None, []),
    ("Return", "", [4, 7, 33, 48, 62], []),
    ("Bingo", "Form1", None, []),
    ("Clear", "", [4, 7, 33, 48, 62], []),
]


def run(*command, **options):
    options = {"check": True, "capture_output": True, "text": True, "timeout": 120, **options}
    return subprocess.run(list(map(str, command)), **options).stdout


def xdotool(*arguments):
    return run("xdotool", *arguments, check=False).splitlines()


class Play(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.home = Path(tempfile.mkdtemp(prefix="vellomir-wine-"))
        cls.addClassCleanup(shutil.rmtree, cls.home, ignore_errors=True)
        cls.said = cls.home / "said.txt"
        os.environ |= {"HOME": str(cls.home), "WINEPREFIX": str(cls.home / "prefix"), "WINEDEBUG": "-all"}
        os.environ |= {"WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe=", "VELLOMIR_SAID": f"Z:{cls.said}"}
        cls.addClassCleanup(subprocess.Popen(["openbox", "--sm-disable"]).kill)
        run("wine", "wineboot", "--init")
        cls.addClassCleanup(run, "wineserver", "--kill")
        for setting in SETTINGS[1:]:
            run("wine", "reg", "add", *setting, "/f")
        run(*COMPILE, "-shared", HERE / "voice.cpp", "-o", cls.home / "voice.dll")
        run(*COMPILE, HERE / "profile.cpp", "-o", cls.home / "profile.exe")
        with zipfile.ZipFile(ZIP) as packed:
            packed.extractall(cls.home)
        cls.program = next(cls.home.glob("vellomir-*/Vellomir.exe"))
        cls.ini = next(cls.home.glob("prefix/drive_c/users/*/AppData/Roaming")) / "Vellomir/Vellomir.ini"

    def setUp(self):
        run("rm", "-rf", self.ini.parent)
        self.said.write_text("")

    def profile(self, *arguments):
        """What Windows' own functions for profiles read in the settings file, or write."""
        return run("wine", self.home / "profile.exe", f"Z:{self.ini}", "Options", *arguments).strip()

    def start(self, *through):
        self.process = subprocess.Popen(["wine", *through, self.program.name], cwd=self.program.parent)
        self.addCleanup(self.process.kill)
        self.wait_for(True, lambda: bool(xdotool("search", "--onlyvisible", "--name", "^Vellomir$")))

    def wait_for(self, wanted, seen, what=None):
        end = time.monotonic() + 30
        while seen() != wanted and time.monotonic() < end:
            time.sleep(0.1)
        self.assertEqual(seen(), wanted, what)

    def do(self, actions):
        for action in actions.split():
            if action in PLACES:
                self.point_at(*PLACES[action])
                xdotool("click", 1)
            elif action.startswith(":"):
                xdotool("type", "--delay", 50, action[1:])
            else:
                # Held until the window that it opened or closed has changed the focus: Wine sees no release else.
                xdotool("keydown", action, "sleep", 0.3, "keyup", action)
            time.sleep(0.3)

    def point_at(self, x, y):
        """Moves the mouse to a place in the main window, and returns where on the screen that is."""
        window = xdotool("search", "--onlyvisible", "--name", "^Vellomir$")[0]
        where = xdotool("mousemove", "--window", window, x, y, "getmouselocation", "--shell")
        return [line.split("=")[1] for line in where[:2]]

    def end(self):
        self.do("alt+F4")
        self.assertEqual(self.process.wait(30), 0)

    def windows(self):
        titles = xdotool("search", "--onlyvisible", "--name", ".", "getwindowname", "%@")
        return " ".join(title for title in titles if title != "Vellomir")

    def red_numbers(self):
        """The red numbers of the board, by its picture: cells of 78 by 100 pixels, 15 in a line."""
        board = "1170x500+{}+{}".format(*self.point_at(49, 205))
        picture = run("import", "-silent", "-window", "root", "-crop", board, "-depth", "8", "rgb:-", text=False)
        strips = [picture[at : at + 3 * 78] for at in range(0, len(picture), 3 * 78)]
        red = [i for i, strip in enumerate(strips) if b"\xff\0\0" in strip]
        return sorted({i // 1500 * 15 + i % 15 + 1 for i in red})

    def play(self, actions, windows, red, said=()):
        self.do(actions)
        self.wait_for(list(said), lambda: self.said.read_text().splitlines(), actions)
        self.wait_for(windows, self.windows, actions)
        if not windows:  # the main one is in front again
            self.wait_for(["Vellomir"], lambda: xdotool("getactivewindow", "getwindowname"), actions)
        if red:
            self.wait_for(red, self.red_numbers, actions)

    def test_a_game_with_everything(self):
        run("wine", "reg", "add", SPEECH, "/ve", "/d", f"Z:{self.home}/voice.dll", "/f")
        self.ini.parent.mkdir()
        self.ini.write_bytes(b"[Other]\r\nName=\xfc\r\n")
        self.profile("AutoCallTm", "18")
        self.start()
        said = []
        for actions, windows, red, phrases in STORY:
            said += phrases
            self.play(actions, windows, red, said)
        self.end()
        settings = b"[Options]\r\nAutoCallTm=18\r\nFontSz=33\r\n"
        self.assertEqual(self.ini.read_bytes(), b"[Other]\r\nName=\xfc\r\n" + settings)
        self.assertEqual(self.profile("FontSz"), "33")

    def test_the_game_goes_on(self):
        """Where settings cannot be kept, and with Wine's own speech service, which cannot speak."""
        run("wine", "reg", "add", SPEECH, "/ve", "/d", r"C:\windows\system32\Speech\Common\sapi.dll", "/f")
        faults = {
            "the settings file is a folder": (lambda: self.ini.mkdir(parents=True), self.ini.is_dir, []),
            "the settings folder is a file": (self.ini.parent.touch, self.ini.parent.is_file, []),
            "there is no AppData": (lambda: None, lambda: not self.ini.exists(), ["cmd", "/c", "set AppData=&&"]),
        }
        for fault, (prepare, is_as_it_was, through) in faults.items():
            with self.subTest(fault):
                self.setUp()
                prepare()
                self.start(*through)
                self.play("", "Run-Time Error", None)
                self.play("Return", "", None)
                self.play(":5 Return", "", [5])
                self.end()
                self.assertTrue(is_as_it_was())


if __name__ == "__main__":
    unittest.main(verbosity=2)
