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
COMPILER = "x86_64-w64-mingw32-g++-posix"
RED = b"\xff\0\0"
SPEECH = r"HKLM\Software\Classes\CLSID\{96749377-3391-11D2-9EE3-00C04F797396}\InprocServer32"
VOICES = r"HKLM\Software\Microsoft\Speech\Voices\Tokens"

# Where things are in the main window, in pixels.
PLACES = {"entry": (1235, 72), "speak": (476, 195), "B7": (182, 57), "Clear": (117, 195), "Bingo": (1218, 196)}

# What the caller does: PLACES are clicked, "N" is waited for that many seconds, ":N33" is typed, the rest are keys.
# Then: the window in front, the red numbers on the board, and what is said: voice, speed, alert boundary, flags, text.
STORY = [
    ("speak entry :n33 Return", "Vellomir", [33], ["default 0 6 17 En, 33", "default 0 6 17 En, 3 ,3"]),
    ("B7", "Vellomir", [7, 33], ["default 0 6 17 Bee, 7"] * 2),
    (":4 Return", "Vellomir", [4, 7, 33], ["default 0 6 17 Bee, 4", "default 0 6 17 And After"]),
    ("Clear", "Clear Board", [4, 7, 33], []),
    ("Escape", "Vellomir", [4, 7, 33], []),
    ("alt Down Return", "Form1", [4, 7, 33], []),
    ("Down Down Tab Right Right Tab space", "Form1", [4, 7, 33], ["Bert 2 6 17 Bee 4, Oh 62, Eye 25"]),
    ("Tab space", "Vellomir", [4, 7, 33], []),
    (":62 Return", "Vellomir", [4, 7, 33, 62], ["Bert 2 6 17 Oh, 62", "Bert 2 6 17 Oh, 6 ,2"]),
    (":48 Return", "Run-Time Error", [4, 7, 33, 48, 62], []),
    ("Return", "Vellomir", [4, 7, 33, 48, 62], []),
    ("alt Right Down Return", "QOR Help", None, []),
    ("alt+F4", "Vellomir", [4, 7, 33, 48, 62], []),
    ("alt Right Down Down Return", "About", None, []),
    ("Return", "Vellomir", [4, 7, 33, 48, 62], []),
    ("Bingo", "Form1", None, []),
    ("Clear", "Vellomir", [4, 7, 33, 48, 62], []),
]


def run(*command, **options):
    options = {"check": True, "capture_output": True, "text": True, "timeout": 120, **options}
    return subprocess.run(command, **options).stdout.strip()


def xdotool(*arguments):
    return run("xdotool", *map(str, arguments), check=False)


class Wine(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.home = Path(tempfile.mkdtemp(prefix="vellomir-wine-"))
        cls.addClassCleanup(shutil.rmtree, cls.home, ignore_errors=True)
        cls.said = cls.home / "said.txt"
        os.environ |= {"HOME": str(cls.home), "WINEPREFIX": str(cls.home / "prefix"), "WINEDEBUG": "-all",
                       "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe=", "LANG": "C.UTF-8",
                       "VELLOMIR_SAID": f"Z:{cls.said}"}  # fmt: skip
        window_manager = subprocess.Popen(["openbox", "--sm-disable"])
        cls.addClassCleanup(window_manager.kill)
        run("wine", "wineboot", "--init")
        cls.addClassCleanup(run, "wineserver", "--kill")
        run("wine", "reg", "add", r"HKCU\Control Panel\Desktop", "/v", "FontSmoothingType", "/t", "REG_DWORD", "/d", "2", "/f")
        for name in ("Anna", "Bert"):
            run("wine", "reg", "add", rf"{VOICES}\{name}", "/f")
        options = ["-std=c++20", "-static"]
        run(COMPILER, *options, "-shared", HERE / "voice.cpp", "-o", cls.home / "voice.dll")
        run(COMPILER, *options, HERE / "profile.cpp", "-o", cls.home / "profile.exe")
        with zipfile.ZipFile(ZIP) as packed:
            packed.extractall(cls.home)
        cls.program = next(cls.home.glob("vellomir-*/Vellomir.exe"))
        cls.ini = next(cls.home.glob("prefix/drive_c/users/*/AppData/Roaming")) / "Vellomir/Vellomir.ini"

    def setUp(self):
        shutil.rmtree(self.ini.parent, ignore_errors=True)
        self.said.write_text("")

    def profile(self, *arguments):
        return run("wine", self.home / "profile.exe", f"Z:{self.ini}", *arguments)

    def speak_through(self, library):
        run("wine", "reg", "add", SPEECH, "/ve", "/d", library, "/f")

    def start(self, title="Vellomir", **environment):
        self.process = subprocess.Popen(["wine", self.program], env=os.environ | environment)
        self.addCleanup(self.process.kill)
        self.wait_for(lambda: title, lambda: xdotool("getactivewindow", "getwindowname"))

    def wait_for(self, wanted, seen):
        end = time.monotonic() + 30
        while seen() != wanted() and time.monotonic() < end:
            time.sleep(0.1)
        self.assertEqual(seen(), wanted())

    def do(self, actions):
        for action in actions.split():
            if action in PLACES:
                window = xdotool("search", "--onlyvisible", "--name", "^Vellomir$")
                xdotool("mousemove", "--window", window, *PLACES[action], "click", 1)
            elif action.startswith(":"):
                xdotool("type", "--delay", 50, action[1:])
            else:
                xdotool("key", "--clearmodifiers", action)
            time.sleep(0.3)

    def end(self):
        self.do("alt+F4")
        self.assertEqual(self.process.wait(30), 0)

    def red_numbers(self):
        window = xdotool("search", "--onlyvisible", "--name", "^Vellomir$")
        crop = ["-crop", "1170x500+49+205", "-depth", "8", "rgb:-"]  # cells of 78 by 100 pixels
        picture = run("import", "-silent", "-window", window, *crop, text=False)
        lines = [picture[at : at + 3 * 78] for at in range(0, len(picture), 3 * 78)]
        return [n for n in range(1, 76) if any(RED in line for line in lines[(n - 1) // 15 * 1500 :][: 1500][(n - 1) % 15 :: 15])]

    def test_story(self):
        """The call, the voice and the settings, with settings that Windows' own tools have written."""
        self.speak_through(f"Z:{self.home}/voice.dll")
        self.ini.parent.mkdir(parents=True)
        self.ini.write_bytes(b"[Other]\r\nName=\xfc\r\n")
        self.profile("Options", "AutoCallTm", "18")
        self.start()
        said = []
        for actions, title, red, phrases in STORY:
            said += phrases
            with self.subTest(actions):
                self.do(actions)
                self.wait_for(
                    lambda: (title, red, said),
                    lambda: (
                        xdotool("getactivewindow", "getwindowname"),
                        red and self.red_numbers(),
                        self.said.read_text().splitlines(),
                    ),
                )
        self.do("alt Right Right Escape")
        self.end()
        self.assertEqual(self.ini.read_bytes(), b"[Other]\r\nName=\xfc\r\n[Options]\r\nAutoCallTm=18\r\nFontSz=33\r\n")
        self.assertEqual(self.profile("Options", "FontSz"), "33")


if __name__ == "__main__":
    unittest.main(verbosity=2)
