"""The files that are measured with, made by fvqa300-generate on first use and kept."""

import shutil
import subprocess

# Lines before the first record. The last of them is the header line.
KEY_LINES = 6
# As cut counts them: seconds, nanoseconds and all 45 values, which is what a text export holds.
EXPORTED_COLUMNS = "2-6,9-50"
# The column and the name of the variable that is plotted.
PLOTTED_COLUMN = 9
PLOTTED_VARIABLE = "AIU-0412:DATA:CO2 dry (umol/mol)"
EXPORTED_DATA = "AIU-0412:DATA"

DAY = 86400
FIRST_SECOND = 1559368800


class Data:
    def __init__(self, settings):
        self._settings = settings
        self._folder = settings.scratch / "data"
        self._folder.mkdir(parents=True, exist_ok=True)

    def plain(self, megabytes, start=FIRST_SECOND):
        name = f"qa34xx-{megabytes}MB-{start}.data"
        return self._make(name, "--kind", "qa34xx", "--megabytes", megabytes, "--start", start)

    def ten_files(self):
        """Ten analysers' days, of which each is a file of its own."""
        megabytes = self._settings.ten_megabytes
        return [self.plain(megabytes, FIRST_SECOND + (i + 1) * DAY) for i in range(10)]

    def archives(self):
        count = self._settings.archives
        return self._make(f"archives-{count}", "--kind", "archives", "--count", count)

    def small_archives(self, count):
        """A folder, and the names of `count` files in it."""
        total = self._settings.files
        # Names are local times, which come twice where summer ends.
        files = ("--kind", "archives", "--rate", 1, "--zone", "America/Phoenix", "--compression", 1)
        folder = self._make(f"half-hours-{total}", *files, "--count", total)
        return folder, sorted(path.name for path in folder.iterdir())[:count]

    # A file or folder appears under its name only when it is whole.
    def _make(self, name, *arguments):
        path = self._folder / name
        if not path.exists():
            unfinished = self._folder / (name + ".unfinished")
            if unfinished.is_dir():
                shutil.rmtree(unfinished)
            generator = self._settings.programs / "fvqa300-generate"
            command = [generator, *arguments, "--output", unfinished]
            subprocess.run([str(part) for part in command], check=True)
            unfinished.rename(path)
        return path
