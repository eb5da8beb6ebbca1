# SPDX-License-Identifier: Apache-2.0
"""Closures and methods written in Python, as the runtime calls them."""

import ctypes
import inspect
import sys
import threading
from ctypes import CFUNCTYPE, c_void_p

from . import _errors as errors
from . import _library as library
from . import _objects as objects
from . import _operations as operations
from . import _types as types

_texts = {}  # what was answered as a C string stays readable


def _reader(encoding):
    """How an argument of a body becomes a Python value; None where it is one already."""
    if types.is_object(encoding):
        return objects.wrap_lent
    letter = encoding[0]
    if letter == "#":
        return objects.class_for
    if letter == ":":
        return operations.selector_text
    if letter == "*":
        return lambda text: None if text is None else text.decode("utf-8", "replace")
    if letter == "^":
        return lambda address: None if address is None else types.Pointer(address, encoding[1:])
    if letter in "{(":
        return types.structure(encoding).from_native
    return None


def _writer(encoding):
    """How what a body answers becomes a C value."""
    if encoding == "@?":
        return lambda value: operations._closure(value, None)
    if types.is_object(encoding):
        return operations.own
    letter = encoding[0]
    if letter == "v":
        return lambda value: None
    if letter == "B":
        return lambda value: operations._boolean(value)
    if letter in "df":
        return float
    if letter == "#":
        return operations._class
    if letter == ":":
        return operations._selector
    if letter == "*":
        return _kept_text
    if letter == "^":
        return _address_to_keep
    if letter in "{(":
        return types.structure(encoding).to_native
    low, high = types.integer_limits(letter)

    def integer(value):
        if not isinstance(value, int):
            raise TypeError(f"an integer is expected, not {value!r}")
        return value if low <= value <= high else operations._too_large(value)

    return integer


def _address_to_keep(value):
    """An address that a body answers: what lies there must live on, so Python's own memory will not do."""
    if value is None:
        return None
    if isinstance(value, (types.Pointer, int)) and not isinstance(value, bool):
        return int(value)
    raise TypeError(f"an address is expected (brindle.Pointer), not {value!r}")


def _kept_text(value):
    if value is None:
        return None
    raw = operations._text(value)
    return ctypes.addressof(_texts.setdefault(raw, ctypes.create_string_buffer(raw)))


def _zero(encoding):
    kind = types.ctype(encoding)
    if kind is None or kind in (c_void_p, ctypes.c_char_p) or encoding[0] in "{(":
        return None
    return kind().value


def c_body(encoding, function, receiver=None):
    """A C function for the runtime that runs a Python one. It must be kept as long as it may be called.

    - receiver: for a method, how its receiver becomes a Python value.
    """
    is_method = receiver is not None
    parts = types.split(encoding)
    result, arguments = parts[0], list(parts[3 if is_method else 2:])
    readers = [_reader(part) for part in arguments]
    write = _writer(result)
    zero = _zero(result)
    is_structure = result[0] in "{("
    size = types.structure(result).size if is_structure else 0
    hidden = size > 16  # where the answer goes comes before all arguments
    first = (1 if hidden else 0) + (1 if is_method else 0)

    def run(*raw):
        try:
            given = [read(value) if read else value for read, value in zip(readers, raw[first + 1:])]
            if is_method:
                given.insert(0, receiver(raw[first - 1]))
            answer = write(function(*given))
            if not is_structure:
                return answer
            frame = library.Frame.from_address(raw[first])
            ctypes.memmove(frame.result, ctypes.byref(answer), size)
            frame.answered = 1
        except BaseException as error:
            errors.raise_into(error)
        return zero

    answer_kind = None if is_structure else types.ctype(result)
    if answer_kind is ctypes.c_char_p:
        answer_kind = c_void_p
    kinds = [types.ctype(part) for part in arguments]
    before = [c_void_p] * (first + 1)
    return CFUNCTYPE(answer_kind, *before, *kinds)(run)


# ---- closures

_closures = {}  # number of a closure: its body, until the runtime has let go of it
_numbers = iter(range(1, sys.maxsize))
_end_closure = library.END(lambda number: _closures.pop(number, None) and None)


def make_block(function, encoding):
    """A closure that runs a callable, owned by the caller."""
    if isinstance(function, Block):
        function, encoding = function.function, function.encoding
    if encoding is None:
        count = sum(1 for p in inspect.signature(function).parameters.values()
                    if p.default is p.empty and p.kind in (p.POSITIONAL_ONLY, p.POSITIONAL_OR_KEYWORD))
        if count:
            raise TypeError("nothing says what this closure is called with: "
                            "brindle.Block(\"v@?@\", function)")
        encoding = "v@?"
    body = c_body(encoding, function)
    number = next(_numbers)
    _closures[number] = body
    pointer = library.make_closure(encoding.encode(), ctypes.cast(body, c_void_p), number, _end_closure)
    if not pointer:
        del _closures[number]
        errors.check()
    return pointer


class Block:
    """A callable with the types of the closure it is to be, where no operation says them: `Block("v@?@", f)`."""

    def __init__(self, encoding, function):
        if len(types.split(encoding)) < 2 or types.split(encoding)[1] != "@?":
            raise TypeError(f"{encoding!r} are not the types of a closure")
        self.encoding = encoding
        self.function = function

    def __call__(self, *arguments):
        return self.function(*arguments)


def run_closure(closure, *arguments):
    """Runs a closure of the runtime."""
    encoding = library.closure_types(closure._ptr).decode()
    parts = types.split(encoding)
    if len(arguments) != len(parts) - 2:
        raise TypeError(f"a closure {encoding} takes {len(parts) - 2} arguments, not {len(arguments)}")
    cells, owned, lent = [], [], []
    try:
        for part, value in zip(parts[2:], arguments):
            if part[0] == "^" and not types.is_object(part):
                native = operations._address(value, part[1:])
                if isinstance(native, (bytes, ctypes.Array)):
                    lent.append(native)
                    native = ctypes.cast(native, c_void_p)
            else:
                native = _writer(part)(value)
            if types.is_object(part) and native:
                owned.append(native)
            kind = types.ctype(part)
            cells.append(native if isinstance(native, kind) else kind(native))
        places = (c_void_p * max(1, len(cells)))(*[ctypes.addressof(cell) for cell in cells])
        kind = types.ctype(parts[0])
        room = ctypes.create_string_buffer(max(16, ctypes.sizeof(kind) if kind else 0))
        error = library.run_closure(closure._ptr, places, room)
    finally:
        for pointer in owned:
            library.release(pointer)
    if error:
        errors.raise_taken(error)
    if kind is None:
        return None
    found = kind.from_buffer(room)
    if types.is_object(parts[0]):
        return objects.wrap(found.value)
    read = _reader(parts[0])
    value = found if isinstance(found, ctypes.Structure) else found.value
    return read(value) if read else value


operations.make_block = make_block
objects.run_closure = run_closure

# ---- exceptions on threads that nobody waits for


@library.REPORT
def _report(pointer):
    try:
        errors.raise_taken(library.retain(pointer))
    except BaseException as error:
        threading.excepthook(threading.ExceptHookArgs(
            (type(error), error, error.__traceback__, threading.current_thread())))


library.set_reporter(_report)
