# SPDX-License-Identifier: Apache-2.0
"""The seams for tests: the run loop by hand, the clock, the log, a screen in memory with a user's hands."""

from . import _errors as errors
from . import _library as library
from . import _objects as objects
from . import _operations as operations

_functions = {}


def _call(name, *arguments):
    function = _functions.get(name)
    if function is None:
        function = _functions[name] = operations.plain_function("brindle" + name)
    return function(*arguments)


def _application():
    return objects.class_for(library.class_named(b"NSApplication")).sharedApplication()


# ---- run loop and clock


def run_until_idle():
    """Runs what is due now, events and drawing included, without waiting. Answers whether anything ran."""
    ran = bool(library.run_loop_until_idle())
    errors.check()
    if _call("IsScreenOpen"):
        _application().processEvents()
    return ran


def use_virtual_clock():
    """Stops the clock of the process at the start of 2026; `advance` turns it."""
    _call("UseVirtualClock", True)


def use_system_clock():
    _call("UseVirtualClock", False)


def advance(seconds):
    """Runs the loop for so long: a virtual clock is turned, from one due moment to the next; nothing sleeps then."""
    library.advance_loop(seconds)
    errors.check()
    if _call("IsScreenOpen"):
        _application().processEvents()


# ---- the log

_log = []


def keep_log(keep=True):
    """Keeps what is logged for `log_lines`, instead of writing it to standard error."""
    _call("SetLogSink", (lambda text: _log.append(str(text))) if keep else None)
    _log.clear()


def log_lines():
    """What has been logged since `keep_log` or since this was asked last."""
    lines = list(_log)
    del _log[:len(lines)]
    return lines


def beep_count():
    """How often the bell was asked for."""
    return _call("BeepCount")


# ---- somebody in place of the person and the desktop


def answer_alerts(person):
    """Asks a callable instead of showing alerts: it is called with the alert and answers its code. None ends that."""
    _call("AnswerAlerts", person)


def answer_panels(person):
    """Asks a callable instead of showing open and save panels: it is called with the panel and answers a list of
    URLs, or None to cancel. None in place of the callable ends that."""
    _call("AnswerPanels", person)


def take_opened_urls(desktop):
    """Hands URLs that are to be opened to a callable, which answers whether it takes them, instead of the desktop."""
    _call("TakeOpenedURLs", desktop)


# ---- a screen in memory


def open_screen(width=400, height=300, scale=1):
    """Shows the application on a screen in memory. The clock becomes virtual."""
    _call("OpenScreen", width, height, scale)


def close_screen():
    _call("CloseScreen")




def move_pointer(place):
    """Moves the pointer; places are in points from the bottom left of the screen."""
    _call("MovePointer", place)
    run_until_idle()


def press(place, button=0):
    """Presses a button. What follows is sent together with the release, for controls that track the pointer."""
    _call("MovePointer", place)
    _call("PressButton", button)


def drag_to(place):
    """Moves the pointer while a button is down."""
    _call("MovePointer", place)


def release(button=0):
    _call("ReleaseButton", button)
    run_until_idle()


def click(place, count=1, button=0):
    _call("Click", place, count, button)
    run_until_idle()


def drag(start, end, steps=1, button=0):
    _call("Drag", start, end, steps, button)
    run_until_idle()


def scroll(x, y, precise=False):
    _call("Scroll", x, y, precise)
    run_until_idle()


def type_text(text):
    """Types into the key window."""
    _call("TypeText", text)
    run_until_idle()


def press_key(characters, modifiers=0):
    """Presses and releases one key while modifiers are down."""
    _call("PressKey", characters, modifiers)
    run_until_idle()


def screenshot(path=None):
    """Draws what is due and answers the screen as PNG; with a path it is written there."""
    run_until_idle()
    picture = _call("Screenshot")
    if path is not None and picture is not None:
        with open(path, "wb") as file:
            file.write(picture)
    return picture


def pixel(x, y):
    """One pixel of the screen, counted from the top left: red, green, blue and alpha of 0 to 255."""
    word = _call("PixelAt", x, y)
    return (word >> 16) & 255, (word >> 8) & 255, word & 255, word >> 24
