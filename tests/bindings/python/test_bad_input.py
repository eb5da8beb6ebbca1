# SPDX-License-Identifier: Apache-2.0
"""Bad input from outside is answered with an exception, nil or zero."""

import unittest

import brindle


def bare(name):
    return getattr(brindle, name).alloc().init()


class BadInput(unittest.TestCase):
    def refused(self, call, *arguments, name="NSInvalidArgumentException"):
        with self.assertRaises(brindle.Exception) as context:
            call(*arguments)
        self.assertEqual(context.exception.name, name)
        return context.exception.reason

    # ---- objects whose initialiser was passed over

    def test_a_bare_font_has_no_name_and_no_measures(self):
        font = bare("NSFont")
        self.assertIsNone(font.fontName())
        self.assertIsNone(font.familyName())
        self.assertEqual(font.underlinePosition(), 0)
        self.assertEqual(font.underlineThickness(), 0)
        self.assertEqual(font.italicAngle(), 0)
        self.assertFalse(font.isFixedPitch())

    def test_a_bare_error_is_of_an_empty_domain(self):
        error = bare("NSError")
        self.assertEqual(error.domain(), "")
        self.assertEqual(error.localizedDescription(), "The operation couldn’t be completed. ( error 0.)")
        self.assertEqual(error.hash(), bare("NSError").hash())
        self.assertTrue(error.isEqual_(bare("NSError")))

    def test_a_bare_timer_was_never_valid(self):
        timer = bare("NSTimer")
        self.assertFalse(timer.isValid())
        self.assertIsNone(timer.fireDate())
        timer.fire()
        timer.setFireDate_(None)
        timer.restart_(1)
        timer.invalidate()
        brindle.NSRunLoop.currentRunLoop().addTimer_forMode_(timer, "kCFRunLoopDefaultMode")

    def test_a_bare_observer_of_a_loop_is_not_added(self):
        observer = bare("NSRunLoopObserver")
        self.assertFalse(observer.isValid())
        self.assertFalse(bare("NSRunLoopSource").isValid())
        brindle.NSRunLoop.currentRunLoop().addObserver_forMode_(observer, "kCFRunLoopDefaultMode")
        brindle.run_until_idle()

    def test_a_result_without_ranges_replaces_nothing(self):
        replaced = bare("NSRegularExpression").replacementStringForResult_inString_offset_template_(
            bare("NSTextCheckingResult"), "text", 0, "new")
        self.assertEqual(replaced, "new")

    def test_a_closure_cannot_be_allocated(self):
        self.refused(brindle.NSBlock.alloc)
        self.refused(brindle.NSBlock.new)

    # ---- objects of another class

    def test_only_views_become_subviews(self):
        view, inner = bare("NSView"), bare("NSView")
        view.addSubview_(inner)
        reason = self.refused(view.setSubviews_, [inner, "text"])
        self.assertRegex(reason, "NSView.*NSString")
        self.assertEqual(view.subviews(), [inner])

    def test_only_screens_become_screens(self):
        self.refused(brindle.NSScreen.setScreensOverride_, ["text"])

    def test_only_events_are_interpreted(self):
        self.refused(bare("NSView").interpretKeyEvents_, ["text"])

    def test_only_texts_are_keys(self):
        self.refused(bare("NSView").dictionaryWithValuesForKeys_, [1])

    def test_performing_checks_the_class_of_the_argument(self):
        view = bare("NSView")
        reason = self.refused(view.performSelector_withObject_, "addSubview:", "text")
        self.assertRegex(reason, r"-\[NSView addSubview:\]: NSView is expected, not an object of class NSString")
        view.performSelector_withObject_("addSubview:", bare("NSView"))
        view.performSelector_withObject_("addSubview:", None)
        self.assertEqual(len(view.subviews()), 1)

    def test_an_object_is_no_closure(self):
        queue = brindle.NSOperationQueue.mainQueue()
        for wrong in (brindle.as_object("text"), bare("NSView"), brindle.NSView):
            with self.assertRaises(TypeError):
                queue.addOperationWithBlock_(wrong)

    # ---- nil

    def test_a_nil_coder_answers_nothing(self):
        for value in ("text", 1, [1], {"a": 1}, b"ab", brindle.NSColor.redColor(), brindle.NSDate.date()):
            brindle.as_object(value).encodeWithCoder_(None)
        self.assertIsNone(brindle.NSError.alloc().initWithCoder_(None))
        self.assertEqual(brindle.NSArray.alloc().initWithCoder_(None) or [], [])

    def test_a_nil_key_event_goes_along_the_chain(self):
        bare("NSWindow").keyDown_(None)

    def test_nil_is_not_forwarded(self):
        self.refused(bare("NSObject").forwardInvocation_, None)

    def test_a_nil_buffer_holds_nothing(self):
        for refused in (
                lambda: brindle.NSData.dataWithBytes_length_(None, 4),
                lambda: brindle.NSData.dataWithBytesNoCopy_length_freeWhenDone_(None, 2**64 - 1, False),
                lambda: brindle.as_object(b"abc").getBytes_length_(None, 2),
                lambda: brindle.NSMutableData.data().appendBytes_length_(None, 3),
                lambda: brindle.NSArray.arrayWithObjects_count_(None, 2),
                lambda: brindle.NSSet.setWithObjects_count_(None, 2**64 - 1),
                lambda: brindle.NSOrderedSet.orderedSetWithObjects_count_(None, 1),
                lambda: brindle.NSDictionary.dictionaryWithObjects_forKeys_count_(None, None, 3),
                lambda: brindle.as_object("abc").getCharacters_range_(None, (0, 2)),
                lambda: brindle.as_object(5).getValue_(None),
                lambda: brindle.NSValue.valueWithPoint_((1, 2)).getValue_(None)):
            self.refused(refused)
        brindle.NSColor.redColor().getComponents_(None)
        self.assertEqual(brindle.NSData.dataWithBytes_length_(None, 0), b"")

    def test_an_argument_is_not_read_from_nowhere(self):
        signature = brindle.NSView.instanceMethodSignatureForSelector_("setFrame:")
        invocation = brindle.NSInvocation.invocationWithMethodSignature_(signature)
        self.refused(invocation.getArgument_atIndex_, None, 2)
        self.refused(invocation.setArgument_atIndex_, None, 2)

    def test_a_location_without_a_path_is_stored(self):
        brindle.NSUserDefaults.standardUserDefaults().setURL_forKey_(brindle.NSURL.URLWithString_("file:"), "place")

    # ---- beyond all bounds

    def test_no_string_is_padded_beyond_memory(self):
        self.refused(brindle.as_object("abc").stringByPaddingToLength_withString_startingAtIndex_, 2**63 - 1, "d", 0,
                     name="NSRangeException")

    # ---- what ended in the meantime

    def test_a_responder_does_not_know_the_next_one_after_its_end(self):
        view, following = bare("NSView"), bare("NSView")
        view.setNextResponder_(following)
        self.assertIs(view.nextResponder(), following)
        del following
        self.assertIsNone(view.nextResponder())

    def test_a_class_with_an_identity_is_no_object_to_load(self):
        brindle.NSObject.UUID()
        brindle.NSObject.loadObjectsForUUIDProperties()
        brindle.NSObject.UUIDPropertiesLoadedForAllClasses()


if __name__ == "__main__":
    unittest.main()
