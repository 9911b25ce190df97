#!/usr/bin/env python3
"""A management service in sixty lines: takes a terminal's reports, and opens the door to visitors.

usage: service.py [PORT [TERMINAL_PORT]]     (8090, 80)
"""

import http.server
import json
import sys
import threading
import urllib.request
import uuid

API = "/cloud-service/rest-api/"
TOKEN = str(uuid.uuid4())
PORT, TERMINAL_PORT = [int(number) for number in sys.argv[1:]] + [8090, 80][len(sys.argv) - 1:]


def order(terminal, route, body=b"{}"):
    with urllib.request.urlopen(f"http://{terminal}{API}{route}.do", body, timeout=10) as answer:
        print(f"{route}: {json.load(answer)['resultCode']}", flush=True)  # 1000: taken


def event(report, terminal):
    print("at the door:", report["inoutInfo"]["authTime"], report["inoutInfo"]["cardInfo"]["cardNo"], flush=True)


def visitor(report, terminal):
    threading.Thread(target=order, args=(terminal, "door-open")).start()  # it waits for its answer


class Service(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    REPORTS = {"connect": None, "connection-check": None, "user-inout-log": event, "user-enroll": None,
               "user-deleted": None, "visitor-call": visitor}

    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        name = self.path.removeprefix(API).removesuffix(".do")
        if name not in self.REPORTS:
            return self.send_error(404)
        print(f"{self.headers['reader_id']} {name}", flush=True)
        answer = {"resultCode": "1000", "resultMessage": "succeed"}
        if name == "connect":
            answer["access_token"] = TOKEN  # an empty or missing system_time leaves the clock alone
        elif self.headers["access_token"] != TOKEN:
            answer["resultCode"] = "9999"  # connected with another run of this service
        elif self.REPORTS[name]:
            self.REPORTS[name](json.loads(body), f"{self.client_address[0]}:{TERMINAL_PORT}")
        answer = json.dumps(answer).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(answer)))  # who only closes looks like a broken line
        self.end_headers()
        self.wfile.write(answer)

    def log_message(self, *_):
        pass


http.server.ThreadingHTTPServer(("", PORT), Service).serve_forever()
