#!/usr/bin/env python3
"""Publishes UPSes for a Prometheus server: upsexporter.py PORT DIRECTORY

A request for /ups_metrics?ups=NAME answers with what the file NAME in DIRECTORY says, a word a line:
"flags OL CHRG", "load 42", "load NaN", or "error" for HTTP 500. Without a file the UPS is on line.
"""
import http.server
import os
import sys
import urllib.parse

FLAGS = "OL OB LB HB RB CHRG DISCHRG BYPASS CAL OFF OVER TRIM BOOST FSD SD".split()
PREFIX = "network_ups_tools_"


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        address = urllib.parse.urlparse(self.path)
        ups = urllib.parse.parse_qs(address.query).get("ups", [""])[0]
        says = {"flags": "OL", "load": "25", "charge": "97", "runtime": "1200"}
        path = os.path.join(sys.argv[2], os.path.basename(ups))
        if os.path.exists(path):
            with open(path) as file:
                says.update(line.strip().partition(" ")[::2] for line in file if line.strip())
        if address.path != "/ups_metrics" or "error" in says:
            self.send_error(500)
            return
        flags = says["flags"].split()
        lines = ['%sdevice_info{mfr="Test",model="Exporter",type="ups"} 1' % PREFIX]
        lines += ["%sups_load %s" % (PREFIX, says["load"]),
                  "%sbattery_charge %s" % (PREFIX, says["charge"]),
                  "%sbattery_runtime %s" % (PREFIX, says["runtime"]),
                  "%sinput_voltage 230.1" % PREFIX]
        lines += ['%sups_status{flag="%s"} %d' % (PREFIX, flag, flag in flags)
                  for flag in dict.fromkeys(FLAGS + flags)]
        body = ("\n".join(lines) + "\n").encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/plain; version=0.0.4")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    request_queue_size = 512
    daemon_threads = True


Server(("127.0.0.1", int(sys.argv[1])), Handler).serve_forever()
