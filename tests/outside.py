#!/usr/bin/python3 -B
"""The real program, played and disturbed from outside: tests/outside.py PROGRAM, on a screen and a bus of its own."""

import itertools
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from signal import SIG_DFL, SIGCONT, SIGHUP, SIGINT, SIGKILL, SIGSTOP, SIGTERM, signal

from gi.repository import Gio, GLib
from support.desktop import Program, run, wait_until

PROGRAM = Path(sys.argv.pop(1)).resolve()
UNPRIVILEGED = ["setpriv", "--bounding-set=-all", "--inh-caps=-all"] if os.geteuid() == 0 else []
FAKE_SPEECHD = Path(__file__).parent / "support" / "fake_speechd.py"
ORCA = Path("/usr/bin/orca")
F10 = "76"  # by its place: with the keyboard tables of the next Debian, xdotool holds Alt while it presses the name
VOICES, HELP, ABOUT = ["Down", "Return"], ["Right", "Down", "Return"], ["Right", "Down", "Down", "Return"]
INI = b"; note\r\n[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n[Other]\r\nX=1\r\n"
DONE = INI.replace(b"36", b"40")

# What is done in the folder of the settings file before the start, before the end; the file then.
SETTINGS = [
    ("chmod 500 .", "", DONE),
    ("chmod 400 *; chmod 500 .", "", INI),
    ("chmod 0 *", "", INI),
    ("", "rm -r $PWD", None),
    ("", "sed -i s/X=1/X=2/ *", DONE.replace(b"X=1", b"X=2")),
    ("", "prlimit --pid $PROGRAM --fsize=20", INI),
]

# Keys, and what the screen reader then says, among names of keys and windows that vary with its version.
HEARD = [
    ("3 3 Return", "N 33, 1 called"),
    ("3 3 Return", "Are you sure?"),
    ("Tab space", "N 33 not called"),
    ("shift+Tab space", "BINGO opened"),
    ("alt+F4 " + F10, "File"),
]

# Who keeps the screen on: the service, its object, what that is asked (of the service's own interface, where no other
# is named), its answer, and what ends that.
REASON = "'The numbers of a Bingo game are called'"
SAVER = f".Inhibit('Vellomir', {REASON})", "u", ".UnInhibit(uint32 33,)"
SCREENS = [
    ("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", *SAVER),
    ("org.freedesktop.ScreenSaver", "/ScreenSaver", *SAVER),
    ("org.xfce.ScreenSaver", "/org/xfce/ScreenSaver", *SAVER),
    ("org.gnome.SessionManager", "/org/gnome/SessionManager",
     f".Inhibit('Vellomir', uint32 0, {REASON}, uint32 8)", "u", ".Uninhibit(uint32 33,)"),
    ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
     f"org.freedesktop.portal.Inhibit.Inhibit('', uint32 8, {{'reason': <{REASON}>}})", "o",
     "/33 org.freedesktop.portal.Request.Close()"),
]  # fmt: skip

WINDOWS = [(VOICES, "Form1", "alt+F4"), (HELP, "QOR Help", F10, "Return"), (ABOUT, "About", "Return")]


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

    def play(self, *wrapper, program=PROGRAM):
        return Program(*UNPRIVILEGED, *wrapper, program, "-platform", "offscreen")

    def test_hands(self):
        """Whatever the hand and the program do, a key acts on what the caller looks at. A game goes on behind nohup."""

        def is_tool():
            state = run("xprop", "-id", run("xdotool", "getactivewindow"), "_NET_WM_STATE", "WM_TRANSIENT_FOR")
            return re.search(rf"SKIP_TASKBAR.*\n.* {int(program.window):#x}$", state)

        with self.play("sh", "-c", 'trap "" HUP; exec "$@"', "sh") as program:
            program.send(SIGHUP).click("5", "combo box").key("Down", "Return").click("6", "combo box").key("Escape")
            program.type("N33\r").see("N 33, called").send(SIGSTOP).type("72\r").send(SIGCONT)
            subprocess.run(["xsel", "-ib"], input="\r\n34\r\n35\r\n", text=True, check=True)
            wait_until(lambda: run("xsel", "-ob").split() == ["34", "35"], "what xsel sets in the background")
            program.send(SIGSTOP).key("shift+Insert", "p").send(SIGCONT).see("N 34, called")
            run("setxkbmap", "ru")
            program.key(27).see("Balls Called: 4")  # R by its place
            run("setxkbmap", "us")
            program.hold("r").see("Balls Called: 5").key("Escape", "shift+Tab")
            for key in F10, "alt":
                program.key(key).focus("File").key(key).focus("Bingo")
            program.choose("Down").see("Exit", "menu item").key("Escape").focus("File").key("Escape").focus("Bingo")
            for opening, title, *closing in WINDOWS:
                program.choose(*opening).become("Vellomir", f"{title}*")
                wait_until(is_tool, f"{title} above the board, and off the taskbar")
                tool = run("xdotool", "getactivewindow")
                program.choose().focus("File")
                run("xdotool", "windowactivate", "--sync", tool)
                program.choose(*opening).become("Vellomir", f"{title}*")
                program.key(*closing).become("Vellomir*").focus("Bingo")
            program.choose(*VOICES).become("Vellomir", "Form1*").hold("alt+F4").become("Vellomir*")
            program.click("Auto Draw Every")
            run("xdotool", "keydown", "alt")
            program.see("Balls Called: 6")  # while the keyboard is on its way to the menu bar
            run("xdotool", "keyup", "alt")
            program.key(*HELP).become("Vellomir", "QOR Help*").key("alt+F4").become("Vellomir*")
            for caption in "Play", "Pause", "Play":
                program.hold("Return").see(caption, "button")
            program.click("Auto Draw Every").click("Clear Board").see("Clearing board,\nAre you sure?")
            program.type("y").see("Balls Called: 0")
            program.type("".join(f"{n}\r" for n in range(1, 76)), delay=4).see("Balls Called: 75")
            program.click("Bingo", times=2)
            wait_until(is_tool, "BINGO above the board, and off the taskbar")
            program.click("B 8", times=2).become("Vellomir*")  # The second click does nothing: it can be closed.

    def test_scales(self):
        """A changed scale leaves the window as one that was started at it, in the middle."""
        config, looks = self.home / "xsettings", {}

        def scale(dpi):
            config.write_text(f"Xft/DPI {1024 * dpi}\n")
            settings.send_signal(SIGHUP)
            wait_until(lambda: f"Xft/DPI {1024 * dpi}" in run("dump_xsettings"), "xsettingsd's news")

        def looks_as(dpi):  # but for the rounding of the window's own edges, and of letters
            both = f"x:{program.window}", looks[dpi], "-extent", "1590x860", "-resize", "25%"
            compared = run("convert", *both, "-metric", "RMSE", "-compare", "-format", "%[distortion]", "info:")
            return float(compared or 1) < 0.03

        config.write_text("")
        settings = self.run_beside("xsettingsd", "-c", config, stderr=subprocess.DEVNULL)
        wait_until(lambda: "xsettingsd" in run("xwininfo", "-root", "-tree"), "xsettingsd")
        for dpi in 96, 144, 96:
            scale(dpi)
            with self.play() as program:
                program.type("47\r").see("Balls Called: 1").key("Escape")
                told = run("xwininfo", "-id", program.window)
                x, y, width, height = map(int, re.findall(r"(?:Absolute .*|Width|Height): *(-?\d+)", told))
                self.assertTrue(abs(2 * x + width - 1600) <= 3 and abs(2 * y + height - 1000) < 40, told)
                looks.setdefault(dpi, self.home / f"{dpi}.png")
                run("import", "-silent", "-window", program.window, looks[dpi])
                self.assertEqual([other for other in looks if looks_as(other)], [dpi])
                for other in looks:
                    scale(other)
                    wait_until(lambda: looks_as(other), f"the look of {other} dpi")

    @unittest.skipIf(not ORCA.exists() or run("pgrep", "-x", "-U", os.geteuid(), "orca"), "Orca is missing, or in use")
    def test_screen_reader(self):
        """A game as a blind caller hears it from Orca, each sentence once."""

        def said():
            lines = re.findall("^(?!.* by ).*<mark.*", (self.home / "heard").read_text(), re.MULTILINE)
            return re.sub("<[^>]*>", "", "".join(lines))

        self.run_beside(sys.executable, ORCA, stderr=subprocess.DEVNULL)
        wait_until(lambda: "Screen reader on" in said(), "Orca")
        with self.play() as program:
            for keys, sentence in HEARD:
                for one in keys.split():
                    run("xdotool", "sleep", 0.3, "key", one)  # As a hand: what comes too soon cuts off Orca's word.
                wait_until(lambda: sentence in said(), lambda: f"{sentence} in {said()}")
            self.assertEqual([said().count(sentence) for _, sentence in HEARD], [1] * len(HEARD), said())
            program.end(SIGKILL)  # Qt complains, and leaks, beside Orca.

    # ---- Settings

    def test_settings(self):
        for before, meanwhile, after in SETTINGS:
            with self.subTest(before + meanwhile):
                self.setUp()
                subprocess.run(before, shell=True, cwd=self.file.parent, check=True)
                with self.play() as program:
                    environment = os.environ | {"PROGRAM": str(program.process.pid)}
                    subprocess.run(meanwhile, shell=True, cwd=self.file.parent, env=environment, check=True)
                    program.click("Font size").key("ctrl+a").type("40\r")
                self.assertEqual(self.file.read_bytes() if self.file.exists() else None, after)

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
        states = [
            (SIGTERM, lambda: None),
            (SIGINT, lambda: program.click("Clear Board").see("Clear Board", "alert")),
            (SIGHUP, lambda: program.choose("Down").see("Exit", "menu item")),
            (SIGTERM, lambda: program.choose(*HELP).focus("Help text").key("alt", "Right", "Return").see("Print")),
            (SIGINT, lambda: (program.choose(*VOICES).click("German (fake)").click("Listen"), self.heard("SPEAK"))),
        ]
        for number, ((ending, reach), is_lost) in enumerate(itertools.product(states, (False, True))):
            self.serve("silent")
            with self.subTest(number), self.play() as program:
                reach()
                self.file.unlink()
                program.process.stderr.close()  # who listens goes too
                # The display is lost to who owns a window that is killed.
                run("xdotool", "windowkill", program.window) if is_lost else program.send(ending)
                self.assertEqual(program.end(), is_lost)
                is_lost or self.heard("CANCEL SELF")
                self.assertEqual(self.file.read_bytes(), b"[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n")

    def test_no_display(self):
        for display in ({}, {"DISPLAY": ":65000"}):
            environment = {"PATH": "/usr/bin:/bin", "HOME": "/nonexistent", **display}
            ended = subprocess.run([PROGRAM], env=environment, capture_output=True, text=True, timeout=30, check=False)
            self.assertGreater(ended.returncode, 0, "ended by a signal, or as if all were well")
            self.assertRegex(ended.stderr, r"\Avellomir: .*display.*\n\Z")

    # ---- The screen

    def test_screen(self):
        """The X server keeps it on, and the desktop, whoever is there to be asked, until the program ends."""
        asked = []

        def answer(bus, message, _):
            call = f"{message.get_path()} {message.get_interface()}.{message.get_member()}"
            if not re.fullmatch(f"({path}|/33) .*([Ii]nhibit|Close)", call):
                return message
            arguments = message.get_body().print_(True) if message.get_body() else "()"
            asked.append((call + arguments).removeprefix(f"{path} ").removeprefix(service))
            reply = Gio.DBusMessage.new_method_reply(message)
            reply.set_body(GLib.Variant(f"({kind})", [{"u": 33, "o": "/33"}[kind]]))
            bus.send_message(reply, Gio.DBusSendMessageFlags.NONE)
            return None

        def is_blank():
            return run("xssstate", "-s") == "on"

        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.addCleanup(run, "xset", "s", "default")
        run("xset", "s", 1)
        bus.add_filter(answer)
        for service, path, inhibit, kind, end in SCREENS:
            name = Gio.bus_own_name_on_connection(bus, service, 0, None, None)
            with self.subTest(path), self.play() as program:
                wait_until(is_blank, "a blank screen before the first call")
                program.click("Auto Draw Every").see("Balls Called: 1")
                self.assertEqual((asked, is_blank()), ([inhibit], False))
            wait_until(lambda: asked == [inhibit, end] and is_blank(), lambda: f"{end} in place of {asked}")
            asked.clear()
            Gio.bus_unown_name(name)

    # ---- Speech

    def test_speech(self):
        """What is missing is told, at the start and at each call, until one finds a service that speaks."""
        box = "Desc: No speech service is installed.\nErr #: 1"
        self.service.kill()
        with self.play() as program:
            program.see(box).key("Return").become("Vellomir*").click("B 7")
            program.click("Make Voice Calls").click("B 8").see(box).key("Return").become("Vellomir*")
            self.serve("silent")
            program.click("B 9")
            self.heard("Bee, 9")
            self.service.kill()
            program.see("Desc: The speech service was lost.\nErr #: 2").send(SIGTERM)
            self.assertEqual(program.end(), 0)

    @unittest.skipUnless(shutil.which("speech-dispatcher"), "speech-dispatcher is not installed")
    def test_sound(self):
        """A call is heard where the program starts the real service."""
        sound, config = self.home / "sound", self.home / "config" / "speech-dispatcher" / "speechd.conf"
        (self.home / ".asoundrc").write_text(f'pcm.!default {{ type file; slave.pcm null; file "{sound}" }}')
        config.parent.mkdir(parents=True)
        config.write_text('AudioOutputMethod "alsa"\nAddModule "espeak-ng" "sd_espeak-ng" "espeak-ng.conf"\n')
        del os.environ["SPEECHD_CMD"], os.environ["SPEECHD_ADDRESS"]
        self.addCleanup(run, "sh", "-c", f"kill -9 $(cat {self.home}/speech-dispatcher/pid/*)")
        with self.play() as program:
            program.click("Make Voice Calls").click("N 33")
            wait_until(lambda: sound.exists() and len(sound.read_bytes().replace(b"\0", b"")) > 50_000, "sound")


if __name__ == "__main__":
    for ignored in SIGINT, SIGHUP:  # as they are behind nohup, and in a script's background
        signal(ignored, SIG_DFL)
    subprocess.Popen(["openbox", "--sm-disable"], stderr=subprocess.DEVNULL)  # It ends with the display.
    wait_until(lambda: "window id" in run("xprop", "-root", "_NET_CLIENT_LIST"), "openbox")
    unittest.main(verbosity=2)
