# SPDX-License-Identifier: Apache-2.0
"""Operations, their names, their arguments, and what is said of wrong ones."""

import ctypes
import unittest

import brindle


class Messages(unittest.TestCase):
    def setUp(self):
        self.view = brindle.NSView.alloc().initWithFrame_((0, 0, 10, 20))

    def test_class_operations_are_found_on_the_class(self):
        self.assertEqual(brindle.NSString.stringWithString_("a"), "a")
        self.assertEqual(brindle.NSView.description(), "NSView")
        self.assertTrue(brindle.NSView.instancesRespondToSelector_("frame"))

    def test_a_class_and_its_objects_may_share_a_name(self):
        self.assertTrue(self.view.description().startswith("<NSView"))
        self.assertEqual(brindle.NSView.description(), "NSView")
        self.assertTrue(self.view.description().startswith("<NSView"))

    def test_send_is_exact(self):
        brindle.send(self.view, "setFrame:", (1, 2, 3, 4))
        self.assertEqual(brindle.send(self.view, "frame"), ((1, 2), (3, 4)))
        self.assertEqual(brindle.send("abc", "uppercaseString"), "ABC")
        self.assertIsNone(brindle.send(None, "frame"))

    def test_a_keyword_gets_an_underscore(self):
        self.assertIs(self.view.class_(), brindle.NSView)

    def test_too_few_and_too_many_arguments_name_selector_and_types(self):
        for arguments in ((), ((0, 0, 1, 1), 2)):
            with self.assertRaisesRegex(TypeError, r"setFrame:.*v@:\{CGRect"):
                self.view.setFrame_(*arguments)

    def test_a_wrong_argument_names_selector_and_types(self):
        for wrong in (None, "text", 5, (1, 2, 3), (1, 2, 3, "4"), self.view):
            with self.assertRaisesRegex(TypeError, r"setFrame:.*v@:\{CGRect"):
                self.view.setFrame_(wrong)

    def test_a_list_of_other_things_is_no_address(self):
        black = brindle.NSColor.rgbBlack()
        for wrong in (["a", 1, 1, 1], [None] * 4, [black] * 4, "text", 0.5):
            with self.assertRaisesRegex(TypeError, r"blendingAmounts:.*\^d"):
                black.colorWithRGBBlendFrom_blendingAmounts_(black, wrong)

    def test_an_object_of_a_wrong_class_is_refused(self):
        for wrong in ("text", 3.5, [1], brindle.NSWindow.alloc(), brindle.NSView, object()):
            with self.assertRaisesRegex(TypeError, "addSubview:"):
                self.view.addSubview_(wrong)

    def test_none_is_nil(self):
        self.assertFalse(self.view.isEqual_(None))

    def test_booleans_are_only_booleans(self):
        self.view.setHidden_(True)
        self.assertIs(self.view.isHidden(), True)
        self.view.setHidden_(0)
        self.assertIs(self.view.isHidden(), False)
        with self.assertRaisesRegex(TypeError, "setHidden:"):
            self.view.setHidden_("yes")

    def test_integers_do_not_wrap(self):
        array = brindle.NSMutableArray.array()
        with self.assertRaises(OverflowError):
            array.objectAtIndex_(2**70)
        with self.assertRaisesRegex(TypeError, "objectAtIndex:"):
            array.objectAtIndex_(1.5)

    def test_what_nobody_answers_is_an_attribute_error(self):
        with self.assertRaisesRegex(AttributeError, "fly"):
            self.view.fly()
        with self.assertRaisesRegex(AttributeError, "fly"):
            brindle.NSView.fly()
        with self.assertRaises(AttributeError):
            brindle.NSNothingAtAll

    def test_an_exact_message_nobody_answers_is_the_runtimes_exception(self):
        with self.assertRaises(brindle.Exception) as caught:
            brindle.send(self.view, "fly:", 1)
        self.assertEqual(caught.exception.name, "NSInvalidArgumentException")
        self.assertIn("unrecognized selector", caught.exception.reason)

    def test_exceptions_carry_name_and_reason(self):
        with self.assertRaises(brindle.Exception) as caught:
            brindle.NSMutableArray.array().objectAtIndex_(3)
        self.assertEqual(caught.exception.name, "NSRangeException")
        self.assertIsInstance(caught.exception.object, brindle.NSException)

    def test_an_exception_can_be_raised_by_hand(self):
        exception = brindle.NSException.exceptionWithName_reason_userInfo_("Name", "why", {"a": 1})
        with self.assertRaises(brindle.Exception) as caught:
            exception.raise_()
        self.assertEqual((caught.exception.name, caught.exception.reason), ("Name", "why"))
        self.assertEqual(caught.exception.userInfo, {"a": 1})

    def test_selectors_are_text(self):
        self.assertTrue(self.view.respondsToSelector_("setFrame:"))
        self.assertFalse(self.view.respondsToSelector_("setFrame"))
        with self.assertRaisesRegex(TypeError, "respondsToSelector:"):
            self.view.respondsToSelector_(5)

    def test_c_strings_are_text(self):
        self.assertEqual(brindle.as_object("grün").UTF8String(), "grün")
        self.assertEqual(brindle.NSString.stringWithUTF8String_("grün"), "grün")
        with self.assertRaises(ValueError):
            brindle.NSString.stringWithUTF8String_("a\0b")

    def test_buffers_are_addresses(self):
        data = brindle.as_object(b"hello")
        room = bytearray(5)
        data.getBytes_length_(room, 5)
        self.assertEqual(bytes(room), b"hello")
        units = (ctypes.c_uint16 * 2)()
        brindle.as_object("hi").getCharacters_range_(units, (0, 2))
        self.assertEqual(list(units), [104, 105])

    def test_a_format_says_what_it_reads(self):
        make = brindle.NSString.stringWithFormat_
        self.assertEqual(make("%@ is %d of %5.2f%%", "a", 7, 2.5), "a is 7 of  2.50%")
        self.assertEqual(make("%2$@ %1$@", "a", "b"), "b a")
        self.assertEqual(make("%*d|%s|%c", 4, 7, "c", 65), "   7|c|A")
        self.assertEqual(make("%f %f %f %f %f %f %f %f %f %d", *range(9), 9),
                         " ".join(f"{i}.000000" for i in range(9)) + " 9")
        for arguments in (("%@",), ("%@", 1, 2), ("none", 1)):
            with self.assertRaisesRegex(TypeError, "stringWithFormat:"):
                make(*arguments)
        with self.assertRaisesRegex(TypeError, "stringWithFormat:"):
            make("%d", "text")

    def test_a_list_of_objects_needs_no_end(self):
        self.assertEqual(brindle.NSArray.arrayWithObjects_("a", 1, [2]), ["a", 1, [2]])
        self.assertEqual(brindle.NSDictionary.dictionaryWithObjectsAndKeys_(1, "a", 2, "b"), {"a": 1, "b": 2})

    def test_plain_functions_are_functions_of_the_module(self):
        self.assertEqual(brindle.NSMakeRect(1, 2, 3, 4), brindle.Rect(1, 2, 3, 4))
        self.assertEqual(brindle.NSIntersectionRect((0, 0, 10, 10), (5, 5, 10, 10)), ((5, 5), (5, 5)))
        self.assertEqual(brindle.NSStringFromClass(brindle.NSView), "NSView")
        self.assertIs(brindle.NSClassFromString("NSView"), brindle.NSView)
        self.assertEqual(brindle.BRGetMidFloats(10.0, 4.0), 3.0)
        with self.assertRaisesRegex(TypeError, "BRGetMidFloats"):
            brindle.BRGetMidFloats("a", 1)

    def test_references_of_quartz_are_objects(self):
        color = brindle.CGColorCreateGenericRGB(1, 0.5, 0, 1)
        self.assertEqual(brindle.CGColorGetAlpha(color), 1.0)
        self.assertEqual(brindle.CGColorGetNumberOfComponents(color), 4)
        with self.assertRaisesRegex(TypeError, "CGColorGetAlpha"):
            brindle.CGColorGetAlpha("red")

    def test_packed_arguments_do_the_same(self):
        from brindle import _operations as operations
        from brindle import _types as types
        rect = "{CGRect={CGPoint=dd}{CGSize=dd}}"
        shape = types.structure(rect)
        send = operations._packed("setFrame:", types.split("v@:" + rect), [shape.ctype])
        send(self.view._ptr, None, shape.to_native((1, 2, 3, 4)))
        found = operations._packed("frame", types.split(rect + "@:"), [])(self.view._ptr, None)
        self.assertEqual(shape.from_native(found), ((1, 2), (3, 4)))

    def test_every_listed_function_can_be_prepared(self):
        for name in brindle.function_names():
            self.assertTrue(callable(getattr(brindle, name)), name)

    def test_every_operation_of_every_class_can_be_prepared(self):
        from brindle import _library as library
        from brindle import _operations as operations
        count = 0
        for name in brindle.class_names():
            pointer = library.class_named(name.encode())
            for holder in (pointer, library.class_of(pointer)):
                for selector in library.lines(library.copy_method_names(holder)):
                    self.assertIsNotNone(operations.bound_to_class(holder, selector), (name, selector))
                    count += 1
        self.assertGreater(count, 1000)


if __name__ == "__main__":
    unittest.main()
