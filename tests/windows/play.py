#!/usr/bin/python3 -B
"""Vellomir for Windows, played under Wine with real keys and clicks: xvfb-run tests/windows/play.py ZIP"""

import os
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path

HOME = tempfile.TemporaryDirectory(prefix="vellomir-wine-")
HOME_FOLDER = Path(HOME.name)
SAID = HOME_FOLDER / "said.txt"
SETTINGS = HOME_FOLDER / "prefix/drive_c/users/root/AppData/Roaming/Vellomir"
INI = SETTINGS / "Vellomir.ini"

COMPILE = ["x86_64-w64-mingw32-g++-posix", "-std=c++20", "-static", "-shared"]
SPEECH = r"HKLM\Software\Classes\CLSID\{96749377-3391-11D2-9EE3-00C04F797396}\InprocServer32"
VOICES = r"HKLM\Software\Microsoft\Speech\Voices\Tokens"
WINE = {"HOME": HOME.name, "WINEPREFIX": f"{HOME.name}/prefix", "WINEDEBUG": "-all", "USER": "root",
        "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe=", "VELLOMIR_SAID": f"Z:{SAID}"}  # fmt: skip

# Where things are in the main window, in pixels.
PLACES = {"entry": (1235, 72), "speak": (476, 195), "B7": (200, 57), "Clear": (117, 195), "Bingo": (1218, 196),
          "Help": (45, 8)}  # fmt: skip

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
    ("Tab space :62 Return", "", [4, 7, 33, 62], ["Bert 2 6 17 Oh, 62", "Bert 2 6 17 Oh, 6 , 2"]),
    (":48 Return", "Run-Time Error", None, []),
    ("Return Help Down Return", "QOR Help", None, []),
    ("alt+F4 Help Down Down Return", "About", None, []),
    ("Return Bingo", "Form1", None, []),
    ("Clear", "", [4, 7, 33, 48, 62], []),
]

# Where the settings cannot be kept: how to get there, what then is as it was, and what starts the program.
FAULTS = [
    (lambda: INI.mkdir(parents=True), INI.is_dir, []),
    (SETTINGS.touch, SETTINGS.is_file, []),
    (lambda: None, lambda: not SETTINGS.exists(), ["cmd", "/c", "set AppData=&&"]),
]


def run(*command, **options):
    options = {"check": True, "capture_output": True, "text": True, "timeout": 120, **options}
    return subprocess.run(list(map(str, command)), **options).stdout


def xdotool(*arguments):
    return run("xdotool", *arguments, check=False).splitlines()


def set_registry(key, *value):
    run("wine", "reg", "add", key, *value, "/f")


def wait_for(wanted, seen, what):
    end = time.monotonic() + 30
    while (found := seen()) != wanted:
        if time.monotonic() > end:
            sys.exit(f"{what}: {found}\nin place of {wanted}")
        time.sleep(0.1)


def point_at(x, y):
    """Moves the mouse to a place in the main window, and returns where on the screen that is."""
    window = ["search", "--onlyvisible", "--name", "^Vellomir$", "mousemove", "--window", "%1"]
    return [line.split("=")[1] for line in xdotool(*window, x, y, "getmouselocation", "--shell")[:2]]


def do(action):
    if action in PLACES:
        point_at(*PLACES[action])
        xdotool("click", 1)
    elif action.startswith(":"):
        xdotool("type", "--delay", 50, action[1:])
    else:  # held until the window that it opened or closed has changed the focus: Wine sees no release else
        xdotool("keydown", action, "sleep", 0.3, "keyup", action)
    time.sleep(0.3)


def windows():
    titles = xdotool("search", "--onlyvisible", "--name", ".", "getwindowname", "%@")
    return " ".join(title for title in titles if title != "Vellomir")


def red_numbers():
    """The red numbers of the board, by its picture: cells of 78 by 100 pixels, 15 in a line."""
    board = "1170x500+{}+{}".format(*point_at(49, 205))
    picture = run("import", "-silent", "-window", "root", "-crop", board, "-depth", "8", "rgb:-", text=False)
    strips = [picture[at : at + 3 * 78] for at in range(0, len(picture), 3 * 78)]
    return sorted({i // 1500 * 15 + i % 15 + 1 for i, strip in enumerate(strips) if b"\xff\0\0" in strip})


def play(story, *through):
    """Starts the program, plays a story and ends the program."""
    folder = next(HOME_FOLDER.glob("vellomir-*"))
    program = subprocess.Popen(["wine", *through, "Vellomir.exe"], cwd=folder)
    wait_for(True, lambda: bool(xdotool("search", "--onlyvisible", "--name", "^Vellomir$")), "start")
    said = []
    for actions, others, red, phrases in story:
        said += phrases
        for action in actions.split():
            do(action)
        wait_for(said, lambda: SAID.read_text().splitlines(), actions)
        wait_for(others, windows, actions)
        if not others:  # the main one is in front again
            wait_for(["Vellomir"], lambda: xdotool("getactivewindow", "getwindowname"), actions)
        if red:
            wait_for(red, red_numbers, actions)
    do("alt+F4")
    wait_for(0, program.poll, "end")


def main():
    with zipfile.ZipFile(sys.argv[1]) as packed:
        packed.extractall(HOME.name)
    run(*COMPILE, Path(__file__).with_name("voice.cpp"), "-o", HOME_FOLDER / "voice.dll")
    run("wine", "wineboot", "--init")
    # As on every Windows: without it Wine draws the I of Liberation Sans beside the place that it tells.
    set_registry(r"HKCU\Control Panel\Desktop", "/v", "FontSmoothingType", "/t", "REG_DWORD", "/d", "2")
    SAID.touch()

    print("Wine's own speech, which cannot speak, and no place for settings")
    for prepare, is_as_it_was, through in FAULTS:
        prepare()
        play([("", "Run-Time Error", None, []), ("Return", "", None, []), (":5 Return", "", [5], [])], *through)
        assert is_as_it_was(), SETTINGS
        run("rm", "-rf", SETTINGS)

    print("A game with everything")
    set_registry(SPEECH, "/ve", "/d", f"Z:{HOME.name}/voice.dll")
    for voice in ("Anna", "Bert"):
        set_registry(rf"{VOICES}\{voice}")
    SETTINGS.mkdir()
    INI.write_bytes(settings := b"[Other]\r\nName=\xfc\r\n[Options]\r\nAutoCallTm=18\r\n")
    play(STORY)
    assert INI.read_bytes() == settings + b"FontSz=33\r\n", INI.read_bytes()


if __name__ == "__main__":
    os.environ |= WINE
    desktop = subprocess.Popen(["openbox", "--sm-disable"], stderr=subprocess.DEVNULL)
    try:
        main()
    finally:
        run("wineserver", "--kill", check=False)
        desktop.kill()
