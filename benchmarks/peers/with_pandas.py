"""with_pandas.py TASK FILE SKIPPED_LINES THREADS [OUTPUT]: a task of scripts/bench, done by pandas.

It has one thread, whatever is asked for.
"""

import sys

import numpy
import pandas

from layout import read_layout

TYPES = {"SECONDS": numpy.uint32, "NANOSECONDS": numpy.uint32, "CHK": numpy.int32}


def read(path, skipped_lines, names, values, wanted):
    types = {name: TYPES.get(name, numpy.float32 if name in values else str) for name in names}
    return pandas.read_csv(
        path, sep="\t", header=None, skiprows=skipped_lines, names=names, dtype=types, quoting=3,
        engine="c", usecols=wanted,
    )


def minutes(path, skipped_lines, names, values):
    rows = read(path, skipped_lines, names, values, names)
    result = rows.groupby(rows["SECONDS"] // 60)[values].agg(["mean", "min", "max"])
    print("minutes", len(result), result[values[3]]["mean"].astype(float).mean())


def binary(path, skipped_lines, names, values, output):
    rows = read(path, skipped_lines, names, values, ["SECONDS", "NANOSECONDS", *values])
    rows.to_records(index=False).tofile(output)


def main(task, path, skipped_lines, _threads, *output):
    names, values = read_layout(path, int(skipped_lines))
    {"minutes": minutes, "binary": binary}[task](path, int(skipped_lines), names, values, *output)


main(*sys.argv[1:])
