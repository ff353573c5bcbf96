"""The sources that recipes are tried on, and what the companion says they hold."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Source:
    data: str  # instrument and kind of record
    files: tuple
    zone: str = "America/Denver"


EXAMPLES = [
    Source("QA330:DATA", ("QA330-2019-06-01T130000.data",)),
    Source("QA330:DATASTAT", ("QA330-2019-06-01T130000.data",)),
    Source("AIU-0412:DATA", ("AIU-0412-2019-06-01T133000.data",)),
    Source(
        "AIU-0412:DATA",
        tuple(f"2019-06-01T{start}_AIU-0412.ghg" for start in ("120000", "123000", "130000")),
    ),
]


def six_digits(value):
    return format(float(value), ".6g")


def known(workplace, source):
    """The times (texts), and by name the values (texts) of each variable. One file at a time, as the companion
    prints averages when the range is long."""
    times, columns = [], {}
    for i, file in enumerate(source.files):
        for key in workplace.keys(file):
            if not key.startswith(source.data + ":"):
                continue
            points = workplace.series(key, file)
            name = key[len(source.data) + 1 :]
            columns.setdefault(name, []).extend(value for _, value in points)
            if name == next(iter(columns)):
                times.extend(time for time, _ in points)
    workplace.assertGreater(len(times), 100)
    workplace.assertEqual({len(values) for values in columns.values()}, {len(times)})
    return times, columns


def text_rows(path):
    """Names and rows of a text export, split by nothing but its tabs."""
    lines = path.read_text(encoding="utf-8").split("\n")
    assert lines.pop() == ""
    names = [name.strip('"') for name in lines[0].split("\t")]
    return names, [line.split("\t") for line in lines[1:]]
