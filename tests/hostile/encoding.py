"""Versions, encodings and characters: what the XML library can read loads, with the values in the
local code page, and the rest is reported as it says."""

from harness import Row, config, failed, loaded, prop, reported

TEXT = "é€😀"
MARK = "\ufeff"


def document(declaration="", value=TEXT):
    return config(prop(value), prolog=f"<?xml {declaration}?>" if declaration else "")


def encoded(name, value=TEXT):
    return document(f'version="1.0" encoding="{name}"', value)


def fatal(message, line=1, column="{N}"):
    return reported(("FATAL", "{DIR}/main.xml", line, column, message))


def rows(_port):
    table = (
        ("version 1.1 and control characters", document('version="1.1"', "a&#1;&#x85;\x85b"),
         loaded("p=a\x01\x85\nb")),
        # The XML library's parser knows every 1.x, and its document does not.
        ("version 1.2", document('version="1.2"'), failed("DOMException: {POINTER}")),
        ("NUL in a value", document(value="a\0"), fatal("invalid character 0x0")),
        ("NUL in a tag", config("<other\0/>"), fatal("unexpected end of input")),
        ("UTF-8 with an overlong slash", document(value="@").encode().replace(b"@", b"\xc0\xaf"),
         fatal("invalid byte '�' at position 1 of a 1-byte sequence", column=1)),
        ("a long name of no encoding", encoded("X" * 10000),  # longest message
         fatal(f"unable to create converter for '{'X' * 10000}' encoding"[:2047])),
        # What the first bytes show counts, and the declaration only within that.
        ("UTF-8 that says UTF-16", encoded("UTF-16"), loaded("p=" + TEXT)),
        ("files and entities of different encodings", {
            "main.xml": config("<property name='p'>&e;</property><include>part.xml</include>",
                               prolog='<!DOCTYPE config [<!ENTITY e SYSTEM "e.txt">]>'),
            "e.txt": '<?xml version="1.0" encoding="ISO-8859-1"?>é'.encode("latin-1"),
            "part.xml": (MARK + document()).encode("utf-16-le")}, loaded("p=é", "p=" + TEXT)))
    for name, files, expected in table:
        yield Row(name, files, expected)
    # The XML library's local code page does not follow the locale on these systems.
    yield Row("values under LC_ALL=C", encoded("UTF-16").encode("utf-16"), loaded("p=" + TEXT),
              environment={"LC_ALL": "C"})
