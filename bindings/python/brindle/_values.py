# SPDX-License-Identifier: Apache-2.0
"""Strings, numbers, data, dates and collections in both languages.

What the runtime answers as an immutable value arrives as a Python value that still answers messages:
`brindle.NSString.stringWithString_("a").uppercaseString()`. Mutable ones stay objects.
"""

import ctypes
import datetime
from ctypes import c_void_p

from . import _library as library

# Set by the module of objects: how a value answers messages, and prepared messages.
ask = None
message = None

_REFERENCE = datetime.datetime(2001, 1, 1, tzinfo=datetime.timezone.utc)


def _not_private(name):
    if name[:2] == "__":
        raise AttributeError(name)
    return name


class String(str):
    __slots__ = ()

    def __getattr__(self, name):
        return ask(self, _not_private(name))


class Integer(int):
    __slots__ = ()

    def __getattr__(self, name):
        return ask(self, _not_private(name))


class Float(float):
    __slots__ = ()

    def __getattr__(self, name):
        return ask(self, _not_private(name))


class Data(bytes):
    def __getattr__(self, name):
        return ask(self, _not_private(name))


class Date(datetime.datetime):
    """A date in UTC. `seconds` are those since 2001, to the last bit."""

    def __getattr__(self, name):
        return ask(self, _not_private(name))


class List(list):
    def __getattr__(self, name):
        return ask(self, _not_private(name))

    def count(self, *value):
        """The number of items; with a value how often it occurs."""
        return super().count(*value) if value else len(self)


class Dict(dict):
    def __getattr__(self, name):
        return ask(self, _not_private(name))


class Set(set):
    def __getattr__(self, name):
        return ask(self, _not_private(name))


# ---- to the runtime: every function answers an owner

_small_strings = {}  # short texts that were arguments, kept for the next time


def string_to_native(text):
    try:
        raw = text.encode()
    except UnicodeEncodeError:  # lone surrogates are characters to the runtime
        raw = text.encode("utf-16-le", "surrogatepass")
        fresh = message("NSString", "alloc")()
        return message(None, "initWithCharacters:length:", "NSString")(fresh, raw, len(raw) // 2)
    return library.make_string(raw, len(raw))


def _number(value):
    if value is True or value is False:
        return message("NSNumber", "numberWithBool:")(value)
    if isinstance(value, int):
        if value < 1 << 63:
            if value < -(1 << 63):
                raise OverflowError(f"{value} does not fit a number of 64 bits")
            return message("NSNumber", "numberWithLongLong:")(int(value))
        if value >= 1 << 64:
            raise OverflowError(f"{value} does not fit a number of 64 bits")
        return message("NSNumber", "numberWithUnsignedLongLong:")(int(value))
    return message("NSNumber", "numberWithDouble:")(float(value))


def _data(value):
    raw = bytes(value)
    return message("NSData", "dataWithBytes:length:")(raw, len(raw))


def date_seconds(value):
    seconds = value.__dict__.get("seconds") if isinstance(value, Date) else None
    if seconds is not None:
        return seconds
    if value.tzinfo is None:
        value = value.astimezone(datetime.timezone.utc)
    return (value - _REFERENCE).total_seconds()


def _date(value):
    return message("NSDate", "dateWithTimeIntervalSinceReferenceDate:")(date_seconds(value))


class _Owned:
    """Pointers of new objects as a C array, released together."""

    def __init__(self, values):
        self.pointers = []
        try:
            for value in values:
                self.pointers.append(own(value) if value is not None else null())
        except BaseException:
            self.release()
            raise

    def array(self):
        return (c_void_p * max(1, len(self.pointers)))(*self.pointers)

    def release(self):
        for pointer in self.pointers:
            library.release(pointer)
        self.pointers = []


def null():
    return message("NSNull", "null")()


def _list(values):
    owned = _Owned(values)
    try:
        return message("NSArray", "arrayWithObjects:count:")(owned.array(), len(owned.pointers))
    finally:
        owned.release()


def _dict(values):
    keys = _Owned(values.keys())
    try:
        objects = _Owned(values.values())
        try:
            return message("NSDictionary", "dictionaryWithObjects:forKeys:count:")(
                objects.array(), keys.array(), len(keys.pointers))
        finally:
            objects.release()
    finally:
        keys.release()


def _set(values):
    items = _list(list(values))
    try:
        return message("NSSet", "setWithArray:")(items)
    finally:
        library.release(items)


_TO_NATIVE = {
    str: string_to_native, bool: _number, int: _number, float: _number, bytes: _data,
    bytearray: _data, memoryview: _data, datetime.datetime: _date, list: _list, tuple: _list,
    dict: _dict, set: _set, frozenset: _set,
}


def converter(kind):
    """How values of a Python class become objects; None when they do not."""
    found = _TO_NATIVE.get(kind)
    if found is None:
        for base in kind.__mro__[1:]:
            found = _TO_NATIVE.get(base)
            if found is not None:
                _TO_NATIVE[kind] = found
                break
    return found


own = None  # any value as an owner; set by the module of objects


# ---- from the runtime: every function takes the pointer over

def _from_string(pointer):
    try:
        return String(string_text(pointer))
    finally:
        library.release(pointer)


def string_text(pointer):
    """The text of a string object, lent."""
    length = message(None, "length", "NSString")(pointer)
    if not length:
        return ""
    units = (ctypes.c_uint16 * length)()
    message(None, "getCharacters:range:", "NSString")(pointer, units, (0, length))
    return bytes(units).decode("utf-16-le", "surrogatepass")


def _from_number(pointer):
    try:
        kind = message(None, "objCType", "NSNumber")(pointer)
        if kind in (b"B", b"c"):
            value = message(None, "intValue", "NSNumber")(pointer)
            if value in (0, 1):
                return bool(value)
            return Integer(value)
        if kind in (b"d", b"f"):
            return Float(message(None, "doubleValue", "NSNumber")(pointer))
        if kind == b"Q":
            return Integer(message(None, "unsignedLongLongValue", "NSNumber")(pointer))
        return Integer(message(None, "longLongValue", "NSNumber")(pointer))
    finally:
        library.release(pointer)


def _from_data(pointer):
    try:
        length = message(None, "length", "NSData")(pointer)
        return Data(ctypes.string_at(message(None, "bytes", "NSData")(pointer), length) if length else b"")
    finally:
        library.release(pointer)


def date_from_seconds(seconds):
    moment = _REFERENCE + datetime.timedelta(seconds=seconds)
    date = Date.fromtimestamp(0, datetime.timezone.utc).replace(
        moment.year, moment.month, moment.day, moment.hour, moment.minute, moment.second,
        moment.microsecond)
    date.seconds = seconds
    return date


def _from_date(pointer):
    seconds = message(None, "timeIntervalSinceReferenceDate", "NSDate")(pointer)
    try:
        date = date_from_seconds(seconds)
    except (OverflowError, ValueError):  # outside the years 1 to 9999, or no number
        return None, pointer
    library.release(pointer)
    return date, None


def _items(pointer):
    at = message(None, "objectAtIndex:", "NSArray")
    return [item(at(pointer, i)) for i in range(message(None, "count", "NSArray")(pointer))]


def _from_list(pointer):
    try:
        return List(_items(pointer))
    finally:
        library.release(pointer)


def _from_set(pointer):
    try:
        return Set(_from_list(message(None, "allObjects", "NSSet")(pointer)))
    finally:
        library.release(pointer)


def _from_dict(pointer):
    try:
        keys = message(None, "allKeys", "NSDictionary")(pointer)
        try:
            at = message(None, "objectAtIndex:", "NSArray")
            value_of = message(None, "objectForKey:", "NSDictionary")
            found = Dict()
            for i in range(message(None, "count", "NSArray")(keys)):
                key = at(keys, i)
                value = item(value_of(pointer, key))
                found[item(key)] = value
            return found
        finally:
            library.release(keys)
    finally:
        library.release(pointer)


item = None  # an object of a collection as a Python value; set by the module of objects

# Class, its mutable subclass, and how an object becomes a value.
FROM_NATIVE = [
    ("NSString", "NSMutableString", _from_string),
    ("NSNumber", None, _from_number),
    ("NSData", "NSMutableData", _from_data),
    ("NSDate", None, _from_date),
    ("NSArray", "NSMutableArray", _from_list),
    ("NSDictionary", "NSMutableDictionary", _from_dict),
    ("NSSet", "NSMutableSet", _from_set),
]
