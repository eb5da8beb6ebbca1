# SPDX-License-Identifier: Apache-2.0
"""Exceptions, in both directions."""

import builtins

from . import _library as library

_python_errors = {}  # pointer of an exception object: the Python exception it stands for
_forget_error = library.END(lambda pointer: _python_errors.pop(pointer, None) and None)

wrap_lent = None  # set by the module of objects


class Exception(builtins.Exception):
    """What the runtime raised: `name`, `reason`, and `object`, the exception itself."""

    def __init__(self, name="NSGenericException", reason="", object=None):
        super().__init__(name, reason)
        self.name = name
        self.reason = reason
        self.object = object

    def __str__(self):
        return f"{self.name}: {self.reason}"

    @property
    def userInfo(self):
        return self.object.userInfo() if self.object is not None else None


def check():
    """Raises what was kept for this thread, if anything was."""
    pointer = library.take_error()
    if pointer:
        raise_taken(pointer)


def raise_taken(pointer):
    """Raises an exception object that the caller owns."""
    original = _python_errors.get(pointer)
    if isinstance(original, (KeyboardInterrupt, SystemExit)):
        library.release(pointer)
        raise original
    exception = wrap_lent(pointer)
    library.release(pointer)
    name = str(exception.name() or "")
    reason = exception.reason()
    raise Exception(name, str("" if reason is None else reason), exception) from original


def raise_into(error):
    """Lets the body that runs on this thread raise a Python exception once it has returned."""
    if isinstance(error, Exception) and error.object is not None:
        library.raise_exception(error.object._ptr)
        return
    if isinstance(error, Exception):
        name, reason = error.name, error.reason
    else:
        name, reason = type(error).__name__, str(error)
    pointer = library.make_exception(_utf8(name), _utf8(reason))
    _python_errors[pointer] = error
    library.when_gone(pointer, _forget_error, pointer)
    library.raise_exception(pointer)
    library.release(pointer)


def _utf8(text):
    return text.replace("\0", " ").encode("utf-8", "replace")
