"""with_duckdb.py TASK FILE SKIPPED_LINES THREADS [OUTPUT]: a task of scripts/bench, done by DuckDB."""

import sys

import duckdb

from layout import read_layout

TYPES = {"SECONDS": "UINTEGER", "NANOSECONDS": "UINTEGER", "CHK": "INTEGER"}


def source(path, skipped_lines, names, values):
    def type_of(name):
        return TYPES.get(name, "FLOAT" if name in values else "VARCHAR")

    columns = ", ".join(f"'{name}': '{type_of(name)}'" for name in names)
    return (
        f"read_csv('{path}', delim='\t', header=false, skip={skipped_lines}, quote='', escape='', "
        f"auto_detect=false, columns={{{columns}}})"
    )


def minutes(connection, table, values):
    statistics = ", ".join(
        f'{statistic}("{name}") AS {statistic}{i}'
        for statistic in ("avg", "min", "max")
        for i, name in enumerate(values)
    )
    connection.execute(
        f"CREATE TABLE minutes AS SELECT SECONDS // 60 AS minute, {statistics} FROM {table} GROUP BY minute"
    )
    print("minutes", *connection.execute("SELECT count(*), avg(avg3) FROM minutes").fetchone())


def text(connection, table, values, output):
    written = ", ".join(f'"{name}"' for name in ["SECONDS", "NANOSECONDS", *values])
    connection.execute(f"COPY (SELECT {written} FROM {table}) TO '{output}' (DELIMITER '\t', HEADER true)")


def main(task, path, skipped_lines, threads, *output):
    names, values = read_layout(path, int(skipped_lines))
    connection = duckdb.connect(":memory:", config={"threads": int(threads)})
    table = source(path, skipped_lines, names, values)
    {"minutes": minutes, "text": text}[task](connection, table, values, *output)


main(*sys.argv[1:])
