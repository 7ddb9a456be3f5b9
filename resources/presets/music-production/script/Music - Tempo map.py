#!/usr/bin/env python3
"""Runs after the folder has been made and writes Tempo.mid into the session's folder: title and tempo for any sequencer.

The environment holds ORV_CONTEXT, ORV_ROOT_PATH and one P_ variable for each variable of the preset, nothing else. A tempo
that is no number makes no file.
"""

import os
import struct
import sys
from pathlib import Path

SLOWEST, FASTEST = 4, 1000  # beats a minute; a tempo event has 24 bits for the microseconds of a beat
TICKS_A_BEAT = 480
BARS = 8


def event(kind, data):
    """A meta event right at once (Standard MIDI Files 1.0)."""
    if len(data) > 127:  # the length would need a second byte
        data = data[:127].decode("utf-8", "ignore").encode()
    return b"\x00\xff" + bytes([kind, len(data)]) + data


def variable_length(number):
    """Seven bits a byte, the highest first."""
    parts = [number & 0x7F]
    while number := number >> 7:
        parts.insert(0, number & 0x7F | 0x80)
    return bytes(parts)


def tempo_map(title, beats_a_minute):
    """A file with one track: title, four quarters a bar, the tempo, and an end after some bars."""
    track = event(0x03, title.encode("utf-8", "replace"))
    track += event(0x58, bytes([4, 2, 24, 8]))
    track += event(0x51, struct.pack(">I", round(60_000_000 / beats_a_minute))[1:])
    track += variable_length(BARS * 4 * TICKS_A_BEAT) + b"\xff\x2f\x00"
    return b"MThd" + struct.pack(">IHHH", 6, 0, 1, TICKS_A_BEAT) + b"MTrk" + struct.pack(">I", len(track)) + track


def main():
    root = Path(os.environ.get("ORV_ROOT_PATH", ""))
    sessions = sorted(root.glob("02 Session at *")) if root.is_absolute() else []
    if len(sessions) != 1:
        print(f"no folder of the session in '{root}'", file=sys.stderr)
        return 1
    try:
        tempo = float(os.environ.get("P_TEMPO", "").strip().replace(",", "."))
    except ValueError:
        tempo = 0
    if not SLOWEST <= tempo <= FASTEST:
        print("note=the tempo is no number, so there is no Tempo.mid")
        return 0
    with open(sessions[0] / "Tempo.mid", "xb") as target:
        target.write(tempo_map(os.environ.get("P_TITLE", ""), tempo))
    # Lines of the form key=value are this script's result.
    print(f"tempo={tempo:g}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
