#!/bin/sh
# What fvqa300-generate answers to right and wrong command lines.
# usage: command_line.sh BIN_FOLDER SCRATCH_FOLDER
set -u
PATH="$1:$PATH"
scratch=$2
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch" || exit 1
failures=0

# expect STATUS TEXT ARGUMENT...: the exit status, and a text on standard output or error
expect() {
    status=$1
    text=$2
    shift 2
    fvqa300-generate "$@" > answer 2>&1
    got=$?
    if [ $got -ne "$status" ] || ! grep -q -e "$text" answer; then
        echo "fvqa300-generate $*: status $got, not $status, or no '$text' in:"
        cat answer
        failures=1
    fi
}

expect 0 'Usage: fvqa300-generate' --help
expect 2 '--kind' --hours 1
expect 2 '--rate' --kind qa330 --hours 1 --rate 7 --output x.data
expect 2 '--zone' --kind qa330 --hours 1 --zone No/Such --output x.data
expect 1 'no/such/folder' --kind qa330 --hours 0.001 --output no/such/folder/x.data
expect 1 'cannot' --kind archives --count 1 --output answer/archives
[ ! -e x.data ] || failures=1

fvqa300-generate --kind qa330 --hours 0.01 --seed 5 --output a.data &&
    fvqa300-generate --kind qa330 --hours 0.01 --seed 5 --output b.data &&
    fvqa300-generate --kind qa330 --hours 0.01 --seed 6 --output c.data || failures=1
cmp a.data b.data || failures=1
if cmp -s a.data c.data; then
    echo "another seed gave the same bytes"
    failures=1
fi
exit $failures
