"""Measures and prints the tables: see scripts/bench, which builds what this runs."""

import argparse
import datetime
import os
import platform
import sys
from pathlib import Path

from growth import Growth
from meter import Failure, note
from ratios import Ratios
from settings import read_settings
from table import text_of


def processor():
    try:
        lines = Path("/proc/cpuinfo").read_text().splitlines()
    except OSError:
        return platform.machine()
    names = [line.partition(":")[2].strip() for line in lines if line.startswith("model name")]
    return names[0] if names else platform.machine()


def print_ratios(settings):
    ratios = Ratios(settings)
    rows = ratios.measure()
    print(
        f"{datetime.date.today()}, {processor()}, {os.cpu_count()} cores; {settings.megabytes} MB plain, "
        f"{settings.archives} archives, {settings.files} small files; median of {settings.runs}; "
        "processor seconds unless it says wall"
    )
    if ratios.versions:
        print("other tools: " + ", ".join(f"{name} {version}" for name, version in ratios.versions.items()))
    if ratios.threads:
        print("threads: " + ", ".join(f"{name} {count}" for name, count in ratios.threads.items()))
    print()
    print(text_of(rows))
    for name, install in ratios.missing.items():
        print(f"\nTo compare with {name}: {install}")


def print_growth(settings):
    growth = Growth(settings)
    sizes = growth.by_size()
    numbers = growth.by_number()
    print(f"By size, processor seconds:\n\n{sizes}\n\nBy number of files, in the window:\n\n{numbers}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--programs", required=True, help="folder of the release build's programs")
    parser.add_argument("--scratch", required=True, help="folder for data and outputs, kept")
    parser.add_argument("--quick", action="store_true", help="small data, each command once")
    parser.add_argument("--growth", action="store_true", help="growth with size and number instead of ratios")
    parser.add_argument("--without-peers", action="store_true", help="do not look for other tools")
    options = parser.parse_args()
    settings = read_settings(options)
    settings.scratch.mkdir(parents=True, exist_ok=True)
    try:
        if options.growth:
            print_growth(settings)
        else:
            print_ratios(settings)
    except Failure as failure:
        note(f"bench: {failure}")
        sys.exit(1)


main()
