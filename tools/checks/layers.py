#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Who may include whom. Arrows point down; each library is known in one folder only."""

import pathlib
import re

import tree

# What each layer may include besides itself.
LAYERS = {
    "runtime": set(),
    "foundation": {"runtime"},
    "quartz": {"foundation", "runtime"},
    "display": {"foundation", "runtime"},
    "appkit": {"quartz", "foundation", "runtime", "display"},
}
FRAMEWORK = ["core", "text", "introspection", "graphics", "viewkit", "controls", "menubar", "shell", "inspector"]
# Menubar and shell find each other by class name.
STRANGERS = {("menubar", "shell"), ("shell", "menubar")}
for place, layer in enumerate(FRAMEWORK):
    below = {other for other in FRAMEWORK[:place] if (layer, other) not in STRANGERS}
    LAYERS[layer] = below | {"appkit", "quartz", "foundation", "runtime"}
LAYERS["sandbox"] = {"core", "appkit", "quartz", "foundation", "runtime"}

# The beginning of an include, the library's name, the folders whose sources may use it.
LIBRARIES = [
    (r"cairo(-[a-z0-9]+)?\.h|cairo/", "Cairo", {"platform/quartz"}),
    (r"hb(-[a-z]+)?\.h|harfbuzz/", "HarfBuzz", {"platform/quartz"}),
    (r"ft2build\.h|freetype/", "FreeType", {"platform/quartz"}),
    (r"fontconfig/", "fontconfig", {"platform/quartz"}),
    (r"png\.h", "libpng", {"platform/quartz"}),
    (r"jpeglib\.h|jerror\.h|turbojpeg\.h", "libjpeg", {"platform/quartz"}),
    (r"webp/|gif_lib\.h|tiff(io)?\.h", "an image library", {"platform/quartz"}),
    (r"unicode/", "ICU", {"platform/foundation", "platform/quartz/text"}),
    (r"xcb/", "XCB", {"platform/display/x11"}),
    (r"xkbcommon/", "xkbcommon", {"platform/display/x11"}),
    (r"systemd/", "sd-bus", {"platform/display", "platform/foundation"}),
    (r"gtest/|gmock/", "GoogleTest", set()),
    (r"benchmark/", "Google Benchmark", set()),
]
# Floors and twins stand beside what they are compared with: these may use any library.
FREE = {"bench", "fuzz"}
SYSTEM = re.compile(
    r"[a-z0-9_]+$|(sys|linux|netinet|arpa|net|asm)/|c?xxabi\.h$|(emmintrin|immintrin|arm_neon)\.h$|"
    r"(assert|ctype|dirent|dlfcn|elf|endian|errno|execinfo|fcntl|fenv|float|ftw|getopt|glob|grp|inttypes|"
    r"langinfo|libgen|limits|link|locale|malloc|math|mntent|netdb|poll|pthread|pwd|sched|semaphore|setjmp|"
    r"signal|spawn|stdarg|stddef|stdint|stdio|stdlib|string|strings|syslog|termios|time|ucontext|unistd|"
    r"utime|wchar|wctype)\.h$")
INCLUDE = re.compile(r'\s*#\s*include\s*([<"])([^>"]+)[>"]')


def layer_of(file):
    """The layer a file of the library lies in, or None."""
    return file.parts[1] if file.parts[0] in ("platform", "brindle") and len(file.parts) > 2 else None


def home_of(file):
    """The folder that decides for a test: tests/platform/quartz/X.cpp stands for platform/quartz."""
    return pathlib.PurePosixPath(*file.parts[1:]) if file.parts[0] == "tests" else file


def resolve(file, name):
    """The file of ours that an include names, or None."""
    roots = ("platform", "brindle", "tests", file.parts[0], home_of(file).parts[0])
    for folder in (file.parent, *map(pathlib.PurePosixPath, roots)):
        path = (tree.ROOT / folder / name).resolve()
        if path.is_file() and path.is_relative_to(tree.ROOT):
            return pathlib.PurePosixPath(path.relative_to(tree.ROOT))
    return None


def check_library(file, name):
    for pattern, library, folders in LIBRARIES:
        if not re.match(pattern, name):
            continue
        top, home = file.parts[0], str(home_of(file))
        if top in FREE or (top == "tests" and not folders):
            return None
        if top == "tests" and (home.startswith("x11/") or home.startswith("support/")):
            return None
        if not any(home.startswith(folder + "/") for folder in folders):
            return f"{library} is not known here"
        if tree.is_public_header(file):
            return f"a public header shows {library}; include it in a source or in a *Private.h"
        return None
    if SYSTEM.match(name):
        return None
    return "an unknown library; give it its folder in tools/checks/layers.py"


def check_own(file, target):
    ours, theirs, top = layer_of(file), layer_of(target), file.parts[0]
    if theirs is None:
        if target.parts[0] != top and not (top == "tests" or target.parts[0] == "tests" and top in FREE):
            return f"{target.parts[0]}/ belongs to nobody else"
        return None
    if ours is not None:
        if theirs != ours and theirs not in LAYERS.get(ours, set()):
            return f"{ours} may not include {theirs}"
        if target.parts[0] == "platform" and top == "brindle" and not tree.is_public_header(target):
            return "the framework uses public headers only"
        if tree.is_public_header(file) and not tree.is_public_header(target):
            return "a public header includes a private one"
        return None
    behaviour = top in ("gallery", "examples") or str(file).startswith("tests/brindle/")
    if behaviour and not tree.is_public_header(target):
        return "only public headers here"
    return None


def main():
    failures = []
    for file in tree.code():
        if str(file).startswith("tests/packaging/"):
            continue # written as somebody outside this tree
        for number, line in enumerate(tree.lines(file), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            bracket, name = match.groups()
            target = resolve(file, name) if bracket == '"' else None
            if bracket == '"' and target is None:
                why = "no such file of ours"
            else:
                why = check_own(file, target) if target else check_library(file, name)
            if why:
                failures.append(f"{file}:{number}: {name}: {why}")
    tree.finish(failures)


main()
