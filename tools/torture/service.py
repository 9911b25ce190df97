"""A management service that misbehaves in every way that a network knows."""

import json
import re
import socket
import struct
import threading
import time

SUCCEED = {"resultCode": "1000", "resultMessage": "succeed", "access_token": "t"}
FIRMWARE = "/fw/"
MOODS = ("hang", "refuse", "garbage", "half", "reset", "trickle", "flood", "failure", "away")


def firmware(path):
    """The archive that is to be had there, which tells it from any other."""
    return path.encode().ljust(200000, b".")


class Service:
    """Takes calls over while its mood is "normal", and keeps the card numbers of the events."""

    def __init__(self):
        self.mood = "normal"
        self.events = []
        self.calls = 0
        self.listener = None
        self.port = 0
        self.set_mood("normal")

    def set_mood(self, mood):
        self.mood = mood
        if mood == "away" and self.listener:
            # What waits in accept() would otherwise take one more.
            self.listener.shutdown(socket.SHUT_RDWR)
            self.listener.close()
            self.listener = None
        elif mood != "away" and not self.listener:
            self.listener = socket.create_server(("127.0.0.1", self.port), backlog=16)
            self.port = self.listener.getsockname()[1]
            threading.Thread(target=self._accept, args=(self.listener,), daemon=True).start()

    def close(self):
        self.set_mood("away")

    def _accept(self, listener):
        while True:
            try:
                connection, _ = listener.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=(connection,), daemon=True).start()

    def _serve(self, connection):
        with connection:
            try:
                while request := self._read(connection):
                    self.calls += 1
                    if not self._answer(connection, *request):
                        return
            except OSError:
                pass

    @staticmethod
    def _read(connection):
        data = b""
        while b"\r\n\r\n" not in data:
            more = connection.recv(65536)
            if not more:
                return None
            data += more
        head, body = data.split(b"\r\n\r\n", 1)
        length = re.search(rb"(?i)content-length: *([0-9]+)", head)
        while length and len(body) < int(length.group(1)):
            body += connection.recv(65536)
        return head.split(b" ", 2)[1].decode(), json.loads(body) if body else None

    def _answer(self, connection, path, body):
        """Whether another request may come."""
        if path.startswith(FIRMWARE):
            content = firmware(path)
            connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(content))
            for at in range(0, len(content), 20000):
                connection.sendall(content[at:at + 20000])
                time.sleep(0.1)
            return True
        mood = self.mood
        content = json.dumps(SUCCEED if mood != "failure" else
                             SUCCEED | {"resultCode": "9999"}).encode()
        answer = b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(content) + content
        if mood in ("normal", "failure"):
            connection.sendall(answer)
            if mood == "normal" and path.endswith("/user-inout-log.do"):
                self.events.append(body["inoutInfo"]["cardInfo"]["cardNo"])
            return True
        if mood == "hang":
            while self.mood == "hang" and connection.recv(1):
                pass
        elif mood == "refuse":
            connection.sendall(b"HTTP/1.1 503 No\r\nContent-Length: 0\r\n\r\n")
        elif mood == "garbage":
            connection.sendall(b"\x00\xff{\"resultCode\":\r\n\r\n" * 20)
        elif mood == "half":
            connection.sendall(answer[:len(answer) // 2])
        elif mood == "reset":
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        elif mood == "trickle":
            for byte in answer[:-1]:
                connection.sendall(bytes([byte]))
                time.sleep(0.2)
        elif mood == "flood":
            connection.sendall(b"HTTP/1.1 200 OK\r\n\r\n")
            while self.mood == "flood":
                connection.sendall(b"{" * 65536)
        return False
