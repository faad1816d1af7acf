#!/usr/bin/env python3
"""A speech-dispatcher without speech: fake_speechd.py SOCKET MOOD... Prints "listening", then every line that it hears.
Each client meets the next of the moods, or else the last one. MOOD is what becomes of a text: normal (begun and ended),
cancelled (even before its own answer), refused, silent (taken, then nothing), dropped (with the connection); or there
are novoices, or it is mute."""

import contextlib
import itertools
import socketserver
import sys

VOICES = ["German\tde\tnone", "Bass++\tde\tnone", "English (America)\ten-US\tnone",
          "English (America)+Annie\ten-US\tAnnie", "French (France)\tfr-FR\tnone"]
ANSWERS = {"LIST OUTPUT_MODULES": (250, "dummy", "other", "fake"), "LIST SYNTHESIS_VOICES": (249, *VOICES),
           "GET OUTPUT_MODULE": (251, "fake"), "GET RATE": (251, "0"), "GET LANGUAGE": (251, "en-US"),
           "HISTORY GET": (245, "1"), "SPEAK": (230,)}
REFUSALS = {"refused": {"SPEAK": (402,)}, "novoices": {"LIST SYNTHESIS_VOICES": (304,)}}
AFTER_TEXT = {"cancelled": (701, 703, 225), "silent": (225,), "dropped": ()}
path, *moods = sys.argv[1:]
numbers = itertools.count(1)


class Client(socketserver.StreamRequestHandler):
    def answer(self, code, *lines):
        with contextlib.suppress(OSError):  # The client may be gone, and still be heard.
            self.wfile.write("".join(f"{code}-{line}\r\n" for line in lines).encode() + b"%d OK\r\n" % code)

    def heard(self):
        line = self.rfile.readline().decode().removesuffix("\r\n")
        print(line, end="\n" if line else "", flush=True)
        return line

    def handle(self):
        mood = moods.pop(0) if moods[1:] else moods[0]
        answers = ANSWERS | REFUSALS.get(mood, {})
        while command := self.heard():
            if mood != "mute":
                self.answer(*answers.get(" ".join(command.split()[:2]), (200,)))
            if command == "SPEAK" and mood != "refused":
                while self.heard() not in (".", ""):
                    pass
                number = next(numbers)
                for code in AFTER_TEXT.get(mood, (225, 701, 702)):
                    self.answer(code, number, 1)
                if mood == "dropped":
                    break


with socketserver.ThreadingUnixStreamServer(path, Client) as service:
    service.handle_error = lambda *_: None  # The client is gone.
    print("listening", flush=True)
    service.serve_forever()
