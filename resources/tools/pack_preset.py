#!/usr/bin/env python3
"""Packs the folder of a preset into one self-contained file, the form that `orvane add` reads.

    pack_preset.py FOLDER FILE           writes FILE
    pack_preset.py --check FOLDER FILE   ends with status 1 when FILE is not what FOLDER gives

FOLDER holds:
    preset.plist   the preset's dictionary, as it stands in the preferences
    contents/      the files that its nodes name as contents
    script/        the script that it names, if any

FILE is an XML property list with ORVPresetFileVersion (1), ORVPreset (that dictionary), ORVFileContents (for each
name a dictionary with `data` and `mode`, octal digits as text) and ORVScript (`name` and `data`).
The same folder always gives the same bytes.
"""

import os
import plistlib
import sys
from pathlib import Path

FILE_VERSION = 1


class PackError(Exception):
    """The folder is no preset that could be packed; the text says why."""


def nodes_of(node):
    """The node and all nodes below it."""
    yield node
    for child in node.get("children", []):
        yield from nodes_of(child)


def files_in(folder):
    """The plain files of a folder by name; none when the folder is absent."""
    if not folder.is_dir():
        return {}
    return {entry.name: entry for entry in sorted(folder.iterdir()) if entry.is_file()}


def packed_content(path):
    """A content file's entry. Only the executable bit counts, because it is all that version control keeps."""
    return {"data": path.read_bytes(), "mode": "755" if os.access(path, os.X_OK) else "644"}


def require_same(what, named, present):
    """Every file that the preset names is there, and no other."""
    missing, unused = sorted(named - present), sorted(present - named)
    if missing:
        raise PackError(f"missing {what}: {', '.join(missing)}")
    if unused:
        raise PackError(f"{what} that the preset does not name: {', '.join(unused)}")


def pack(folder):
    """The bytes of the self-contained file."""
    with open(folder / "preset.plist", "rb") as source:
        preset = plistlib.load(source)
    contents = files_in(folder / "contents")
    scripts = files_in(folder / "script")
    named = {node["contentFilename"] for node in nodes_of(preset.get("fileHierarchy", {})) if node.get("contentFilename")}
    require_same("contents", named, contents.keys())
    require_same("scripts", {preset["scriptFile"]} if preset.get("scriptFile") else set(), scripts.keys())

    document = {"ORVPresetFileVersion": FILE_VERSION, "ORVPreset": preset}
    if contents:
        document["ORVFileContents"] = {name: packed_content(path) for name, path in contents.items()}
    for name, path in scripts.items():
        document["ORVScript"] = {"name": name, "data": path.read_bytes()}
    return plistlib.dumps(document, fmt=plistlib.FMT_XML, sort_keys=False)


def main(arguments):
    check = arguments[:1] == ["--check"]
    paths = arguments[1:] if check else arguments
    if len(paths) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    folder, target = map(Path, paths)
    try:
        packed = pack(folder)
        if not check:
            target.write_bytes(packed)
        elif target.read_bytes() != packed:
            print(f"{target}: not up to date; run: {sys.argv[0]} '{folder}' '{target}'", file=sys.stderr)
            return 1
    except (OSError, PackError, plistlib.InvalidFileException) as error:
        print(f"{sys.argv[0]}: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
