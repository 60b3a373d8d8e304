#!/usr/bin/env python3
"""Plays the driver of one or more UPSes for a real upsd: upsdriver.py STATEDIR NAME...

Each UPS has commands that succeed, fail, are invalid, unknown or never answered, and variables with
choices, ranges and lengths. What upsd hands on is appended to the file "handed" in STATEDIR.
"""
import os
import selectors
import shlex
import socket
import sys

UNKNOWN, INVALID, FAILED = 1, 2, 3
SILENT = object()

VARIABLES = {
    "ups.status": "OL", "ups.mfr": "Test", "ups.model": "Driver", "battery.charge": "100",
    "battery.runtime": "1200", "ups.load": "25", "input.voltage": "230", "output.voltage": "230",
    "ups.beeper.status": "enabled", "ups.id": "rack1", "ups.delay.shutdown": "20",
    "input.sensitivity": "medium", "ups.start.auto": "yes", "battery.charge.low": "20",
}
# What upsd is to know of the variables that can be written.
WRITABLE = [
    "SETFLAGS ups.id RW STRING", "SETAUX ups.id 8",
    "SETFLAGS ups.delay.shutdown RW NUMBER", "ADDRANGE ups.delay.shutdown 10 600",
    "SETFLAGS battery.charge.low RW NUMBER",
    "SETFLAGS input.sensitivity RW", 'ADDENUM input.sensitivity "low"',
    'ADDENUM input.sensitivity "medium"', 'ADDENUM input.sensitivity "high"',
    "SETFLAGS ups.start.auto RW", 'ADDENUM ups.start.auto "yes"', 'ADDENUM ups.start.auto "no"',
]
# A change of a variable, a code, or no answer at all.
COMMANDS = {
    "beeper.disable": ("ups.beeper.status", "disabled"),
    "beeper.enable": ("ups.beeper.status", "enabled"),
    "load.off": ("ups.status", "OFF"),
    "load.on": ("ups.status", "OL"),
    "bypass.start": ("ups.status", "OL BYPASS"),
    "bypass.stop": ("ups.status", "OL"),
    "test.battery.start": ("ups.status", "OB DISCHRG"),
    "test.battery.stop": ("ups.status", "OL"),
    "test.failure.start": FAILED,
    "shutdown.return": INVALID,
    "reset.watchdog": UNKNOWN,
    "calibrate.start": SILENT,
}


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


class Ups:
    def __init__(self, state, name):
        self.name = name
        self.variables = dict(VARIABLES)
        self.log = os.path.join(state, "handed")
        self.server = socket.socket(socket.AF_UNIX)
        self.server.bind(os.path.join(state, "dummy-ups-" + name))
        self.server.listen(5)
        self.clients = {}

    def change(self, variable, value):
        self.variables[variable] = value
        for client in self.clients:
            client.sendall(("SETINFO %s %s\n" % (variable, quoted(value))).encode())

    def everything(self):
        lines = ["SETINFO %s %s" % (name, quoted(value)) for name, value in self.variables.items()]
        return lines + WRITABLE + ["ADDCMD " + name for name in COMMANDS] + ["DATAOK", "DUMPDONE"]

    def take(self, client, words):
        def say(*lines):
            client.sendall(("\n".join(lines) + "\n").encode())

        if words[0] == "PING":
            say("PONG")
        elif words[0] == "DUMPALL":
            say(*self.everything())
        elif words[0] in ("INSTCMD", "SET"):
            with open(self.log, "a") as log:
                log.write("%s %s\n" % (self.name, " ".join(words)))
            result = 0
            if words[0] == "SET":
                self.change(words[1], words[2])
            else:
                result = COMMANDS.get(words[1], UNKNOWN)
                if isinstance(result, tuple):
                    self.change(*result)
                    result = 0
            if "TRACKING" in words and result is not SILENT:
                say("TRACKING %s %d" % (words[words.index("TRACKING") + 1], result))


def main():
    selector = selectors.DefaultSelector()
    for name in sys.argv[2:]:
        ups = Ups(sys.argv[1], name)
        selector.register(ups.server, selectors.EVENT_READ, ups)
    while True:
        for key, _ in selector.select():
            ups, source = key.data, key.fileobj
            if source is ups.server:
                client, _ = source.accept()
                ups.clients[client] = b""
                selector.register(client, selectors.EVENT_READ, ups)
                continue
            try:
                data = source.recv(65536)
            except OSError:
                data = b""
            if not data:
                selector.unregister(source)
                del ups.clients[source]
                source.close()
                continue
            *lines, ups.clients[source] = (ups.clients[source] + data).split(b"\n")
            for line in lines:
                words = shlex.split(line.decode())
                if words:
                    ups.take(source, words)


main()
