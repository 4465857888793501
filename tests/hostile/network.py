"""What a document may refer to: nothing over the network, local entities and document types, and of
schemas those that the caller named. Nothing of it gets a document past the grammar."""

from harness import NAMESPACE, Row, at, config, loaded, prop, reported, write

XSI = ' xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"'


def schema(namespace, content):
    target = f'targetNamespace="{namespace}" xmlns="{namespace}" ' if namespace else ""
    return f'<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" {target}' \
           f'elementFormDefault="qualified">{content}</xs:schema>'


def permissive(namespace):
    """Lets every content through that starts with config."""
    return schema(namespace, '<xs:element name="config"><xs:complexType><xs:sequence>'
                             '<xs:any minOccurs="0" maxOccurs="unbounded" processContents="skip"/>'
                             '</xs:sequence><xs:anyAttribute processContents="skip"/>'
                             '</xs:complexType></xs:element>')


DTD = '<!DOCTYPE config SYSTEM "d.dtd">'


def typed(declarations, content):
    """A document that is validated declares nothing itself."""
    return {"main.xml": config(content, prolog=DTD), "d.dtd": declarations}


def fatal(message, file="main.xml"):
    return reported(("FATAL", "{DIR}/" + file, "{N}", "{N}", message))


def error(message, file="main.xml"):
    return reported(("ERROR", "{DIR}/" + file, "{N}", "{N}", message))


def undeclared(element):
    return f"no declaration found for element '{element}'"


def unopened_then(schema_location, message, file="main.xml"):
    return reported(
        ("WARNING", "", 0, 0, f"unable to open primary document entity '{schema_location}'"),
        ("ERROR", "{DIR}/" + file, "{N}", "{N}", message))


def both(name, files, expected, validated=None, **options):
    yield Row(name, files, expected, **options)
    yield Row(f"{name}, validated", files, validated or expected, validate=True, **options)


def remote(port):
    url = f"http://localhost:{port}/r"
    hints = f'{XSI} xsi:schemaLocation="{NAMESPACE} {url} urn:o {url}"' \
            f' xsi:noNamespaceSchemaLocation="{url}"'
    yield Row("document type", config(prop("x"), prolog=f'<!DOCTYPE config SYSTEM "{url}">'),
              fatal(f"unable to open DTD document '{url}'"))
    yield Row("parameter entity", config(
        prop("x"), prolog=f'<!DOCTYPE config [<!ENTITY % e SYSTEM "{url}">%e;]>'),
        fatal(f"unable to open external entity '{url}'"))
    yield from both("schemas at the root", config(prop("x"), hints), loaded("p=x"))
    yield from both("schemas at nested elements", config(
        f'<section name="s"{hints}>{prop("x")}</section>'), loaded("s{", "p=x", "}"))
    yield Row("schema of the caller's, needed", '<o:config xmlns:o="urn:o"/>',
              unopened_then(url, undeclared("o:config")), validate=True, schemes=[("urn:o", url)])
    yield from both("entity of a local document type", {
        "main.xml": config(prop("&e;"), prolog='<!DOCTYPE config SYSTEM "d.dtd">'),
        "d.dtd": f'<!ENTITY e SYSTEM "http://127.0.0.1:{port}/r">'},
        fatal(f"unable to open external entity 'http://127.0.0.1:{port}/r'"))


def local(_port):
    yield Row("a document type and an entity with escaped blanks", {
        "main.xml": config(prop("&e;"), prolog='<!DOCTYPE config SYSTEM "my%20d/d%20.dtd">'),
        "my d/d .dtd": '<!ENTITY e SYSTEM "e%20e%21.txt">', "my d/e e%21.txt": "from e"},
        loaded("p=from e"))
    yield from both("a local entity by its URL", lambda d: write(d, {
        "an e.txt": "from e",
        **typed(f'<!ENTITY e SYSTEM "file://{d}/an%20e.txt">', prop("&e;"))}),
        loaded("p=from e"))
    other_machine = 'file://127.0.0.1{DIR}/e.txt'
    yield from both("an entity on another machine by its URL", lambda d: write(d, {
        "e.txt": "from e",
        **typed(f'<!ENTITY e SYSTEM "file://127.0.0.1{d}/e.txt">', prop("&e;"))}),
        fatal(f"unable to open external entity '{other_machine}'"))


SECOND = "urn:second"
SECOND_SCHEMA = schema(SECOND, '<xs:include schemaLocation="types.xsd"/>'
                               '<xs:element name="config" type="holder"/>')
SECOND_TYPES = schema(SECOND, '<xs:complexType name="holder"><xs:sequence>'
                              '<xs:element name="property" type="named" maxOccurs="2"/>'
                              '</xs:sequence></xs:complexType>'
                              '<xs:complexType name="named"><xs:simpleContent><xs:extension '
                              'base="xs:int"><xs:attribute name="name"/></xs:extension>'
                              '</xs:simpleContent></xs:complexType>')


def schemes(_port):
    """The caller's schemas."""
    files = {"schemas/second.xsd": SECOND_SCHEMA, "schemas/types.xsd": SECOND_TYPES}
    good = f'<config xmlns="{SECOND}"><property name="p">1</property></config>'
    yield Row("a schema of the caller's", {**files, "main.xml": good}, loaded("p=1"),
              validate=True, schemes=[(SECOND, "schemas/second.xsd")])
    yield Row("a schema of the caller's is obeyed",
              {**files, "main.xml": good.replace(">1<", ">x<")},
              error("value 'x' does not match regular expression facet '[+\\-]?[0-9]+'"),
              validate=True, schemes=[(SECOND, "schemas/second.xsd")])
    yield Row("schemas of the caller's, with white space",
              {**files, "schemas/my second.xsd": SECOND_SCHEMA, "main.xml": good}, loaded("p=1"),
              validate=True,
              schemes=[(f" urn:third third.xsd {SECOND}", "\tschemas/my%20second.xsd\r\n")])
    yield Row("a schema of the caller's that is missing", {"main.xml": good},
              unopened_then("{DIR}/none.xsd", undeclared("config")), validate=True,
              schemes=[(SECOND, "none.xsd")])


def bypass(_port):
    """Documents that the grammar refuses, with means of their own to get past it."""
    wrong = "<wrong/>"
    own = {"own.xsd": permissive(NAMESPACE), "o.xsd": permissive("urn:o")}
    undeclared_wrong = lambda file: error(undeclared("wrong"), file)
    unknown_namespace = lambda file: at(
        (1, "{N}"), f'expected element in the namespace "{NAMESPACE}"', file)
    unopened = lambda location, message: lambda file: unopened_then(location, message, file)
    any_content = "<!ELEMENT config ANY><!ELEMENT wrong EMPTY>"
    documents = {
        "own schema of the grammar's namespace": (config(
            wrong, f'{XSI} xsi:schemaLocation="{NAMESPACE} own.xsd"'), undeclared_wrong),
        "own schema of another namespace": (
            f'<config xmlns="urn:o"{XSI} xsi:schemaLocation="urn:o o.xsd">{wrong}</config>',
            unopened("o.xsd", undeclared("config"))),
        "another type by the standard's": (config(
            wrong, f'{XSI} xmlns:xs="http://www.w3.org/2001/XMLSchema" xsi:type="xs:anyType"'),
            lambda file: error("type 'xs:anyType' specified in 'xsi:type' cannot be resolved",
                               file)),
        "a document type instead of a namespace": (
            f"{DTD}<config>{wrong}</config>", unknown_namespace, any_content),
        "a document type besides the namespace": (
            config(wrong, prolog=DTD), undeclared_wrong, any_content +
            "<!ATTLIST config xmlns CDATA #IMPLIED name CDATA #IMPLIED version CDATA #IMPLIED>"),
        "a document type of its own": (
            config(wrong, prolog=f"<!DOCTYPE config [{any_content}]>"),
            lambda file: fatal("internal subset is not allowed when reusing the grammar", file)),
        "a document type that points to a schema": (
            f"{DTD}<config>{wrong}</config>", unknown_namespace, any_content +
            '<!ATTLIST config xmlns CDATA #FIXED "urn:o" '
            'xmlns:xsi CDATA #FIXED "http://www.w3.org/2001/XMLSchema-instance" '
            'xsi:schemaLocation CDATA #FIXED "urn:o o.xsd">'),
        "elements from an entity": (
            config("&e;", prolog=DTD), undeclared_wrong, '<!ENTITY e "<wrong/>">'),
    }
    for name, (document, expected, *dtd) in documents.items():
        files = {**own, "d.dtd": "".join(dtd)}
        yield Row(name, {**files, "main.xml": document}, expected("main.xml"), validate=True)
        yield Row(f"{name}, included",
                  {**files, "part.xml": document, "main.xml": config("<include>part.xml</include>")},
                  expected("part.xml"), validate=True)


def rows(port):
    for table in (remote, local, schemes, bypass):
        yield from table(port)
