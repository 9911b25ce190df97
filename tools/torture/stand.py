"""The stand that a terminal is tried on: a device root, simulated peers, clients, and the judge."""

import collections
import os
import pathlib
import re
import resource
import shutil
import signal
import socket
import sqlite3
import subprocess
import tempfile
import time

from client import Client
from relay import Relay

COMMAND = re.compile(r"[0-9]{15}_(add|del)_([A-Za-z0-9]{1,16})\Z")
NAME_LINE = 6  # of a command's ".info" file
# An order is kept until its connection has stood for so many seconds after it, and may be told again
# when that has ended before; a busy machine takes more to remove it.
PROMISE = 2
UNSETTLED = PROMISE + 6
PATIENCE = 60


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def until(condition, seconds=PATIENCE):
    deadline = time.monotonic() + seconds
    while not (result := condition()) and time.monotonic() < deadline:
        time.sleep(0.02)
    return result


class Stand:
    """One terminal with everything that it needs. Its folder goes when it ends."""

    def __init__(self, build, seed, settings=(), clients=2, prepare=None):
        self.build, self.losses, self.repetitions = build, [], 0
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="torture-"))
        for folder in ("mnt/data", "mnt/usb", "usr/img", "usr/lib/fonts"):
            (self.root / folder).mkdir(parents=True)
        if prepare:
            prepare(self.root)
        for folder in ("Images", "input", "user", "thumb"):
            (self.root / "mnt/data" / folder).mkdir(parents=True, exist_ok=True)
        (self.root / "zel1").symlink_to(build / "stage/zel1")
        self.images = self.root / "mnt/data/Images"
        self.log = open(self.root / "log", "wb")
        self.control, self.port, self.sim_port = free_port(), free_port(), free_port()
        self.environment = {
            **os.environ, "ZEL_ROOT": str(self.root), "ZEL_REST_PORT": str(self.port),
            "XDG_RUNTIME_DIR": str(self.root), "QT_LOGGING_RULES": "*.info=false",
            "LC_ALL": "C.UTF-8"}
        self.terminal, self.controller, self.limits = None, None, None
        self.moved_clock = False
        self.relay = Relay(self.sim_port)
        self.start_controller()
        self.tell("settings managerControl 1", "settings setup.operation 0", *settings)
        self.clients = [Client(sign, self.port, f"{seed}{sign}") for sign in "AB"[:clients]]
        for client in self.clients:
            client.start()

    # --- Programs ---------------------------------------------------------------------------

    def start(self, name, *arguments, environment):
        # The kernel ends it together with this program, even where that is killed. What it is to
        # have loaded must not be loaded on the way there.
        own = [f"{variable}={value}" for variable, value in environment.items()]
        return subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", "--", "env", *own, self.build / "bin" / name,
             *arguments], env=self.environment, stdin=subprocess.DEVNULL, stdout=self.log,
            stderr=self.log, preexec_fn=self.limits if name == "zel-terminal" else None)

    def start_controller(self):
        self.controller = self.start("zel-controller-sim", "--control", str(self.control),
                                     environment={"ZEL_LINK_PORT": str(self.sim_port)})
        assert until(lambda: self.listens(self.control)), "the controller does not start"

    def start_terminal(self):
        environment = {"ZEL_LINK_PORT": str(self.relay.port)}
        if self.moved_clock:
            environment |= {"LD_PRELOAD": str(self.build / "bin/zel-device-clock.so"),
                            "ZEL_DEVICE_CLOCK": str(self.root / "mnt/data/sim/clock")}
        self.terminal = self.start("zel-terminal", "-platform", "offscreen",
                                   environment=environment)

    def limit_descriptors(self, number):
        self.limits = lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (number, number))

    @staticmethod
    def listens(port):
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", port)) == 0

    def serves(self, seconds=PATIENCE):
        return until(lambda: self.listens(self.port), seconds)

    def tell(self, *words):
        """Has the controller carry words out; gives its answer."""
        with socket.create_connection(("127.0.0.1", self.control), timeout=PATIENCE) as connection:
            connection.sendall("".join(word + "\n" for word in words).encode())
            connection.shutdown(socket.SHUT_WR)
            return b"".join(iter(lambda: connection.recv(65536), b"")).decode()

    def answers(self, seconds=20):
        """Whether a question of the controller gets through to the terminal and back."""
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            before = self.relay.answers
            self.tell("unsent")
            if until(lambda: self.relay.answers > before, 1):
                return True
        return False

    def kill(self):
        self.terminal.kill()
        self.terminal.wait()
        until(lambda: self.relay.current() is None)

    def alive(self):
        return self.terminal.poll() is None

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.terminal.pid}/fd"))

    # --- Judgement --------------------------------------------------------------------------

    def loss(self, text):
        self.losses.append(text)

    def go(self):
        for client in self.clients:
            client.go()

    def hold(self):
        for client in self.clients:
            client.hold()

    def taken(self):
        """The orders that were answered with success."""
        return [order.key for client in self.clients for order in client.orders if order.taken()]

    def waiting(self, images=None):
        """The orders on the disk. A client's orders are known by what they say."""
        found = set()
        for folder in os.scandir(images or self.images):
            match = COMMAND.match(folder.name)
            if not match:
                continue
            kind, card = match.groups()
            name = ""
            if kind == "add":
                try:
                    info = pathlib.Path(folder.path, card + ".info").read_text("utf-8")
                    name = info.split("\n")[NAME_LINE]
                except (OSError, IndexError):
                    continue  # on its way out, or broken, which nobody may rely on
            found.add((kind, card, name))
        return found

    def check_kept(self):
        """Whatever was answered with success has been told, or lies on the disk."""
        # In this order, since they go on meanwhile.
        taken = self.taken()
        disk = self.waiting()
        told = {order for connection in self.relay.connections for order, _ in connection.told}
        for key in taken:
            if key not in told and key not in disk:
                self.loss(f"{key} was answered with success and is gone")

    def check_disk(self, taken, images, at):
        """Whatever had been answered with success at a time lies in a folder, unless it had been
        told so long before that it could be removed; half as long, since a busy machine passes on
        late what was sent in time."""
        disk = self.waiting(images)
        settled = {order for connection in self.relay.connections
                   for order, told in connection.told if told < at - PROMISE / 2}
        for key in taken:
            if key not in settled and key not in disk:
                self.loss(f"{key} was answered with success and is not on the disk")

    def check_told(self, settle=True):
        """Nothing comes twice over one connection, or overtakes what was ordered before it; and
        nothing comes again that had settled."""
        numbers = {order.key: (client.sign, order.number)
                   for client in self.clients for order in client.orders}
        settled, times = set(), collections.Counter()
        for connection in self.relay.connections:
            last = {}
            for key, _ in connection.told:
                sign, number = numbers[key]
                if number <= last.get(sign, -1):
                    self.loss(f"{key} comes behind a later one, or twice")
                last[sign] = number
                if key in settled and settle:
                    self.loss(f"{key} comes again")
                times[key] += 1
            end = connection.ended or time.monotonic()
            settled |= {key for key, at in connection.told if end - at > UNSETTLED}
        self.repetitions = sum(times.values()) - len(times)

    def drain(self):
        """Waits until nothing waits any more, with a terminal that nobody disturbs."""
        self.hold()
        if not self.alive():
            self.start_terminal()
        if not until(lambda: not self.waiting(), 300):
            self.loss(f"{len(self.waiting())} orders are left waiting")

    def check_store(self):
        """In the end the controller has each user as it was ordered last."""
        self.tell("users")  # behind all that was told before
        path = f"file:{self.root}/mnt/data/db_user2/DB_userT.bin?mode=ro"
        with sqlite3.connect(path, uri=True) as database:
            store = dict(database.execute("SELECT USER_ID, NAME FROM USER_T WHERE MARK<160"))
        for client in self.clients:
            for card, names in client.outcomes().items():
                if store.get(card) not in names:
                    self.loss(f"user {card} is {store.get(card)}, ordered was {names}")

    def finish(self, settle=True):
        """The last word on all orders."""
        self.drain()
        self.check_kept()
        self.check_told(settle)
        self.check_store()

    def orders(self):
        return sum(order.taken() for client in self.clients for order in client.orders)

    def refused(self):
        return sum(not order.taken() and not order.possible()
                   for client in self.clients for order in client.orders)

    def end(self):
        for client in self.clients:
            client.stop()
        self.relay.close()
        for program in (self.terminal, self.controller):
            if program and program.poll() is None:
                program.send_signal(signal.SIGCONT)
                program.kill()
                program.wait()
        self.log.close()
        if not self.losses:
            shutil.rmtree(self.root, ignore_errors=True)
