"""The text export, read as the document tells, gives the times and values that the companion prints."""

import csv
import unittest
import warnings
from datetime import datetime

import pandas as pd

from document import blocks_of
from records import EXAMPLES, known, six_digits, text_rows
from workplace import RECIPES, Workplace


def reading_code(kind, call, file):
    """The lines of the recipe that reads ch4.txt by `call`, up to the first that prints, for another file."""
    block = next(block for block in blocks_of(RECIPES) if block.kind == kind and f'{call}("ch4.txt"' in block.text)
    return block.text[: block.text.index("print(")].replace("ch4.txt", str(file))


class TextExport(Workplace):
    def setUp(self):
        super().setUp()
        self.copy_examples()
        self.file = self.folder / "export.txt"

    def export_text(self, source, columns="seconds,nanoseconds"):
        self.export(source.data, "text", self.file, *source.files, options=("--time-columns", columns))

    def compare(self, source, times, columns):
        """Microseconds and six digits, by name, against what the companion prints."""
        known_times, known_columns = known(self, source)
        self.assertEqual(times, [format(float(time), ".6f") for time in known_times])
        self.assertEqual(sorted(columns), sorted(known_columns))
        for name, values in known_columns.items():
            self.assertEqual(columns[name], [six_digits(value) for value in values], name)

    def test_pandas_reads_every_record(self):
        for source in EXAMPLES:
            with self.subTest(source):
                self.export_text(source)
                names = {}
                exec(reading_code("python", "read_csv", self.file), names)
                table = names["table"]
                _, rows = text_rows(self.file)
                exact = [int(row[0]) * 10**9 + int(row[1]) for row in rows]
                self.assertEqual(table.index.astype("int64").tolist(), exact)
                self.compare(
                    source,
                    [f"{time // 10**9}.{time % 10**9 // 1000:06}" for time in exact],
                    {name: [six_digits(value) for value in table[name]] for name in table.columns[2:]},
                )

    def read_by_r(self, code):
        """The table that R code leaves: its time, if it has one, and the columns behind SECONDS and NANOSECONDS."""
        self.run_code(
            "r",
            code
            + """
            table <- as.data.frame(table, check.names = FALSE)
            if (is.null(table$time)) table$time <- table$SECONDS + table$NANOSECONDS / 1e9
            result <- lapply(table[setdiff(names(table), c("SECONDS", "NANOSECONDS"))], as.numeric)
            result <- mapply(function(name, values) sprintf(if (name == "time") "%.6f" else "%.6g", values),
                names(result), result)
            write.table(result, "read.txt", sep = "\\t", row.names = FALSE)
            """,
        )
        with open(self.folder / "read.txt", newline="", encoding="utf-8") as file:
            names, *rows = csv.reader(file, delimiter="\t")
        columns = {name: list(values) for name, values in zip(names, zip(*rows))}
        return columns.pop("time"), columns

    def test_r_reads_every_record(self):
        for source in EXAMPLES:
            for call in ("read.delim", "fread"):
                with self.subTest(source, call=call):
                    self.export_text(source)
                    times, columns = self.read_by_r(reading_code("r", call, self.file))
                    self.compare(source, times, columns)

    def test_what_is_not_a_number_is_missing_in_both(self):
        self.file.write_text("SECONDS\tNANOSECONDS\tCH4\n1\t0\tnan\n2\t0\t1.5\n", encoding="utf-8")
        names = {}
        exec(reading_code("python", "read_csv", self.file), names)
        self.assertEqual(names["table"]["CH4"].isna().tolist(), [True, False])
        for call in ("read.delim", "fread"):
            code = reading_code("r", call, self.file)
            self.assertEqual(self.run_code("r", code + 'cat(is.na(table$CH4), "\\n")'), "TRUE FALSE \n")


# What the document's table tells of each choice: readings are by name whether it stands above its own values.
CHOICES = {
    "0": ("empty names", "empty names", "empty names, warned"),
    "seconds": ("empty names", "empty names", "empty names, warned"),
    "seconds,nanoseconds": ("right", "right", "right"),
    "date,time": ("right", "right", "right"),
    "seconds,timestamp,offset": ("right", "right", "right"),
    "seconds,nanoseconds,date": ("shifted", "refused", "shifted, warned"),
    "seconds,nanoseconds,date,time": ("shifted", "refused", "right, the last unnamed, warned"),
    "seconds,nanoseconds,date,time,timestamp": ("shifted", "refused", "right, the last unnamed, warned"),
}

# What the first record holds in the three columns behind CH4, its TEMP, PRESSURE and RSSI.
BEHIND_CH4 = (20.142, 84.4402, 71.34)

READ_BY_R = """
warned <- FALSE
table <- withCallingHandlers(
    tryCatch(READ, error = function(e) NULL),
    warning = function(w) { warned <<- TRUE; invokeRestart("muffleWarning") })
cat(if (is.null(table)) "refused" else table[["CH4"]][1], warned, if (!is.null(table)) names(table), sep = "\\n")
"""


class TimeColumns(Workplace):
    """What stands under the name CH4 in the first record, whose CH4 is 1.92226."""

    def setUp(self):
        super().setUp()
        self.copy_examples()

    def outcome(self, value, names, warned):
        if value == "refused":
            return "refused"
        words = ["shifted" if float(value) in BEHIND_CH4 else "right"]
        if words == ["right"]:
            self.assertEqual(float(value), 1.92226)
            if names[-1] != "DIAG:BOXCONNECTED":
                # Beyond the last variable's name: a column too many; or the last variables went without theirs.
                words = ["empty names"] if "DIAG:BOXCONNECTED" in names else ["right", "the last unnamed"]
        return ", ".join(words + (["warned"] if warned else []))

    def by_pandas(self, file):
        with warnings.catch_warnings(record=True) as told:
            warnings.simplefilter("always")
            table = pd.read_csv(file, sep="\t")
        return self.outcome(table["CH4"].iloc[0], list(table.columns), bool(told))

    def by_r(self, read):
        value, warned, *names = self.run_code("r", READ_BY_R.replace("READ", read)).split("\n")[:-1]
        return self.outcome(value, names, warned == "TRUE")

    def test_two_are_taken_well_and_others_as_the_table_tells(self):
        for columns, told in CHOICES.items():
            with self.subTest(columns):
                file = self.folder / "choice.txt"
                self.export(
                    "QA330:DATA", "text", file, "QA330-2019-06-01T130000.data", options=("--time-columns", columns)
                )
                names, rows = text_rows(file)
                times = 0 if columns == "0" else len([name for name in columns.split(",") if name != "offset"])
                self.assertEqual(len(names), len(rows[0]) - times + 2)
                delim = self.by_r('read.delim("choice.txt", check.names = FALSE)')
                fread = self.by_r('data.table::fread("choice.txt")')
                self.assertEqual((self.by_pandas(file), delim, fread), told)

    def test_read_delim_shifts_three_where_no_time_comes_twice(self):
        self.export(
            "AIU-0412:DATA",
            "text",
            "choice.txt",
            "2019-06-01T120000_AIU-0412.ghg",
            options=("--time-columns", "seconds,nanoseconds,date"),
        )
        code = 'table <- read.delim("choice.txt", check.names = FALSE); cat(names(table)[1:2], table[1, 2], "\\n")'
        self.assertEqual(self.run_code("r", code), "SECONDS NANOSECONDS 2019-06-01 \n")

    def test_fread_takes_a_timestamp_with_offset_for_another_date(self):
        self.export(
            "QA330:DATA",
            "text",
            "clock.txt",
            "QA330-2019-06-01T130000.data",
            options=("--time-columns", "seconds,timestamp,offset"),
        )
        code = """library(data.table)
            cat(format(fread("clock.txt")$TIMESTAMP[1], "%Y-%m", tz = "UTC"), "\\n")
            cat(fread("clock.txt", colClasses = list(character = "TIMESTAMP"))$TIMESTAMP[1], "\\n")
            cat(read.delim("clock.txt")$TIMESTAMP[1], "\\n")"""
        told = self.run_code("r", code).splitlines()
        self.assertEqual(told, ["2021-11 ", "2019-06-01T13:00:00-21600 ", "2019-06-01T13:00:00-21600 "])

    def test_python_and_pandas_refuse_a_timestamp_with_offset(self):
        for read in (datetime.fromisoformat, pd.to_datetime):
            with self.assertRaises(ValueError):
                read("2019-06-01T13:00:00-21600")


if __name__ == "__main__":
    unittest.main()
