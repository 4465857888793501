"""Entities and document types: expansion far beyond the size of the document ends in an error, and
what people use entities for still loads."""

from harness import Row, at, config, loaded, prop, reported

TOO_LARGE = at(("{N}", "{N}"), "document expands too far beyond its size")
TOO_LARGE_THERE = at(("{N}", "{N}"), "document expands too far beyond its size", "d.dtd")
TOO_DEEP = at(("{N}", "{N}"), "entities nested too deeply")
LAUGHS = '<!ENTITY e0 "laughter">' + "".join(
    f'<!ENTITY e{i} "{f"&e{i - 1};" * 10}">' for i in range(1, 13))
# A doubling chain of parameter entities ends in a declaration; a document type in a file of its own
# may use them inside declarations, one inside the document may not.
DOUBLINGS = "".join(f'<!ENTITY % p{i} "%p{i - 1};%p{i - 1};">\n' for i in range(1, 41))
ESCAPED_DOUBLINGS = "".join(f"<!ENTITY % p{i} '&#37;p{i - 1};&#37;p{i - 1};'>\n"
                            for i in range(1, 41))


def doctype(declarations):
    return f"<!DOCTYPE config [{declarations}]>"


def bomb(declarations, use):
    return config(use, prolog=doctype(declarations))


def chain(length, last="x"):
    return f'<!ENTITY e0 "{last}">' + "".join(f'<!ENTITY e{i} "&e{i - 1};">'
                                              for i in range(1, length + 1))


def dtd(text):
    return {"main.xml": config(prop("x"), prolog='<!DOCTYPE config SYSTEM "d.dtd">'), "d.dtd": text}


def bombs():
    """A row for each way to make much of little, and for each bound on it."""
    block = f'<!ENTITY e "{"x" * 100000}">'
    yield "laughs in content", bomb(LAUGHS, prop("&e12;")), TOO_LARGE
    yield "laughs in an attribute", bomb(LAUGHS, prop("x", "&e12;")), TOO_LARGE
    yield "laughs in a default that nobody uses", bomb(
        LAUGHS + '<!ATTLIST section name CDATA "&e12;">', prop("x")), TOO_LARGE
    yield "laughs of empty entities", bomb(
        LAUGHS.replace("laughter", ""), prop("x&e12;")), TOO_LARGE
    yield "laughs of elements", bomb(
        LAUGHS.replace("laughter", prop("x").replace('"', "'")), "&e12;"), TOO_LARGE
    yield "quadratic in a default", bomb(
        f'{block}<!ATTLIST property name CDATA "{"&e;" * 20000}">', prop("x")), TOO_LARGE
    yield "quadratic in a section that is not read", bomb(
        block, f"<other>{'&e;' * 20000}</other>"), TOO_LARGE
    yield "quadratic blanks in tags", bomb(
        f"""<!ENTITY e "<a{' ' * 100000}/>">""", "&e;" * 20000), TOO_LARGE
    yield "a file again and again in a section that is not read", {
        "main.xml": bomb('<!ENTITY e SYSTEM "e.txt">', f"<other>{'&e;' * 20000}</other>"),
        "e.txt": "x" * 100000}, at((1, "{N}"), "document expands too far beyond its size", "e.txt")
    yield "a long default at many elements", bomb(
        f'<!ATTLIST a b CDATA "{"x" * 100000}">', "<a/>" * 20000), TOO_LARGE
    yield "empty parameter entities in the document", bomb(
        f"<!ENTITY % p0 ''>\n{ESCAPED_DOUBLINGS}%p40;", prop("x")), TOO_LARGE
    yield "parameter entities in a value", dtd(
        f'<!ENTITY % p0 "xxxxxxxx">\n{DOUBLINGS}<!ENTITY e "%p40;">'), TOO_LARGE_THERE
    yield "quadratic parameter entities", dtd(
        f'<!ENTITY % p "{"<!-- -->" * 10000}">\n' + "%p;\n" * 20000), TOO_LARGE_THERE
    yield "many declarations", dtd("".join(f"<!ENTITY e{i} ''>" for i in range(200000))), \
        at((1, "{N}"), "too many names", "d.dtd")
    yield "deep chain in content", bomb(chain(20000), prop("&e20000;")), TOO_DEEP
    yield "deep chain of files", {
        "main.xml": bomb("".join(f'<!ENTITY e{i} SYSTEM "e{i}.txt">' for i in range(200)),
                         prop("&e0;")),
        **{f"e{i}.txt": f"\n&e{i + 1};" for i in range(200)}}, \
        at((1, "{N}"), "entities nested too deeply", "e149.txt")
    yield "deep elements in a file", {
        "main.xml": bomb('<!ENTITY e SYSTEM "e.txt">', "&e;"), "e.txt": "\n" + "<a>" * 100000}, \
        at((2, "{N}"), "elements nested too deeply for the stack", "e.txt")
    yield "a document type that is its own", dtd('<!ENTITY % d SYSTEM "d.dtd">%d;'), reported(
        ("FATAL", "{DIR}/d.dtd", "{N}", "{N}", "recursive entity expansion 'd'"))


def legitimate():
    yield "60,000 references in 600 KB", bomb(
        '<!ENTITY deg "&#176;">', prop("20.5 &deg;" * 60000)), loaded("p=" + "20.5 °" * 60000)
    # Only what is used expands.
    yield "references in attributes beside a long entity", bomb(
        f'<!ENTITY site "plant7"><!ENTITY long "{"x" * 65536}">',
        "".join(prop("x", f"&site;.{i}") for i in range(1000, 2100))), \
        loaded(*(f"plant7.{i}=x" for i in range(1000, 2100)))
    # As large as what the XML library needs to read an entity.
    yield "200 values of 82,000 characters", config(prop("x" * 82000) * 200), \
        loaded(*["p=" + "x" * 82000] * 200)
    yield "entities in entities", bomb(chain(50, "deep"), prop("&e50;")), loaded("p=deep")
    yield "a local external entity of 5 MB", {
        "main.xml": bomb('<!ENTITY e SYSTEM "parts/e.txt">', prop("&e;")),
        "parts/e.txt": "0123456789" * 500000}, loaded("p=" + "0123456789" * 500000)
    yield "a local document type", {
        "main.xml": config("<property>x</property>" + prop("&e;"),
                           prolog='<!DOCTYPE config SYSTEM "parts/d.dtd">'),
        "parts/d.dtd": '<!ENTITY % more SYSTEM "more.ent">%more;<!ATTLIST property name CDATA "d">',
        "parts/more.ent": "<!ENTITY e 'from more'>"}, loaded("d=x", "p=from more")
    # The children of an entity's node are not direct children of the section.
    yield "elements from an entity are not read", bomb(
        f"""<!ENTITY e '{prop("x", "inner")}'>""", prop("y") + "&e;"), loaded("p=y")


def grammars():
    """Document types that are short and make large automata, for documents that are validated."""
    too_large = at((1, "{N}"), "content model too large", "d.dtd")

    def content(model):
        return {"main.xml": '<!DOCTYPE config SYSTEM "d.dtd"><config><x/></config>',
                "d.dtd": f"<!ELEMENT config {model}><!ELEMENT x EMPTY><!ELEMENT y EMPTY>"}

    yield "exponential", content(f"((x|y)*,x{',(x|y)' * 22})"), TOO_LARGE
    optional = ",".join(f"e{i}?" for i in range(4000))
    yield "cubic", content(f"({optional})"), too_large
    yield "deep", content("(" * 100000 + "x" + ")?" * 100000), too_large
    yield "many attributes", {
        **content("(x)"), "d.dtd": "<!ATTLIST config " + " ".join(
            f"a{i} CDATA #IMPLIED" for i in range(2000)) + ">"}, \
        at((1, "{N}"), "too many attributes", "d.dtd")


def rows(_port):
    for name, files, expected in grammars():
        yield Row(f"{name} in a document type", files, expected, validate=True)
    for name, files, expected in (*bombs(), *legitimate()):
        yield Row(name, files, expected)
