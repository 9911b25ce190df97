#!/usr/bin/env python3
"""Tries a terminal that tools/cross.sh has built for another architecture.

It has to find the simulated controller, show who comes to the door, answer on its HTTP port and end in
order. Then its start and its memory are held against those of a blank window with the same fonts,
which the emulator slows down just as much. The environment places the terminal (ZEL_ROOT,
ZEL_LINK_PORT, ZEL_REST_PORT).

usage: cross_trial.py EMULATOR BUILD CONTROL_PORT
"""

import json
import os
import pathlib
import queue
import re
import signal
import socket
import statistics
import subprocess
import sys
import threading
import time
import urllib.request

EMULATOR, BUILD, CONTROL_PORT = sys.argv[1:]
RUNS = 7
PATIENCE = 60  # seconds: an emulator on a busy machine is slow
FONTS = ["NotoSansCJKkr-Light.otf", "NotoSansCJKkr-Regular.otf", "NotoSansCJKkr-Medium.otf",
         "NotoSansCJKkr-Bold.otf", "NotoSerif-Bold.ttf"]


class Program:
    """A program of the build, running under the emulator until the end of the block."""

    def __init__(self, name, *arguments):
        command = [EMULATOR, f"{BUILD}/bin/{name}", "-platform", "offscreen", *arguments]
        self.started = time.monotonic()
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True)
        self.lines = queue.Queue()
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip())
        self.lines.put(f"status {self.process.wait()}")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def says(self, *patterns):
        """Waits for a line of each kind and gives the last match; what came before counts no more."""
        deadline = time.monotonic() + PATIENCE
        missing, said, found = list(patterns), [], None
        while missing:
            try:
                said.append(self.lines.get(timeout=max(0.0, deadline - time.monotonic())))
            except queue.Empty:
                sys.exit("\n".join([f"No line with {missing}, but:", *said]))
            for pattern in list(missing):
                match = re.search(pattern, said[-1])
                if match:
                    found = match
                    missing.remove(pattern)
            if said[-1].startswith("status "):
                deadline = 0.0
        return found

    def first_frame(self):
        """Milliseconds from the start to the first painted frame."""
        return int(self.says(r"first frame (\d+)")[1]) / 1e6 - self.started * 1e3

    def memory(self):
        """Resident MB, without the code that the emulator has made of the program's own."""
        size, counts = 0, False
        for line in pathlib.Path(f"/proc/{self.process.pid}/smaps").read_text().splitlines():
            if re.match(r"[0-9a-f]+-", line):
                counts = "rwxp" not in line
            elif counts and line.startswith("Rss:"):
                size += int(line.split()[1])
        return size / 1024


def controller(words):
    """Has the simulated controller do something, as soon as it can."""
    deadline = time.monotonic() + PATIENCE
    while True:
        with socket.create_connection(("127.0.0.1", int(CONTROL_PORT)), timeout=PATIENCE) as connection:
            connection.sendall(f"{words}\n".encode())
            answer = next(line for line in connection.makefile() if re.match("ok|error", line))
        if answer.startswith("ok"):
            return
        if time.monotonic() > deadline:
            sys.exit(f"The simulated controller on '{words}': {answer}")
        time.sleep(0.2)


def try_the_door():
    with Program("zel-terminal") as terminal:
        terminal.says("screen bootWindow")
        terminal.says("connected to the device controller", "screen stayWindow")
        print("connected, standby screen")
        controller("live")
        terminal.says("screen liveWindow")
        for words in ("face 01023456789", "card 10000002"):
            controller(words)
            terminal.says("screen recognizeWindow")
            terminal.says("screen liveWindow")
            print(f"{words}: result shown, back at the live view")
        address = f"http://127.0.0.1:{os.environ['ZEL_REST_PORT']}/cloud-service/rest-api/device-status.do"
        with urllib.request.urlopen(address, data=b"", timeout=PATIENCE) as answer:
            print("device-status.do:", json.load(answer)["resultCode"])
        terminal.process.send_signal(signal.SIGTERM)
        begun = time.monotonic()
        status = terminal.process.wait(PATIENCE)
        if status != 0:
            sys.exit(f"SIGTERM: status {status}")
        print(f"SIGTERM: status 0 after {time.monotonic() - begun:.1f} s")


def measure():
    folder = os.environ["ZEL_ROOT"] + "/zel1/image/img/fonts/"
    fonts = [folder + name for name in FONTS]
    frames = {"blank": [], "terminal": []}
    for _ in range(RUNS):
        for name, program in (("blank", ["blank_window", *fonts]), ("terminal", ["terminal_first_frame"])):
            with Program(*program) as running:
                frames[name].append(running.first_frame())
    blank, terminal = (statistics.median(frames[name]) for name in ("blank", "terminal"))
    print(f"start to first painted frame: {terminal:.0f} ms, blank window {blank:.0f} ms: "
          f"{terminal / blank:.2f} times")
    with Program("blank_window", *fonts) as window, Program("terminal_first_frame") as running:
        window.says("first frame")
        running.says("screen bootWindow")
        running.says("screen stayWindow")
        time.sleep(2)
        blank, terminal = window.memory(), running.memory()
    print(f"resident memory, standby screen: {terminal:.1f} MB, blank window {blank:.1f} MB: "
          f"{terminal / blank:.2f} times")


try_the_door()
measure()
