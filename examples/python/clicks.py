#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A small application in Python: a menubar, and a window whose view draws a dot where it was clicked.

    python3 examples/python/clicks.py                      on the desktop
    python3 examples/python/clicks.py --headless out.png   in memory, with three clicks and a key, as a picture
"""

import sys

import brindle


COMMAND = 1 << 20


class Dots(brindle.NSView):
    """Draws a dot where it was clicked; the Edit menu takes dots back."""

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

    def takeBack_(self, sender):
        self.places.pop()
        self.setNeedsDisplay_(True)

    def clear_(self, sender):
        self.places.clear()
        self.setNeedsDisplay_(True)

    def validateMenuItem_(self, item):
        return bool(self.places)


class Delegate(brindle.NSObject):
    """Ends the application with its window."""

    def windowWillClose_(self, notification):
        brindle.NSApplication.sharedApplication().stop_(None)


def open_menubar(window, view):
    menus = {
        "File": [("Close", "performClose:", "w", window)],
        "Edit": [("Take Back", "takeBack:", "z", view), ("Clear", "clear:", "k", view)],
    }
    custom = 1
    bar = brindle.BRCustomMenubar.alloc().initWithMenubarTheme_(custom)
    bar.load()
    for title, items in menus.items():
        menu = brindle.NSMenu.alloc().initWithTitle_(title)
        for name, action, key, target in items:
            menu.addItemWithTitle_action_keyEquivalent_(name, action, key).setTarget_(target)
        button = brindle.BRCustomMenubarMenuButton.alloc().init()
        button.setTitle_(title)
        button.setMenu_(menu)
        button.sizeToFit()
        bar.addMenubarView_(button)


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
    application = brindle.BRApplication.sharedApplication()  # it offers keys to the menubar first
    if arguments[:1] == ["--headless"]:
        brindle.open_screen(520, 400)
        window, view = open_window()
        open_menubar(window, view)
        brindle.run_until_idle()
        frame = window.frame()
        for x, y in ((60, 50), (200, 120), (250, 60)):
            brindle.click((frame.x + x, frame.y + y))
        brindle.press_key("z", COMMAND)
        brindle.advance(1)  # the button of the menu has flashed
        print(f"{len(view.places)} dots")
        brindle.screenshot(arguments[1])
        return 0
    window, view = open_window()
    open_menubar(window, view)
    delegate = Delegate()
    window.setDelegate_(delegate)
    application.run()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
