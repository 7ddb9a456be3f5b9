#!/usr/bin/env python3
"""Brings the translations up to date with the sources.

    update.py            adds the texts that are new to each orvane_LANGUAGE.ts, as unfinished, and takes those out that are gone
    update.py --check    ends with status 1 when a file is not up to date, a text is unfinished, or a translation does not fit its text

The texts are those that the programs look up under the one context "Orvane": what stands in `translated(...)`, `forTranslation(...)` and
`QCoreApplication::translate("Orvane", ...)`, the names of steps that can be undone, the problems that the checker finds, how keys are
bound on each desktop, and the interface files.
Qt's own `lupdate` knows only the first kind of call, and not by that name. The same sources always give the same files.
"""

import re
import sys
import xml.etree.ElementTree as ET
from pathlib import Path

HERE = Path(__file__).resolve().parent
TOP = HERE.parents[1]
CONTEXT = "Orvane"
LITERAL = r'"(?:[^"\\\n]|\\.)*"'
LITERALS = rf"{LITERAL}(?:\s*{LITERAL})*"
# Calls in which every text is for people, with what stands before it; nested calls are left out.
CALLS = (r"\btranslated\(", r"\bforTranslation\(", r'QCoreApplication::translate\(\s*"Orvane",', r'QT_TRANSLATE_NOOP\(\s*"Orvane",', r"\bStep \w+\([\w.>()-]+,")
SOURCES = {
    "PreferencePane/window/*.cpp": CALLS,
    "PreferencePane/window/*.h": CALLS,
    "PreferencePane/model/*.cpp": CALLS,
    "PreferencePane/*.cpp": CALLS,
    "PreferencePane/platform/*.cpp": CALLS,
    "PresetFiles/*.cpp": CALLS,
    "HelperSource/presets/ORVPresetFile.cpp": CALLS,
    "HelperSource/presets/ORVImportedNames.cpp": CALLS,
    "HelperSource/ports/Sentence.cpp": CALLS,
    "HelperSource/*.cpp": CALLS,
    "HelperSource/wiring/*.cpp": CALLS,
    "HelperSource/platform/qt/*.cpp": CALLS,
    "HelperSource/platform/qtdbus/*.cpp": CALLS,
    "HelperSource/platform/wayland/*.cpp": CALLS,
}
# Functions of the model that give a step its name, which is their last argument.
NAMED_STEPS = r"\b(?:insertPreset|replacePreset|insertNodes|removeNodes|_setTexts|_apply)\([^;{}]*?,\s*(" + LITERALS + r")\)"
DEFAULT_NAME = r"const char \*name = (" + LITERALS + r")"
# The checker's problems: texts in lower case with the arguments %1 and so on, behind their severity.
PROBLEMS = r"ORVProblemSeverity::\w+,\s*(?:\"\w+\",\s*)?((?:[^;]|\n)*?)(?:\}|\);)"


def text_of(literals):
    """What adjacent literals say."""
    joined = "".join(part[1:-1] for part in re.findall(LITERAL, literals))
    return re.sub(r"\\(.)", lambda escape: {"n": "\n", "t": "\t"}.get(escape.group(1), escape.group(1)), joined)


def arguments_from(source, start):
    """The text of a call from its opening parenthesis to the closing one, without what nested calls are given."""
    depth, position, kept = 1, start, []
    while depth > 0 and position < len(source):
        literal = re.compile(LITERAL).match(source, position)
        if literal:
            if depth == 1:
                kept.append(literal.group())
            position = literal.end()
            continue
        character = source[position]
        depth += {"(": 1, ")": -1}.get(character, 0)
        if depth == 1 and not character.isspace():
            kept.append(character)
        position += 1
    return "".join(kept)


def texts_of(source, calls):
    for call in calls:
        for found in re.finditer(call, source):
            inside = arguments_from(source, found.end())
            if "Step" in call:  # a key for merging steps may follow
                inside = re.match(r"[^,]*", re.sub(LITERAL, lambda m: m.group().replace(",", "\0"), inside)).group().replace("\0", ",")
            for literals in re.findall(LITERALS, inside):
                yield text_of(literals)


def advice_texts():
    """How keys are bound on each desktop."""
    source = (TOP / "HelperSource/hotkeys/HotKeyAdvice.cpp").read_text(encoding="utf-8")
    for found in re.finditer(LITERALS, re.sub(r"#include[^\n]*|//[^\n]*", "", source)):
        text = text_of(found.group())
        if " " in text.strip() and not text.startswith("Or in a terminal"):
            yield text


def problem_texts():
    for name in ("ORVPresetChecker.cpp", "ORVCheckedNames.cpp"):
        source = (TOP / "HelperSource/presets" / name).read_text(encoding="utf-8")
        for found in re.finditer(LITERALS, source):
            text = text_of(found.group())
            if " " in text and not text.startswith("presets/"):
                yield text


def texts_of_windows():
    """The texts of the interface files, whose class is that context, with their files."""
    for path in sorted((TOP / "resources").glob("*.ui")):
        interface = ET.parse(path).getroot()
        assert interface.findtext("class") == CONTEXT, path
        for text in interface.iter("string"):
            if text.get("notr") != "true" and text.text and not text.text.endswith("Column"):
                yield text.text, path


def all_texts():
    """Every text with the file that it is first found in, in the order of files and of places in them."""
    found = {}
    for pattern, calls in SOURCES.items():
        for path in sorted(TOP.glob(pattern)):
            source = re.sub(r"//[^\n]*", "", path.read_text(encoding="utf-8"))
            for text in texts_of(source, calls):
                found.setdefault(text, path)
            for names in re.findall(NAMED_STEPS, source):
                found.setdefault(text_of(names), path)
    for path in sorted(TOP.glob("PreferencePane/model/*.h")):
        for name in re.findall(DEFAULT_NAME, path.read_text(encoding="utf-8")):
            found.setdefault(text_of(name), path)
    for text, path in texts_of_windows():
        found.setdefault(text, path)
    for text in advice_texts():
        found.setdefault(text, TOP / "HelperSource/hotkeys/HotKeyAdvice.cpp")
    for text in problem_texts():
        found.setdefault(text, TOP / "HelperSource/presets/ORVPresetChecker.cpp")
    return {text: path for text, path in found.items() if re.search(r"[A-Za-z]|: ", text) and text == text.strip()}


def finished_in(path):
    """The translations that a file has."""
    if not path.exists():
        return {}
    return {
        message.findtext("source"): message.findtext("translation")
        for message in ET.parse(path).getroot().iter("message")
        if message.find("translation").get("type") is None and message.findtext("translation")
    }


def escaped(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;").replace('"', "&quot;").replace("'", "&apos;")


def document(language, texts, translations):
    lines = ['<?xml version="1.0" encoding="utf-8"?>', "<!DOCTYPE TS>", f'<TS version="2.1" language="{language}" sourcelanguage="en">',
             "<context>", f"    <name>{CONTEXT}</name>"]
    for text, path in texts.items():
        translation = translations.get(text)
        lines += ["    <message>", f'        <location filename="../../{path.relative_to(TOP)}"/>',
                  f"        <source>{escaped(text)}</source>",
                  f"        <translation>{escaped(translation)}</translation>" if translation
                  else '        <translation type="unfinished"></translation>', "    </message>"]
    return "\n".join(lines + ["</context>", "</TS>", ""])


def misfits(text, translation):
    """What is wrong with a translation as far as a program can tell."""
    if sorted(re.findall(r"%\d", text)) != sorted(re.findall(r"%\d", translation)):
        yield "other arguments"
    if len(re.findall(r"&(?=\w)", text)) != len(re.findall(r"&(?=\w)", translation)):
        yield "other access keys"
    if text.count("\n") != translation.count("\n"):
        yield "other line breaks"
    if text.endswith("…") != translation.endswith("…") or text.endswith(":") != translation.endswith(":"):
        yield "another end"
    if text != text.strip() or translation != translation.strip():
        yield "blanks at its ends"


def main(arguments):
    if arguments not in ([], ["--check"]):
        print(__doc__, file=sys.stderr)
        return 2
    texts = all_texts()
    wrong = 0
    for path in sorted(HERE.glob("orvane_*.ts")):
        translations = finished_in(path)
        wanted = document(path.stem.partition("_")[2], texts, translations)
        if not arguments:
            path.write_text(wanted, encoding="utf-8")
        elif path.read_text(encoding="utf-8") != wanted:
            print(f"{path}: not up to date; run: {Path(__file__).name}", file=sys.stderr)
            wrong += 1
        for text in texts:
            problems = list(misfits(text, translations[text])) if text in translations else ["unfinished"]
            for problem in problems:
                print(f"{path.name}: {problem}: {text!r}", file=sys.stderr)
            wrong += len(problems)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
