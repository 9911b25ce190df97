"""What integrators are given works: the examples with the real terminal, and the dissector with a
capture of what is said between them.

usage: integrators_test.py BINARIES STAGED_ROOT SOURCES
"""

import pathlib
import runpy
import shutil
import struct
import subprocess
import sys
import unittest

BINARIES, STAGED, SOURCES = (pathlib.Path(argument) for argument in sys.argv[1:4])
sys.path[:0] = [str(SOURCES / "tests"), str(SOURCES / "tools")]
from link_capture import CONTROLLER, Capture
from support.running import Running, free_port, wait_for

DISSECTOR = SOURCES / "tools" / "zel_link.lua"
TERMINAL = 40000  # a port


def dissected(capture, *fields):
    """The values of the fields, those of one packet in one string; and what tshark complains of."""
    wanted = [part for field in fields for part in ("-e", field)]
    run = subprocess.run(
        ["tshark", "-r", capture, "-X", f"lua_script:{DISSECTOR}", "-T", "fields", *wanted, "-e", "_ws.expert.message"],
        capture_output=True, text=True, check=True)
    rows = [line.split("\t") for line in run.stdout.splitlines()]
    return [row[:-1] for row in rows], [row[-1] for row in rows if row[-1]]


class Integrators(Running):
    binaries, staged = BINARIES, STAGED

    def test_dissector_knows_every_frame(self):
        tables = runpy.run_path(str(SOURCES / "tools" / "make_dissector.py"))
        self.assertEqual(DISSECTOR.read_text("utf-8"), tables["dissector"](),
                         "make_dissector.py makes another one by now")
        names, broken = [], self.root / "broken.pcap"
        with open(self.root / "all.pcap", "wb") as whole, open(broken, "wb") as cut:
            every, short = Capture(whole), Capture(cut)
            for command in tables["COMMANDS"]:
                ports = (TERMINAL, CONTROLLER) if command.direction == "to_controller" else (CONTROLLER, TERMINAL)
                for payload in tables["payload_of"](command) or [{"size": 0}]:
                    size = payload["size"] or 5 * ("kind" in payload)
                    frame = struct.pack("<BBHBBH", 0xC5, 2, command.code, 0, 0, size) + b"1" * size
                    names.append([command.name])
                    every.add(*ports, frame[:3])  # in two pieces, as it may come
                    every.add(*ports, frame[3:])
                    if payload.get("record"):
                        short.add(*ports, frame[:6] + struct.pack("<H", 1) + b"1")
            short.add(TERMINAL, CONTROLLER, bytes.fromhex("c500c5020000000030ffc5026d0700000000c502ffff00000000"))
        rows, complaints = dissected(self.root / "all.pcap", "zel_link.name")
        self.assertEqual([row for row in rows if row[0]], names)
        self.assertEqual(complaints, [])
        rows, complaints = dissected(broken, "zel_link.name")
        self.assertEqual(rows[-1], ["Greeting,unknown"])  # among bytes that are no frame
        self.assertEqual(len(complaints), len(rows))

    def test_service_and_a_dissected_day(self):
        service, relay = free_port(), free_port()
        self.start_controller()
        self.settings("managerControl 1", "setup.operation 0", "network.useManager 1",
                      "network.own.managerAddress 127.0.0.1", f"network.own.managerPort {service}")
        self.start(SOURCES / "examples" / "service" / "service.py", service, self.port)
        capture = self.root / "day.pcap"
        self.start(SOURCES / "tools" / "link_capture.py", capture, relay, self.link)
        wait_for("the peers", lambda: self.listens(service) and self.listens(relay))
        self.start("zel-terminal", "-platform", "offscreen", ZEL_LINK_PORT=str(relay))
        wait_for("the service", lambda: " connect\n" in self.said("service.py"))
        self.tell("live\ntrack on\ncard 10000001\nvisitor")
        wait_for("the door", lambda: "door-open: 1000" in self.said("service.py"))
        wait_for("the event", lambda: "at the door: " in self.said("service.py"))
        wait_for("the end", lambda: b"\xc5\x02" + struct.pack("<H", 2036) in capture.read_bytes())
        rows, complaints = dissected(capture, "zel_link.name", "zel_link.gui_menu.setup.operation",
                                     "zel_link.recognitionresult.name")
        self.assertEqual(complaints, [])
        names = {name for row in rows for name in row[0].split(",")}
        self.assertTrue({"Greeting", "Settings", "TrackingBox", "Recognised", "AccessEvent", "EventReported",
                         "VisitorCall", "OpenDoor"} <= names, names)
        self.assertIn("0", [row[1] for row in rows])
        self.assertIn("김서연", [row[2] for row in rows])

    def test_controller(self):
        # The same terminal has a maker's colors, of which one is none.
        brand = self.root / "zel1"
        brand.unlink()
        shutil.copytree(STAGED / "zel1", brand, symlinks=True)
        (brand / "theme.json").write_text('{"accent": "mint"}', "utf-8")
        self.start("example-controller", self.link)
        wait_for("the controller", lambda: self.listens(self.link))
        self.start("zel-terminal", "-platform", "offscreen")
        wait_for("the end of the result", lambda: "2001 RecognitionHidden" in self.said("example-controller"))
        self.assertRegex(self.said("example-controller"), "(?s)Greeting.*Settings.*Recognised.*3036 DoorOpened")
        for line in ("screen recognizeWindow", '["mint"] is no color for accent'):
            self.assertIn(line, self.said("zel-terminal"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
