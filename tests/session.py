"""Console sessions, as the documents and the tests of the command have them.

A line that starts with "$ " is a command for bash. Lines after it that start with "> ", or follow a
backslash at the end of a line, go on with it; the lines after that are what it prints. All commands
of a session run in one shell.
"""
import difflib
import os
import pathlib
import subprocess
import sys
import tempfile


def read(lines, indent=""):
    """Returns blocks: [command, what it prints], or [None, a line] for a line that is none of these.
    The lines of the session start with indent; those that do not are none of it."""
    blocks = []
    for line in lines:
        last = blocks[-1] if blocks else [None, []]
        text = line.removeprefix(indent)
        if not line.startswith(indent):
            blocks.append([None, [line]])
        elif text.startswith("$ "):
            blocks.append([text[2:], []])
        elif last[0] is None:
            blocks.append([None, [line]])
        elif not last[1] and text.startswith("> "):
            last[0] += "\n" + text[2:]
        elif not last[1] and last[0].endswith("\\"):
            last[0] += "\n" + text
        else:
            last[1].append(text)
    return blocks


def run(commands, directory, environment, error=None):
    """Yields standard output, standard error and exit code of each command. error: subprocess.STDOUT
    for one stream, in the order of printing."""
    with tempfile.TemporaryDirectory() as scratch:
        files = [f"{scratch}/{i}" for i in range(len(commands))]
        script = ""
        for file, command in zip(files, commands):
            into = "&1" if error == subprocess.STDOUT else f"{file}.err"
            script += f'eval "$(cat {file})" >{file}.out 2>{into}\necho $? >{file}.code\n'
            pathlib.Path(file).write_text(command)
        subprocess.run(["bash", "-c", script], cwd=directory, env=environment, timeout=300,
                       stdin=subprocess.DEVNULL, check=False)
        for file, command in zip(files, commands):
            if not os.path.exists(f"{file}.code"):
                sys.exit(f"the shell ended in: {command}")
            out, err, code = (pathlib.Path(f"{file}.{name}") for name in ("out", "err", "code"))
            yield out.read_bytes(), err.read_bytes() if err.exists() else b"", int(code.read_text())


def print_difference(expected, found, name):
    """Both are lists of lines. Returns whether they differ."""
    sys.stdout.writelines(line.rstrip("\n") + "\n" for line in difflib.unified_diff(
        expected, found, name, "as it is", lineterm=""))
    return expected != found
