#!/usr/bin/env python3
"""bench_table.py DIRECTORY: prints the results of scripts/bench there as a table and draws performance.svg."""

import json
import math
import pathlib
import statistics
import sys
from xml.sax.saxutils import escape

BASELINE = "stream"
MICROSECONDS = {"ns": 1e-3, "us": 1, "ms": 1e3, "s": 1e6}
PERCENTILES = ("p50_us", "p99_us", "p99.9_us")
# What the benchmark library puts behind a name.
SUFFIXES = ("real_time", "manual_time", "iterations:", "threads:", "min_time:", "repeats:")


def read(path):
    """{case: {way: {figure: median of all rounds}}}"""
    rounds = {}
    for entry in json.loads(path.read_text())["benchmarks"]:
        if entry.get("run_type") != "iteration" or entry.get("error_occurred"):
            continue
        parts = [part for part in entry["run_name"].split("/") if not part.startswith(SUFFIXES)]
        figures = {"us": entry["real_time"] * MICROSECONDS[entry["time_unit"]]}
        figures.update({name: entry[name] for name in ("cpu_us", *PERCENTILES) if name in entry})
        ways = rounds.setdefault("/".join(parts[:-1]), {})
        for name, figure in figures.items():
            ways.setdefault(parts[-1], {}).setdefault(name, []).append(figure)
    return {
        case: {way: {name: statistics.median(all) for name, all in figures.items()} for way, figures in ways.items()}
        for case, ways in rounds.items()
    }


def draw(rows, path):
    """A bar for each ratio, on a logarithmic scale around 1."""
    low, high, height, left, width = 0.01, 10, 18, 380, 500

    def x(ratio):
        share = math.log(min(max(ratio, low), high) / low) / math.log(high / low)
        return left + share * width

    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{left + width + 70}" height="{height * len(rows) + 60}"'
        ' font-family="sans-serif" font-size="12">',
        '<rect width="100%" height="100%" fill="white"/>',
        f'<text x="{left}" y="16">time of a call, as a ratio to bare stream sockets (logarithmic)</text>',
    ]
    bottom = 30 + height * len(rows)
    for mark in (0.01, 0.1, 1, 10):
        colour = "black" if mark == 1 else "lightgrey"
        lines.append(f'<line x1="{x(mark):.0f}" x2="{x(mark):.0f}" y1="24" y2="{bottom}" stroke="{colour}"/>')
        lines.append(f'<text x="{x(mark):.0f}" y="{bottom + 16}" text-anchor="middle">{mark}</text>')
    for index, (label, ratio) in enumerate(rows):
        y = 28 + index * height
        start, end = sorted((x(1), x(ratio)))
        colour = "seagreen" if ratio <= 1 else "indianred"
        lines.append(f'<text x="{left - 8}" y="{y + 12}" text-anchor="end">{escape(label)}</text>')
        lines.append(f'<rect x="{start:.0f}" y="{y}" width="{end - start:.0f}" height="13" fill="{colour}"/>')
        lines.append(f'<text x="{left + width + 12}" y="{y + 12}">{ratio:.2f}</text>')
    path.write_text("\n".join([*lines, "</svg>", ""]))


def main():
    directory = pathlib.Path(sys.argv[1])
    bars = []
    print(f"{'run':26} {'case':38} {'way':16} {'us':>9} {'ratio':>6} {'cpu':>6}  p50, p99, p99.9 in us (ratio)")
    for path in sorted(directory.glob("*.json")):
        for case, ways in sorted(read(path).items()):
            base = ways.get(BASELINE, {})
            # The baseline first.
            for way, figures in sorted(ways.items(), key=lambda item: (item[0] != BASELINE, item[0])):

                def ratio(name):
                    return figures[name] / base[name] if base.get(name) and name in figures else None

                def column(value, digits):
                    return "-" if value is None else f"{value:.{digits}f}"

                tail = ", ".join(
                    f"{figures[name]:.0f} ({column(ratio(name), 2)})" for name in PERCENTILES if name in figures
                )
                line = f"{path.stem:26} {case:38} {way:16} {figures['us']:9.2f}"
                print(f"{line} {column(ratio('us'), 2):>6} {column(ratio('cpu_us'), 2):>6}  {tail}".rstrip())
                if way != BASELINE and ratio("us") is not None:
                    placed = "one CPU, " if path.stem.endswith("one-cpu") else ""
                    suffix = "" if way == "library" else f", {way}"
                    bars.append((f"{placed}{case}{suffix}".replace("_", " "), ratio("us")))
    draw(bars, directory / "performance.svg")
    print(f"\nplot: {directory / 'performance.svg'}")


if __name__ == "__main__":
    main()
