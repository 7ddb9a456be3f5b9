"""What programs tell each other while something is dragged between them, overheard at the X server.

The source of a drag becomes the owner of a selection (XdndSelection). It tells the window under the mouse where the mouse is
(XdndPosition) and hears whether it may be dropped there (XdndStatus); while it waits for the answer, it says nothing of further moves
(XDND protocol, version 5). These messages go from one program to the other, and a program sends none to itself; the server's RECORD
extension (X Record Extension Protocol 1.13) shows them to others.
"""

import os
import socket
import struct
import threading

SET_SELECTION_OWNER, SEND_EVENT, CLIENT_MESSAGE = 22, 25, 33  # X Window System Protocol, appendix B
ALL_CLIENTS, FROM_CLIENT = 3, 1  # of RECORD
CREATE_CONTEXT, ENABLE_CONTEXT = 1, 5


class Server:
    """A connection to the X server; requests and replies as they are."""

    def __init__(self):
        number = os.environ["DISPLAY"].lstrip(":").split(".")[0]
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(20)
        self._socket.connect(f"/tmp/.X11-unix/X{number}")
        self._socket.sendall(struct.pack("<BxHHHHxx", ord("l"), 11, 0, 0, 0))
        status, length = struct.unpack("<BxxxxxH", self._take(8))
        assert status == 1, "the X server does not let us in"
        self.first_id = struct.unpack_from("<I", self._take(length * 4), 4)[0]

    def _take(self, count):
        data = b""
        while len(data) < count:
            more = self._socket.recv(count - len(data))
            if not more:
                raise EOFError
            data += more
        return data

    def ask(self, opcode, detail, body):
        body += bytes(-len(body) % 4)
        self._socket.sendall(struct.pack("<BBH", opcode, detail, 1 + len(body) // 4) + body)

    def reply(self):
        """Its 32 bytes, and what follows them."""
        head = self._take(32)
        assert head[0] == 1, f"the X server refuses: {head.hex()}"
        return head, self._take(struct.unpack_from("<I", head, 4)[0] * 4)

    def wait_without_end(self):
        self._socket.settimeout(None)

    def close(self):
        self._socket.shutdown(socket.SHUT_RDWR)

    def atom(self, name):
        self.ask(16, 0, struct.pack("<Hxx", len(name)) + name)
        return struct.unpack_from("<I", self.reply()[0], 8)[0]


class DragMessages:
    """Listens from its making until `close`."""

    def __init__(self):
        self._server = Server()
        self._position, self._status = self._server.atom(b"XdndPosition"), self._server.atom(b"XdndStatus")
        self._selection = self._server.atom(b"XdndSelection")
        self._server.ask(98, 0, struct.pack("<Hxx", 6) + b"RECORD")
        head, _ = self._server.reply()
        assert head[8], "this X server cannot be listened to"
        record, context = head[9], self._server.first_id
        requests = struct.pack("<BB22x", SET_SELECTION_OWNER, SEND_EVENT)
        self._server.ask(record, CREATE_CONTEXT, struct.pack("<IBxxxIII", context, 0, 1, 1, ALL_CLIENTS) + requests)
        self._server.ask(record, ENABLE_CONTEXT, struct.pack("<I", context))
        self._server.reply()  # it has begun
        self._server.wait_without_end()
        self._has_begun = False
        self._last = (None, None)  # where the mouse was last said to be, and what was answered: one value, since two threads see it
        self._listener = threading.Thread(target=self._listen, daemon=True)
        self._listener.start()

    def has_begun(self):
        """Whether a drag began."""
        return self._has_begun

    def may_drop_at(self, place):
        """Whether the target has heard that the mouse is there, and has agreed."""
        return self._last == (place, True)

    def _listen(self):
        try:
            while True:
                head, data = self._server.reply()
                if head[1] == FROM_CLIENT:
                    self._hear(data)
        except EOFError:
            pass

    def _hear(self, requests):
        while requests:
            length = struct.unpack_from("<H", requests, 2)[0] * 4
            if requests[0] == SET_SELECTION_OWNER:
                self._has_begun = self._has_begun or struct.unpack_from("<I", requests, 8)[0] == self._selection
            elif requests[0] == SEND_EVENT and requests[12] & 0x7F == CLIENT_MESSAGE:
                kind, _, second, third = struct.unpack_from("<IIII", requests, 20)
                if kind == self._position:
                    self._last = ((third >> 16, third & 0xFFFF), None)
                elif kind == self._status:
                    self._last = (self._last[0], bool(second & 1))
            requests = requests[length:]

    def close(self):
        self._server.close()
        self._listener.join(20)
