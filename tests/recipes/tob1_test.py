"""TOB1, read as the document tells, gives the times and values of the text export, record by record."""

import csv
import re
import unittest

import numpy as np

from document import blocks_of
from records import EXAMPLES, Source, known, six_digits, text_rows
from workplace import RECIPES, Workplace

BACK = 1572768000  # 2019-11-03 08:00 UTC: clocks in Denver go from 2:00 back to 1:00
FORWARD = 1552208400  # 2019-03-10 09:00 UTC: from 2:00 to 3:00
TOB1_EPOCH = 631152000


def by_the_letter(path):
    """A reader that takes UINT4 for integers with the most significant byte first."""
    kinds = {"UINT4": ">u4", "ULONG": "<u4", "IEEE4": "<f4"}
    with open(path, "rb") as file:
        types = [next(csv.reader([file.readline().decode("ascii")])) for _ in range(5)][4]
        return np.fromfile(file, dtype=[(str(i), kinds[kind]) for i, kind in enumerate(types)])


class Tob1(Workplace):
    def setUp(self):
        super().setUp()
        self.copy_examples()
        self.recipe = {}
        for block in blocks_of(RECIPES):
            if "file" in block.options:
                exec(block.text, self.recipe)

    def read(self, name="export.tob1"):
        return self.recipe["read_tob1"](self.folder / name)

    def utc(self, records, zone, fold=0):
        return self.recipe["utc_of_tob1"](records, zone, fold)

    def export_both(self, source):
        """The TOB1 records, and the rows of the text."""
        self.export(source.data, "tob1", "export.tob1", *source.files)
        self.export(source.data, "text", "export.txt", *source.files)
        return self.read(), text_rows(self.folder / "export.txt")[1]

    def compare_times(self, times, rows):
        exact = [int(row[0]) * 10**9 + int(row[1]) for row in rows]
        self.assertEqual(times.dtype, "M8[ns]")
        self.assertEqual(times.astype("i8").tolist(), exact)

    def test_every_record_has_the_time_and_values_of_the_text(self):
        for source in EXAMPLES:
            with self.subTest(source):
                records, rows = self.export_both(source)
                self.compare_times(self.utc(records, source.zone), rows)
                self.assertEqual(records["RECORD"].tolist(), list(range(len(rows))))
                values = [[six_digits(value) for value in list(record)[3:]] for record in records.tolist()]
                self.assertEqual(values, [row[2:] for row in rows])

    def test_every_value_has_all_digits_that_the_companion_prints(self):
        for source in EXAMPLES:
            with self.subTest(source):
                records, _ = self.export_both(source)
                names, _ = text_rows(self.folder / "export.txt")
                _, columns = known(self, source)
                self.assertEqual(len(records.dtype.names), len(columns) + 3)
                for ours, name in zip(records.dtype.names[3:], names[2:]):
                    wanted = np.array(columns[name], dtype="f8").astype("f4")
                    np.testing.assert_array_equal(records[ours], wanted, name)

    def made(self, start, hours, zone="America/Denver"):
        self.run_program(
            *("fvqa300-generate", "--kind", "qa330", "--rate", "1", "--zone", zone),
            *("--start", start, "--hours", hours, "--output", "made.data"),
        )
        return Source("QA330:DATA", ("made.data",), zone)

    def test_times_are_right_across_a_change_of_the_clock(self):
        for change in (BACK, FORWARD):
            with self.subTest(change):
                records, rows = self.export_both(self.made(change - 600, "0.5"))
                self.compare_times(self.utc(records, "America/Denver"), rows)
                self.assertGreater(int(rows[-1][0]), change)

    def test_the_offset_is_that_of_the_first_record(self):
        for change, offset in ((BACK, -21600), (FORWARD, -25200)):
            with self.subTest(change):
                records, rows = self.export_both(self.made(change - 600, "0.5"))
                told = records["SECONDS"].astype("i8") - offset + TOB1_EPOCH
                self.assertEqual(told.tolist(), [int(row[0]) for row in rows])

    def test_a_file_that_begins_in_the_second_of_two_equal_hours_needs_the_fold(self):
        records, rows = self.export_both(self.made(BACK + 600, "0.1"))
        self.compare_times(self.utc(records, "America/Denver", fold=1), rows)
        hour_off = self.utc(records, "America/Denver") + np.timedelta64(3600, "s")
        self.compare_times(hour_off, rows)

    def test_zones_east_of_greenwich_and_off_the_hour_are_right(self):
        for zone in ("Asia/Kathmandu", "Australia/Adelaide", "UTC"):
            with self.subTest(zone):
                records, rows = self.export_both(self.made(1559415600, "0.05", zone))
                self.compare_times(self.utc(records, zone), rows)

    def test_each_piece_has_the_offset_of_its_own_first_record(self):
        source = self.made(BACK - 1800, "1")
        for form in ("tob1", "text"):
            self.export(source.data, form, f"piece.{form}", *source.files, options=("--split", "3600"))
        pieces = {"piece-2019-11-03T0130": 0, "piece-2019-11-03T0100": 1}
        self.assertEqual({path.stem for path in self.folder.glob("piece-*.tob1")}, set(pieces))
        for stem, fold in pieces.items():
            with self.subTest(stem):
                _, rows = text_rows(self.folder / f"{stem}.text")
                self.compare_times(self.utc(self.read(f"{stem}.tob1"), "America/Denver", fold), rows)

    def test_names_that_come_out_the_same_get_their_position(self):
        lines = [
            "Instrument:\tX",
            "Timezone:\tUTC",
            "DATAH\tSECONDS\tNANOSECONDS\tDetector Temperature (A)\tDetector Temperature (B)",
            "DATA\t1559415600\t0\t1.5\t2.5",
        ]
        (self.folder / "alike.data").write_text("\n".join(lines) + "\n", encoding="utf-8")
        self.export("X:DATA", "tob1", "export.tob1", "alike.data")
        records = self.read()
        self.assertEqual(records.dtype.names[3:], ("DetectorTemperat", "DetectorTemperat_4"))
        self.assertEqual(records.tolist()[0][3:], (1.5, 2.5))

    def test_ulong_puts_readers_right_that_take_uint4_for_most_significant_byte_first(self):
        replace = next(block for block in blocks_of(RECIPES) if "ULONG" in block.text and block.kind == "sh")
        for source in EXAMPLES:
            with self.subTest(source):
                self.export(source.data, "tob1", "ch4.tob1", *source.files)
                self.run_block(replace)
                before, after = ((self.folder / name).read_bytes() for name in ("ch4.tob1", "ch4-ulong.tob1"))
                head = r'((?:[^\n]*\n){4})((?:"UINT4",){3})(.*)'
                first, types, rest = re.fullmatch(head.encode(), before, re.DOTALL).groups()
                self.assertEqual(after, first + types.replace(b"UINT4", b"ULONG") + rest)
                ours, nonsense, right = self.read("ch4.tob1"), *map(
                    by_the_letter, (self.folder / "ch4.tob1", self.folder / "ch4-ulong.tob1")
                )
                for i, name in enumerate(ours.dtype.names):
                    np.testing.assert_array_equal(right[str(i)], ours[name], name)
                self.assertFalse(np.any(nonsense["0"] == ours["SECONDS"]))
                # The recipe's own reader takes both.
                np.testing.assert_array_equal(self.read("ch4-ulong.tob1"), ours)


if __name__ == "__main__":
    unittest.main()
