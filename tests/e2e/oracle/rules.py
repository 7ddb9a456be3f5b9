"""Orvane's rules a second time, in Python, as a test oracle.

Nothing here is shared with the C++ core: every rule is written out on its own, as plainly as possible and without a
thought for speed, so that a mistake would have to be made twice to stay unseen. Texts are Python strings; bytes that
are no UTF-8 are carried as surrogate escapes. Where a rule counts or compares characters it does so in UTF-16 units.
"""

import copy
import os
import stat
from dataclasses import dataclass, field

from texts import (  # noqa: F401 (some are only passed on)
    FINDER_INFO_SIZE,
    LABEL_COLORS,
    LABEL_MASK,
    LABEL_NOT_FOUND,
    bool_of_button_state,
    color_from_hex,
    finder_info_with_label,
    flags_with_label,
    join,
    label_number,
    last_component,
    message_of_format,
    mode_of_permissions,
    text_of_units,
    to_bytes,
    units,
    without_file_system_entities,
    without_last_component,
)

FINDER_INFO = "user.com.apple.FinderInfo"
TAGS = "user.xdg.tags"
NAME_MAX_BYTES = 255

TITLE_BLANK = "Top level folder name is blank"
MESSAGE_BLANK = "Make sure that the top-level folder name for this preset has been set in the ORV Preference Pane."
TITLE_EXISTS = "Directory already exists"
TITLE_FAILED = "ORV wasn't able to create the preset"
MESSAGE_FAILED = "ORV wasn't able to create the preset, because a file creation failed: "
TITLE_SCRIPT_MISSING = "Script file not found"
TITLE_SCRIPT_NOT_EXECUTABLE = "Script file not executable"
TITLE_SCRIPT_ERRORS = "Script reported errors"


class NeverEnds(Exception):
    """The scan for keys would go round for ever in this text."""

    def __init__(self, text):
        super().__init__(text)
        self.text = text


def text_value(value):
    """Text of a property-list value, None when it has none: numbers count as their digits, data as their bytes."""
    if isinstance(value, str):
        return value
    if isinstance(value, bool):
        return None
    if isinstance(value, int):
        return str(value)
    if isinstance(value, float):
        return f"{value:g}"
    if isinstance(value, (bytes, bytearray)):
        return bytes(value).decode("utf-8", "surrogateescape")
    return None


def bool_value(value):
    """Boolean value of a property-list value. A text is true when it starts, after blanks, one sign and zeros, with
    Y, T (either case) or a digit 1 to 9."""
    if isinstance(value, bool):
        return value
    if isinstance(value, (int, float)):
        return value != 0
    if isinstance(value, str):
        rest = value.lstrip(" \t")
        if rest[:1] in ("+", "-"):
            rest = rest[1:]
        rest = rest.lstrip("0")
        return rest[:1] != "" and rest[0] in "YyTt123456789"
    return False


def dictionary(value):
    return value if isinstance(value, dict) else {}


def children_of(node):
    value = node.get("children")
    return value if isinstance(value, list) else []


# Keys -----------------------------------------------------------------------------------------------------------------


def _find(haystack, needle, start, length):
    """First position of `needle` inside the range, or -1."""
    last = start + length - len(needle)
    for position in range(start, last + 1):
        if haystack[position : position + len(needle)] == needle:
            return position
    return -1


def _replace_units(values, old, new):
    result = []
    position = 0
    while position < len(values):
        if values[position : position + len(old)] == old:
            result += new
            position += len(old)
        else:
            result.append(values[position])
            position += 1
    return result


def find_keys(text, open_tag="{", close_tag="}"):
    """Keys of a text in order of appearance, duplicates kept. Raises NeverEnds where the scan would not return."""
    whole, opening, closing = units(text), units(open_tag), units(close_tag)
    backslash = 0x5C
    length = len(whole)
    if not opening or not closing or length < len(opening) + len(closing) + 1:
        return []
    keys = []
    outer_start, outer_length = 0, length
    while outer_length > 0 and outer_start + outer_length <= length:
        i = _find(whole, opening, outer_start, outer_length)
        if i < 0:
            return keys
        if i > 0 and whole[i - 1] == backslash:
            outer_start, outer_length = i + 1, length - i - 1
            continue
        inner_start, inner_length = i + 1, length - i - 1
        closed = False
        while inner_length > 0 and inner_start + inner_length <= length:
            j = _find(whole, closing, inner_start, inner_length)
            if j < 0:
                return keys
            if whole[j - 1] == backslash:
                inner_start, inner_length = j + 1, length - j - 1
                continue
            key = whole[i + 1 : j]
            key = _replace_units(key, [backslash] + opening, opening)
            key = _replace_units(key, [backslash] + closing, closing)
            if key:
                keys.append(text_of_units(key))
            outer_start, outer_length = j + 1, length - j - 1
            closed = True
            break
        if not closed:
            raise NeverEnds(text)
    return keys


def clean(name):
    """A name fit for one path component: ":" and "/" become "_"."""
    return name.replace(":", "_").replace("/", "_")


def replace(template, rows):
    """The template with its braces unescaped and each row's key replaced everywhere, row after row."""
    if template == "" or not rows:
        return template
    text = template.replace("\\{", "{").replace("\\}", "}")
    for key, value in rows:
        text = text.replace("{" + key + "}", value)
    return text


def scan_hierarchy(node, names):
    """Appends the names that the node's file name and, for a folder, everything below it use."""
    node = dictionary(node)
    filename = text_value(node.get("filename"))
    if filename is not None:
        for key in find_keys(clean(filename)):
            if key not in names:
                names.append(key)
    if bool_value(node.get("isFolder")):
        for child in children_of(node):
            scan_hierarchy(child, names)


def root_node(preset):
    """The tree's root: always a folder, without a name, label or mode of its own."""
    root = dict(dictionary(preset.get("fileHierarchy")))
    root["isFolder"] = True
    for key in ("permissions", "filename", "color"):
        root.pop(key, None)
    return root


def variable_list(preset):
    """Names that the prompt asks for: the folder name's with duplicates, then the tree's that are new."""
    names = list(find_keys(text_value(preset.get("directoryName")) or ""))
    scan_hierarchy(root_node(preset), names)
    return names


# Automatic variables --------------------------------------------------------------------------------------------------


def is_automatic(name):
    return name.lower().startswith("auto")


def scan_integer(text):
    """Integer at the start of a text as a 64-bit scanner reads it: white space, one sign, digits; too large a number
    stops at the limit. None when there is no digit."""
    rest = text.lstrip(" \t\n\v\f\r")
    negative = rest[:1] == "-"
    if rest[:1] in ("+", "-"):
        rest = rest[1:]
    digits = ""
    for character in rest:
        if character not in "0123456789":
            break
        digits += character
    if digits == "":
        return None
    value = -int(digits) if negative else int(digits)
    return max(-(2**63), min(2**63 - 1, value))


def default_value(name, automatic):
    """What the prompt offers for a variable."""
    if not is_automatic(name):
        return ""
    stored = text_value(automatic.get(name))
    if stored is None or stored == "":
        return "0"
    number = scan_integer(stored)
    if number is None:
        return stored
    low = (number + 1) & 0xFFFFFFFF
    return str(low - 2**32 if low >= 2**31 else low)


def preset_names(presets):
    """Labels of the presets that have one; positions can differ from preset indexes."""
    return [text_value(p["label"]) for p in presets if isinstance(p, dict) and text_value(p.get("label")) is not None]


# Items on disk --------------------------------------------------------------------------------------------------------


@dataclass
class Item:
    """One item of a tree. `modified` is the time in nanoseconds where it matters, else None."""

    kind: str  # folder, file, link, other
    mode: int = 0
    data: bytes = b""
    children: dict = field(default_factory=dict)
    attributes: dict = field(default_factory=dict)
    modified: int | None = None
    made: bool = False


def _attributes_of(target, follow=True):
    try:
        names = os.listxattr(target, follow_symlinks=follow)
    except OSError:
        return {}
    return {name: os.getxattr(target, name, follow_symlinks=follow) for name in names if name.startswith("user.")}


def snapshot(name, folder=None, times=False):
    """The item as it stands on disk, everything below it included. Works below a folder descriptor, so that paths of
    any length can be read."""
    status = os.stat(name, dir_fd=folder, follow_symlinks=False)
    mode = stat.S_IMODE(status.st_mode)
    if stat.S_ISLNK(status.st_mode):
        return Item("link", 0, os.readlink(name, dir_fd=folder))
    if not (stat.S_ISDIR(status.st_mode) or stat.S_ISREG(status.st_mode)):
        return Item("other", mode)
    descriptor = os.open(name, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC, dir_fd=folder)
    try:
        item = Item("file", mode, attributes=_attributes_of(descriptor))
        if stat.S_ISDIR(status.st_mode):
            item.kind = "folder"
            item.children = {os.fsencode(n): snapshot(os.fsencode(n), descriptor, times) for n in os.listdir(descriptor)}
        else:
            with open(descriptor, "rb", closefd=False) as stream:
                item.data = stream.read()
            item.modified = status.st_mtime_ns if times else None
        return item
    finally:
        os.close(descriptor)


def content_source(path):
    """What a content file's copy looks like, or None where an empty file takes its place. A symbolic link is followed
    to a file's end; a folder counts only when it is there itself."""
    raw = to_bytes(path)
    if not os.access(raw, os.R_OK):
        return None
    status = os.stat(raw)
    if os.path.islink(raw):
        return snapshot(os.path.realpath(raw), times=True) if stat.S_ISREG(status.st_mode) else None
    if stat.S_ISREG(status.st_mode) or stat.S_ISDIR(status.st_mode):
        return snapshot(raw, times=True)
    return None


# Creation -------------------------------------------------------------------------------------------------------------


@dataclass
class World:
    """What a creation stands on: the process's mask and the support folder."""

    umask: int
    support: str


@dataclass
class Creation:
    """State of one creation: the last error's text and the number of nodes made."""

    world: World
    rows: list
    error: str | None = None
    nodes: int = 0


def node_name(node, rows):
    return clean(replace(text_value(node.get("filename")) or "", rows))


def _possible(name):
    return name not in (b".", b"..") and len(name) <= NAME_MAX_BYTES and b"\0" not in name


def _make_folder(parent, name, creation):
    present = parent.children.get(name)
    if present is not None:
        return present if present.kind == "folder" else None
    if not _possible(name):
        return None
    inherited = parent.mode & stat.S_ISGID
    parent.children[name] = Item("folder", (0o777 & ~creation.world.umask) | inherited, made=True)
    return parent.children[name]


def _mark_made(item):
    item.made = True
    for child in item.children.values():
        _mark_made(child)


def _make_file(parent, name, node, creation):
    if not _possible(name):
        return None
    content = text_value(node.get("contentFilename")) or ""
    present = parent.children.get(name)
    if present is None:
        source = None
        if content != "":
            source = content_source(join(join(creation.world.support, "File Content"), content))
        made = copy.deepcopy(source) if source else Item("file", 0o666 & ~creation.world.umask)
        _mark_made(made)
        parent.children[name] = made
        return made
    if present.kind == "file" and present.made:
        present.data, present.modified = b"", None
        return present
    return None


def tags_with_color(color, tags):
    """The comma-joined tags of an item that gets a label: another label's tag goes, other tags stay."""
    names = [color_tag(name) for name in LABEL_COLORS[1:]]
    kept = [tag for tag in (tags or b"").split(b",") if tag and tag not in names]
    return b",".join(kept + [color_tag(color)])


def color_tag(color):
    return color.capitalize().encode()


def _apply_attributes(item, node):
    color = text_value(node.get("color"))
    label = label_number(color)
    if label not in (0, LABEL_NOT_FOUND):
        item.attributes[FINDER_INFO] = finder_info_with_label(item.attributes.get(FINDER_INFO), label)
        item.attributes[TAGS] = tags_with_color(color, item.attributes.get(TAGS))
    mode = mode_of_permissions(text_value(node.get("permissions")))
    if mode is not None:
        item.mode = mode


def create_node(node, parent, base, creation):
    """Makes the node in the folder `parent`, whose path is `base`. False at the first failure, which leaves its text in
    `creation.error`, except for an empty name."""
    node = dictionary(node)
    name = node_name(node, creation.rows)
    if name == "":
        return False
    path = join(base, name)
    if bool_value(node.get("isFolder")):
        item = _make_folder(parent, to_bytes(name), creation)
        if item is None:
            creation.error = f"Unable to create directory {path}."
            return False
        for child in children_of(node):
            if not create_node(child, item, path, creation):
                return False
    else:
        item = _make_file(parent, to_bytes(name), node, creation)
        if item is None:
            creation.error = f"Unable to create file '{path}'."
            return False
    _apply_attributes(item, node)
    creation.nodes += 1
    return True


# Driver ---------------------------------------------------------------------------------------------------------------


@dataclass
class Outcome:
    """What one run does. `alerts` are texts as the user sees them; `automatic` is None when nothing is stored."""

    rows: list = field(default_factory=list)
    asked: bool = False
    automatic: dict | None = None
    top_path: str | None = None
    made_path: str | None = None
    created: bool = False
    nodes: int = 0
    alerts: list = field(default_factory=list)
    script: str | None = None
    environment: dict | None = None
    opens: bool = False


def alert(title, message):
    return title, message_of_format(message)


def environment_of_script(top_path, rows):
    result = {"ORV_CONTEXT": "postflight", "ORV_ROOT_PATH": top_path}
    for key, value in rows:
        result["P_" + key.upper().replace(" ", "_")] = value
    return result


def default_rows(preset, automatic):
    return [[name, default_value(name, automatic)] for name in variable_list(preset)]


def opens_folder(script_path):
    """Whether the new folder is opened: not when the script's name says that it deals with Finder itself."""
    return script_path is None or "finder" not in last_component(script_path).lower()


def create_hierarchy(preset, parent_path, parent, automatic, answer, exists, world):
    """One run of a preset in the folder `parent` (changed in place). `answer` gets the rows and returns false to give
    up; `exists` tells whether something stood at a path before the run."""
    outcome = Outcome()
    template = text_value(preset.get("directoryName")) or ""
    root = root_node(preset)
    outcome.rows = default_rows(preset, automatic)
    name = template
    if outcome.rows:
        outcome.asked = True
        if not answer(outcome.rows):
            return outcome
        name = replace(template, outcome.rows)
        outcome.automatic = dict(automatic)
        for key, value in outcome.rows:
            if is_automatic(key):
                outcome.automatic[key] = value
    if name == "":
        outcome.alerts.append(alert(TITLE_BLANK, MESSAGE_BLANK))
        return outcome
    outcome.top_path = join(parent_path, name)
    if exists(outcome.top_path):
        text = f"'{last_component(outcome.top_path)}' already exists in '{without_last_component(outcome.top_path)}'."
        outcome.alerts.append(alert(TITLE_EXISTS, text))
        return outcome
    root["filename"] = name
    creation = Creation(world, outcome.rows)
    made_name = node_name(root, outcome.rows)
    outcome.made_path = join(parent_path, made_name)
    if not create_node(root, parent, parent_path, creation):
        _remove_made(parent, to_bytes(made_name), outcome)
        description = "(null)" if creation.error is None else creation.error
        outcome.alerts.append(alert(TITLE_FAILED, MESSAGE_FAILED + description))
        return outcome
    outcome.created = True
    outcome.nodes = creation.nodes
    script_file = text_value(preset.get("scriptFile")) or ""
    if script_file != "":
        outcome.script = join(join(world.support, "Scripts"), script_file)
        outcome.environment = environment_of_script(outcome.top_path, outcome.rows)
    outcome.opens = opens_folder(outcome.script)
    return outcome


def _remove_made(parent, name, outcome):
    """After a failure only the checked path is cleared, and only of what this run made there."""
    item = parent.children.get(name)
    if outcome.made_path == outcome.top_path and item is not None and item.made:
        del parent.children[name]


def script_alert(path, succeeded):
    """The alert of a script's run, or None. `succeeded` tells how a script that can be started ends: True, False, or
    None when it cannot be started at all. A folder has the access right that is asked for, and then cannot be started."""
    name = last_component(path)
    start = f"'{name}' is the specified script file for this preset, "
    if not os.path.exists(to_bytes(path)):
        return alert(TITLE_SCRIPT_MISSING, start + "but that file doesn't exist.")
    if not os.access(to_bytes(path), os.X_OK):
        return alert(TITLE_SCRIPT_NOT_EXECUTABLE, start + "but that file isn't executable.")
    if not succeeded:
        text = "and it reported errors during its execution. Check Console.app for more information on why the script failed."
        return alert(TITLE_SCRIPT_ERRORS, start + text)
    return None


def parse_script_output(text):
    """Key and value pairs of a script's standard output."""
    result = {}
    for line in text.split("\n"):
        key, equals, value = line.partition("=")
        if equals and key and value:
            result[key.strip(" \t")] = value.strip(" \t")
    return result


# Command line ---------------------------------------------------------------------------------------------------------


def split_assignment(word, names):
    """NAME=VALUE as a pair, split where it leaves the longest of the names, else at the first "="."""
    for name in sorted(names, key=len, reverse=True):
        if word.startswith(name + "="):
            return name, word[len(name) + 1 :]
    name, _, value = word.partition("=")
    return name, value


def fill_rows(rows, settings):
    """Fills rows from (name, value) settings: a name given several times fills its rows in order, its last value all
    that remain. Returns the names of rows left at their default."""
    left = []
    used = {}
    for row in rows:
        values = [value for name, value in settings if name == row[0]]
        if not values:
            left.append(row[0])
            continue
        position = used.get(row[0], 0)
        row[1] = values[min(position, len(values) - 1)]
        used[row[0]] = position + 1
    return left


def settings_left_over(names, settings):
    """The names among (name, value) settings that are none of the rows' names, in order, and those that are given more values than there
    are rows of the name, by their bytes."""
    given = [name for name, _ in settings]
    unknown = [name for name in dict.fromkeys(given) if name not in names]
    surplus = [name for name in dict.fromkeys(given) if 0 < names.count(name) < given.count(name)]
    return unknown, sorted(surplus, key=to_bytes)
