"""Commands for our own programs, and what they print about themselves."""

import re
import statistics

from data import EXPORTED_DATA, PLOTTED_VARIABLE
from meter import Command, Failure, note


class Programs:
    def __init__(self, settings, meter):
        self._programs = settings.programs
        self._scratch = settings.scratch
        self._meter = meter

    def _named(self, name):
        return self._programs / f"fvqa300-{name}"

    def load(self, *paths, jobs=1, environment=None, folder=None):
        arguments = [self._named("cli"), "--jobs", jobs, "summary", *paths]
        return Command(arguments, environment or {}, folder)

    def export(self, path, file_format):
        output = self._scratch / f"ours.{file_format}"
        arguments = [self._named("cli"), "--jobs", 1, "export", "--data", EXPORTED_DATA]
        return Command([*arguments, "--format", file_format, "--output", output, path], output=output)

    def plot(self, path):
        output = self._scratch / "ours.png"
        arguments = [self._named("cli"), "plot", "--variable", PLOTTED_VARIABLE, "--output", output, path]
        return Command(arguments, output=output)

    def find_lines(self, path):
        return Command([self._named("find-lines"), path])

    def inflate(self, folder):
        return Command([self._named("inflate"), *sorted(folder.iterdir())])

    def lines_in(self, path):
        output = self._meter.printed(self.find_lines(path))
        return int(re.search(r"(\d+) lines", output).group(1))

    def window_loading(self, folder, names):
        """Loads files into the window: figures by name. The files are named as seen from `folder`."""
        command = Command([self._named("window-loading"), *names], folder=folder)
        pattern = (
            r"(?P<files>\d+) files, (?P<wall>\S+) s, longest gap (?P<gap>\d+) ms, "
            r"peak memory (?P<peak>\S+) MB, processor (?P<cpu>\S+) s, "
            r"interface thread (?P<interface>\S+) s"
        )
        return figures(pattern, self._meter.printed(command))

    def merging(self, count):
        """Microseconds of the interface thread for each of so many files."""
        output = self._meter.printed(Command([self._named("merge-files"), count]))
        return figures(r"\d+ files, (?P<each>\S+) us a file", output)["each"]

    def plot_window(self, path):
        """The steps of a plot window by name: milliseconds on the wall and of the processor."""
        output = self._meter.printed(Command([self._named("plot-window"), path]))
        steps = re.findall(r"^(.+?)\s+([\d.]+) ms, processor\s+([\d.]+) ms$", output, re.MULTILINE)
        return {name: (float(wall) / 1000, float(cpu) / 1000) for name, wall, cpu in steps}


def figures(pattern, output):
    match = re.search(pattern, output)
    if match is None:
        raise Failure(f"unexpected output: {output.strip()}")
    return {name: float(text) for name, text in match.groupdict().items()}


def medians(runs, measure):
    """Medians of the figures that `measure` returns as a dictionary, {} where it fails."""
    try:
        results = [measure() for _ in range(runs)]
    except Failure as failure:
        note(f"  {failure}")
        return {}
    return {
        name: tuple(statistics.median(figure) for figure in zip(*(result[name] for result in results)))
        if isinstance(results[0][name], tuple)
        else statistics.median(result[name] for result in results)
        for name in results[0]
    }
