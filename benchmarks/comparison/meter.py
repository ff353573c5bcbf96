"""Running commands and telling what they cost."""

import os
import re
import statistics
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path


@dataclass(frozen=True)
class Cost:
    cpu: float  # s, user and system
    wall: float  # s
    peak: float  # KiB


@dataclass(frozen=True)
class Command:
    arguments: list
    environment: dict = field(default_factory=dict)
    folder: Path | None = None
    output: Path | None = None  # removed after each run, so that each writes a new file
    stdout: Path | None = None


class Failure(Exception):
    """A command that could not be run or ended with an error."""


def note(text):
    print(text, file=sys.stderr, flush=True)


class Meter:
    def __init__(self, programs, scratch):
        self._program = programs / "fvqa300-measure"
        self._environment = self._quiet_environment(scratch)

    # Windows without a screen, with settings of their own.
    @staticmethod
    def _quiet_environment(scratch):
        runtime = scratch / "runtime"
        runtime.mkdir(mode=0o700, parents=True, exist_ok=True)
        return os.environ | {
            "LC_ALL": "C",
            "QT_QPA_PLATFORM": "offscreen",
            "XDG_CONFIG_HOME": str(scratch / "config"),
            "XDG_RUNTIME_DIR": str(runtime),
        }

    def cost(self, command):
        """What one run costs."""
        target = command.stdout or "/dev/null"
        words = [self._program, "--stdout", target, "--", *command.arguments]
        try:
            output = self._run(words, command)
        finally:
            if command.output is not None:
                command.output.unlink(missing_ok=True)
        figures = re.fullmatch(r"cpu (\S+) wall (\S+) peak (\d+)\n", output)
        return Cost(*(float(figure) for figure in figures.groups()))

    def printed(self, command):
        """What a program prints that measures itself."""
        return self._run(command.arguments, command)

    def _run(self, words, command):
        result = subprocess.run(
            [str(word) for word in words],
            cwd=command.folder,
            env=self._environment | command.environment,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
            check=False,
        )
        if result.returncode != 0:
            lines = [line for line in result.stderr.splitlines() if line.strip()]
            why = lines[-1] if lines else "no message"
            raise Failure(f"{Path(str(command.arguments[0])).name} failed, {result.returncode}: {why}")
        return result.stdout


class Rounds:
    """Runs every command once a round, so that what disturbs the machine disturbs all of them alike."""

    def __init__(self, meter, runs):
        self._meter = meter
        self._runs = runs
        self._costs = {}
        self.failures = {}

    def run(self, commands):
        for number in range(self._runs):
            for name, command in commands.items():
                if name not in self.failures:
                    note(f"  round {number + 1} of {self._runs}: {name}")
                    self._run_one(name, command)

    def _run_one(self, name, command):
        try:
            self._costs.setdefault(name, []).append(self._meter.cost(command))
        except Failure as failure:
            note(f"  {failure}")
            self.failures[name] = str(failure)

    def _median(self, name, figure):
        if name in self.failures or name not in self._costs:
            return None
        return statistics.median(getattr(cost, figure) for cost in self._costs[name])

    def cpu(self, name):
        return self._median(name, "cpu")

    def wall(self, name):
        return self._median(name, "wall")

    def peak(self, name):
        return self._median(name, "peak")
