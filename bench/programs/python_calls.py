# SPDX-License-Identifier: Apache-2.0
"""Measures calls from Python beside a bare ctypes call of the very implementation; prints a line for each:
name, nanoseconds, nanoseconds of the floor. The two take turns."""

import ctypes
import statistics
import time
from ctypes import CFUNCTYPE

import brindle
from brindle import _library as library
from brindle import _types as types

BLOCKS, CALLS = 21, 4000


def bare(receiver, selector, *arguments):
    """The implementation as ctypes calls it, with arguments that are C values already."""
    encoding = library.method_types(library.class_of(receiver._ptr), library.selector_named(selector)).decode()
    parts = types.split(encoding)
    implementation = brindle.class_getMethodImplementation(type(receiver), selector.decode())
    native = CFUNCTYPE(*[types.ctype(part) for part in (parts[0], *parts[1:])])(int(implementation))
    number = library.selector_named(selector)
    pointer = receiver._ptr
    return lambda: native(pointer, number, *arguments)


def block(call):
    start = time.thread_time_ns()
    for _ in range(CALLS):
        call()
    return (time.thread_time_ns() - start) / CALLS


def row(name, ours, floor):
    for call in (ours, floor):
        block(call)
    pairs = [(block(ours), block(floor)) for _ in range(BLOCKS)]
    ratio = statistics.median(a / b for a, b in pairs)
    floor_time = statistics.median(b for _, b in pairs)
    print(f"{name}\t{ratio * floor_time:.1f}\t{floor_time:.1f}", flush=True)


def main():
    view = brindle.NSView.alloc().initWithFrame_((0, 0, 10, 10))
    row("no argument", lambda: view.isHidden(), bare(view, b"isHidden"))
    row("one number", lambda: view.setAlphaValue_(0.5), bare(view, b"setAlphaValue:", 0.5))
    text = brindle.as_object("some text")
    row("one string", lambda: text.isEqualToString_("other text"),
        bare(text, b"isEqualToString:", library.make_string(b"other text", 10)))
    fresh = [f"other text {i}" for i in range(200000)]
    row("one string, never seen before", lambda: text.isEqualToString_(fresh.pop()),
        bare(text, b"isEqualToString:", library.make_string(b"other text", 10)))
    rect = brindle.Rect(1, 2, 3, 4)
    native = types.structure("{CGRect={CGPoint=dd}{CGSize=dd}}").to_native(rect)
    row("one rectangle", lambda: view.setBounds_(rect), bare(view, b"setBounds:", native))
    make = brindle.NSObject.alloc
    row("make and free an object", lambda: make().init(), bare_making())
    print(f"memory\t{growth()}\t0")


def bare_making():
    """`alloc`, `init` and two releases, because both answer an owner."""
    pointer = brindle.NSObject._ptr
    kinds = ctypes.c_void_p, ctypes.c_void_p, ctypes.c_uint64
    numbers = [library.selector_named(name) for name in (b"alloc", b"init")]
    codes = [int(brindle.class_getMethodImplementation(brindle.objc_getClass("NSObject"), "init"))]
    metaclass_method = brindle.class_getClassMethod(brindle.NSObject, "alloc")
    codes.insert(0, int(brindle.method_getImplementation(metaclass_method)))
    alloc, init = [CFUNCTYPE(*kinds)(code) for code in codes]
    release = library.release

    def make():
        made = init(alloc(pointer, numbers[0]), numbers[1])
        release(made)
        release(made)

    return make


def resident():
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * 4096


def growth():
    """Bytes that 100,000 more objects leave behind."""
    def make(times):
        for _ in range(times):
            brindle.NSObject.alloc().init()

    make(100000)
    before = resident()
    make(100000)
    return max(0, resident() - before)


main()
