#!/usr/bin/python3 -B
"""The real program, played and disturbed from outside: tests/outside.py PROGRAM, on a screen and a bus of its own."""

import contextlib
import itertools
import os
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from signal import SIG_DFL, SIGHUP, SIGINT, SIGKILL, SIGSTOP, SIGTERM, signal

from gi.repository import Gio, GLib
from support.desktop import Program, has, is_blank, key, manage_windows, run, taskbar, wait_until

PROGRAM = Path(sys.argv.pop(1)).resolve()
UNPRIVILEGED = ["setpriv", "--bounding-set=-all", "--inh-caps=-all"] if os.geteuid() == 0 else []
FAKE_SPEECHD = Path(__file__).parent / "support" / "fake_speechd.py"
ORCA = Path("/usr/bin/orca")
F10 = "76"  # by its place: with the keyboard tables of the next Debian, xdotool holds Alt while it presses the name
VOICES, HELP, ABOUT = ["Down", "Return"], ["Right", "Down", "Return"], ["Right", "Down", "Down", "Return"]
INI = b"; note\r\n[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n[Other]\r\nX=1\r\n"
DONE = INI.replace(b"36", b"40")
UTF_16 = INI.decode().encode("utf-16")
OTHER = b"[Other]\nY=2\n[Options]\nFontSz=%d\nAutoCallTm=%d\n"

# What is done to the settings file before the start, before the end; the boxes then; the file in the end.
SETTINGS = {
    "no fault": (None, None, ["36", "5"], DONE),
    "folder not writable": (lambda file: file.parent.chmod(0o500), None, ["36", "5"], DONE),
    "file not writable": (lambda file: (file.chmod(0o400), file.parent.chmod(0o500)), None, ["36", "5"], INI),
    "folder vanished": (None, lambda file, _: shutil.rmtree(file.parent), ["36", "5"], None),
    "changed meanwhile": (None, lambda file, _: file.write_bytes(OTHER % (20, 20)), ["36", "5"], OTHER % (40, 5)),
    "disk full": (None, lambda _, pid: resource.prlimit(pid, resource.RLIMIT_FSIZE, (20, 20)), ["36", "5"], INI),
    "a folder": (lambda file: (file.unlink(), file.mkdir()), None, ["33", "10"], None),
    "unreadable": (lambda file: file.chmod(0), None, ["33", "10"], INI),
    "UTF-16": (lambda file: file.write_bytes(UTF_16), None, ["33", "10"], UTF_16.rstrip(b"\0")),
    "1 GB": (lambda file: os.truncate(file, 1 << 30), None, ["33", "10"], INI),
}

# Keys, and what the screen reader says when they have been pressed, as regular expressions: the same of Orca 43 beside
# Qt 6.4 and of Orca 48 and later beside Qt 6.8 and later. Keys it names, and ends sentences, in the way of its version;
# 51 says the keys of buttons and menus, too.
KEY_NAME = r"[a-z0-9]|return|tab|space|left \w+|F\d+|Alt\+\w|Enter"
WINDOW, ENTRY = "Vellomir(?: frame)?", "Number to call text"
HEARD = [
    ("", WINDOW, ENTRY),
    ("3 3 Return", r"N 33, 1 called"),
    ("n 4 0 Return", r"N 40, 2 called"),
    ("r", r"[BINGO] \d+, 3 called"),
    ("3 3 Return", "alert Clear Board", "Clearing button,", r"Are you sure\?", "No button"),
    ("Tab", "Yes button"),
    ("space", WINDOW, ENTRY, "N 33 not called"),
    ("shift+Tab", "Bingo button"),
    ("space", rf"(?:{ENTRY}/)?BINGO opened", r"A click or Alt\+F4 closes it text", "Text1?"),
    ("alt+F4", WINDOW, ENTRY, "BINGO closed"),
    (F10, "File(?: menu)?"),
    ("Down", "Voice Options"),
    ("Down", "Shaddow Buttons checked"),
    ("Return", ENTRY, "Shaddow Buttons, not checked"),
]

SCREEN_SAVER = """<node><interface name="org.freedesktop.ScreenSaver">
<method name="Inhibit"><arg type="s"/><arg type="s"/><arg type="u" direction="out"/></method>
<method name="UnInhibit"><arg type="u"/></method></interface></node>"""

# What a hand does beside the entry, and goes on typing.
STRAY = [
    lambda program: program.click("Four Corner pattern", button=3),
    lambda program: program.click("G 60", button=2),
    lambda program: program.slip("B 12").slip("Bingo").slip("Clear Board"),
    lambda program: (program.click("5", "combo box"), key("Down", "Return"), program.the("6", "combo box")),
    lambda program: (program.click("6", "combo box"), key("Escape")),
    lambda program: program.click("Make Voice Calls"),
]

CALLS = {
    "B 4": ("Bee, 4", "And After"),
    "N 33": ("En, 33", "En, 3 , 3"),
    "O 75": ("Oh, 75", "Oh, 7 , 5"),
}


def hold(name):
    run("xdotool", "keydown", name, "sleep", 1, "keyup", name)


class Outside(unittest.TestCase):
    def setUp(self):
        self.home = Path(self.enterContext(tempfile.TemporaryDirectory()))
        folders = {"HOME": "", "AppData": "settings", "XDG_CONFIG_HOME": "config", "XDG_RUNTIME_DIR": ""}
        os.environ.update({name: str(self.home / folder) for name, folder in folders.items()}, LC_ALL="C.UTF-8",
                          SPEECHD_CMD="/none", SPEECHD_ADDRESS=f"unix_socket:{self.home}/speech",
                          QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.file = self.home / "settings" / PROGRAM.name / f"{PROGRAM.name}.ini"
        self.file.parent.mkdir(parents=True)
        self.file.write_bytes(INI)
        self.serve("normal")

    def serve(self, mood):
        """Starts a speech service that programs will find from now on."""
        (self.home / "speech").unlink(missing_ok=True)
        with (self.home / "heard").open("w") as heard:
            self.service = self.run_beside(FAKE_SPEECHD, self.home / "speech", mood, stdout=heard)
        self.heard("listening")

    def run_beside(self, *command, **options):
        process = subprocess.Popen(command, **options)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def heard(self, line):
        wait_until(lambda: line in (self.home / "heard").read_text().splitlines(), f"{line!r} at the service")

    def start(self, *wrapper, program=PROGRAM):
        return Program(*UNPRIVILEGED, *wrapper, program, "-platform", "offscreen")

    @contextlib.contextmanager
    def play(self, *wrapper, **options):
        """The program, closed in the end."""
        with self.start(*wrapper, **options) as program:
            yield program
            self.assertEqual(program.close(), (0, ""))

    def test_a_game(self):
        """It goes on where nohup keeps the end of the terminal from it."""
        with self.play("sh", "-c", 'trap "" HUP; exec "$@"', "sh") as program:
            program.process.send_signal(SIGHUP)
            program.type("N33\r").the("N 33, called")
            program.click("B 7").the("Balls Called: 2")
            hold("r")
            program.the("Balls Called: 3")
            hold("7")
            self.assertGreater(len(program.text("Number to call")), 5)
            key("alt+r", "super+7", "p")
            self.assertEqual(program.text("Number to call"), "")
            program.click("Auto Draw Every").the("Auto Call In : 5")
            program.the("Balls Called: 4")
            for name, caption in ("Return", "Play"), ("space", "Pause"), ("Return", "Play"):
                hold(name)
                program.the(caption, "button")
            program.click("Clear Board").the("Clearing board,\nAre you sure?")
            program.type("y").the("Balls Called: 0")
            program.type("".join(f"{n}\r" for n in range(1, 76)), delay=4).the("Balls Called: 75")
            shown = [program.the(name).get_description() for name in ("Past numbers", "Current number")]
            self.assertEqual(shown, ["O 74, O 73, O 72, O 71", "O 75"])
            program.click("Bingo", times=2)
            wait_until(lambda: taskbar() == ["Vellomir"], "a taskbar without it")
            program.click("B 8", times=2).become("Vellomir*")  # The second click does nothing: it can be closed.

    def test_next_key(self):
        """Whatever the hand and the program do meanwhile, a key acts on what the caller looks at."""
        with self.play() as program:
            for number, stray in enumerate(STRAY, 1):
                stray(program)
                program.type(f"{number}\r").the(f"B {number}, called")
            for pasted, ball in ("\r\n33\r\n34\r\n", "N 33"), ("ı25\n", "I 25"), ("٣١\n", "N 31"):
                subprocess.run(["xsel", "-ib"], input=pasted, text=True, check=True)
                wait_until(lambda: run("xsel", "-ob").split() == pasted.split(), "the clipboard")  # set in the background
                key("shift+Insert")
                program.the(f"{ball}, called")
            run("setxkbmap", "ru")
            key(27)  # R by its place
            program.the("Balls Called: 10")
            run("setxkbmap", "us")
            program.choose(*VOICES).the("German (other)")
            key("Tab", "shift+Tab", "Down")
            wait_until(lambda: has(program.the("German (other)"), "SELECTED"), "the first voice")
            hold("alt+F4")
            program.become("Vellomir*")
            program.click("Auto Draw Every").click("Font size")
            key("ctrl+a", "4")
            program.the("Balls Called: 11")
            program.the("36", "combo box")
            key(F10)  # The next draw comes while the keyboard is in the menu bar.
            program.the("Balls Called: 12")
            key("Right", "Down", "Return")
            program.become("Vellomir", "QOR Help*")

    def test_windows(self):
        """Each from the menu, named to a screen reader, above the board, and kept off the taskbar."""
        with self.play() as program:
            at = program.the("Vellomir", "frame").get_extents(0)
            top, bottom = map(int, re.findall(r"\d+", run("xprop", "-id", program.window, "_NET_FRAME_EXTENTS"))[2:])
            self.assertLessEqual(abs(2 * at.x + at.width - 1600), 2)
            self.assertLessEqual(abs(2 * at.y + at.height + bottom - top - 1000), 2)
            for opening, title, closing, in_taskbar in (
                (VOICES, "Form1", ["alt+F4"], 1),
                (HELP, "QOR Help", [F10, "Return"], 1),
                (ABOUT, "About", ["Return"], 1),
            ):
                program.choose(*opening).become("Vellomir", f"{title}*")
                wait_until(lambda: len(taskbar()) == in_taskbar, f"{title} in the taskbar, or not")
                focusable = [found for found in program.everything() if has(found, "FOCUSABLE")]
                wait_until(lambda: all(found.get_name() for found in focusable), f"a name for all in {title}")
                above = run("xdotool", "search", "--onlyvisible", "--name", f"^{title}$")
                owner = int(run("xprop", "-id", above, "WM_TRANSIENT_FOR").split()[-1], 16)
                self.assertEqual(owner, int(program.window))
                program.choose(*opening).become("Vellomir", f"{title}*")
                key(*closing)
                program.become("Vellomir*")

    def test_scales(self):
        """A changed scale leaves the window as one that was started at it, all on the screen; it stays when restored."""
        config, looks = self.home / "xsettings", {}

        def scale(dpi):
            config.write_text(f"Xft/DPI {1024 * dpi}\n")
            settings.send_signal(SIGHUP)

        def looks_as(dpi):  # but for the rounding of the window's own edges, and of letters
            both = f"x:{program.window}", looks[dpi], "-extent", "1590x860", "-resize", "25%", "-metric", "RMSE", "-compare"
            return float(run("convert", *both, "-format", "%[distortion]", "info:") or 1) < 0.03

        config.write_text("")
        settings = self.run_beside("xsettingsd", "-c", config, stderr=subprocess.DEVNULL)
        wait_until(lambda: "xsettingsd" in run("xwininfo", "-root", "-tree"), "xsettingsd")
        for dpi in 96, 144, 96:
            scale(dpi)
            with self.play() as program:
                program.type("47\r").the("Balls Called: 1")
                key("Escape")
                looks[dpi] = self.home / f"{dpi}.png"
                run("import", "-silent", "-window", program.window, looks[dpi])
                at = program.the("Vellomir", "frame").get_extents(0)
                self.assertTrue(0 <= at.x and at.x + at.width <= 1600 and 0 <= at.y and at.y + at.height <= 1000, dpi)
                if len(looks) < 2:
                    continue
                self.assertFalse(looks_as(240 - dpi))
                for other in (240 - dpi, dpi):
                    scale(other)
                    wait_until(lambda: looks_as(other), f"the look of {other} dpi")
                place = program.the("Vellomir", "frame").get_extents(0)
                run("xdotool", "windowminimize", "--sync", program.window, "windowactivate", "--sync", program.window)
                wait_until(lambda: looks_as(dpi), "the look of before")
                now = program.the("Vellomir", "frame").get_extents(0)
                self.assertEqual((now.x, now.y, now.width), (place.x, place.y, place.width))

    @unittest.skipIf(not ORCA.exists() or run("pgrep", "-x", "-U", os.geteuid(), "orca"), "Orca is missing, or in use")
    def test_screen_reader(self):
        """A game as a blind caller hears it: all that Orca says."""

        def said():
            lines = (self.home / "heard").read_text().splitlines()
            texts = [re.sub("<[^>]*>", "", line).strip(" .") for line in lines if "<mark" in line]
            return "/".join(t.replace("push button", "button") for t in texts if not re.fullmatch(KEY_NAME, t))

        self.run_beside(sys.executable, ORCA, stderr=subprocess.DEVNULL)
        expected = "Screen reader on"
        wait_until(lambda: said() == expected, expected)
        with self.start():  # Qt complains, and leaks, beside Orca.
            for keys, *sentences in HEARD:
                for one in keys.split():
                    run("xdotool", "sleep", 0.3, "key", one)  # As a hand: what comes too soon cuts off Orca's word.
                expected = "/".join([expected, *sentences])
                with contextlib.suppress(AssertionError):
                    wait_until(lambda: re.fullmatch(expected, said()), expected)
                self.assertRegex(said(), rf"\A{expected}\Z")

    # ---- Settings

    def test_settings(self):
        for fault, (before, meanwhile, shown, after) in SETTINGS.items():
            with self.subTest(fault):
                self.setUp()
                before and before(self.file)
                with self.play() as program:
                    boxes = [found for found in program.everything() if found.get_role_name() == "combo box"]
                    self.assertEqual([box.get_name() for box in boxes], shown)
                    meanwhile and meanwhile(self.file, program.process.pid)
                    program.click("Font size")
                    key("ctrl+a")
                    program.type("40\r")
                content = self.file.read_bytes()[:1000].rstrip(b"\0") if self.file.is_file() else None
                self.assertEqual(content, after)

    def test_folders(self):
        """A program of another name has its own settings, and what the environment lacks is found elsewhere."""
        other = shutil.copy(PROGRAM, self.home / "caller")
        for lacking, folder in (None, "settings"), ("AppData", "config"), ("XDG_CONFIG_HOME", ".config"):
            os.environ.pop(lacking or "", None)
            with self.play(program=other):
                pass
            self.assertTrue((self.home / folder / "caller" / "caller.ini").is_file(), folder)

    # ---- The end from outside

    def test_ends_from_outside(self):
        states = {
            "board": lambda: None,
            "question": lambda: program.click("Clear Board").the("Clear Board", "alert"),
            "menu": lambda: program.choose("Down").the("Exit", "menu item"),
            "printer": lambda: (program.choose(*HELP).become("Vellomir", "QOR Help*"), key("alt", "Right", "Return"),
                                program.the("Print", "dialog")),
            "sample": lambda: (program.choose(*VOICES).click("German (fake)").click("Listen"), self.heard("SPEAK")),
        }
        signals = itertools.cycle([SIGTERM, SIGINT, SIGHUP])
        for (state, reach), is_lost in itertools.product(states.items(), (False, True)):
            self.serve("silent")
            with self.subTest(state, is_lost=is_lost), self.start() as program:
                reach()
                self.file.unlink()
                program.process.stderr.close()  # who listens goes too
                # The display is lost to who owns a window that is killed.
                run("xdotool", "windowkill", program.window) if is_lost else program.process.send_signal(next(signals))
                self.assertEqual(program.process.wait(20), is_lost)
                self.assertEqual(self.file.read_bytes(), b"[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n")

    def test_no_display(self):
        for display in ({}, {"DISPLAY": ":65000"}):
            environment = {"PATH": "/usr/bin:/bin", "HOME": "/nonexistent", **display}
            ended = subprocess.run([PROGRAM], env=environment, capture_output=True, text=True, timeout=30, check=False)
            self.assertGreater(ended.returncode, 0, "ended by a signal, or as if all were well")
            self.assertRegex(ended.stderr, r"\Avellomir: .*display.*\n\Z")

    # ---- The screen

    def test_screen(self):
        """The server is asked to keep it on, and the desktop, whether that answers or not, until the program ends."""
        asked = []

        def answer(_bus, _sender, _path, _interface, method, arguments, call):
            asked.append((method, arguments[0]))
            call.return_value(GLib.Variant("(u)", [33]) if method == "Inhibit" else None)

        def is_asked(*calls):
            GLib.MainContext.default().iteration(False)
            return asked[-len(calls) :] == list(calls)

        bus, interface = Gio.bus_get_sync(Gio.BusType.SESSION), Gio.DBusNodeInfo.new_for_xml(SCREEN_SAVER).interfaces[0]
        bus.register_object("/org/freedesktop/ScreenSaver", interface, answer, None, None)
        self.addCleanup(Gio.bus_unown_name, Gio.bus_own_name_on_connection(bus, interface.name, 0, None, None))
        self.addCleanup(run, "xset", "s", "default")
        run("xset", "s", 2)
        with self.start() as program:  # which is killed
            wait_until(is_blank, "a blank screen before the first call")
            program.click("Auto Draw Every").the("Balls Called: 2")
            self.assertFalse(is_blank())
        wait_until(is_blank, "a blank screen after the end")
        wait_until(lambda: is_asked(("Inhibit", "Vellomir")), "the question of the killed program")
        with self.play() as program:
            program.click("Auto Draw Every")
            wait_until(lambda: is_asked(*[("Inhibit", "Vellomir")] * 2), "another question")
            program.the("Balls Called: 1")
        wait_until(lambda: is_asked(("Inhibit", "Vellomir"), ("UnInhibit", 33)), "its end")

    # ---- Speech

    def test_speech(self):
        """Each fault is told, and the next call finds the service that is there then."""
        lost = "Desc: The speech service was lost.\nErr #: 2"
        stuck = "Desc: The speech service does not answer. The waiting calls were not spoken.\nErr #: 3"
        self.serve("silent")
        with self.play() as program:
            program.click("Make Voice Calls")
            for call, signal, text, mood in ("B 7", SIGKILL, lost, "silent"), ("B 8", SIGSTOP, stuck, "normal"):
                program.click(call)
                self.heard(call.replace("B", "Bee,"))
                self.service.send_signal(signal)
                program.the(text)
                key("Return")
                program.become("Vellomir*")
                self.serve(mood)
            program.click("N 33")
            self.heard("En, 3 , 3")

    def test_no_speech(self):
        """Told once at the start, where the program can already be ended; then at each call, until there is one."""
        unknown = f"Try '{shutil.which('ls')} --help' for more information."
        for starter, reason in ("/none", "No speech service is installed."), ("ls", unknown):
            os.environ["SPEECHD_CMD"] = starter
            self.service.kill()
            with self.start() as program:
                program.the(f"Desc: {reason}\nErr #: 1")
                program.process.send_signal(SIGTERM)
                self.assertEqual(program.process.wait(60), 0)
            with self.play() as program:
                program.the(f"Desc: {reason}\nErr #: 1")
                key("Return")
                program.become("Vellomir*")
                program.click("B 7").click("Make Voice Calls").click("N 33").the(f"Desc: {reason}\nErr #: 1")
                key("Return")
                program.choose(*VOICES).the(f"Desc: {reason}\nErr #: 1")
                key("Return")
                self.serve("normal")
                program.click("Listen").the("German (fake)")
                key("Return", "alt+F4")
                program.become("Vellomir*")
                program.click("G 48").the("Balls Called: 3")
                self.heard("Gee, 4 , 8")

    @unittest.skipUnless(shutil.which("spd-say"), "speech-dispatcher is not installed")
    def test_sound(self):
        """Calls sound as another client's texts, to the byte, where each has started the real service."""
        sound, config = self.home / "sound", self.home / "config" / "speech-dispatcher" / "speechd.conf"
        (self.home / ".asoundrc").write_text(f'pcm.!default {{ type file; slave.pcm null; file "{sound}" }}')
        config.parent.mkdir(parents=True)
        config.write_text('AudioOutputMethod "alsa"\nAddModule "espeak-ng" "sd_espeak-ng" "espeak-ng.conf"\n')
        del os.environ["SPEECHD_CMD"], os.environ["SPEECHD_ADDRESS"]
        expected = {}
        for ball, texts in CALLS.items():
            for text in texts:
                run("spd-say", "-w", "-P", "message", "-y", "English (America)", text)
            expected[ball] = sound.read_bytes()
        self.assertGreater(len(expected["O 75"].replace(b"\0", b"")), 150_000, "silence")
        self.kill_service()
        self.addCleanup(self.kill_service)
        sound.write_bytes(b"")
        with self.play() as program:
            program.click("Make Voice Calls")
            for ball, sounding in expected.items():
                program.click(ball)
                wait_until(lambda: sound.read_bytes() == sounding, f"the same sound of {ball}")

    def kill_service(self):
        os.kill(int((self.home / "speech-dispatcher/pid/speech-dispatcher.pid").read_text()), SIGKILL)


if __name__ == "__main__":
    for ignored in SIGINT, SIGHUP:  # as they are behind nohup, and in a script's background
        signal(ignored, SIG_DFL)
    manage_windows()
    unittest.main(verbosity=2)
