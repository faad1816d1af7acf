#!/usr/bin/python3 -B
"""Vellomir for Windows, played under Wine with real keys and clicks: xvfb-run tests/windows/play.py ZIP SETUP"""

import atexit
import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.append(str(Path(__file__).parents[1]))
from support.desktop import PATIENCE, manage_windows, run, wait_for

HOME = tempfile.TemporaryDirectory(prefix="vellomir-wine-")
ZIP, SETUP = (Path(argument).resolve() for argument in sys.argv[1:])
UNPACKED = Path(HOME.name, ZIP.stem)
SAID = UNPACKED / "said.txt"
INI = Path(HOME.name, "prefix/drive_c/users/root/AppData/Roaming/Vellomir/Vellomir.ini")
CHOSEN = r"C:\My Hall\Vellomir"  # where the setup installs to
INSTALLED = Path(HOME.name, "prefix/drive_c/My Hall/Vellomir")
UNINSTALL = INSTALLED / "uninstall.exe"
os.environ |= {"HOME": HOME.name, "WINEPREFIX": f"{HOME.name}/prefix", "WINEDEBUG": "-all", "USER": "root",
               "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}

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
    ("Bingo", "Form1, Vellomir", "Clear", [33, 48, 49, 62], []),
]
SILENT_GAME = [("", "Run-Time Error, Vellomir", "Return", [], []), ("5 Return", "Vellomir", "", [5], [])]
GAME_WITHOUT_VOICE = [("", "Run-Time Error", "Return", [], []), SILENT_GAME[1]]


def do(actions):
    for action in actions.split():
        if action in PLACES:
            to = "mousemove", "--window", "%1", *PLACES[action].split()
            run("xdotool", "search", "--onlyvisible", "--name", "^Vellomir$", *to)
            run("xdotool", "click", 1)
        else:  # held until the window that it opened or closed has changed the focus: Wine sees no release else
            command, _, argument = action.rpartition(":")
            run("xdotool", *(command or "key --delay 600").split(), argument)


def windows():
    titles = run(*"xdotool getwindowfocus getwindowname search --onlyvisible --name . getwindowname %@".split())
    return ", ".join(dict.fromkeys(titles.splitlines()))


def red_and_said():
    """The red numbers of the board, by its picture with cells of 78 by 100 pixels, 15 in a line; and what was said."""
    cells = "-crop 1170x500+49+205 -fill black +opaque red -channel R -separate -scale 15x5! -compress none pgm:-"
    red = run("convert", "x:Vellomir", *cells.split()).split()[4:]
    said = [line.rpartition("\\")[2] for line in SAID.read_text().splitlines()]
    return [number for number, cell in enumerate(red, start=1) if cell != "0"], said


def play(game, folder=UNPACKED, refused=()):
    SAID.write_text("")
    program = subprocess.Popen(["wine", "Vellomir.exe"], cwd=folder)
    said = []
    for actions, titles, back, red, phrases in game:
        for step, then in (actions, titles), (back, "Vellomir"):
            do(step)
            wait_for(windows, then)
        said += phrases
        wait_for(red_and_said, (red, said))
    for setup in refused:
        set_up(setup, "_?=" + CHOSEN, ends_with=2)
    do("alt+F4")
    assert program.wait(PATIENCE) == 0


def files(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def set_up(setup, argument="", ends_with=0):
    """Silently. A setup wants its argument without quotes, blanks or not."""
    assert subprocess.call(["wine", setup, "/S", *argument.split()]) == ends_with, setup


def check_setup(program):
    """Over an older version with files more, in a folder that the user chose and put files into."""
    run("wine", "winecfg", "-v", "win81")
    set_up(SETUP, ends_with=2)
    run("wine", "winecfg", "-v", "win10")
    older = Path(HOME.name, "older")
    shutil.copytree(UNPACKED, older / "old")
    (older / "Vellomir.exe").write_text("3.1.9")
    subprocess.check_call([Path(__file__).parents[2] / "tools/windows_setup", older, "3.1.9", f"{older}.exe"])
    set_up(f"{older}.exe", "/D=" + CHOSEN)
    own = {"mine.txt": b"mine", "old/mine.txt": b"mine"}
    for name, text in own.items():
        (INSTALLED / name).write_bytes(text)
    set_up(SETUP)
    entry = run("wine", "reg", "query", r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Vellomir")
    for value in SETUP.name.split("-")[1], rf'"{CHOSEN}\uninstall.exe" /S':
        assert f"    {value}\n" in entry, entry
    play(GAME_WITHOUT_VOICE, INSTALLED, refused=(SETUP, UNINSTALL))  # voice.dll is not there
    assert files(INSTALLED) == program | own | {UNINSTALL.name: UNINSTALL.read_bytes()}
    set_up(UNINSTALL)
    wait_for(lambda: files(INSTALLED), own)


if __name__ == "__main__":
    manage_windows()
    atexit.register(run, "wineserver", "--kill")
    shutil.unpack_archive(ZIP, HOME.name)
    unpacked = files(UNPACKED)
    subprocess.check_call(["x86_64-w64-mingw32-g++-posix", "-std=c++20", "-static", "-shared",
                           "-o", UNPACKED / "voice.dll", Path(__file__).with_name("voice.cpp")])  # fmt: skip
    run("wine", "wineboot", "--init")

    play(SILENT_GAME)
    voice = r"HKCR\CLSID\{96749377-3391-11D2-9EE3-00C04F797396}\InprocServer32"
    run("wine", "reg", "add", voice, "/ve", "/d", "voice.dll", "/f")
    for name in "Anna", "Bert":
        run("wine", "reg", "add", rf"HKLM\Software\Microsoft\Speech\Voices\Tokens\{name}")
    INI.write_bytes(settings := b"[Other]\r\nName=\xfc\r\n[Options]\r\nAutoCallTm=18\r\n")
    play(GAME)
    check_setup(unpacked)
    assert INI.read_bytes() == settings + b"FontSz=33\r\n", INI.read_bytes()
