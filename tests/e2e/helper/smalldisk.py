"""A small disk that only one program and its children see: a tmpfs in a mount namespace of their own.

As a program: says with its status whether this machine allows that.
"""

import ctypes
import os
import sys
import tempfile

NEW_NAMESPACE, NEW_USERS = 0x00020000, 0x10000000  # CLONE_NEWNS, CLONE_NEWUSER of <linux/sched.h>
RECURSIVE, PRIVATE = 0x4000, 1 << 18  # MS_REC, MS_PRIVATE of <linux/mount.h>


def _check(result):
    if result != 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))


def mount(folder, options):
    """Puts an empty disk into the folder's place. For a child process before it starts its program."""
    libc = ctypes.CDLL(None, use_errno=True)
    user, group = os.geteuid(), os.getegid()
    _check(libc.unshare(NEW_NAMESPACE | (NEW_USERS if user != 0 else 0)))
    if user != 0:  # who is the same user in there as outside, and may mount there
        for name, text in (("setgroups", "deny"), ("uid_map", f"{user} {user} 1"), ("gid_map", f"{group} {group} 1")):
            with open(f"/proc/self/{name}", "w", encoding="ascii") as file:
                file.write(text)
    _check(libc.mount(b"none", b"/", None, RECURSIVE | PRIVATE, None))
    _check(libc.mount(b"none", os.fsencode(str(folder)), b"tmpfs", 0, options.encode()))


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as place:
        child = os.fork()
        if child == 0:
            try:
                mount(place, "size=1m")
            except OSError:
                os._exit(1)
            os._exit(0)
        sys.exit(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))
