#!/usr/bin/env python3
"""A speech-dispatcher without speech: fake_speechd.py SOCKET MOOD

Listens on the unix socket SOCKET, prints "listening", then every line that a client sends. MOOD says what
becomes of a text:
  normal      begun and ended              early     both reported before the text's own answer
  cancelled   cut off by another program   refused   not taken
  silent      taken, then never a word of it, though other commands are answered
  dropped     the connection is closed     stuck     from there on nothing is answered or read
  novoices    there are no voices to begin with
  mute        connections are taken and nothing is ever answered
"""
import socket
import sys
import threading

VOICES = ["German\tde\tnone", "English (America)\ten-US\tnone", "English (America)+Annie\ten-US\tAnnie",
          "French (France)\tfr-FR\tnone"]
path, mood = sys.argv[1:]
numbers = iter(range(1, 1_000_000))


class Client(threading.Thread):
    def __init__(self, connection):
        super().__init__(daemon=True)
        self.connection = connection
        self.lines = connection.makefile("r", encoding="utf-8", newline="\r\n")

    def answer(self, code, text, *lines):
        message = [f"{code}-{line}" for line in lines] + [f"{code} {text}"]
        try:
            self.connection.sendall("".join(line + "\r\n" for line in message).encode())
        except OSError:
            pass  # The client is gone, but what it said before can still be read.

    def read(self):
        line = self.lines.readline().removesuffix("\r\n")
        if line:
            print(line, flush=True)
        return line

    def run(self):
        if mood == "mute":
            threading.Event().wait()
        while command := self.read().upper():
            if command == "SPEAK" and mood == "refused":
                self.answer(402, "ERR NOT NOW")
            elif command == "SPEAK":
                self.answer(230, "OK RECEIVING DATA")
                self.take_text()
            elif command == "LIST OUTPUT_MODULES":
                self.answer(250, "OK MODULE LIST SENT", "dummy", "fake")
            elif command.startswith("LIST SYNTHESIS_VOICES"):
                self.answer(249, "OK VOICE LIST SENT", *([] if mood == "novoices" else VOICES))
            elif command.startswith("GET"):
                value = {"GET OUTPUT_MODULE": "fake", "GET LANGUAGE": "en-US"}.get(command, "0")
                self.answer(251, "OK GET RETURNED", value)
            else:
                self.answer(200, "OK")

    def take_text(self):
        while self.read() not in (".", ""):
            pass
        if mood == "dropped":
            self.connection.shutdown(socket.SHUT_RDWR)
        if mood == "stuck":
            threading.Event().wait()
        number = next(numbers)
        if mood != "early":
            self.answer(225, "OK MESSAGE QUEUED", number)
        if mood != "silent":
            self.answer(701, "BEGIN", number, 1)
            self.answer(*((703, "CANCELED") if mood == "cancelled" else (702, "END")), number, 1)
        if mood == "early":
            self.answer(225, "OK MESSAGE QUEUED", number)


with socket.socket(socket.AF_UNIX) as listener:
    listener.bind(path)
    listener.listen()
    print("listening", flush=True)
    while True:
        Client(listener.accept()[0]).start()
