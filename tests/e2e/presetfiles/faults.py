"""Import, export and add while system calls fail, which strace does, and beside what killed programs have left."""

import fcntl
import os
import plistlib
import re
import resource
import signal
import subprocess
import termios
import time
import unittest
from pathlib import Path

from homes import LIMIT, PROGRAM, Case, Home

CALL = re.compile(r"^(\w+)\(")
HIDDEN_NAMES = 100  # that the program tries
AT_ONCE = 4 << 20  # bytes of a file that it may copy before it looks whether it is to stop
# Leaves what killed programs of the same process number would have left in a folder, then becomes the program.
LEAVING = ["sh", "-c", 'folder=$1; for n in $2; do : > "$folder/.orvane-$$$n"; done; shift 2; exec "$@"', "sh"]


class Traced(Case):
    def setUp(self):
        super().setUp()
        self.other = Home(self.top)
        self.file = str(Path(self.top) / "out" / "preset.orvpreset")
        Path(self.file).parent.mkdir()
        self.source = self.folder()
        (self.source / "a.txt").write_text("text")
        (self.source / "a.txt").chmod(0o640)

    def packed(self, content=b"text"):
        """A preset file with one content file, "a.txt"."""
        packed = Path(self.top) / "packed.orvpreset"
        packed.write_bytes(plistlib.dumps({"ORVPresetFileVersion": 1, "ORVPreset": {"label": "L", "directoryName": "T", "fileHierarchy": {
            "children": [{"filename": "f", "contentFilename": "a.txt"}]}}, "ORVFileContents": {"a.txt": {"data": content, "mode": "640"}}}))
        return str(packed)

    def traced(self, home, *words, faults=(), under=(), **more):
        """Runs with the faults, each "CALL:error=...[:when=...]" or what else strace injects, all of which must happen. The result, and the
        calls that were made."""
        trace = Path(self.top) / "trace"
        injected = [word for fault in faults for word in ("-e", "inject=" + fault)]
        strace = ["strace", "-qq", "-y", "-s", "4096", "-o", str(trace), "-e", "signal=none", *injected]
        result = home.run(*words, under=[*strace, *under], **more)
        calls = [line for line in trace.read_text(errors="replace").splitlines() if CALL.match(line)]
        for fault in faults:
            self.assertTrue(any("(INJECTED" in call and call.startswith(fault.split(":")[0] + "(") for call in calls), (fault, calls))
        return result, calls

    def numbers(self, calls, name, *texts):
        """Which of the calls of that name hold the texts; the first is 1."""
        named = [call for call in calls if call.startswith(name + "(")]
        return [number for number, call in enumerate(named, 1) if all(text in call for text in texts)]


class Disturbed(Traced):
    def store(self, command, prepare, *faults, under=(), status=0):
        """Adds or imports "a.txt" in a new home where files without names cannot be made, with further faults. The home and the result."""
        words = ["add", self.packed()] if command == "add" else ["import", str(self.source), "--with-content"]
        homes = [Home(self.top), Home(self.top)]
        for home in homes:
            prepare(home)
        _, calls = self.traced(homes[0], *words, faults=[each for each in faults if "stat" in each], under=under(homes[0]) if under else (),
                               status=None)
        nameless = f"openat:error=EOPNOTSUPP:when={self.numbers(calls, 'openat', 'O_TMPFILE')[0]}"
        result, _ = self.traced(homes[1], *words, faults=[nameless, *faults], under=under(homes[1]) if under else (), status=status)
        return homes[1], result

    def test_contents_are_stored_where_files_need_names_and_renaming_cannot_refuse_to_replace(self):
        for command in ("add", "import"):
            for error in ("EINVAL", "ENOSYS"):
                for refused in ((), ("linkat:error=EPERM",), ("linkat:error=EOPNOTSUPP",)):
                    with self.subTest(command=command, error=error, refused=refused):
                        home, _ = self.store(command, lambda home: None, f"renameat2:error={error}", *refused)
                        self.assertEqual(home.stored(), ["a.txt"])
                        self.assertEqual((home.contents / "a.txt").read_text(), "text")
                        self.assertEqual((home.contents / "a.txt").stat().st_mode & 0o777, 0o640)
                        self.assertEqual(home.presets()[0]["fileHierarchy"]["children"][0]["contentFilename"], "a.txt")

    def test_contents_are_stored_where_files_have_no_modes(self):
        for error in ("EPERM", "ENOSYS"):
            home = Home(self.top)
            self.traced(home, "add", self.packed(), faults=[f"fchmod:error={error}:when=1"])
            self.assertEqual(home.stored(), ["a.txt"])
            self.assertEqual((home.contents / "a.txt").read_text(), "text")
            self.assertEqual((home.contents / "a.txt").stat().st_mode & 0o777, 0o600)

    def test_what_could_not_be_run_then_is_not_stored(self):
        (self.source / "tool.sh").write_text("#!/bin/sh\n")
        (self.source / "tool.sh").chmod(0o755)
        home = Home(self.top)
        result, _ = self.traced(home, "import", str(self.source), "--with-content", status=1, faults=["fchmod:error=EPERM"])
        self.assertIn(b"tool.sh cannot be stored: Operation not permitted", result.stderr)
        self.assertEqual(home.stored(), [])

    def test_preferences_are_stored_where_files_have_no_modes(self):
        for error in ("EPERM", "ENOSYS"):
            home = Home(self.top)
            home.run("add", self.packed())
            before = home.preferences.stat()
            self.traced(home, "add", self.packed(b"another text"), faults=[f"fchmod:error={error}"])  # those of contents
            self.assertEqual(len(home.presets()), 2)
            self.assertEqual(home.preferences.stat().st_mode, before.st_mode)
            home.preferences.chmod(0o640)  # which a new file has not of itself
            content = home.preferences.read_bytes()
            self.traced(home, "add", self.packed(), faults=[f"fchmod:error={error}"], status=1)
            self.assertEqual(home.preferences.read_bytes(), content)
            self.assertEqual(os.listdir(home.preferences.parent), [home.preferences.name])

    def test_the_first_preferences_are_stored_where_renaming_cannot_refuse_to_replace(self):
        for error in ("EINVAL", "ENOSYS", "EOPNOTSUPP", "EPERM"):
            home = Home(self.top)
            self.traced(home, "import", str(self.source), faults=[f"renameat2:error={error}"])
            self.assertEqual(len(home.presets()), 1)

    def test_preferences_that_do_not_read_back_are_read_by_a_descriptor_that_has_not_written(self):
        _, calls = self.traced(Home(self.top), "import", str(self.source))
        reading = self.numbers(calls, "read", ".orvane-preferences-0.tmp")[0]
        home = Home(self.top)
        self.traced(home, "import", str(self.source), faults=[f"read:poke_exit=@arg2=00000000:when={reading}"])
        self.assertEqual(len(home.presets()), 1)
        home = Home(self.top)  # where no reading gives it
        result, _ = self.traced(home, "import", str(self.source), faults=[f"read:poke_exit=@arg2=00000000:when={reading}+"], status=1)
        self.assertIn(b"the preferences cannot be written", result.stderr)
        self.assertEqual(os.listdir(home.preferences.parent), [])

    def test_a_file_that_appears_is_not_replaced_where_renaming_cannot_refuse_to(self):
        def prepare(home):
            home.contents.mkdir(parents=True)
            (home.contents / "a.txt").write_text("foreign")

        for command, words in (("add", ["add", self.packed()]), ("import", ["import", str(self.source), "--with-content"])):
            home = Home(self.top)
            prepare(home)
            _, calls = self.traced(home, *words)
            look = next(call for call in calls if "stat" in call.split("(")[0] and "File Content>" in call and '"a.txt"' in call)
            name = CALL.match(look)[1]
            number = self.numbers(calls, name, "File Content>", '"a.txt"')[0]
            unseen = f"{name}:error=ENOENT:when={number}"
            for refused in ((), ("linkat:error=EPERM",)):
                with self.subTest(command=command, refused=refused):
                    home, _ = self.store(command, prepare, unseen, "renameat2:error=EINVAL", *refused)
                    self.assertEqual(home.stored(), ["a 2.txt", "a.txt"])
                    self.assertEqual((home.contents / "a.txt").read_text(), "foreign")
                    self.assertEqual((home.contents / "a 2.txt").read_text(), "text")

    def leftovers(self, folder, *endings):
        return [*LEAVING, str(folder), " ".join(endings)]

    def left(self, folder):
        return [name for name in os.listdir(folder) if name.startswith(".orvane-")]

    def test_leftovers_of_killed_programs_do_not_hinder_an_export(self):
        self.home.write_preferences({"ORVPresets": [{"label": "L", "directoryName": "T"}]})
        out = Path(self.file).parent
        for force in ((), ("--force",)):
            self.home.run("export", "0", self.file, *force, under=self.leftovers(out, ".part", "-0", "-1"))
            self.assertTrue(Path(self.file).read_bytes().startswith(b"<?xml"))
            self.assertEqual(len(self.left(out)), 3)
            for name in self.left(out):
                (out / name).unlink()
            Path(self.file).write_text("mine")
            if not force:
                self.assertIn(b"--force", self.home.run("export", "0", self.file, status=1, under=self.leftovers(out, "-0")).stderr)
                self.assertEqual((len(self.left(out)), Path(self.file).read_text()), (1, "mine"))
                (out / self.left(out)[0]).unlink()

    def test_an_export_that_finds_no_hidden_name_does_not_say_that_the_file_exists(self):
        self.home.write_preferences({"ORVPresets": [{"label": "L", "directoryName": "T"}]})
        every = [f"-{number}" for number in range(HIDDEN_NAMES)]
        result = self.home.run("export", "0", self.file, status=1, under=self.leftovers(Path(self.file).parent, *every))
        self.assertNotIn(b"--force", result.stderr)
        self.assertIn(b"preset.orvpreset: Device or resource busy", result.stderr)
        self.assertEqual(len(self.left(Path(self.file).parent)), HIDDEN_NAMES)

    def test_an_addition_that_finds_no_hidden_name_fails_and_leaves_nothing(self):
        every = [f"-{number}" for number in range(HIDDEN_NAMES)]
        home, result = self.store("add", lambda home: home.contents.mkdir(parents=True), status=1,
                                  under=lambda home: self.leftovers(home.contents, *every))
        self.assertIn(b"the content file 'a.txt' cannot be stored: Device or resource busy", result.stderr)
        self.assertEqual(len(home.stored()), HIDDEN_NAMES)
        self.assertFalse(home.preferences.exists())

    def test_an_export_is_on_the_disk_with_its_name(self):
        self.home.write_preferences({"ORVPresets": [{"label": "L", "directoryName": "T"}]})
        for words in ((), ("--force",)):
            _, calls = self.traced(self.home, "export", "0", self.file, *words)
            flushed = [number for number, call in enumerate(calls) if call.startswith("fsync(")]
            renamed = [number for number, call in enumerate(calls) if call.startswith("rename")]
            self.assertEqual(len(renamed), 1)
            self.assertTrue(any(number < renamed[0] and ".orvane-" in calls[number] for number in flushed), calls)
            self.assertTrue(any(number > renamed[0] and f"<{Path(self.file).parent}>" in calls[number] for number in flushed), calls)

    def test_folders_that_cannot_be_listed_cost_no_descriptors(self):
        for number in range(100):
            (self.source / f"d{number}").mkdir()
        _, calls = self.traced(self.home, "import", str(self.source))
        asked = self.numbers(calls, "fcntl", "F_GETFL", str(self.source))
        self.assertEqual(len(asked), 101)
        result, _ = self.traced(self.other, "import", str(self.source), faults=[f"fcntl:error=EIO:when={asked[1]}+{asked[1] - asked[0]}"],
                                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (64, 64)))
        self.assertEqual(result.stderr.count(b": its contents are left out: Input/output error\n"), 100, result.stderr)

    def test_nothing_is_added_when_its_contents_do_not_reach_the_disk(self):
        for words in (("add", self.packed()), ("import", str(self.source), "--with-content")):
            home = Home(self.top)
            result, _ = self.traced(home, *words, faults=["syncfs:error=EIO"], status=1)
            title = "Preset not added" if words[0] == "add" else "Folder not imported"
            self.assertRegex(result.stderr.decode(), rf"^orvane: {title}: /.*/Orvane(/File Content)?: Input/output error\n$")
            self.assertEqual(result.stdout, b"")
            self.assertFalse(home.preferences.exists())
            self.assertEqual(home.stored(), [])

    def test_contents_are_stored_where_one_file_system_cannot_be_flushed_alone(self):
        self.traced(self.home, "add", self.packed(), faults=["syncfs:error=ENOSYS"])
        self.assertEqual(self.home.stored(), ["a.txt"])


class Interrupted(Traced):
    CALLS = ("openat", "open", "read", "pread64", "write", "pwrite64", "copy_file_range", "sendfile", "fsync", "syncfs")

    def sweep(self, make_home, words, after):
        """Interrupts each call on the files of presets in turn; `after` looks at what was made."""
        _, calls = self.traced(make_home(), *words)
        struck = set()
        for call in self.CALLS:
            numbers = {number for text in ("/File Content", "/Scripts", "/source/", "/out", "packed.orvpreset", ".orvane-")
                       for number in self.numbers(calls, call, text)}
            numbers -= set(self.numbers(calls, call, "/Library/Preferences"))
            for number in sorted(numbers):
                with self.subTest(command=words[0], call=call, number=number):
                    home = make_home()
                    result, _ = self.traced(home, *words, faults=[f"{call}:error=EINTR:when={number}"])
                    self.assertNotIn(b"Interrupted", result.stderr)
                    after(home)
                    struck.add(call)
        return struck

    def test_an_interrupted_call_is_made_again_by_add(self):
        struck = self.sweep(lambda: Home(self.top), ["add", self.packed()], lambda home: self.assertEqual(home.stored(), ["a.txt"]))
        self.assertLessEqual({"openat", "write", "syncfs"}, struck)

    def test_an_interrupted_call_is_made_again_by_import(self):
        (self.source / "folder").mkdir()
        (self.source / "folder" / "a.txt").write_text("another text")

        def check(home):
            self.assertEqual([(home.contents / name).read_text() for name in home.stored()], ["another text", "text"])

        struck = self.sweep(lambda: Home(self.top), ["import", str(self.source), "--with-content"], check)
        self.assertLessEqual({"openat", "pread64", "syncfs"}, struck)

    def test_an_interrupted_call_is_made_again_by_export(self):
        def home():
            Path(self.file).unlink(missing_ok=True)
            made = Home(self.top)
            made.run("add", self.packed())
            return made

        def check(_):
            self.assertEqual(plistlib.loads(Path(self.file).read_bytes())["ORVFileContents"]["a.txt"]["data"], b"text")
            self.assertEqual(os.listdir(Path(self.file).parent), ["preset.orvpreset"])

        struck = self.sweep(home, ["export", "0", self.file], check)
        self.assertLessEqual({"openat", "read", "write", "fsync"}, struck)

    def stop(self, home, signal, call, *words, when=1, faults=(), **more):
        """Sends the signal when the first such call begins, or a later one. The result."""
        trace = Path(self.top) / "trace"
        injected = [word for fault in (f"{call}:signal={signal.name}:when={when}", *faults) for word in ("-e", "inject=" + fault)]
        result = home.run(*words, under=["strace", "-qq", "-o", str(trace), *injected], status=-signal, **more)
        self.assertIn(f"--- {signal.name}", trace.read_text(errors="replace"))
        return result

    def bytes_moved(self, call):
        """In the calls of that name that the last trace holds."""
        done = re.findall(rf"^{call}\(.*\) = (\d+)", (Path(self.top) / "trace").read_text(errors="replace"), re.MULTILINE)
        return sum(int(count) for count in done)

    def test_a_signal_leaves_nothing_of_what_was_added(self):
        for words in (["add", self.packed()], ["import", str(self.source), "--with-content"]):
            for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
                # When contents get their name, when they go to the disk, when it is the preferences' turn.
                for call in ("linkat", "syncfs", "flock"):
                    with self.subTest(command=words[0], signal=number, call=call):
                        home = Home(self.top)
                        home.write_preferences({"ORVPresets": []})
                        before = home.preferences.read_bytes()
                        result = self.stop(home, number, call, *words)
                        self.assertEqual(result.stderr, b"orvane: interrupted, and what was made is removed again\n")
                        self.assertEqual(result.stdout, b"")
                        self.assertEqual(home.preferences.read_bytes(), before)
                        self.assertEqual(home.stored(), [])

    def test_a_signal_is_not_heeded_only_at_the_end_of_a_large_file(self):
        large = b"x" * (3 * AT_ONCE)
        (self.source / "a.txt").write_bytes(large)
        no_sharing, no_copying, no_sending = "ioctl:error=EOPNOTSUPP", "copy_file_range:error=EXDEV", "sendfile:error=EINVAL"
        imported = ["import", str(self.source), "--with-content"]
        added = ["add", self.packed(large)]
        for words, call, faults, is_there in (
                (imported, "copy_file_range", (no_sharing,), False), (imported, "sendfile", (no_sharing, no_copying), False),
                (imported, "pwrite64", (no_sharing, no_copying, no_sending), False), (added, "write", (), False),
                (imported, "pread64", (), True), (added, "pread64", (), True)):  # a file that may be the same is compared
            with self.subTest(command=words[0], call=call):
                home = Home(self.top)
                home.write_preferences({"ORVPresets": []})
                if is_there:
                    home.contents.mkdir(parents=True)
                    (home.contents / "a.txt").write_bytes(large)
                    (home.contents / "a.txt").chmod(0o640)
                result = self.stop(home, signal.SIGINT, call, *words, faults=faults)
                self.assertEqual(result.stderr, b"orvane: interrupted, and what was made is removed again\n")
                self.assertEqual(home.stored(), ["a.txt"] if is_there else [])
                self.assertEqual(home.presets(), [])
                self.assertLessEqual(self.bytes_moved(call), 2 * AT_ONCE)

    def test_what_an_interrupted_import_did_not_find_is_not_told(self):
        variables = [f"--variable={text}=V" for text in ("job", "nope")]  # two texts for one variable are looked for once more
        words = ["import", str(self.source), *variables, "--variable=nothing=W"]
        result, calls = self.traced(Home(self.top), *words)
        self.assertEqual(result.stderr.count(b" nowhere\n"), 2)
        first, again = self.numbers(calls, "openat", f'"{self.source}"')
        for when in (first, again):
            result = self.stop(Home(self.top), signal.SIGINT, "openat", *words, when=when)
            self.assertEqual((result.stderr, result.stdout), (b"orvane: interrupted, and what was made is removed again\n", b""))

    def test_a_signal_that_comes_too_late_leaves_what_was_added_whole(self):
        for words in (["add", self.packed()], ["import", str(self.source), "--with-content"]):
            home = Home(self.top)
            result = self.stop(home, signal.SIGINT, "fsync", *words)  # of the preferences
            self.assertEqual(result.stderr, b"")
            self.assertRegex(result.stdout, rb"^0  ")
            self.assertEqual(len(home.presets()), 1)
            self.assertEqual(home.stored(), ["a.txt"])

    def test_a_signal_ends_the_wait_for_another_program_and_leaves_nothing(self):
        for words in (["add", self.packed()], ["import", str(self.source), "--with-content"]):
            home = Home(self.top)
            home.run("add", self.packed())  # which makes the lock's file
            (home.contents / "a.txt").write_text("another one, so that a new file comes")
            before = home.preferences.read_bytes()
            with open(home.top / ".local/state/orvane/preferences.lock", "rb") as lock:
                fcntl.flock(lock, fcntl.LOCK_EX)
                with subprocess.Popen([PROGRAM, *words], env={"HOME": str(home.top)}, stderr=subprocess.PIPE) as program:
                    deadline = time.monotonic() + LIMIT
                    while len(home.stored()) < 2:  # it waits for the lock after that
                        self.assertLess(time.monotonic(), deadline)
                        time.sleep(0.001)
                    program.send_signal(signal.SIGINT)
                    started = time.monotonic()
                    self.assertEqual(program.stderr.read(), b"orvane: interrupted, and what was made is removed again\n")
                    self.assertEqual(program.wait(timeout=LIMIT), -signal.SIGINT)
                    self.assertLess(time.monotonic() - started, 5, "it waits ten seconds for the lock")
            self.assertEqual(home.stored(), ["a.txt"])
            self.assertEqual(home.preferences.read_bytes(), before)

    def test_a_broken_pipe_leaves_nothing_or_all(self):
        (self.source / "link").symlink_to("a.txt")  # of which there is a warning, before anything is kept
        for words in (["add", self.packed()], ["import", str(self.source), "--with-content"]):
            home = Home(self.top)
            reading, writing = os.pipe()
            os.close(reading)
            with subprocess.Popen([PROGRAM, *words], env={"HOME": str(home.top)}, stderr=writing, stdout=writing) as program:
                os.close(writing)
                self.assertEqual(program.wait(timeout=LIMIT), -signal.SIGPIPE)
            self.assertEqual((len(home.presets()), home.stored()), (1, ["a.txt"]))

    def test_what_is_kept_is_not_said_to_be_gone(self):
        home = Home(self.top)
        trace = ["strace", "-qq", "-o", str(Path(self.top) / "trace"), "-e", "inject=fsync:signal=SIGINT:when=1"]
        result = home.run("add", self.packed(), under=["sh", "-c", 'exec "$@" >/dev/full', "sh", *trace], status=-signal.SIGINT)
        self.assertEqual(result.stderr, b"orvane: Standard output: No space left on device\n")
        self.assertEqual(len(home.presets()), 1)

    def test_a_signal_ends_what_waits_for_a_pipe(self):
        with subprocess.Popen([PROGRAM, "add", "-"], env={"HOME": str(self.home.top)}, stdin=subprocess.PIPE) as program:
            os.write(program.stdin.fileno(), b"<")
            deadline = time.monotonic() + LIMIT
            while fcntl.ioctl(program.stdin, termios.FIONREAD, b"\0" * 4) != b"\0" * 4:  # it has taken the byte, and wants more
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.001)
            program.send_signal(signal.SIGINT)
            self.assertEqual(program.wait(timeout=LIMIT), -signal.SIGINT)


if __name__ == "__main__":
    unittest.main()
