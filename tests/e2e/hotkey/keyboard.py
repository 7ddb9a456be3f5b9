"""Another program at the X server: takes keys away from others, and counts what is grabbed."""

import ctypes
import os
import signal
import subprocess
import sys
from pathlib import Path

SHIFT, LOCK, CONTROL, MOD2 = 1, 2, 4, 16  # of the X protocol
ESCAPE_KEY, CONTROL_KEY, SHIFT_KEY, SUPER_KEY, MENU_KEY = 9, 37, 50, 133, 135  # X key codes of a PC keyboard
GRAB_SUCCESS = 0


class ResourceType(ctypes.Structure):
    _fields_ = [("type", ctypes.c_ulong), ("count", ctypes.c_uint)]


class Client(ctypes.Structure):
    _fields_ = [("base", ctypes.c_ulong), ("mask", ctypes.c_ulong)]


class Server:
    """A connection of its own. Errors of the server are counted, not fatal."""

    def __init__(self):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x.XGetAtomName.restype = ctypes.c_char_p
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        if not self.display:
            raise OSError("no X server")
        self.root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))
        self.errors = 0
        self._handler = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(self._error)
        self.x.XSetErrorHandler(self._handler)

    def _error(self, _display, _event):
        self.errors += 1
        return 0

    def close(self):
        self.x.XCloseDisplay(self.display)

    def grab(self, key, modifiers):
        """Whether the server gives this client the key."""
        before = self.errors
        self.x.XGrabKey(self.display, key, modifiers, self.root, 0, 1, 1)
        self.x.XSync(self.display, 0)
        return self.errors == before

    def grab_keyboard(self):
        """Takes the whole keyboard and gives it back; whether that was possible."""
        status = self.x.XGrabKeyboard(self.display, self.root, 0, 1, 1, ctypes.c_ulong(0))
        self.x.XUngrabKeyboard(self.display, ctypes.c_ulong(0))
        self.x.XSync(self.display, 0)
        return status == GRAB_SUCCESS

    def press(self, *keys, release=True):
        """The keys go down in this order and up in the other, as on a keyboard: whatever group and locks are in force."""
        test = ctypes.CDLL("libXtst.so.6")
        for key in keys:
            test.XTestFakeKeyEvent(self.display, key, 1, ctypes.c_ulong(0))
        for key in reversed(keys) if release else ():
            test.XTestFakeKeyEvent(self.display, key, 0, ctypes.c_ulong(0))
        self.x.XSync(self.display, 0)

    def passive_grabs(self):
        """Number of keys and buttons that all clients together have taken, by X-Resource 1.2."""
        resources = ctypes.CDLL("libXRes.so.1")
        clients, number = ctypes.POINTER(Client)(), ctypes.c_int()
        resources.XResQueryClients(self.display, ctypes.byref(number), ctypes.byref(clients))
        total = 0
        for index in range(number.value):
            types, kinds = ctypes.POINTER(ResourceType)(), ctypes.c_int()
            resources.XResQueryClientResources(self.display, ctypes.c_ulong(clients[index].base), ctypes.byref(kinds), ctypes.byref(types))
            for kind in range(kinds.value):
                name = self.x.XGetAtomName(self.display, ctypes.c_ulong(types[kind].type))
                total += types[kind].count if name == b"PASSIVE GRAB" else 0
        return total


def other_program_with(key, modifiers):
    """Starts a program that holds the key until it is terminated."""
    process = subprocess.Popen([sys.executable, "-B", str(Path(__file__)), str(key), str(modifiers)], stdout=subprocess.PIPE, text=True)
    answer = process.stdout.readline()
    if answer != "taken\n":
        process.kill()
        process.wait()
        process.stdout.close()
        raise OSError(f"the key could not be taken: {answer}")
    return process


if __name__ == "__main__":
    server = Server()
    taken = all(server.grab(int(sys.argv[1]), int(sys.argv[2]) | locks) for locks in (0, LOCK, MOD2, LOCK | MOD2))
    os.write(1, b"taken\n" if taken else b"refused\n")
    signal.pause()
