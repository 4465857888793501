"""Reads an lcov tracefile and prints, for the sources below the current directory, a table of the
lines and branches that were reached, and then those that were not.

usage: coverage_table.py TRACEFILE FOLDER...
"""

import collections
import pathlib
import sys

NO_SUCH_INPUT = "the XML library may give no document, root or text, but no known input makes it"
# Why the tests do not reach some lines of a file. Of all files, one side of a comparison or of a
# short && may be decided by the other side in all inputs.
REASONS = {
    "Budget.cpp": ["a size that leaves no room for a header: nobody can ask for it"],
    "platform/locator/src/ConfigLocator.cpp": [
        "no memory for the first search path: only loads that have one are tried"],
    "ErrorRecord.cpp": ["exceptions of unknown types: a platform library breaks its contract"],
    "FileSource.cpp": ["calls cut short by a signal cannot be timed",
                       "position and content type: a class of this kind must have them"],
    "LenientParser.cpp": [NO_SUCH_INPUT],
    "platform/cutil/src/Logger.cpp": ["a call cut short by a signal, a faster thread: they cannot be timed"],
    "Parser.cpp": [NO_SUCH_INPUT, "no memory for the place of an error: it would fail elsewhere first",
                   "notices of the DOM: a class of this kind must have them"],
    "StackTrace.cpp": ["no memory for the names of the stack: only loads that succeed are tried"],
    "documentCheck.cpp": [NO_SUCH_INPUT],
    "dom.cpp": [NO_SUCH_INPUT],
    "observer.cpp": ["a default that does nothing"],
    "platformCall.cpp": ["null texts: a platform library breaks its contract"],
    "section.cpp": ["it only returns a value; the test of the installed tree uses it"],
    "stackLeft.cpp": ["a stack that the system does not know: the program switches stacks itself"],
    "validation.cpp": ["errors in the grammar: it is part of the library"],
    "withoutXmlExceptions.hpp": ["no step after the parse throws these; they must not leave if one did"],
    "xmlConfig.cpp": [NO_SUCH_INPUT],
}
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
    print("\nNot reached, and why:")
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
        lines = [f"  {path}:{number}: {', '.join(what)}: {source[number - 1].strip()}"
                 for number, what in sorted(missed.items())
                 if what and source[number - 1].strip() not in ("}", "{", "")]
        if lines:
            print("\n" + "\n".join(lines))
            for name, reasons in REASONS.items():
                if path.endswith("/" + name) or path == name:
                    print("".join(f"    {reason}\n" for reason in reasons), end="")


if __name__ == "__main__":
    found = read(sys.argv[1], sys.argv[2:])
    if not found:
        sys.exit("no sources in " + sys.argv[1])
    print_table(found)
    print_missed(found)
