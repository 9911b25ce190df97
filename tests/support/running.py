"""Runs the terminal and what it talks to, in a device root of the test's own."""

import os
import pathlib
import shutil
import socket
import subprocess
import tempfile
import time
import unittest


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def wait_for(what, condition, seconds=20):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        result = condition()
        if result:
            return result
        time.sleep(0.05)
    raise AssertionError("waited in vain for " + what)


class Running(unittest.TestCase):
    """A device root, and programs that are ended with the test."""

    binaries = staged = None  # folders, set by who runs the tests

    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.root)
        for folder in ("mnt/data/Images", "mnt/data/input", "mnt/usb", "usr/img", "usr/lib/fonts"):
            (self.root / folder).mkdir(parents=True)
        (self.root / "zel1").symlink_to(self.staged / "zel1")
        self.control, self.link, self.port = free_port(), free_port(), free_port()
        self.environment = {
            **os.environ,
            "ZEL_ROOT": str(self.root),
            "ZEL_LINK_PORT": str(self.link),
            "ZEL_REST_PORT": str(self.port),
            "XDG_RUNTIME_DIR": str(self.root),
        }

    def start(self, program, *arguments, **environment):
        """Starts a program of the build, or one with a path of its own."""
        program = self.binaries / program
        with open(self.root / program.name, "wb") as output:
            process = subprocess.Popen(
                [program, *map(str, arguments)], env={**self.environment, **environment},
                stdin=subprocess.DEVNULL, stdout=output, stderr=output)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        return process

    def said(self, program):
        """What a program has printed so far."""
        return (self.root / program).read_text("utf-8")

    def start_controller(self):
        controller = self.start("zel-controller-sim", "--control", self.control)
        wait_for("the controller", lambda: self.listens(self.control))
        return controller

    def listens(self, port):
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", port)) == 0

    def settings(self, *lines):
        self.tell("\n".join("settings " + line for line in lines))

    def tell(self, words):
        with socket.create_connection(("127.0.0.1", self.control)) as connection:
            connection.sendall(words.encode() + b"\n")
            connection.shutdown(socket.SHUT_WR)
            answer = b"".join(iter(lambda: connection.recv(4096), b"")).decode()
        assert "error" not in answer, (words, answer)
