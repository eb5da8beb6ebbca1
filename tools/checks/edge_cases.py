#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The list of edge cases: each line names tests that exist and, given the results of a run, that ran and passed.

    tools/checks/edge_cases.py [RESULTS]        RESULTS is what ctest wrote with --output-junit
"""

import re
import sys
import xml.etree.ElementTree

import tree

LIST = "tests/EDGE_CASES.md"
LINE = re.compile(r"- (?P<behaviour>\S.*\S) · (?P<tests>[\w.:, ]+)")
CASE = re.compile(r"^[ \t]*TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)", re.MULTILINE)
RUN = re.compile(r"(?:\w+\.)?(?:\w+/)?(?P<case>\w+\.\w+)(?:/.*)?")
FUNCTION = re.compile(r"^[ \t]*def (test_\w+)\(", re.MULTILINE)

# Programs that are one test of ctest each, however many cases they hold.
WHOLE = {"x11": ["x11-tests.none", "x11-tests.openbox", "x11-tests.icewm"], "hardening": ["hardening-tests.reduced"]}


def tests_in_the_tree():
    """Answers, for each name as the list writes it, the names under which ctest runs it."""
    found = {}
    for file in tree.files():
        if file.parts[0] != "tests" or file.suffix not in (".cpp", ".py"):
            continue
        text = (tree.ROOT / file).read_text(encoding="utf-8")
        if file.suffix == ".py":
            for name in FUNCTION.findall(text):
                found[f"{file.name}::{name}"] = [file.stem.replace("test_", "python.", 1)]
        else:
            for suite, name in CASE.findall(text):
                case = f"{suite}.{name}"
                found.setdefault(case, WHOLE.get(file.parts[1], [case]))
    return found


def passed(results):
    """Answers what passed, without the area in front and without what parameters add."""
    names = set()
    for case in xml.etree.ElementTree.parse(results).iter("testcase"):
        if case.get("status") == "run":
            name = case.get("name")
            bare = RUN.fullmatch(name)
            names.add(bare["case"] if bare else name)
    return names


def check(lines, known, ran):
    seen = {}
    for number, line in enumerate(lines, 1):
        where = f"{LIST}:{number}"
        if not line.startswith("- "):
            continue
        parts = LINE.fullmatch(line)
        if not parts:
            yield f"{where}: not of the form: - what happens · Suite.Test, Suite.Test"
            continue
        if line in seen:
            yield f"{where}: stands on line {seen[line]} too"
        seen[line] = number
        for name in parts["tests"].split(", "):
            if name not in known:
                yield f"{where}: no test is called {name}"
            elif ran is not None and not ran.issuperset(known[name]):
                yield f"{where}: {name} did not run and pass"


def main():
    ran = passed(sys.argv[1]) if len(sys.argv) > 1 else None
    tree.finish(list(check(tree.lines(LIST), tests_in_the_tree(), ran)))


main()
