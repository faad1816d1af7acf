#!/usr/bin/env python3
"""A speech-dispatcher without speech: fake_speechd.py SOCKET MOOD. Prints "listening", then every line that it hears.
MOOD is what becomes of a text: normal (begun and ended), early (both before its own answer), cancelled, refused,
silent (taken, then nothing), dropped (the connection), stuck (nothing is answered any more); or novoices, or mute."""

import contextlib
import socket
import socketserver
import sys
import threading

VOICES = ["German\tde\tnone", "Bass++\tde\tnone", "English (America)\ten-US\tnone", "English (America)+Annie\ten-US\tAnnie",
          "French (France)\tfr-FR\tnone"]  # fmt: skip
ANSWERS = {"LIST OUTPUT_MODULES": (250, "dummy", "other", "fake"), "GET OUTPUT_MODULE": (251, "fake"), "GET RATE": (251, "0"),
           "GET LANGUAGE": (251, "en-US"), "HISTORY GET CLIENT_ID": (245, "1")}
path, mood = sys.argv[1:]
numbers = iter(range(1, 1_000_000))


class Client(socketserver.StreamRequestHandler):
    def answer(self, code, *lines):
        with contextlib.suppress(OSError):  # The client may be gone, and still be heard.
            self.wfile.write("".join(f"{code}-{line}\r\n" for line in lines).encode() + f"{code} OK\r\n".encode())

    def heard(self):
        line = self.rfile.readline().decode().removesuffix("\r\n")
        print(line or "", end="\n" if line else "", flush=True)
        return line

    def handle(self):
        if mood == "mute":
            threading.Event().wait()
        while command := self.heard().upper():
            if command == "SPEAK" and mood == "refused":
                self.answer(402)
            elif command == "SPEAK":
                self.answer(230)
                self.take_text()
            elif command.startswith("LIST SYNTHESIS_VOICES"):
                self.answer(249, *([] if mood == "novoices" else VOICES))
            else:
                self.answer(*ANSWERS.get(command, (200,)))

    def take_text(self):
        while self.heard() not in (".", ""):
            pass
        if mood == "dropped":
            self.connection.shutdown(socket.SHUT_RDWR)
        if mood in ("dropped", "stuck"):
            threading.Event().wait()
        number = next(numbers)
        answers = [(225, number), (701, number, 1), (703 if mood == "cancelled" else 702, number, 1)]
        for answer in answers[: 1 if mood == "silent" else 3] if mood != "early" else answers[1:] + answers[:1]:
            self.answer(*answer)


socketserver.ThreadingUnixStreamServer.daemon_threads = True
with socketserver.ThreadingUnixStreamServer(path, Client) as service:
    service.handle_error = lambda *_: None  # The client is gone.
    print("listening", flush=True)
    service.serve_forever()
