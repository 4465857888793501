#!/usr/bin/env python3
"""Prints what 600 described settings cost a program: the time to compile them and the object code,
as one struct and as 100, each with the bare header taken off the time.

usage: fields.py BUILD_DIR [COMPILER [OPTION...]]     g++ -O2 unless given
"""

import pathlib
import re
import resource
import subprocess
import sys
import tempfile

SETTINGS = 600
HEADER = "#include <service/util/config/bind.hpp>\n"
MEMBERS = [  # type, initial value, rules
    ("std::uint16_t", " = 7", ".range(1, 100)"), ("int", " = 1", ""), ("double", " = 0.5", ""),
    ("bool", " = true", ""), ("std::string", "", ".required()"),
    ("std::chrono::milliseconds", "{5000}", ""), ("bind::Bytes", "", ""),
    ("Level", " = Level::INFO", ""), ("std::optional<std::string>", "", ""),
    ("std::vector<std::string>", "", ""),
]


def program(structs):
    text = HEADER + """namespace program {
namespace bind = service::util::config::bind;
enum class Level { ERROR, INFO };
bind::Names<Level> names(bind::Is<Level>) { return {{"error", Level::ERROR}, {"info", Level::INFO}}; }
"""
    for number in range(structs):
        members, fields = "", []
        for i in range(SETTINGS // structs):
            kind, initial, rules = MEMBERS[i % len(MEMBERS)]
            maker = "list" if "vector" in kind else "field"
            members += f"  {kind} m{i}{initial};\n"
            fields.append(f'bind::{maker}<&S{number}::m{i}>("m{i}"){rules}.about("what {i} is for")')
        text += f"struct S{number} {{\n{members}}};\nbind::Fields describe(bind::Is<S{number}>) {{\n"
        text += "  return {" + ",\n          ".join(fields) + "};\n}\n"
    members = "".join(f"  S{number} s{number};\n" for number in range(structs))
    fields = [f'bind::section<&All::s{number}>("s{number}")' for number in range(structs)]
    text += f"struct All {{\n{members}}};\nbind::Fields describe(bind::Is<All>) {{\n"
    text += "  return {" + ",\n          ".join(fields) + "};\n}\n"
    return text + """All read(const service::util::config::IConfigPtr& config) {
  return bind::read<All>(config);
}
}  // namespace program
"""


def compile_time(command, text, directory):
    """Seconds of the processor, the least of three, and the bytes that the object brings."""
    source, target = directory / "fields.cpp", directory / "fields.o"
    source.write_text(text)
    times = []
    for _ in range(3):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        subprocess.run([*command, "-c", source, "-o", target], check=True)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        times.append(after.ru_utime - before.ru_utime)
    sizes = subprocess.run(["size", target], check=True, capture_output=True, text=True).stdout
    return min(times), int(re.split(r"\s+", sizes.splitlines()[1].strip())[3])


def main():
    build, *compiler = sys.argv[1:]
    root = pathlib.Path(__file__).resolve().parent.parent
    folders = [root / "include", root / "support", pathlib.Path(build) / "include"]
    command = [*(compiler or ["g++", "-O2"]), "-std=c++17", *(f"-I{folder}" for folder in folders)]
    with tempfile.TemporaryDirectory() as directory:
        directory = pathlib.Path(directory)
        header, _ = compile_time(command, HEADER, directory)
        for structs in 1, 100:
            seconds, size = compile_time(command, program(structs), directory)
            print(f"{SETTINGS} settings in {structs} struct{'s' if structs > 1 else ''}: "
                  f"{seconds - header:.1f} s, {size / 1000:.0f} kB")


if __name__ == "__main__":
    main()
