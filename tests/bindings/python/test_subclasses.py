# SPDX-License-Identifier: Apache-2.0
"""Classes written in Python."""

import contextlib
import gc
import io
import unittest

import brindle


class Shape(brindle.NSObject):
    title = brindle.property(str, copy=True)
    weight = brindle.property(float)
    count = brindle.property("Q")
    frame = brindle.property("{CGRect={CGPoint=dd}{CGSize=dd}}")
    owner = brindle.property("@", readonly=True)

    def init(self):
        self = super().init()
        self.log = []
        return self

    def area(self):
        return 2

    def describe_with_(self, first, second):
        return f"{first}{second}"

    @brindle.selector("scaled:by:", "d@:dd")
    def scaled(self, value, factor):
        return value * factor

    @brindle.selector("corner", "{CGPoint=dd}@:")
    def corner(self):
        return 3, 4

    @brindle.selector("grown:", "{CGRect={CGPoint=dd}{CGSize=dd}}@:{CGRect={CGPoint=dd}{CGSize=dd}}")
    def grown(self, rect):
        return brindle.Rect(rect.x, rect.y, rect.width + 1, rect.height + 1)

    @brindle.selector("cSound", "*@:")
    def cSound(self):
        return "moo"

    def acted_(self, sender):
        self.log.append(sender)

    def fail(self):
        raise ValueError("no good")


class Square(Shape):
    def area(self):
        return super().area() + 10

    def description(self):
        return "square of " + super().description()[:6]


class Subclasses(unittest.TestCase):
    def test_an_override_is_what_the_runtime_calls(self):
        class View(brindle.NSView):
            def isFlipped(self):
                return True

        view = View.alloc().initWithFrame_((0, 0, 10, 10))
        self.assertTrue(view.isFlipped())
        self.assertTrue(brindle.send(view, "isFlipped"))
        self.assertFalse(brindle.NSView.alloc().init().isFlipped())

    def test_super_reaches_the_parents_operation(self):
        self.assertEqual(Square().area(), 12)
        self.assertEqual(brindle.send(Square(), "area"), 12)
        self.assertEqual(brindle.send(Square(), "description"), "square of <Squar")
        self.assertTrue(brindle.NSObject.alloc().init().description().startswith("<NSObject"))

    def test_super_reaches_what_is_not_overridden(self):
        class View(brindle.NSView):
            def isHidden(self):
                return not super().isFlipped()

        self.assertTrue(brindle.send(View(), "isHidden"))

    def test_a_class_operation_can_be_overridden_with_super(self):
        class Special(brindle.NSObject):
            @classmethod
            def description(cls):
                return "special"

            @classmethod
            def alloc(cls):
                made = super().alloc()
                allocated.append(cls)
                return made

        allocated = []
        self.assertEqual(brindle.send(Special, "description"), "special")
        self.assertIsInstance(brindle.send(Special, "new"), Special)
        self.assertEqual(allocated, [Special])

    def test_structures_are_answered_and_taken(self):
        shape = Shape()
        self.assertEqual(brindle.send(shape, "corner"), brindle.Point(3, 4))
        self.assertEqual(brindle.send(shape, "grown:", (1, 2, 3, 4)), ((1, 2), (4, 5)))
        self.assertEqual(brindle.send(shape, "scaled:by:", 2, 3), 6.0)
        self.assertEqual(brindle.send(shape, "cSound"), "moo")

    def test_properties_have_accessors_and_begin_as_zero(self):
        shape = Shape()
        self.assertIsNone(shape.title())
        self.assertEqual((shape.weight(), shape.count()), (0.0, 0))
        shape.setTitle_("lamp")
        shape.setWeight_(2)
        shape.setFrame_((1, 2, 3, 4))
        self.assertEqual((shape.title(), shape.weight(), shape.frame()), ("lamp", 2.0, ((1, 2), (3, 4))))
        self.assertFalse(hasattr(shape, "setOwner_"))

    def test_properties_are_known_to_introspection(self):
        attributes = brindle.property_getAttributes(brindle.class_getProperty(Shape, "title"))
        self.assertEqual(attributes, 'T@"NSString",C,N,V_title')

    def test_properties_are_known_to_key_value_access(self):
        shape = Shape()
        shape.setValue_forKey_("by key", "title")
        self.assertEqual(shape.valueForKey_("title"), "by key")
        shape.setValue_forKey_(2.5, "weight")
        self.assertEqual(shape.weight(), 2.5)

    def test_properties_are_archived_like_any_other(self):
        shape = Shape()
        shape.setTitle_("kept")
        shape.setWeight_(2.5)
        data = brindle.NSKeyedArchiver.archivedDataWithRootObject_(shape)
        again = brindle.NSKeyedUnarchiver.unarchiveObjectWithData_(data)
        self.assertIsInstance(again, Shape)
        self.assertIsNot(again, shape)
        self.assertEqual((again.title(), again.weight()), ("kept", 2.5))

    def test_a_copied_property_copies(self):
        shape = Shape()
        text = brindle.NSMutableString.stringWithString_("a")
        shape.setTitle_(text)
        text.appendString_("b")
        self.assertEqual(shape.title(), "a")

    def test_an_action_needs_no_types(self):
        shape = Shape()
        shape.performSelector_withObject_("acted:", "sender")
        self.assertEqual(shape.log, ["sender"])
        self.assertTrue(shape.respondsToSelector_("acted:"))

    def test_a_delegate_gets_the_types_of_the_first_message(self):
        class Delegate(brindle.NSObject):
            asked = 0

            def windowShouldClose_(self, window):
                Delegate.asked += 1
                return False

        brindle.open_screen(200, 100)
        try:
            window = brindle.NSWindow.alloc().initWithContentRect_styleMask_backing_defer_(
                (0, 0, 50, 50), 3, 2, False)
            delegate = Delegate()
            window.setDelegate_(delegate)
            window.orderFront_(None)
            window.performClose_(None)
            self.assertEqual(Delegate.asked, 1)
            self.assertTrue(window.isVisible())
            window.setDelegate_(None)
            window.close()
        finally:
            brindle.close_screen()

    def test_what_python_stores_lives_as_long_as_the_object(self):
        array = brindle.NSMutableArray.array()
        shape = Shape()
        shape.note = "kept"
        array.addObject_(shape)
        del shape
        gc.collect()
        self.assertEqual(array[0].note, "kept")

    def test_an_object_is_the_same_python_object_while_that_lives(self):
        shape = Shape()
        self.assertIs(brindle.NSArray.arrayWithObject_(shape)[0], shape)

    def test_an_object_ends_with_its_last_owner_and_deallocs_once(self):
        ended = []

        class Ending(brindle.NSObject):
            def dealloc(self):
                ended.append(self.name)

        made = Ending()
        made.name = "one"
        array = brindle.NSMutableArray.arrayWithObject_(made)
        word = brindle.weak(made)
        del made
        gc.collect()
        self.assertEqual(ended, [])
        self.assertEqual(word().name, "one")
        array.removeAllObjects()
        gc.collect()
        self.assertEqual(ended, ["one"])
        self.assertIsNone(word())

    def test_a_dealloc_that_raises_is_reported(self):
        class Failing(brindle.NSObject):
            def dealloc(self):
                kept.append(self)
                raise ValueError("in dealloc")

        kept = []
        report = io.StringIO()
        with contextlib.redirect_stderr(report):
            Failing()
            gc.collect()
        self.assertIn("in dealloc", report.getvalue())
        self.assertEqual(kept[0]._ptr, 0)

    def test_an_exception_passes_through_both_languages(self):
        with self.assertRaises(brindle.Exception) as caught:
            brindle.send(Shape(), "fail")
        self.assertEqual((caught.exception.name, caught.exception.reason), ("ValueError", "no good"))
        self.assertIsInstance(caught.exception.__cause__, ValueError)

    def test_a_wrong_answer_is_an_exception(self):
        class Wrong(brindle.NSView):
            def isFlipped(self):
                return "yes"

            def frame(self):
                return 5

            def tag(self):
                return 1.5

        view = Wrong()
        for selector in ("isFlipped", "frame"):
            with self.assertRaises(brindle.Exception) as caught:
                brindle.send(view, selector)
            self.assertEqual(caught.exception.name, "TypeError")

    def test_an_address_is_answered_where_it_stays_good(self):
        class Memory(brindle.NSObject):
            @brindle.selector("place", "^d@:")
            def place(self):
                return brindle.Pointer(4096)

            @brindle.selector("lost", "^v@:")
            def lost(self):
                return b"gone as soon as this returns"

        self.assertEqual(brindle.send(Memory(), "place").address, 4096)
        with self.assertRaises(brindle.Exception) as caught:
            brindle.send(Memory(), "lost")
        self.assertEqual(caught.exception.name, "TypeError")

    def test_system_exit_leaves_as_itself(self):
        class Leaving(brindle.NSObject):
            def leave(self):
                raise SystemExit(3)

        with self.assertRaises(SystemExit):
            brindle.send(Leaving(), "leave")

    def test_a_method_of_a_wrong_arity_is_refused_when_the_class_is_made(self):
        with self.assertRaisesRegex(TypeError, "setFrame"):
            class Bad(brindle.NSView):
                def setFrame_(self):
                    pass

    def test_a_name_that_is_taken_gets_a_number(self):
        first = type(brindle.NSObject)("Twice", (brindle.NSObject,), {})
        second = type(brindle.NSObject)("Twice", (brindle.NSObject,), {})
        self.assertEqual(brindle.NSStringFromClass(first), "Twice")
        self.assertEqual(brindle.NSStringFromClass(second), "Twice_2")

    def test_python_methods_stay_pythons(self):
        class Plain(brindle.NSObject):
            def helper_of_mine(self, a, b=1, *rest):
                return object

        self.assertIs(Plain().helper_of_mine(1), object)
        self.assertFalse(Plain().respondsToSelector_("helper_of_mine"))

    def test_methods_can_be_exchanged(self):
        class Exchanged(brindle.NSObject):
            def one(self):
                return "one"

            def two(self):
                return "two"

        self.assertTrue(brindle.XUISwizzleMethod(Exchanged, ord("-"), "one", "two"))
        self.assertEqual(brindle.send(Exchanged(), "one"), "two")
        self.assertEqual(brindle.send(Exchanged(), "two"), "one")

    def test_an_init_of_python_takes_arguments(self):
        class Named(brindle.NSObject):
            def __init__(self, name):
                self.name = name

        self.assertEqual(Named("a").name, "a")
        with self.assertRaises(TypeError):
            brindle.NSObject("a")


class ExactNames(unittest.TestCase):
    def test_a_selector_that_is_spelt_like_the_name_wins(self):
        class Coded(brindle.NSObject):
            @brindle.selector("code:", "@@:@")
            def with_colon(self, value):
                return "colon"

            @brindle.selector("code_", "@@:")
            def without(self):
                return "underscore"

        coded = Coded()
        self.assertEqual(coded.code_(), "underscore")
        self.assertEqual(brindle.send(coded, "code:", 1), "colon")


if __name__ == "__main__":
    unittest.main()
