# with_datatable.R TASK FILE SKIPPED_LINES THREADS: a task of scripts/bench, done by R's data.table.

suppressPackageStartupMessages(library(data.table))

arguments <- commandArgs(trailingOnly = TRUE)
path <- arguments[2]
skipped <- as.integer(arguments[3])
setDTthreads(as.integer(arguments[4]))

# The header line is the last of the lines to skip.
names <- strsplit(tail(readLines(path, n = skipped), 1), "\t", fixed = TRUE)[[1]]
values <- setdiff(names, c("DATAH", "SECONDS", "NANOSECONDS", "DATE", "TIME", "CHK"))

stopifnot(arguments[1] == "minutes")
rows <- fread(path, sep = "\t", header = FALSE, skip = skipped, col.names = names, quote = "",
              showProgress = FALSE)
rows[, minute := SECONDS %/% 60L]
result <- rows[, c(lapply(.SD, mean), lapply(.SD, min), lapply(.SD, max)), by = minute, .SDcols = values]
cat("minutes", nrow(result), format(mean(result[[5]]), digits = 12), "\n")
