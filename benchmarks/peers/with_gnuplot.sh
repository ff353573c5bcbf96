#!/usr/bin/env bash
# with_gnuplot.sh FILE SKIPPED_LINES COLUMN OUTPUT: draws a column over time as a picture, each record at its
# own time as our plots have it. No field holds a space, and gnuplot is faster when it is not told of the tabs.
set -euo pipefail

gnuplot <<END
set terminal png size 1024,768
set output "$4"
set xdata time
set timefmt "%s"
set format x "%H:%M"
plot "$1" skip $2 using (\$2 + \$3 * 1e-9):$3 with lines title "column $3"
END
