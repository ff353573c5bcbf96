"""Jobs that read from the companion's pipe give what the records give, whatever awk there is."""

import shutil
import unittest
from collections import defaultdict

from document import blocks_of
from records import text_rows
from workplace import RECIPES, Workplace

AWKS = ("mawk", "gawk")
QA330 = "QA330-2019-06-01T130000.data"
HALF_HOURS = ("2019-06-01T120000_AIU-0412.ghg", "2019-06-01T123000_AIU-0412.ghg", "2019-06-01T130000_AIU-0412.ghg")


def recipe(program, text):
    found = [block for block in blocks_of(RECIPES) if block.kind == "sh" and program in block.text and text in block.text]
    assert len(found) == 1, (program, text)
    return found[0]


def means(points, period):
    """begin, mean and number of each period's values, as numbers."""
    periods = defaultdict(list)
    for time, value in points:
        periods[int(float(time)) // period * period].append(float(value))
    return [(begin, sum(values) / len(values), len(values)) for begin, values in sorted(periods.items())]


class Pipes(Workplace):
    def setUp(self):
        super().setUp()
        self.copy_examples()
        self.environment["PATH"] = f"{self.folder}:{self.environment['PATH']}"

    def use_awk(self, name):
        """Puts this awk in the place of the one that the recipes call."""
        program = shutil.which(name)
        self.assertIsNotNone(program, f"{name} is not installed")
        (self.folder / "awk").unlink(missing_ok=True)
        (self.folder / "awk").symlink_to(program)

    def compare(self, printed, wanted, digits):
        rows = [line.split(" ") for line in printed.splitlines()]
        self.assertEqual(rows, [[str(begin), f"{mean:.{digits}f}", str(count)] for begin, mean, count in wanted])

    def test_awk_takes_the_means_of_a_series(self):
        wanted = means(self.series("QA330:DATA:CH4", QA330), 300)
        for name in AWKS:
            with self.subTest(name):
                self.use_awk(name)
                self.compare(self.run_block(recipe("awk", "series")).stdout, wanted, 4)

    def test_awk_takes_the_half_hour_means_of_a_folder(self):
        key = "AIU-0412:DATA:CO2 (umol/mol)"
        wanted = means([point for file in HALF_HOURS for point in self.series(key, file)], 1800)
        self.assertEqual([count for _, _, count in wanted], [1800, 1800, 1800])
        for name in AWKS:
            with self.subTest(name):
                self.use_awk(name)
                self.compare(self.run_block(recipe("awk", "export")).stdout, wanted, 2)

    def test_what_is_not_a_number_is_left_out_by_every_awk(self):
        lines = ["Instrument:\tQA330", "Timezone:\tUTC", "DATAH\tSECONDS\tNANOSECONDS\tCH4"]
        lines += [f"DATA\t1559415600\t{i}00000000\t{value}" for i, value in enumerate(("1.5", "nan", "2.5"))]
        (self.folder / QA330).write_text("\n".join(lines) + "\n", encoding="utf-8")
        for name in AWKS:
            with self.subTest(name):
                self.use_awk(name)
                self.assertEqual(self.run_block(recipe("awk", "series")).stdout, "1559415600 2.0000 2\n")

    def test_sqlite_gets_every_point(self):
        values = [float(value) for _, value in self.series("QA330:DATA:CH4", QA330)]
        count, mean, most = self.run_block(recipe("sqlite3", "series")).stdout.strip().split("\t")
        self.assertEqual(int(count), len(values))
        self.assertEqual((mean, most), (f"{sum(values) / len(values):.4f}", f"{max(values):.4f}"))

    def test_text_in_a_pipe_is_the_file(self):
        self.export("AIU-0412:DATA", "text", "export.txt", *HALF_HOURS)
        piped = self.run_code(
            "sh", f"fvqa300-cli export --data AIU-0412:DATA --format text --output /dev/stdout {' '.join(HALF_HOURS)} | cat"
        )
        self.assertEqual(piped, (self.folder / "export.txt").read_text(encoding="utf-8"))
        self.assertEqual(len(text_rows(self.folder / "export.txt")[1]), 5400)

    def test_a_missing_file_fails_a_pipe_of_a_script_with_pipefail_only(self):
        pipe = "fvqa300-cli series --variable QA330:DATA:CH4 missing.data | awk '{ print }'\n"
        (self.folder / "script").write_text(pipe, encoding="utf-8")
        self.run_program("bash", "script")
        self.run_program("bash", "-o", "pipefail", "script", status=1)


if __name__ == "__main__":
    unittest.main()
