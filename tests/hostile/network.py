"""What a document may refer to: nothing over the network, local entities and document types, and of
schemas those that the caller named."""

from harness import NAMESPACE, Row, config, fatal, loaded, prop, reported, write

XSI = ' xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"'


def remote(port):
    url = f"http://localhost:{port}/r"
    unopened = fatal(f"unable to open external entity '{url}'")
    yield Row("document type", config(prop("x"), prolog=f'<!DOCTYPE config SYSTEM "{url}">'),
              fatal(f"unable to open DTD document '{url}'"))
    yield Row("parameter entity", config(
        prop("x"), prolog=f'<!DOCTYPE config [<!ENTITY % e SYSTEM "{url}">%e;]>'), unopened)
    yield Row("entity of a local document type", {
        "main.xml": config(prop("&e;"), prolog='<!DOCTYPE config SYSTEM "d.dtd">'),
        "d.dtd": f'<!ENTITY e SYSTEM "{url}">'}, unopened)
    hints = f'{XSI} xsi:schemaLocation="{NAMESPACE} {url} urn:o {url}"' \
            f' xsi:noNamespaceSchemaLocation="{url}"'
    yield Row("schemas", config(prop("x"), hints), loaded("p=x"), validate=True)
    yield Row("schema of the caller's, needed", '<o:config xmlns:o="urn:o"/>', reported(
        ("WARNING", "", 0, 0, f"unable to open primary document entity '{url}'"),
        ("ERROR", "{DIR}/main.xml", 1, "{N}", "no declaration found for element 'o:config'")),
        validate=True, schemes=("urn:o", url))


def local(port):
    yield Row("a document type and what it refers to, with escaped blanks", {
        "main.xml": config("<property>&e;</property>",
                           prolog='<!DOCTYPE config SYSTEM "my%20d/d%20.dtd">'),
        "my d/d .dtd": '<!ENTITY % more SYSTEM "m%20e%21.ent">%more;'
                       '<!ATTLIST property name CDATA "d">',
        "my d/m e%21.ent": '<!ENTITY e SYSTEM "e.txt">', "my d/e.txt": "from e"},
        loaded("d=from e"))
    for url, expected in (
            ("file://{DIR}/an%20e.txt", loaded("p=from e")),
            ("file://127.0.0.1{DIR}/e.txt", None), (f"http://localhost:{port}{{DIR}}/e.txt", None)):
        yield Row(f"an entity by {url}", lambda d, url=url: write(d, {
            "an e.txt": "from e", "e.txt": "from e",
            "main.xml": config(prop("&e;"), prolog='<!DOCTYPE config [<!ENTITY e SYSTEM "' +
                               url.replace("{DIR}", str(d)) + '">]>')}),
            expected or fatal(f"unable to open external entity '{url}'"))


def schemes(_port):
    """The caller's schema may include others. The list is taken as words."""
    def schema(content):
        return '<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:s" ' \
               f'xmlns="urn:s" elementFormDefault="qualified">{content}</xs:schema>'

    yield Row("a schema of the caller's", {
        "main.xml": '<config xmlns="urn:s"><property>x</property></config>',
        "schemas/my s.xsd": schema('<xs:include schemaLocation="types.xsd"/>'
                                   '<xs:element name="config" type="holder"/>'),
        "schemas/types.xsd": schema('<xs:complexType name="holder"><xs:sequence>'
                                    '<xs:element name="property" type="xs:int"/>'
                                    '</xs:sequence></xs:complexType>')},
        reported(("WARNING", "", 0, 0, "unable to open primary document entity '{DIR}/t.xsd'"),
                 ("ERROR", "{DIR}/main.xml", 1, "{N}",
                  "value 'x' does not match regular expression facet '[+\\-]?[0-9]+'")),
        validate=True, schemes=(" urn:t t.xsd urn:s", "\tschemas/my%20s.xsd\r\n"))


def rows(port):
    for table in (remote, local, schemes):
        yield from table(port)
