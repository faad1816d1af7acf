#!/usr/bin/env python3
"""A speech-dispatcher without speech: fake_speechd.py SOCKET MOOD. Prints "listening", then every line that it hears.
It begins and ends each text; with the MOOD silent it only takes it. With a number it does by chance all that a service
and a socket may do; then it prints of each text that it ends its words and all settings, and "mute" when
it stops to answer."""

import contextlib
import fcntl
import itertools
import os
import random
import re
import socketserver
import sys
import termios

VOICES = ["German\tde\tnone", "Bass++\tde\tnone", "English (America)\ten-US\tnone",
          "English (America)+Annie\ten-US\tAnnie", "French (France)\tfr-FR\tnone"]
ANSWERS = {"LIST OUTPUT_MODULES": (250, "dummy", "other", "fake"), "LIST SYNTHESIS_VOICES": (249, *VOICES),
           "GET OUTPUT_MODULE": (251, "fake"), "GET RATE": (251, "0"), "GET LANGUAGE": (251, "en-US"),
           "HISTORY GET": (245, "1"), "SPEAK": (230,)}
path, mood = sys.argv[1:]
is_random = mood.isdigit()
clients, texts = itertools.count(1), itertools.count(1)


def message(code, *lines):
    return "".join(f"{code}-{line}\r\n" for line in lines).encode() + b"%d OK\r\n" % code


class Client(socketserver.StreamRequestHandler):
    def handle(self):
        self.chance = random.Random(f"{mood} {next(clients)}")
        self.set = {"OUTPUT_MODULE": "fake"}
        for data in self.answers():
            is_last = self.happens(0.02)
            sent = data[: self.chance.randrange(len(data))] if is_last else data
            if is_random and re.search(rb"^70[23] OK\r\n", sent, re.MULTILINE):
                settings = ", ".join(map(" ".join, sorted(self.set.items())))
                print(self.text, "by", re.sub(r"NAME \w+", "NAME ", settings), flush=True)
            self.send(sent)
            if is_last and self.happens(0.3):
                print("mute", flush=True)
                self.rfile.read()
            if is_last:
                break

    def happens(self, probability):
        return is_random and self.chance.random() < probability

    def heard(self):
        line = self.rfile.readline().decode().removesuffix("\r\n")
        if line and not is_random:
            print(line, flush=True)
        return line

    def send(self, data):
        """By chance in pieces, each of which the client has read before the next one comes."""
        with contextlib.suppress(OSError):  # The client may be gone, and still be heard.
            while data:
                size = self.chance.randint(1, len(data)) if is_random else len(data)
                self.wfile.write(data[:size])
                data = data[size:]
                while is_random and any(fcntl.ioctl(self.connection, termios.TIOCOUTQ, bytes(4))):
                    os.sched_yield()

    def answers(self):
        refusals = {"LIST SYNTHESIS_VOICES": (304,)} if self.happens(0.1) else {}
        while command := self.heard():
            if command.startswith("SET SELF "):
                name, value = command.split(" ", 3)[2:]
                self.set |= {name: value} | ({"SYNTHESIS_VOICE": "None"} if name == "OUTPUT_MODULE" else {})
            if not command.startswith("LIST") and self.happens(0.02):
                yield message(402)
                self.rfile.read()
                return
            yield message(*(ANSWERS | refusals).get(" ".join(command.split()[:2]), (200,)))
            if command == "SPEAK":
                self.text = "/".join(iter(self.heard, "."))
                number = next(texts)
                yield b"".join(message(event, number, 1) for event in self.events())

    def events(self):
        if not is_random:
            return [225] if mood == "silent" else [225, 701, 702]
        events = [701, *self.chance.choices([700, 704, 705], k=self.chance.randrange(3)), 702]
        if self.happens(0.3):  # cancelled at any time
            events[self.chance.randrange(len(events)) :] = [703]
        events.insert(self.chance.randrange(len(events) + 1), 225)
        return events


with socketserver.ThreadingUnixStreamServer(path, Client) as service:
    service.handle_error = lambda *_: None  # The client is gone.
    print("listening", flush=True)
    service.serve_forever()
