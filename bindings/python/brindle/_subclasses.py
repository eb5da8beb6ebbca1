# SPDX-License-Identifier: Apache-2.0
"""Classes written in Python."""

import ctypes
import inspect
import sys
import types as python_types
from ctypes import c_void_p

from . import _bodies as bodies
from . import _errors as errors
from . import _library as library
from . import _objects as objects
from . import _operations as operations
from . import _types as types

_methods = {}  # (class, selector): the Python function and whether it is a class operation
_kept_bodies = []  # a method may be called as long as the process lives
_states = {}  # pointer of an object: what Python stored in it
_forget_state = library.END(lambda pointer: _states.pop(pointer, None) and None)


def selector(name, encoding=None):
    """Gives a method its selector, and its types where no parent class has them: `@selector("moved:by:", "v@:@d")`."""

    def mark(function):
        function._brindle_selector = name
        function._brindle_types = encoding
        return function

    return mark


class Property:
    """A property of a class written in Python: `title = brindle.property()`.

    It has a field, a getter, a setter and everything that reads properties as data: key-value access, archiving.

    - type: an encoding (`"@"`, `"d"`, `"q"`, `"B"`, …), an object class, or `str`, `int`, `float`, `bool`.
    - copy: whether a new value is copied. - readonly: without a setter. - getter, setter: other selectors.
    """

    _PYTHON = {str: '@"NSString"', int: "q", float: "d", bool: "B", list: '@"NSArray"',
               dict: '@"NSDictionary"', bytes: '@"NSData"', object: "@"}

    def __init__(self, type="@", copy=False, readonly=False, getter=None, setter=None):
        if isinstance(type, objects.ClassType):
            type = f'@"{type.__name__}"'
        self.encoding = self._PYTHON.get(type, type)
        self.is_object = self.encoding[0] == "@"
        self.copy = copy
        self.readonly = readonly
        self.getter = getter
        self.setter = setter

    def __set_name__(self, owner, name):
        raise TypeError("brindle.property() belongs in a class of the runtime")

    def prepare(self, name):
        self.name = name
        self.field = ("_" + name).encode()
        self.setter_name = self.setter or f"set{name[:1].upper()}{name[1:]}:"

    def attributes(self):
        parts = ["T" + self.encoding]
        if self.readonly:
            parts.append("R")
        if self.is_object:
            parts.append("C" if self.copy else "&")
        parts.append("N")
        if self.getter:
            parts.append("G" + self.getter)
        if self.setter:
            parts.append("S" + self.setter)
        return ",".join([*parts, "V" + self.field.decode()])

    def methods(self):
        """Selector, types and function of each accessor."""
        plain = "@" if self.is_object and self.encoding != "@?" else self.encoding
        yield self.getter or self.name, f"{plain}@:", self._get
        if not self.readonly:
            yield self.setter_name, f"v@:{plain}", self._set

    def _get(self, owner):
        if self.is_object:
            return objects.wrap(library.object_field(owner._ptr, self.field))
        return types.Pointer(library.field(owner._ptr, self.field), self.encoding).value

    def _set(self, owner, value):
        if not self.is_object:
            types.Pointer(library.field(owner._ptr, self.field), self.encoding).value = value
            return
        pointer = operations.own(value)
        try:
            if self.copy and pointer:
                fresh = operations.message(None, "copy", "NSObject")(pointer)
                library.release(pointer)
                pointer = fresh
            library.set_object_field(owner._ptr, self.field, pointer)
        finally:
            library.release(pointer)


def _fresh_name(name):
    """A runtime's name for a class: the Python name, with a number where that is taken."""
    number, fresh = 1, name
    while library.class_named(fresh.encode()):
        number += 1
        fresh = f"{name}_{number}"
    return fresh


def _argument_count(function):
    """How many arguments a method takes besides its receiver; None for any number."""
    parameters = list(inspect.signature(function).parameters.values())[1:]
    if any(p.kind is p.VAR_POSITIONAL for p in parameters):
        return None
    return len([p for p in parameters if p.kind in (p.POSITIONAL_ONLY, p.POSITIONAL_OR_KEYWORD)
                and p.default is p.empty])


def _selector_of(name, function, holder, count):
    """The selector that a method of a Python class has; None for one that is only Python's."""
    marked = getattr(function, "_brindle_selector", None)
    if marked:
        return marked
    if name[:1] == "_":
        return None
    inherited = operations.find_selector(name, lambda s: operations.lookup(holder, True, s))
    if inherited:
        return inherited
    if count == 0:
        return name
    if count and name.endswith("_") and name.count("_") == count:
        return name.replace("_", ":")
    return None


def _add(pointer, name, function):
    """Makes a Python function a method of a class (or of a metaclass); answers its selector."""
    count = _argument_count(function)
    spelt = _selector_of(name, function, pointer, count)
    if spelt is None:
        return None
    number = library.selector_named(spelt.encode())
    encoding = getattr(function, "_brindle_types", None)
    known = library.method_types(library.superclass(pointer), number)
    if encoding is None and known is not None:
        encoding = known.decode()
    is_guess = encoding is None
    if is_guess:
        encoding = "@@:" + "@" * (count or 0)
    wanted = len(types.split(encoding)) - 3
    if count is not None and count != wanted:
        raise TypeError(f"{name} takes {count} arguments, but the types of {spelt} are {encoding}")
    _methods[pointer, number] = function
    _install(pointer, spelt, encoding, function)
    if is_guess:
        library.set_adaptable(pointer, number)
    return spelt


def _install(pointer, spelt, encoding, function, receiver=objects.wrap_lent):
    body = bodies.c_body(encoding, function, receiver)
    _kept_bodies.append(body)
    if not library.add_method(pointer, spelt.encode(), encoding.encode(), ctypes.cast(body, c_void_p), None):
        errors.check()


@library.ADAPT
def _adapt(pointer, number, encoding):
    """Gives a method whose types were a guess the types of the first message that says more."""
    try:
        function = _methods.get((pointer, number))
        encoding = encoding.decode()
        count = _argument_count(function) if function else None
        if function is None or count not in (None, len(types.split(encoding)) - 3):
            return 0
        _install(pointer, operations.selector_text(number), encoding, function)
        return 1
    except Exception:
        return 0


library.set_adapter(_adapt)


def _ending(made, function):
    """A `dealloc` of Python: what it raises is reported, and the parent's follows by itself.

    The object is lent for that long only; who keeps it holds nothing afterwards.
    """
    native, call = operations.prepare("dealloc", "v@:", library.superclass(made._ptr))

    def dealloc(pointer):
        lent = object.__new__(objects.class_for(library.class_of(pointer)))
        lent._ptr = pointer
        lent.__dict__ = _states.get(pointer, {})
        try:
            function(lent)
        except BaseException:
            sys.excepthook(*sys.exc_info())
        finally:
            lent._ptr = 0
            native(pointer, call)

    return dealloc


# ---- super


def _from_where(self, *arguments):
    function = direct if isinstance(self, overriders[0]) else virtual  # noqa: F821
    return function(self, *arguments)


def _make_super_aware(function, parent, spelt, made):
    """Lets the operation of a class above one that overrides it in Python be super when it is reached from there."""
    scope = function.__globals__
    if "overriders" in scope:
        scope["overriders"][0] += (made,)
        return
    virtual = operations.bound_to_class(parent._ptr, spelt)
    direct = operations.bound_to_class(parent._ptr, spelt, parent._ptr)
    fresh = python_types.FunctionType(
        _from_where.__code__, {"virtual": virtual, "direct": direct, "overriders": [(made,)]})
    fresh.__qualname__ = virtual.__qualname__
    objects.turn_into(function, fresh)


def _let_super_through(made, name, spelt):
    for above in made.__mro__[1:]:
        # In a class of Python super finds its own function.
        if isinstance(above, objects.ClassType) and above not in objects.states_of:
            existing = above.__dict__.get(name)
            if inspect.isfunction(existing):
                _make_super_aware(existing, above, spelt, made)


# ---- making a class


def _restore(made, pointer):
    """Gives an object of a Python class back what Python stored in it."""
    state = _states.get(pointer)
    if state is None:
        state = _states[pointer] = {}
        library.when_gone(pointer, _forget_state, pointer)
    made.__dict__ = state


def define_class(meta, name, bases, namespace, protocols=()):
    parents = [base for base in bases if isinstance(base, objects.ClassType)]
    parent = parents[0]
    properties = {key: value for key, value in namespace.items() if isinstance(value, Property)}
    for key, declared in properties.items():
        del namespace[key]
        declared.prepare(key)
    pointer = library.make_class(parent._ptr, _fresh_name(name).encode())
    if not pointer:
        errors.check()
        raise TypeError(f"no class {name!r} can be made below {parent.__name__}")
    for declared in properties.values():
        if not library.add_field(pointer, declared.field, declared.encoding.encode()):
            raise TypeError(f"{name}.{declared.name}: no field of type {declared.encoding}")
        library.add_property(pointer, declared.name.encode(), declared.attributes().encode())
    for protocol in protocols:
        library.adopt_protocol(pointer, protocol.encode())
    library.register_class(pointer)

    namespace["_brindle_class"] = pointer
    made = type.__new__(meta, name, bases, namespace)
    objects._classes[pointer] = made
    objects.states_of[made] = _restore
    objects._underscored.setdefault(pointer, objects._underscored.get(parent._ptr, frozenset()))
    for declared in properties.values():
        for spelt, encoding, function in declared.methods():
            _install(pointer, spelt, encoding, function)
    for key, value in list(namespace.items()):
        is_class = isinstance(value, classmethod)
        function = value.__func__ if is_class else value
        if not inspect.isfunction(function) or key[:2] == "__":
            continue
        if key == "dealloc" and not is_class:
            _install(pointer, "dealloc", "v@:", _ending(made, function), int)
            continue
        spelt = _add(library.class_of(pointer) if is_class else pointer, key, function)
        if spelt is not None and not is_class:
            _let_super_through(made, key, spelt)
    return made


objects.define_class = define_class
