#!/usr/bin/env python3
"""Runs after the folder has been made and puts title, author, year and journal into the manuscript and the letters.

The environment holds ORV_CONTEXT, ORV_ROOT_PATH and one P_ variable for each variable of the preset, nothing else.
"""

import os
import sys
from pathlib import Path

PLACES = {"@TITLE@": "P_SHORT_TITLE", "@AUTHOR@": "P_FIRST_AUTHOR", "@YEAR@": "P_YEAR", "@JOURNAL@": "P_JOURNAL"}
LETTERS = ("06 Manuscript/*.txt", "07 Review/*/*.txt")
MANUSCRIPTS = ("06 Manuscript/*.tex",)
TEX = {
    "\\": r"\textbackslash{}", "~": r"\textasciitilde{}", "^": r"\textasciicircum{}",
    **{character: "\\" + character for character in "&%$#_{}"},
}


def plain(value):
    return value


def tex(value):
    """The value as LaTeX prints it."""
    return "".join(TEX.get(character, character) for character in value)


def fill_in(path, form):
    """Replaces the places in a file, which keeps its mode."""
    text = path.read_text(encoding="utf-8")
    # From one pass to the next a value could hold what stands for another: the text is cut at the places instead.
    parts = [text]
    for place, variable in PLACES.items():
        value = form(" ".join(os.environ.get(variable, "").split()))
        parts = [piece for part in parts for piece in separated(part, place, value)]
    path.write_text("".join(parts), encoding="utf-8")


class Value(str):
    """Text that was put in and is not looked at again."""


def separated(part, place, value):
    if isinstance(part, Value):
        return [part]
    pieces = [part.split(place)[0]]
    for rest in part.split(place)[1:]:
        pieces += [Value(value), rest]
    return pieces


def main():
    root = Path(os.environ.get("ORV_ROOT_PATH", ""))
    if not root.is_absolute() or not root.is_dir():
        print(f"ORV_ROOT_PATH names no folder: '{root}'", file=sys.stderr)
        return 1
    filled = 0
    for patterns, form in ((MANUSCRIPTS, tex), (LETTERS, plain)):
        for pattern in patterns:
            for path in sorted(root.glob(pattern)):
                fill_in(path, form)
                filled += 1
    # Lines of the form key=value are this script's result.
    print(f"filled={filled}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
