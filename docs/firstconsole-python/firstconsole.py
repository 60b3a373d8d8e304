#!/usr/bin/env python3
"""A console for one UPS of a server of Network UPS Tools: firstconsole.py UPS HOST [PORT]"""

import re
import sys

from PyQt5.QtCore import QPoint, QRect, QSize, QTimer
from PyQt5.QtGui import QColor, QPalette
from PyQt5.QtNetwork import QTcpSocket
from PyQt5.QtWidgets import QApplication, QWidget

from kivwidgets import MetroCirclerate, MetroShelter


class FirstConsole(QWidget):
    def __init__(self, ups, host, port=3493):
        super().__init__(windowTitle=ups, size=QSize(300, 184), palette=QPalette(QColor(29, 33, 37)))
        self.dials = {name: MetroCirclerate(self, label=label, radius=60, posLabel=QPoint(0, 5), pos=QPoint(x, 20))
                      for name, label, x in (("ups.load", "Load", 20), ("battery.charge", "Battery", 160))}
        self.inverter = MetroShelter(self, text="Inverter", geometry=QRect(20, 124, 260, 40))
        self.server = host, int(port)
        self.questions = "".join(f"GET VAR {ups} {name}\n" for name in (*self.dials, "ups.status")).encode()
        self.socket = QTcpSocket(self)
        self.socket.setReadBufferSize(4096)
        self.clock = QTimer(self, timeout=self.refresh)
        self.clock.start(1000)
        self.refresh()

    def refresh(self):
        answers = bytes(self.socket.readAll()) if self.socket.isOpen() else b""
        values = dict(re.findall(r'^VAR \S+ (\S+) "(.*)"$', answers.decode(errors="replace"), re.M))
        for name, dial in self.dials.items():
            number = re.fullmatch(r"[0-9]+([.][0-9]+)?", values.get(name, ""))
            dial.setFormat("%.0f%%" if number else "no data")
            dial.setValue(float(number[0]) if number else 0)
        flags = set(values.get("ups.status", "").split())
        alarm = 2 if flags & {"ALARM", "LB", "OVER", "RB"} else 1 if flags else 0
        element = 7 if "BYPASS" in flags else 6 if "OB" in flags else 5 if "OL" in flags else 0
        self.inverter.setState((alarm, element))
        if self.socket.state() == QTcpSocket.SocketState.UnconnectedState:
            self.socket.connectToHost(*self.server)
        elif self.socket.state() == QTcpSocket.SocketState.ConnectedState:
            self.socket.write(self.questions)


if __name__ == "__main__":
    application = QApplication(sys.argv)
    console = FirstConsole(*sys.argv[1:])
    console.show()
    sys.exit(application.exec())
