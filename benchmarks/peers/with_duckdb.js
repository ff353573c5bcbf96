// with_duckdb.js TASK FILE SKIPPED_LINES THREADS [OUTPUT]: a task of scripts/bench, done by DuckDB.
"use strict";

const { DuckDBInstance } = require("@duckdb/node-api");
const { readLayout } = require("./layout.js");

const [task, path, skippedLines, threads, output] = process.argv.slice(2);
const { names, values } = readLayout(path, Number(skippedLines));

const quoted = (name) => `"${name}"`;
const type = (name) =>
  ({ SECONDS: "UINTEGER", NANOSECONDS: "UINTEGER", CHK: "INTEGER" })[name] ??
  (values.includes(name) ? "FLOAT" : "VARCHAR");
const columns = names.map((name) => `'${name}': '${type(name)}'`).join(", ");
const source =
  `read_csv('${path}', delim='\t', header=false, skip=${skippedLines}, quote='', escape='', ` +
  `auto_detect=false, columns={${columns}})`;

async function minutes(connection) {
  const statistics = ["avg", "min", "max"]
    .flatMap((statistic) => values.map((name, i) => `${statistic}(${quoted(name)}) AS ${statistic}${i}`))
    .join(", ");
  await connection.run(
    `CREATE TABLE minutes AS SELECT SECONDS // 60 AS minute, ${statistics} FROM ${source} GROUP BY minute`,
  );
  const result = await connection.runAndReadAll("SELECT count(*), avg(avg3) FROM minutes");
  const [count, average] = result.getRows()[0];
  console.log("minutes %d %d", Number(count), average);
}

async function text(connection) {
  const written = ["SECONDS", "NANOSECONDS", ...values].map(quoted).join(", ");
  const options = "(DELIMITER '\t', HEADER true)";
  await connection.run(`COPY (SELECT ${written} FROM ${source}) TO '${output}' ${options}`);
}

async function main() {
  const instance = await DuckDBInstance.create(":memory:", { threads });
  const connection = await instance.connect();
  await { minutes, text }[task](connection);
}

main().catch((error) => {
  console.error(String(error));
  process.exitCode = 1;
});
