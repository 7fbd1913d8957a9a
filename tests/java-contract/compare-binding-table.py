#!/usr/bin/env python3
"""Compares the tables of docs/java-contract.md with java/BindingTable.h, both ways.

usage: compare-binding-table.py BINDING_TABLE DOCUMENT

Prints each difference and ends with 1 when there is one.
"""

import re
import sys

LITERALS = re.compile(r'"([^"]*)"')
NAMESPACE = re.compile(r"^namespace (\w+) \{$(.*?)^\}  // namespace \1$", re.MULTILINE | re.DOTALL)
TEXT = re.compile(r'inline constexpr char (k\w+)\[\] =((?:\s*"[^"]*")+);')
ROW = re.compile(r"inline constexpr Java(Constructor|Method)<[^>]*> k\w+\{(.*?)\};", re.DOTALL)
CONSTRUCTOR = "<init>"

HEADING = re.compile(r"^#+ `([\w/$]+)`$")
DOCUMENT_ROW = re.compile(r"^\| `([^`]+)` \| `([^`]+)` \| `([^`]+)` \|$")


def text_of(expression, texts):
    """A C++ expression that is a named text, or literals side by side."""
    name = expression.strip()
    return texts[name] if name in texts else "".join(LITERALS.findall(expression))


def split_arguments(arguments):
    """At the commas outside of literals."""
    return re.findall(r'(?:[^",]|"[^"]*")+', arguments)


def rows_of_namespace(body):
    texts = {name: text_of(value, {}) for name, value in TEXT.findall(body)}
    for kind, arguments in ROW.findall(body):
        parts = [text_of(part, texts) for part in split_arguments(arguments)]
        alias, name, signature = parts if kind == "Method" else (parts[0], CONSTRUCTOR, parts[1])
        yield texts["kClass"], alias, name, signature


def rows_of_binding_table(source):
    classes = NAMESPACE.findall(source.split("namespace Binding {", 1)[1])
    rows = [row for _, body in classes for row in rows_of_namespace(body)]
    written = len(re.findall(r"inline constexpr Java(?:Constructor|Method)<", source))
    if not rows or len(rows) != written:
        sys.exit(f"{written} rows stand in the binding table, and this program could read {len(rows)}")
    return rows


def rows_of_document(document):
    rows, class_name = [], None
    for line in document.splitlines():
        if line.startswith("#"):
            heading = HEADING.match(line)
            class_name = heading.group(1) if heading else None
        elif class_name and (row := DOCUMENT_ROW.match(line)):
            rows.append((class_name, *row.groups()))
        elif class_name and line.startswith("| `"):
            sys.exit(f"not a row of alias, JNI name and signature: {line}")
    return rows


def differences(table, document):
    for row in table:
        if row not in document:
            yield f"only in the binding table: {' '.join(row)}"
    for row in document:
        if row not in table:
            yield f"only in the document: {' '.join(row)}"
    for row in sorted(set(document)):
        if document.count(row) > 1:
            yield f"more than once in the document: {' '.join(row)}"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        table = rows_of_binding_table(file.read())
    with open(sys.argv[2], encoding="utf-8") as file:
        document = rows_of_document(file.read())
    found = list(differences(table, document))
    for difference in found:
        print(difference)
    print(f"{len(table)} rows in the binding table, {len(document)} in the document, {len(found)} differences")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
