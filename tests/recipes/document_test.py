"""The document does what it says: each block runs, in order, and prints what stands below it."""

import shutil
import sys
import unittest

from document import blocks_of
from workplace import RECIPES, Workplace


class Document(Workplace):
    def test_each_block_runs_and_prints_what_is_told(self):
        self.copy_examples()
        ran = 0
        for block in blocks_of(RECIPES):
            program = block.options.get("needs")
            if program and not shutil.which(program):
                print(f"NOT RUN, as there is no {program}: {block}", file=sys.stderr)
                continue
            with self.subTest(str(block)):
                done = self.run_block(block)
                ran += 1
                if block.printed is not None:
                    self.assertEqual(done.stdout, block.printed)
        self.assertGreaterEqual(ran, 16)

    def test_only_duckdb_may_be_missing(self):
        self.assertEqual({block.options["needs"] for block in blocks_of(RECIPES) if "needs" in block.options}, {"duckdb"})


if __name__ == "__main__":
    unittest.main()
