#!/usr/bin/python3 -B
"""The installed program: it starts, shows its help, keeps its settings: tests/installed.py PROGRAM"""

import sys
import time

from support.desktop import Desktop, Program, wait_until

with Desktop() as desktop:
    start = time.monotonic()
    with Program(desktop, sys.argv[1]) as program:
        print(f"main window after {time.monotonic() - start:.2f} s")
        program.key("alt", "Right", "Down", "Return")
        wait_until(lambda: program.text("Help text").startswith("VELLOMIR HELP"), "the help does not show")
        wait_until(lambda: program.is_focused("Help text"), "the help did not come to the front")
        desktop.xdotool("search", "--onlyvisible", "--class", "^Vellomir$")  # as the desktop entry says
        ended = program.close()
        assert ended == (0, ""), f"exit code and standard error: {ended}"
    assert list(desktop.home.glob("settings/vellomir/vellomir.ini")), "no settings were kept"
