# SPDX-License-Identifier: Apache-2.0
"""The shared library and its C functions, as platform/runtime/brindle.h declares them."""

import ctypes
import os
import pathlib
from ctypes import CFUNCTYPE, POINTER, c_char_p, c_double, c_int, c_size_t, c_uint64, c_void_p

_NAME = "libbrindle.so.1"


def _candidates():
    named = os.environ.get("BRINDLE_LIBRARY")
    if named:
        yield named
        return
    here = pathlib.Path(__file__).resolve()
    # Installed: <prefix>/lib/python3/dist-packages/brindle; in the tree: bindings/python/brindle.
    for folder in here.parents:
        if folder.name.startswith("lib"):
            yield from map(str, sorted([folder / _NAME, *folder.glob(f"*/{_NAME}")]))
    yield str(here.parents[3] / "build" / "release" / _NAME)
    yield _NAME


def _load():
    failure = None
    for path in _candidates():
        if "/" in path and not os.path.exists(path):
            failure = failure or OSError(f"there is no library {path}")
            continue
        return ctypes.CDLL(path)
    raise ImportError(f"brindle: {failure}; set BRINDLE_LIBRARY to the path of {_NAME}")


library = _load()


class Frame(ctypes.Structure):
    """What a body finds in place of its selector."""

    _fields_ = [("context", c_void_p), ("result", c_void_p), ("answered", c_int)]


class Call(ctypes.Structure):
    _fields_ = [("code", c_void_p), ("selector", c_uint64)]


END = CFUNCTYPE(None, c_void_p)
ADAPT = CFUNCTYPE(c_int, c_void_p, c_uint64, c_char_p)
REPORT = CFUNCTYPE(None, c_void_p)


def c_function(name, result, *arguments):
    """A function of the library with its types."""
    function = getattr(library, name)
    function.restype = result
    function.argtypes = arguments
    return function


def _f(name, result, *arguments):
    return c_function("brindle_" + name, result, *arguments)


class_named = _f("classNamed", c_void_p, c_char_p)
class_of = _f("classOf", c_void_p, c_void_p)
superclass = _f("superclass", c_void_p, c_void_p)
class_name = _f("className", c_char_p, c_void_p)
is_metaclass = _f("isMetaclass", c_int, c_void_p)
make_class = _f("makeClass", c_void_p, c_void_p, c_char_p)
add_field = _f("addField", c_int, c_void_p, c_char_p, c_char_p)
register_class = _f("registerClass", None, c_void_p)
adopt_protocol = _f("adoptProtocol", c_int, c_void_p, c_char_p)
field = _f("field", c_void_p, c_void_p, c_char_p)
object_field = _f("objectField", c_void_p, c_void_p, c_char_p)
set_object_field = _f("setObjectField", None, c_void_p, c_char_p, c_void_p)
selector_named = _f("selectorNamed", c_uint64, c_char_p)
selector_name = _f("selectorName", c_char_p, c_uint64)
method_types = _f("methodTypes", c_char_p, c_void_p, c_uint64)
method_details = _f("methodDetailedTypes", c_char_p, c_void_p, c_uint64)
message_types = _f("messageTypes", c_char_p, c_void_p, c_uint64)
copy_class_names = _f("copyClassNames", c_void_p)
copy_method_names = _f("copyMethodNames", c_void_p, c_void_p)
copy_properties = _f("copyProperties", c_void_p, c_void_p)
add_property = _f("addProperty", c_int, c_void_p, c_char_p, c_char_p)
retain = _f("retain", c_void_p, c_void_p)
release = _f("release", None, c_void_p)
make_weak = _f("makeWeak", c_void_p, c_void_p)
load_weak = _f("loadWeak", c_void_p, c_void_p)
drop_weak = _f("dropWeak", None, c_void_p)
when_gone = _f("whenGone", c_int, c_void_p, END, c_void_p)
free = _f("free", None, c_void_p)
make_string = _f("makeString", c_void_p, c_char_p, c_size_t)
make_call = _f("makeCall", c_void_p, c_char_p, c_char_p, c_void_p)
send = _f("send", c_void_p, c_void_p, c_uint64, c_char_p, POINTER(c_void_p), c_void_p)
take_error = _f("takeError", c_void_p)
error_count = c_int.from_address(_f("errorCount", c_void_p)())
make_exception = _f("makeException", c_void_p, c_char_p, c_char_p)
add_method = _f("addMethod", c_int, c_void_p, c_char_p, c_char_p, c_void_p, c_void_p)
set_adaptable = _f("setAdaptable", None, c_void_p, c_uint64)
set_adapter = _f("setAdapter", None, ADAPT)
make_closure = _f("makeClosure", c_void_p, c_char_p, c_void_p, c_void_p, END)
closure_types = _f("closureTypes", c_char_p, c_void_p)
run_closure = _f("runClosure", c_void_p, c_void_p, POINTER(c_void_p), c_void_p)
raise_exception = _f("raise", None, c_void_p)
set_reporter = _f("setReporter", None, REPORT)
close = _f("close", None, c_double)
function_named = _f("functionNamed", c_void_p, c_char_p, POINTER(c_char_p))
copy_function_names = _f("copyFunctionNames", c_void_p)
run_loop_until_idle = _f("runUntilIdle", c_int)
advance_loop = _f("advance", None, c_double)


def lines(pointer):
    """Takes over a text of lines."""
    text = ctypes.string_at(pointer).decode()
    free(pointer)
    return text.splitlines()
