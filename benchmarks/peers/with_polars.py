"""with_polars.py TASK FILE SKIPPED_LINES THREADS [OUTPUT]: a task of scripts/bench, done by polars."""

import os
import sys

os.environ["POLARS_MAX_THREADS"] = sys.argv[4]  # read when the module is loaded

import polars as pl  # noqa: E402

from layout import read_layout  # noqa: E402

TYPES = {"SECONDS": pl.UInt32, "NANOSECONDS": pl.UInt32, "CHK": pl.Int32}


def read(path, skipped_lines, names, values):
    schema = {name: TYPES.get(name, pl.Float32 if name in values else pl.String) for name in names}
    return pl.scan_csv(
        path, has_header=False, skip_rows=skipped_lines, separator="\t", quote_char=None, schema=schema
    )


def minutes(rows, values):
    statistics = [
        getattr(pl.col(name), statistic)().alias(f"{name} {statistic}")
        for statistic in ("mean", "min", "max")
        for name in values
    ]
    result = rows.group_by(pl.col("SECONDS") // 60).agg(statistics).collect()
    print("minutes", result.height, result[f"{values[3]} mean"].mean())


def text(rows, values, output):
    rows.select("SECONDS", "NANOSECONDS", *values).collect().write_csv(output, separator="\t")


def main(task, path, skipped_lines, _threads, *output):
    names, values = read_layout(path, int(skipped_lines))
    {"minutes": minutes, "text": text}[task](read(path, int(skipped_lines), names, values), values, *output)


main(*sys.argv[1:])
