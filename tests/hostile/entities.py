"""Entities and document types: expansion far beyond the size of the document ends in an error, and
what people use entities for still loads."""

from harness import Row, at, config, loaded, prop

TOO_LARGE = at("{N}", "document expands too far beyond its size")
TOO_LARGE_THERE = at("{N}", "document expands too far beyond its size", "d.dtd")
LAUGHS = '<!ENTITY e0 "laughter">' + "".join(
    f'<!ENTITY e{i} "{f"&e{i - 1};" * 10}">' for i in range(1, 13))


def declaring(declarations, content):
    return config(content, prolog=f"<!DOCTYPE config [{declarations}]>")


def dtd(text, root=config(prop("x"))):
    return {"main.xml": '<!DOCTYPE config SYSTEM "d.dtd">' + root, "d.dtd": text}


def bombs():
    """A row for each way to make much of little, and for each bound on it."""
    block = f'<!ENTITY e "{"x" * 100000}">'
    yield "laughs in an attribute", declaring(LAUGHS, prop("x", "&e12;")), TOO_LARGE
    yield "laughs in a default that nobody uses", declaring(
        LAUGHS + '<!ATTLIST section name CDATA "&e12;">', prop("x")), TOO_LARGE
    yield "laughs of elements", declaring(
        LAUGHS.replace("laughter", prop("x").replace('"', "'")), "&e12;"), TOO_LARGE
    yield "quadratic in a section that is not read", declaring(
        block, f"<other>{'&e;' * 20000}</other>"), TOO_LARGE
    yield "a file again and again in a section that is not read", {
        "main.xml": declaring('<!ENTITY e SYSTEM "e.txt">', f"<other>{'&e;' * 20000}</other>"),
        "e.txt": "x" * 100000}, at(1, "document expands too far beyond its size", "e.txt")
    yield "a long default at many elements", declaring(
        f'<!ATTLIST a b CDATA "{"x" * 100000}">', "<a/>" * 20000), TOO_LARGE
    # A doubling chain of parameter entities ends in a declaration. Those of a document type in a
    # file of its own may stand in a value, too.
    doublings = "".join(f"<!ENTITY % p{i} '&#37;p{i - 1};&#37;p{i - 1};'>\n" for i in range(1, 41))
    yield "empty parameter entities in the document", declaring(
        f"<!ENTITY % p0 ''>\n{doublings}%p40;", prop("x")), TOO_LARGE
    yield "parameter entities in a value", dtd(
        f'<!ENTITY % p0 "xxxxxxxx">\n{doublings.replace("&#37;", "%")}<!ENTITY e "%p40;">'), \
        TOO_LARGE_THERE
    yield "quadratic parameter entities", dtd(
        f'<!ENTITY % p "{"<!-- -->" * 10000}">\n' + "%p;\n" * 20000), TOO_LARGE_THERE
    yield "many declarations", dtd("".join(f"<!ENTITY e{i} ''>" for i in range(200000))), \
        at(1, "too many names", "d.dtd")
    yield "a deep chain of files", {
        "main.xml": declaring("".join(f'<!ENTITY e{i} SYSTEM "e{i}.txt">' for i in range(200)),
                              prop("&e0;")),
        **{f"e{i}.txt": f"\n&e{i + 1};" for i in range(200)}}, \
        at(1, "entities nested too deeply", "e149.txt")


def legitimate():
    yield "60,000 references in 600 KB", declaring(
        '<!ENTITY deg "&#176;">', prop("20.5 &deg;" * 60000)), loaded("p=" + "20.5 °" * 60000)
    # Only what is used expands.
    yield "references in attributes beside a long entity", declaring(
        f'<!ENTITY site "plant7"><!ENTITY long "{"x" * 65536}">',
        "".join(prop("x", f"&site;.{i}") for i in range(1000, 2100))), \
        loaded(*(f"plant7.{i}=x" for i in range(1000, 2100)))
    # As large as what the XML library needs to read an entity.
    yield "200 values of 82,000 characters", config(prop("x" * 82000) * 200), \
        loaded(*["p=" + "x" * 82000] * 200)
    yield "entities in entities", declaring('<!ENTITY e0 "deep">' + "".join(
        f'<!ENTITY e{i} "&e{i - 1};">' for i in range(1, 51)), prop("&e50;")), loaded("p=deep")


def grammars():
    """Document types that are short and make large automata, for documents that are validated."""
    elements = "<!ELEMENT config {}><!ELEMENT x EMPTY><!ELEMENT y EMPTY>"
    yield "exponential", elements.format(f"((x|y)*,x{',(x|y)' * 22})"), TOO_LARGE
    yield "deep", elements.format("(" * 100000 + "x" + ")?" * 100000), \
        at(1, "content model too large", "d.dtd")
    yield "many attributes", "<!ATTLIST config " + " ".join(
        f"a{i} CDATA #IMPLIED" for i in range(2000)) + ">", \
        at(1, "too many attributes", "d.dtd")


def rows(_port):
    for name, text, expected in grammars():
        yield Row(f"{name} in a document type", dtd(text, "<config><x/></config>"), expected,
                  validate=True)
    for name, files, expected in (*bombs(), *legitimate()):
        yield Row(name, files, expected)
