"""The rows of the table, and what must be run for them."""

from data import EXPORTED_COLUMNS, KEY_LINES, PLOTTED_COLUMN, Data
from meter import Command, Failure, Meter, Rounds, note
from peers import best_threads, checked_minutes, find_peers
from programs import Programs, medians
from table import Row, compare, limit, skipped

KIB = 1024.0


class Ratios:
    def __init__(self, settings):
        self._settings = settings
        self._data = Data(settings)
        self._meter = Meter(settings.programs, settings.scratch)
        self._programs = Programs(settings, self._meter)
        self._rounds = Rounds(self._meter, settings.runs)
        self._peers = find_peers() if settings.with_peers else {}
        self._threads = {}
        note("Making the data (the first time takes some minutes)")
        self._day = self._data.plain(settings.megabytes)
        self._tenth = self._data.plain(max(1, settings.megabytes // 10))
        self._plotted = self._data.plain(settings.plot_megabytes)
        self._archives = self._data.archives()

    def measure(self):
        """All rows, in the order of the table."""
        self._check_results()
        self._rounds.run(self._own_commands() | self._peer_commands())
        rows = [*self._loading(), *self._memory(), *self._archive_loading(), *self._many_files()]
        return [*rows, *self._exporting(), *self._plotting(), *self._window()]

    @property
    def threads(self):
        """The number of threads that each task of a peer was given."""
        return self._threads

    @property
    def versions(self):
        """The versions of the peers that are installed."""
        return {name: peer.version for name, peer in self._peers.items() if peer.is_installed}

    @property
    def missing(self):
        """How to install the peers that are not."""
        return {name: peer.install for name, peer in self._peers.items() if not peer.is_installed}

    # Figures of something that was not done count for nothing.
    def _check_results(self):
        note("Checking that all do the same")
        records = self._programs.lines_in(self._day) - KEY_LINES
        export = self._programs.export(self._day, "text")
        self._meter.cost(Command(export.arguments))
        written = self._programs.lines_in(export.output) - 1
        export.output.unlink()
        if written != records:
            raise Failure(f"the text export has {written} of {records} records")
        found = {
            name: checked_minutes(self._meter, peer, self._day, self._settings.scratch)
            for name, peer in self._peers.items()
            if peer.is_installed and name not in ("kst2", "gnuplot")
        }
        for name, result in found.items():
            note(f"  {name}: {result}")
        counts = {result[0] for result in found.values() if isinstance(result, tuple)}
        averages = [result[1] for result in found.values() if isinstance(result, tuple)]
        if len(counts) > 1 or (averages and max(averages) - min(averages) > 1e-3):
            raise Failure("the other tools do not find the same minutes")

    def _own_commands(self):
        ours = self._programs
        archives = self._archives
        copy, cut = self._output("copy"), self._output("cut")
        return {
            "find lines": ours.find_lines(self._day),
            "load": ours.load(self._day),
            "load, 128 bits": ours.load(self._day, environment={"FVQA_VECTOR_BITS": "128"}),
            "load a tenth": ours.load(self._tenth),
            "inflate": ours.inflate(archives),
            "unzip": Command(["unzip", "-p", f"{archives}/*.ghg", "*.data"]),
            "archives": ours.load(archives),
            "archives, two jobs": ours.load(archives, jobs=2),
            "cut": Command(["cut", "-f", EXPORTED_COLUMNS, self._day], output=cut, stdout=cut),
            "cp": Command(["cp", self._day, copy], output=copy),
            "text": ours.export(self._day, "text"),
            "tob1": ours.export(self._day, "tob1"),
            "plot": ours.plot(self._plotted),
        }

    def _output(self, name):
        return self._settings.scratch / f"{name}.out"

    def _peer_commands(self):
        tasks = {
            "duckdb": ("minutes", "text"),
            "polars": ("minutes", "text"),
            "pandas": ("minutes", "binary"),
            "data.table": ("minutes",),
        }
        commands = {}
        for name, peer in self._peers.items():
            if not peer.is_installed:
                continue
            if name not in tasks:
                picture = self._settings.scratch / f"{name}.png"
                arguments = [*peer.command, self._plotted, KEY_LINES, PLOTTED_COLUMN, picture]
                commands[name] = Command(arguments, output=picture)
                continue
            for task in tasks[name]:
                output = None if task == "minutes" else self._output(name)
                threads = best_threads(self._meter, peer, task, self._tenth, output)
                self._threads[f"{name} {task}"] = threads
                commands[f"{name} {task}"] = peer.task(task, self._day, threads, output)
        return commands

    def _against(self, what, peer, ours, reference, target, figure="cpu"):
        if peer not in self._peers:
            return skipped(what, "without other tools")
        if not self._peers[peer].is_installed:
            return skipped(what, f"no {peer}")
        if reference in self._rounds.failures:
            return skipped(what, self._rounds.failures[reference])
        return compare(what, ours, getattr(self._rounds, figure)(reference), target)

    def _loading(self):
        cpu = self._rounds.cpu
        load = cpu("load")
        narrow = compare("load by 128-bit vectors / load", cpu("load, 128 bits"), load, 1.25)
        return [
            self._against("load / DuckDB", "duckdb", load, "duckdb minutes", 1 / 6),
            self._against("load / polars", "polars", load, "polars minutes", 1 / 5.5),
            self._against("load / data.table", "data.table", load, "data.table minutes", None),
            self._against("load / pandas", "pandas", load, "pandas minutes", None),
            compare("load / find lines and sum bytes", load, cpu("find lines"), 3.3),
            narrow,
        ]

    def _memory(self):
        peak, small = self._rounds.peak("load"), self._rounds.peak("load a tenth")
        if peak is None or small is None:
            return [limit("peak memory of the load", None, 64, "MB")]
        sizes = [path.stat().st_size for path in (self._day, self._tenth)]
        half_hour = 36000 * sizes[0] / (self._programs.lines_in(self._day) - KEY_LINES)
        growth = (peak - small) / ((sizes[0] - sizes[1]) / half_hour)
        tenth = f"{small / KIB:.1f} MB for a tenth"
        return [
            limit("peak memory of the load", peak / KIB, 64, "MB"),
            limit("its growth a half hour (series)", growth, 48, "KB", tenth),
        ]

    def _archive_loading(self):
        cpu, wall = self._rounds.cpu, self._rounds.wall
        return [
            compare("load of archives / inflating by zlib", cpu("archives"), cpu("inflate"), 1.35),
            compare("load of archives / unzip -p", cpu("archives"), cpu("unzip"), 0.65),
            compare("two jobs / one, wall", wall("archives, two jobs"), wall("archives"), 0.55),
        ]

    def _many_files(self):
        note("Loading many files")
        count = self._settings.files
        each = medians(self._settings.runs, lambda: {"us": self._programs.merging(count)}).get("us")
        folder, names = self._data.small_archives(count)
        # Long enough to need no median.
        half, whole = (
            medians(1, lambda n=n: self._programs.window_loading(folder, names[:n]))
            for n in (count // 2, count)
        )
        what = f"{count} files / half as many, processor time in the window"
        return [
            limit(f"merging and table, a file of {count}", each, 20, "us"),
            compare(what, whole.get("cpu"), half.get("cpu"), 2.2),
            self._whole_interface_thread(whole),
            limit("series of a half-hour file", self._series_kilobytes(folder, names), 48, "KB"),
        ]

    @staticmethod
    def _whole_interface_thread(whole):
        what = "all that the interface thread does, a file"
        if not whole:
            return Row(what, "-", met="not measured")
        return Row(what, f"{whole['interface'] / whole['files'] * 1e6:.3g} us")

    # By how much the peak grows when more files are loaded.
    def _series_kilobytes(self, folder, names):
        most = min(len(names), 2000)
        counts = (most // 2, most)
        commands = [self._programs.load(*names[:count], folder=folder) for count in counts]
        try:
            peaks = [self._meter.cost(command).peak for command in commands]
        except Failure as failure:
            note(f"  {failure}")
            return None
        return (peaks[1] - peaks[0]) / (counts[1] - counts[0])

    # Records are read again for an export, so that the reading is part of its cost on both sides; what an
    # export has loaded before is not.
    def _exporting(self):
        cpu = self._rounds.cpu
        load, text, tob1 = cpu("load"), cpu("text"), cpu("tob1")
        text_alone = None if None in (load, text) else text - load
        tob1_alone = None if None in (load, tob1) else tob1 - load
        return [
            compare("text export / cut", text_alone, cpu("cut"), 0.85),
            self._against("text export / polars", "polars", text_alone, "polars text", 1 / 4),
            self._against("text export / DuckDB", "duckdb", text_alone, "duckdb text", 1 / 7),
            compare("text export with its load / cut", text, cpu("cut")),
            compare("TOB1 export / cp", tob1_alone, cpu("cp"), 2.5),
            self._against("TOB1 export / pandas", "pandas", tob1_alone, "pandas binary", 1 / 9),
            compare("TOB1 export with its load / cp", tob1, cpu("cp")),
        ]

    def _plotting(self):
        note("Plotting")
        steps = medians(self._settings.runs, lambda: self._programs.plot_window(self._plotted))
        one = steps.get("zoom to 5000 s of one variable", (None, None))
        eight = steps.get("zoom to 5000 s of all of them", (None, None))
        following, _ = steps.get("drop of a next variable", (None, None))
        plot = self._rounds.wall("plot")
        return [
            self._against("start to picture / kst2, wall", "kst2", plot, "kst2", 1 / 3, "wall"),
            self._against("start to picture / gnuplot, wall", "gnuplot", plot, "gnuplot", 1 / 20, "wall"),
            self._against("a next variable / kst2, wall", "kst2", following, "kst2", 1 / 20, "wall"),
            self._against("zoom to 5000 s of records / kst2, wall", "kst2", one[0], "kst2", 1 / 20, "wall"),
            compare("that zoom of eight variables / of one, processor", eight[1], one[1], 1.5),
        ]

    def _window(self):
        note("Loading ten files into the window")
        files = self._data.ten_files()
        names = [path.name for path in files]
        figures = medians(self._settings.runs, lambda: self._programs.window_loading(files[0].parent, names))
        return [limit("longest moment without an answer while ten files load", figures.get("gap"), 100, "ms")]
