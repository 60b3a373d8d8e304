#!/usr/bin/env python3
"""A console for one UPS of a server of Network UPS Tools: firstconsole.py UPS HOST [PORT]"""

import sys

from PyQt5.QtCore import QTimer
from PyQt5.QtGui import QColor, QPalette
from PyQt5.QtNetwork import QTcpSocket
from PyQt5.QtWidgets import QApplication, QWidget

from kivwidgets import AeroLinebar, MetroCirclerate, MetroShelter


class FirstConsole(QWidget):
    def __init__(self, ups, host, port=3493):
        super().__init__()
        self.setWindowTitle(ups)
        self.setPalette(QPalette(QColor(29, 33, 37)))
        self.setFixedSize(430, 130)
        self.ups, self.host, self.port = ups, host, port

        self.load = MetroCirclerate(self)
        self.load.setLabel("Load")
        self.load.setRadius(60)
        self.load.setTickness(18)
        self.load.move(20, 20)

        self.battery = AeroLinebar(self)
        self.battery.setGeometry(160, 20, 250, 44)
        self.battery.setColor(QColor(0, 174, 240))
        self.battery.setColorText(QColor("white"))
        self.battery.setValueFormat("%.0f %%")
        self.battery.setValuePosition(AeroLinebar.CenterVal)

        self.inverter = MetroShelter(self)
        self.inverter.setGeometry(160, 74, 250, 40)
        self.inverter.setText("Inverter")

        self.socket = QTcpSocket(self)
        self.socket.setReadBufferSize(4096)
        self.socket.connected.connect(self.ask)
        self.socket.readyRead.connect(self.read)
        self.clock = QTimer(self)
        self.clock.timeout.connect(self.ask)
        self.clock.start(1000)
        self.answered = False
        self.ask()

    def ask(self):
        if not self.answered:
            self.inverter.setState((0, 0))
        self.answered = False
        if self.socket.state() == QTcpSocket.SocketState.UnconnectedState:
            self.socket.connectToHost(self.host, self.port)
        elif self.socket.state() == QTcpSocket.SocketState.ConnectedState:
            for variable in ("ups.load", "battery.charge", "ups.status"):
                self.socket.write(f"GET VAR {self.ups} {variable}\n".encode())

    def read(self):
        while self.socket.canReadLine():
            line = bytes(self.socket.readLine()).decode(errors="replace")
            words, value = line.split(), line.partition('"')[2].partition('"')[0]
            if words[:2] != ["VAR", self.ups] or len(words) < 4:
                continue
            try:
                self.show_variable(words[2], value)
            except ValueError:
                pass  # The server sends what is no number.

    def show_variable(self, variable, value):
        if variable == "ups.load":
            self.load.setValue(float(value))
        elif variable == "battery.charge":
            self.battery.setValue(float(value))
        elif variable == "ups.status":
            flags = set(value.split())
            alarm = 2 if flags & {"ALARM", "LB", "OVER", "RB"} else 1
            element = 7 if "BYPASS" in flags else 6 if "OB" in flags else 5 if "OL" in flags else 0
            self.inverter.setState((alarm, element))
            self.answered = True


def main():
    application = QApplication(sys.argv)
    ups, host, *port = sys.argv[1:]
    console = FirstConsole(ups, host, *map(int, port))
    console.show()
    return application.exec()


if __name__ == "__main__":
    sys.exit(main())
