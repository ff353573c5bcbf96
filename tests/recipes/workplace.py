"""Runs recipes where a reader would: in a folder with the examples, the programs in PATH."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

# Folders and documents, as ctest gives them.
PROGRAMS = Path(os.environ["FVQA_PROGRAMS"])
PROJECT = Path(os.environ["FVQA_PROJECT"])
RECIPES = PROJECT / "docs" / "reading-our-files.md"

_INTERPRETERS = {"sh": ["bash", "-euo", "pipefail"], "python": [sys.executable, "-B"], "r": ["Rscript", "--vanilla"]}


class Workplace(unittest.TestCase):
    """A test with a folder of its own, which is gone at its end."""

    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.environment = {
            **os.environ,
            "PATH": f"{PROGRAMS}:{os.environ['PATH']}",
            "HOME": folder.name,
            "PARALLEL_HOME": folder.name,
            "LC_ALL": "C.UTF-8",
            "PYTHONPATH": folder.name,
        }

    def copy_examples(self):
        for pattern in ("*.data", "*.ghg"):
            for example in (PROJECT / "examples").glob(pattern):
                shutil.copy(example, self.folder)

    def run_program(self, *command, status=0):
        """The finished program; fails when it ends otherwise than with `status`."""
        done = subprocess.run(
            [str(word) for word in command],
            cwd=self.folder,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
        )
        self.assertEqual(done.returncode, status, f"{command}\n{done.stdout}\n{done.stderr}")
        return done

    def run_block(self, block, status=0):
        """Saves a block under its name, or runs it; returns the finished program."""
        if "file" in block.options:
            (self.folder / block.options["file"]).write_text(block.text, encoding="utf-8")
            return None
        script = self.folder / f"block-{block.line}"
        script.write_text(block.text, encoding="utf-8")
        return self.run_program(*_INTERPRETERS[block.kind], script, status=status)

    def run_code(self, kind, text):
        """What a piece of code prints."""
        script = self.folder / "code"
        script.write_text(text, encoding="utf-8")
        return self.run_program(*_INTERPRETERS[kind], script).stdout

    def export(self, data, form, output, *files, options=()):
        self.run_program("fvqa300-cli", "export", "--data", data, "--format", form, "--output", output, *options, *files)

    def keys(self, *files):
        """All variables, in the companion's order."""
        lines = self.run_program("fvqa300-cli", "variables", *files).stdout.splitlines()
        return [line.split("\t")[0] for line in lines]

    def series(self, key, *files):
        """Times and values of a variable as the companion prints them: texts."""
        lines = self.run_program("fvqa300-cli", "series", "--variable", key, *files).stdout.splitlines()
        return [tuple(line.split("\t")) for line in lines]
