"""How much is measured, and where: from the command line and the environment."""

import os
from dataclasses import dataclass
from pathlib import Path

FULL = {
    "MEGABYTES": 600,
    "PLOT_MEGABYTES": 320,
    "TEN_MEGABYTES": 60,
    "ARCHIVES": 48,
    "FILES": 17520,
    "RUNS": 5,
}
QUICK = {
    "MEGABYTES": 20,
    "PLOT_MEGABYTES": 20,
    "TEN_MEGABYTES": 2,
    "ARCHIVES": 4,
    "FILES": 80,
    "RUNS": 1,
}


@dataclass(frozen=True)
class Settings:
    programs: Path  # the folder of the release build's programs
    scratch: Path  # data and outputs; kept from run to run
    megabytes: int  # of the plain file
    plot_megabytes: int  # of the plain file that is plotted
    ten_megabytes: int  # of each of the ten files that load into the window
    archives: int  # half hours at 20 Hz
    files: int  # half hours at 1 Hz, for the rows where the number of files counts
    runs: int  # of which the median is taken
    with_peers: bool


def read_settings(options):
    sizes = QUICK if options.quick else FULL

    def number(name):
        text = os.environ.get(f"FVQA_BENCH_{name}", str(sizes[name]))
        if not text.isdecimal() or int(text) == 0:
            raise SystemExit(f"bench: FVQA_BENCH_{name} is no positive number: {text}")
        return int(text)

    return Settings(
        programs=Path(options.programs),
        scratch=Path(options.scratch),
        megabytes=number("MEGABYTES"),
        plot_megabytes=number("PLOT_MEGABYTES"),
        ten_megabytes=number("TEN_MEGABYTES"),
        archives=number("ARCHIVES"),
        files=max(8, number("FILES")),
        runs=number("RUNS"),
        with_peers=not options.without_peers,
    )
