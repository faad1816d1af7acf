#!/usr/bin/python3 -B
"""A game as a blind caller hears it: real keys, and all that the screen reader Orca says of them.
screen_reader.py PROGRAM has a screen and a session of its own, and is skipped where Orca is not installed."""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

PROGRAM = sys.argv[1]
ORCA = "/usr/bin/orca"
ENTRY = r"Number to call text\."

# Keys, and what is said when they have been pressed, as regular expressions.
GAME = [
    ("3 3 Return", "3", "3", "return", r"N 33, 1 called\."),
    ("n 4 0 Return", "n", "4", "0", "return", r"N 40, 2 called\."),
    ("r", "r", r"[BINGO] \d+, 3 called\."),
    ("3 3 Return", "3", "3", "return", r"alert Clear Board\.", "Clearing button,", r"Are you sure\?", r"No push.*"),
    ("Tab", "tab", r"Yes push button\."),
    ("space", "space", r"Vellomir frame\.", ENTRY, r"N 33 not called\."),
    ("shift+Tab", "left shift", r"Bingo push button\."),
    ("space", "space", rf"(?:{ENTRY}/)?BINGO opened\.", r"A click or Alt\+F4 closes it text\.", r"Text\."),
    ("alt+F4", "left alt", r"Vellomir frame\.", ENTRY, r"BINGO closed\."),
    ("F10", r"File\."),
    ("Down", r"Voice Options\."),
    ("Down", r"Shaddow Buttons checked\."),
    ("Return", "return", ENTRY, r"Shaddow Buttons, not checked\."),
]


def start():
    """Runs the game below on a screen of its own, and not as root, for whom Orca does not speak."""
    nobody = {"user": "nobody", "group": "nogroup", "extra_groups": []} if os.geteuid() == 0 else {}
    running = subprocess.run(["pgrep", "-x", "orca"], stdout=subprocess.DEVNULL, check=False).returncode == 0
    if running or not Path(ORCA).exists():
        print("skipped: Orca is not installed, or speaks for somebody already")
        return 77
    with tempfile.TemporaryDirectory() as home:
        if nobody:
            shutil.chown(home, nobody["user"])
        environment = {name: home for name in ("HOME", "AppData", "XDG_RUNTIME_DIR")}
        environment |= {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "SPEECHD_ADDRESS": f"unix_socket:{home}/speech"}
        screen = ["xvfb-run", "-a", "-s", "-screen 0 1600x1000x24", "dbus-run-session", "--"]
        game = [sys.executable, "-B", __file__, PROGRAM, f"{home}/speech"]
        return subprocess.run([*screen, *game], env=environment, check=False, **nobody).returncode


def listen(service, heard):
    for line in service.stdout:
        if "<mark" in line:  # a line of a text; all others are commands
            heard.append(re.sub("<[^>]*>", "", line).strip())


def play(socket):
    from support.desktop import Program, key, wait_until  # on the screen

    heard, expected = [], ["Screen reader on."]
    fake = [sys.executable, "-B", Path(__file__).parent / "support" / "fake_speechd.py", socket, "normal"]
    service = subprocess.Popen(fake, stdout=subprocess.PIPE, text=True)
    threading.Thread(target=listen, args=(service, heard), daemon=True).start()
    wait_until(lambda: Path(socket).exists())
    others = [subprocess.Popen(command, stderr=subprocess.DEVNULL) for command in (["openbox"], [sys.executable, ORCA])]
    try:
        wait_until(lambda: heard == expected, "Orca")
        with Program(PROGRAM):
            for keys, *sentences in [("", r"Vellomir frame\.", ENTRY), *GAME]:
                for one in keys.split():
                    before = len(heard)
                    key(one)
                    wait_until(lambda: len(heard) > before, f"a word of {one} behind {heard}")  # noqa: B023
                expected += sentences
                wait_until(lambda: re.fullmatch("/".join(expected), "/".join(heard)), f"{sentences} behind {heard}")
    finally:
        for child in (service, *others):
            child.kill()
            child.wait()


sys.exit(start() if len(sys.argv) == 2 else play(sys.argv[2]))
