"""The ways to make a hierarchy that are compared: how each is prepared and called, and what it is known not to do."""

import itertools
import json
import os
import subprocess

import measure
import workloads


class Method:
    """One way: `command(target)` is what gets timed."""

    def __init__(self, name, command, environment=None, leaves_out=(), good_statuses=(0,), is_peer=False):
        self.name, self.command, self.environment, self.is_peer = name, command, environment, is_peer
        self.leaves_out, self.good_statuses = leaves_out, good_statuses


class Programs:
    """Our own programs; `orvane` is None when it is not built."""

    def __init__(self, limit, launch, orvane):
        self.limit, self.launch, self.orvane = limit, launch, orvane


class Sources:
    """Everything that the methods start from, for one workload, inside one folder of the measured file system."""

    def __init__(self, workload, folder, programs):
        self.workload, self.folder, self.programs = workload, folder, programs
        self.environment = workloads.write_home(workload, self.path("home"))
        self.store = workloads.content_store(self.path("home"))
        workloads.write_plan(workload, self.path("plan"), self.store, workload.resolved)

    def path(self, name):
        return os.path.join(self.folder, name)

    def template_tree(self):
        """The tree with its templates as names, for methods that copy and rename."""
        return self._tree("template", lambda name: name)

    def cookiecutter_tree(self):
        folder = self._tree("cookiecutter", self.workload.cookiecutter_name)
        with open(os.path.join(folder, "cookiecutter.json"), "w", encoding="utf-8") as file:
            # Contents are to be left alone; without this it would look for variables in each of them and take three times as long.
            json.dump({**self.workload.values, "_copy_without_render": ["*.txt", "*.prproj", "*.ods"]}, file)
        return folder

    def archive(self):
        archive = self.path("template.tar")
        if not os.path.exists(archive):
            template = self.template_tree()
            subprocess.run(["tar", "--format=pax", "--xattrs", "-C", template, "-cf", archive, *os.listdir(template)],
                           check=True, env=measure.clean_environment())
        return archive

    def _tree(self, name, naming):
        folder = self.path(name)
        if not os.path.exists(folder):
            os.mkdir(folder)
            workloads.write_plan(self.workload, folder + ".plan", self.store, naming)
            subprocess.run([self.programs.limit, folder + ".plan", folder], check=True, umask=0o022)
        return folder

    # Methods ------------------------------------------------------------------------------------------------------------

    def limit(self, name="limit", *options):
        return Method(name, lambda target: [self.programs.limit, *options, self.path("plan"), target])

    def orvane(self, name="orvane", good_statuses=(0,)):
        start = [self.programs.orvane, "create", "0", "--no-input", "--no-open"]
        counter = itertools.count(int(self.workload.values.get("AutoJob", 0)))

        def command(target):
            # A counter moves on with every creation: storing the value that is stored already would cost nothing.
            values = {**self.workload.values, **({"AutoJob": str(next(counter))} if "AutoJob" in self.workload.values else {})}
            return [*start, *(word for key, value in values.items() for word in ("--set", f"{key}={value}")), "--in", target]

        return Method(name, command, self.environment, good_statuses=good_statuses)

    def tar(self):
        archive = self.archive()
        # "r" leaves the targets of links alone; "&" stands for the match in a replacement and has to be escaped.
        rules = ";".join(f"s/{{{key}}}/{value.replace('&', chr(92) + '&')}/rg" for key, value in self.workload.values.items())
        command = ["/usr/bin/tar", "--xattrs", "--xattrs-include=user.*", "--no-same-owner", "-p", "--transform", rules, "-xf", archive, "-C"]
        return Method("tar --transform", lambda target: [*command, target], is_peer=True)

    def copy_and_rename(self):
        template = self.template_tree()
        script = 'cp -a "$1/." "$2" && target=$2 renamer=$3 && shift 3 && exec perl "$renamer" "$target" "$@"'
        renamer = os.path.join(os.path.dirname(os.path.abspath(__file__)), "rename.pl")
        values = [f"{key}={value}" for key, value in self.workload.values.items()]
        return Method("cp -a + rename", lambda target: ["/bin/sh", "-c", script, "sh", template, target, renamer, *values], is_peer=True)

    def cookiecutter(self):
        template = self.cookiecutter_tree()
        environment = {"HOME": self.path("cookiecutter-home")}
        os.makedirs(environment["HOME"], exist_ok=True)
        # It makes folders without looking at the template's modes and knows no labels.
        return Method("cookiecutter", lambda target: ["/usr/bin/python3", "/usr/bin/cookiecutter", "--no-input", "-o", target, template],
                      environment, leaves_out=("labels", "folder modes"), is_peer=True)
