#!/usr/bin/env python3
"""Stands between terminal and device controller and writes what they say into a file that Wireshark
and tshark open with tools/zel_link.lua. Needs no privileges.

usage: link_capture.py FILE [LISTEN [CONTROLLER]]     ports: 15149, where the terminal is sent to
                                                      with ZEL_LINK_PORT, and 15150
"""

import asyncio
import struct
import sys
import time

CONTROLLER = 15150  # the port that the capture shows, whatever the true one is
LARGEST = 16384


class Capture:
    """A pcap file of IPv4 packets between the loopback address's ports."""

    def __init__(self, file):
        self.file, self.sent = file, {}
        file.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, 101))

    def add(self, source, target, data):
        """Data on its way from one port to the other."""
        sequence = self.sent.get((source, target), 1)
        self.sent[source, target] = sequence + len(data)
        acknowledged = self.sent.get((target, source), 1)
        local = bytes([127, 0, 0, 1])
        packet = struct.pack(">BBHHHBBH4s4s", 0x45, 0, 40 + len(data), 0, 0, 64, 6, 0, local, local)
        packet += struct.pack(">HHIIBBHHH", source, target, sequence, acknowledged, 0x50, 0x18, 65535, 0, 0)
        packet += data
        now = time.time()
        self.file.write(struct.pack("<IIII", int(now), int(now % 1 * 1e6), len(packet), len(packet)))
        self.file.write(packet)
        self.file.flush()


async def carry(reader, writer, capture, source, target):
    while data := await reader.read(LARGEST):
        capture.add(source, target, data)
        writer.write(data)
        await writer.drain()
    writer.close()


async def relay(capture, listen, controller):
    async def serve(reader, writer):
        try:
            to_reader, to_writer = await asyncio.open_connection("127.0.0.1", controller)
        except OSError:
            writer.close()
            return
        terminal = writer.get_extra_info("peername")[1]
        await asyncio.gather(carry(reader, to_writer, capture, terminal, CONTROLLER),
                             carry(to_reader, writer, capture, CONTROLLER, terminal), return_exceptions=True)

    server = await asyncio.start_server(serve, "127.0.0.1", listen)
    await server.serve_forever()


if __name__ == "__main__":
    ports = [int(port) for port in sys.argv[2:]] + [15149, CONTROLLER][len(sys.argv) - 2:]
    try:
        with open(sys.argv[1], "wb") as output:
            asyncio.run(relay(Capture(output), *ports))
    except KeyboardInterrupt:
        pass
