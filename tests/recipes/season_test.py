"""The manual's commands for a season of half hours: nothing is lost, doubled or out of place, however they run."""

import os
import shutil
import subprocess
import tempfile
import unittest
import zipfile
from datetime import datetime, timezone
from pathlib import Path

from document import blocks_of
from records import text_rows
from workplace import PROGRAMS, PROJECT, Workplace

CHAPTER = PROJECT / "docs" / "manual" / "08-season.md"
STATIONS = {"north": "AIU-0977", "south": "AIU-0978"}
MIDNIGHT = 1559368800  # 2019-06-01 00:00 in Denver
DAYS = ("2019-06-01", "2019-06-02", "2019-06-03")
A_DAY, A_HALF_HOUR = 86400, 1800
END = MIDNIGHT + len(DAYS) * A_DAY
DAMAGED = "2019-06-02T103000_AIU-0977.ghg"


class Season(Workplace):
    """Two stations, three local days, a record a second."""

    @classmethod
    def setUpClass(cls):
        made = tempfile.TemporaryDirectory()
        cls.addClassCleanup(made.cleanup)
        cls.made = Path(made.name) / "season"
        for station, instrument in STATIONS.items():
            command = f"--kind archives --rate 1 --compression 1 --count {48 * len(DAYS)} --start {MIDNIGHT}".split()
            command += ["--instrument", instrument, "--output", str(cls.made / station)]
            subprocess.run([PROGRAMS / "fvqa300-generate", *command], check=True)

    def setUp(self):
        super().setUp()
        shutil.copytree(self.made, self.folder / "season", copy_function=os.link)

    def block(self, *texts):
        """The one block of the chapter that holds these texts."""
        found = [block for block in blocks_of(CHAPTER) if all(text in block.text for text in texts)]
        self.assertEqual(len(found), 1, texts)
        return found[0]

    # Runs the block with these texts.
    def do(self, *texts, status=0):
        return self.run_block(self.block(*texts), status)

    def exported(self, *files):
        """The seconds of all records of these exports, one behind another."""
        return [int(row[0]) for file in files for row in text_rows(self.folder / file)[1]]

    def recorded(self, begin, end, station="north"):
        """The seconds of the records that the station's archives hold, read by nothing of ours."""
        seconds = []
        for archive in sorted((self.made / station).iterdir()):
            with zipfile.ZipFile(archive) as members:
                data = next(name for name in members.namelist() if name.endswith(".data"))
                lines = members.read(data).decode("utf-8").splitlines()
            seconds += [int(line.split("\t")[1]) for line in lines if line.startswith("DATA\t")]
        self.assertGreater(len(seconds), len(DAYS) * A_DAY * 0.99)
        return [second for second in seconds if begin <= second < end]

    def same(self, found, wanted):
        """Equal lists of seconds; tells of a few only."""
        missing, extra = sorted(set(wanted) - set(found)), sorted(set(found) - set(wanted))
        self.assertEqual((len(found), missing[:3], extra[:3]), (len(wanted), [], []))
        self.assertTrue(found == wanted, "another order")

    def files(self, folder):
        """Contents by name; the folder is emptied, so that the next run starts anew."""
        contents = {path.name: path.read_bytes() for path in (self.folder / folder).iterdir()}
        for name in contents:
            (self.folder / folder / name).unlink()
        return contents

    def damage(self):
        archive = self.folder / "season" / "north" / DAMAGED
        whole = archive.read_bytes()
        archive.unlink()  # is shared with the other tests
        archive.write_bytes(whole[: len(whole) // 2])
        return archive, whole

    def test_a_whole_season_has_no_messages(self):
        self.do("messages season")
        self.assertEqual((self.folder / "messages.txt").read_text(), "")

    def test_a_damaged_archive_is_named_in_messages(self):
        self.damage()
        done = self.do("messages season", status=1)
        told = (self.folder / "messages.txt").read_text()
        self.assertTrue(told.startswith(f"season/north/{DAMAGED}: "), told)
        self.assertEqual(told.count("\n"), 1)
        self.assertIn(DAMAGED, done.stderr)

    def test_daily_files_hold_a_day_of_utc_each_and_all_together_everything(self):
        done = self.do("--split 86400", "season/north\n")
        names = ["north-2019-06-01.txt", "north-2019-06-01-2.txt", "north-2019-06-02.txt", "north-2019-06-03.txt"]
        self.assertEqual(sorted(os.listdir(self.folder / "daily")), sorted(names))
        self.assertIn("north-2019-06-01-2.txt", done.stderr)
        for name in names:
            self.assertEqual(len({second // A_DAY for second in self.exported(f"daily/{name}")}), 1, name)
        self.same(self.exported(*(f"daily/{name}" for name in names)), self.recorded(MIDNIGHT, END))

    def test_daily_files_of_a_damaged_season_lack_the_damaged_half_hour_alone(self):
        self.damage()
        done = self.do("--split 86400", "season/north\n", status=1)
        self.assertIn(f"season/north/{DAMAGED}: ", done.stderr)
        begin = MIDNIGHT + A_DAY + 21 * A_HALF_HOUR
        found = sorted(self.exported(*(f"daily/{name}" for name in os.listdir(self.folder / "daily"))))
        wanted = self.recorded(MIDNIGHT, begin) + self.recorded(begin + A_HALF_HOUR, END)
        self.same(found, wanted)

    def by_the_loop(self):
        self.do("for day in")
        return self.files("local")

    def test_a_file_for_each_local_day_holds_that_day(self):
        self.do("for day in")
        self.assertEqual(sorted(os.listdir(self.folder / "local")), [f"north-{day}.txt" for day in DAYS])
        for i, day in enumerate(DAYS):
            begin = MIDNIGHT + i * A_DAY
            self.assertEqual(datetime.fromtimestamp(begin, timezone.utc).isoformat(), f"{day}T06:00:00+00:00")
            self.same(self.exported(f"local/north-{day}.txt"), self.recorded(begin, begin + A_DAY))

    def test_every_way_writes_the_same_local_days(self):
        wanted = self.by_the_loop()
        self.do("--joblog days.log fvqa300-cli")
        self.assertEqual(self.files("local"), wanted)
        self.do("--sshloginfile")
        self.assertEqual(self.files("local"), wanted)
        self.do("SLURM_ARRAY_TASK_ID")
        second = "north-2019-06-02.txt"
        self.assertEqual(self.files("local"), {second: wanted[second]})
        for number in (1, 2, 3):
            self.run_code("sh", f"SLURM_ARRAY_TASK_ID={number} sh day.sh")
        self.assertEqual(self.files("local"), wanted)

    def test_a_station_a_job_writes_what_one_machine_writes(self):
        self.do("--split 86400", "season/north\n")
        wanted = self.files("daily")
        self.do(":::+")
        written = self.files("daily")
        self.assertEqual({name: text for name, text in written.items() if name.startswith("north")}, wanted)
        self.assertEqual({name.replace("south", "north") for name in written if name.startswith("south")}, set(wanted))

    def test_a_day_that_failed_is_in_the_log_and_done_again(self):
        wanted = self.by_the_loop()
        archive, whole = self.damage()
        done = self.do("--joblog days.log fvqa300-cli", status=1)
        self.assertIn(f"season/north/{DAMAGED}: ", done.stderr)
        jobs = [line.split("\t") for line in (self.folder / "days.log").read_text().splitlines()[1:]]
        failed = [job[8] for job in jobs if job[6] != "0"]
        self.assertEqual((len(jobs), len(failed)), (3, 1))
        self.assertIn("2019-06-02", failed[0])
        archive.write_bytes(whole)
        self.do("--retry-failed")
        self.assertEqual(self.files("local"), wanted)
        jobs = [line.split("\t") for line in (self.folder / "days.log").read_text().splitlines()[1:]]
        self.assertEqual(len(jobs), 4)

    def test_a_job_of_a_queue_that_could_not_do_all_ends_with_one(self):
        (self.folder / "local").mkdir()
        self.do("SLURM_ARRAY_TASK_ID")
        self.damage()
        (self.folder / "job").write_text("SLURM_ARRAY_TASK_ID=2 sh day.sh")
        done = self.run_program("sh", "job", status=1)
        self.assertEqual(done.stderr.count("\n"), 1)
        self.assertIn(f"season/north/{DAMAGED}: ", done.stderr)


if __name__ == "__main__":
    unittest.main()
