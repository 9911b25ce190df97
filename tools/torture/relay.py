"""What lies on the wire between the terminal and the controller, and what may go wrong there."""

import socket
import struct
import threading
import time

START, LINK_MARK, HEADER = 0xC5, 0x02, 8
ENROL_USER, DELETE_USER, UPGRADE, ASK_USERS, SETTINGS = 1927, 1931, 1990, 2040, 2908
NAME_AT = 32  # of a user's name in its record


def text(field):
    return field.split(b"\0", 1)[0].decode()


def order_in(code, payload):
    """What a frame orders, as the client knows it: kind, card number and name; None if nothing."""
    if code == ENROL_USER:
        return "add", text(payload[:16]), text(payload[NAME_AT:NAME_AT + 100])
    if code == DELETE_USER:
        return "del", text(payload[:16]), ""
    return None


class Connection:
    """One of the terminal's, as long as it lasts, with the orders that have come over it."""

    def __init__(self, terminal, controller):
        self.terminal, self.controller = terminal, controller
        self.told = []  # of (order, time)
        self.ended = None  # a time
        self.cut = False  # what has not been passed on yet never is


class Relay:
    """Passes everything on, unless told otherwise. Counts an order as told when the whole frame has
    been passed on; whatever ends a connection, the controller gets what was passed on before."""

    def __init__(self, controller_port):
        self.controller_port = controller_port
        self.connections = []
        self.answers = 0  # to the controller's word that something waits
        self.upgrades = 0  # archives handed over
        self.piece = 65536  # bytes passed on at a time
        self.pause = 0  # seconds behind each piece
        self.cut_order = False  # the next order is the last, and comes half
        self.listener = socket.create_server(("127.0.0.1", 0), backlog=16)
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def close(self):
        self.listener.close()
        self.drop()

    def current(self):
        last = self.connections[-1] if self.connections else None
        return last if last and last.ended is None else None

    def drop(self, rudely=False, cut=False):
        """Ends the connection. False when there is none."""
        connection = self.current()
        if connection is None:
            return False
        connection.cut = cut
        try:
            if rudely:
                connection.terminal.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER,
                                               struct.pack("ii", 1, 0))
            connection.terminal.shutdown(socket.SHUT_RD if rudely else socket.SHUT_RDWR)
        except OSError:
            pass
        return True

    def half_frame(self):
        """Ends the connection in the middle of a long frame to the terminal."""
        connection = self.current()
        if connection is None:
            return False
        frame = struct.pack("<BBHBBH", START, LINK_MARK, SETTINGS, 0, 0, 1000) + b"\xC5\x02" * 250
        try:
            connection.terminal.sendall(frame)
        except OSError:
            pass
        return self.drop()

    def noise(self, data):
        connection = self.current()
        if connection:
            try:
                connection.terminal.sendall(data)
            except OSError:
                pass

    def _accept(self):
        while True:
            try:
                terminal, _ = self.listener.accept()
            except OSError:
                return
            try:
                controller = socket.create_connection(("127.0.0.1", self.controller_port))
            except OSError:
                terminal.close()
                continue
            for each in (terminal, controller):
                each.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            connection = Connection(terminal, controller)
            self.connections.append(connection)
            threading.Thread(target=self._to_controller, args=(connection,), daemon=True).start()
            threading.Thread(target=self._to_terminal, args=(connection,), daemon=True).start()

    def _pieces(self, connection, data):
        for at in range(0, len(data), self.piece):
            if connection.cut:
                raise OSError("cut")
            yield data[at:at + self.piece]
            if self.pause:
                time.sleep(self.pause)

    def _to_terminal(self, connection):
        try:
            while data := connection.controller.recv(65536):
                for piece in self._pieces(connection, data):
                    connection.terminal.sendall(piece)
        except OSError:
            pass
        self._end(connection.terminal)

    def _to_controller(self, connection):
        waiting = b""
        try:
            while data := connection.terminal.recv(65536):
                waiting += data
                waiting = self._pass_frames(connection, waiting)
        except OSError:
            pass
        connection.ended = time.monotonic()
        self._end(connection.controller)
        connection.terminal.close()

    def _pass_frames(self, connection, data):
        while len(data) >= HEADER:
            start, mark, code, _, _, length = struct.unpack("<BBHBBH", data[:HEADER])
            if (start, mark) != (START, LINK_MARK):
                raise AssertionError(f"the terminal has sent {data[:HEADER].hex()} for a header")
            if len(data) < HEADER + length:
                break
            frame, data = data[:HEADER + length], data[HEADER + length:]
            order = order_in(code, frame[HEADER:])
            if order and self.cut_order:
                self.cut_order = False
                connection.controller.sendall(frame[:len(frame) // 2])
                raise OSError("cut")
            for piece in self._pieces(connection, frame):
                connection.controller.sendall(piece)
            if order:
                connection.told.append((order, time.monotonic()))
            self.answers += code == ASK_USERS
            self.upgrades += code == UPGRADE
        return data

    @staticmethod
    def _end(connection):
        try:
            connection.shutdown(socket.SHUT_WR)
        except OSError:
            pass
