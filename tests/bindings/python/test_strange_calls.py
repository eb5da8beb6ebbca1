# SPDX-License-Identifier: Apache-2.0
"""Every operation of every class with arguments nobody would choose: it may raise, it may not end the process.

Each class has a process of its own, so that a failure names the call. Numbers in the environment change the run:
BRINDLE_STRANGE_SEED, BRINDLE_STRANGE_ROUNDS.
"""

import encodings.utf_16_le  # noqa: F401, the children may not find it
import mmap
import os
import random
import signal
import tempfile
import unittest

import brindle
from brindle import _library as library
from brindle import _objects as objects
from brindle import _types as types

SEED = os.environ.get("BRINDLE_STRANGE_SEED", "1")
ROUNDS = int(os.environ.get("BRINDLE_STRANGE_ROUNDS", "1"))
SECONDS = 10  # one call; far more than any needs

# These end, block or give up by their contract, or work as long as they are told to.
LEFT_OUT = {
    "dealloc", "release", "retain", "autorelease", "raise", "raise:format:", "doesNotRecognizeSelector:",
    "run", "main", "stop:", "exit", "terminate:", "abort", "wait", "advance:",
    "waitUntilFinished", "waitUntilAllOperationsAreFinished", "lock", "tryLock", "signal",
    "performSelectorInBackground:withObject:", "detachNewThreadSelector:toTarget:withObject:",
    "performSelector:onThread:withObject:waitUntilDone:",
    "performSelector:onThread:withObject:waitUntilDone:modes:",
    "nextEventMatchingMask:", "nextEventMatchingMask:untilDate:inMode:dequeue:", "indexesPassingTest:",
    "blockTimeout", "execute", "performWindowDragWithEvent:",
    "dataWithLength:", "initWithLength:", "setLength:", "increaseLengthBy:", "resetBytesInRange:",
    "replaceBytesInRange:withBytes:", "replaceBytesInRange:withBytes:length:",
}
LEFT_OUT_PARTS = ("runModal", "runUntil", "runMode", "sleep", "removeItem", "moveItem", "trashItem", "replaceItem")
# A job without work is run somewhere else, where the missing closure ends the process as documented.
LEFT_OUT_CLASSES = {"BRBlock", "BRBackgroundBlock", "BRFunctionBlock"}

INTEGERS = [0, 1, -1, 2, 3, 7, 100, 2**31 - 1, -2**31, 2**31, 2**32, 2**53, 2**62, 2**63 - 1, -2**63, 2**64 - 1]
NUMBERS = [0.0, -0.0, 1.0, -1.0, 0.5, 3.7, 100.0, 1e9, 1e19, 1e308, -1e308, 5e-324,
           float("nan"), float("inf"), -float("inf")]
TEXTS = ["", "abc", "é😀", "1 2 3", "%@ %d", "a.b.c", "#ff0000", "long " * 2000, "a\0b"]
SELECTORS = ["", "description", "frame", "setFrame:", "isEqual:", "nothingOfThatName:", "compare:", "drawRect:"]
C_TEXTS = [None, "", "abc", "v@:", "{", "T@,N", "é"]


def makers():
    """Ordinary objects of some classes; all others come from a bare init."""
    b = brindle
    signature = lambda: b.NSView.instanceMethodSignatureForSelector_("setFrame:")  # noqa: E731
    return {
        "NSString": lambda: b.as_object(random.choice(TEXTS)),
        "NSArray": lambda: b.as_object(random.choice([[1, 2], [], ["a", None, [1]], [b.NSView]])),
        "NSDictionary": lambda: b.as_object(random.choice([{"a": 1}, {}, {1: "x"}])),
        "NSNumber": lambda: b.as_object(random.choice([0, -5, 2.5, True, float("nan"), 2**63 - 1])),
        "NSData": lambda: b.as_object(random.choice([b"", b"ab", b"bplist00" + bytes(40)])),
        "NSDate": lambda: b.NSDate.dateWithTimeIntervalSince1970_(random.choice([0, 1e9, -1e12, 1e300])),
        "NSSet": lambda: b.as_object({1, "a"}),
        "NSColor": lambda: b.NSColor.redColor(),
        "NSFont": lambda: b.NSFont.systemFontOfSize_(12),
        "NSView": lambda: b.NSView.alloc().initWithFrame_((0, 0, 50, 50)),
        "NSWindow": lambda: b.NSWindow.alloc().initWithContentRect_styleMask_backing_defer_(
            (0, 0, 50, 50), 15, 2, False),
        "NSURL": lambda: b.NSURL.URLWithString_(random.choice(["http://a.b/c?d=e#f", "x:", "relative/x"])),
        "NSError": lambda: b.NSError.errorWithDomain_code_userInfo_("d", 5, random.choice([None, {"a": 1}])),
        "NSTimer": lambda: b.NSTimer.timerWithTimeInterval_repeats_block_(1, False, lambda timer: None),
        "NSException": lambda: b.NSException.exceptionWithName_reason_userInfo_("n", "r", None),
        "NSMethodSignature": signature,
        "NSInvocation": lambda: b.NSInvocation.invocationWithMethodSignature_(signature()),
        "NSScanner": lambda: b.NSScanner.scannerWithString_("12 ab"),
        "NSCharacterSet": lambda: b.NSCharacterSet.characterSetWithCharactersInString_("ab"),
        "NSValue": lambda: b.NSValue.valueWithPoint_((1, 2)),
        "NSIndexSet": lambda: b.NSIndexSet.indexSetWithIndex_(3),
    }


class Caller:
    """Calls what a class and its objects answer, in a process that may end."""

    def __init__(self, name, note):
        self.name, self.note = name, note
        self.makers = makers()

    def say(self, text):
        self.note.seek(0)
        self.note.write(text.encode("utf-8", "replace")[:4000] + b"\0")

    def instance(self, name):
        try:
            if name in self.makers and random.random() < 0.8:
                return self.makers[name]()
            return getattr(brindle, name).alloc().init()
        except brindle.Exception:  # a class that is made otherwise
            return None

    def number(self, kind):
        if kind in "df":
            return random.choice(NUMBERS)
        if kind == "B":
            return random.random() < 0.5
        low, high = types.integer_limits(kind)
        return random.choice([number for number in INTEGERS if low <= number <= high])

    def structure(self, encoding):
        inside = encoding[1:-1].partition("=")[2]
        return tuple(self.structure(part) if part[0] == "{" else self.number(part[0])
                     for part in types.split(inside))

    def argument(self, encoding, detail):
        kind = encoding[0]
        if encoding[:2] == "@?":
            return lambda *arguments: None
        if kind == "@" and random.random() < 0.2:
            return None
        if kind == "@" and detail:
            return self.instance(detail) if brindle.class_named(detail) else None
        if kind == "@":
            return self.instance(random.choice([*self.makers, "NSObject", "NSNull", "NSMutableArray"]))
        if kind == "{":
            return self.structure(encoding)
        if kind in "#:*":
            choices = {"#": [None, brindle.NSObject, brindle.NSView], ":": SELECTORS, "*": C_TEXTS}
            return random.choice(choices[kind])
        return None if kind == "^" else self.number(kind)

    def call(self, holder, target, selector):
        number = library.selector_named(selector.encode())
        encoding = library.method_types(holder, number).decode().replace("...", "")
        details = library.method_details(holder, number).decode().replace("...", "")
        self.say(f"{selector}, before the call")
        pairs = zip(types.split(encoding)[3:], types.split_details(details)[3:])
        arguments = [self.argument(part, detail) for part, detail in pairs]
        target = target or self.instance(self.name)
        if not isinstance(target, (objects.Object, objects.ClassType)):
            return
        self.say(f"{selector} ({encoding}) of {target!r} with {arguments!r}")
        signal.setitimer(signal.ITIMER_REAL, SECONDS)
        try:
            str(brindle.send(target, selector, *arguments))
        except (brindle.Exception, TypeError, ValueError, OverflowError, AttributeError):
            pass

    def run(self):
        random.seed(f"{SEED} {self.name}")
        brindle.keep_log()
        brindle.use_virtual_clock()
        brindle.open_screen(200, 100)
        brindle.take_opened_urls(lambda url: True)
        if self.name.startswith("AppSandbox"):  # it would wait for a user
            brindle.answer_panels(lambda panel: None)
        cls = getattr(brindle, self.name)
        for _ in range(ROUNDS):
            for holder, target in ((library.class_of(cls._ptr), cls), (cls._ptr, None)):
                for selector in operations(holder):
                    self.call(holder, target, selector)
            self.say("the run loop afterwards")
            try:
                brindle.run_until_idle()
            except brindle.Exception:
                pass


def operations(holder):
    """The selectors of a class and, but for the root's, of its ancestors."""
    found = {}
    own = holder
    while holder and (holder == own or library.class_name(holder) != b"NSObject"):
        found.update(dict.fromkeys(library.lines(library.copy_method_names(holder))))
        holder = library.superclass(holder)
    return [selector for selector in found if selector not in LEFT_OUT and selector[0] != "."
            and not any(part in selector for part in LEFT_OUT_PARTS)]


def outcome(name):
    """Runs the calls of a class in a process of their own; nothing, or how it ended and what was said last."""
    note = mmap.mmap(-1, 4096)
    child = os.fork()
    if child == 0:
        status = 70
        try:
            signal.signal(signal.SIGALRM, signal.SIG_DFL)
            Caller(name, note).run()
            status = 0
        except BaseException as error:
            note.seek(0)
            note.write(f"{type(error).__name__}: {error}".encode()[:4000] + b"\0")
        finally:
            os._exit(status)
    _, status = os.waitpid(child, 0)
    if status == 0:
        return None
    return f"{name}: {os.waitstatus_to_exitcode(status)} at {note[:].split(bytes(1))[0].decode(errors='replace')}"


class StrangeCalls(unittest.TestCase):
    def test_no_call_ends_the_process(self):
        with tempfile.TemporaryDirectory() as home:
            old, os.environ["HOME"] = os.environ.get("HOME", "/"), home
            os.chdir(home)
            try:
                names = [name for name in brindle.class_names() if name not in LEFT_OUT_CLASSES]
                failures = [failure for failure in map(outcome, names) if failure]
            finally:
                os.chdir("/")
                os.environ["HOME"] = old
        self.assertEqual(failures, [])


if __name__ == "__main__":
    unittest.main()
