#!/usr/bin/python3 -B
"""Vellomir for Windows, played under Wine with real keys and clicks: xvfb-run tests/windows/play.py ZIP"""

import atexit
import os
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PATIENCE = 120  # seconds until something that was waited for counts as missing
HOME = tempfile.TemporaryDirectory(prefix="vellomir-wine-")
PROGRAM_FOLDER = Path(HOME.name, Path(sys.argv[1]).stem)
SAID = PROGRAM_FOLDER / "said.txt"
APP_DATA = Path(HOME.name, "prefix/drive_c/users/root/AppData/Roaming")
INI = APP_DATA / "Vellomir/Vellomir.ini"
os.environ |= {"HOME": HOME.name, "WINEPREFIX": f"{HOME.name}/prefix", "WINEDEBUG": "-all", "USER": "root",
               "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}  # fmt: skip

COMPILE = ["x86_64-w64-mingw32-g++-posix", "-std=c++20", "-static", "-o"]

# Windows' own functions for such files: sets the interval, and answers the font size.
PROFILE = b"""#include <windows.h>
int main(int, char **file) {
    WritePrivateProfileStringA("Options", "AutoCallTm", "18", file[1]);
    return GetPrivateProfileIntA("Options", "FontSz", 0, file[1]);
}"""

# Where things are in the main window, in pixels.
PLACES = {"entry": "1235 72", "speak": "476 195", "Clear": "117 195", "Bingo": "1218 196", "Help": "45 8"}

# What the caller clicks (PLACES) and presses; the windows then, the active one first; what leads back to the main one;
# the red numbers there; what is said: voice, speed, alert boundary (phonemes), flags (at once, not XML), text.
GAME = [
    ("", "Vellomir", "", [], []),
    ("speak entry n 3 3 Return", "Vellomir", "", [33], ["default 0 6 17 En, 33", "default 0 6 17 En, 3 , 3"]),
    ("Clear", "Clear Board, Vellomir", "Escape", [33], []),
    ("keydown:alt r sleep:3 keyup:alt alt Down Return", "Form1, Vellomir",  # R without Alt would make a call
     "Down Down Tab Right Right Tab space Tab space", [33], ["Bert 2 6 17 Bee 4, Oh 62, Eye 25"]),
    ("4 8 Return", "Run-Time Error, Vellomir", "Return", [33, 48], ["Bert 2 6 17 Gee, 48"]),
    ("4 9 Return", "Run-Time Error, Vellomir", "Return", [33, 48, 49], ["Bert 2 6 17 Gee, 49"]),
    ("6 2 Return", "Vellomir", "", [33, 48, 49, 62], ["Bert 2 6 17 Oh, 62", "Bert 2 6 17 Oh, 6 , 2"]),
    ("Help Down Return", "QOR Help, Vellomir", "alt+F4", [33, 48, 49, 62], []),
    ("Help Down Down Return", "About, Vellomir", "Return", [33, 48, 49, 62], []),
    ("Bingo", "Form1, Vellomir", "Clear", [33, 48, 49, 62], []),
]  # fmt: skip
SILENT_GAME = [("", "Run-Time Error, Vellomir", "Return", [], []), ("5 Return", "Vellomir", "", [5], [])]

# Where settings cannot be kept: what to do in the folder for them, and what starts the program.
NO_PLACE = {"": "cmd /c set AppData=&&", "touch Vellomir": "", "rm Vellomir; mkdir -p Vellomir/Vellomir.ini": ""}


def run(command, *arguments):
    return subprocess.run([*command.split(), *arguments], capture_output=True, timeout=PATIENCE, check=False).stdout


def do(actions):
    for action in actions.split():
        if action in PLACES:
            run("xdotool search --onlyvisible --name ^Vellomir$ mousemove --window %1 " + PLACES[action])
            run("xdotool click 1")
        else:  # held until the window that it opened or closed has changed the focus: Wine sees no release else
            command, _, argument = action.rpartition(":")
            run("xdotool", *(command or "key --delay 600").split(), argument)


def windows():
    titles = run("xdotool getwindowfocus getwindowname search --onlyvisible --name . getwindowname %@")
    return ", ".join(dict.fromkeys(titles.decode().splitlines()))


def red_and_said():
    """The red numbers of the board, by its picture with cells of 78 by 100 pixels, 15 in a line; and what was said."""
    cells = "-crop 1170x500+49+205 -fill black +opaque red -channel R -separate -scale 15x5! -depth 8 gray:-"
    red = [number for number, cell in enumerate(run("convert x:Vellomir " + cells), start=1) if cell]
    return red, [line.rpartition("\\")[2] for line in SAID.read_text().splitlines()]


def wait_for(wanted, look):
    end = time.monotonic() + PATIENCE
    while (seen := look()) != wanted and time.monotonic() < end:
        time.sleep(0.1)
    assert seen == wanted, f"{seen}\nin place of {wanted}"


def play(game, through=""):
    program = subprocess.Popen(["wine", *through.split(), "Vellomir.exe"], cwd=PROGRAM_FOLDER)
    said = []
    for actions, titles, back, red, phrases in game:
        for step, then in (actions, titles), (back, "Vellomir"):
            do(step)
            wait_for(then, windows)
        said += phrases
        wait_for((red, said), red_and_said)
    do("alt+F4")
    assert program.wait(PATIENCE) == 0


if __name__ == "__main__":
    subprocess.Popen(["openbox", "--sm-disable"], stderr=subprocess.DEVNULL)
    atexit.register(run, "wineserver --kill")
    shutil.unpack_archive(sys.argv[1], HOME.name)
    subprocess.check_call([*COMPILE, PROGRAM_FOLDER / "voice.dll", "-shared", Path(__file__).with_name("voice.cpp")])
    subprocess.run([*COMPILE, PROGRAM_FOLDER / "profile.exe", "-xc++", "-"], input=PROFILE, check=True)
    run("wine wineboot --init")
    SAID.touch()

    for prepare, through in NO_PLACE.items():
        subprocess.check_call(prepare, shell=True, cwd=APP_DATA)
        before = run("ls -FR", APP_DATA)
        play(SILENT_GAME, through)
        assert run("ls -FR", APP_DATA) == before

    run(r"wine reg add HKCR\CLSID\{96749377-3391-11D2-9EE3-00C04F797396}\InprocServer32 /ve /d voice.dll /f")
    for voice in ("Anna", "Bert"):
        run(rf"wine reg add HKLM\Software\Microsoft\Speech\Voices\Tokens\{voice}")
    INI.rmdir()
    INI.write_bytes(settings := b"[Other]\r\nName=\xfc\r\n")
    ask = ["wine", PROGRAM_FOLDER / "profile.exe", f"Z:{INI}"]
    subprocess.check_call(ask)
    play(GAME)
    assert INI.read_bytes() == settings + b"[Options]\r\nAutoCallTm=18\r\nFontSz=33\r\n", INI.read_bytes()
    assert subprocess.call(ask) == 33
