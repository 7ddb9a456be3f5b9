"""Measurements beside the plain race: system calls, removal after a failure, big contents, deep chains."""

import os
import re
import shutil
import statistics
import subprocess

import measure
import methods
import verify
import workloads

GIGABYTES_2 = 2 << 30
DESCRIPTORS = 1024
CHAIN = 3000
# A line of strace that says that a file was opened for reading: its name.
OPENED = r'open(?:at|at2)?\([^"\n]*"([^"\n]*)"[^\n]*O_RDONLY[^\n]* = \d+'


def _strace(method, target, *options):
    """Output of strace over one run of a method."""
    report = target + ".strace"
    done = subprocess.run(["strace", "-f", *options, "-o", report, *method.command(target)],
                          env=measure.clean_environment(method.environment), cwd="/", umask=0o022,
                          stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False)
    if done.returncode not in method.good_statuses:
        raise RuntimeError(f"{method.name} under strace ended with {done.returncode}: {done.stderr}")
    with open(report, encoding="utf-8", errors="replace") as file:
        text = file.read()
    os.unlink(report)
    return text


def system_calls(sources, targets, contestants, say):
    """Calls of the whole process by method: in all, for each node, and those that goals speak of."""
    result = {}
    for method in contestants:
        target = targets.fresh()  # once before, as what a first use of a home makes is not made again
        subprocess.run(method.command(target), env=measure.clean_environment(method.environment), cwd="/", check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        targets.remove(target)
        target = targets.fresh()
        counts = {}
        for line in _strace(method, target, "-c").splitlines():
            words = line.split()
            if len(words) >= 5 and words[3].isdigit():
                counts[words[-1]] = int(words[3])
        targets.remove(target)
        target = targets.fresh()
        opened = re.findall(OPENED, _strace(method, target, "-e", "trace=open,openat,openat2"))
        targets.remove(target)
        contents = [path for path in opened if os.path.basename(path) in sources.workload.contents]
        total = counts.pop("total")
        result[method.name] = {
            "calls": total, "per_node": total / (sources.workload.nodes + 1),
            "syncs": sum(counts.get(name, 0) for name in ("fsync", "fdatasync", "sync", "syncfs", "sync_file_range")),
            "renames": sum(counts.get(name, 0) for name in ("rename", "renameat", "renameat2")),
            "content_opens": len(contents), "content_files": len(set(contents)),
            "most": dict(sorted(counts.items(), key=lambda item: -item[1])[:10])}
        say(f"  {method.name}: {total} calls")
    return result


def undo(name, folder, programs, launcher, rounds, say):
    """Time of a creation whose very last node cannot be made, against that of the same one without that node."""
    good, bad = os.path.join(folder, "good"), os.path.join(folder, "bad")
    os.mkdir(good)
    os.mkdir(bad)
    fine = methods.Sources(workloads.make(name), good, programs)
    workload = workloads.make(name)
    workload.top.children.append(workloads.Node("x" * 256))  # one byte more than a name may have
    failing = methods.Sources(workload, bad, programs)
    contestants = [fine.limit(), fine.limit("limit and removal", "--undo"), fine.orvane(),
                   failing.orvane("orvane, last node fails", good_statuses=(1,))]
    targets = measure.Targets(folder)
    target = targets.fresh()
    launcher.run(contestants[3].command(target), contestants[3].environment)
    left = verify.found(target)
    targets.remove(target)
    if left:
        raise RuntimeError(f"{len(left)} items stay after a failed creation")
    series, loads = measure.measure_rounds(launcher, contestants, targets, rounds, say)
    result = {"rounds": rounds, "loads": loads}
    for key, made, both in (("limit", "limit", "limit and removal"), ("orvane", "orvane", "orvane, last node fails")):
        pairs = list(zip(series[made].runs, series[both].runs))
        result[key] = {"creation": series[made].median("wall"),
                       "removal": statistics.median(b.wall - a.wall for a, b in pairs),
                       "ratio": statistics.median((b.wall - a.wall) / a.wall for a, b in pairs),
                       "cpu_ratio": statistics.median((b.cpu - a.cpu) / a.cpu for a, b in pairs)}
    shutil.rmtree(good)
    shutil.rmtree(bad)
    return result


def big_content(folder, programs, launcher, way, rounds, say):
    """One content file of 2 GB, against `limit` with sendfile or with shared blocks."""
    sources = methods.Sources(workloads.make("L"), folder, programs)
    block = os.urandom(1 << 20)
    master = os.path.join(sources.store, "Master.mov")
    with open(master, "wb", buffering=0) as file:
        for _ in range(GIGABYTES_2 // len(block)):
            file.write(block)
    measure.settle(folder)
    targets = measure.Targets(folder)
    contestants = [sources.limit("limit", way), sources.orvane()]
    target = targets.fresh()
    launcher.run(contestants[1].command(target), contestants[1].environment)
    made = os.path.join(target, sources.workload.resolved("{Project}"), "Master.mov")
    same = subprocess.run(["cmp", "--silent", master, made], check=False).returncode == 0
    targets.remove(target)
    if not same:
        raise RuntimeError("the copy of the big content file differs")
    series, loads = measure.measure_rounds(launcher, contestants, targets, rounds, say)
    return {"way": way.lstrip("-"), "rounds": rounds, "loads": loads,
            "limit": series["limit"].median("wall"), "orvane": series["orvane"].median("wall"),
            "ratio": statistics.median(series["orvane"].ratios(series["limit"])),
            "cpu_ratio": statistics.median(series["orvane"].ratios(series["limit"], "cpu")),
            "memory": series["orvane"].peak_memory()}


def deep_chain(folder, programs, launcher):
    """A chain of 3,000 folders made with no more than 1,024 descriptors; what is there in the end."""
    sources = methods.Sources(workloads.make(f"chain:{CHAIN}"), folder, programs)
    target = os.path.join(folder, "target")
    os.mkdir(target)
    method = sources.orvane()
    run = launcher.run(method.command(target), method.environment, descriptors=DESCRIPTORS)
    problems = verify.differences(workloads.expected(sources.workload), target)
    measure.remove_tree(target)
    return {"levels": CHAIN, "descriptors": DESCRIPTORS, "status": run.status, "differences": len(problems), "wall": run.wall,
            "memory": run.memory, "errors": run.errors.strip()[:300]}
