// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSResponder.h"

#include <gtest/gtest.h>

#include "appkit/NSEvent.h"
#include "foundation/NSArray.h"
#include "foundation/NSBeep.h"
#include "runtime/Table.h"

namespace brindle {

/// Counts presses and remembers commands.
class LastResponder : public NSResponder {
    BRINDLE_OBJECT(LastResponder, NSResponder)

public:
    int presses_ = 0;
    std::string heard_;
};

template <> struct LastResponder::Methods<struct Listening> {
    static void mouseDown(LastResponder& self, NSEvent*) { ++self.presses_; }
    static void moveLeft(LastResponder& self, NSObject*) { self.heard_ += "moveLeft "; }
    static void insertText(LastResponder& self, NSObject* text)
    {
        self.heard_ += utf8Of(static_cast<NSString*>(text)) + " ";
    }
    static void table(Builder& t)
    {
        t.methods({
            { "mouseDown:", imp<mouseDown> },
            { "moveLeft:", imp<moveLeft> },
            { "insertText:", imp<insertText> },
        });
    }
};
BRINDLE_RECORD(LastResponder, Listening)

namespace {

    Ref<NSEvent> keyEvent(NSString* text)
    {
        return NSEvent::cls()
            .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                NSKeyDown, {}, 0, 0, 0, nullptr, text, text, false, 0);
    }

}

TEST(NSResponder, EventsFallThroughToTheNextResponder)
{
    const Ref<LastResponder> last = make<LastResponder>();
    const Ref<NSResponder> first = make<NSResponder>();
    first->setNextResponder(last.get());
    first->mouseDown(nullptr);
    EXPECT_EQ(last->presses_, 1);
}

TEST(NSResponder, AKeyThatNobodyTakesBeeps)
{
    const auto before = beepCount();
    make<NSResponder>()->keyDown(nullptr);
    EXPECT_EQ(beepCount(), before + 1);
    make<NSResponder>()->mouseDown(nullptr);
    EXPECT_EQ(beepCount(), before + 1);
}

TEST(NSResponder, OnlyTheFirstAnswerOfTheChainCounts)
{
    const Ref<LastResponder> last = make<LastResponder>();
    const Ref<NSResponder> first = make<NSResponder>();
    first->setNextResponder(last.get());
    EXPECT_TRUE(first->tryToPerform_with(selector<"moveLeft:">, nullptr));
    EXPECT_FALSE(first->tryToPerform_with(selector<"moveNowhere:">, nullptr));
}

TEST(NSResponder, KeysBecomeCommandsAndText)
{
    const Ref<LastResponder> responder = make<LastResponder>();
    const unichar left = NSLeftArrowFunctionKey;
    const Ref<NSString> arrow = stringFrom(std::u16string_view(&left, 1));
    const Ref<NSEvent> first = keyEvent(arrow.get());
    const Ref<NSEvent> second = keyEvent("q"_ns);
    responder->interpretKeyEvents(makeArray({ first.get(), second.get() }).get());
    EXPECT_EQ(responder->heard_, "moveLeft q ");
}

TEST(NSResponder, FocusIsRefusedUnlessItIsAskedFor)
{
    const Ref<NSResponder> responder = make<NSResponder>();
    EXPECT_FALSE(responder->acceptsFirstResponder());
    EXPECT_TRUE(responder->becomeFirstResponder());
    EXPECT_TRUE(responder->resignFirstResponder());
}

}
