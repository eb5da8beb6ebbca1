# SPDX-License-Identifier: Apache-2.0
"""Messages and functions as Python functions: a C function prototype of exactly their types, and the conversions."""

import ctypes
import functools
import keyword
from ctypes import CFUNCTYPE, ArgumentError, c_void_p

from . import _errors as errors
from . import _library as library
from . import _objects as objects  # each of the two needs the other, but only when something is called
from . import _types as types
from . import _values as values
from ._library import release

# ---- messages as C functions


def prepare(selector, encoding, start=None):
    """The C function of a message with these types, and what stands in its selector's place."""
    call = library.make_call(selector.encode(), encoding.encode(), start)
    if not call:
        errors.check()
    parts = types.split(encoding.replace("...", ""))
    kinds = [types.ctype(part) for part in parts[3:]]
    code = library.Call.from_address(call).code
    if not code:
        return _packed(selector, parts, kinds), call
    return CFUNCTYPE(types.ctype(parts[0]), c_void_p, c_void_p, *kinds)(code), call


def _packed(selector, parts, kinds):
    """The same where only packed arguments can be sent."""
    number = library.selector_named(selector.encode())
    result_kind = types.ctype(parts[0])

    def send(receiver, _call, *arguments):
        cells = [a if isinstance(a, k) else k(a) for k, a in zip(kinds, arguments)]
        places = (c_void_p * max(1, len(cells)))(*[ctypes.addressof(cell) for cell in cells])
        room = ctypes.create_string_buffer(max(16, ctypes.sizeof(result_kind) if result_kind else 0))
        error = library.send(receiver, number, None, places, room)
        if error:
            errors.raise_taken(error)
        if result_kind is None:
            return None
        found = result_kind.from_buffer(room)
        return found if isinstance(found, ctypes.Structure) else found.value

    return send


@functools.lru_cache(maxsize=None)
def message(receiver, selector, of=None):
    """A message without conversions: to a class by name, or to instances of a class."""
    pointer = library.class_named((receiver or of).encode())
    holder = library.class_of(pointer) if receiver else pointer
    encoding = library.method_types(holder, library.selector_named(selector.encode())).decode()
    native, call = prepare(selector, encoding)
    shapes = [types.structure(p) if p[0] == "{" else None for p in types.split(encoding)[3:]]

    def send(*arguments):
        if not receiver:
            target, *arguments = arguments
        else:
            target = pointer
        ready = [s.to_native(a) if s else a for s, a in zip(shapes, arguments)]
        answer = native(target, call, *ready)
        if library.error_count.value:
            errors.check()
        return answer

    return send


# ---- arguments that need a decision


def _boolean(value):
    if isinstance(value, int):
        return bool(value)
    raise TypeError(f"a boolean is expected, not {value!r}")


def _character(value):
    if len(value) != 1:
        raise TypeError(f"one character is expected, not {value!r}")
    return ord(value)


def _too_large(value):
    raise OverflowError(f"{value!r} does not fit the integer that is expected")


def _class(value):
    if value is None:
        return None
    if isinstance(value, objects.ClassType):
        return value._ptr
    if isinstance(value, str) and library.class_named(value.encode()):
        return library.class_named(value.encode())
    raise TypeError(f"a class is expected, not {value!r}")


def _selector(value):
    if value is None:
        return 0
    if isinstance(value, str):
        return library.selector_named(value.encode())
    raise TypeError(f"the name of a selector is expected, not {value!r}")


def _text(value):
    if isinstance(value, str):
        if "\0" in value:
            raise ValueError("a C string ends at its first zero")
        return value.encode()
    if value is None or isinstance(value, (bytes, ctypes.Array)):
        return value
    if isinstance(value, bytearray):
        return (ctypes.c_char * len(value)).from_buffer(value)
    raise TypeError(f"text is expected, not {value!r}")


def _array(pointee, items):
    """Numbers or structures in a row, as C sees them."""
    shape = types.structure(pointee) if pointee[:1] == "{" else None
    kind = types.ctype(pointee)
    return (kind * len(items))(*[shape.to_native(item) if shape else item for item in items])


def _address(value, pointee):
    if value is None or isinstance(value, (bytes, ctypes.Array)):
        return value
    if isinstance(value, (list, tuple)) and pointee[:1] in _IN_ROWS:
        return _array(pointee, value)
    if isinstance(value, (types.Pointer, int)) and not isinstance(value, bool):
        return int(value)
    if isinstance(value, types.Out):
        return ctypes.addressof(value._room)
    if isinstance(value, (bytearray, memoryview)):
        return (ctypes.c_char * len(value)).from_buffer(value)
    if isinstance(value, ctypes._SimpleCData) or isinstance(value, ctypes.Structure):
        return ctypes.addressof(value)
    raise TypeError(f"an address is expected (bytes, a list of numbers, a ctypes array, brindle.Out), not {value!r}")


make_block = None  # set by the module of bodies


def _closure(value, encoding):
    """A closure as an owner: of a callable, with the types that the operation declares."""
    if value is None:
        return None
    if isinstance(value, objects.Object) and library.closure_types(value._ptr):
        return library.retain(value._ptr)
    if callable(value) and not isinstance(value, objects.ClassType):
        return make_block(value, encoding)
    raise TypeError(f"a callable is expected, not {value!r}")


def own(value):
    """Any value as an object, with a count for the caller."""
    if value is None:
        return None
    if isinstance(value, (objects.Object, objects.ClassType)):
        return library.retain(value._ptr)
    convert = values.converter(value.__class__)
    if convert is None:
        raise TypeError(f"{value.__class__.__name__} cannot be made an object: {value!r}")
    return convert(value)


# ---- operations

_ARGUMENTS = {
    "B": "{a} if {a} is True or {a} is False else _boolean({a})",
    "d": "{a}", "f": "{a}",
    "#": "_class({a})", ":": "_selector({a})", "*": "_text({a})",
}
_IN_ROWS = (*types.INTEGERS, "d", "f", "{")


def _argument_lines(index, encoding, detail, scope):
    """The lines that turn argument `a0` into `p0`; what must be released later is in `t0`."""
    a, p, t = f"a{index}", f"p{index}", f"t{index}"
    if types.is_closure(encoding):
        scope[f"closure{index}"] = detail
        return [f"{t} = {p} = _closure({a}, closure{index})"], t
    if types.is_object(encoding):
        kind = scope[f"kind{index}"] = _named_class(detail) or objects.Object
        lines = [f"if {a} is None: {p} = None",
                 f"elif isinstance({a}, kind{index}): {p} = {a}._ptr"]
        if kind is objects.Object or kind.__name__ in ("NSString", "NSObject"):
            lines = [f"if {a}.__class__ is str:", f"    {p} = small({a})",
                     f"    if {p} is None: {t} = {p} = _keep_text({a})", "el" + lines[0], lines[1]]
        lines.append(f"else: {t} = {p} = _keep({a}, kind{index})")
        return lines, t
    letter = encoding[0]
    if letter in types.INTEGERS:
        low, high = types.integer_limits(letter)
        lines = [f"if not {low} <= {a} <= {high}: _too_large({a})", f"{p} = {a}"]
        if letter in "cC":
            lines.insert(0, f"if {a}.__class__ is str: {a} = _character({a})")
        return lines, None
    if letter in "{(":
        scope[f"shape{index}"] = types.structure(encoding).to_native
        return [f"{p} = shape{index}({a})"], None
    if letter == "^":
        return [f"{p} = _address({a}, {encoding[1:]!r})"], None
    return [f"{p} = " + _ARGUMENTS[letter].format(a=a)], None


_small = values._small_strings


def _named_class(name):
    """The Python class that an operation relies on; None where it takes any object."""
    pointer = library.class_named(name.encode()) if name else None
    return objects.class_for(pointer) if pointer else None


def _keep_text(text):
    """A text that has not been an argument yet, as an owner. Short ones are kept for the next time."""
    fresh = values.string_to_native(text)
    if len(_small) < 1024 and len(text) <= 64 and _small.setdefault(text, fresh) == fresh:
        library.retain(fresh)  # the table has the first count
    return fresh


def _keep(value, kind):
    """An argument that is no object of the class yet, as an owner."""
    if isinstance(value, (objects.Object, objects.ClassType)):
        if kind is not objects.Object and kind.__name__ != "NSObject":
            raise TypeError(f"{value!r} is no {kind.__name__}")
        return library.retain(value._ptr)
    fresh = own(value)
    if kind is not objects.Object and not issubclass(objects.class_for(library.class_of(fresh)), kind):
        release(fresh)
        raise TypeError(f"{value!r} is no {kind.__name__}")
    return fresh


def _answer_line(encoding, selector, scope):
    letter = encoding[0]
    if letter == "v":
        return "return None"
    if selector in ("alloc", "allocWithZone:"):
        return "return wrap_object(r)"
    if types.is_object(encoding):
        return "return wrap(r)"
    if letter == "*":
        return "return None if r is None else r.decode('utf-8', 'replace')"
    if letter == "#":
        return "return class_for(r)"
    if letter == ":":
        return "return selector_text(r)"
    if letter == "^":
        scope["pointee"] = encoding[1:]
        return "return None if r is None else Pointer(r, pointee)"
    if letter in "{(":
        scope["shape"] = types.structure(encoding).from_native
        return "return shape(r)"
    return "return r"


def selector_text(number):
    name = library.selector_name(number) if number else None
    return name.decode() if name else None


def _compile(label, name, native, call, encoding, details, skipped):
    """The Python function round a C function: conversions, the call, a look for exceptions, the answer.

    It is written out for exactly these types, so that a call decides as little as possible.

    - skipped: how many of the types are not arguments: 1 for a plain function, 3 with receiver and selector.
    """
    parts = types.split(encoding.replace("...", ""))
    known = types.split_details((details or encoding).replace("...", ""))
    scope = {
        "native": native, "call": call, "error_count": library.error_count, "check": errors.check,
        "wrap": objects.wrap, "wrap_object": objects.wrap_object, "class_for": objects.class_for,
        "Object": objects.Object,
        "selector_text": selector_text, "Pointer": types.Pointer, "ArgumentError": ArgumentError,
        "release": release, "small": _small.get, "_keep": _keep, "_keep_text": _keep_text, "_closure": _closure,
        "_boolean": _boolean, "_character": _character, "_too_large": _too_large, "_class": _class,
        "_selector": _selector, "_text": _text, "_address": _address, "_label": label,
    }
    first = ["self"] if skipped == 3 else []
    passed = ["self._ptr", "call"] if skipped == 3 else []
    count = len(parts) - skipped
    body, kept = [], []
    for index in range(count):
        lines, temporary = _argument_lines(index, parts[skipped + index], known[skipped + index], scope)
        body += lines
        kept += [temporary] if temporary else []
    source = [f"def run({', '.join(first + [f'a{i}' for i in range(count)])}):"]
    source += [f"    {t} = None" for t in kept]
    invocation = f"r = native({', '.join(passed + [f'p{i}' for i in range(count)])})"
    if count:
        source += ["    try:"] + [f"        {line}" for line in body] + [f"        {invocation}"]
        source += ["    except (ArgumentError, TypeError) as error:",
                   "        raise TypeError(f'{_label}: {error}') from None"]
        if kept:
            source += ["    finally:"]
            source += [f"        if {t} is not None: release({t})" for t in kept]
    else:
        source += [f"    {invocation}"]
    source += ["    if error_count.value: check()", "    " + _answer_line(parts[0], name, scope)]
    exec("\n".join(source), scope)  # written here from the types of the runtime's own table
    run = scope["run"]
    run.__name__ = python_name(name)
    run.__qualname__ = label
    run.__doc__ = label
    return run


@functools.lru_cache(maxsize=None)
def operation(selector, encoding, details="", owner="", start=None):
    """The Python function of an operation: `f(receiver, arguments…)`.

    The function's name says class, selector and types, so that Python's own complaint about a wrong number of
    arguments says them too.
    """
    if selector in _REFUSED:
        return _REFUSED[selector]
    native, call = prepare(selector, encoding, start)
    return _compile(f"{owner} {selector}] ({encoding})", selector, native, call, encoding, details, 3)


def _variadic(selector, encoding, details, owner, start):
    """An operation with arguments that its types do not tell: those of a format, or objects up to a nil."""
    fixed = len(types.split(encoding)) - 3
    takes_format = selector.lower().endswith("format:")

    def run(self, *arguments):
        if len(arguments) < fixed:
            raise TypeError(f"{run.__qualname__} takes at least {fixed} arguments, not {len(arguments)}")
        if takes_format:
            extra = types.format_types(str(arguments[fixed - 1]))
            if len(extra) != len(arguments) - fixed:
                raise TypeError(f"{run.__qualname__}: the format reads {len(extra)} arguments, "
                                f"not {len(arguments) - fixed}")
        else:
            extra = ["@"] * (len(arguments) - fixed + 1)
            arguments += (None,)
        added = "..." + "".join(extra)
        return operation(selector, encoding + added, details + added, owner, start)(self, *arguments)

    run.__name__ = python_name(selector)
    run.__qualname__ = f"{owner} {selector}] ({encoding}...)"
    return run


def plain_function(name):
    """A function of the library by its name; None when there is none."""
    detailed = ctypes.c_char_p()
    code = library.function_named(name.encode(), ctypes.byref(detailed))
    if not code:
        return None
    details = detailed.value.decode()
    encoding = types.without_details(details)
    parts = types.split(encoding)
    native = CFUNCTYPE(*map(types.ctype, parts))(code)
    return _compile(f"{name} ({encoding})", name, native, None, encoding, details, 1)


# ---- operations that would take a count which Python holds


def _retain(self):
    held = objects._held.get(self._ptr)
    if held is not None:
        held.retains += 1
        library.retain(self._ptr)
    return self


def _release(self):
    held = objects._held.get(self._ptr)
    if held is None or held.retains == 0:
        raise errors.Exception("NSInvalidArgumentException",
                               "release without retain: Python ends its own count by itself")
    held.retains -= 1
    release(self._ptr)


def _dealloc(self):
    """Sent by the runtime when the last count goes; from Python it does nothing."""


_REFUSED = {"retain": _retain, "release": _release, "dealloc": _dealloc}

# ---- names


def python_name(selector):
    name = selector.replace(":", "_")
    return name + "_" if keyword.iskeyword(name) else name


def find_selector(name, answers):
    """The selector that a Python name means: itself, or its underscores as colons."""
    if answers(name):
        return name
    leading = len(name) - len(name.lstrip("_"))
    candidates = [name[:leading] + name[leading:].replace("_", ":")]
    bare = name.rstrip("_")
    candidates.append(bare + ":" * (len(name) - len(bare)))
    if name.endswith("_") and keyword.iskeyword(name[:-1]):
        candidates.append(name[:-1])
    for candidate in candidates:
        if candidate != name and answers(candidate):
            return candidate
    return None


def lookup(pointer, is_class_pointer, selector):
    """Types of a message to an object, or to instances of a class."""
    number = library.selector_named(selector.encode())
    found = (library.method_types if is_class_pointer else library.message_types)(pointer, number)
    return found.decode() if found else None


def bound_to_class(holder, selector, start=None):
    """The function of an operation as the instances of a class (or of a metaclass) have it."""
    number = library.selector_named(selector.encode())
    encoding = library.method_types(holder, number)
    if not encoding:
        return None
    details = library.method_details(holder, number) or b""
    sign = "+[" if library.is_metaclass(holder) else "-["
    owner = sign + library.class_name(holder).decode()
    details = details.decode()
    if details.endswith("..."):
        return _variadic(selector, encoding.decode(), details[:-3], owner, start)
    return operation(selector, encoding.decode(), details, owner, start)
