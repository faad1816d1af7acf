#!/usr/bin/python3 -B
"""Vellomir for Windows, played under Wine with real keys and clicks: xvfb-run tests/windows/play.py ZIP SETUP"""

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
ZIP, SETUP = (Path(argument).resolve() for argument in sys.argv[1:])
PROGRAM_FOLDER = Path(HOME.name, ZIP.stem)
SAID = PROGRAM_FOLDER / "said.txt"
APP_DATA = Path(HOME.name, "prefix/drive_c/users/root/AppData/Roaming")
INI = APP_DATA / "Vellomir/Vellomir.ini"
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


def play(game, folder=PROGRAM_FOLDER, then_do=lambda: None):
    SAID.write_text("")
    program = subprocess.Popen(["wine", "Vellomir.exe"], cwd=folder)
    said = []
    for actions, titles, back, red, phrases in game:
        for step, then in (actions, titles), (back, "Vellomir"):
            do(step)
            wait_for(then, windows)
        said += phrases
        wait_for((red, said), red_and_said)
    then_do()
    do("alt+F4")
    assert program.wait(PATIENCE) == 0


def files(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def set_up(*arguments, setup=SETUP, ends_with=0):
    """Silently. An argument with blanks is one to a setup although it has no quotes."""
    ended = subprocess.call(["wine", setup, "/S", *" ".join(arguments).split()])
    assert ended == ends_with, f"{setup} ended with {ended}"


def refuse_to_change():
    before = files(INSTALLED)
    for change in SETUP, UNINSTALL:
        set_up("_?=" + CHOSEN, setup=change, ends_with=2)
        assert files(INSTALLED) == before


def check_setup(program):
    """Over an older version with a file more, in a folder that the user chose and put files into."""
    run("wine winecfg -v win81")
    set_up(ends_with=2)
    run("wine winecfg -v win10")
    older = Path(HOME.name, "older")
    shutil.copytree(PROGRAM_FOLDER, older / "old")
    (older / "Vellomir.exe").write_text("3.1.9")
    subprocess.check_call([Path(__file__).parents[2] / "tools/windows_setup", older, "3.1.9", f"{older}.exe"])
    set_up("/D=" + CHOSEN, setup=f"{older}.exe")
    assert files(INSTALLED).keys() == files(older).keys() | {UNINSTALL.name}
    own = {"mine.txt": b"mine", "old/mine.txt": b"mine"}
    for name, text in own.items():
        (INSTALLED / name).write_bytes(text)

    set_up()
    assert files(INSTALLED) == program | own | {UNINSTALL.name: UNINSTALL.read_bytes()}
    entry = run("wine reg query", r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Vellomir").decode()
    for value in SETUP.name.split("-")[1], rf'"{CHOSEN}\uninstall.exe" /S':
        assert f"    {value}\r\n" in entry, entry

    settings = INI.read_bytes()
    without_voice = [("", "Run-Time Error", "Return", [], []), *SILENT_GAME[1:]]  # voice.dll is not there
    play(without_voice, folder=INSTALLED, then_do=refuse_to_change)
    set_up(setup=UNINSTALL)
    wait_for(own, lambda: files(INSTALLED))
    assert INI.read_bytes() == settings


if __name__ == "__main__":
    subprocess.Popen(["openbox", "--sm-disable"], stderr=subprocess.DEVNULL)
    atexit.register(run, "wineserver --kill")
    shutil.unpack_archive(ZIP, HOME.name)
    unpacked = files(PROGRAM_FOLDER)
    subprocess.check_call(["x86_64-w64-mingw32-g++-posix", "-std=c++20", "-static", "-shared",
                           "-o", PROGRAM_FOLDER / "voice.dll", Path(__file__).with_name("voice.cpp")])  # fmt: skip
    run("wine wineboot --init")

    play(SILENT_GAME)
    run(r"wine reg add HKCR\CLSID\{96749377-3391-11D2-9EE3-00C04F797396}\InprocServer32 /ve /d voice.dll /f")
    for voice in ("Anna", "Bert"):
        run(rf"wine reg add HKLM\Software\Microsoft\Speech\Voices\Tokens\{voice}")
    INI.write_bytes(settings := b"[Other]\r\nName=\xfc\r\n[Options]\r\nAutoCallTm=18\r\n")
    play(GAME)
    assert INI.read_bytes() == settings + b"FontSz=33\r\n", INI.read_bytes()
    check_setup(unpacked)
