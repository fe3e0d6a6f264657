#!/usr/bin/env python3
"""bench_table.py [--docs PAGE] DIRECTORY: prints the results of scripts/bench there as a table and draws performance.svg.

With --docs it also puts the tables into a Markdown page, and the plot next to the page.
"""

import argparse
import json
import math
import pathlib
import re
import shutil
import statistics
from xml.sax.saxutils import escape

BASELINE = "stream"
BY_HAND = "by_hand"
MICROSECONDS = {"ns": 1e-3, "us": 1, "ms": 1e3, "s": 1e6}
PERCENTILES = ("p50_us", "p99_us", "p99.9_us")
# Suffixes that the benchmark library appends to a name.
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


def markdown(head, rows):
    lines = [head, ["---"] * len(head), *rows]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def against(figures, base, name="us", digits=2):
    """A ratio, and the figure itself."""
    return f"{figures[name] / base[name]:.{digits}f} ({figures[name]:.{1 if figures[name] < 100 else 0}f})"


def single_calls(results, runs, ways):
    """One row for each case and way, one column for each of the runs, which come as (run, kind of call)."""
    cases = {}
    for column, (run, kind) in enumerate(runs):
        for case, measured in results[run].items():
            if not case.startswith(kind + "/") or BASELINE not in measured:
                continue
            for way in ways:
                cells = cases.setdefault((case.removeprefix(kind + "/"), way), [""] * len(runs))
                if way in measured:
                    cells[column] = against(measured[way], measured[BASELINE])
    return cases


PLACES = ("back to back, one CPU", "back to back, placed", "seldom, one CPU", "seldom, placed")


def calls_table(results):
    rows = []
    for name in ("calls", "events"):
        runs = [
            (f"{name}-{kind}{place}", kind) for kind in ("back_to_back", "seldom") for place in ("-one-cpu", "")
        ]
        for (case, _), cells in single_calls(results, runs, ["library"]).items():
            rows.append([f"`{case}`", *cells])
    return markdown(["", *PLACES], sorted(rows, reverse=True))


def sd_bus_table(results):
    runs = [(f"sd-bus{place}", kind) for kind in ("back_to_back", "seldom") for place in ("-one-cpu", "")]
    cases = single_calls(results, runs, ["direct", "through_a_daemon"])
    rows = [[way.replace("_", " "), *cells] for (_, way), cells in cases.items()]
    return markdown(["sd-bus", *PLACES], rows)


def scale_table(results):
    rows = []
    for run, what in (("threads", "threads: {}"), ("broadcast", "broadcast to 64 processes")):
        cases = sorted(results[run].items(), key=lambda item: int(item[0].split("/")[-1]))
        for case, ways in cases:
            base, figures = ways[BASELINE], ways["library"]
            throughput = f"{base['us'] / figures['us']:.2f}"
            tails = [against(figures, base, name) for name in PERCENTILES]
            rows.append([what.format(case.split("/")[-1]), throughput, *tails])
    return markdown(["", "calls a second, ratio", "p50", "p99", "p99.9"], rows)


def overhead_table(results, directory):
    rows = []
    for line in (directory / "instructions.txt").read_text().splitlines():
        case, allocations, by_hand, library = line.split()
        ways = results["overhead"][case]
        times = [f"{ways[way]['us'] * 1000:.0f}" for way in ("by_hand", "library")]
        ratio = f"{int(library) / int(by_hand):.2f}"
        rows.append([f"`{case}`", by_hand, library, ratio, *times, allocations])
    return markdown(
        ["", "instructions by hand", "library", "ratio", "ns by hand", "library", "allocations, library"], rows
    )


def fill_in(page, tables):
    """Puts each table, by its name, between the marks <!-- results: NAME --> and <!-- end --> of the page."""
    text = page.read_text()
    for name, table in tables.items():
        mark = f"<!-- results: {name} -->"
        text, count = re.subn(
            re.escape(mark) + r".*?<!-- end -->", lambda _: f"{mark}\n\n{table}\n\n<!-- end -->", text, flags=re.DOTALL
        )
        if count != 1:
            raise SystemExit(f"{page}: has {count} places for {mark}")
    page.write_text(text)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--docs", type=pathlib.Path)
    parser.add_argument("directory", type=pathlib.Path)
    arguments = parser.parse_args()
    directory = arguments.directory
    results = {path.stem: read(path) for path in sorted(directory.glob("*.json"))}
    bars = []
    print(f"{'run':26} {'case':38} {'way':16} {'us':>9} {'ratio':>6} {'cpu':>6}  p50, p99, p99.9 in us (ratio)")
    for run, cases in results.items():
        for case, ways in sorted(cases.items()):
            baseline = BY_HAND if BY_HAND in ways else BASELINE
            base = ways.get(baseline, {})
            # The baseline first.
            for way, figures in sorted(ways.items(), key=lambda item: (item[0] != baseline, item[0])):

                def ratio(name):
                    return figures[name] / base[name] if base.get(name) and name in figures else None

                def column(value, digits):
                    return "-" if value is None else f"{value:.{digits}f}"

                tail = ", ".join(
                    f"{figures[name]:.0f} ({column(ratio(name), 2)})" for name in PERCENTILES if name in figures
                )
                line = f"{run:26} {case:38} {way:16} {figures['us']:9.2f}"
                print(f"{line} {column(ratio('us'), 2):>6} {column(ratio('cpu_us'), 2):>6}  {tail}".rstrip())
                if way != baseline and baseline == BASELINE and ratio("us") is not None:
                    placed = "one CPU, " if run.endswith("one-cpu") else ""
                    suffix = "" if way == "library" else f", {way}"
                    bars.append((f"{placed}{case}{suffix}".replace("_", " "), ratio("us")))
    draw(bars, directory / "performance.svg")
    if arguments.docs:
        tables = {
            "calls": calls_table(results),
            "scale": scale_table(results),
            "sd-bus": sd_bus_table(results),
            "overhead": overhead_table(results, directory),
        }
        fill_in(arguments.docs, tables)
        shutil.copy(directory / "performance.svg", arguments.docs.parent)
    print(f"\nplot: {directory / 'performance.svg'}")


if __name__ == "__main__":
    main()
