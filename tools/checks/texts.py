#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Licence lines, words, lengths and the README of each folder."""

import re

import tree

LICENSED = tree.CODE | {".py", ".cmake", ".sh", ".map"}
LICENCE = "SPDX-License-Identifier: Apache-2.0"
LONGEST = 600

# Each is put together from pieces, or this file would be the first to be found.
WORDS = [
    (re.compile(r"\bsp" r"ec(ification)?\b", re.IGNORECASE), "speaks of a document instead of the thing"),
    (re.compile(r"\bPart" r" [0-9]"), "speaks of a document instead of the thing"),
    (re.compile(r"\b(design|plat" r"form|ecosystem)\.md\b"), "names a document outside the repository"),
    (re.compile(r"(?<![\w.)}])/(work|root)" r"/\w"), "names a path of one machine"),
    (re.compile(r"(?<![\w.)}])/home" r"/[a-z]"), "names a path of one machine"),
    (re.compile(r"/tmp" r"/(briefs|build-)"), "names a path of one machine"),
]
UNFINISHED = re.compile(r"\b(TO" r"DO|FIX" r"ME|XX" r"X)\b")


def is_program(file):
    first = tree.lines(file)[:1]
    return not file.suffix and bool(first) and first[0].startswith("#!")


def check_licence(file):
    if file.suffix in LICENSED or file.name == "CMakeLists.txt" or is_program(file):
        if not any(LICENCE in line for line in tree.lines(file)[:3]):
            yield f"{file}:1: no line with {LICENCE}"


def check_words(file):
    if file.name == "LICENSE" or file.suffix == ".svg":
        return
    for number, line in enumerate(tree.lines(file), 1):
        for pattern, why in WORDS:
            if pattern.search(line):
                yield f"{file}:{number}: {why}: {line.strip()}"
        if file.suffix in tree.CODE | {".py"} and UNFINISHED.search(line):
            yield f"{file}:{number}: unfinished: {line.strip()}"


def check_length(file):
    if file.suffix in tree.CODE and len(tree.lines(file)) > LONGEST:
        yield f"{file}: {len(tree.lines(file))} lines; more than {LONGEST} is two files"


def folders_to_explain(code):
    """Each folder of the library; elsewhere the folder at the top stands for those under it."""
    for file in code:
        library = file.parts[0] in ("platform", "brindle")
        yield file.parent if library else file.parents[len(file.parents) - 2]


def main():
    files = tree.files()
    failures = []
    for file in files:
        failures += [*check_licence(file), *check_words(file), *check_length(file)]
    for folder in sorted(set(folders_to_explain(tree.code()))):
        if not (tree.ROOT / folder / "README.md").is_file():
            failures.append(f"{folder}: no README.md that says what is here and where to start")
    tree.finish(failures)


main()
