// What the other tools must be told of a data file: its header line is the last of the lines to skip.
"use strict";

const fs = require("fs");

function readLayout(path, skippedLines) {
  const file = fs.openSync(path, "r");
  const block = Buffer.alloc(64 * 1024);
  const size = fs.readSync(file, block);
  fs.closeSync(file);
  const header = block.toString("latin1", 0, size).split("\n")[skippedLines - 1];
  const names = header.split("\t");
  const notValues = new Set(["DATAH", "SECONDS", "NANOSECONDS", "DATE", "TIME", "CHK"]);
  return { names, values: names.filter((name) => !notValues.has(name)) };
}

module.exports = { readLayout };
