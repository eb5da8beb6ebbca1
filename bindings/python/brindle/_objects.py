# SPDX-License-Identifier: Apache-2.0
"""Objects and classes of the runtime as Python objects and classes.

A Python object stands for an object of the runtime and owns one count of it; while it lives, the runtime's object is
always answered as this one. Each class of the runtime is a Python class whose methods are made from the class's
own table when they are first called.
"""

import functools
import types as python_types
import weakref
from ctypes import c_void_p

from . import _errors as errors
from . import _library as library
from . import _operations as operations
from . import _types as types
from . import _values as values
from ._library import release
from ._operations import bound_to_class, find_selector, lookup, operation, python_name

_isa = c_void_p.from_address

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
        selector = find_selector(name, lambda s: lookup(cls._ptr, False, s))
        if selector is None:
            raise AttributeError(f"class {cls.__name__} answers no operation {name}")
        function = bound_to_class(holder, selector)
        if function is None:
            function = operation(selector, lookup(cls._ptr, False, selector), "", f"+[{cls.__name__}")
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
        selector = find_selector(name, lambda s: lookup(pointer, False, s))
        if selector is None:
            raise AttributeError(f"{type(self).__name__} answers no operation {name}")
        isa = _isa(pointer).value
        function = bound_to_class(isa, selector)
        if function is None:  # forwarded: the types are this object's business
            function = operation(selector, lookup(pointer, False, selector), "",
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
    return _become()(self, *arguments)  # noqa: F821, found in the lazy method's own globals


def turn_into(function, other):
    """Makes a function of a class another one, in place."""
    function.__globals__.update(other.__globals__)
    function.__code__ = other.__code__
    function.__qualname__ = other.__qualname__


def _lazy_method(pointer, name, selector):
    """Stands for an operation until it is first called, and is it from then on."""

    def become():
        function = bound_to_class(pointer, selector)
        if not function.__code__.co_freevars:
            turn_into(lazy, function)
        return function

    lazy = python_types.FunctionType(_first.__code__, {"_become": become}, name)
    lazy.__qualname__ = f"-[{library.class_name(pointer).decode()} {selector}]"
    return lazy


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
        namespace[key] = _lazy_method(pointer, key, selector)
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
    before = _held.setdefault(pointer, fresh)
    if before is not fresh:
        found = before()
        if found is not None:  # another thread was quicker
            del fresh  # without it nothing happens when the second Python object goes
            release(pointer)
            return found
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
    return value if isinstance(value, (Object, ClassType)) else wrap_object(operations.own(value))


def _ask(value, name):
    return getattr(as_object(value), name)


values.ask = _ask
values.message = operations.message
values.own = operations.own
errors.wrap_lent = wrap_lent
types._objects = python_types.SimpleNamespace(wrap_lent=wrap_lent, own=operations.own, library=library)

# ---- sending by name


def send(receiver, selector, *arguments):
    """Sends a message whose selector is spelt exactly: `brindle.send(view, "setFrame:", rect)`."""
    if receiver is None:
        return None
    target = as_object(receiver)
    holder = library.class_of(target._ptr)
    function = bound_to_class(holder, selector)
    if function is None:
        encoding = lookup(target._ptr, False, selector)
        if encoding is None:
            _refuse(target, selector)
        function = operation(selector, encoding, "", "-[" + library.class_name(holder).decode())
    return function(target, *arguments)


def _refuse(target, selector):
    """Lets the object itself say that it does not know a message."""
    native, call = operations.prepare(selector, "v@:")
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
