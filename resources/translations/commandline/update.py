#!/usr/bin/env python3
"""Brings the catalogues of the command line up to date with the sources.

    update.py            adds the texts that are new to each LANGUAGE.po, and takes those out that are gone
    update.py --check    ends with status 1 when a catalogue is not up to date, or a text in it is missing, fuzzy or does not fit

`xgettext` finds what stands in `localized(...)`, `localizedCount(...)` and `forTranslation(...)`. The engine's texts for problems and
for keys carry no mark, since the engine knows of no translation: they are found as ../update.py finds them for the windows.
The same sources always give the same files.
"""

import importlib.util
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
TOP = HERE.parents[2]
SOURCES = ("CommandLine/*.cpp", "CommandLine/*.h", "CommandLine/bus/*.cpp", "PresetFiles/*.cpp", "HelperSource/presets/ORVPresetFile.cpp",
           "HelperSource/presets/ORVImportedNames.cpp", "HelperSource/ports/Sentence.cpp")
KEYWORDS = ("localized:1", "forTranslation:1", "localizedCount:1,2")
FLAGS = [f"--flag={keyword.split(':')[0]}:{argument}:qt-format" for keyword in KEYWORDS for argument in keyword.split(":")[1].split(",")]
LONGEST_LINE = 80
# Texts that stay English: what scripts compare with, what is said when there is no memory for more, and what is none.
KEPT = (
    "ORV wasn't able to create the preset",
    "ORV wasn't able to create the preset, because a file creation failed: ",
    "Unable to create directory ",
    "Unable to create file '",
    "orvane: Out of memory\n",
    "usage: orvane-bus notify NAME | orvane-bus menu [FOLDER]\n",
    "what a signal handler sets must need no lock",
    "orvane menu",
)


def windows():
    found = importlib.util.spec_from_file_location("windows", HERE.parent / "update.py")
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module


def engine_texts():
    """The engine's texts, each once."""
    tool = windows()
    texts = list(tool.problem_texts()) + ["data", "nothing"] + list(tool.advice_texts())
    return [text for text in dict.fromkeys(texts) if re.search("[A-Za-z]{2}", text) and text == text.strip()]


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def run(*words):
    done = subprocess.run(words, cwd=TOP, capture_output=True, check=False, env={**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": ""})
    if done.returncode != 0:
        raise SystemExit(done.stderr.decode() or f"{words[0]} failed")
    return done.stderr.decode()


def make_template(folder):
    """All texts, in the order of files and of places in them."""
    engine = folder / "engine.cpp"
    engine.write_text("".join(f"localized({quoted(text)});\n" for text in engine_texts()), encoding="utf-8")
    sources = [str(path.relative_to(TOP)) for pattern in SOURCES for path in sorted(TOP.glob(pattern))]
    template = folder / "orvane.pot"
    run("xgettext", "--language=C++", "--qt", "--from-code=UTF-8", "--no-location", "--no-wrap", "--keyword", *FLAGS,
        *(f"--keyword={keyword}" for keyword in KEYWORDS), f"--output={template}", *sources, str(engine))
    # Newer versions take a "{}" for a format of C++20, although the flags above say what the texts are.
    template.write_text(template.read_text(encoding="utf-8").replace("#, c++-format, qt-format\n", "#, qt-format\n"), encoding="utf-8")
    return template


def merged(catalogue, template, folder):
    """What the catalogue would be after an update."""
    result = folder / catalogue.name
    run("msgmerge", "--quiet", "--no-fuzzy-matching", "--no-location", "--no-wrap", f"--output-file={result}", str(catalogue), str(template))
    run("msgattrib", "--no-obsolete", "--no-wrap", f"--output-file={result}", str(result))
    text = result.read_text(encoding="utf-8")
    return re.sub(r'^"POT-Creation-Date: [^"]*"\n', "", text, flags=re.M)


def misfits(catalogue, folder):
    """What is wrong with the translations as far as programs can tell."""
    statistics = run("msgfmt", "--check", "--check-format", "--statistics", f"--output-file={folder / 'checked.mo'}", str(catalogue))
    if re.search(r"fuzzy|untranslated", statistics):
        yield statistics.strip()
    tool = windows()
    for entry in re.split(r"\n\n+", catalogue.read_text(encoding="utf-8"))[1:]:
        for key, literals in re.findall(r"^(\w+)(?:\[\d\])? (" + tool.LITERALS + ")", entry, flags=re.M):
            text = tool.text_of(literals)
            if key != "msgstr":
                continue
            if text.count("\n") > 1 and max(map(len, text.split("\n"))) > LONGEST_LINE:
                yield f"a line of more than {LONGEST_LINE} columns: {text}"
            if re.search(r"(?:^|[ (])'", text):
                yield f"English quotation marks: {text}"


def unmarked_texts():
    """Texts for people that no call has translated."""
    tool = windows()
    literal = tool.LITERAL
    for pattern in SOURCES:
        for path in sorted(TOP.glob(pattern)):
            source = re.sub(r"(?m)//.*$", "", path.read_text(encoding="utf-8"))
            source = re.sub(r"(?s)\b(?:localized|forTranslation|localizedCount)\(\s*(?:" + literal + r"\s*)+(?:,\s*(?:" + literal + r"\s*)+)?", "", source)
            for found in re.findall(literal, source):
                if re.search(r"[A-Za-z]{2,} [A-Za-z(']", found) and tool.text_of(found) not in KEPT:
                    yield f"{path.relative_to(TOP)}: {found}"


def main(arguments):
    if arguments not in ([], ["--check"]):
        print(__doc__, file=sys.stderr)
        return 2
    wrong = []
    with tempfile.TemporaryDirectory() as made:
        folder = Path(made)
        template = make_template(folder)
        for catalogue in sorted(HERE.glob("*.po")):
            wanted = merged(catalogue, template, folder)
            if not arguments:
                catalogue.write_text(wanted, encoding="utf-8")
            elif catalogue.read_text(encoding="utf-8") != wanted:
                wrong.append(f"{catalogue.name}: not up to date; run: {Path(__file__).name}")
            wrong += [f"{catalogue.name}: {problem}" for problem in misfits(catalogue, folder)]
        wrong += [f"not translated: {text}" for text in unmarked_texts()]
    for problem in wrong:
        print(problem, file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
