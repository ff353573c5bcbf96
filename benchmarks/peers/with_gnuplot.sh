#!/usr/bin/env bash
# with_gnuplot.sh FILE SKIPPED_LINES COLUMN OUTPUT: draws a column over the seconds as a picture.
set -euo pipefail

gnuplot <<END
set terminal png size 1024,768
set output "$4"
set datafile separator "\t"
plot "$1" skip $2 using 2:$3 with lines title "column $3"
END
