#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The commits that are not on origin/main yet, or the last twenty: their first lines and their words."""

import re

import tree

SUBJECT = re.compile(r"[a-z][a-z0-9/_+-]*: [A-Z0-9].*[^.]")
WIDEST = 72
DOCUMENT = re.compile(r"\bsp" r"ec(ification)?\b|\bPart" r" [0-9]", re.IGNORECASE)


def main():
    new = tree.git("rev-list", "--no-merges", "origin/main..HEAD")
    failures = []
    for commit in new or tree.git("rev-list", "--no-merges", "-20", "HEAD"):
        message = tree.git("show", "-s", "--format=%B", commit)
        subject, name = (message or [""])[0], commit[:10]
        if not SUBJECT.fullmatch(subject):
            failures.append(f'{name}: "{subject}" is not "area: Sentence" without a full stop')
        if len(subject) > WIDEST:
            failures.append(f'{name}: "{subject}" is {len(subject)} columns wide, {WIDEST} is the most')
        failures += [f"{name}: speaks of a document: {line}" for line in message if DOCUMENT.search(line)]
    tree.finish(failures)


main()
