#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""C++ in the guides is code that runs: each block stands, line by line, in a file of examples/."""

import pathlib
import re

import tree

# Shows forms with pieces left out; the headers of the runtime are its examples.
FORMS = {"docs/object-model.md"}
BLOCK = re.compile(r"^```cpp\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def squeezed(text):
    """The text without indentation and empty lines, so that a block may stand at the margin."""
    return "\n" + "".join(f"{line.strip()}\n" for line in text.splitlines() if line.strip())


def guides():
    for file in tree.files():
        is_guide = file.suffix == ".md" and (len(file.parts) == 1 or file.parts[0] == "docs")
        if is_guide and "decisions" not in file.parts and str(file) not in FORMS:
            yield file


def main():
    examples = [squeezed((tree.ROOT / file).read_text(encoding="utf-8"))
                for file in tree.code() if file.parts[0] == "examples"]
    failures = []
    for guide in guides():
        text = (tree.ROOT / pathlib.Path(guide)).read_text(encoding="utf-8")
        for block in BLOCK.finditer(text):
            if not any(squeezed(block[1]) in example for example in examples):
                line = text.count("\n", 0, block.start()) + 1
                failures.append(f"{guide}:{line}: this code stands in no file of examples/")
    tree.finish(failures)


main()
