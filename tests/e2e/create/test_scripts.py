"""Postflight scripts and the opening of the new folder."""

import os
import resource
import signal
import subprocess
import unittest

from harness import DEADLINE, PROGRAM, OrvaneTest, RunningScript, file, preset


class Scripts(OrvaneTest):
    def run_script(self, text, name="x.sh", mode=0o755, words=(), variables="{job no}{Straße}"):
        self.write_script(name, text, mode)
        self.write_presets(preset("P", "top" + variables, scriptFile=name))
        return self.create("0", "--no-input", "--json", *words)

    def test_the_environment_is_exactly_what_belongs_to_the_creation(self):
        result = self.run_script(f"#!/bin/sh\n/usr/bin/env > {self.root}/seen\n", words=("--set", "job no=7", "--set", "Straße=a b"))
        self.assertEqual(result.status, 0)
        with open(os.path.join(self.root, "seen"), encoding="utf-8") as seen:
            lines = dict(line.split("=", 1) for line in seen.read().splitlines())
        for shells_own in ("PWD", "OLDPWD", "SHLVL", "_"):
            lines.pop(shells_own, None)
        self.assertEqual(lines, {"ORV_CONTEXT": "postflight", "ORV_ROOT_PATH": self.in_target("top7a b"), "P_JOB_NO": "7",
                                 "P_STRASSE": "a b"})

    def test_it_gets_no_arguments_no_input_and_the_working_folder(self):
        result = self.run_script(f"#!/bin/sh\n{{ echo $#; pwd; cat; ls /proc/self/fd | wc -l; }} > {self.root}/seen\n")
        self.assertEqual(result.status, 0)
        with open(os.path.join(self.root, "seen"), encoding="utf-8") as seen:
            self.assertEqual(seen.read().split("\n")[:2], ["0", self.target])

    def test_a_limit_for_the_size_of_files_kills_nobody_and_holds_for_scripts_as_ever(self):
        self.write_content("long", b"x" * 4096)
        self.write_script("x.sh", f"#!/bin/sh\ngrep SigIgn /proc/self/status > {self.root}/seen\n")
        self.write_presets(preset("P", "top", file("copy", contentFilename="long"), scriptFile="x.sh"))
        before = resource.getrlimit(resource.RLIMIT_FSIZE)
        resource.setrlimit(resource.RLIMIT_FSIZE, (2000, before[1]))
        self.addCleanup(resource.setrlimit, resource.RLIMIT_FSIZE, before)
        self.assertEqual(self.create("0", "--no-open").status, 0)
        self.assertEqual(os.path.getsize(self.in_target("top", "copy")), 0)
        self.assertIn("/top/copy': File too large", self.log()[0])
        with open(os.path.join(self.root, "seen"), encoding="utf-8") as seen:
            self.assertEqual(int(seen.read().split()[1], 16) & 1 << signal.SIGXFSZ - 1, 0)

    def test_the_program_waits_for_it(self):
        result = self.run_script(f"#!/bin/sh\n/bin/sleep 0.3\n: > {self.root}/done\n")
        self.assertEqual(result.status, 0)
        self.assertTrue(os.path.exists(os.path.join(self.root, "done")))

    def test_the_path_is_told_before_it_runs_and_so_also_when_it_is_interrupted(self):
        # The script reads what the program has printed by then, and stops it as Ctrl-C would.
        self.write_script("x.sh", f"#!/bin/sh\ncat {self.root}/told > {self.root}/seen\nkill -INT $PPID\nexec sleep 60\n")
        self.write_presets(preset("P", "top", scriptFile="x.sh"))
        with open(os.path.join(self.root, "told"), "wb") as told:
            done = subprocess.run([PROGRAM, "create", "0", "--no-open"], stdin=subprocess.DEVNULL, stdout=told, stderr=subprocess.PIPE,
                                  env=self.env, cwd=self.target, timeout=DEADLINE, check=False)
        self.assertEqual((done.returncode, done.stderr), (-signal.SIGINT, b""))
        for name in ("seen", "told"):
            self.assertEqual(self.content(os.path.join(self.root, name)).decode(), self.in_target("top") + "\n")

    def test_it_runs_also_where_nobody_reads_the_path(self):
        self.write_script("x.sh", f"#!/bin/sh\ntouch {self.root}/ran\n")
        self.write_presets(preset("P", "top", file("a"), scriptFile="x.sh"))
        for outputs in (("stdout",), ("stdout", "stderr")):
            with self.subTest(outputs):
                reader, writer = os.pipe()
                os.close(reader)
                done = subprocess.run([PROGRAM, "create", "0", "--no-input", "--set", "Too=many"], env=self.env, cwd=self.target,
                                      stdin=subprocess.DEVNULL, timeout=DEADLINE, check=False, **dict.fromkeys(outputs, writer))
                os.close(writer)
                self.assertEqual(done.returncode, -signal.SIGPIPE)
                os.remove(os.path.join(self.root, "ran"))
                os.remove(self.in_target("top", "a"))
                os.rmdir(self.in_target("top"))

    def test_that_nobody_reads_the_path_is_told_after_what_became_of_the_script(self):
        self.write_script("x.sh", "#!/bin/sh\nexit 3\n")
        self.write_presets(preset("P", "top", scriptFile="x.sh"))
        reader, writer = os.pipe()
        os.close(reader)
        with os.fdopen(writer, "wb") as pipe, open("/dev/full", "wb") as full:
            for output, status, why in ((pipe, -signal.SIGPIPE, "Broken pipe"), (full, 4, "No space left on device")):
                done = subprocess.run([PROGRAM, "create", "0", "--no-input", "--no-open", "--set", "Too=many"], env=self.env,
                                      cwd=self.target, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.PIPE, timeout=DEADLINE,
                                      check=False)
                warning, script, written = done.stderr.decode().splitlines()
                self.assertEqual((done.returncode, written), (status, f"orvane: Standard output: {why}"))
                self.assertTrue(warning.startswith("orvane: warning: "), warning)
                self.assertTrue(script.startswith("orvane: Script reported errors: "), script)
                os.rmdir(self.in_target("top"))

    def test_each_way_to_fail(self):
        nothing = f"#!/bin/sh\n: > {self.root}/ran\n"
        for text, mode, status, title in ((nothing, 0o644, None, "Script file not executable"),
                                          ("echo no interpreter line\n", 0o755, None, "Script reported errors"),
                                          ("#!/none/at/all\n", 0o755, None, "Script reported errors"),
                                          ("#!/bin/sh\nexit 255\n", 0o755, 255, "Script reported errors"),
                                          ("#!/bin/sh\nkill -9 $$\n", 0o755, 128 + signal.SIGKILL, "Script reported errors")):
            result = self.run_script(text, mode=mode)
            self.assertEqual((result.status, result.json["created"]), (4, True), text)
            self.assertEqual(result.json["script"]["status"], status, text)
            self.assertEqual(result.json["error"]["title"], title, text)
            self.assertTrue(result.err.startswith(f"orvane: {title}: 'x.sh' is the specified script file"), result.err)
            os.rmdir(self.in_target("top"))
        self.assertFalse(os.path.exists(os.path.join(self.root, "ran")))

    def test_its_standard_error_goes_to_the_log(self):
        self.run_script("#!/bin/sh\necho oops >&2\nexit 3\n")
        with open(os.path.join(self.home, ".local/state/orvane/log"), encoding="utf-8") as log:
            text = log.read()
        self.assertIn("ORV script 'x.sh' error: Script returned error code 3.", text)
        self.assertIn("Script stderr:\noops", text)


class Stopped(OrvaneTest):
    """What stops the program while the script runs stops the script."""

    SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)

    def start(self, name, *lines, ignored=None):
        """The program, and its script, which has told its process first and its parent's second."""
        script = RunningScript(self, *lines)
        self.write_script("x.sh", script.text)
        self.write_presets(preset("P", name, scriptFile="x.sh"))

        def ignore():
            if ignored is not None:
                signal.signal(ignored, signal.SIG_IGN)

        program = subprocess.Popen([PROGRAM, "create", "0", "--no-open"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, env=self.env, cwd=self.target, preexec_fn=ignore)
        self.addCleanup(program.kill)
        self.assertEqual(script.told()[1], program.pid)
        return program, script

    def assertEnded(self, program, name, status):
        out, err = program.communicate(timeout=DEADLINE)
        self.assertEqual((program.returncode, out.decode(), err), (status, self.in_target(name) + "\n", b""))

    def test_a_signal_for_the_program_alone_ends_both(self):
        for number in self.SIGNALS:
            with self.subTest(number):
                program, script = self.start(number.name, "tell $$ $PPID", "exec sleep 1000")
                self.assertTrue(script.is_there())
                program.send_signal(number)
                self.assertEnded(program, number.name, -number)
                self.wait_for(lambda script=script: not script.is_there())

    def test_the_script_gets_the_signal_itself_and_may_heed_it(self):
        heeded = os.path.join(self.root, "heeded")
        for number in self.SIGNALS:
            with self.subTest(number):
                trap = f"trap \"echo {number.name} >> '{heeded}'; go=\" {number.name.removeprefix('SIG')}"
                program, script = self.start(number.name, "go=on", trap, "tell $$ $PPID", "while test $go; do sleep 0.01; done")
                program.send_signal(number)
                self.assertEnded(program, number.name, -number)
                self.wait_for(lambda script=script: not script.is_there())
                self.assertTrue(self.content(heeded).decode().endswith(number.name + "\n"))
        self.assertEqual(self.content(heeded).count(b"\n"), len(self.SIGNALS))

    def test_a_signal_that_is_ignored_stops_neither(self):
        finish = os.path.join(self.root, "finish")
        for number in self.SIGNALS:
            with self.subTest(number):
                program, script = self.start(number.name, "tell $$ $PPID", f"while ! test -e '{finish}'; do sleep 0.01; done", ignored=number)
                program.send_signal(number)
                self.write_bytes(finish, b"")
                self.assertEnded(program, number.name, 0)
                self.assertFalse(script.is_there())
                os.remove(finish)

    def test_what_a_script_left_in_the_background_goes_on(self):
        # The program waits for its standard error. The script itself has ended, and its number may be another process's by now.
        program, script = self.start("top", "parent=$PPID", "{ tell $(exec sh -c 'echo $PPID') $parent $$; exec sleep 1000; } &")
        self.wait_for(lambda: not os.path.exists(f"/proc/{script.told()[2]}"))
        program.send_signal(signal.SIGTERM)
        self.assertEnded(program, "top", -signal.SIGTERM)
        self.assertTrue(script.is_there())


class Opening(OrvaneTest):
    def setUp(self):
        super().setUp()
        self.opened = os.path.join(self.root, "opened")
        tools = self._make("tools")
        self.write_bytes(os.path.join(tools, "xdg-open"), f"#!/bin/sh\nprintf %s \"$1\" > {self.opened}.new\n"
                         f"mv {self.opened}.new {self.opened}\nsleep 100\n".encode(), mode=0o755)
        self.tools = {"PATH": tools + ":" + self.env["PATH"]}
        self.write_script("x.sh", "#!/bin/sh\n")
        self.write_script("Reveal in FINDER.sh", "#!/bin/sh\n")

    def open_with(self, *words, name="x.sh", **display):
        self.write_presets(preset("P", "top é", scriptFile=name))
        result = self.create("0", *words, env={**self.tools, **display})
        self.assertEqual(result.status, 0, result.err)

    def test_on_a_desktop_the_new_folder_is_opened_without_waiting(self):
        for display in ({"DISPLAY": ":7"}, {"WAYLAND_DISPLAY": "wayland-7"}):
            self.open_with(**display)
            self.wait_for(lambda: os.path.exists(self.opened))
            with open(self.opened, encoding="utf-8") as opened:
                self.assertEqual(opened.read(), self.in_target("top é"))
            os.remove(self.opened)
            os.rmdir(self.in_target("top é"))

    def test_the_opener_has_no_signal_blocked_or_ignored(self):
        # No shell, which would let blocked ones through; some awks ignore SIGPIPE themselves.
        with open(os.path.join(self.tools["PATH"].split(":")[0], "xdg-open"), "w", encoding="utf-8") as tool:
            tool.write('#!/usr/bin/awk -f\nBEGIN { while ((getline line < "/proc/self/status") > 0) if (line ~ /^Sig(Blk|Ign):/)'
                       f' print line > "{self.opened}.new"; close("{self.opened}.new"); system("mv {self.opened}.new {self.opened}") }}\n')
        self.open_with(DISPLAY=":7")
        self.wait_for(lambda: os.path.exists(self.opened))
        with open(self.opened, encoding="utf-8") as opened:
            blocked, ignored = [int(line.split()[1], 16) for line in opened]
        self.assertEqual((blocked, ignored & ~(1 << signal.SIGPIPE - 1)), (0, 0))

    def test_otherwise_it_is_not(self):
        log = os.path.join(self.root, "spawned")
        with open(os.path.join(self.tools["PATH"].split(":")[0], "xdg-open"), "w", encoding="utf-8") as tool:
            tool.write(f"#!/bin/sh\necho \"$1\" >> {log}\n")
        self.open_with()
        os.rmdir(self.in_target("top é"))
        self.open_with("--no-open", DISPLAY=":7")
        os.rmdir(self.in_target("top é"))
        self.open_with(name="Reveal in FINDER.sh", DISPLAY=":7")
        os.rmdir(self.in_target("top é"))
        self.write_presets(preset("P", "top é"))
        self.assertEqual(self.create("0", "--dry-run", env={**self.tools, "DISPLAY": ":7"}).status, 0)
        # One that does open, last: when its line is there and no other, nobody else's was to come.
        self.open_with(DISPLAY=":7")
        self.wait_for(lambda: os.path.exists(log) and os.path.getsize(log) > 0)
        with open(log, encoding="utf-8") as lines:
            self.assertEqual(lines.read(), self.in_target("top é") + "\n")


if __name__ == "__main__":
    unittest.main()
