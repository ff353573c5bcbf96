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
    install: str  # says how to install it
    version: str = ""
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


def _printed(words, environment=None):
    """What a command prints, the version of a tool here; nothing when it cannot be run."""
    try:
        result = subprocess.run(
            [str(word) for word in words], env=os.environ | (environment or {}), capture_output=True,
            text=True, check=False, timeout=60,
        )
    except (OSError, subprocess.TimeoutExpired):
        return ""
    return result.stdout.strip() if result.returncode == 0 else ""


def _by_python(name, install, has_threads=True):
    for python in dict.fromkeys([sys.executable, shutil.which("python3"), "/usr/bin/python3"]):
        if python and (version := _printed([python, "-c", f"import {name}; print({name}.__version__)"])):
            command = (python, "-B", SCRIPTS / f"with_{name}.py")
            return Peer(name, command, install, version, has_threads=has_threads)
    return Peer(name, (), install)


def _by_python_or_node(name, module, packages):
    peer = _by_python(name, NODE.format(name, packages))
    if peer.is_installed or not NODE_MODULES:
        return peer
    environment = (("NODE_PATH", NODE_MODULES),)
    # The module itself is loaded too, since it may lack the package of its platform.
    expression = f"require('{module}') && require('{module}/package.json').version"
    version = _printed(["node", "-p", expression], dict(environment))
    if not version:
        return peer
    return Peer(name, ("node", SCRIPTS / f"with_{name}.js"), peer.install, version + " for node", environment)


def _by_r():
    expression = 'cat(as.character(packageVersion("data.table")))'
    version = _printed(["Rscript", "-e", expression])
    command = ("Rscript", SCRIPTS / "with_datatable.R") if version else ()
    return Peer("data.table", command, DEBIAN, version)


def _by_program(name, script, package):
    version = _printed(["dpkg-query", "-W", "-f", "${Version}", package])
    return Peer(name, (SCRIPTS / script,) if shutil.which(name) else (), DEBIAN, version)


def find_peers():
    """By name, installed or not."""
    peers = [
        _by_python_or_node("duckdb", "@duckdb/node-api", "@duckdb/node-api"),
        _by_python_or_node("polars", "nodejs-polars", "nodejs-polars with the package of its platform"),
        _by_python("pandas", DEBIAN, has_threads=False),
        _by_r(),
        _by_program("kst2", "with_kst.sh", "kst"),
        _by_program("gnuplot", "with_gnuplot.sh", "gnuplot-nox"),
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
    finally:
        result.unlink(missing_ok=True)
