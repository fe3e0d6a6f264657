#!/usr/bin/env python3
"""size_table.py [--docs PAGE] LABEL=LIBRARY...: prints the sizes of stripped libraries as a table, a column for each.

With --docs it also puts the table into a Markdown page.
"""

import argparse
import pathlib
import re
import subprocess

from bench_table import fill_in, markdown

SECTIONS = {
    "`.text`": r"\.text",
    "`.rodata`": r"\.rodata",
    "`.eh_frame`, `.eh_frame_hdr` or `.ARM.*`": r"\.eh_frame(_hdr)?|\.ARM\.ex(idx|tab)",
    "`.gcc_except_table`": r"\.gcc_except_table",
    "`.data.rel.ro`": r"\.data\.rel\.ro",
    "`.rela.dyn` or `.rel.dyn`, `.relr.dyn`": r"\.rela?\.dyn|\.relr\.dyn",
    "`.dynsym`": r"\.dynsym",
    "`.dynstr`": r"\.dynstr",
}


def readelf(*arguments):
    return subprocess.run(["readelf", "--wide", *arguments], check=True, capture_output=True, text=True).stdout


def sizes_of(library):
    """{row: size or number}"""
    section = r"^ +\[ *\d+\] (\.\S+) +\S+ +[0-9a-f]+ [0-9a-f]+ ([0-9a-f]+)"
    sections = {name: int(size, 16) for name, size in re.findall(section, readelf("-S", library), re.M)}
    rows = {"file": pathlib.Path(library).stat().st_size}
    for row, pattern in SECTIONS.items():
        rows[row] = sum(size for name, size in sections.items() if re.fullmatch(pattern, name))
    relocations = re.findall(r"^[0-9a-f]+ +[0-9a-f]+ +(R_\w+)", readelf("-r", library), re.M)
    rows["relocations with a symbol look-up"] = sum(not kind.endswith("_RELATIVE") for kind in relocations)
    symbols = re.findall(r"^ +\d+: .* (?:GLOBAL|WEAK) +DEFAULT +\d+ ", readelf("--dyn-syms", library), re.M)
    rows["exported symbols"] = len(symbols)
    return rows


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--docs", type=pathlib.Path)
    parser.add_argument("columns", nargs="+")
    arguments = parser.parse_args()
    columns = dict(column.split("=", 1) for column in arguments.columns)
    sizes = [sizes_of(library) for library in columns.values()]
    rows = [[row, *(f"{size[row]:,}" for size in sizes)] for row in sizes[0]]
    table = markdown(["", *columns], rows)
    print(table)
    if arguments.docs:
        fill_in(arguments.docs, {"size": table})


if __name__ == "__main__":
    main()
