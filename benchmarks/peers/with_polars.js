// with_polars.js TASK FILE SKIPPED_LINES THREADS [OUTPUT]: a task of scripts/bench, done by polars.
"use strict";

const [task, path, skippedLines, threads, output] = process.argv.slice(2);
process.env.POLARS_MAX_THREADS = threads;

const loaded = require("nodejs-polars");
const pl = loaded.default ?? loaded;
const { readLayout } = require("./layout.js");

const { names, values } = readLayout(path, Number(skippedLines));
const types = { SECONDS: pl.UInt32, NANOSECONDS: pl.UInt32, CHK: pl.Int32 };
const typeOf = (name) => types[name] ?? (values.includes(name) ? pl.Float32 : pl.Utf8);
const schema = Object.fromEntries(names.map((name) => [name, typeOf(name)]));

function read() {
  return pl.scanCSV(path, {
    hasHeader: false,
    skipRows: Number(skippedLines),
    sep: "\t",
    schema,
  });
}

const tasks = {
  async minutes() {
    const each = (statistic, name) => pl.col(name)[statistic]().alias(`${name} ${statistic}`);
    const statistics = ["mean", "min", "max"].flatMap((statistic) =>
      values.map((name) => each(statistic, name)),
    );
    const minutes = await read()
      .withColumn(pl.col("SECONDS").sub(pl.col("SECONDS").rem(60)).alias("minute"))
      .groupBy("minute")
      .agg(...statistics)
      .collect();
    console.log("minutes %d %s", minutes.height, minutes.getColumn(`${values[3]} mean`).mean());
  },
  async text() {
    const rows = await read()
      .select("SECONDS", "NANOSECONDS", ...values)
      .collect();
    rows.writeCSV(output, { separator: "\t" });
  },
};

tasks[task]().catch((error) => {
  console.error(String(error));
  process.exitCode = 1;
});
