"""Files of all kinds and names, as the file to load and as the one to include: the file that the
kernel would open is the one that is read, and whatever cannot be read is an error."""

import os
from xml.sax.saxutils import escape

from harness import Row, config, failed, loaded, prop, reported, write

NOT_FOUND = failed("", 1)
RIGHT = config(prop("right"))
WRONG = config(prop("wrong"))


def include(name):
    return f"<include>{escape(name)}</include>"


def not_included(name):
    # The double blank is part of the message.
    return failed('XMLParser: in file "{DIR}/main.xml" at line {N} at column {N}:  included '
                  f"configuration file '{name}' not found!", 3)


def both(label, name, make, is_found):
    """make: gets the directory, and makes what name says there."""
    def with_main(directory):
        make(directory)
        write(directory, config(include(name)))

    right = loaded("p=right")
    yield Row(f"{label}, loaded", make, right if is_found else NOT_FOUND, file=name)
    yield Row(f"{label}, included", with_main, right if is_found else not_included(name))


def found():
    def link_and_parent(d):
        write(d, {"x.xml": WRONG, "other/x.xml": RIGHT, "other/sub/x.xml": WRONG})
        os.symlink("other/sub", d / "link")

    def link(d):
        write(d, {"other/x.xml": RIGHT})
        os.symlink("other/x.xml", d / "two")
        os.symlink("two", d / "x.xml")

    yield "a link to a link", "x.xml", link
    yield "the parent of a link", "link/../x.xml", link_and_parent
    yield "the longest name", "n" * 251 + ".xml", lambda d: write(d, {"n" * 251 + ".xml": RIGHT})


def not_found():
    nothing = lambda d: None
    yield "a FIFO", "x.xml", lambda d: os.mkfifo(d / "x.xml")
    yield "/dev/zero", "/dev/zero", nothing
    yield "a link loop", "x.xml", lambda d: os.symlink("x.xml", d / "x.xml")
    yield "a name that is too long", "n" * 252 + ".xml", nothing


def of_length(directory, length):
    """The path of x.xml, of that many bytes."""
    slashes = length - len(os.fsencode(directory)) - len("x.xml")
    return str(directory) + "/" * slashes + "x.xml"


def long_paths():
    for length, is_found in ((4095, True), (4096, False)):
        yield Row(f"a path of {length} bytes, loaded", {"x.xml": RIGHT},
                  loaded("p=right") if is_found else NOT_FOUND,
                  file=lambda d, n=length: of_length(d, n))
        yield Row(f"a path of {length} bytes, included", lambda d, n=length: write(d, {
            "x.xml": RIGHT, "main.xml": config(include(of_length(d, n)))}),
            loaded("p=right") if is_found else not_included("{DIR}{SLASHES}x.xml"))


def odd_names(port):
    for name in ("a b", "a%20b", "%", "a#b", "a\nb", "a\\b", "é€😀", f"http://127.0.0.1:{port}/x"):
        file = f"{name}/{name}.xml"
        directory = os.path.dirname(file)
        yield Row(f"named {name!r}", {
            file: config(prop("&e;") + include(f"{name}.part"),
                         prolog='<!DOCTYPE config [<!ENTITY e SYSTEM "e.txt">]>'),
            f"{directory}/e.txt": "entity", f"{directory}/{name}.part": RIGHT},
            loaded("p=entity", "p=right"), file=file)
        yield Row(f"named {name!r}, malformed", {
            "main.xml": config(include(file)), file: RIGHT + "<"},
            reported(("FATAL", "{DIR}/" + file, 1, "{N}",
                      "comment or processing instruction expected")))
    bytes_name = b"\xe9/\xff.xml"
    part = config(include("part.xml"))
    yield Row("names that are not UTF-8", {bytes_name: part, b"\xe9/part.xml": RIGHT},
              loaded("p=right"), file=bytes_name)
    yield Row("names that are not UTF-8, malformed", {bytes_name: part + "<"}, reported(
        ("FATAL", "{DIR}/�/�.xml", 1, "{N}", "comment or processing instruction expected")),
        file=bytes_name)


def without_directory():
    def leave(_directory):
        os.mkdir("gone")
        os.chdir("gone")
        os.rmdir("../gone")

    yield Row("no current directory", RIGHT, loaded("p=right"), before=leave)
    yield Row("no current directory to look in", RIGHT, NOT_FOUND, before=leave,
              environment={"ZU_CONFIG_PATH": ""})
    yield Row("no current directory to name the file by", RIGHT, failed(
        'Argument "name" was found as "../main.xml", but the current directory has no name to make '
        "that absolute!", 4), file="../main.xml", before=leave, environment={"ZU_CONFIG_PATH": ""})


def changes():
    """Between the search and the end of the reading."""
    def unopened(path):
        return reported(("FATAL", "", 0, 0, f"unable to open primary document entity '{path}'"))

    def broken_off(path):
        return reported(("FATAL", path, 1, "{N}", "input ended before all started tags were "
                                                  "ended; last tag started is 'property'"))

    def unread(path):
        return failed(f'XMLParser: in file "{path}": reading failed: Input/output error!')

    long = config(prop("x" * 100000))
    for event, expected in (("vanish", unopened), ("fifo", unopened), ("device", unopened),
                            ("truncate", broken_off), ("read error", unread)):
        yield Row(f"{event}, loaded", long, expected("{DIR}/main.xml"),
                  arguments=["--during", event, "main.xml"])
        yield Row(f"{event}, included", {"main.xml": config(include("x.xml")), "x.xml": long},
                  expected("{DIR}/x.xml"), arguments=["--during", event, "x.xml"])


def references():
    """What a document, or the caller's scheme list, brings in besides the document."""
    kinds = (("entity", '[<!ENTITY e SYSTEM "{0}">]', prop("&e;"), "external entity"),
             ("document type", 'SYSTEM "{0}"', prop("x"), "DTD document"))

    def beside_others(content):
        return lambda d: (os.mkfifo(d / "fifo"), os.mkdir(d / "directory"), write(d, content))

    for name, path in (("fifo", "{DIR}/fifo"), ("directory", "{DIR}/directory"),
                       ("/dev/zero", "/dev/zero")):
        for kind, reference, content, what in kinds:
            document = config(content, prolog=f"<!DOCTYPE config {reference.format(name)}>")
            yield Row(f"{name} as {kind}", beside_others(document), reported(
                ("FATAL", "{DIR}/main.xml", 1, "{N}", f"unable to open {what} '{path}'")))
        yield Row(f"{name} as schema", beside_others('<config xmlns="urn:s"/>'), reported(
            ("WARNING", "", 0, 0, f"unable to open primary document entity '{path}'"),
            ("ERROR", "{DIR}/main.xml", 1, "{N}", "no declaration found for element 'config'")),
            validate=True, schemes=[("urn:s", name)])


def rows(port):
    for label, name, make in found():
        yield from both(label, name, make, True)
    for label, name, make in not_found():
        yield from both(label, name, make, False)
    yield from long_paths()
    yield from odd_names(port)
    yield from without_directory()
    yield from changes()
    yield from references()
