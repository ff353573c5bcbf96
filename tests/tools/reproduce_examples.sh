#!/bin/sh
# Runs the commands of examples/README.md and compares what they write with the committed examples.
# usage: reproduce_examples.sh BIN_FOLDER EXAMPLES_FOLDER SCRATCH_FOLDER
set -eu
bin=$1
examples=$2
scratch=$3

rm -rf "$scratch"
mkdir -p "$scratch/examples"
cd "$scratch"
sed -n '/^```sh$/,/^```$/{/^```/!p;}' "$examples/README.md" > commands.sh
grep -q fvqa300-generate commands.sh
PATH="$bin:$PATH" sh -eu commands.sh

ls "$examples" | grep -v '^README.md$' > committed
ls examples > made
diff committed made

status=0
while read -r name; do
    if cmp "$examples/$name" "examples/$name"; then
        continue
    fi
    case $name in
    *.ghg)
        # Another zlib may pack the same members into other bytes.
        for member in "${name%.ghg}.data" "${name%.ghg}.metadata"; do
            unzip -p "$examples/$name" "$member" > committed.member
            unzip -p "examples/$name" "$member" > made.member
            cmp committed.member made.member || status=1
        done
        ;;
    *) status=1 ;;
    esac
done < committed
exit $status
