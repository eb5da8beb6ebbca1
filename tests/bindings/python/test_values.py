# SPDX-License-Identifier: Apache-2.0
"""Values cross in both directions without losing anything."""

import datetime
import math
import unittest

import brindle


def through(value):
    """A value that went into the runtime and came out again."""
    return brindle.NSArray.arrayWithObject_(value)[0]


class Values(unittest.TestCase):
    def test_text_comes_back_equal(self):
        for text in ("", "a", "grün", "日本語", "😀 two units", "with\0zero", "line\nend", "x" * 100000):
            self.assertEqual(through(text), text)

    def test_a_lone_surrogate_survives(self):
        self.assertEqual(through("a\ud800b"), "a\ud800b")

    def test_numbers_come_back_with_their_kind(self):
        for number in (0, 1, -1, 2**31, -2**63, 2**63 - 1, 2**64 - 1, 0.5, -1e300, math.inf):
            found = through(number)
            self.assertEqual(found, number)
            self.assertIsInstance(found, type(number))

    def test_not_a_number_stays_not_a_number(self):
        self.assertTrue(math.isnan(through(math.nan)))

    def test_a_list_of_numbers_stands_where_an_address_of_numbers_is_expected(self):
        black, white = brindle.NSColor.rgbBlack(), brindle.NSColor.rgbWhite()
        blend = black.colorWithRGBBlendFrom_blendingAmounts_(white, [0.25, 0.5, 1, 0])
        self.assertEqual((blend.redComponent(), blend.greenComponent(), blend.blueComponent()), (0.25, 0.5, 1))

    def test_a_list_of_points_stands_where_an_address_of_points_is_expected(self):
        path = brindle.NSBezierPath.bezierPath()
        path.appendBezierPathWithPoints_count_([(0, 0), brindle.Point(3, 0), (3, 4)], 3)
        self.assertEqual(path.bounds(), ((0, 0), (3, 4)))

    def test_booleans_are_not_numbers(self):
        self.assertIs(through(True), True)
        self.assertIs(through(False), False)
        self.assertIsNot(through(1), True)

    def test_an_integer_that_does_not_fit_is_an_error(self):
        for number in (2**64, -2**63 - 1):
            with self.assertRaises(OverflowError):
                through(number)

    def test_a_character_is_a_number_or_text_of_one(self):
        made = type(brindle.NSObject)("Characters", (brindle.NSObject,), {
            "one": lambda self: 1, "two": lambda self: 2})
        self.assertTrue(brindle.XUISwizzleMethod(made, "-", "one", "two"))
        self.assertTrue(brindle.XUISwizzleMethod(made, ord("-"), "one", "two"))
        with self.assertRaises(TypeError):
            brindle.XUISwizzleMethod(made, "--", "one", "two")

    def test_data_comes_back_equal(self):
        for data in (b"", b"abc\0def", bytes(range(256)), bytearray(b"xyz")):
            self.assertEqual(through(data), bytes(data))

    def test_dates_come_back_equal(self):
        date = datetime.datetime(2026, 2, 3, 4, 5, 6, 789000, tzinfo=datetime.timezone.utc)
        self.assertEqual(through(date), date)

    def test_a_date_keeps_its_seconds_to_the_last_bit(self):
        seconds = 123456789.123456789
        date = brindle.NSDate.dateWithTimeIntervalSinceReferenceDate_(seconds)
        self.assertEqual(brindle.send(date, "timeIntervalSinceReferenceDate"), seconds)

    def test_a_date_outside_the_calendar_stays_an_object(self):
        date = brindle.NSDate.dateWithTimeIntervalSinceReferenceDate_(1e15)
        self.assertIsInstance(date, brindle.Object)
        self.assertEqual(date.timeIntervalSinceReferenceDate(), 1e15)

    def test_collections_come_back_equal(self):
        value = {"a": [1, 2.5, None, True], "b": {"c": b"d"}, "e": []}
        self.assertEqual(through(value), value)

    def test_tuples_become_lists_and_sets_stay_sets(self):
        self.assertEqual(through((1, 2)), [1, 2])
        self.assertEqual(through({1, 2, 3}), {1, 2, 3})

    def test_a_value_still_answers_messages(self):
        text = brindle.NSString.stringWithString_("abc")
        self.assertEqual(text.uppercaseString(), "ABC")
        self.assertEqual(text.length(), 3)
        self.assertEqual(through([3, 4]).count(), 2)
        self.assertEqual(through([3, 4, 3]).count(3), 2)
        self.assertEqual(through(7).doubleValue(), 7.0)

    def test_mutable_collections_stay_objects(self):
        array = brindle.NSMutableArray.array()
        array.addObject_("a")
        array.addObject_("b")
        self.assertEqual(list(array), ["a", "b"])
        self.assertEqual(array[-1], "b")
        self.assertEqual(array[0:1], ["a"])
        with self.assertRaises(IndexError):
            array[2]
        self.assertEqual(array, ["a", "b"])
        self.assertIn("a", array)

    def test_mutable_dictionaries_are_used_like_ones(self):
        dictionary = brindle.NSMutableDictionary.dictionary()
        dictionary["a"] = 1
        self.assertEqual(dictionary["a"], 1)
        self.assertIn("a", dictionary)
        with self.assertRaises(KeyError):
            dictionary["b"]
        del dictionary["a"]
        self.assertEqual(len(dictionary), 0)

    def test_a_mutable_string_is_an_object_with_its_text(self):
        text = brindle.NSMutableString.stringWithString_("abc")
        text.appendString_("def")
        self.assertEqual(text, "abcdef")
        self.assertEqual(str(text), "abcdef")

    def test_rectangles_are_taken_nested_and_flat(self):
        view = brindle.NSView.alloc().initWithFrame_((1, 2, 3, 4))
        self.assertEqual(view.frame(), ((1, 2), (3, 4)))
        view.setFrame_(((5, 6), (7, 8)))
        self.assertEqual(view.frame(), brindle.Rect(5, 6, 7, 8))
        view.setFrame_([[1, 2], [3, 4]])
        self.assertEqual(view.frame().size.height, 4)
        self.assertEqual(view.frame().width, 3)

    def test_ranges_and_sizes_are_named(self):
        text = brindle.as_object("hello world")
        found = text.rangeOfString_("world")
        self.assertEqual(found.location, 6)
        self.assertEqual(found, brindle.Range(6, 5))
        self.assertEqual(text.substringWithRange_((0, 5)), "hello")

    def test_a_python_object_of_no_kind_is_refused(self):
        with self.assertRaisesRegex(TypeError, "arrayWithObject:"):
            through(object())

    def test_classes_are_objects_too(self):
        self.assertIs(through(brindle.NSView), brindle.NSView)
        self.assertTrue(brindle.NSView.isSubclassOfClass_(brindle.NSResponder))


if __name__ == "__main__":
    unittest.main()
