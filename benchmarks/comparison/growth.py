"""How cost grows with the size of a file and with the number of files."""

from data import Data
from meter import Meter, Rounds, note
from programs import Programs, medians
from table import aligned

MEGABYTES = (10, 30, 100, 300, 1000, 2000)
FILES = (10, 100, 1000, 5000, 17520)


class Growth:
    def __init__(self, settings):
        self._settings = settings
        self._data = Data(settings)
        self._meter = Meter(settings.programs, settings.scratch)
        self._programs = Programs(settings, self._meter)

    def by_size(self):
        """One file of so many megabytes: processor seconds."""
        rounds = Rounds(self._meter, self._settings.runs)
        for megabytes in MEGABYTES:
            path = self._data.plain(megabytes)
            commands = {
                f"find {megabytes} MB": self._programs.find_lines(path),
                f"load {megabytes} MB": self._programs.load(path),
                f"text {megabytes} MB": self._programs.export(path, "text"),
                f"plot {megabytes} MB": self._programs.plot(path),
            }
            rounds.run(commands)
        lines = [("MB", "find lines", "load", "load, a GB", "peak", "text export", "plot")]
        return aligned(lines + [self._size_line(rounds, megabytes) for megabytes in MEGABYTES])

    @staticmethod
    def _size_line(rounds, megabytes):
        whats = ("find", "load", "text", "plot")
        find, load, text, plot = (rounds.cpu(f"{what} {megabytes} MB") for what in whats)
        peak = rounds.peak(f"load {megabytes} MB")
        return (
            str(megabytes), f"{find:.3f} s", f"{load:.3f} s", f"{load / megabytes * 1000:.2f} s",
            f"{peak / 1024:.1f} MB", f"{text - load:.3f} s", f"{plot:.3f} s",
        )

    def by_number(self):
        """So many half hours at 1 Hz, loaded into the window."""
        lines = [("files", "processor", "a file", "interface thread, a file", "merging and table, a file",
                  "wall", "longest gap", "peak")]
        folder, names = self._data.small_archives(self._settings.files)
        for count in sorted({min(count, len(names)) for count in FILES}):
            note(f"  {count} files")
            runs = 1 if count > 1000 else self._settings.runs
            figures = medians(runs, lambda n=count: self._programs.window_loading(folder, names[:n]))
            lines.append(self._number_line(count, figures, self._programs.merging(count)))
        return aligned(lines)

    @staticmethod
    def _number_line(count, figures, merging):
        each = figures["cpu"] / count
        return (
            str(count), f"{figures['cpu']:.2f} s", f"{each * 1e3:.2f} ms",
            f"{figures['interface'] / count * 1e6:.0f} us", f"{merging:.1f} us", f"{figures['wall']:.2f} s",
            f"{figures['gap']:.0f} ms", f"{figures['peak']:.0f} MB",
        )
