# shellcheck shell=bash
# What the tests of installing share. Sourced.

set -euo pipefail
failures=0

# wrong TEXT...: notes a failure and goes on.
wrong() {
    printf 'wrong: %s\n' "$*" >&2
    failures=$((failures + 1))
}

# same WHAT EXPECTED FOUND
same() {
    [[ $2 == "$3" ]] || wrong "$1"$'\n'"$(diff <(printf '%s\n' "$2") <(printf '%s\n' "$3"))"
}

# finish: ends the test by its result.
finish() {
    exit $((failures > 0))
}
