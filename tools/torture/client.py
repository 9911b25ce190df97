"""The client that orders users, and what it may rely on."""

import base64
import http.client
import json
import random
import socket
import threading
import time

API = "/cloud-service/rest-api/"
SUCCEED = "1000"


def post(port, route, body, patience=10):
    """The result code of the answer; None when there was none, and the order may count or not."""
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=patience)
    try:
        connection.request("POST", API + route, json.dumps(body).encode())
        answer = connection.getresponse()
        content = answer.read()
        return json.loads(content)["resultCode"] if answer.status == 200 else str(answer.status)
    except (OSError, http.client.HTTPException):
        return None
    finally:
        connection.close()


class Order:
    """One that has been sent: what, and what was answered."""

    def __init__(self, number, kind, card, name):
        self.number, self.key, self.answer = number, (kind, card, name), None

    def taken(self):
        return self.answer == SUCCEED

    def possible(self):
        """It has been carried out or not, and nobody can tell."""
        return self.answer is None


class Client(threading.Thread):
    """Orders users one after the other, never the same thing twice: adds them, changes them, and
    deletes them. All cards begin with its own sign, so that nobody else orders the same ones."""

    def __init__(self, sign, port, seed, pause=0.05):
        super().__init__(daemon=True)
        self.sign, self.port, self.pause = sign, port, pause
        self.random = random.Random(seed)
        self.orders = []
        self.cards = []
        self.quiet = threading.Event()  # nothing is under way
        self.allowed = threading.Event()
        self.stopped = False
        self.patience = 10

    def run(self):
        while not self.stopped:
            if not self.allowed.is_set():
                self.quiet.set()
                self.allowed.wait(0.1)
                continue
            self.quiet.clear()
            if self.listening():
                self.order()
            time.sleep(self.random.uniform(0, 2 * self.pause))
        self.quiet.set()

    def listening(self):
        # Nothing is ordered where nobody listens, or the orders would be used up.
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", self.port)) == 0

    def go(self):
        self.quiet.clear()
        self.allowed.set()

    def hold(self):
        """Waits until the last answer has come, or will not come any more."""
        self.allowed.clear()
        self.quiet.wait()

    def stop(self):
        self.stopped = True
        self.join()

    def order(self):
        number = len(self.orders)
        choice = self.random.random()
        if choice < 0.5 or not self.cards:
            kind, card = "add", f"{self.sign}{number:06d}"
            self.cards.append(card)
        elif choice < 0.7:
            kind, card = "add", self.random.choice(self.cards)
        else:
            kind, card = "del", self.cards.pop(self.random.randrange(len(self.cards)))
        order = Order(number, kind, card, f"{self.sign} {number}" if kind == "add" else "")
        self.orders.append(order)
        info = {"cardInfo": {"cardNo": card}}
        if kind == "add":
            picture = self.random.randbytes(self.random.choice((10, 1000, 100000)))
            info["user"] = {"name": order.key[2]}
            info["faceVisible"] = {"visImg": base64.b64encode(picture).decode()}
        route = "user-data-send.do" if kind == "add" else "user-data-del.do"
        order.answer = post(self.port, route, {"userInfo": info}, self.patience)

    def outcomes(self):
        """By card: the names that the user may have at the end, None for no such user."""
        outcomes = {}
        for order in self.orders:
            kind, card, name = order.key
            effect = name if kind == "add" else None
            if order.taken():
                outcomes[card] = {effect}
            elif order.possible():
                outcomes.setdefault(card, {None}).add(effect)
            else:
                outcomes.setdefault(card, {None})
        return outcomes
