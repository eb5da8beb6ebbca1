#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A small application in Python: a window whose view draws a dot where it was clicked.

    python3 examples/python/clicks.py                      on the desktop
    python3 examples/python/clicks.py --headless out.png   in memory, with two clicks, as a picture
"""

import sys

import brindle


class Dots(brindle.NSView):
    """Draws a dot where it was clicked; a key forgets them all."""

    def initWithFrame_(self, frame):
        self = super().initWithFrame_(frame)
        self.places = []
        return self

    def acceptsFirstResponder(self):
        return True

    def drawRect_(self, dirty):
        brindle.NSColor.whiteColor().set()
        brindle.NSRectFill(self.bounds())
        brindle.NSColor.blueColor().set()
        for x, y in self.places:
            brindle.NSRectFill((x - 4, y - 4, 8, 8))

    def mouseDown_(self, event):
        self.places.append(self.convertPoint_fromView_(event.locationInWindow(), None))
        self.setNeedsDisplay_(True)

    def keyDown_(self, event):
        self.places.clear()
        self.setNeedsDisplay_(True)


class Delegate(brindle.NSObject):
    """Ends the application with its window."""

    def windowWillClose_(self, notification):
        brindle.NSApplication.sharedApplication().stop_(None)


def open_window():
    titled, closable, resizable, buffered = 1, 2, 8, 2
    window = brindle.NSWindow.alloc().initWithContentRect_styleMask_backing_defer_(
        (100, 100, 320, 200), titled | closable | resizable, buffered, False)
    window.setTitle_("Clicks")
    window.setReleasedWhenClosed_(False)
    view = Dots.alloc().initWithFrame_((0, 0, 320, 200))
    window.setContentView_(view)
    window.makeKeyAndOrderFront_(None)
    window.makeFirstResponder_(view)
    return window, view


def main(arguments):
    if arguments[:1] == ["--headless"]:
        brindle.open_screen(520, 400)
        window, view = open_window()
        brindle.run_until_idle()
        frame = window.frame()
        for x, y in ((60, 50), (200, 120)):
            brindle.click((frame.x + x, frame.y + y))
        print(f"{len(view.places)} dots")
        brindle.screenshot(arguments[1])
        return 0
    application = brindle.NSApplication.sharedApplication()
    window, _ = open_window()
    delegate = Delegate()
    window.setDelegate_(delegate)
    application.run()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
