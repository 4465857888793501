"""Runs tables of inputs through the program `load`, each in a process of its own with limits.

A table is a list of rows. A row writes its files into a directory of its own, which is also the
search path, and says what the program is to print: {DIR} stands for that directory, {N} for a
number. The process may use some seconds of CPU time, some memory and some stack; it is killed when
it hangs.
"""

import os
import re
import resource
import select
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
from dataclasses import dataclass, field
from pathlib import Path
from typing import Callable, Optional

NAMESPACE = "urn:zu:util:config"
MEBIBYTE = 1 << 20


@dataclass
class Row:
    name: str
    # The content of main.xml, or {file name: content}, or a function of the directory.
    files: object
    expected: object  # what the program prints; a tuple of texts when each of them is good
    file: object = "main.xml"  # what to load
    validate: bool = False
    schemes: tuple = ()  # namespaces and locations in turn
    thread: bool = False  # load on another thread than the first
    later_stack: int = 0  # what the stack is limited to after first.xml was loaded
    environment: dict = field(default_factory=dict)
    before: Optional[Callable] = None  # called in the process
    seconds: int = 2
    stack: int = 8 * MEBIBYTE
    megabytes: int = 200
    needs_limit: bool = False  # the outcome comes from the limit on memory


def loaded(*lines):
    return "\n".join(("LOADED", *lines)) + "\n"


def failed(message, code=6):
    return f"FAILED {code}\n{message}\n"


def at(line, reason, file="main.xml"):
    return failed(
        f'XMLParser: in file "{{DIR}}/{file}" at line {line} at column {{N}}: {reason}!')


def reported(*problems):
    """problems: (severity, file, line, column, message)."""
    lines = [f'\t{severity}  in "{file}"(line={line}, column={column}): {message}\n'
             for severity, file, line, column, message in problems]
    return failed("XML Parser reported the following errors:\n" + "".join(lines))


def fatal(message, file="main.xml", line="{N}", column="{N}"):
    return reported(("FATAL", "{DIR}/" + file, line, column, message))


def config(content, attributes="", prolog=""):
    return (f'{prolog}<config xmlns="{NAMESPACE}" name="n" version="1"{attributes}>'
            f"{content}</config>")


def prop(value, name="p"):
    return f'<property name="{name}">{value}</property>'


def include(name):
    return f"<include>{name}</include>"


def write(directory, files):
    if callable(files):
        return files(directory)
    if not isinstance(files, dict):
        files = {"main.xml": files}
    for name, content in files.items():
        path = os.path.join(os.fsencode(directory), os.fsencode(name))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())


def matches(text, expected, directory):
    if text == expected:
        return True
    pattern = re.escape(expected)
    for placeholder, what in (("{DIR}", re.escape(str(directory))), ("{N}", "[0-9]+")):
        pattern = pattern.replace(re.escape(placeholder), what)
    return len(text) < 100000 and re.fullmatch(pattern, text) is not None


def run(command, is_slow, row, directory):
    """What the program printed, and how it ended when not with 0. is_slow: under an emulator or a
    sanitizer, where there is no limit on memory and more time."""
    def prepare():
        seconds = row.seconds * (20 if is_slow else 1)
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if not is_slow:
            size = row.megabytes * MEBIBYTE
            resource.setrlimit(resource.RLIMIT_AS, (size, size))
        resource.setrlimit(resource.RLIMIT_STACK, (row.stack, resource.RLIM_INFINITY))
        os.chdir(directory)
        if row.before:
            row.before()

    options = [str(int(option)) for option in (row.validate, row.thread, row.later_stack)]
    environment = {**os.environ, "ZU_CONFIG_PATH": str(directory), "LC_ALL": "C.UTF-8",
                   **row.environment}
    try:
        process = subprocess.run([*command, row.file, *options, *row.schemes], preexec_fn=prepare,
                                 env=environment, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                 timeout=600 if is_slow else 60)
    except subprocess.TimeoutExpired:
        return "HUNG\n"
    text = process.stdout.decode("utf-8", "backslashreplace")
    if process.returncode != 0:
        status = process.returncode
        how = signal.Signals(-status).name if status < 0 else f"status {status}"
        text += f"ENDED WITH {how}\n{process.stderr.decode(errors='replace')[-4000:]}"
    return text


def shortened(text):
    return text if len(text) < 3000 else f"{text[:1500]}\n[...]\n{text[-500:]}"


def check(command, is_slow, row, listener):
    """Whether the row gives what it should, without a connection to the listener's port."""
    directory = Path(tempfile.mkdtemp(prefix="zu-hostile-")).resolve()
    try:
        write(directory, row.files)
        text = run(command, is_slow, row, directory)
    finally:
        shutil.rmtree(os.fsencode(directory), ignore_errors=True)
    if select.select([listener], [], [], 0)[0]:
        listener.accept()[0].close()
        text += "CONNECTED TO THE NETWORK\n"
    expected = row.expected if isinstance(row.expected, tuple) else (row.expected,)
    if any(matches(text, one, directory) for one in expected):
        print(f"ok {row.name}")
        return True
    print(f"FAILED {row.name}\n  expected: {shortened(' or '.join(expected))!r}\n"
          f"  printed:  {shortened(text)!r}")
    return False


def main():
    topic, slow, *command = sys.argv[1:]
    listener = socket.create_server(("127.0.0.1", 0))
    rows = [row for row in __import__(topic).rows(listener.getsockname()[1])
            if slow == "fast" or not row.needs_limit]
    failures = [row.name for row in rows if not check(command, slow == "slow", row, listener)]
    print(f"{len(rows)} rows, {len(failures)} failed")
    return 1 if failures or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
