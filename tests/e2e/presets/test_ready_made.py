"""Takes each ready-made preset as a user does: checks it, adds it, makes it, and looks at what is on the disk.

The program's path is taken from the environment variable ORVANE."""

import os
import plistlib
import shutil
import stat
import subprocess
import tempfile
import unittest
import xml.dom.minidom
from pathlib import Path

PROGRAM = os.environ["ORVANE"]
PRESETS = Path(__file__).resolve().parents[3] / "resources" / "presets"
DEADLINE = 60  # seconds for any one command; a loaded machine is slow
# What people type, with characters that mean something to shells, XML, TeX, sed and file names.
VALUE = "Ä & B|\\1 <\"$(id)\"> 100%_#"


class ReadyMade(unittest.TestCase):
    def setUp(self):
        fast = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        self.home = Path(tempfile.mkdtemp(dir=fast))
        self.addCleanup(shutil.rmtree, self.home)
        self.projects = self.home / "Projects"
        self.projects.mkdir()

    def run_orvane(self, *words):
        environment = {"HOME": str(self.home), "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8"}
        return subprocess.run([PROGRAM, *words], env=environment, capture_output=True, text=True, timeout=DEADLINE, cwd=self.home,
                              check=False)

    def make(self, folder, **values):
        """The folder that the preset of that name makes with the values."""
        packed = PRESETS / folder / f"{folder}.orvpreset"
        record = plistlib.loads((PRESETS / folder / "preset.plist").read_bytes())
        check = self.run_orvane("check", str(packed))
        self.assertEqual((check.returncode, check.stdout, check.stderr), (0, "", ""), "it is clean")
        added = self.run_orvane("add", str(packed))
        self.assertEqual(added.returncode, 0, added.stderr)
        settings = [word for name, value in values.items() for word in ("--set", f"{name.replace('_', ' ')}={value}")]
        made = self.run_orvane("create", record["label"], "--in", str(self.projects), "--no-open", "--no-input", *settings)
        self.assertEqual((made.returncode, made.stderr), (0, ""), "made, and the script had nothing to complain of")
        (top,) = self.projects.iterdir()
        self.assertEqual(made.stdout.strip(), str(top))
        self.compare(record["fileHierarchy"], top, folder, values)
        return top

    def compare(self, node, path, folder, values):
        """Every node is there as its kind, with its mode and, apart from what the script fills in, its contents."""
        for child in node.get("children", []):
            name = child["filename"]
            for variable, value in values.items():
                name = name.replace("{" + variable.replace("_", " ") + "}", value)
            item = path / name.replace("/", "_").replace(":", "_")
            self.assertTrue(item.is_dir() if child["isFolder"] else item.is_file(), item)
            if mode := child.get("permissions"):
                self.assertEqual(stat.S_IMODE(item.stat().st_mode), int(mode, 8), item)
            if content := child.get("contentFilename"):
                source = PRESETS / folder / "contents" / content
                if b"@" not in source.read_bytes():
                    self.assertEqual(item.read_bytes(), source.read_bytes(), item)
                if not child.get("permissions"):
                    self.assertEqual(os.access(item, os.X_OK), os.access(source, os.X_OK), item)
            self.compare(child, item, folder, values)

    def test_every_one_is_tested_here(self):
        for plist in PRESETS.glob("*/preset.plist"):
            self.assertTrue(hasattr(self, "test_" + plist.parent.name.replace("-", "_")), plist)

    def test_every_one_can_be_kept_beside_the_others(self):
        for packed in sorted(PRESETS.glob("*/*.orvpreset")):
            added = self.run_orvane("add", str(packed))
            self.assertEqual(added.returncode, 0, added.stderr)
        check = self.run_orvane("check")
        self.assertEqual((check.returncode, check.stdout), (0, ""))
        contents = sorted(path.name for path in self.home.rglob("File Content/*"))
        expected = sorted(path.name for path in PRESETS.glob("*/contents/*"))
        self.assertEqual(contents, expected, "none had to give way to another of its name")

    def test_film_production(self):
        top = self.make("film-production", Client="Acme", Production="Night Train", Director=VALUE)
        self.assertEqual(top.name, "0 Acme - Night Train")
        self.assertIn(f"Director    {VALUE}\n", (top / "Slate.txt").read_text())

    def test_photo_shoot(self):
        top = self.make("photo-shoot", Date="2026-11-21", Client=VALUE, Shoot="Winter & Ice")
        (metadata,) = [path for path in top.iterdir() if path.suffix == ".xmp"]
        document = xml.dom.minidom.parse(str(metadata))
        texts = [item.firstChild.data for item in document.getElementsByTagName("rdf:li")]
        self.assertEqual(texts, ["Winter & Ice", VALUE])
        self.assertEqual(document.getElementsByTagName("photoshop:TransmissionReference")[0].firstChild.data, "0")
        card = top / "02 Originals" / "Card 1" / "A.raw"
        card.write_bytes(b"light")
        checksums = top / "02 Originals" / "checksums.sh"
        subprocess.run([checksums], check=True, capture_output=True, timeout=DEADLINE)
        subprocess.run([checksums, "check"], check=True, capture_output=True, timeout=DEADLINE)
        card.write_bytes(b"dark")
        self.assertNotEqual(subprocess.run([checksums, "check"], check=False, capture_output=True, timeout=DEADLINE).returncode, 0)

    def test_music_production(self):
        top = self.make("music-production", Artist="The Quays", Title="Ebb & Flow", Tempo="92,5")
        self.assertEqual(top.name, "0 The Quays - Ebb & Flow")
        midi = (top / "02 Session at 92,5 bpm" / "Tempo.mid").read_bytes()
        self.assertEqual(midi[:14], b"MThd\x00\x00\x00\x06\x00\x00\x00\x01\x01\xe0")
        self.assertEqual(int.from_bytes(midi[18:22], "big"), len(midi) - 22, "the track's length")
        self.assertIn(b"\x00\xff\x03\x0aEbb & Flow", midi)
        self.assertIn(b"\x00\xff\x51\x03" + round(60_000_000 / 92.5).to_bytes(3, "big"), midi)
        self.assertTrue(midi.endswith(b"\xff\x2f\x00"))

    def test_music_production_without_a_tempo(self):
        top = self.make("music-production", Artist="A", Title="B", Tempo="slow")
        self.assertEqual(list(top.rglob("*.mid")), [])

    def test_software_project(self):
        top = self.make("software-project", Project=VALUE)
        self.assertTrue((top / "README.md").read_text().startswith(f"# {VALUE}\n"))
        for path in top.rglob("*"):
            if path.is_file() and ".git" not in path.parts:
                self.assertNotIn("@PROJECT@", path.read_text(), path)
                self.assertNotIn("@AUTHOR@", path.read_text(), path)
        hello = subprocess.run(["sh", "src/main.sh"], cwd=top, capture_output=True, text=True, timeout=DEADLINE, check=True)
        self.assertEqual(hello.stdout, f"Hello from {VALUE}\n")
        subprocess.run(["sh", "tests/run.sh"], cwd=top, capture_output=True, timeout=DEADLINE, check=True)
        if shutil.which("git", path="/usr/local/bin:/usr/bin:/bin"):
            self.assertEqual((top / ".git" / "HEAD").read_text(), "ref: refs/heads/main\n")

    def test_research_paper(self):
        values = {"Year": "2026", "First_author": "Lovelace & Co_", "Short_title": "100% @YEAR@ {sure}", "Journal": "J#1"}
        top = self.make("research-paper", **values)
        self.assertEqual(top.name, "2026 Lovelace & Co_ - 100% @YEAR@ {sure}")
        (manuscript,) = top.glob("06 Manuscript/*.tex")
        text = manuscript.read_text()
        self.assertIn(r"\title{100\% @YEAR@ \{sure\}}", text)
        self.assertIn(r"\author{Lovelace \& Co\_}", text)
        letter = (top / "06 Manuscript" / "Cover letter - J#1.txt").read_text()
        self.assertIn("To the editors of J#1\n", letter)
        self.assertIn('manuscript "100% @YEAR@ {sure}".', letter)
        step = top / "04 Analysis" / "Steps" / "01 read.sh"
        step.write_text("echo reading\n")
        result = subprocess.run([top / "04 Analysis" / "run all.sh"], capture_output=True, text=True, timeout=DEADLINE, check=True)
        self.assertEqual(result.stdout, "== Steps/01 read.sh\nreading\n1 steps done\n")

    def test_law_case(self):
        top = self.make("law-case", Year="2026", Client="Miller", Opponent="Smith & Sons")
        self.assertEqual(top.name, "2026-0 Miller v Smith & Sons")
        self.assertEqual(stat.S_IMODE(top.stat().st_mode), 0o700)
        sheet = top / "Case sheet.txt"
        self.assertEqual(stat.S_IMODE(sheet.stat().st_mode), 0o600)
        self.assertIn("Our reference   2026-0\n", sheet.read_text())
        self.assertIn("Opponent        Smith & Sons\n", sheet.read_text())

    def test_each_can_be_made_with_every_value_left_empty(self):
        for packed in sorted(PRESETS.glob("*/*.orvpreset")):
            self.run_orvane("add", str(packed))
            label = plistlib.loads(packed.read_bytes())["ORVPreset"]["label"]
            target = self.projects / packed.stem
            target.mkdir()
            # Only the project's name is the whole name of a folder.
            named = ("--set", "Project=Mine") if packed.stem == "software-project" else ()
            made = self.run_orvane("create", label, "--in", str(target), "--no-input", "--no-open", *named)
            self.assertEqual((made.returncode, len(list(target.iterdir()))), (0, 1), made.stderr)


if __name__ == "__main__":
    unittest.main()
