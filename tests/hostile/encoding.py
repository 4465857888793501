"""Versions, encodings and characters: what the XML library can read loads, with the values in the
local code page, and the rest is reported as it says."""

from harness import Row, at, config, failed, loaded, prop, reported

TEXT = "é€😀"
MARK = "\ufeff"


def document(declaration="", value=TEXT):
    return config(prop(value), prolog=f"<?xml {declaration}?>" if declaration else "")


def encoded(name, value=TEXT):
    return document(f'version="1.0" encoding="{name}"', value)


def fatal(message, line=1, column="{N}", file="main.xml"):
    return reported(("FATAL", "{DIR}/" + file, line, column, message))


def versions():
    for version in ("1.0", "1.1"):
        yield version, document(f'version="{version}"'), loaded("p=" + TEXT)
    # The XML library's parser knows every 1.x, and its document does not.
    yield "1.2", document('version="1.2"'), failed("DOMException: {POINTER}")
    for version in ("2.0", "x", ""):
        yield version, document(f'version="{version}"'), \
            fatal(f"unsupported XML version '{version}'")
    yield "1.1 and control characters", document('version="1.1"', "a&#1;&#x85;\x85b"), \
        loaded("p=a\x01\x85\nb")


def characters():
    value_starts = len(config('<property name="p">').removesuffix("</config>")) + 1
    for name, character in (("NUL", "0"), ("U+0001", "1"), ("U+001F", "1F"), ("U+FFFE", "FFFE")):
        yield f"{name} in a value", document(value="a" + chr(int(character, 16))), \
            fatal(f"invalid character 0x{character}", column=value_starts + 2)
    for name, reference in (("NUL", "0"), ("a control character", "1"), ("a surrogate", "xD800"),
                            ("a pair of surrogates", "xD83D;&#xDE00"), ("U+110000", "x110000"),
                            ("a number of 80 bits", "x" + "F" * 15 + "00041")):
        yield f"reference to {name}", document(value=f"&#{reference};"), \
            fatal("invalid character reference")
    yield "reference beyond the first plane", document(value="&#x1F600;"), loaded("p=😀")
    yield "characters that are controls in other encodings", document(value="\x7f\x85\ufeff"), \
        loaded("p=\x7f\x85\ufeff")
    yield "NUL in a tag", config("<other\0/>"), fatal("unexpected end of input")
    yield "NUL before the document", "\0" + document(), fatal("invalid document structure")
    yield "NUL after the document", document() + "\0" * 5000, loaded("p=" + TEXT)
    yield "nothing but NUL", "\0" * 5000, fatal("invalid document structure")
    yield "nothing", "", fatal("invalid document structure")


def malformed():
    """The XML library decodes a block at a time, and so the place is where the block starts."""
    for name, content, message in (
            ("a lone continuation byte", b"\x80", "invalid byte '�' at position 1 of a 1-byte"),
            ("an overlong slash", b"\xc0\xaf", "invalid byte '�' at position 1 of a 1-byte"),
            ("an overlong slash of three bytes", b"\xe0\x80\xaf",
             "invalid bytes '�' and '�' of a 3-byte"),
            ("a sequence broken off", b"\xe2\x82<", "invalid byte '<' at position 3 of a 3-byte"),
            ("a sequence of five bytes", b"\xf8\x88\x80\x80\x80",
             "exceeded byte limit at byte '�' in a 5-byte"),
            ("U+110000", b"\xf4\x90\x80\x80", "invalid bytes '�' and '�' of a 4-byte"),
            ("0xFF", b"\xff", "invalid byte '�' at position 1 of a 6-byte"),
            ("a lone surrogate", b"\xed\xa0\x80", "irregular bytes '�' and '�' of a 3-byte"),
            ("a pair of surrogates", b"\xed\xa0\xbd\xed\xb8\x80",
             "irregular bytes '�' and '�' of a 3-byte")):
        yield f"UTF-8 with {name}", document(value="@").encode().replace(b"@", content), \
            fatal(f"{message} sequence", column=1)
    yield "UTF-8 broken off after the document", document().encode() + b"\xe2\x82", \
        loaded("p=" + TEXT)
    yield "Latin-1 that says nothing", document(value="é").encode("latin-1"), \
        fatal("invalid byte '<' at position 2 of a 3-byte sequence", column=1)
    yield "bytes that are not ASCII", encoded("US-ASCII", "é").encode("latin-1"), \
        fatal("char 0xE9 is not representable in 'US-ASCII' encoding")
    for name, value, message in (
            ("a lone high", "\ud800b", "leading surrogate character is not followed by a legal "
                                       "second character"),
            ("a lone low", "\udc00b", "unexpected trailing surrogate character")):
        for encoding in ("utf-16-le", "utf-32-be"):
            yield f"{name} surrogate in {encoding}", \
                (MARK + document(value=value)).encode(encoding, "surrogatepass"), fatal(message)
    yield "UTF-32 with a number that is no character", \
        (MARK + document(value="@")).encode("utf-32-be").replace(b"\0\0\0@", b"\xff" * 4), \
        fatal("unexpected trailing surrogate character")


def names():
    for name in ("UTF-9", "X" * 10000):
        yield name[:5], encoded(name), \
            fatal(f"unable to create converter for '{name}' encoding"[:2047])  # longest message
    for name in ("a b", "../../etc/passwd", "%s%n", "UTF-8,swaplfnl"):
        yield name, encoded(name), fatal(f"invalid XML encoding declaration '{name}'")
    yield "a name that is not ASCII", encoded("ü"), reported(
        ("FATAL", "", 0, 0, "unable to decode first line in entity '{DIR}/main.xml'"))
    yield "EBCDIC that is none", encoded("ibm-1047"), fatal("invalid document structure")
    # What the first bytes show counts, and the declaration only within that.
    yield "UTF-8 that says UTF-16", encoded("UTF-16"), loaded("p=" + TEXT)
    yield "UTF-16 that says UTF-8", (MARK + encoded("UTF-8", "x")).encode("utf-16-be"), \
        fatal("invalid document structure")


def encodings():
    for name, codec, value in (
            ("ISO-8859-1", "latin-1", "é\x80"), ("windows-1252", "cp1252", "é€"),
            ("KOI8-R", "koi8-r", "я"), ("Shift_JIS", "shift_jis", "日"), ("IBM037", "cp037", "é"),
            ("GB18030", "gb18030", TEXT)):
        yield name, encoded(name, value).encode(codec), loaded("p=" + value)
    yield "UTF-8 with a mark", MARK + document(), loaded("p=" + TEXT)
    for codec in ("utf-16-le", "utf-16-be", "utf-32-le", "utf-32-be"):
        for name, text in (
                ("with a mark", MARK + document()),
                ("with a mark and a name", MARK + encoded(codec[:6])),
                ("without a mark", encoded(codec[:6])),
                ("without a mark or an encoding", document('version="1.0"')),
                ("and a byte too many", MARK + document() + " ")):
            content = text.encode(codec)
            yield f"{codec} {name}", content[:-1] if text[-1] == " " else content, \
                loaded("p=" + TEXT)
        yield f"{codec} without a mark or a declaration", document(value="é").encode(codec), \
            fatal("invalid byte '' at position 2 of a 3-byte sequence", column=1)
    yield "files and entities of different encodings", {
        "main.xml": config("<property name='p'>&e;</property><include>part.xml</include>",
                           prolog='<!DOCTYPE config [<!ENTITY e SYSTEM "e.txt">]>'),
        "e.txt": '<?xml version="1.0" encoding="ISO-8859-1"?>é'.encode("latin-1"),
        "part.xml": (MARK + document()).encode("utf-16-le")}, loaded("p=é", "p=" + TEXT)


def rows(_port):
    for table in (versions, characters, malformed, names, encodings):
        for name, files, expected in table():
            yield Row(f"{table.__name__}: {name}", files, expected)
    # The XML library's local code page does not follow the locale on these systems.
    yield Row("values under LC_ALL=C", encoded("UTF-16").encode("utf-16"), loaded("p=" + TEXT),
              environment={"LC_ALL": "C"})
