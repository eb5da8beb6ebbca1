# SPDX-License-Identifier: Apache-2.0
"""Brindle for Python: every class, operation and function of the library, by its own name.

    >>> import brindle
    >>> brindle.NSString.stringWithString_("brindle").uppercaseString()
    'BRINDLE'

A selector's colons are underscores, the last one too. docs/python.md is the manual.
"""

import atexit

from . import _bodies, _errors, _library, _objects, _operations, _subclasses, _types
from ._bodies import Block
from ._errors import Exception
from ._objects import Object, as_object, send, send_super
from ._subclasses import Property as property
from ._subclasses import selector
from ._types import Out, Point, Pointer, Range, Rect, Size
from .testing import (
    advance, answer_alerts, answer_panels, beep_count, click, close_screen, drag, drag_to, keep_log, log_lines,
    move_pointer, open_screen, pixel, press, press_key, release, run_until_idle, screenshot, scroll,
    take_opened_urls, type_text, use_system_clock, use_virtual_clock)


class weak:
    """Knows an object without keeping it: `weak(view)()` is the object, or None once it has gone."""

    _word = None

    def __init__(self, object):
        if not isinstance(object, Object):
            raise TypeError(f"only an object can be known weakly, not {object!r}")
        self._word = _library.make_weak(object._ptr)

    def __call__(self):
        return _objects.wrap(_library.load_weak(self._word))

    def __del__(self):
        if self._word:
            _library.drop_weak(self._word)


def class_named(name):
    """The class of a name, or None."""
    return _objects.class_for(_library.class_named(name.encode()))


def class_names():
    """The names of all classes."""
    return _library.lines(_library.copy_class_names())


def function_names():
    """The names of all plain functions."""
    return _library.lines(_library.copy_function_names())


def __getattr__(name):
    if name[:2] != "__":
        found = class_named(name) or _operations.plain_function(name)
        if found is not None:
            globals()[name] = found
            return found
    raise AttributeError(f"brindle has no class or function {name}")


# What the runtime still calls while the interpreter ends finds nobody: it answers zero.
atexit.register(_library.close, 2.0)
