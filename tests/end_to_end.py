#!/usr/bin/python3 -B
"""Games played with the real program, in a real window, with real keys and a real mouse, and read from outside.

    tests/end_to_end.py PROGRAM
"""

import re
import subprocess
import sys
import unittest

from support.desktop import Atspi, Desktop, Program, wait_until

PROGRAM = sys.argv.pop(1)
ALL = list(range(1, 76))
RED = (255, 0, 0)

# The keys that open a window from the menus, its title where speech can be had and where not, and the keys that close
# it again.
WINDOWS = [
    (["alt", "Right", "Down", "Return"], ["QOR Help"], ["alt", "Return"]),
    (["alt", "Right", "Down", "Down", "Return"], ["About"], ["Return"]),
    (["alt", "Down", "Return"], ["Form1", "Run-Time Error"], ["alt+F4"]),
]


def button(number):
    return f"{'BINGO'[(number - 1) // 15]} {number}"


def label(number):
    return button(number).replace(" ", "")


class EndToEnd(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop())

    def setUp(self):
        self.program = self.enterContext(Program(self.desktop, PROGRAM))
        wait_until(lambda: self.program.is_focused("Number to call"), "the entry box has not the focus")

    def enter(self, text, count):
        self.program.type(text)
        self.program.key("Return")
        self.wait_for_count(count)

    def wait_for_count(self, count):
        self.program.the(f"Balls Called: {count}", "label")

    def shown(self):
        """The current number and the ones before it."""
        return [self.program.text("Current number").strip(), *self.program.text("Past numbers").split()]

    def red_numbers(self):
        """The numbers that are red on the large board, by a picture of it."""
        text = self.program.text("Called numbers")
        cells = {int(found.group()): found.start() for found in re.finditer(r"\d+", text)}
        self.assertEqual(sorted(cells), ALL)
        board = self.program.place("Called numbers")
        picture = self.program.desktop.pixels(board)
        red = []
        for number, place in zip(cells, self.program.character_places("Called numbers", cells.values())):
            left, top = place[0] - board[0], place[1] - board[1]
            if any(RED in row[left : left + place[2]] for row in picture[top : top + place[3]]):
                red.append(number)
        return red

    def assert_called(self, numbers):
        states = {a.get_name(): a.get_description() for a in self.program.all("push button")}
        self.assertEqual([n for n in ALL if states[button(n)] == "called"], sorted(numbers))
        self.assertEqual(self.red_numbers(), sorted(numbers))

    def test_every_way_to_call_and_to_take_back(self):
        self.program.click(button(7))
        self.wait_for_count(1)
        self.enter("N33", 2)
        self.assert_called([7, 33])
        question = "Clearing button,\nAre you sure?"
        self.program.click(button(7))
        self.program.the(question)
        self.program.click("No")
        self.program.wait_until_gone(question)
        self.assert_called([7, 33])
        self.program.type("b7\r")
        self.program.the(question)
        self.program.click("Yes")
        self.program.wait_until_gone(question)
        self.assert_called([33])
        self.program.type("12r")
        self.wait_for_count(3)
        drawn = self.shown()[0]
        self.program.click("Random Call")
        self.wait_for_count(4)
        self.assertEqual(self.shown()[1:], [drawn, "N33", "B7"])
        self.assertEqual(self.program.text("Number to call"), "")
        self.assert_called([n for n in ALL if label(n) in (drawn, "N33", self.shown()[0])])
        self.assertEqual(self.program.close(), (0, ""))

    def test_a_whole_game_of_random_calls(self):
        drawn = []
        for count in ALL:
            self.program.key("r")
            self.wait_for_count(count)
            drawn.append(self.shown()[0])
        self.assertEqual(sorted(drawn), sorted(map(label, ALL)))
        self.assert_called(ALL)
        self.program.key("r")
        self.program.the("Full Board....")
        self.program.click("OK")
        self.program.wait_until_gone("Full Board....")
        self.wait_for_count(75)

    def assert_all_is_named(self):
        """Whatever can have the focus says what it is."""
        for found in self.program.everything():
            states = found.get_state_set()
            if states.contains(Atspi.StateType.FOCUSABLE) and states.contains(Atspi.StateType.SHOWING):
                self.assertTrue(found.get_name(), f"a {found.get_role_name()} without a name")

    def active_window(self):
        """The title of the window that the keyboard goes to."""
        states = {w.get_name(): w.get_state_set() for w in self.program.windows()}
        return next((name for name in states if states[name].contains(Atspi.StateType.ACTIVE)), None)

    def test_every_window_by_keyboard_and_ear(self):
        self.program.click("Clear Board")
        self.program.the("Clearing board,\nAre you sure?")
        self.assert_all_is_named()
        self.program.key("Escape")
        for opening, titles, closing in WINDOWS:
            self.desktop.xdotool("windowactivate", "--sync", self.program.window)
            self.program.key(*opening)
            wait_until(lambda: self.active_window() in titles, f"no window {titles} came to the front")
            self.assert_all_is_named()
            if titles == ["QOR Help"]:
                self.assertEqual(self.desktop.taskbar(), ["Vellomir"])
                self.assertIn("1. WHAT THE WINDOW SHOWS", self.program.text("Help text"))
            if titles == ["About"]:
                self.assertEqual(self.desktop.taskbar(), ["Vellomir"])
                x, y, width, height = self.program.place("About", "filler")
                self.assertAlmostEqual(x + width / 2, 800, delta=2)
                # The caption is above; how high it is depends on the window manager's font.
                self.assertAlmostEqual(y + height / 2, 500 + 8, delta=8)
            self.program.key(*closing)
            wait_until(lambda: self.active_window() == "Vellomir", f"{closing} did not close {titles}")
        before = len(self.program.windows())
        x, y, width, height = self.program.place("Pause", "push button")
        self.desktop.click_at(x + width + 50, y + height // 2)
        wait_until(lambda: len(self.program.windows()) > before, "no announcement")
        self.assert_all_is_named()
        self.assertEqual(self.desktop.taskbar(), ["Vellomir"])


class WithoutADisplay(unittest.TestCase):
    def test_one_line_says_so(self):
        for display in ({}, {"DISPLAY": ":65000"}):
            environment = {"PATH": "/usr/bin:/bin", "HOME": "/nonexistent", **display}
            run = subprocess.run([PROGRAM], env=environment, capture_output=True, text=True, timeout=30, check=False)
            self.assertGreater(run.returncode, 0, "ended by a signal, or as if all were well")
            self.assertRegex(run.stderr, r"\Avellomir: .*display.*\n\Z")


if __name__ == "__main__":
    unittest.main(verbosity=2)
