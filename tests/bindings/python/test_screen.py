# SPDX-License-Identifier: Apache-2.0
"""The seams for tests: screen, hands, clock and log."""

import subprocess
import sys
import unittest

import brindle


class Canvas(brindle.NSView):
    def initWithFrame_(self, frame):
        self = super().initWithFrame_(frame)
        self.clicks = []
        self.keys = ""
        return self

    def acceptsFirstResponder(self):
        return True

    def drawRect_(self, dirty):
        brindle.NSColor.redColor().set()
        brindle.NSRectFill(self.bounds())

    def mouseDown_(self, event):
        self.clicks.append(self.convertPoint_fromView_(event.locationInWindow(), None))

    def keyDown_(self, event):
        self.keys += event.characters()


class Failing(brindle.NSView):
    def drawRect_(self, dirty):
        raise ValueError("cannot draw")


class Screen(unittest.TestCase):
    def setUp(self):
        brindle.open_screen(200, 100)
        self.window = brindle.NSWindow.alloc().initWithContentRect_styleMask_backing_defer_(
            (0, 0, 200, 100), 0, 2, False)

    def tearDown(self):
        self.window.close()
        brindle.close_screen()

    def show(self, kind):
        view = kind.alloc().initWithFrame_((20, 10, 50, 40))
        self.window.contentView().addSubview_(view)
        self.window.makeKeyAndOrderFront_(None)
        self.window.makeFirstResponder_(view)
        return view

    def test_a_view_of_python_draws(self):
        self.show(Canvas)
        brindle.run_until_idle()
        self.assertEqual(brindle.pixel(45, 70)[:3], (255, 0, 0))
        self.assertNotEqual(brindle.pixel(5, 5)[:3], (255, 0, 0))

    def test_a_view_of_python_takes_clicks(self):
        view = self.show(Canvas)
        brindle.click((30, 30))
        self.assertEqual(view.clicks, [brindle.Point(10, 20)])

    def test_a_view_of_python_takes_keys(self):
        titled = 1  # others do not become key
        self.window.setStyleMask_(titled)
        view = self.show(Canvas)
        brindle.run_until_idle()
        brindle.type_text("grün")
        self.assertEqual(view.keys, "grün")

    def test_an_exception_while_drawing_leaves_the_loop(self):
        with self.assertRaises(brindle.Exception) as caught:
            self.show(Failing)
        self.assertEqual(caught.exception.reason, "cannot draw")
        self.window.contentView().subviews()[0].removeFromSuperview()
        self.show(Canvas)
        brindle.run_until_idle()
        self.assertEqual(brindle.pixel(45, 70)[:3], (255, 0, 0))

    def test_a_screenshot_is_a_picture(self):
        self.show(Canvas)
        self.assertEqual(brindle.screenshot()[:8], b"\x89PNG\r\n\x1a\n")

    def test_without_a_screen_there_is_no_picture(self):
        brindle.close_screen()
        self.assertIsNone(brindle.screenshot())
        self.assertEqual(brindle.pixel(0, 0), (0, 0, 0, 0))


class Log(unittest.TestCase):
    def test_lines_are_kept(self):
        brindle.keep_log()
        try:
            brindle.NSLog("one")
            brindle.NSLog("two %@")
            self.assertEqual(brindle.log_lines(), ["one", "two %@"])
            self.assertEqual(brindle.log_lines(), [])
        finally:
            brindle.keep_log(False)

    def test_beeps_are_counted(self):
        before = brindle.beep_count()
        brindle.NSBeep()
        self.assertEqual(brindle.beep_count(), before + 1)


class Clock(unittest.TestCase):
    def setUp(self):
        brindle.use_virtual_clock()
        self.addCleanup(brindle.use_system_clock)

    def test_a_virtual_clock_is_turned_by_hand(self):
        before = brindle.NSDate.date()
        brindle.advance(3600)
        self.assertEqual((brindle.NSDate.date() - before).total_seconds(), 3600)


class Application(unittest.TestCase):
    def test_a_screen_leaves_the_class_of_the_application_open(self):
        program = """
import brindle
class App(brindle.NSApplication):
    pass
brindle.open_screen()
window = brindle.NSWindow.alloc().initWithContentRect_styleMask_backing_defer_((0, 0, 9, 9), 0, 2, False)
window.makeKeyAndOrderFront_(None)
app = App.sharedApplication()
print(isinstance(app, App), app == brindle.NSApplication.sharedApplication(), app.isActive(), app.keyWindow() == window)
app.finishLaunching()
print(brindle.NSApplication.sharedApplication() == app)
"""
        run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=60)
        self.assertEqual(run.stdout, "True True True True\nTrue\n", run.stderr)


if __name__ == "__main__":
    unittest.main()
