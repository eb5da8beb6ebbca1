#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the sources of the library, gallery and examples that clang-tidy should read.

    changed.py [--all] [--most N]

Those that differ from origin/main, committed or not; on origin/main itself those of the last commits. A
changed header stands for the source of its name. The newest come first, so that a limit cuts the oldest.
"""

import argparse
import pathlib

import tree

FOLDERS = ("platform", "brindle", "gallery", "examples")
LAST_COMMITS = 10


def changed_names():
    names = tree.git("ls-files", "--modified", "--others", "--exclude-standard")
    base = tree.git("merge-base", "origin/main", "HEAD")
    head = tree.git("rev-parse", "HEAD")
    span = ["-%d" % LAST_COMMITS, "HEAD"] if not base or base == head else [f"{base[0]}..HEAD"]
    return [*names, *tree.git("log", "--name-only", "--format=", *span)]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--most", type=int, default=0)
    options = parser.parse_args()

    names = tree.files() if options.all else map(pathlib.PurePosixPath, changed_names())
    sources = {}
    for name in names:
        source = name.with_suffix(".cpp")
        if name.suffix in tree.CODE and name.parts[0] in FOLDERS and (tree.ROOT / source).is_file():
            sources[source] = None # a dictionary keeps the order
    for source in list(sources)[: options.most or None]:
        print(source)


main()
