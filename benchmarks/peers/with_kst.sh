#!/usr/bin/env bash
# with_kst.sh FILE SKIPPED_LINES COLUMN OUTPUT: draws a column over the whole seconds as a picture. It reads
# no others.
set -euo pipefail

export QT_QPA_PLATFORM=offscreen
exec kst2 "$1" -f "$2" -x 2 -y "$3" --png "$4"
