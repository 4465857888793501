#!/usr/bin/env python3
"""Joins the results of the two benchmark programs into one table.

usage: table.py [--json | --docs] TIMES MEMORY

TIMES is what zuBenchmark wrote with --benchmark_out, MEMORY what zuBenchmarkMemory printed. Every
"ours" of a figure is set beside every floor and peer of the same figure. A time is the least of all
rounds of the run: what disturbs a round only ever makes it slower.
"""

import argparse
import json
import os
import platform
import re
import subprocess

import pictures

DOCS = "docs/performance.md"
PROCESS = "process, small file"
READ_AND_BUILD = "read the file and build the tree from a vector"
# What a reader of the document wants to know, with one peer or with all; the command prints all rows.
DOCS_ROWS = [
    ("load small", "pugixml and walk"),
    ("load medium", "pugixml and walk"),
    ("load large", "pugixml and walk"),
    ("load large", "Boost.PropertyTree read_xml"),
    ("load large", READ_AND_BUILD),
    ("load small, validated", "not validated"),
    ("load large, validated", "not validated"),
    ("load large, not plain", "F1: xerces::Parser"),
    ("load large, given up at the last element", "with ZU_CONFIG_PLAIN=off"),
    ("load with origins", "load without an observer"),
    ("load large, any format", None),
    ("load a chain of 100 includes", "sum of its files loaded alone"),
    ("destroy a large configuration", "build it"),
    ("read by path, Select built once", "Boost.PropertyTree get<std::string>"),
    ("read a missing property", "Boost.PropertyTree get_optional<std::string>"),
    ("thrown and caught at depth 10", "Boost.PropertyTree"),
    (PROCESS, None),
    ("shared objects of the process", "the same with pugixml"),
    ("shared objects of the process", "empty main, linked to the XML library"),
    ("memory kept per property", "Boost.PropertyTree"),
    ("memory at the peak of the large load", "Boost.PropertyTree"),
    ("memory at the peak of the large load", "pugixml, walked into a tree"),
]
PACKAGES = ["g++", "libxerces-c-dev", "libpoco-dev", "libboost-dev", "libpugixml-dev",
            "libtinyxml2-dev", "libconfig++-dev", "nlohmann-json3-dev", "libtomlplusplus-dev",
            "libyaml-cpp-dev", "rapidjson-dev", "libsimdjson-dev"]
OURS = "ours"
VALIDATED = "ours, validated"
VALIDATING = "xerces::Parser, validating"
FLOOR = "F1: xerces::Parser"
BARE = "bare XercesDOMParser"


def read_times(path):
    """{figure: {who: (unit, value)}}; times in nanoseconds."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    figures = {}
    for run in sorted(runs, key=lambda run: run["family_index"]):  # rounds are run in any order
        if run["run_type"] != "iteration":
            continue
        if run.get("error_occurred"):
            raise SystemExit(f"{run['name']}: {run['error_message']}")
        figure, who, *how = run["run_name"].split("/")
        scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
        is_cpu_time = not {"real_time", "manual_time"}.intersection(how)
        time = run["cpu_time" if is_cpu_time else "real_time"] * scale
        time /= run.get("units", 1)
        results = figures.setdefault(figure, {})
        results[who] = ("ns", min(time, results.get(who, ("", time))[1]))
    return figures


def read_memory(path):
    figures = {}
    with open(path, encoding="utf-8") as file:
        for entry in map(json.loads, file):
            figures.setdefault(entry["figure"], {})[entry["who"]] = (entry["unit"], entry["value"])
    return figures


def belong_together(our_name, other_name):
    return "validated" in our_name or other_name != VALIDATING


def rows(figures):
    for figure, results in figures.items():
        mine = {who: value for who, value in results.items() if who.startswith("ours")}
        others = {who: value for who, value in results.items() if who not in mine}
        for who, (unit, value) in mine.items():
            for other, (_, other_value) in others.items():
                if belong_together(who, other):
                    yield row(figure + who.removeprefix("ours"), unit, value, other, other_value)
        if OURS in mine and VALIDATED in mine:
            (unit, value), (_, other_value) = mine[VALIDATED], mine[OURS]
            yield row(figure + ", validated", unit, value, "not validated", other_value)
        if FLOOR in others and BARE in others:
            (unit, value), (_, bare) = others[FLOOR], others[BARE]
            yield row(figure.replace("load", "F1,"), unit, value, BARE, bare)


def row(figure, unit, value, other, other_value):
    ratio = value / other_value if other_value else None
    return {"figure": figure, "unit": unit, "ours": value, "against": other,
            "theirs": other_value, "ratio": ratio}


def formatted(unit, value):
    if unit == "ns":
        for name, scale in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
            if value >= scale:
                return f"{value / scale:.3g} {name}"
    text = f"{value:.3g}" if value < 100 else f"{value:.0f}"
    return f"{text} {unit}".strip()


def markdown(table):
    cells = [["figure", "ours", "against", "theirs", "ratio"]]
    figure = None
    for r in table:
        same = r["figure"] == figure  # said once for all its peers
        figure = r["figure"]
        cells.append(["" if same else figure, "" if same else formatted(r["unit"], r["ours"]),
                      r["against"], formatted(r["unit"], r["theirs"]),
                      "" if r["ratio"] is None else f"{r['ratio']:.2f}"])
    widths = [max(len(line[i]) for line in cells) for i in range(5)]
    right = (1, 3, 4)
    cells.insert(1, ["-" * (width - 1) + (":" if i in right else "-")
                     for i, width in enumerate(widths)])
    lines = ("| " + " | ".join(cell.rjust(width) if i in right else cell.ljust(width)
                               for i, (cell, width) in enumerate(zip(line, widths))) + " |"
             for line in cells)
    return "\n".join(lines)


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        model = re.search(r"model name\s*: (.*)", file.read())
    versions = subprocess.run(["dpkg-query", "-W", "-f=${Package} ${Version}\n", *PACKAGES],
                              stdout=subprocess.PIPE, text=True, check=False).stdout
    return (f"{model[1] if model else platform.machine()}, {os.cpu_count()} cores; "
            + ", ".join(versions.splitlines()))


def replace(path, name, text):
    """Puts text between the two comments of that name."""
    start, end = f"<!-- {name} -->", f"<!-- end of {name} -->"
    with open(path, encoding="utf-8") as file:
        before, rest = file.read().split(start)
    after = rest.split(end)[1]
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{before}{start}\n{text}\n{end}{after}")


def draw(name, title, panels, scale):
    show = lambda nanoseconds: formatted("ns", nanoseconds)
    with open(f"docs/{name}.svg", "w", encoding="utf-8") as file:
        file.write(pictures.picture(panels, scale, show))
    words = f"{title}. {pictures.in_words(panels, show)}"
    replace(DOCS, name, f"![{words}]({name}.svg)")
    replace("README.md", name, f"![{words}](docs/{name}.svg)")


def values(figures, figure):
    """{who: time}, with the name of this library."""
    return {who.replace(OURS, "zuUtilConfig", 1): value
            for who, (_, value) in figures[figure].items()}


def write_pictures(figures):
    draw("loads", "Time to load the same content, each library from its format",
         [("Small file, 35 values", values(figures, "load small, any format")),
          ("Large file, 130,000 values", values(figures, "load large, any format"))],
         pictures.Logarithmic)
    draw("start", "Time from the start of a program to its exit",
         [("A program that reads one value", values(figures, PROCESS))], pictures.Linear)


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    output = arguments.add_mutually_exclusive_group()
    output.add_argument("--json", action="store_true")
    output.add_argument("--docs", action="store_true")
    arguments.add_argument("times")
    arguments.add_argument("memory")
    options = arguments.parse_args()
    figures = {**read_times(options.times), **read_memory(options.memory)}
    table = list(rows(figures))
    if options.json:
        print(json.dumps({"machine": machine(), "rows": table}, indent=1))
        return
    print(f"Measured on: {machine()}.\n\n{markdown(table)}")
    if options.docs:
        chosen = [r for r in table
                  if {(r["figure"], r["against"]), (r["figure"], None)}.intersection(DOCS_ROWS)]
        replace(DOCS, "table", f"Measured on: {machine()}.\n\n{markdown(chosen)}")
        write_pictures(figures)


if __name__ == "__main__":
    main()
