"""The console of the documentation, on a server of Network UPS Tools."""

import os
import pathlib
import socket
import subprocess
import tempfile
import time
import types
import unittest

QT = os.environ.get("KIVWIDGETS_QT", "5")
PROGRAM = pathlib.Path(__file__).resolve().parent.parent.parent / "docs/firstconsole-python/firstconsole.py"
PATIENCE = 20.0  # seconds


def load_example():
    """The program, for the PyQt that the bindings under test are for."""
    module = types.ModuleType("firstconsole")
    exec(compile(PROGRAM.read_text().replace("PyQt5", f"PyQt{QT}"), PROGRAM, "exec"), module.__dict__)
    return module


def shown(console):
    load, battery = console.dials["ups.load"], console.dials["battery.charge"]
    return (console.inverter.getElementState(), load.getValue(), load.getFormatStr(),
            battery.getValue(), battery.getFormatStr())


class Server:
    """upsd with a dummy UPS "demo" on a free port of the loopback."""

    def __init__(self):
        self.directory = tempfile.TemporaryDirectory(prefix="kivnut-", dir="/tmp")
        home = pathlib.Path(self.directory.name)
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self.port = probe.getsockname()[1]
        for name, text in (("ups.conf", "[demo]\n driver = dummy-ups\n port = demo.dev\n mode = dummy-once\n"),
                           ("upsd.conf", f"LISTEN 127.0.0.1 {self.port}\n"), ("upsd.users", "")):
            (home / name).write_text(text)
            (home / name).chmod(0o600)
        self.home = home
        self.written = 0
        self.environment = {**os.environ, "NUT_CONFPATH": str(home), "NUT_STATEPATH": str(home),
                            "NUT_ALTPIDPATH": str(home)}
        self.as_user = ["-u", "root"] if os.geteuid() == 0 else []
        self.processes = []

    def write(self, **variables):
        # The driver compares times in whole seconds.
        self.written = max(int(time.time()), self.written + 1)
        fresh = self.home / "demo.new"
        fresh.write_text("".join(f"{name.replace('_', '.')}: {value}\n" for name, value in variables.items()))
        os.utime(fresh, (self.written, self.written))
        fresh.rename(self.home / "demo.dev")

    def start(self):
        self.launch("/lib/nut/dummy-ups", "-a", "demo", "-F", "-i", "1")
        self.launch("/lib/nut/upsd", "-F")

    def launch(self, *command):
        with open(self.home / "log", "ab") as log:
            self.processes.append(subprocess.Popen([*command, *self.as_user], env=self.environment,
                                                   stdout=log, stderr=log))

    def stop(self):
        for process in self.processes:
            process.terminate()
            process.wait()
        self.processes = []


class FirstConsole(unittest.TestCase):
    def setUp(self):
        self.example = load_example()
        self.application = (self.example.QApplication.instance()
                            or self.example.QApplication(["firstconsole"]))
        self.server = Server()
        self.addCleanup(self.server.directory.cleanup)
        self.addCleanup(self.server.stop)

    def wait_for(self, reached):
        end = time.monotonic() + PATIENCE
        while not reached():
            self.assertLess(time.monotonic(), end, (self.server.home / "log").read_text())
            self.application.processEvents()
            time.sleep(0.01)

    def test_live(self):
        self.server.write(ups_load=42, battery_charge=87, ups_status="OL")
        self.server.start()
        console = self.example.FirstConsole("demo", "127.0.0.1", self.server.port)
        console.show()
        self.assertEqual(shown(console), ((0, 0), 0, "no data", 0, "no data"))
        self.wait_for(lambda: shown(console) == ((1, 5), 42, "%.0f%%", 87, "%.0f%%"))
        if "KIV_IMAGE" in os.environ:
            self.application.processEvents()
            self.assertTrue(console.grab().save(os.environ["KIV_IMAGE"]))

        self.server.write(ups_load="n/a", battery_charge=12, ups_status="OB LB")
        self.wait_for(lambda: shown(console) == ((2, 6), 0, "no data", 12, "%.0f%%"))

        self.server.stop()
        self.wait_for(lambda: shown(console) == ((0, 0), 0, "no data", 0, "no data"))
        self.server.start()
        self.wait_for(lambda: shown(console) == ((2, 6), 0, "no data", 12, "%.0f%%"))


if __name__ == "__main__":
    unittest.main()
