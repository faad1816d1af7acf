#!/usr/bin/python3 -B
"""The real program, played and disturbed from outside: tests/outside.py PROGRAM, on a screen and a bus of its own."""

import itertools
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from signal import SIGCONT, SIGHUP, SIGINT, SIGKILL, SIGSTOP, SIGTERM

from gi.repository import Gio, GLib
from support.desktop import PATIENCE, Program, manage_windows, run, wait_for, wait_until

PROGRAM = Path(sys.argv.pop(1)).resolve()
UNPRIVILEGED = ["setpriv", "--bounding-set=-all", "--inh-caps=-all"] if os.geteuid() == 0 else []
LISTENING = ["env", "--default-signal=INT,HUP,PIPE"]  # which nohup, a script's background and Python ignore
ORCA = Path("/usr/bin/orca")
F10 = "76"  # by its place: with the keyboard tables of the next Debian, xdotool holds Alt while it presses the name
VOICES, HELP, ABOUT = ["Down", "Return"], ["Right", "Down", "Return"], ["Right", "Down", "Down", "Return"]
FILE = Path("settings/vellomir/vellomir.ini")
INI = b"; note\r\n[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n[Other]\r\nX=1\r\n"
NEW_INI = b"[Options]\r\nFontSz=40\r\nAutoCallTm=10\r\n"
DONE = INI.replace(b"36", b"40")

# How the program ($0) is started in the folder of its settings file, what is done before its end, and the file then.
SETTINGS = [
    ('chmod 500 .; exec "$0"', "", "settings/vellomir", DONE),
    ('chmod 400 *; chmod 500 .; exec "$0"', "", "settings/vellomir", INI),
    ('chmod 0 *; exec "$0"', "", "settings/vellomir", INI),
    ('exec "$0"', "rm -r $PWD", "settings/vellomir", b""),
    ('exec "$0"', "sed -i s/X=1/X=2/ *", "settings/vellomir", DONE.replace(b"X=1", b"X=2")),
    ('echo $$ >pid; exec "$0"', "prlimit --pid $(cat pid) --fsize=20", "settings/vellomir", INI),
    ('cp "$0" caller; exec ./caller', "", "settings/caller", NEW_INI),
    ('unset AppData; exec "$0"', "", "config/vellomir", NEW_INI),
    ('unset AppData XDG_CONFIG_HOME; exec "$0"', "", ".config/vellomir", NEW_INI),
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
SAVER = f".Inhibit ('Vellomir', {REASON})", "u", ".UnInhibit (uint32 33,)"
SCREENS = [
    ("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", *SAVER),
    ("org.freedesktop.ScreenSaver", "/ScreenSaver", *SAVER),
    ("org.xfce.ScreenSaver", "/org/xfce/ScreenSaver", *SAVER),
    ("org.gnome.SessionManager", "/org/gnome/SessionManager",
     f".Inhibit ('Vellomir', uint32 0, {REASON}, uint32 8)", "u", ".Uninhibit (uint32 33,)"),
    ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
     f"org.freedesktop.portal.Inhibit.Inhibit ('', uint32 8, {{'reason': <{REASON}>}})", "o",
     "/33 org.freedesktop.portal.Request.Close None"),
]  # fmt: skip

WINDOWS = [(VOICES, "Form1", "alt+F4"), (HELP, "QOR Help", F10, "Return"), (ABOUT, "About", "Return")]


class Outside(unittest.TestCase):
    def setUp(self):
        home = self.enterContext(tempfile.TemporaryDirectory())
        os.environ.update(HOME=home, AppData=f"{home}/settings", XDG_CONFIG_HOME=f"{home}/config", XDG_RUNTIME_DIR=home,
                          LC_ALL="C.UTF-8", SPEECHD_CMD="/none", SPEECHD_ADDRESS=f"unix_socket:{home}/speech",
                          QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")  # fmt: skip
        os.chdir(home)
        FILE.parent.mkdir(parents=True)
        FILE.write_bytes(INI)
        self.serve("normal")

    def serve(self, mood):
        """Starts a speech service that programs will find from now on."""
        Path("speech").unlink(missing_ok=True)
        with open("heard", "w") as heard:
            self.service = self.run_beside(f"{sys.path[0]}/support/fake_speechd.py", "speech", mood, stdout=heard)
        self.heard("listening")

    def run_beside(self, *command, **options):
        process = self.enterContext(subprocess.Popen(command, **options))
        self.addCleanup(process.kill)
        return process

    def heard(self, line):
        wait_until(lambda: line in Path("heard").read_text().splitlines(), f"{line!r} at the service")

    def play(self, *wrapper):
        return Program(*UNPRIVILEGED, *LISTENING, *wrapper, PROGRAM, "-platform", "offscreen")

    def test_hands(self):
        """Whatever the hand and the program do, a key acts on what the caller looks at. A game goes on behind nohup."""

        def is_tool():
            state = run("xprop", "-id", run("xdotool", "getactivewindow"), "_NET_WM_STATE", "WM_TRANSIENT_FOR")
            return re.search(rf"SKIP_TASKBAR.*\n.* {int(program.window):#x}$", state)

        with self.play("sh", "-c", 'trap "" HUP; exec "$0"') as program:
            program.send(SIGHUP).click("5, combo box").key("Down", "Return").click("6, combo box").key("Escape")
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
            program.choose("Down").see("Exit, menu item").key("Escape").focus("File").key("Escape").focus("Bingo")
            for opening, title, *closing in WINDOWS:
                program.choose(*opening).become("Vellomir", f"{title}*")
                wait_until(is_tool, f"{title} above the board, and off the taskbar")
                program.choose().focus("File").do("search", "--name", title, "windowactivate", "--sync")
                program.choose(*opening).become("Vellomir", f"{title}*")
                program.key(*closing).become("Vellomir*").focus("Bingo")
            program.choose(*VOICES).become("Vellomir", "Form1*").hold("alt+F4").become("Vellomir*")
            # A ball is drawn while the keyboard is on its way to the menu bar.
            program.click("Auto Draw Every").do("keydown", "alt").see("Balls Called: 6").do("keyup", "alt")
            program.key(*HELP).become("Vellomir", "QOR Help*").key("alt+F4").become("Vellomir*")
            for caption in "Play", "Pause", "Play":
                program.hold("Return").see(caption)
            program.click("Auto Draw Every").click("Clear Board").see("Clearing board,\nAre you sure?")
            program.type("y").see("Balls Called: 0")
            program.type("".join(f"{n}\r" for n in range(1, 76))).see("Balls Called: 75")
            program.click("Bingo", times=2)
            wait_until(is_tool, "BINGO above the board, and off the taskbar")
            program.click("B 8", times=2).become("Vellomir*")  # The second click does nothing: it can be closed.

    def test_scales(self):
        """A changed scale leaves the window as one that was started at it."""
        config = Path("xsettings")

        def scale(dpi):
            config.write_text(f"Xft/DPI {1024 * dpi}\n")
            settings.send_signal(SIGHUP)
            wait_until(lambda: f"Xft/DPI {1024 * dpi}" in run("dump_xsettings"), "xsettingsd's news")

        def looks_as(dpi):  # but for the rounding of the window's own edges, and of letters
            both = f"x:{program.window}", f"{dpi}.png", "-extent", "1590x860", "-resize", "25%"
            compared = run("convert", *both, "-metric", "RMSE", "-compare", "-format", "%[distortion]", "info:")
            return float(compared or 1) < 0.03

        config.touch()
        settings = self.run_beside("xsettingsd", "-c", config, stderr=subprocess.DEVNULL)
        wait_until(lambda: "xsettingsd" in run("xwininfo", "-root", "-tree"), "xsettingsd")
        for dpi, *others in (96,), (144, 96, 144), (96, 144, 96):
            scale(dpi)
            with self.play() as program:
                program.type("47\r").see("Balls Called: 1").key("Escape")
                run("import", "-silent", "-window", program.window, f"{dpi}.png")
                for other in others:
                    self.assertFalse(looks_as(other), f"{other} dpi before it is set")
                    scale(other)
                    wait_until(lambda: looks_as(other), f"the look of {other} dpi")

    @unittest.skipIf(not ORCA.exists() or run("pgrep", "-x", "-U", os.geteuid(), "orca"), "Orca is missing, or in use")
    def test_screen_reader(self):
        """A game as a blind caller hears it from Orca, each sentence once."""

        def said():
            lines = re.findall("^(?!.* by ).*<mark.*", Path("heard").read_text(), re.MULTILINE)
            return re.sub("<[^>]*>", "", "".join(lines))

        self.run_beside(sys.executable, ORCA, stderr=subprocess.DEVNULL)
        wait_until(lambda: "Screen reader on" in said(), "Orca")
        with self.play() as program:
            for keys, sentence in HEARD:
                for one in keys.split():
                    run("xdotool", "sleep", 0.3, "key", one)  # As a hand: what comes too soon cuts off Orca's word.
                wait_until(lambda: sentence in said(), lambda: f"{sentence} in {said()}")
            self.assertEqual([said().count(sentence) for _, sentence in HEARD], [1] * len(HEARD), said())
            program.send(SIGKILL).wait()  # Qt complains, and leaks, beside Orca.

    # ---- Settings

    def test_settings(self):
        for start, meanwhile, folder, after in SETTINGS:
            self.setUp()
            with self.subTest(start + meanwhile):
                with self.play("sh", "-c", f"cd {FILE.parent}; {start}") as program:
                    subprocess.run(meanwhile, shell=True, cwd=FILE.parent, check=True)
                    program.click("Font size").key("ctrl+a").type("40\r")
                files = Path(folder).glob("*.ini")
                self.assertEqual(b"".join(file.read_bytes() for file in files), after)

    # ---- The end from outside

    def test_ends_from_outside(self):
        states = [
            (SIGTERM, lambda: None),
            (SIGINT, lambda: program.click("Clear Board").see("Clear Board, alert")),
            (SIGHUP, lambda: program.choose("Down").see("Exit, menu item")),
            (SIGTERM, lambda: program.choose(*HELP).focus("Help text").key("alt", "Right", "Return").see("Print")),
            (SIGINT, lambda: (program.choose(*VOICES).click("German (fake)").click("Listen"), self.heard("SPEAK"))),
        ]
        for number, ((ending, reach), is_lost) in enumerate(itertools.product(states, (False, True))):
            self.serve("silent")
            with self.subTest(number), self.play() as program:
                reach()
                FILE.unlink()
                program.stderr.close()  # who listens goes too
                # The display is lost to who owns a window that is killed.
                run("xdotool", "windowkill", program.window) if is_lost else program.send(ending)
                self.assertEqual(program.wait(PATIENCE), is_lost)
                is_lost or self.heard("CANCEL SELF")
                self.assertEqual(FILE.read_bytes(), b"[Options]\r\nFontSz=36\r\nAutoCallTm=5\r\n")

    def test_no_display(self):
        ended = subprocess.run(["env", "-i", PROGRAM], capture_output=True, text=True, timeout=PATIENCE, check=False)
        self.assertRegex(f"{ended.returncode} {ended.stderr}", r"\A1 vellomir: .*display.*\n\Z")

    # ---- The screen

    def test_screen(self):
        """The X server keeps it on, and the desktop, whoever is there to be asked, until the program ends."""

        def answer(bus, message, _):
            if message.get_path() not in (path, "/33") or not re.search("nhibit|Close", message.get_member()):
                return message
            call = f"{message.get_path()} {message.get_interface()}.{message.get_member()} {message.get_body()}"
            asked.append(call.removeprefix(f"{path} ").removeprefix(service))
            reply = Gio.DBusMessage.new_method_reply(message)
            reply.set_body(GLib.Variant(f"({kind})", [{"u": 33, "o": "/33"}[kind]]))
            bus.send_message(reply, Gio.DBusSendMessageFlags.NONE)
            return None

        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.addCleanup(run, "xset", "s", "default")
        run("xset", "s", 1)
        bus.add_filter(answer)
        for service, path, inhibit, kind, end in SCREENS:
            Gio.bus_own_name_on_connection(bus, service, 0, None, None)
            asked = []
            with self.subTest(path), self.play() as program:
                wait_for(lambda: run("xssstate", "-s"), "on")  # The screen is blank.
                program.click("Auto Draw Every").see("Balls Called: 1")
                self.assertEqual((asked, run("xssstate", "-s")), ([inhibit], "off"))
            wait_for(lambda: (asked, run("xssstate", "-s")), ([inhibit, end], "on"))

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
            program.see("Desc: The speech service was lost.\nErr #: 2").key("Return").become("Vellomir*")

    @unittest.skipUnless(run("which", "speech-dispatcher"), "speech-dispatcher is not installed")
    def test_sound(self):
        """A call is heard where the program starts the real service."""
        sound, config = Path("sound").absolute(), Path("config/speech-dispatcher/speechd.conf")
        Path(".asoundrc").write_text(f'pcm.!default {{ type file; slave.pcm null; file "{sound}" }}')
        config.parent.mkdir(parents=True)
        config.write_text('AudioOutputMethod "alsa"\nAddModule "espeak-ng" "sd_espeak-ng" "espeak-ng.conf"\n')
        del os.environ["SPEECHD_CMD"], os.environ["SPEECHD_ADDRESS"]
        self.addCleanup(run, "sh", "-c", "kill -9 $(cat speech-dispatcher/pid/*)")
        with self.play() as program:
            program.click("Make Voice Calls").click("N 33")
            wait_until(lambda: sound.exists() and len(sound.read_bytes().replace(b"\0", b"")) > 50_000, "sound")


if __name__ == "__main__":
    manage_windows()
    unittest.main(verbosity=2)
