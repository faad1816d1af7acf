#!/usr/bin/python3 -B
"""Every window as a screen reader and a keyboard know it.

    tests/windows.py PROGRAM
"""

import sys
import unittest

from support.desktop import Atspi, Desktop, Program, wait_until

PROGRAM = sys.argv.pop(1)
FOCUSABLE, SHOWING = Atspi.StateType.FOCUSABLE, Atspi.StateType.SHOWING


class EveryWindow(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop())

    def setUp(self):
        self.program = self.enterContext(Program(self.desktop, PROGRAM))

    def choose(self, menus_to_the_right, items_down, *titles):
        """Chooses from the main window's menus by keyboard; a window of one of the titles comes to the front."""
        self.desktop.xdotool("windowactivate", "--sync", self.program.window)
        self.program.key("alt", *["Right"] * menus_to_the_right, *["Down"] * items_down, "Return")
        wait_until(lambda: self.active_window() in titles, f"no window {titles} came to the front")

    def active_window(self):
        """The title of the window that the keyboard goes to."""
        active = (w for w in self.program.windows() if w.get_state_set().contains(Atspi.StateType.ACTIVE))
        return next((w.get_name() for w in active), None)

    def find_window(self, title):
        return next((w for w in self.program.windows() if w.get_name() == title), None)

    def assert_all_is_named(self, *titles):
        """The window of that title is there, and whatever in it can have the focus says what it is."""
        wait_until(lambda: any(self.find_window(title) for title in titles), f"no window {titles}")
        nameless = [
            (accessible.get_role_name(), accessible.get_parent().get_name())
            for accessible in self.program.everything()
            if accessible.get_state_set().contains(FOCUSABLE)
            and accessible.get_state_set().contains(SHOWING)
            and not accessible.get_name()
        ]
        self.assertEqual(nameless, [])

    def test_board(self):
        self.assert_all_is_named("Vellomir")
        focusable = [a for a in self.program.everything() if a.get_state_set().contains(FOCUSABLE)]
        self.assertGreater(len(focusable), 75 + 25 + 21)

    def test_question(self):
        self.program.click("Clear Board")
        self.assert_all_is_named("Clear Board")
        self.assertTrue(self.program.find("Clearing board,\nAre you sure?"))
        self.program.key("Escape")
        wait_until(lambda: not self.find_window("Clear Board"))

    def test_help(self):
        self.choose(1, 1, "QOR Help")
        self.assert_all_is_named("QOR Help")
        self.assertIn("1. WHAT THE WINDOW SHOWS", self.program.text("Help text"))
        self.program.the("Exit", "menu item")
        self.program.key("alt", "Return")
        wait_until(lambda: not self.find_window("QOR Help"), "Exit by keyboard did not close the help")

    def test_about(self):
        self.choose(1, 2, "About")
        self.assert_all_is_named("About")
        for label in ("Vellomir", "Version 3.1"):
            self.program.the(label, "label")
        place = Atspi.Component.get_extents(self.find_window("About"), Atspi.CoordType.SCREEN)
        self.assertAlmostEqual(place.x + place.width / 2, 800, delta=2)
        # The caption is above; how high it is depends on the window manager's font.
        self.assertAlmostEqual(place.y + place.height / 2, 500 + 8, delta=8)
        wait_until(lambda: self.program.is_focused("Ok"))
        self.program.key("Return")
        wait_until(lambda: not self.find_window("About"), "Enter did not close the about window")

    def test_voices(self):
        self.choose(0, 1, "Form1", "Run-Time Error")
        self.assert_all_is_named("Form1", "Run-Time Error")

    def test_bingo(self):
        buttons = [b for b in self.program.all("push button") if b.get_name() == "Bingo"]
        screen = Atspi.CoordType.SCREEN
        x, y = max((p.y, p.x) for p in (Atspi.Component.get_position(b, screen) for b in buttons))[::-1]
        self.desktop.click_at(x + 5, y + 5)
        wait_until(lambda: len(self.program.windows()) == 2, "no announcement")
        self.assert_all_is_named("Vellomir")
        self.assertEqual(self.desktop.taskbar(), ["Vellomir"])

    def test_all_end_with_the_board(self):
        self.choose(1, 1, "QOR Help")
        self.choose(1, 2, "About")
        self.assertEqual(self.desktop.taskbar(), ["Vellomir"])
        self.assertEqual(self.program.close(), (0, ""))


if __name__ == "__main__":
    unittest.main(verbosity=2)
