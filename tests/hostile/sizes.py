"""Large documents: they load, or there is not enough memory and that is reported."""

from harness import Row, at, config, loaded, prop

OUT_OF_MEMORY = at(1, "out of memory")


def rows(_port):
    value = "0123456789" * 5000000
    yield Row("50 MB in a value", config(prop(value)), loaded("p=" + value), megabytes=1500)
    yield Row("50 MB in a value, too little memory", config(prop(value)), OUT_OF_MEMORY,
              megabytes=100, needs_limit=True)
    yield Row("5 million elements", config("<a/>" * 5000000), OUT_OF_MEMORY,
              megabytes=256, seconds=20, needs_limit=True)
