# SPDX-License-Identifier: Apache-2.0
"""What the checks look at: the files that are, or would be, in the repository."""

import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
CODE = {".cpp", ".h", ".c"}


def git(*arguments):
    """Answers the lines that a git command prints; none when it fails (no commits, no such branch)."""
    done = subprocess.run(["git", *arguments], cwd=ROOT, capture_output=True, text=True, check=False)
    return done.stdout.splitlines() if done.returncode == 0 else []


def files():
    """Tracked and untracked files that are not ignored, relative to the root, sorted."""
    names = git("ls-files", "--cached", "--others", "--exclude-standard")
    if not names:
        finish(["git lists no files here, so nothing was checked"])
    return [pathlib.PurePosixPath(name) for name in sorted(set(names)) if (ROOT / name).is_file()]


def code():
    return [file for file in files() if file.suffix in CODE]


def is_public_header(file):
    """The same rule as cmake/BrindleSources.cmake."""
    private = ("platform/display/x11/", "platform/display/headless/private/")
    return (file.suffix == ".h" and file.parts[0] in ("platform", "brindle")
            and not file.name.endswith("Private.h") and not str(file).startswith(private))


def lines(file):
    """Answers the lines of a file, or none when it is not text."""
    try:
        return (ROOT / file).read_text(encoding="utf-8").splitlines()
    except UnicodeDecodeError:
        return []


def finish(failures):
    """Prints each failure and ends the program with what that means for the check."""
    for failure in failures:
        print(failure)
    sys.exit(1 if failures else 0)
