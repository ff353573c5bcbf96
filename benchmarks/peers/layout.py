"""What the other tools must be told of a data file: its header line is the last of the lines to skip."""

NOT_VALUES = {"DATAH", "SECONDS", "NANOSECONDS", "DATE", "TIME", "CHK"}


def read_layout(path, skipped_lines):
    """The names of all columns, and those of the value columns."""
    with open(path, encoding="latin-1") as file:
        for _ in range(skipped_lines):
            header = file.readline()
    names = header.rstrip("\n").split("\t")
    return names, [name for name in names if name not in NOT_VALUES]
