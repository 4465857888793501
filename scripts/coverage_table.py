"""Reads an lcov tracefile and prints, for the sources below the current directory, a table of the
lines and branches that were reached, and then those that were not.

usage: coverage_table.py TRACEFILE FOLDER...
"""

import collections
import pathlib
import sys

FORMAT = "{:<52}{:>6}{:>8}{:>8}{:>10}{:>8}{:>8}"


class File:
    def __init__(self):
        self.lines = {}  # number -> count
        self.branches = collections.Counter()  # (line, condition, side) -> count; side 0 is "true"


def read(tracefile, folders):
    files = {}
    file = File()
    for record in pathlib.Path(tracefile).read_text().splitlines():
        kind, _, value = record.partition(":")
        if kind == "SF":
            path = pathlib.Path(value)
            file = File()
            if path.is_relative_to(pathlib.Path.cwd()):
                path = path.relative_to(pathlib.Path.cwd())
                if path.parts[0] in folders:
                    files[str(path)] = file
        elif kind == "DA":
            number, count = map(int, value.split(",")[:2])
            file.lines[number] = file.lines.get(number, 0) + count
        elif kind == "BRDA":
            line, condition, side, count = value.split(",")
            # Templates have a record for each of their instances.
            file.branches[int(line), int(condition), int(side) % 2] += int(count.replace("-", "0"))
    return dict(sorted(files.items()))


def row(name, counts):
    lines, lines_hit, branches, branches_hit = counts
    percent = lambda hit, of: f"{100 * hit / of:.1f}%" if of else "-"
    return FORMAT.format(name, lines, lines - lines_hit, percent(lines_hit, lines),
                         branches, branches - branches_hit, percent(branches_hit, branches))


def counts_of(file):
    hit = lambda counters: sum(1 for count in counters.values() if count > 0)
    return [len(file.lines), hit(file.lines), len(file.branches), hit(file.branches)]


def print_table(files):
    print(FORMAT.format("", "lines", "missed", "", "branches", "missed", ""))
    totals = collections.defaultdict(lambda: [0, 0, 0, 0])
    for path, file in files.items():
        print(row(path, counts_of(file)))
        for name in (path.split("/")[0] + "/", "all"):
            totals[name] = [a + b for a, b in zip(totals[name], counts_of(file))]
    print()
    for name, counts in sorted(totals.items(), key=lambda item: (item[0] == "all", item[0])):
        print(row(name, counts))


def print_missed(files):
    print("\nNot reached:")
    for path, file in files.items():
        source = pathlib.Path(path).read_text().splitlines()
        missed = collections.defaultdict(list)
        for number, count in file.lines.items():
            if count == 0:
                missed[number] = ["never"]
        for (number, _, side), count in file.branches.items():
            what = "never false" if side else "never true"
            if count == 0 and missed[number] != ["never"] and what not in missed[number]:
                missed[number].append(what)
        for number, what in sorted(missed.items()):
            text = source[number - 1].strip()
            if what and text not in ("}", "{", ""):
                print(f"  {path}:{number}: {', '.join(what)}: {text}")


if __name__ == "__main__":
    found = read(sys.argv[1], sys.argv[2:])
    if not found:
        sys.exit("no sources in " + sys.argv[1])
    print_table(found)
    print_missed(found)
