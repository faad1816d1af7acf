#!/usr/bin/python3 -B
"""Games played with the real program, in a real window, with real keys and a real mouse, and read from outside.

    tests/end_to_end.py PROGRAM
"""

import re
import subprocess
import sys
import unittest

from support.desktop import Desktop, Program, wait_until

PROGRAM = sys.argv.pop(1)
ALL = list(range(1, 76))
RED = (255, 0, 0)


def button(number):
    return f"{'BINGO'[(number - 1) // 15]} {number}"


def label(number):
    return button(number).replace(" ", "")


class Game:
    """What somebody who looks at the window, or has it read aloud, knows of the game."""

    def __init__(self, program):
        self.program = program

    def current(self):
        return self.program.text("Current number").strip()

    def past(self):
        return self.program.text("Past numbers").split()

    def called_buttons(self):
        """The numbers whose buttons are said to be called."""
        states = {a.get_name(): a.get_description() for a in self.program.all("push button")}
        assert all(states[button(n)] in ("called", "not called") for n in ALL)
        return [n for n in ALL if states[button(n)] == "called"]

    def red_numbers(self):
        """The numbers that are red on the large board, by a picture of it."""
        text = self.program.text("Called numbers")
        cells = {int(found.group()): found.start() for found in re.finditer(r"\d+", text)}
        assert sorted(cells) == ALL
        board = self.program.place("Called numbers")
        picture = self.program.desktop.pixels(board)
        red = []
        for number, place in zip(cells, self.program.character_places("Called numbers", cells.values())):
            left, top = place[0] - board[0], place[1] - board[1]
            rows = picture[top : top + place[3]]
            if any(RED in row[left : left + place[2]] for row in rows):
                red.append(number)
        return red

    def wait_for_count(self, count):
        self.program.the(f"Balls Called: {count}", "label")


class EndToEnd(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.close)

    def setUp(self):
        self.program = Program(self.desktop, PROGRAM)
        self.addCleanup(self.program.kill)
        self.game = Game(self.program)
        wait_until(lambda: self.program.is_focused("Number to call"), "the entry box has not the focus")

    def enter(self, text):
        self.program.type(text)
        self.program.key("Return")

    def assert_called(self, numbers):
        self.assertEqual(self.game.called_buttons(), sorted(numbers))
        self.assertEqual(self.game.red_numbers(), sorted(numbers))

    def test_every_way_to_call(self):
        self.program.click(button(7))
        self.game.wait_for_count(1)
        self.enter("N33")
        self.game.wait_for_count(2)
        self.assertEqual((self.game.current(), self.game.past()), ("N33", ["B7"]))
        self.assert_called([7, 33])

        self.program.type("12r")
        self.game.wait_for_count(3)
        drawn = self.game.current()
        self.program.click("Random Call")
        self.game.wait_for_count(4)
        self.assertEqual(self.game.past(), [drawn, "N33", "B7"])
        self.assertEqual(self.program.text("Number to call"), "")

        called = self.game.called_buttons()
        self.assertEqual({label(n) for n in called}, {"B7", "N33", drawn, self.game.current()})
        self.assertEqual(self.game.red_numbers(), called)

    def test_a_call_is_taken_back_after_yes_only(self):
        self.enter("7")
        self.game.wait_for_count(1)
        self.enter("62")
        self.game.wait_for_count(2)

        question = "Clearing button,\nAre you sure?"
        self.program.click(button(7))
        self.program.the(question)
        self.program.click("No")
        self.program.wait_until_gone(question)
        self.assert_called([7, 62])

        self.enter("b7")
        self.program.the(question)
        self.program.click("Yes")
        self.program.wait_until_gone(question)
        self.assert_called([62])
        self.assertEqual((self.game.current(), self.game.past()), ("O62", ["B7"]))
        self.game.wait_for_count(2)

    def test_a_whole_game_of_random_calls(self):
        drawn = []
        for count in ALL:
            self.program.key("r")
            self.game.wait_for_count(count)
            drawn.append(self.game.current())
        self.assertEqual(sorted(drawn), sorted(map(label, ALL)))
        self.assert_called(ALL)

        self.program.key("r")
        self.program.the("Full Board....")
        self.program.click("OK")
        self.program.wait_until_gone("Full Board....")
        self.game.wait_for_count(75)

    def test_the_window_keeps_its_least_size(self):
        self.program.resize(300, 200)
        wait_until(lambda: self.program.size()[0] < 1000, "the window did not get smaller")
        self.assertEqual(self.program.size()[0], 926)
        board = self.program.place("Called numbers")
        self.assertEqual(board[2], 865)
        self.assertAlmostEqual(board[3], 5200 / 15, delta=1)

    def test_closing_the_window_ends_the_program(self):
        self.enter("7")
        self.game.wait_for_count(1)
        self.assertEqual(self.program.close(), (0, ""))


class WithoutADisplay(unittest.TestCase):
    def test_one_line_says_so(self):
        for display in ({}, {"DISPLAY": ":65000"}):
            with self.subTest(display=display):
                environment = {"PATH": "/usr/bin:/bin", "HOME": "/nonexistent", **display}
                run = subprocess.run(
                    [PROGRAM], env=environment, capture_output=True, text=True, timeout=30, check=False
                )
                self.assertGreater(run.returncode, 0, "ended by a signal, or as if all were well")
                self.assertRegex(run.stderr, r"\Avellomir: .*display.*\n\Z")


if __name__ == "__main__":
    unittest.main(verbosity=2)
