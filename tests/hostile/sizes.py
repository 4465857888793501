"""Large documents: they load, or there is not enough memory and that is reported."""

from harness import Row, at, config, loaded, prop

LARGE = 50000000
OUT_OF_MEMORY = at((1, "{N}"), "out of memory")


def rows(_port):
    value = "0123456789" * (LARGE // 10)
    large = {"megabytes": 1500}
    yield Row("50 MB in a value", lambda d: write(d, prop(value)), loaded("p=" + value), **large)
    yield Row("50 MB in a comment", lambda d: write(d, prop("x") + f"<!--{value}-->"),
              loaded("p=x"), **large)
    yield Row("50 MB in the name of an attribute", lambda d: write(d, f'<other a{value}="x"/>'),
              loaded(), **large)
    yield Row("5 million elements", lambda d: write(d, "<a/>" * 5000000), OUT_OF_MEMORY,
              megabytes=256, seconds=20, needs_limit=True)
    yield Row("50 MB in a value, too little memory", lambda d: write(d, prop(value)), OUT_OF_MEMORY,
              megabytes=100, needs_limit=True)


def write(directory, content):
    (directory / "main.xml").write_text(config(content))
