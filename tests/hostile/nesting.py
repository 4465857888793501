"""Depth and width: documents and includes nested deeper than the stack allows are refused with
their place; so is what takes the XML library time that grows with the square of the document."""

import resource

from harness import Row, at, config, include, loaded, prop

DEEP_ELEMENTS = at(1, "elements nested too deeply for the stack")
DEEP_WALK = at(1, "files or sections nested too deeply for the stack")
SMALL = {"stack": 256 * 1024, "thread": True}


def depths():
    def sections(depth):
        return '<section name="s">' * depth + "</section>" * depth

    def others(depth):
        return "<other>" * depth + "x" + "</other>" * depth

    for kind, nested, whole in (
            ("sections", sections, lambda depth: loaded(*["s{"] * depth, *["}"] * depth)),
            ("unknown elements", others, lambda depth: loaded()),
            ("elements in a property", lambda depth: prop(others(depth)),
             lambda depth: loaded("p=x"))):
        yield Row(f"1,000 {kind}", config(nested(1000)), whole(1000))
        # Where it ends is up to the frames of this build.
        yield Row(f"10,000 {kind}, small stack", config(nested(10000)),
                  (whole(10000), DEEP_ELEMENTS, DEEP_WALK), **SMALL)
        yield Row(f"100,000 {kind}", config(nested(100000)), DEEP_ELEMENTS)
    yield Row("900 groups in a content model, small stack", {
        "main.xml": '<!DOCTYPE config SYSTEM "d.dtd"><config/>',
        "d.dtd": "<!ELEMENT config " + "(" * 900 + "x" + ")?" * 900 + ">"},
        at(1, "content model too large", "d.dtd"), validate=True, **SMALL)
    yield Row("100,000 sections, validated", config(sections(100000)), DEEP_ELEMENTS, validate=True)


def includes():
    itself = config(include("main.xml"))
    by_library = {"environment": {"ZU_CONFIG_PLAIN": "off"}, "megabytes": 600}
    yield Row("a file that includes itself", itself, DEEP_WALK, **by_library)
    yield Row("a file that includes itself, validated", itself, DEEP_WALK, validate=True,
              **by_library)
    yield Row("a file that includes itself, small stack", itself, DEEP_WALK, **SMALL)
    # The first load is deep enough to look at the stack, and leaves it small.
    yield Row("a file that includes itself, with less stack than before", {
        "main.xml": itself, "first.xml": config("<other>" * 1000 + "</other>" * 1000)},
        DEEP_WALK, later_stack=512 * 1024, **by_library)
    # Reading 100,000 files takes a while.
    doubling = {f"f{i}.xml": config(include(f"f{i + 1}.xml") * 2) for i in range(40)}
    yield Row("files that include the next twice", {**doubling, "f40.xml": config("")},
              at(1, "too many files", "f{N}.xml"), file="f0.xml", seconds=60, needs_limit=True)
    chain = {f"f{i}.xml": config(include(f"f{i + 1}.xml")) for i in range(200)}
    yield Row("a chain of 200 includes", {**chain, "f200.xml": config(prop("the end"))},
              loaded("p=the end"), file="f0.xml", validate=True)


def attributes(count, name="a"):
    return "".join(f' {name}{i}="v"' for i in range(count))


def squares():
    """Without the bound, each takes many seconds."""
    many = range(200000)
    names = at(1, "too many names")
    yield "names of elements", "".join(f"<a{i}/>" for i in many), names
    yield "prefixes", "".join(f'<p{i}:a xmlns:p{i}="urn:p"/>' for i in many), names
    yield "namespaces", "".join(f'<a xmlns="urn:{i}"/>' for i in many), names
    yield "names of attributes", "".join(f'<a a{i}="v"/>' for i in many), names
    yield "attributes", f"<other{attributes(100000)}/>", at(1, "too many attributes")
    nested_too_deeply = at(1, "elements or namespaces nested too deeply for the size of the document")
    yield "levels with an unlimited stack", "<a>" * 100000 + "</a>" * 100000, nested_too_deeply
    yield "attributes below many levels", \
        "<a>" * 8000 + '<b p:c="v"/>' * 30000 + "</a>" * 8000, nested_too_deeply
    yield "elements below many namespaces", \
        f'<a{attributes(9000, "xmlns:p")}>{"<b/>" * 500000}</a>', nested_too_deeply
    yield "10,000 attributes", f"<other{attributes(10000)}/>", loaded()


def rows(_port):
    yield from depths()
    yield from includes()
    for name, content, expected in squares():
        yield Row(name, config(content, ' xmlns:p="urn:p"'), expected, megabytes=400,
                  stack=resource.RLIM_INFINITY,
                  environment={"QEMU_STACK_SIZE": str(1 << 30)})  # of an emulator, by its own
