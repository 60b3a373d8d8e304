"""The doc comments of the library's headers, for the doc strings of the bindings."""

import re
import textwrap


def read_docs(header):
    """The doc comments of a header, by (class, member); the member is "" for the class itself, and the class for a
    function of its own."""
    docs = {}
    scope = ""
    comment = []
    declaration = ""
    documented = False
    with open(header, encoding="utf-8") as lines:
        for line in lines:
            text = line.strip()
            if text.startswith("///"):
                if documented:
                    comment = []
                comment.append(text[3:].removeprefix(" "))
                declaration = ""
                documented = False
                continue
            if not text:
                comment = []
                continue
            started = re.match(r"(?:class KIVWIDGETS_EXPORT|struct) (\w+)", text)
            if started:
                scope = started.group(1)
                docs[scope, ""] = plain(comment)
                comment = []
                continue
            if text == "};" and not line.startswith(" "):
                scope = ""
            declaration += " " + text
            if not text.endswith((";", "{", "}")):
                continue
            name = re.search(r"(\w+)\(|enum (?:class )?(\w+)|(\w+)(?:\[\d+\])?;", declaration)
            if name and comment and "= delete" not in declaration:
                # A comment stands before a getter and also documents the setter after it.
                docs[scope, next(filter(None, name.groups()))] = plain(comment)
            declaration = ""
            documented = True
    return docs


def plain(comment):
    """The comment's lines as plain text."""
    return "\n".join(comment).replace("@p ", "").strip()


def document_sip(source, docs):
    """The text of a .sip file with its classes' and methods' doc comments as doc strings."""
    result = []
    scope = ""
    statement = ""
    in_code = False
    for line in source.splitlines():
        result.append(line)
        if in_code:
            in_code = line != "%End"
            continue
        if line.startswith("%") and "Code" in line:
            in_code = True
            continue
        started = re.match(r"(?:class|struct) (\w+)", line)
        if started:
            scope = started.group(1)
        elif line == "{":
            result += docstring(docs.get((scope, "")), "%Docstring\n{}\n%End")
        elif scope and line.startswith("    "):
            statement += line
            if line.endswith(";"):
                name = re.search(r"(\w+)\(", statement)
                if name and "~" not in statement:
                    result += docstring(docs.get((scope, name.group(1))),
                                        '%Docstring(signature="prepended")\n{}\n%End')
                statement = ""
            elif line.endswith(("{", "}", ",")) and "(" not in statement:
                statement = ""
        elif line == "};":
            scope = ""
        elif function := re.match(r"\w+ (\w+)\(.*\);$", line):
            result += docstring(docs.get(("", function.group(1))), '%Docstring(signature="prepended")\n{}\n%End')
    return "\n".join(result) + "\n"


def widget_classes(sources):
    """The widgets that the texts of .sip files declare, derived classes before their bases."""
    bases = dict(re.findall(r"^class (\w+) : (\w+)", "\n".join(sources), re.M))

    def ancestors(name):
        return [name, *ancestors(bases[name])] if name in bases else [name]

    lines = [ancestors(name) for name in sorted(bases)]
    return [line[0] for line in sorted(lines, key=len, reverse=True) if line[-1].startswith("Q")]


def document_stub(source, docs):
    """The text of a .pyi file with doc strings."""
    result = []
    classes = []
    for line in source.splitlines():
        indent = len(line) - len(line.lstrip())
        started = re.match(r" *class (\w+)", line)
        method = re.match(r" *def (\w+)", line)
        if started:
            del classes[indent // 4:]
            classes.append(started.group(1))
            text = docs.get((classes[0], "" if indent == 0 else classes[-1]))
            result.append(line)
            result += docstring(text, '"""{}"""', indent + 4)
        elif method and (not indent or classes and indent == 4) and line.endswith(": ..."):
            text = docs.get((classes[0] if indent else "", method.group(1)))
            result.append(line.removesuffix(" ...") if text else line)
            result += docstring(text, '"""{}"""', indent + 4)
        else:
            result.append(line)
    return "\n".join(result) + "\n"


def docstring(text, form, indent=0):
    """The lines of a doc string, none where there is no text."""
    if not text:
        return []
    return textwrap.indent(form.format(text.replace("\\", "\\\\")), " " * indent).splitlines()
