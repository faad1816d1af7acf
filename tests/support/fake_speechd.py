#!/usr/bin/python3
"""A speech-dispatcher without speech: fake_speechd.py SOCKET MOOD. Prints "listening", then every line that it hears.
It begins and ends each text; with the MOOD silent it only takes it. With a number it does by chance all that a service
and a socket may do; then it prints of each text that it ends its words and all settings, too, "late" when it will not
end one, and "mute" when it stops to answer."""

import os
import random
import re
import socketserver
import sys

VOICES = ["German\tde\tnone", "Bass++\tde\tnone", "English (America)\ten-US\tnone",
          "English (America)+Annie\ten-US\tAnnie", "French (France)\tfr-FR\tnone"]
ANSWERS = {"LIST OUTPUT_MODULES": (250, "dummy", "other", "broken", "fake"), "LIST SYNTHESIS_VOICES": (249, *VOICES),
           "GET OUTPUT_MODULE": (251, "fake"), "GET RATE": (251, "0"), "GET LANGUAGE": (251, "en-US"),
           "HISTORY GET": (245, "1"), "SPEAK": (230,)}  # fmt: skip
path, mood = sys.argv[1:]


def message(code, *lines):
    return "".join(f"{code}-{line}\r\n" for line in lines).encode() + b"%d OK\r\n" % code


class Client(socketserver.StreamRequestHandler):
    chance = random.Random(mood) if mood.isdigit() else None
    has_spoken = False  # Until then all goes well.

    def handle(self):
        settings = {"OUTPUT_MODULE": "fake"}
        while True:
            command = self.hear()
            if command.startswith("SET SELF "):
                name, value = command.split(" ", 3)[2:]
                settings |= {name: value} | ({"SYNTHESIS_VOICE": "None"} if name == "OUTPUT_MODULE" else {})
            answer = message(*ANSWERS.get(" ".join(command.split()[:2]), (200,)))
            if self.chance and command.startswith("LIST SYN") and settings["OUTPUT_MODULE"] == "broken":
                answer = message(304)
            elif self.happens() and not command.startswith("LIST"):
                self.send(message(402))
                return
            self.send(answer)
            if command == "SPEAK":
                text = "/".join(iter(self.hear, "."))
                by = re.sub(r"NAME \w+", "NAME ", ", ".join(map(" ".join, sorted(settings.items()))))
                self.send(b"".join(message(event, 1, 1) for event in self.events()), f"{text} by {by}")

    def hear(self):
        if not (line := self.rfile.readline().decode()):
            raise ConnectionError
        print(line, end="", flush=True)
        return line.rstrip("\r\n")

    def happens(self, probability=0.02):
        return Client.has_spoken and self.chance and self.chance.random() < probability

    def send(self, data, report=None):
        """By chance in pieces, or not all of it."""
        is_last = self.happens()
        end = self.chance.randrange(len(data)) if is_last else len(data)
        if report and re.search(rb"^70[23] OK\r\n", data[:end], re.MULTILINE):
            print(report, flush=True)
            Client.has_spoken = True
        start = 0
        while start < end:
            piece = data[start : self.chance.randint(start + 1, end) if self.chance else end]
            self.wfile.write(piece)
            start += len(piece)
            os.sched_yield()
        if is_last and self.happens(0.3):
            print("mute", flush=True)
            self.rfile.read()
        if is_last:
            raise ConnectionError

    def events(self):
        if not self.chance:
            return [225] if mood == "silent" else [225, 701, 702]
        events = [701, *self.chance.choices([700, 704, 705], k=self.chance.randrange(3)), 702]
        if self.happens(0.3):  # cancelled at any time
            events[self.chance.randrange(len(events)) :] = [703]
        events.insert(self.chance.randrange(len(events) + 1), 225)
        if self.happens(0.05):
            events = [event for event in events if event < 702]
            self.chance = None
            print("late", flush=True)
        return events


with socketserver.ThreadingUnixStreamServer(path, Client) as service:
    service.handle_error = lambda *_: None  # The client is gone.
    print("listening", flush=True)
    service.serve_forever()
