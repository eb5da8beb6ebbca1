# SPDX-License-Identifier: Apache-2.0
"""Type encodings: what stands for each type in ctypes and in Python."""

import ctypes
import functools
import re
import struct
from collections import namedtuple
from ctypes import c_bool, c_char_p, c_double, c_float, c_uint64, c_void_p


class Point(namedtuple("Point", "x y")):
    """A place in points."""

    __slots__ = ()


class Size(namedtuple("Size", "width height")):
    """A width and a height in points."""

    __slots__ = ()


class Range(namedtuple("Range", "location length")):
    """A run of characters or items."""

    __slots__ = ()


class Rect(namedtuple("Rect", "origin size")):
    """A rectangle: `Rect((0, 0), (10, 20))` or `Rect(0, 0, 10, 20)`."""

    __slots__ = ()

    def __new__(cls, *parts):
        x, y, width, height = flat(parts, 4, "a rectangle")
        return tuple.__new__(cls, (Point(x, y), Size(width, height)))

    @property
    def x(self):
        return self[0][0]

    @property
    def y(self):
        return self[0][1]

    @property
    def width(self):
        return self[1][0]

    @property
    def height(self):
        return self[1][1]


def flat(value, count, what):
    """The numbers of a structure that is written nested or flat."""
    found = []

    def add(part):
        if isinstance(part, (tuple, list)):
            for item in part:
                add(item)
        else:
            found.append(part)

    add(value if isinstance(value, (tuple, list)) else (value,))
    if len(found) != count or not isinstance(value, (tuple, list)):
        raise TypeError(f"{what} takes {count} numbers, not {value!r}")
    return found


# ---- reading encodings

_CLOSING = {"{": "}", "(": ")", "[": "]"}


def skip(text, at=0):
    """The index behind the type that begins at an index."""
    while at < len(text) and text[at] in "rnNoORVAj":
        at += 1
    letter = text[at]
    if letter == "^":
        return at + 2 if text[at + 1] == "?" else skip(text, at + 1)
    if letter == "@":
        if text[at + 1:at + 2] == "?":
            return at + 2
        if text[at + 1:at + 2] == '"':
            return text.index('"', at + 2) + 1
        return at + 1
    if letter in _CLOSING:
        depth = 0
        while True:
            depth += text[at] in "{[("
            depth -= text[at] in "}])"
            at += 1
            if depth == 0:
                return at
    return at + 1


@functools.lru_cache(maxsize=None)
def split(types):
    """The types of a signature, one by one."""
    parts = []
    at = 0
    while at < len(types):
        end = skip(types, at)
        parts.append(types[at:end].lstrip("rnNoORVAj"))
        while end < len(types) and (types[end].isdigit() or types[end] in "+-"):
            end += 1
        at = end
    return tuple(parts)


@functools.lru_cache(maxsize=None)
def split_details(text):
    """Of detailed types: for each type the class it names, the signature of a closure, or None."""
    details = []
    at = 0
    while at < len(text):
        end = skip(text, at)
        if text[at:end] == "@?" and text[end:end + 1] == "<":
            closing = text.index(">", end)
            details.append(text[end + 1:closing])
            end = closing + 1
        elif text[at:at + 2] == '@"':
            details.append(text[at + 2:end - 1] or None)
        elif text.startswith("^{CG", at):
            details.append(text[at + 2:end - 2])
        else:
            details.append(None)
        at = end
    return tuple(details)


def without_details(text):
    """The plain types of detailed ones."""
    return re.sub(r'"[^"]*"|<[^>]*>', "", text)


_FORMAT = re.compile(r"%(?:(\d+)\$)?[-+ #0']*(\*|\d+)?(?:\.(\*|\d+))?(?:hh|h|ll|l|q|j|z|t|L)?(.)", re.DOTALL)
_FORMAT_TYPES = {"@": "@", "s": "*", "S": "^v", **dict.fromkeys("fFeEgGaA", "d")}


def format_types(text):
    """The types of the arguments that a format reads."""
    found = {}
    place = 0
    for position, width, precision, letter in _FORMAT.findall(text):
        if letter == "%":
            continue
        for star in (width, precision):
            if star == "*":
                place += 1
                found[place] = "q"
        place = int(position) if position else place + 1
        found[place] = _FORMAT_TYPES.get(letter, "q")
    return [found.get(i, "q") for i in range(1, max(found, default=0) + 1)]


# ---- numbers

INTEGERS = {
    "c": ctypes.c_int8, "C": ctypes.c_uint8, "s": ctypes.c_int16, "S": ctypes.c_uint16,
    "i": ctypes.c_int32, "I": ctypes.c_uint32, "l": ctypes.c_int32, "L": ctypes.c_uint32,
    "q": ctypes.c_int64, "Q": ctypes.c_uint64,
}
_SIMPLE = {**INTEGERS, "B": c_bool, "f": c_float, "d": c_double, "*": c_char_p, ":": c_uint64,
           "@": c_void_p, "#": c_void_p, "^": c_void_p}


def integer_limits(letter):
    """What an integer argument may be. Both readings of the sign bit are taken."""
    bits = 8 * ctypes.sizeof(INTEGERS[letter])
    return -(1 << (bits - 1)), (1 << bits) - 1


# ---- structures

_TUPLES = {"CGPoint": Point, "CGSize": Size, "_NSRange": Range}


class Structure:
    """One structure: its ctypes class and how it becomes a tuple."""

    def __init__(self, encoding):
        self.encoding = encoding
        self.name, _, body = encoding[1:-1].partition("=")
        if not body or encoding[0] != "{":
            raise TypeError(f"values of type {encoding} cannot be passed")
        self.parts = split(body)
        self.inner = [structure(part) if part[0] == "{" else None for part in self.parts]
        self.count = sum(part.count if part else 1 for part in self.inner)
        self.tuple = _TUPLES.get(self.name) if len(self.parts) == 2 else None
        # Numbers only lie in memory as they are written; one level is quicker to fill than two.
        self.is_flat = all(part.is_flat if part else letter == "d"
                           for part, letter in zip(self.inner, self.parts))
        kinds = [c_double] * self.count if self.is_flat else [ctype(part) for part in self.parts]
        fields = [(f"f{i}", kind) for i, kind in enumerate(kinds)]
        self.ctype = type(self.name or "Structure", (ctypes.Structure,), {"_fields_": fields})
        self.size = ctypes.sizeof(self.ctype)
        if self.is_flat and self.name == "CGRect" and self.count == 4:
            self.to_native, self.from_native = _rect_conversions(self.ctype)
        elif self.is_flat and self.tuple:
            self.to_native, self.from_native = _pair_conversions(self.ctype, self.tuple, self.name)

    def to_native(self, value):
        return self._fill(iter(flat(value, self.count, self.name or "a structure")))

    def _fill(self, numbers):
        if self.is_flat:
            return self.ctype(*[next(numbers) for _ in range(self.count)])
        return self.ctype(*[part._fill(numbers) if part else next(numbers) for part in self.inner])

    def from_native(self, native):
        if self.is_flat:
            return self._nested(iter([getattr(native, f"f{i}") for i in range(self.count)]))
        values = [part.from_native(getattr(native, f"f{i}")) if part else getattr(native, f"f{i}")
                  for i, part in enumerate(self.inner)]
        return self.tuple(*values) if self.tuple else tuple(values)

    def _nested(self, numbers):
        values = [part._nested(numbers) if part else next(numbers) for part in self.inner]
        return self.tuple(*values) if self.tuple else tuple(values)


def _rect_conversions(kind):
    read = struct.Struct("4d").unpack
    make = tuple.__new__

    def to_native(value):
        if value.__class__ is Rect:
            (x, y), (width, height) = value
            return kind(x, y, width, height)
        return kind(*flat(value, 4, "CGRect"))

    def from_native(native):
        x, y, width, height = read(native)
        return make(Rect, (make(Point, (x, y)), make(Size, (width, height))))

    return to_native, from_native


def _pair_conversions(kind, pair, name):
    read = struct.Struct("2d").unpack
    make = tuple.__new__

    def to_native(value):
        if value.__class__ is pair:
            return kind(*value)
        return kind(*flat(value, 2, name))

    def from_native(native):
        return make(pair, read(native))

    return to_native, from_native


@functools.lru_cache(maxsize=None)
def structure(encoding):
    return Structure(encoding)


def ctype(encoding):
    """The ctypes class of a type; None for none."""
    letter = encoding[0]
    if letter == "v":
        return None
    if letter in "{(":
        return structure(encoding).ctype
    if letter == "[":
        digits = 1
        while encoding[digits].isdigit():
            digits += 1
        return ctype(encoding[digits:-1]) * int(encoding[1:digits])
    try:
        return _SIMPLE[letter]
    except KeyError:
        raise TypeError(f"values of type {encoding} cannot be passed") from None


def is_object(encoding):
    """Whether values are objects with a count: `@`, and what stands behind a reference of Quartz."""
    return encoding[0] == "@" or encoding.startswith("^{CG") and encoding.endswith("=}")


def is_closure(encoding):
    return encoding == "@?"


class Pointer:
    """An address with the type of what lies there: `stop.value = True`, `numbers[3]`."""

    __slots__ = ("address", "encoding")

    def __init__(self, address, encoding="v"):
        self.address = address
        self.encoding = encoding

    def _cell(self, index):
        kind = ctype(self.encoding)
        if kind is None:
            raise TypeError("nothing is known of what lies there")
        return kind, self.address + index * ctypes.sizeof(kind)

    def __getitem__(self, index):
        kind, address = self._cell(index)
        found = kind.from_address(address)
        if self.encoding[0] == "{":
            return structure(self.encoding).from_native(found)
        if is_object(self.encoding):
            return _objects.wrap_lent(found.value)
        return found.value

    def __setitem__(self, index, value):
        kind, address = self._cell(index)
        if self.encoding[0] == "{":
            native = structure(self.encoding).to_native(value)
            ctypes.memmove(address, ctypes.byref(native), ctypes.sizeof(kind))
        elif is_object(self.encoding):
            kind.from_address(address).value = _objects.own(value)
        else:
            kind.from_address(address).value = value

    value = property(lambda self: self[0], lambda self, value: self.__setitem__(0, value))

    def __int__(self):
        return self.address

    __index__ = __int__

    def __repr__(self):
        return f"<brindle.Pointer to {self.encoding} at {self.address:#x}>"


class Out:
    """Room for one value that an operation writes: `error = brindle.Out()`, then `error.value`.

    The type is that of an object unless another is given: `Out("d")`.
    """

    def __init__(self, encoding="@"):
        self.encoding = encoding
        self._room = ctype(encoding)()

    @property
    def value(self):
        if self.encoding[0] == "{":
            return structure(self.encoding).from_native(self._room)
        found = self._room.value
        return _objects.wrap_lent(found) if is_object(self.encoding) else found

    def __del__(self):
        if is_object(self.encoding) and self._room.value:
            _objects.library.release(self._room.value)


_objects = None  # the module of objects, set by it
