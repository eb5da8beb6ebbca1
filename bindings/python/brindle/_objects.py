# SPDX-License-Identifier: Apache-2.0
"""Objects and classes of the runtime as Python objects and classes.

A Python object stands for an object of the runtime and owns one count of it; while it lives, the runtime's object is
always answered as this one. Each class of the runtime is a Python class whose methods are made from the class's
own table when they are first called: a C function prototype of exactly that signature, and the conversions.
"""

import ctypes
import functools
import keyword
import types as python_types
import weakref
from ctypes import CFUNCTYPE, ArgumentError, c_void_p

from . import _errors as errors
from . import _library as library
from . import _types as types
from . import _values as values
from ._library import release

_isa = c_void_p.from_address

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


values.message = message

# ---- arguments that need a decision


def _boolean(value):
    if isinstance(value, int):
        return bool(value)
    raise TypeError(f"a boolean is expected, not {value!r}")


def _too_large(value):
    raise OverflowError(f"{value!r} does not fit the integer that is expected")


def _class(value):
    if value is None:
        return None
    if isinstance(value, ClassType):
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


def _address(value):
    if value is None or isinstance(value, (bytes, ctypes.Array)):
        return value
    if isinstance(value, (types.Pointer, int)) and not isinstance(value, bool):
        return int(value)
    if isinstance(value, types.Out):
        return ctypes.addressof(value._room)
    if isinstance(value, (bytearray, memoryview)):
        return (ctypes.c_char * len(value)).from_buffer(value)
    if isinstance(value, ctypes._SimpleCData) or isinstance(value, ctypes.Structure):
        return ctypes.addressof(value)
    raise TypeError(f"an address is expected (bytes, a ctypes array, brindle.Out), not {value!r}")


def _no_closures(function, encoding):
    raise TypeError("closures are not ready")


make_block = _no_closures  # set by the module of closures


def _closure(value, encoding):
    """A closure as an owner: of a callable, with the types that the operation declares."""
    if value is None:
        return None
    if isinstance(value, Object):
        return library.retain(value._ptr)
    if callable(value):
        return make_block(value, encoding)
    raise TypeError(f"a callable is expected, not {value!r}")


def own(value):
    """Any value as an object, with a count for the caller."""
    if value is None:
        return None
    if isinstance(value, (Object, ClassType)):
        return library.retain(value._ptr)
    convert = values.converter(value.__class__)
    if convert is None:
        raise TypeError(f"{value.__class__.__name__} cannot be made an object: {value!r}")
    return convert(value)


values.own = own

# ---- operations

_ARGUMENTS = {
    "B": "{a} if {a} is True or {a} is False else _boolean({a})",
    "d": "{a}", "f": "{a}",
    "#": "_class({a})", ":": "_selector({a})", "*": "_text({a})", "^": "_address({a})",
}


def _argument_lines(index, encoding, detail, scope):
    """The lines that turn argument `a0` into `p0`; what must be released later is in `t0`."""
    a, p, t = f"a{index}", f"p{index}", f"t{index}"
    if types.is_closure(encoding):
        scope[f"closure{index}"] = detail
        return [f"{t} = {p} = _closure({a}, closure{index})"], t
    if types.is_object(encoding):
        kind = scope[f"kind{index}"] = _named_class(detail) or Object
        lines = [f"if {a} is None: {p} = None",
                 f"elif isinstance({a}, kind{index}): {p} = {a}._ptr"]
        if kind is Object or kind.__name__ in ("NSString", "NSObject"):
            lines = [f"if {a}.__class__ is str:", f"    {p} = small({a})",
                     f"    if {p} is None: {t} = {p} = _keep_text({a})", "el" + lines[0], lines[1]]
        lines.append(f"else: {t} = {p} = _keep({a}, kind{index})")
        return lines, t
    letter = encoding[0]
    if letter in types.INTEGERS:
        low, high = types.integer_limits(letter)
        return [f"if not {low} <= {a} <= {high}: _too_large({a})", f"{p} = {a}"], None
    if letter in "{(":
        scope[f"shape{index}"] = types.structure(encoding).to_native
        return [f"{p} = shape{index}({a})"], None
    return [f"{p} = " + _ARGUMENTS[letter].format(a=a)], None


_small = values._small_strings


def _named_class(name):
    """The Python class that an operation relies on; None where it takes any object."""
    pointer = library.class_named(name.encode()) if name else None
    return class_for(pointer) if pointer else None


def _keep_text(text):
    """A text that has not been an argument yet, as an owner. Short ones are kept for the next time."""
    fresh = values.string_to_native(text)
    if len(_small) < 1024 and len(text) <= 64 and _small.setdefault(text, fresh) == fresh:
        library.retain(fresh)  # the table has the first count
    return fresh


def _keep(value, kind):
    """An argument that is no object of the class yet, as an owner."""
    if isinstance(value, (Object, ClassType)):
        if kind is not Object and kind.__name__ != "NSObject":
            raise TypeError(f"{value!r} is no {kind.__name__}")
        return library.retain(value._ptr)
    fresh = own(value)
    if kind is not Object and not issubclass(class_for(_isa(fresh).value), kind):
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
        "wrap": wrap, "wrap_object": wrap_object, "class_for": class_for, "Object": Object,
        "selector_text": selector_text, "Pointer": types.Pointer, "ArgumentError": ArgumentError,
        "release": release, "small": _small.get, "_keep": _keep, "_keep_text": _keep_text, "_closure": _closure,
        "_boolean": _boolean, "_too_large": _too_large, "_class": _class, "_selector": _selector,
        "_text": _text, "_address": _address, "_label": label,
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
    held = _held.get(self._ptr)
    if held is not None:
        held.retains += 1
        library.retain(self._ptr)
    return self


def _release(self):
    held = _held.get(self._ptr)
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


def _lookup(pointer, is_class_pointer, selector):
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


# ---- classes


class ClassType(type):
    """The class of the classes: a class is an object of the runtime as well, and answers class operations."""

    _ptr = property(lambda cls: cls.__dict__["_brindle_class"])

    def __new__(meta, name, bases, namespace, **options):
        if "_brindle_class" in namespace:
            return super().__new__(meta, name, bases, namespace)
        return define_class(meta, name, bases, namespace, **options)

    def __init__(cls, name, bases, namespace, **options):
        super().__init__(name, bases, namespace)

    def __call__(cls, *arguments, **named):
        """A new object: `alloc` and `init`, then Python's own `__init__` where there is one."""
        made = cls.alloc().init()
        if made is not None and type(made).__init__ is not object.__init__:
            made.__init__(*arguments, **named)
        elif arguments or named:
            raise TypeError(f"{cls.__name__}() takes no arguments; use alloc() and an init operation")
        return made

    def __getattr__(cls, name):
        if name[:2] == "__":
            raise AttributeError(name)
        holder = library.class_of(cls._ptr)
        selector = find_selector(name, lambda s: _lookup(cls._ptr, False, s))
        if selector is None:
            raise AttributeError(f"class {cls.__name__} answers no operation {name}")
        function = bound_to_class(holder, selector)
        if function is None:
            function = operation(selector, _lookup(cls._ptr, False, selector), "", f"+[{cls.__name__}")
        return python_types.MethodType(function, cls)

    def __repr__(cls):
        return f"<class brindle.{cls.__name__}>"


define_class = None  # set by the module of subclasses


class Object:
    """What all objects of the runtime are to Python."""

    __slots__ = ("_ptr", "__weakref__")

    def __getattr__(self, name):
        if name[:2] == "__" or name == "_ptr":
            raise AttributeError(name)
        pointer = self._ptr
        selector = find_selector(name, lambda s: _lookup(pointer, False, s))
        if selector is None:
            raise AttributeError(f"{type(self).__name__} answers no operation {name}")
        isa = _isa(pointer).value
        function = bound_to_class(isa, selector)
        if function is None:  # forwarded: the types are this object's business
            function = operation(selector, _lookup(pointer, False, selector), "",
                                 f"-[{type(self).__name__}")
        return python_types.MethodType(function, self)

    def __eq__(self, other):
        if self is other:
            return True
        if isinstance(other, (Object, ClassType)) or values.converter(other.__class__):
            return self.isEqual_(other)
        return NotImplemented

    def __hash__(self):
        return self.hash()

    def __str__(self):
        return str(self.description())

    def __repr__(self):
        return f"<{type(self).__name__}: {self._ptr:#x}>"


def _class_operation(selector, metaclass):
    """A class operation: found on the metaclass first, made when first used."""
    found = []

    def get(cls):
        if not found:
            found.append(bound_to_class(metaclass, selector))
        return python_types.MethodType(found[0], cls)

    return property(get)


def _first(self, *arguments):
    return _become()(self, *arguments)  # noqa: F821, found in the stub's own globals


def turn_into(function, other):
    """Makes a function of a class another one, in place."""
    function.__globals__.update(other.__globals__)
    function.__code__ = other.__code__
    function.__qualname__ = other.__qualname__


def _stub(pointer, name, selector):
    """Stands for an operation until it is first called, and is it from then on."""

    def become():
        function = bound_to_class(pointer, selector)
        if not function.__code__.co_freevars:
            turn_into(stub, function)
        return function

    stub = python_types.FunctionType(_first.__code__, {"_become": become}, name)
    stub.__qualname__ = f"-[{library.class_name(pointer).decode()} {selector}]"
    return stub


_RESERVED = {"_ptr", "mro"}
_classes = {}  # pointer of a class: its Python class


class _SuperClassOperation:
    """A class operation as `super()` finds it in a class method; the class itself is asked first otherwise."""

    __slots__ = ("pointer", "selector")

    def __init__(self, pointer, selector):
        self.pointer = pointer
        self.selector = selector

    def __get__(self, instance, owner):
        if instance is not None:
            raise AttributeError(self.selector)
        metaclass = library.class_of(self.pointer)
        return python_types.MethodType(bound_to_class(metaclass, self.selector, metaclass), owner)


_underscored = {None: frozenset()}  # class: its selectors that hold underscores, ancestors' included


def _named(pointer, selectors):
    """Python names of a class's operations. A selector that is spelt like the name of another wins."""
    above = library.superclass(pointer)
    exact = _underscored.get(above, frozenset()).union(s for s in selectors if "_" in s)
    _underscored[pointer] = exact
    for selector in selectors:
        name = python_name(selector)
        if name[:2] != "__" and name not in _RESERVED and (name == selector or name not in exact):
            yield name, selector


def class_for(pointer):
    """The Python class of a class."""
    if not pointer:
        return None
    found = _classes.get(pointer)
    if found is not None:
        return found
    if library.is_metaclass(pointer):
        raise TypeError("a metaclass has no Python class")
    name = library.class_name(pointer).decode()
    above = class_for(library.superclass(pointer))
    own_selectors = library.lines(library.copy_method_names(pointer))
    metaclass = library.class_of(pointer)
    class_selectors = library.lines(library.copy_method_names(metaclass))
    if above is None:  # class objects answer the root's own operations too
        class_selectors = list(dict.fromkeys(class_selectors + own_selectors))
    operations = {key: _class_operation(selector, metaclass)
                  for key, selector in _named(metaclass, class_selectors)}
    meta = type(name + "Class", (type(above) if above else ClassType,), operations)
    namespace = {"_brindle_class": pointer, "__slots__": (), "__module__": "brindle"}
    for key, selector in _named(metaclass, class_selectors):
        namespace[key] = _SuperClassOperation(pointer, selector)
    for key, selector in _named(pointer, own_selectors):
        namespace[key] = _stub(pointer, key, selector)
    namespace.update(_EXTRAS.get(name, {}))
    made = meta(name, (above or Object,), namespace)
    return _classes.setdefault(pointer, made)


# ---- objects


class Held(weakref.ref):
    """Knows the Python object of an object, and gives its count back when that has gone."""

    __slots__ = ("pointer", "retains")


_held = {}  # pointer of an object: its Python object, weakly


def _gone(held):
    pointer = held.pointer
    if _held.get(pointer) is held:
        del _held[pointer]
    release(pointer)


def _make_object(kind, pointer):
    """The Python object of an object that is owned already."""
    held = _held.get(pointer)
    found = held() if held is not None else None
    if found is not None:
        release(pointer)
        return found
    made = object.__new__(kind)
    made._ptr = pointer
    fresh = Held(made, _gone)
    fresh.pointer = pointer
    fresh.retains = 0
    _held[pointer] = fresh
    if kind in states_of:
        states_of[kind](made, pointer)
    return made


states_of = {}  # Python's own classes: how their objects get back what Python stored in them


def _maker(isa):
    """How objects of a class become Python values."""
    if library.is_metaclass(isa):
        return class_for
    kind = class_for(isa)
    if kind not in states_of:
        names = {base.__name__ for base in kind.__mro__}
        for base, mutable, convert in values.FROM_NATIVE:
            if base in names and mutable not in names:
                if base == "NSDate":
                    return functools.partial(_make_date, kind)
                return convert
    return functools.partial(_make_object, kind)


def _make_date(kind, pointer):
    date, kept = values._from_date(pointer)
    return _make_object(kind, kept) if kept else date


class _Makers(dict):
    def __missing__(self, isa):
        made = self[isa] = _maker(isa)
        return made


_makers = _Makers()


def wrap(pointer):
    """What an owner is to Python: a value, an object, a class, or None."""
    if not pointer:
        return None
    return _makers[_isa(pointer).value](pointer)


def wrap_lent(pointer):
    return wrap(library.retain(pointer)) if pointer else None


def wrap_object(pointer):
    """The same, but values stay objects."""
    if not pointer:
        return None
    isa = _isa(pointer).value
    return class_for(pointer) if library.is_metaclass(isa) else _make_object(class_for(isa), pointer)


def _item(pointer):
    """An object out of a collection: the null object is None."""
    found = wrap(pointer)
    return None if isinstance(found, Object) and type(found).__name__ == "NSNull" else found


values.item = _item


def as_object(value):
    """A value as an object, so that operations of its class can be called."""
    return value if isinstance(value, (Object, ClassType)) else wrap_object(own(value))


def _ask(value, name):
    return getattr(as_object(value), name)


values.ask = _ask
errors.wrap_lent = wrap_lent
types._objects = python_types.SimpleNamespace(wrap_lent=wrap_lent, own=own, library=library)

# ---- sending by name


def send(receiver, selector, *arguments):
    """Sends a message whose selector is spelt exactly: `brindle.send(view, "setFrame:", rect)`."""
    if receiver is None:
        return None
    target = as_object(receiver)
    holder = library.class_of(target._ptr)
    function = bound_to_class(holder, selector)
    if function is None:
        encoding = _lookup(target._ptr, False, selector)
        if encoding is None:
            _refuse(target, selector)
        function = operation(selector, encoding, "", "-[" + library.class_name(holder).decode())
    return function(target, *arguments)


def _refuse(target, selector):
    """Lets the object itself say that it does not know a message."""
    native, call = prepare(selector, "v@:")
    native(target._ptr, call)
    errors.check()
    raise errors.Exception("NSInvalidArgumentException", f"unrecognized selector {selector}")


def send_super(kind, receiver, selector, *arguments):
    """Sends a message as the code of a class sends it to super."""
    above = library.superclass(kind._ptr)
    if isinstance(receiver, ClassType):
        above = library.class_of(above)
    function = bound_to_class(above, selector, above)
    if function is None:
        _refuse(receiver, selector)
    return function(receiver, *arguments)


# ---- what Python expects of collections


def _text_eq(self, other):
    if isinstance(other, str):
        return values.string_text(self._ptr) == other
    return Object.__eq__(self, other)


def _index(self, index):
    if isinstance(index, slice):
        return [self[i] for i in range(*index.indices(len(self)))]
    count = len(self)
    if not -count <= index < count:
        raise IndexError("index out of range")
    return _none_for_null(self.objectAtIndex_(index % count))


def _none_for_null(found):
    return None if isinstance(found, Object) and type(found).__name__ == "NSNull" else found


def _key(self, key):
    found = self.objectForKey_(key)
    if found is None:
        raise KeyError(key)
    return _none_for_null(found)


_EXTRAS = {
    "NSString": {
        "__str__": lambda self: values.string_text(self._ptr),
        "__len__": lambda self: self.length(),
        "__eq__": _text_eq,
        "__hash__": Object.__hash__,
    },
    "NSArray": {
        "__len__": lambda self: send(self, "count"),
        "__getitem__": _index,
        "__iter__": lambda self: (self[i] for i in range(len(self))),
        "__contains__": lambda self, value: send(self, "containsObject:", value),
    },
    "NSDictionary": {
        "__len__": lambda self: send(self, "count"),
        "__getitem__": _key,
        "__iter__": lambda self: iter(send(self, "allKeys")),
        "__contains__": lambda self, key: send(self, "objectForKey:", key) is not None,
    },
    "NSMutableDictionary": {
        "__setitem__": lambda self, key, value: send(self, "setObject:forKey:", value, key),
        "__delitem__": lambda self, key: send(self, "removeObjectForKey:", key),
    },
    "NSSet": {
        "__len__": lambda self: send(self, "count"),
        "__iter__": lambda self: iter(send(self, "allObjects")),
        "__contains__": lambda self, value: send(self, "containsObject:", value),
    },
    "NSBlock": {"__call__": lambda self, *arguments: run_closure(self, *arguments)},
}
run_closure = None  # set by the module of closures
