"""Files of all kinds, names and encodings: the file that the kernel would open is the one that is
read, what the XML library can read loads, with the values in the local code page, and whatever
cannot be read is an error."""

import os

from harness import Row, config, failed, fatal, include, loaded, prop, reported, write

RIGHT = config(prop("right"))
WRONG = config(prop("wrong"))
MISPLACED = "comment or processing instruction expected"


def names(port):
    def link_and_parent(d):
        write(d, {"x.xml": WRONG, "other/x.xml": RIGHT, "other/sub/x.xml": WRONG,
                  "main.xml": config(include("link/../x.xml"))})
        os.symlink("other/sub", d / "link")

    yield Row("the parent of a link", link_and_parent, loaded("p=right"), file="link/../x.xml")
    yield Row("the parent of a link, included", link_and_parent, loaded("p=right"))
    for name in ("a b", "a%20b", "%", "a#b", "a\nb", "a\\b", "é€😀", f"http://127.0.0.1:{port}/x"):
        file = f"{name}/{name}.xml"
        directory = os.path.dirname(file)
        yield Row(f"named {name!r}", {
            file: config(prop("&e;") + include(f"{name}.part"),
                         prolog='<!DOCTYPE config [<!ENTITY e SYSTEM "e.txt">]>'),
            f"{directory}/e.txt": "entity", f"{directory}/{name}.part": RIGHT},
            loaded("p=entity", "p=right"), file=file)
        yield Row(f"named {name!r}, malformed", {
            "main.xml": config(include(file)), file: RIGHT + "<"}, fatal(MISPLACED, file, 1))
    name = b"\xe9/\xff.xml"
    part = config(include("part.xml"))
    yield Row("names that are not UTF-8", {name: part, b"\xe9/part.xml": RIGHT},
              loaded("p=right"), file=name)
    yield Row("names that are not UTF-8, malformed", {name: part + "<"},
              fatal(MISPLACED, "�/�.xml", 1), file=name)


def without_directory():
    def leave():
        os.mkdir("gone")
        os.chdir("gone")
        os.rmdir("../gone")

    yield Row("no current directory", RIGHT, loaded("p=right"), before=leave)
    yield Row("no current directory to look in", RIGHT, failed("", 1), before=leave,
              environment={"ZU_CONFIG_PATH": ""})


def unreadable():
    yield Row("a file becomes a FIFO", {"main.xml": config(include("fifo.xml")), "fifo.xml": RIGHT},
              reported(("FATAL", "", 0, 0,
                        "unable to open primary document entity '{DIR}/fifo.xml'")))
    yield Row("a file that cannot be read", lambda d: os.symlink("/proc/self/mem", d / "main.xml"),
              failed('XMLParser: in file "{DIR}/main.xml": reading failed: Input/output error!'))
    for name, path in (("fifo", "{DIR}/fifo"), ("/dev/zero", "/dev/zero")):
        def beside_fifo(content):
            return lambda d: (os.mkfifo(d / "fifo"), write(d, content))

        for kind, reference, content in (
                ("external entity", f'[<!ENTITY e SYSTEM "{name}">]', prop("&e;")),
                ("DTD document", f'SYSTEM "{name}"', prop("x"))):
            document = config(content, prolog=f"<!DOCTYPE config {reference}>")
            yield Row(f"{name} as {kind}", beside_fifo(document),
                      fatal(f"unable to open {kind} '{path}'", line=1))
        yield Row(f"{name} as schema", beside_fifo('<config xmlns="urn:s"/>'), reported(
            ("WARNING", "", 0, 0, f"unable to open primary document entity '{path}'"),
            ("ERROR", "{DIR}/main.xml", 1, "{N}", "no declaration found for element 'config'")),
            validate=True, schemes=("urn:s", name))


def encodings():
    text = "é€😀"

    def document(declaration, value=text):
        return config(prop(value), prolog=f"<?xml version={declaration}?>")

    yield Row("version 1.1 and control characters", document('"1.1"', "a&#1;&#x85;\x85b"),
              loaded("p=a\x01\x85\nb"))
    yield Row("NUL in a tag", config("<other\0/>"), fatal("unexpected end of input", line=1))
    yield Row("UTF-8 with an overlong slash", config(prop("@")).encode().replace(b"@", b"\xc0\xaf"),
              fatal("invalid byte '�' at position 1 of a 1-byte sequence", line=1, column=1))
    long = "X" * 10000  # makes the longest message
    yield Row("a long name of no encoding", document(f'"1.0" encoding="{long}"'),
              fatal(f"unable to create converter for '{long}' encoding"[:2047], line=1))
    # What the first bytes show counts, and the declaration only within that.
    utf_16 = document('"1.0" encoding="UTF-16"')
    yield Row("UTF-8 that says UTF-16", utf_16, loaded("p=" + text))
    # The XML library's local code page does not follow the locale on these systems.
    yield Row("values under LC_ALL=C", utf_16.encode("utf-16"), loaded("p=" + text),
              environment={"LC_ALL": "C"})
    yield Row("files and entities of different encodings", {
        "main.xml": config(prop("&e;") + include("part.xml"),
                           prolog='<!DOCTYPE config [<!ENTITY e SYSTEM "e.txt">]>'),
        "e.txt": '<?xml version="1.0" encoding="ISO-8859-1"?>é'.encode("latin-1"),
        "part.xml": ("\ufeff" + config(prop(text))).encode("utf-16-le")},
        loaded("p=é", "p=" + text))


def rows(port):
    for table in (names(port), without_directory(), unreadable(), encodings()):
        yield from table
