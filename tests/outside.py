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
from signal import SIG_DFL, SIGCONT, SIGHUP, SIGINT, SIGKILL, SIGSTOP, SIGTERM, signal

from gi.repository import Gio, GLib
from support.desktop import Program, has, manage_windows, run, wait_until

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

# Who keeps the screen on: the service, its object, what that is asked (of the service's own interface, where no other
# is named), its answer, and what ends that.
REASON = "'The numbers of a Bingo game are called'"
COOKIE, OBJECT = GLib.Variant("(u)", [33]), GLib.Variant("(o)", ["/33"])
INHIBIT = f".Inhibit('Vellomir', {REASON})", COOKIE, ".UnInhibit(uint32 33,)"
SCREENS = [
    ("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", *INHIBIT),
    ("org.freedesktop.ScreenSaver", "/ScreenSaver", *INHIBIT),
    ("org.xfce.ScreenSaver", "/org/xfce/ScreenSaver", *INHIBIT),
    ("org.gnome.SessionManager", "/org/gnome/SessionManager",
     f".Inhibit('Vellomir', uint32 0, {REASON}, uint32 8)", COOKIE, ".Uninhibit(uint32 33,)"),
    ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
     f"org.freedesktop.portal.Inhibit.Inhibit('', uint32 8, {{'reason': <{REASON}>}})", OBJECT,
     "/33 org.freedesktop.portal.Request.Close()"),
]  # fmt: skip

WINDOWS = [(VOICES, "Form1", "alt+F4"), (HELP, "QOR Help", F10, "Return"), (ABOUT, "About", "Return")]


def is_blank():
    return run("xssstate", "-s") == "on"


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
            for pasted, ball in ("\r\n34\r\n35\r\n", "N 34"), ("ı25\n", "I 25"), ("٣١\n", "N 31"):
                subprocess.run(["xsel", "-ib"], input=pasted, text=True, check=True)
                wait_until(lambda: run("xsel", "-ob").split() == pasted.split(), "what xsel sets in the background")
                program.send(SIGSTOP).key("shift+Insert", "p").send(SIGCONT).see(f"{ball}, called")
            run("setxkbmap", "ru")
            program.key(27).see("Balls Called: 6")  # R by its place
            run("setxkbmap", "us")
            program.hold("r").see("Balls Called: 7").hold("7")
            self.assertGreater(len(program.text("Number to call")), 5)
            program.key("Escape", "shift+Tab")
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
            program.choose(*VOICES).see("German (other)").key("Tab", "shift+Tab", "Down")
            wait_until(lambda: has(program.the("German (other)"), "SELECTED"), "the first voice")
            program.hold("alt+F4").become("Vellomir*")
            program.click("Auto Draw Every").click("Font size").key("ctrl+a", "4").see("Balls Called: 8")
            program.see("36", "combo box")
            run("xdotool", "keydown", "alt")
            program.see("Balls Called: 9")  # while the keyboard is on its way to the menu bar
            run("xdotool", "keyup", "alt")
            program.key("Right", "Down", "Return").become("Vellomir", "QOR Help*").key("alt+F4").become("Vellomir*")
            for name, caption in ("Return", "Play"), ("space", "Pause"), ("Return", "Play"):
                program.hold(name).see(caption, "button")
            program.click("Auto Draw Every").click("Clear Board").see("Clearing board,\nAre you sure?")
            program.type("y").see("Balls Called: 0")
            program.type("".join(f"{n}\r" for n in range(1, 76)), delay=4).see("Balls Called: 75")
            program.click("Bingo", times=2)
            wait_until(is_tool, "BINGO above the board, and off the taskbar")
            program.click("B 8", times=2).become("Vellomir*")  # The second click does nothing: it can be closed.

    def test_scales(self):
        """A changed scale leaves the window as one that was started at it, in the middle; it stays when restored."""
        config, looks = self.home / "xsettings", {}
        self.file.unlink()  # The design's own letters need no scroll bar.

        def scale(dpi):
            config.write_text(f"Xft/DPI {1024 * dpi}\n")
            settings.send_signal(SIGHUP)

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
                self.assertNotIn("scroll bar", {found.get_role_name() for found in program.everything()})
                x, y, width, height = program.place()
                extents = run("xprop", "-id", program.window, "_NET_FRAME_EXTENTS")
                *_, top, bottom = map(int, re.findall(r"\d+", extents))
                self.assertLessEqual(abs(2 * x + width - 1600), 3)
                self.assertLessEqual(abs(2 * y + height + bottom - top - 1000), 3)
                looks.setdefault(dpi, self.home / f"{dpi}.png")
                run("import", "-silent", "-window", program.window, looks[dpi])
                self.assertEqual([other for other in looks if looks_as(other)], [dpi])
                for other in looks:
                    scale(other)
                    wait_until(lambda: looks_as(other), f"the look of {other} dpi")
                place = program.place()
                run("xdotool", "windowminimize", "--sync", program.window, "windowactivate", "--sync", program.window)
                wait_until(lambda: looks_as(other), "the look of before")
                self.assertEqual(program.place(), place)

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
        with self.play() as program:
            for keys, *sentences in HEARD:
                for one in keys.split():
                    run("xdotool", "sleep", 0.3, "key", one)  # As a hand: what comes too soon cuts off Orca's word.
                expected = "/".join([expected, *sentences])
                with contextlib.suppress(AssertionError):
                    wait_until(lambda: re.fullmatch(expected, said()), expected)
                self.assertRegex(said(), rf"\A{expected}\Z")
            program.end(SIGKILL)  # Qt complains, and leaks, beside Orca.

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
                    program.click("Font size").key("ctrl+a").type("40\r")
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
            "question": lambda: program.click("Clear Board").see("Clear Board", "alert"),
            "menu": lambda: program.choose("Down").see("Exit", "menu item"),
            "printer": lambda: (program.choose(*HELP).become("Vellomir", "QOR Help*"),
                                program.key("alt", "Right", "Return").see("Print", "dialog")),
            "sample": lambda: (program.choose(*VOICES).click("German (fake)").click("Listen"), self.heard("SPEAK")),
        }  # fmt: skip
        signals = itertools.cycle([SIGTERM, SIGINT, SIGHUP])
        for (state, reach), is_lost in itertools.product(states.items(), (False, True)):
            self.serve("silent")
            with self.subTest(state, is_lost=is_lost), self.play() as program:
                reach()
                self.file.unlink()
                program.process.stderr.close()  # who listens goes too
                # The display is lost to who owns a window that is killed.
                run("xdotool", "windowkill", program.window) if is_lost else program.send(next(signals))
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
            at, member = message.get_path(), message.get_member()
            if at not in (path, "/33") or member not in ("Inhibit", "UnInhibit", "Uninhibit", "Close"):
                return message
            arguments = message.get_body().print_(True) if message.get_body() else "()"
            interface = message.get_interface().removeprefix(service)
            asked.append(f"{at.removeprefix(path)} {interface}.{member}{arguments}".strip())
            reply = Gio.DBusMessage.new_method_reply(message)
            reply.set_body(granted)
            bus.send_message(reply, Gio.DBusSendMessageFlags.NONE)
            return None

        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.addCleanup(run, "xset", "s", "default")
        run("xset", "s", 1)
        for service, path, inhibit, granted, end in SCREENS:
            name, answering = Gio.bus_own_name_on_connection(bus, service, 0, None, None), bus.add_filter(answer)
            with self.subTest(path):
                asked.clear()
                with self.play() as program:
                    wait_until(is_blank, "a blank screen before the first call")
                    program.click("Auto Draw Every").see("Balls Called: 1")
                    self.assertEqual((asked, is_blank()), ([inhibit], False))
                wait_until(lambda: asked == [inhibit, end] and is_blank(), f"{end} in place of {asked}")
            bus.remove_filter(answering)
            Gio.bus_unown_name(name)

    # ---- Speech

    def test_speech(self):
        """What is missing or fails is told, at the start and at each call, until one finds a service that speaks."""
        box = "Desc: {}\nErr #: {}".format
        unknown = box(f"Try '{shutil.which('ls')} --help' for more information.", 1)
        lost = box("The speech service was lost.", 2)
        stuck = box("The speech service does not answer. The waiting calls were not spoken.", 3)
        self.service.kill()
        with self.play() as program:
            self.assertEqual(program.see(box("No speech service is installed.", 1)).send(SIGTERM).end(), 0)
        os.environ["SPEECHD_CMD"] = "ls"
        with self.play() as program:
            program.see(unknown).key("Return").become("Vellomir*")
            program.click("B 7").click("Make Voice Calls").click("B 8").see(unknown).key("Return")
            program.choose(*VOICES).see(unknown).key("Return").become("Vellomir", "Form1*")
            self.serve("silent")
            program.click("Listen").see("German (fake)").key("Return", "alt+F4").become("Vellomir*")
            for call, signal, text, mood in ("B 9", SIGKILL, lost, "silent"), ("B 10", SIGSTOP, stuck, "normal"):
                program.click(call)
                self.heard(call.replace("B", "Bee,"))
                self.service.send_signal(signal)
                program.see(text).key("Return").become("Vellomir*")
                self.serve(mood)
            program.click("N 33").see("Balls Called: 5")
            self.heard("En, 3 , 3")

    @unittest.skipUnless(shutil.which("spd-say"), "speech-dispatcher is not installed")
    def test_sound(self):
        """A call sounds as another client's texts, to the byte, where each has started the real service."""
        sound, config = self.home / "sound", self.home / "config" / "speech-dispatcher" / "speechd.conf"
        (self.home / ".asoundrc").write_text(f'pcm.!default {{ type file; slave.pcm null; file "{sound}" }}')
        config.parent.mkdir(parents=True)
        config.write_text('AudioOutputMethod "alsa"\nAddModule "espeak-ng" "sd_espeak-ng" "espeak-ng.conf"\n')
        del os.environ["SPEECHD_CMD"], os.environ["SPEECHD_ADDRESS"]
        for text in "En, 33", "En, 3 , 3":
            run("spd-say", "-w", "-P", "message", "-y", "English (America)", text)
        expected = sound.read_bytes()
        self.assertGreater(len(expected.replace(b"\0", b"")), 50_000, "silence")
        self.kill_service()
        self.addCleanup(self.kill_service)
        sound.write_bytes(b"")
        with self.play() as program:
            program.click("Make Voice Calls").click("N 33")
            wait_until(lambda: sound.read_bytes() == expected, "the same sound")

    def kill_service(self):
        os.kill(int((self.home / "speech-dispatcher/pid/speech-dispatcher.pid").read_text()), SIGKILL)


if __name__ == "__main__":
    for ignored in SIGINT, SIGHUP:  # as they are behind nohup, and in a script's background
        signal(ignored, SIG_DFL)
    manage_windows()
    unittest.main(verbosity=2)
