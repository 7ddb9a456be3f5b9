"""Workloads of the comparison: hierarchies, the same for every method, and the files that each method starts from.

A workload is a tree of nodes with templates for names, the values of its variables and the content files. From it come
the preset in a home of its own, plans for `limit` (names resolved, or as templates, with which `limit` makes the source
trees of the copying methods) and the list of what must be on disk in the end. Everything is drawn from a fixed seed, so
two runs measure the same trees.

What the trees model: W0 is a film production as somebody would lay it out by hand. W1 to W4 are such hierarchies grown
to 100, 1,000, 10,000 and 100,000 nodes (asset libraries, episodes with shots): 30 % folders down to depth 6, half of
the files empty, half 4 KB copies of a few content files, a fifth of the names with variables, a tenth of the nodes
with a mode, a tenth with a label. D and DL are chains of 500 folders, DL with paths longer than the system takes in one
piece; F is one folder with 100,000 files, L one file of 2 GB. C0 and C2 are W0 and W2 with a counter in
the name of the top folder, which has to be stored for the next time.
"""

import hashlib
import os
import random
from xml.sax.saxutils import escape

SEED = 20261
KILOBYTES_4 = 4096
VALUES = {"Client": "Acme & Sons", "Project": "Lighthouse", "Camera": "FX9", "Editor": "Jo Döring", "Date": "2026-11-21"}
COUNTER = {"AutoJob": "42"}
LABELS = ["", "gray", "green", "purple", "blue", "yellow", "red", "orange"]
SIZES = {"W1": 100, "W2": 1_000, "W3": 10_000, "W4": 100_000}
ALL = ["W0", "W1", "W2", "W3", "W4", "D", "DL", "F", "C0", "C2"]


class Node:
    """A folder (children is a list) or a file (children is None)."""

    __slots__ = ("name", "children", "mode", "label", "content")

    def __init__(self, name, children=None, mode=None, label=0, content=None):
        self.name, self.children, self.mode, self.label, self.content = name, children, mode, label, content


class Workload:
    """A tree with everything that a method needs to make it; `top.name` is the template of the top folder."""

    def __init__(self, name, top, values, contents, indented=True):
        self.name, self.top, self.values, self.contents, self.indented = name, top, values, contents, indented
        self.nodes = sum(1 for _ in walk(top)) - 1  # without the top folder

    def resolved(self, template):
        for key, value in self.values.items():
            template = template.replace("{" + key + "}", value)
        return template

    def cookiecutter_name(self, template):
        for key in self.values:
            template = template.replace("{" + key + "}", "{{cookiecutter." + key + "}}")
        return template


def walk(node):
    """Nodes of a tree, a folder before its contents, without recursion (chains are deeper than the interpreter goes)."""
    pending = [node]
    while pending:
        node = pending.pop()
        yield node
        if node.children:
            pending.extend(reversed(node.children))


def text_of_content(index, size=KILOBYTES_4):
    """Plain text without braces, so that template engines that read contents find nothing to do in it."""
    line = f"Content file {index}: call sheet, contacts, schedule, equipment, locations, releases.\n".encode()
    return (line * (size // len(line) + 1))[: size - 1] + b"\n"


def film_production(values):
    contents = {"Project.prproj": text_of_content(0), "Budget.ods": text_of_content(1)}
    folder = lambda name, *children, **more: Node(name, list(children), **more)
    top = folder(
        "{Date}_{Client}_{Project}" if "AutoJob" not in values else "{AutoJob}_{Client}_{Project}",
        folder("01_Footage", folder("{Camera}_A"), folder("{Camera}_B"), label=6),
        folder("02_Audio"),
        folder("03_Project", Node("{Project}.prproj", content="Project.prproj")),
        folder("04_Graphics"),
        folder("05_Exports", mode="750"),
        folder("06_Documents", Node("Budget_{Project}.ods", content="Budget.ods"), Node("Shotlist.txt"), Node("Notes_{Editor}.txt", mode="640")),
    )
    return top, contents


def grown(count, generator, values):
    """`count` nodes below the top: folders first, each in a random one that is not too deep, then files spread evenly."""
    words = ["Footage", "Audio", "Stills", "Graphics", "Scene", "Shot", "Take", "Proxy", "Grade", "Comp", "Notes", "Export"]
    contents = {f"Content {i}.txt": text_of_content(i) for i in range(8)}
    folders, depths, nodes = [Node("{Client}_{Project}" if "AutoJob" not in values else "{AutoJob}_{Client}_{Project}", [])], [0], []
    for serial in range(count * 3 // 10):
        chain = serial if serial < 5 else None  # the first five make sure that the full depth is there
        parent = chain if chain is not None else generator.choice([generator.randrange(len(folders)) for _ in range(4)])
        while depths[parent] >= 5:
            parent = generator.randrange(len(folders))
        node = Node(f"{generator.choice(words)}_{serial:06d}", [], label=0)
        folders[parent].children.append(node)
        folders.append(node)
        depths.append(depths[parent] + 1)
        nodes.append(node)
    files = [Node(f"{generator.choice(words)}_{serial:06d}.txt") for serial in range(count - len(nodes))]
    for serial, node in enumerate(files):
        folders[serial % len(folders)].children.append(node)
    decorate(nodes + files, files, generator, contents)
    for folder in folders:
        generator.shuffle(folder.children)
    return folders[0], contents


def decorate(nodes, files, generator, contents):
    for serial, node in enumerate(generator.sample(files, len(files) // 2)):
        node.content = f"Content {serial % len(contents)}.txt"
    keys = list(VALUES)
    for serial, node in enumerate(generator.sample(nodes, len(nodes) // 5)):
        node.name = "{" + keys[serial % len(keys)] + "}_" + node.name
    for node in generator.sample(nodes, len(nodes) // 10):
        node.mode = "640" if node.children is None else "750"
    for serial, node in enumerate(generator.sample(nodes, len(nodes) // 10)):
        node.label = 1 + serial % 7


def chain(count, length):
    """`count` folders, each in the one before; names of `length` characters."""
    top = Node("{Project}", [])
    folder = top
    for serial in range(count):
        inner = Node(f"{serial:0{length}d}", [])
        folder.children.append(inner)
        folder = inner
    return top


def make(name):
    """The workload of that name; "chain:N" is a chain of N folders for the test of open descriptors."""
    generator = random.Random(SEED)
    values = {**COUNTER, **VALUES} if name in ("C0", "C2") else dict(VALUES)
    if name in ("W0", "C0"):
        return Workload(name, *_swap(film_production(values), values))
    if name in SIZES or name == "C2":
        return Workload(name, *_swap(grown(SIZES.get(name, 1_000), generator, values), values))
    if name in ("D", "DL"):
        return Workload(name, chain(500, 3 if name == "D" else 20), {"Project": VALUES["Project"]}, {})
    if name.startswith("chain:"):
        return Workload(name, chain(int(name[6:]), 4), {"Project": VALUES["Project"]}, {}, indented=False)
    if name == "F":
        contents = {f"Content {i}.txt": text_of_content(i) for i in range(8)}
        files = [Node(f"Frame_{serial:06d}.txt") for serial in range(100_000)]
        decorate(files, files, generator, contents)
        return Workload(name, Node("{Client}_{Project}", files), values, contents)
    if name == "L":
        return Workload(name, Node("{Project}", [Node("Master.mov", content="Master.mov")]), {"Project": VALUES["Project"]}, {})
    raise ValueError(f"no workload {name}")


def _swap(tree_and_contents, values):
    return tree_and_contents[0], values, tree_and_contents[1]


# What the methods start from ------------------------------------------------------------------------------------------

HEADER = """<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
"""


def preset_xml(workload):
    """The preferences file with this one preset, laid out as the system that the format comes from writes it: tab-indented,
    keys sorted. Chunks of text; a chain gets long lines that way, as it would there."""
    tabs = (lambda depth: "\t" * depth) if workload.indented else (lambda depth: "")
    yield HEADER + f"<dict>\n{tabs(1)}<key>ORVPresets</key>\n{tabs(1)}<array>\n{tabs(2)}<dict>\n"
    yield f"{tabs(3)}<key>directoryName</key>\n{tabs(3)}<string>{escape(workload.top.name)}</string>\n"
    yield f"{tabs(3)}<key>fileHierarchy</key>\n"
    pending = [("open", workload.top, 3)]
    while pending:
        what, node, depth = pending.pop()
        inner = tabs(depth + 1)
        if what == "open":
            parts = [f"{tabs(depth)}<dict>\n"]
            if node.children:
                parts.append(f"{inner}<key>children</key>\n{inner}<array>\n")
                pending.append(("close", node, depth))
                pending.extend(("open", child, depth + 2) for child in reversed(node.children))
            elif node.children is not None:
                parts.append(f"{inner}<key>children</key>\n{inner}<array/>\n")
            yield "".join(parts)
            if node.children:
                continue
        else:
            yield f"{inner}</array>\n"
        yield "".join(_properties(node, inner)) + f"{tabs(depth)}</dict>\n"
    yield f"{tabs(3)}<key>label</key>\n{tabs(3)}<string>{workload.name}</string>\n"
    yield f"{tabs(2)}</dict>\n{tabs(1)}</array>\n</dict>\n</plist>\n"


def _properties(node, indent):
    """Every field of a node, empty ones too, as a form that is filled in and saved leaves them."""
    fields = [("color", LABELS[node.label]), ("filename", escape(node.name)), ("permissions", node.mode or "")]
    if node.children is None:
        fields.insert(1, ("contentFilename", escape(node.content or "")))
    for key, text in fields:
        if key == "permissions":
            yield f"{indent}<key>isFolder</key>\n{indent}<{'true' if node.children is not None else 'false'}/>\n"
        yield f"{indent}<key>{key}</key>\n{indent}<string>{text}</string>\n"


def write_home(workload, home):
    """A home with the preset and its content files; returns the environment for `orvane`."""
    preferences = os.path.join(home, "Library", "Preferences")
    store = os.path.join(home, "data", "Orvane", "File Content")
    os.makedirs(preferences)
    os.makedirs(store)
    with open(os.path.join(preferences, "org.orvane.ORVPrefPane.plist"), "w", encoding="utf-8") as file:
        file.writelines(preset_xml(workload))
    for name, data in workload.contents.items():
        with open(os.path.join(store, name), "wb") as file:
            file.write(data)
    return {"HOME": home, "XDG_DATA_HOME": os.path.join(home, "data"), "XDG_STATE_HOME": os.path.join(home, "state")}


def content_store(home):
    return os.path.join(home, "data", "Orvane", "File Content")


def content_names(workload):
    return ["Master.mov"] if workload.name == "L" else list(workload.contents)


def write_plan(workload, path, store, naming):
    """A plan for `limit`; `naming` turns a template into the name to make. Content files are taken from `store`."""
    numbers = {name: number for number, name in enumerate(content_names(workload))}
    with open(path, "w", encoding="utf-8") as plan:
        for name in numbers:
            plan.write(f"c\t{os.path.join(store, name)}\n")
        pending = [workload.top]
        while pending:
            node = pending.pop()
            if node is None:
                plan.write("u\n")
            elif node.children is None:
                content = numbers[node.content] if node.content else "-"
                plan.write(f"f\t{node.mode or '-'}\t{node.label}\t{content}\t{naming(node.name)}\n")
            else:
                plan.write(f"d\t{node.mode or '-'}\t{node.label}\t{naming(node.name)}\n")
                pending.append(None)
                pending.extend(reversed(node.children))


def expected(workload):
    """What must be on disk: relative path to (is a folder, mode, label, digest of the contents), by a walk of its own."""
    digests = {name: hashlib.sha1(data).digest() for name, data in workload.contents.items()}
    digests[None] = hashlib.sha1(b"").digest()
    result = {}
    pending = [(workload.top, "")]
    while pending:
        node, parent = pending.pop()
        path = parent + "/" + workload.resolved(node.name)
        is_folder = node.children is not None
        mode = int(node.mode, 8) if node.mode else (0o755 if is_folder else 0o644)
        result[path] = (is_folder, mode, node.label, None if is_folder else digests[node.content])
        if is_folder:
            pending.extend((child, path) for child in node.children)
    return result
