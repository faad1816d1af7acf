#!/usr/bin/python3
"""A speech-dispatcher without speech: fake_speechd.py SOCKET MOOD. Prints "listening", then every line that it hears.
It begins and ends each text; with the MOOD silent it ends none. With a number it does by chance all that a service and
a socket may do. Then it also prints, in order, the words and all settings of each text that ends, and what the caller
is to be told where it does not: OK, as each of its answers is called, or SILENT; and "mute" when it stops to answer."""

import random
import re
import socketserver
import sys

VOICES = ["German\tde\tnone", "Bass++\tde\tnone", "English (America)\ten-US\tnone",
          "English (America)+Annie\ten-US\tAnnie", "French (France)\tfr-FR\tnone"]
ANSWERS = {"LIST OUTPUT_MODULES": (250, "dummy", "other", "broken", "fake"), "LIST SYNTHESIS_VOICES": (249, *VOICES),
           "GET OUTPUT_MODULE": (251, "fake"), "GET RATE": (251, "0"), "GET LANGUAGE": (251, "en-US"),
           "HISTORY GET": (245, "1"), "SPEAK": (230,)}  # fmt: skip
ENDINGS = [[225, 701, 702], [701, 225, 700, 702], [701, 704, 705, 702, 225], [701, 703, 225], [703, 225], [225, 703]]
LATE = [[225], [225, 701], [701, 225]]
SILENT = "The speech service does not answer. The waiting calls were not spoken."
path, mood = sys.argv[1:]
random.seed(mood)


def happens(probability):
    return mood.isdigit() and random.random() < probability


class Client(socketserver.StreamRequestHandler):
    def handle(self):
        settings = {"OUTPUT_MODULE": "fake"}
        commands = self.hear()
        for command in commands:
            if command.startswith("SET SELF "):
                name, value = command.split(" ", 3)[2:]
                settings |= {name: value} | ({"SYNTHESIS_VOICE": "None"} if name == "OUTPUT_MODULE" else {})
            if command.startswith("S") and happens(0.005):
                self.send(402, report="OK")
                return
            is_broken = command == "LIST SYNTHESIS_VOICES" and settings["OUTPUT_MODULE"] == "broken"
            self.send(*(304,) if is_broken else ANSWERS.get(" ".join(command.split()[:2]), (200,)))
            if command != "SPEAK":
                continue
            text = "/".join(iter(commands.__next__, "."))
            by = re.sub(r"NAME \w+", "NAME ", ", ".join(map(" ".join, sorted(settings.items()))))
            is_late = mood == "silent" or happens(0.03)
            for event in random.choice(LATE if is_late else ENDINGS if mood.isdigit() else ENDINGS[:1]):
                self.send(event, 1, 1, report=f"{text} by {by}" if event in (702, 703) else None)
            if is_late:
                print(SILENT, flush=True)
                for _ in commands:
                    self.wfile.write(b"200 OK\r\n")

    def hear(self):
        for line in self.rfile:
            print(line.decode(), end="", flush=True)
            yield line.decode().rstrip("\r\n")

    def send(self, code, *lines, report=None):
        """In pieces, and by chance not all of it. Reports what goes out whole."""
        message = "".join(f"{code}-{line}\r\n" for line in lines).encode() + b"%d OK\r\n" % code
        end = random.randrange(len(message)) if happens(0.01) else len(message)
        if report and end == len(message):
            print(report, flush=True)
        step = random.randint(1, len(message))
        for start in range(0, end, step):
            self.wfile.write(message[start : min(start + step, end)])
        if end < len(message):
            if happens(0.3):
                print(SILENT, "mute", sep="\n", flush=True)
                self.rfile.read()
            sys.exit()


with socketserver.ThreadingUnixStreamServer(path, Client) as service:
    service.handle_error = lambda *_: None  # The client is gone.
    print("listening", flush=True)
    service.serve_forever()
