"""Other tools, those of them that are installed."""

import os
import shutil
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

from data import KEY_LINES
from meter import Command, Failure, note

SCRIPTS = Path(__file__).resolve().parent.parent / "peers"
NODE_MODULES = os.environ.get("FVQA_BENCH_NODE_MODULES", "")
DEBIAN = "scripts/bench --peers installs it"
NODE = "pip install {0}, or npm install {1} and FVQA_BENCH_NODE_MODULES=.../node_modules"


@dataclass(frozen=True)
class Peer:
    name: str
    command: tuple  # what runs it, () when it is not installed
    install: str
    environment: tuple = ()
    has_threads: bool = True

    @property
    def is_installed(self):
        return bool(self.command)

    def task(self, task, path, threads, output=None):
        """Reads `path` by `threads` threads. See the scripts for the tasks."""
        arguments = [*self.command, task, path, KEY_LINES, threads]
        if output is not None:
            arguments.append(output)
        return Command(arguments, dict(self.environment), output=output)


def _works(words, environment=None):
    try:
        result = subprocess.run(
            words, env=os.environ | (environment or {}), capture_output=True, check=False, timeout=60
        )
    except (OSError, subprocess.TimeoutExpired):
        return False
    return result.returncode == 0


def _by_python(module):
    script = str(SCRIPTS / f"with_{module}.py")
    for python in dict.fromkeys([sys.executable, shutil.which("python3"), "/usr/bin/python3"]):
        if python and _works([python, "-c", f"import {module}"]):
            return (python, "-B", script)
    return ()


def _by_node(module, name):
    environment = {"NODE_PATH": NODE_MODULES}
    if NODE_MODULES and _works(["node", "-e", f"require('{module}')"], environment):
        return ("node", str(SCRIPTS / f"with_{name}.js"))
    return ()


def _python_or_node(name, node_module, node_packages):
    install = NODE.format(name, node_packages)
    if command := _by_python(name):
        return Peer(name, command, install)
    return Peer(name, _by_node(node_module, name), install, (("NODE_PATH", NODE_MODULES),))


def _by_r():
    if _works(["Rscript", "-e", "library(data.table)"]):
        return ("Rscript", str(SCRIPTS / "with_datatable.R"))
    return ()


def _by_program(program, script):
    return (str(SCRIPTS / script),) if shutil.which(program) else ()


def find_peers():
    """By name, installed or not."""
    peers = [
        _python_or_node("duckdb", "@duckdb/node-api", "@duckdb/node-api"),
        _python_or_node("polars", "nodejs-polars", "nodejs-polars with the package of its platform"),
        Peer("pandas", _by_python("pandas"), DEBIAN, has_threads=False),
        Peer("data.table", _by_r(), DEBIAN),
        Peer("kst2", _by_program("kst2", "with_kst.sh"), DEBIAN),
        Peer("gnuplot", _by_program("gnuplot", "with_gnuplot.sh"), DEBIAN),
    ]
    return {peer.name: peer for peer in peers}


def best_threads(meter, peer, task, path, output=None):
    """The number of threads by which the peer spends least processor time: one, or one for each core."""
    if not peer.has_threads:
        return 1
    costs = {}
    for threads in sorted({1, os.cpu_count() or 1}):
        try:
            costs[threads] = meter.cost(peer.task(task, path, threads, output)).cpu
        except Failure as failure:
            note(f"  {failure}")
    return min(costs, key=costs.get) if costs else 1


def checked_minutes(meter, peer, path, scratch):
    """How many minutes the peer found, and the average of one column: all must find the same."""
    result = scratch / "minutes.txt"
    command = peer.task("minutes", path, 1)
    try:
        meter.cost(Command(command.arguments, command.environment, stdout=result))
        _, count, average = result.read_text().split()
        return int(count), float(average)
    except (Failure, ValueError) as failure:
        return str(failure)
