"""Figures as Markdown: tables, goals beside what was measured, the machine."""

import os
import platform
import statistics
import subprocess
import time

BEGIN, END = "<!-- results: begin -->", "<!-- results: end -->"
RATIO_GOALS = {"W0": 2.0, "W1": 1.5, "W2": 1.15, "W3": 1.05, "W4": 1.05, "F": 1.05, "D": 1.5, "DL": 1.5}
PEER_GOALS = {"tar --transform": 2, "cp -a + rename": 3, "cookiecutter": 60}
MEMORY_GOALS = {"W0": 4, "W3": 12, "W4": 64}
PEER_WORKLOADS = ("W0", "W1", "W2", "W3", "W4")


def _output(*words):
    done = subprocess.run(words, capture_output=True, text=True, check=False)
    return done.stdout.strip() if done.returncode == 0 else ""


def machine(project, programs, launcher):
    models = [line.split(":", 1)[1].strip() for line in open("/proc/cpuinfo", encoding="utf-8") if line.startswith("model name")]
    memory = next(int(line.split()[1]) for line in open("/proc/meminfo", encoding="utf-8") if line.startswith("MemTotal"))
    commit = _output("git", "-C", project, "rev-parse", "--short", "HEAD") or "unknown"
    if _output("git", "-C", project, "status", "--porcelain"):
        commit += " with local changes"
    return {"cpu": models[0] if models else platform.machine(), "cores": os.cpu_count(), "memory_gb": round(memory / 1048576),
            "kernel": platform.release(), "compiler": _output("c++", "--version").split("\n")[0], "date": time.strftime("%Y-%m-%d %H:%M"),
            "commit": commit, "load_before": os.getloadavg()[0], "memory_floor": launcher.floor,
            "orvane_bytes": os.path.getsize(programs.orvane) if programs.orvane else None}


def shown_command(words):
    """The command line without the options that only say where things lie."""
    shown, rest = [], iter(words)
    for word in rest:
        if word in ("--bin", "--json", "--orvane"):
            next(rest, None)
        else:
            shown.append(word)
    return " ".join(shown)


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "|".join("---" if i == 0 else "---:" for i in range(len(header))) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def milliseconds(value):
    return f"{value * 1e3:.2f} ms" if value < 0.01 else f"{value * 1e3:.0f} ms" if value < 1 else f"{value:.2f} s"


def times(value):
    return f"{value:.2f}x" if value < 10 else f"{value:.0f}x"


def answer(is_met):
    return "yes" if is_met else "**no**"


# Goals --------------------------------------------------------------------------------------------------------------------

def goal_rows(results):
    """(goal, where, wanted, measured, met) for everything that was measured and has a goal."""
    for one in results["races"]:
        name, ours = one["workload"], one["methods"].get("orvane")
        where = f"{name}, {one['fs']}"
        if "orvane" in one["wrong"]:
            yield "the right tree", where, "no difference", one["wrong"]["orvane"], False
        if ours is None:
            continue
        if name in RATIO_GOALS:
            yield "time to limit", where, f"at most {RATIO_GOALS[name]}x", f"{ours['ratio']:.3f}x (processor {ours['cpu_ratio']:.3f}x)", ours["ratio"] <= RATIO_GOALS[name]
        if name in MEMORY_GOALS:
            yield "peak memory", where, f"at most {MEMORY_GOALS[name]} MB", f"{ours['memory']:.1f} MB", ours["memory"] <= MEMORY_GOALS[name]
        for peer, factor in PEER_GOALS.items():
            if name in PEER_WORKLOADS and peer in one["methods"]:
                ratio = one["methods"][peer]["to_orvane"]
                yield f"faster than {peer}", where, f"at least {factor}x", times(ratio), ratio >= factor
    yield from _linearity_rows(results)
    yield from _probe_rows(results)


def _linearity_rows(results):
    """Time for each node added between two sizes, which stays the same when the cost is linear; `limit` shows what the file
    system itself does."""
    by_key = {(one["fs"], one["workload"]): one for one in results["races"]}
    for kind in dict.fromkeys(one["fs"] for one in results["races"]):
        if not all((kind, name) in by_key and "orvane" in by_key[kind, name]["methods"] for name in ("W2", "W3", "W4")):
            continue
        cost = lambda method, small, big: (by_key[kind, big]["methods"][method]["cpu"] - by_key[kind, small]["methods"][method]["cpu"]) / (
            by_key[kind, big]["nodes"] - by_key[kind, small]["nodes"])
        growth = {method: cost(method, "W3", "W4") / cost(method, "W2", "W3") for method in ("limit", "orvane")}
        yield ("linear cost", f"W2 to W4, {kind}", "processor time a node grows at most 1.1 times as much as limit's",
               f"{growth['orvane']:.2f} (limit {growth['limit']:.2f})", growth["orvane"] <= 1.1 * max(1.0, growth["limit"]))


def _probe_rows(results):
    calls = results.get("calls", {}).get("orvane")
    if calls:
        nodes = round(calls["calls"] / calls["per_node"])
        wanted = int(2.6 * nodes + 150)
        yield "system calls", "W2", f"at most 2.6 a node + 150 = {wanted}", f"{calls['calls']}", calls["calls"] <= wanted
        yield "no sync, no rename", "W2", "0 and 0", f"{calls['syncs']} and {calls['renames']}", calls["syncs"] == calls["renames"] == 0
        yield "content files opened once", "W2", f"{calls['content_files']}", f"{calls['content_opens']}", 0 < calls["content_opens"] == calls["content_files"]
    for key, one in results["undo"].items():
        yield "removal after a failure", key.replace(" ", ", "), "at most 1.1 times the creation", f"{one['orvane']['ratio']:.2f} (limit {one['limit']['ratio']:.2f})", one["orvane"]["ratio"] <= 1.1
    for kind, one in results["big"].items():
        if one["way"] == "clone":
            yield "2 GB content, shared blocks", kind, "at most 5 ms", milliseconds(one["orvane"]), one["orvane"] <= 0.005
        else:
            yield "2 GB content", kind, "at most 1.05 times sendfile", f"{one['ratio']:.3f}x", one["ratio"] <= 1.05
    chain = results.get("chain")
    if chain:
        is_met = chain["status"] == 0 and chain["differences"] == 0
        yield f"{chain['levels']:,} levels", f"{chain['descriptors']:,} descriptors", "complete", "complete" if is_met else f"exit status {chain['status']}, {chain['differences']} differences", is_met


# Document -----------------------------------------------------------------------------------------------------------------

def _processor_cell(figures):
    if figures is None:
        return "-"
    # The kernel tells the two parts apart by its clock's ticks, too coarse for short runs.
    outside = f", {milliseconds(figures['user'])} outside" if figures["cpu"] >= 0.1 else ""
    return f"{milliseconds(figures['cpu'])} ({times(figures['cpu_ratio'])}){outside}; {figures['memory']:.1f} MB"


def _race_tables(results):
    for kind in dict.fromkeys(one["fs"] for one in results["races"]):
        races = [one for one in results["races"] if one["fs"] == kind]
        names = list(dict.fromkeys(method for one in races for method in [*one["methods"], *one["wrong"]]))
        yield f"### Whole commands on {kind}\n\nMedian wall time; in brackets the median of the ratios to `limit` in the same round, smallest to largest.\n"
        rows = []
        for method in names:
            cells = [method]
            for one in races:
                figures = one["methods"].get(method)
                if figures is None:
                    cells.append("not complete" if method in one["wrong"] else "-")
                elif method == "limit":
                    cells.append(milliseconds(figures["wall"]))
                else:
                    once = ", once" if figures["runs"] == 1 and one["rounds"] > 1 else ""
                    spread = f", {figures['ratio_min']:.2f} to {figures['ratio_max']:.2f}" if figures["runs"] > 1 else ""
                    cells.append(f"{milliseconds(figures['wall'])} ({times(figures['ratio'])}{spread}{once})")
            rows.append(cells)
        yield table([f"{kind}"] + [one["workload"] for one in races], rows) + "\n"
        yield "Processor time, median: in all, its ratio to that of `limit`, of long runs the part outside the kernel; peak memory.\n"
        rows = [[method] + [_processor_cell(one["methods"].get(method)) for one in races] for method in names]
        yield table([f"{kind}"] + [one["workload"] for one in races], rows) + "\n"
        for one in races:
            for method, text in [*one["wrong"].items(), *one["left_out"].items()]:
                yield f"- {one['workload']}, {method}: {text.replace('|', '/')}"
        loads = [load for one in races for load in one["loads"]]
        yield f"\nRounds: {', '.join(one['workload'] + ' ' + str(one['rounds']) for one in races)}. Load average during them: {min(loads):.2f} to {max(loads):.2f}, median {statistics.median(loads):.2f}.\n"


def _probe_tables(results):
    if results.get("calls"):
        yield "### System calls at W2\n"
        yield table(["method", "calls", "a node", "syncs", "renames", "opens of content files", "most frequent"],
                    [[name, str(one["calls"]), f"{one['per_node']:.2f}", str(one["syncs"]), str(one["renames"]), str(one["content_opens"]),
                      ", ".join(f"{call} {count}" for call, count in list(one["most"].items())[:6])] for name, one in results["calls"].items()]) + "\n"
    if results["undo"]:
        yield "### Removal after a failure\n\nThe last node of the tree cannot be made (a name of 256 bytes). Time beyond that of the same creation without that node.\n"
        yield table(["tree", "orvane: creation", "removal", "ratio", "processor ratio", "limit: ratio"],
                    [[key, milliseconds(one["orvane"]["creation"]), milliseconds(one["orvane"]["removal"]), f"{one['orvane']['ratio']:.2f}",
                      f"{one['orvane']['cpu_ratio']:.2f}", f"{one['limit']['ratio']:.2f}"] for key, one in results["undo"].items()]) + "\n"
    if results["big"]:
        yield "### One content file of 2 GB\n"
        yield table(["file system", "limit", "orvane", "ratio", "peak memory"],
                    [[f"{kind} ({one['way']})", milliseconds(one["limit"]), milliseconds(one["orvane"]), times(one["ratio"]), f"{one['memory']:.1f} MB"]
                     for kind, one in results["big"].items()]) + "\n"
    chain = results.get("chain")
    if chain:
        yield f"A chain of {chain['levels']:,} folders under {chain['descriptors']:,} descriptors took {milliseconds(chain['wall'])} and {chain['memory']:.1f} MB.\n"


def markdown(results):
    where = results["machine"]
    parts = [f"Measured {where['date']} at commit {where['commit']} with `{shown_command(results['command'])}`.\n",
             f"Machine: {where['cpu']}, {where['cores']} cores, {where['memory_gb']} GB, kernel {where['kernel']}; {where['compiler']}. "
             f"Load average before {where['load_before']:.2f}, after {where['load_after']:.2f}. Least peak memory that can be seen: {where['memory_floor']:.1f} MB.\n"]
    rows = [[goal, place, wanted, got, answer(is_met)] for goal, place, wanted, got, is_met in goal_rows(results)]
    if rows:
        met = sum(1 for row in rows if row[-1] == "yes")
        parts += [f"### Goals\n\n{met} of {len(rows)} met.\n", table(["goal", "where", "wanted", "measured", "met"], rows) + "\n"]
    parts += list(_race_tables(results)) + list(_probe_tables(results))
    if results["not_measured"]:
        parts += ["### Not measured\n"] + [f"- {text}" for text in results["not_measured"]] + [""]
    return "\n".join(parts)


def replace_section(path, text):
    """Puts the text between the two marks of a document."""
    with open(path, encoding="utf-8") as file:
        document = file.read()
    before, rest = document.split(BEGIN)
    after = rest.split(END)[1]
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{before}{BEGIN}\n\n{text}\n{END}{after}")
