"""Runs tables of inputs through the program `load`, each in a process of its own with limits.

A table is a list of rows. A row writes its files into a directory of its own, which is also the
search path, and says what the program is to print: {DIR} stands for that directory, {N} for a
number, {POINTER} for an address. The process may use some seconds of CPU time, some memory and the
usual stack; it is killed when it hangs.
"""

import os
import re
import resource
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
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
    validate: bool = False
    schemes: list = field(default_factory=list)
    arguments: list = field(default_factory=list)
    file: object = "main.xml"  # what to load, or a function of the directory
    environment: dict = field(default_factory=dict)
    before: Optional[Callable] = None  # called in the process, with the directory
    seconds: int = 2
    megabytes: int = 200
    needs_limit: bool = False  # the outcome comes from the limit on memory


def loaded(*lines):
    return "\n".join(("LOADED", *lines)) + "\n"


def failed(message, code=6):
    return f"FAILED {code}\n{message}\n"


def at(place, reason, file="main.xml"):
    line, column = place
    return failed(
        f'XMLParser: in file "{{DIR}}/{file}" at line {line} at column {column}: {reason}!')


def reported(*problems):
    """problems: (severity, file, line, column, message)."""
    lines = [f'\t{severity}  in "{file}"(line={line}, column={column}): {message}\n'
             for severity, file, line, column, message in problems]
    return failed("XML Parser reported the following errors:\n" + "".join(lines))


def config(content, attributes="", prolog=""):
    return (f'{prolog}<config xmlns="{NAMESPACE}" name="n" version="1"{attributes}>'
            f"{content}</config>")


def prop(value, name="p"):
    return f'<property name="{name}">{value}</property>'


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
    if isinstance(expected, tuple):
        return any(matches(text, one, directory) for one in expected)
    if text == expected:
        return True
    if len(text) > 100000:
        return False
    pattern = re.escape(expected)
    for placeholder, what in (("{DIR}", re.escape(str(directory))), ("{N}", "[0-9]+"),
                              ("{POINTER}", "0x[0-9a-f]+"),
                              ("{STEPS}", "[ab./]+"), ("{SLASHES}", "/+")):
        pattern = pattern.replace(re.escape(placeholder), what)
    return re.fullmatch(pattern, text) is not None


def run(command, is_slow, row, directory):
    """What the program printed, and how it ended when not with 0. is_slow: under an emulator or a
    sanitizer, where there is no limit on memory and more time."""
    arguments = [*row.arguments, *(["--validate"] if row.validate else [])]
    for uri, location in row.schemes:
        arguments += ["--scheme", uri, location]

    def prepare():
        seconds = row.seconds * (20 if is_slow else 1)
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if not is_slow:
            size = row.megabytes * MEBIBYTE
            resource.setrlimit(resource.RLIMIT_AS, (size, size))
        resource.setrlimit(resource.RLIMIT_STACK, (8 * MEBIBYTE, resource.RLIM_INFINITY))
        os.chdir(directory)
        if row.before:
            row.before(directory)

    environment = {**os.environ, "ZU_CONFIG_PATH": str(directory), "LC_ALL": "C.UTF-8",
                   **row.environment}
    file = row.file(directory) if callable(row.file) else row.file
    try:
        process = subprocess.run([*command, *arguments, file], preexec_fn=prepare,
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


def check(command, is_slow, rows, listener):
    failures = 0
    for row in rows:
        if row.needs_limit and is_slow:
            print(f"-- {row.name}: left out, there is no limit on memory here")
            continue
        connections = listener.count
        directory = Path(tempfile.mkdtemp(prefix="zu-hostile-")).resolve()
        try:
            write(directory, row.files)
            text = run(command, is_slow, row, directory)
        finally:
            shutil.rmtree(os.fsencode(directory), ignore_errors=True)
        connected = listener.count != connections
        if matches(text, row.expected, directory) and not connected:
            print(f"ok {row.name}")
            continue
        failures += 1
        print(f"FAILED {row.name}{': connected to the network' if connected else ''}\n"
              f"  expected: {shortened(row.expected)!r}\n  printed:  {shortened(text)!r}")
    return failures


class Listener:
    """Notices connections to a port of this machine, and closes them."""

    def __init__(self):
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.port = self.socket.getsockname()[1]
        self.count = 0
        threading.Thread(target=self._accept, daemon=True).start()
        with socket.create_connection(("127.0.0.1", self.port)) as connection:
            connection.recv(1)
        assert self.count == 1, "a connection goes unnoticed"

    def _accept(self):
        while True:
            connection, _ = self.socket.accept()
            self.count += 1
            connection.close()


def main():
    topic, slow, *command = sys.argv[1:]
    table = __import__(topic)
    listener = Listener()
    rows = list(table.rows(listener.port))
    failures = check(command, slow == "slow", rows, listener)
    print(f"{len(rows)} rows, {failures} failed")
    return 1 if failures or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
