"""Depth and width: documents and includes nested deeper than the stack allows are refused with
their place; so is what takes the XML library time that grows with the square of the document."""

import resource

from harness import Row, at, config, loaded, prop, reported, write

DEEP_ELEMENTS = at((1, "{N}"), "elements nested too deeply for the stack")
DEEP_WALK = at((1, "{N}"), "files or sections nested too deeply for the stack")
SMALL = ["--stack", "256"]


def nested(kind, depth):
    opening, closing = {
        "sections": ('<section name="s">', "</section>"),
        "unknown elements": ("<other>", "</other>"),
        "elements in a property": ("<a>", "</a>"),
    }[kind]
    content = opening * depth + "x" + closing * depth
    return prop(content) if kind == "elements in a property" else content


def whole(kind, depth):
    return {"sections": loaded(*["s{"] * depth, *["}"] * depth),
            "unknown elements": loaded(),
            "elements in a property": loaded("p=x")}[kind]


def depths():
    for kind in ("sections", "unknown elements", "elements in a property"):
        for depth in (1000, 10000, 100000):
            for stack, arguments in (("usual stack", []), ("small stack", SMALL)):
                # In between, the outcome is up to the frames of this build.
                expected = (whole(kind, depth), DEEP_ELEMENTS, DEEP_WALK)
                if depth == 1000 and stack == "usual stack":
                    expected = whole(kind, depth)
                elif depth >= 100000:
                    expected = (DEEP_ELEMENTS, DEEP_WALK)
                yield Row(f"{depth} {kind}, {stack}",
                          config(nested(kind, depth)), expected, arguments=arguments)
    for depth, expected in ((1000, whole("sections", 1000)), (100000, DEEP_ELEMENTS)):
        document = config('<section name="s">' * depth + "</section>" * depth)
        yield Row(f"{depth} sections, validated", document, expected, validate=True)


def include(name):
    return f"<include>{name}</include>"


def includes():
    itself = config(include("main.xml"))
    yield Row("a file that includes itself", itself, DEEP_WALK, megabytes=600)
    yield Row("a file that includes itself, validated", itself, DEEP_WALK, validate=True,
              megabytes=600)
    yield Row("a file that includes itself, small stack", itself, DEEP_WALK, arguments=SMALL)
    yield Row("a file that includes itself into a section",
              config(f'<section name="s">{include("main.xml")}</section>'), DEEP_WALK,
              megabytes=600)
    yield Row("two files that include each other", {
        "main.xml": config(include("a/one.xml")),
        "a/one.xml": config(include("../b/two.xml")),
        "b/two.xml": config(include("../a/one.xml"))},
        tuple(at((1, "{N}"), "files or sections nested too deeply for the stack", file)
              for file in ("{STEPS}one.xml", "{STEPS}two.xml")), megabytes=600, seconds=10)
    # The first load is deep enough to look at the stack, and leaves it small.
    yield Row("a file that includes itself, with less stack than before", {
        "main.xml": itself, "first.xml": config(nested("unknown elements", 1000))},
        DEEP_WALK, arguments=["--later-stack", "512"])
    # Reading 100,000 files takes a while.
    doubling = {f"f{i}.xml": config(include(f"f{i + 1}.xml") * 2) for i in range(40)}
    yield Row("files that include the next twice",
              {**doubling, "f40.xml": config(""), "main.xml": config(include("f0.xml"))},
              at((1, "{N}"), "too many files", "f{N}.xml"), seconds=60, needs_limit=True)
    chain = {f"f{i}.xml": config(include(f"f{i + 1}.xml")) for i in range(200)}
    chain = {**chain, "f200.xml": config(prop("the end")), "main.xml": config(include("f0.xml"))}
    yield Row("a chain of 200 includes", chain, loaded("p=the end"))
    yield Row("a chain of 200 includes, validated", chain, loaded("p=the end"), validate=True)


def attributes(count, name="a"):
    return "".join(f' {name}{i}="v"' for i in range(count))


def unlimited_stack(_directory):
    resource.setrlimit(resource.RLIMIT_STACK, (resource.RLIM_INFINITY, resource.RLIM_INFINITY))


def squares():
    """Without the bound, each takes many seconds."""
    many = range(200000)
    names = at((1, "{N}"), "too many names")
    yield "names of elements", "".join(f"<a{i}/>" for i in many), names
    yield "prefixes", "".join(f'<p{i}:a xmlns:p{i}="urn:p"/>' for i in many), names
    yield "namespaces", "".join(f'<a xmlns="urn:{i}"/>' for i in many), names
    yield "namespaces of attributes", \
        "".join(f'<a xmlns:p="urn:{i}" p:b="v"/>' for i in many), names
    yield "names of attributes", "".join(f'<a a{i}="v"/>' for i in many), names
    nested_too_deeply = at(
        (1, "{N}"), "elements or namespaces nested too deeply for the size of the document")
    yield "levels with an unlimited stack", "<a>" * 100000 + "</a>" * 100000, nested_too_deeply
    yield "elements below many levels", \
        "<a>" * 8000 + "<b/>" * 500000 + "</a>" * 8000, nested_too_deeply
    yield "elements below many namespaces", \
        f'<a{attributes(9000, "xmlns:p")}>{"<b/>" * 500000}</a>', nested_too_deeply


def rows(_port):
    yield from depths()
    yield from includes()
    for name, content, expected in squares():
        yield Row(name, lambda d, c=content: write(d, {"main.xml": config(c)}), expected,
                  before=unlimited_stack, megabytes=400)
    refused = at((1, "{N}"), "too many attributes")
    yield Row("10,000 attributes", config(f"<other{attributes(10000)}/>"), loaded())
    yield Row("100,000 attributes", config(f"<other{attributes(100000)}/>"), refused)
    yield Row("100,000 attributes, validated",
              config(f'<section name="s"{attributes(100000)}/>'),
              reported(("ERROR", "{DIR}/main.xml", 1, "{N}",
                        "attribute 'a0' is not declared for element 'section'")), validate=True)
    yield Row("100,000 namespaces", config(f'<other{attributes(100000, "xmlns:a")}/>'), refused)
