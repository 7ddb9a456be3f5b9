"""Looks at what a method left on disk, on its own: by descriptors from folder to folder, so that no path is too long."""

import hashlib
import os
import stat

LABEL_ATTRIBUTE = "user.com.apple.FinderInfo"


def found(folder):
    """Everything below a folder: relative path to (is a folder, mode, label, digest of the contents)."""
    result = {}
    pending = [(os.open(folder, os.O_RDONLY | os.O_DIRECTORY), "")]
    while pending:
        descriptor, path = pending.pop()
        for name in os.listdir(descriptor):
            status = os.stat(name, dir_fd=descriptor, follow_symlinks=False)
            is_folder = stat.S_ISDIR(status.st_mode)
            if not is_folder and not stat.S_ISREG(status.st_mode):
                result[path + "/" + name] = "neither a file nor a folder"
                continue
            item = os.open(name, os.O_RDONLY | (os.O_DIRECTORY if is_folder else 0) | os.O_NOFOLLOW, dir_fd=descriptor)
            result[path + "/" + name] = (is_folder, stat.S_IMODE(status.st_mode), _label(item), None if is_folder else _digest(item))
            if is_folder:
                pending.append((item, path + "/" + name))
            else:
                os.close(item)
        os.close(descriptor)
    return result


def _label(descriptor):
    try:
        information = os.getxattr(descriptor, LABEL_ATTRIBUTE)
    except OSError:
        return 0
    return (information[9] >> 1) & 7 if len(information) == 32 else f"{len(information)} bytes of Finder information"


def _digest(descriptor):
    digest = hashlib.sha1()
    while block := os.read(descriptor, 1 << 20):
        digest.update(block)
    return digest.digest()


def differences(expected, folder, leaves_out=()):
    """What differs from the expected tree, as texts; empty when all is right. `leaves_out` may name "labels", "folder modes"
    and "file modes", which are then not compared, because the method is known not to do them."""
    actual = found(folder)
    problems = [f"missing: {path[-80:]}" for path in expected.keys() - actual.keys()]
    problems += [f"too many: {path[-80:]}" for path in actual.keys() - expected.keys()]
    for path in expected.keys() & actual.keys():
        if _comparable(expected[path], leaves_out) != _comparable(actual[path], leaves_out):
            problems.append(f"differs: {path[-80:]}: {actual[path][:3]} instead of {expected[path][:3]}")
    return sorted(problems)


def _comparable(item, leaves_out):
    if isinstance(item, str):
        return item
    is_folder, mode, label, digest = item
    return (is_folder, None if ("folder modes" if is_folder else "file modes") in leaves_out else mode,
            None if "labels" in leaves_out else label, digest)
