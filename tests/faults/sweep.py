#!/usr/bin/env python3
"""Makes every system call of a creation fail in turn, or kills the program there, and looks at what is left.

    sweep.py --orvane PROGRAM [--short] [--only NAME] [--verbose]

strace fails the calls. It counts them by name and by thread, so a fault is a name and a number. The program is followed
without its children first; the calls of the child that becomes the script are failed in a second part."""

import argparse
import collections
import os
import re
import shutil
import sys

import workshop

ERRORS = ("EIO", "ENOSPC", "EACCES", "EMFILE", "ENOMEM", "EINTR", "EROFS")
SHORT_ERRORS = ("EIO", "ENOSPC")
# These do not come back, or always answer with a value; a refused brk answers with an address that strace cannot know.
NEVER_FAIL = {"execve", "exit", "exit_group", "getpid", "geteuid", "getuid", "getegid", "getgid", "gettid", "umask",
              "set_tid_address", "arch_prctl", "brk"}
ALWAYS = (("flock", 2, "EIO", True),)  # in the short form, too: a file system on which nothing can be locked
POLLED = {"wait4": 1, "clock_nanosleep": 1}  # called as long as the script runs; so many calls of each are certain
FIRST_OWN_CALL = "fcntl"  # of `main`; what is before is the C library making itself ready
CALL = re.compile(r"^(?:\d+ +)?(\w+)\(")

NOTE = "orvane: note: an earlier creation was killed half-way; 'orvane recover' shows what it left\n"
ATTEMPTS = 5
MOST_MISSED = 0.02  # of all faults
MOST_PRINTED = 1000

Fault = collections.namedtuple("Fault", "call number error onwards path", defaults=(None,))


def described(fault):
    return f"{fault.call}:{fault.number}{'+' if fault.onwards else ''}:{fault.error}" + (f" of {fault.path}" if fault.path else "")


def limits_of(names):
    """Numbers up to which a call of that name can be failed as the kernel would fail it."""
    limits = dict(POLLED)
    # A close that strace fails leaves the descriptor open, as no real one does; of a pipe somebody would wait for the end.
    limits["close"] = names[: names.index("pipe2")].count("close")
    return limits


class Sweep:
    def __init__(self, shop, variant, options):
        self.shop = shop
        self.variant = variant
        self.options = options
        self.trace = os.path.join(shop.root, "trace")
        self.runs = 0
        self.results = collections.Counter()
        self.failures = []
        self.missed = []

    # Running under strace.

    def traced(self, words, *more, follow=False):
        before = ["strace", "-qq", "-o", self.trace, "-e", "signal=none", *(["-f"] if follow else []), *more]
        return self.shop.run(before + words)

    def lines(self):
        with open(self.trace, encoding="utf-8", errors="replace") as opened:
            return opened.read().splitlines()

    def calls(self):
        """Names of the calls of an undisturbed run, in order, and how many of them come before `main`."""
        self.shop.prepare(**self.variant)
        result = self.traced(self.shop.words("Acme"))
        if result[0] != 0:
            raise SystemExit(f"the undisturbed run failed: {result}")
        names = [match[1] for match in map(CALL.match, self.lines()) if match]
        return names, names.index(FIRST_OWN_CALL)

    def calls_of_child(self, script):
        """Calls of the script's process up to its becoming the script, with the path they name, if any."""
        self.shop.prepare(**self.variant)
        self.traced(self.shop.words("Acme"), follow=True)
        lines = self.lines()
        child = next(line.split()[0] for line in lines if " execve(" in line and script in line)
        own = [line for line in lines if line.startswith(child + " ") and CALL.match(line)]
        found = []
        for line in own:
            name = CALL.match(line)[1]
            path = re.search(r'"(/[^"]*)"', line)
            found.append((name, path[1] if path else None))
            if name == "execve":
                return found
        raise SystemExit("the script's process is not in the trace")

    # One fault.

    def strike(self, fault, before_main):
        # Whether the preferences are read once more depends on how long ago they were written: the last calls of a name are
        # not there every time.
        for _ in range(ATTEMPTS):
            result, struck = self.attempt(fault)
            if struck:
                break
        self.runs += 1
        if not struck:
            self.missed.append(fault)
            complaints = []
        elif fault.error == "KILL":
            complaints = self.judge_killed()
        else:
            complaints = self.judge(result, before_main, mute=fault.call == "write" and fault.onwards)
        complaints += self.judge_next()
        if self.options.verbose or complaints:
            print(f"{described(fault)} -> {result} {complaints}"[:MOST_PRINTED], flush=True)
        if complaints:
            self.failures.append((fault, complaints))

    def attempt(self, fault):
        """The result of a run with the fault, and whether it happened."""
        self.shop.prepare(**self.variant)
        what = "signal=KILL" if fault.error == "KILL" else "error=" + fault.error
        when = f"{fault.number}{'+' if fault.onwards else ''}"
        more = ["-e", f"inject={fault.call}:{what}:when={when}"]
        if fault.path:
            more += ["-P", fault.path]
        result = self.traced(self.shop.words("Acme"), *more, follow=fault.path is not None)
        if fault.error == "KILL":
            return result, result[0] == -9
        return result, any("(INJECTED)" in line for line in self.lines())

    # What is left.

    def judge(self, result, before_main, mute=False):
        status, out, err = result
        if status is None:
            return ["it hung"]
        complaints = self.shop.foreign()
        counter = self.shop.counter(complaints)
        made = self.shop.made()
        self.results[status] += 1
        if before_main and status not in (0, 1, 4):
            self.results[status] -= 1
            self.results["before main"] += 1
            return complaints + ([] if not made and counter == workshop.NUMBER else ["something was changed before `main`"])
        temporary = os.path.join(os.path.dirname(self.shop.preferences), workshop.TEMPORARY)
        if os.path.lexists(temporary):
            complaints.append("a temporary file is left beside the preferences")
        name = f"Acme {workshop.NUMBER + 1}"
        if status in (0, 4):
            complaints += self.judge_made(status, out, err, counter, name)
        elif status == 1:
            complaints += self.judge_refused(out, err, counter, made, mute)
        elif status == 2:
            if made or counter != workshop.NUMBER or not err.startswith("orvane: create: the current folder cannot be used: "):
                complaints.append("wrong usage that is none")
        else:
            complaints.append(f"status {status}")
        return complaints

    def judge_made(self, status, out, err, counter, name):
        complaints = []
        if err.startswith(workshop.NOT_STORED):
            err = err[len(workshop.NOT_STORED):]
        elif counter != workshop.NUMBER + 1:
            complaints.append("the counter was not stored, and nobody was told")
        path = os.path.join(self.shop.target, name)
        if self.shop.made() != {name} and not self.numbered_anew(out):
            return complaints + [f"made {self.shop.made()}"]
        if out != path + "\n" and not self.numbered_anew(out):
            complaints.append(f"printed {out!r}")
        complaints += self.shop.complete(os.path.basename(out.rstrip("\n")) if out else name, "Acme", script=status == 0)
        title = err.removeprefix("orvane: ").split(":")[0]
        if status == 0 and err:
            complaints.append(f"success with {err!r}")
        if status == 4 and not title.startswith("Script "):
            complaints.append(f"unknown title {title!r}")
        return complaints

    def numbered_anew(self, out):
        """Counters that could not be read start anew, and are not stored then."""
        return out.endswith("/Acme 0\n") and self.shop.made() == {"Acme 0"}

    def judge_refused(self, out, err, counter, made, mute):
        complaints = []
        name = f"Acme {workshop.NUMBER + 1}"
        told = err
        # It comes before what is said of a folder that was made, and after why none was.
        err = err.removeprefix(workshop.NOT_STORED).removesuffix(workshop.NOT_STORED)
        lines = err.splitlines()
        title = lines[0].removeprefix("orvane: ").split(":")[0] if lines else ""
        if made == {name} and (title == "Standard output" or (mute and not err)):
            return complaints + self.shop.complete(name, "Acme")  # made, but the path could not be told
        if made:
            complaints.append(f"left behind: {made}")
        if out:
            complaints.append(f"printed {out!r}")
        if title not in workshop.TITLES:
            complaints.append(f"unknown title {title!r}")
        if title.startswith("ORV wasn't"):
            place = f"{workshop.FAILED}(directory {re.escape(self.shop.target)}/[^']*\\.|file '{re.escape(self.shop.target)}/[^']*'\\.)"
            if counter == workshop.NUMBER and not told.endswith(workshop.NOT_STORED):
                complaints.append("the counter was not stored, and nobody was told")
            if len(lines) != 1 or not re.fullmatch("orvane: ORV wasn't able to create the preset: " + place, lines[0]):
                complaints.append(f"unknown message {lines}")
        if counter is None:
            complaints.append("no counter")
        return complaints

    def judge_killed(self):
        complaints = self.shop.foreign(after_kill=True)
        counter = self.shop.counter(complaints)
        made = self.shop.made()
        name = f"Acme {workshop.NUMBER + 1}"
        self.results["killed"] += 1
        if made - {name}:
            complaints.append(f"left behind: {made}")
        if made:
            if counter != workshop.NUMBER + 1:
                complaints.append("a number was used before it was stored")
            wanted = workshop.names_of("Acme") | {workshop.WRITTEN, "Media/kit"}
            left = set(workshop.snapshot(os.path.join(self.shop.target, name)))
            strange = {each for each in left - wanted if not workshop.HIDDEN.search(each)}
            if strange:
                complaints.append(f"left behind that is none of its own: {strange}")
            self.results["killed, and something is left"] += 1
        return complaints

    def judge_next(self):
        """The next run succeeds, and cleans the place beside the preferences."""
        complaints = []
        before = self.shop.made()
        number = self.shop.counter(complaints)
        if number is None:
            return complaints
        status, out, err = self.shop.run(self.shop.words("Next"))
        name = f"Next {number + 1}"
        err = err.removesuffix(NOTE)
        if (status, out, err) != (0, os.path.join(self.shop.target, name) + "\n", ""):
            return complaints + [f"the next run failed: {(status, out, err)}"]
        complaints += self.shop.complete(name, "Next")
        if self.shop.made() != before | {name}:
            complaints.append("the next run took something away")
        complaints += self.judge_recovery(before)
        beside = set(os.listdir(os.path.dirname(self.shop.preferences)))
        if beside != {os.path.basename(self.shop.preferences)}:
            complaints.append(f"beside the preferences: {beside}")
        return complaints

    def judge_recovery(self, before):
        """What a killed creation left is taken away; everything else stays."""
        status, out, err = self.shop.run([self.shop.program, "recover", "--remove"])
        if status != 0 or err:
            return [f"no recovery: {(status, out, err)}"]
        if out:
            self.results["killed, and recovered"] += 1
        # What was complete when it was killed is no remains.
        left = self.shop.made() & before
        return [f"still there after the recovery: {left}"] if left and out else []

    # All faults.

    def faults(self, names):
        if self.options.short:
            yield from (Fault(*each) for each in ALWAYS)
        counts = collections.Counter(names)
        limits = limits_of(names)
        for call, count in sorted(counts.items()):
            if self.options.only and call != self.options.only:
                continue
            count = min(count, limits.get(call, count))
            numbers = range(1, count + 1) if not self.options.short else sorted({1, count})
            errors = SHORT_ERRORS if self.options.short else ERRORS
            for number in numbers:
                if call not in NEVER_FAIL:
                    for error in errors:
                        yield Fault(call, number, error, False)
                if (call, number) != ("execve", 1):  # that one is strace's
                    yield Fault(call, number, "KILL", False)
            if call not in NEVER_FAIL and not self.options.short and call not in ("unlinkat", "close"):
                for number in numbers:
                    for error in ERRORS:
                        if error != "EINTR":  # nobody is interrupted for ever
                            yield Fault(call, number, error, True)

    def run(self):
        names, own = self.calls()
        before_main = collections.Counter(names[:own])
        for fault in self.faults(names):
            self.strike(fault, fault.number <= before_main[fault.call])
        if not self.options.short:
            self.run_child()
        return len(names)

    def run_child(self):
        """The calls of the script's process that name a path: only there can they be told from the program's own."""
        for call, path in self.calls_of_child(self.shop.script):
            if path is None or (self.options.only and call != self.options.only):
                continue
            for error in ERRORS:
                self.strike(Fault(call, 1, error, False, path), False)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--orvane", required=True)
    parser.add_argument("--short", action="store_true")
    parser.add_argument("--only")
    parser.add_argument("--verbose", action="store_true")
    options = parser.parse_args()
    if shutil.which("strace") is None:
        raise SystemExit("strace is missing")
    shop = workshop.Workshop(os.path.abspath(options.orvane))
    variants = {"first run, XML": {}, "later run, binary": {"binary": True, "used": True}}
    if options.short:
        variants = {"first run, XML": {}}
    failures = 0
    try:
        for title, variant in variants.items():
            sweep = Sweep(shop, variant, options)
            calls = sweep.run()
            failures += len(sweep.failures)
            if len(sweep.missed) > MOST_MISSED * sweep.runs:
                failures += 1
                print(f"too many faults did not happen: {[described(fault) for fault in sweep.missed][:20]}")
            endings = ", ".join(f"{key}: {count}" for key, count in sorted(sweep.results.items(), key=lambda item: str(item[0])) if count)
            print(f"{title}: {calls} calls, {sweep.runs} faults, {len(sweep.missed)} of which did not happen, "
                  f"{len(sweep.failures)} with complaints. Status or end: {endings}")
    finally:
        shop.close()
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
