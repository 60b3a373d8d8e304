#!/usr/bin/env python3
"""Compares the exported symbols of the library with the declarations in its public headers.

check_exports.py LIBRARY NM HEADER...

The library may export the public and protected members that the headers declare, the members that Q_OBJECT
declares, the tables that the compiler generates for a class, and the two functions of the resource
collection. Any other symbol would become part of the binary interface by accident. The library must export
everything that the headers declare.
"""

import re
import subprocess
import sys

RESOURCES = {"qInitResources_images()", "qCleanupResources_images()"}
Q_OBJECT = ("metaObject() const", "qt_metacast(char const*)",
            "qt_metacall(QMetaObject::Call, int, void**)", "staticMetaObject")
TABLES = ("vtable for ", "typeinfo for ", "typeinfo name for ")


def parts(text, separator):
    """The parts of a text between separators that no bracket encloses."""
    found, depth = [""], 0
    for character in text:
        depth += (character in "(<{") - (character in ")>}")
        if character == separator and depth == 0:
            found.append("")
        else:
            found[-1] += character
    return [part.strip() for part in found if part.strip()]


def type_words(text, scope, named):
    """A parameter's type without its name, default and scope, in an order that fits both notations."""
    words = re.findall(r"[\w:]+|[*&<>,]", text.split("=")[0])
    if named and len([word for word in words if re.match(r"\w", word) and word != "const"]) > 1:
        words.pop()
    return " ".join(sorted(word.removeprefix(scope + "::") for word in words))


def signature(function, scope, named):
    """A function in one notation for declarations and for demangled symbols."""
    head, _, rest = function.partition("(")
    arguments, _, tail = rest.rpartition(")")
    types = [type_words(part, scope, named) for part in parts(arguments, ",")]
    return f"{head.strip()}({'; '.join(types)}){' const' if 'const' in tail.split() else ''}"


def statements(body):
    """The members of a class: (access, text), without the bodies of functions and enumerations."""
    access, text, depth = "private", "", 0
    for character in body:
        if character == "{":
            depth += 1
        elif character == "}":
            depth -= 1
            if depth == 0:
                text += "{}"
                # An inline function needs no semicolon.
                if "(" in text:
                    yield access, text.strip()
                    text = ""
        elif depth:
            continue
        elif character == ";":
            if text.strip():
                yield access, text.strip()
            text = ""
        else:
            text += character
            label = re.search(r"(?:(public|protected|private)(?:\s+Q_SLOTS)?|(Q_SIGNALS))\s*:$", text)
            if label:
                access, text = label[1] or "public", ""


def declared_in(header):
    """The names that the header offers, with their signatures as keys."""
    with open(header, encoding="utf-8") as file:
        source = file.read()
    source = re.sub(r"/\*.*?\*/", "", source, flags=re.S)
    source = re.sub(r"//[^\n]*", "", source)
    source = re.sub(r"^\s*#[^\n]*", "", source, flags=re.M)
    offered = {}

    for free in re.findall(r"^KIVWIDGETS_EXPORT\s+\w+\s+(operator\S+\(.*?\)|\w+\(.*?\));", source, re.M):
        offered[signature(free, "", True)] = free

    for found in re.finditer(r"\b(?:class|struct)\s+KIVWIDGETS_EXPORT\s+(\w+)[^;{]*\{", source):
        name, end, depth = found[1], found.end(), 1
        while depth:
            depth += (source[end] == "{") - (source[end] == "}")
            end += 1
        body = source[found.end():end - 1]
        for table in TABLES:
            offered[table + name] = table + name
        if re.search(r"\bQ_OBJECT\b", body):
            for member in Q_OBJECT:
                offered[signature(f"{name}::{member}", name, False)
                        if "(" in member else f"{name}::{member}"] = f"{name}::{member}"
        body = re.sub(r"\bQ_OBJECT\b|\bQ_[A-Z]+\([^()]*\)", "", body)
        for access, text in statements(body):
            if access == "private" or re.search(r"=\s*delete$|\{\}$", text):
                continue
            member = re.match(r"(.*?)(~?\w+|operator\S+)\s*(\(.*)", text, re.S)
            if member:
                full = f"{name}::{member[2]}{member[3]}"
                offered[signature(full, name, True)] = f"{name}: {' '.join(text.split())}"
            elif text.startswith("static "):
                full = re.search(r"(\w+)(?:\[\w*\])?$", text)[1]
                offered[f"{name}::{full}"] = f"{name}: {text}"
    return offered


def main():
    library, nm, *headers = sys.argv[1:]
    offered = {name: name for name in RESOURCES}
    for header in headers:
        offered.update(declared_in(header))
    listing = subprocess.run([nm, "-DC", "--defined-only", library], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    classes = {name.split("::")[0] for name in offered if "::" in name} | {"KivPrivate"}
    exported, problems = set(), []
    for line in listing.splitlines():
        _, kind, symbol = line.split(" ", 2)
        symbol = re.sub(r"^(non-virtual|virtual) thunk to ", "", symbol)
        scope = symbol.split("::")[0].split(" ")[-1]
        # Reserved names are the tools' own; the weak ones are Qt's and the language's templates.
        if re.match(r"__|_(edata|end|init|fini)$", symbol) or (kind in "WVu" and scope not in classes):
            continue
        key = signature(symbol, scope, False) if "(" in symbol else symbol
        exported.add(key)
        if key not in offered:
            problems.append(f"exported, and no part of the interface: {symbol}")
    problems += [f"not exported: {offered[key]}" for key in sorted(offered.keys() - exported)]
    print("\n".join(dict.fromkeys(problems)) or f"{len(exported)} names are exported, all declared")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
