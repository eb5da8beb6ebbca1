// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSCell.h"

#include <gtest/gtest.h>

#include "appkit/NSActionCell.h"
#include "appkit/NSButtonCell.h"
#include "appkit/NSColor.h"
#include "appkit/NSParagraphStyle.h"
#include "foundation/Exceptions.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNumber.h"
#include "foundation/NSNumberFormatter.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// Remembers which initialisers ran.
class InitialisedCell : public NSCell {
    BRINDLE_OBJECT(InitialisedCell, NSCell)

public:
    int texts_ = 0;
    int images_ = 0;
};

template <> struct InitialisedCell::Methods<struct Making> {
    static Ref<NSCell> initTextCell(InitialisedCell& self, NSString* text)
    {
        ++self.texts_;
        return super<InitialisedCell, "initTextCell:", Ref<NSCell>>(self, text);
    }
    static Ref<NSCell> initImageCell(InitialisedCell& self, NSImage* image)
    {
        ++self.images_;
        return super<InitialisedCell, "initImageCell:", Ref<NSCell>>(self, image);
    }
    static void table(Builder& t)
    {
        t.methods({
            { "initTextCell:", imp<initTextCell> },
            { "initImageCell:", imp<initImageCell> },
        });
    }
};
BRINDLE_RECORD(InitialisedCell, Making)

TEST(NSCell, InitComesToInitTextCellOnce)
{
    const Ref<InitialisedCell> cell = make<InitialisedCell>();
    EXPECT_EQ(cell->texts_, 1);
    EXPECT_EQ(cell->images_, 0);
}

TEST(NSCell, InitImageCellDoesNotComeToInitTextCell)
{
    const Ref<InitialisedCell> cell = alloc<InitialisedCell>();
    cell->initImageCell(nullptr);
    EXPECT_EQ(cell->texts_, 0);
    EXPECT_EQ(cell->images_, 1);
}

TEST(NSCell, AnyNumberIsOnWithoutMixedState)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setState(-1);
    EXPECT_EQ(cell->state(), NSOnState);
    cell->setState(7);
    EXPECT_EQ(cell->state(), NSOnState);
    cell->setState(0);
    EXPECT_EQ(cell->state(), NSOffState);
}

TEST(NSCell, NegativeNumbersAreMixedWhereAllowed)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setAllowsMixedState(true);
    cell->setState(-5);
    EXPECT_EQ(cell->state(), NSMixedState);
    cell->setState(5);
    EXPECT_EQ(cell->state(), NSOnState);
}

TEST(NSCell, TakingMixedStateAwayTurnsItOn)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setAllowsMixedState(true);
    cell->setState(NSMixedState);
    cell->setAllowsMixedState(false);
    EXPECT_EQ(cell->state(), NSOnState);
}

TEST(NSCell, TwoStatesAlternate)
{
    const Ref<NSCell> cell = make<NSCell>();
    EXPECT_EQ(cell->nextState(), NSOnState);
    cell->setNextState();
    EXPECT_EQ(cell->nextState(), NSOffState);
}

TEST(NSCell, ThreeStatesGoOnOffMixed)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setAllowsMixedState(true);
    cell->setState(NSOnState);
    std::string way;
    for (int i = 0; i < 4; ++i) {
        cell->setNextState();
        way += std::to_string(cell->state()) + " ";
    }
    EXPECT_EQ(way, "0 -1 1 0 ");
}

TEST(NSCell, BorderAndBezelExcludeEachOther)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setBordered(true);
    cell->setBezeled(true);
    EXPECT_FALSE(cell->isBordered());
    cell->setBordered(true);
    EXPECT_FALSE(cell->isBezeled());
}

TEST(NSCell, EditableImpliesSelectable)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setEditable(true);
    EXPECT_TRUE(cell->isSelectable());
    cell->setSelectable(false);
    EXPECT_FALSE(cell->isEditable());
}

TEST(NSCell, WrappingAndScrollingExcludeEachOther)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setScrollable(true);
    EXPECT_FALSE(cell->wraps());
    cell->setWraps(true);
    EXPECT_FALSE(cell->isScrollable());
    EXPECT_EQ(cell->lineBreakMode(), NSLineBreakByWordWrapping);
}

TEST(NSCell, NilIsNoText)
{
    const Ref<NSCell> cell = make<NSCell>();
    EXPECT_THROW(cell->setStringValue(nullptr), Exception);
}

TEST(NSCell, TextReadsAsNumbers)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setStringValue("12.5 m"_ns);
    EXPECT_EQ(cell->intValue(), 12);
    EXPECT_EQ(cell->doubleValue(), 12.5);
    cell->setIntegerValue(7);
    EXPECT_EQ(utf8Of(cell->stringValue().get()), "7");
}

TEST(NSCell, AFormatterWritesAndReadsTheValue)
{
    const Ref<NSCell> cell = make<NSCell>();
    const Ref<NSNumberFormatter> formatter = make<NSNumberFormatter>();
    formatter->setMinimumFractionDigits(2);
    cell->setFormatter(formatter.get());
    cell->setObjectValue(NSNumber::cls().numberWithDouble(1.5).get());
    const Ref<NSString> shown = cell->stringValue();
    cell->setStringValue(shown.get());
    EXPECT_TRUE(cell->hasValidObjectValue());
    EXPECT_EQ(cell->doubleValue(), 1.5);
}

TEST(NSCell, TextThatAFormatterCannotReadIsNoObject)
{
    const Ref<NSCell> cell = make<NSCell>();
    cell->setFormatter(make<NSNumberFormatter>().get());
    cell->setStringValue("many"_ns);
    EXPECT_FALSE(cell->hasValidObjectValue());
    EXPECT_EQ(utf8Of(cell->stringValue().get()), "many");
}

TEST(NSCell, APlainCellKeepsNoTarget)
{
    const Ref<NSCell> cell = make<NSCell>();
    EXPECT_EQ(cell->target(), nullptr);
    EXPECT_EQ(cell->tag(), -1);
    EXPECT_THROW(cell->setTag(3), Exception);
}

TEST(NSCell, ACopyKeepsWhatWasSet)
{
    const Ref<NSActionCell> cell = make<NSActionCell>();
    cell->setTag(9);
    cell->setEnabled(false);
    cell->setStringValue("text"_ns);
    cell->setAction(selector<"act:">);
    const Ref<NSActionCell> copy = cast<NSActionCell>(cell->copy());
    cell->setStringValue("other"_ns);
    EXPECT_EQ(copy->tag(), 9);
    EXPECT_FALSE(copy->isEnabled());
    EXPECT_EQ(utf8Of(copy->stringValue().get()), "text");
    EXPECT_TRUE(copy->action() == selector<"act:">);
}

TEST(NSCell, ATargetThatWentReadsNil)
{
    const Ref<NSActionCell> cell = make<NSActionCell>();
    {
        const Ref<NSObject> target = make<NSObject>();
        cell->setTarget(target.get());
        EXPECT_EQ(cell->target(), target);
    }
    EXPECT_EQ(cell->target(), nullptr);
}

TEST(NSButtonCell, ANewCellHasATitleAndABorder)
{
    const Ref<NSButtonCell> cell = make<NSButtonCell>();
    EXPECT_EQ(utf8Of(cell->title().get()), "Button");
    EXPECT_TRUE(cell->isBordered());
    EXPECT_EQ(cell->highlightsBy(), NSPushInCellMask | NSChangeGrayCellMask);
    EXPECT_EQ(cell->showsStateBy(), NSNoCellMask);
}

TEST(NSButtonCell, TypesSetTheirMasks)
{
    const Ref<NSButtonCell> cell = make<NSButtonCell>();
    cell->setButtonType(NSMomentaryChangeButton);
    EXPECT_EQ(cell->highlightsBy(), NSContentsCellMask);
    EXPECT_EQ(cell->showsStateBy(), NSNoCellMask);
    cell->setButtonType(NSOnOffButton);
    EXPECT_EQ(cell->highlightsBy(), NSChangeBackgroundCellMask);
    EXPECT_EQ(cell->showsStateBy(), NSChangeBackgroundCellMask);
}

TEST(NSButtonCell, ASwitchHasAnImageAndNoBorder)
{
    const Ref<NSButtonCell> cell = make<NSButtonCell>();
    cell->setButtonType(NSSwitchButton);
    EXPECT_FALSE(cell->isBordered());
    EXPECT_NE(cell->image(), nullptr);
    EXPECT_EQ(cell->imagePosition(), NSImageLeft);
}

TEST(NSButtonCell, ItsValueIsItsState)
{
    const Ref<NSButtonCell> cell = make<NSButtonCell>();
    cell->setState(NSOnState);
    EXPECT_EQ(cell->integerValue(), 1);
    EXPECT_EQ(utf8Of(cell->stringValue().get()), "1");
    cell->setIntValue(0);
    EXPECT_EQ(cell->state(), NSOffState);
    EXPECT_EQ(utf8Of(cell->title().get()), "Button");
}

TEST(NSButtonCell, AnEmptyTitleIsAnEmptyAttributedString)
{
    const Ref<NSButtonCell> cell = make<NSButtonCell>();
    cell->setTitle(nullptr);
    EXPECT_EQ(cell->attributedTitle()->length(), 0U);
}

TEST(NSButtonCell, ATitleOfAnotherKindIsRefused)
{
    const Ref<NSButtonCell> cell = make<NSButtonCell>();
    const Ref<NSNumber> number = NSNumber::cls().numberWithInt(1);
    EXPECT_THROW(cell->send<"setTitle:">(static_cast<NSObject*>(number.get())), Exception);
    EXPECT_EQ(utf8Of(cell->title().get()), "Button");
}

TEST(NSButtonCell, AnArchiveKeepsItsSettings)
{
    const Ref<NSButtonCell> cell = make<NSButtonCell>();
    cell->setButtonType(NSSwitchButton);
    cell->setAllowsMixedState(true);
    cell->setState(NSMixedState);
    cell->setTitle("Remember"_ns);
    cell->setKeyEquivalent("r"_ns);
    cell->setTag(12);
    cell->setAction(sel_registerName("act:")); // archives hold names
    const Ref<NSData> archive = NSKeyedArchiver::cls().archivedDataWithRootObject(cell.get());
    const Ref<NSButtonCell> back
        = cast<NSButtonCell>(NSKeyedUnarchiver::cls().unarchiveObjectWithData(archive.get()));
    EXPECT_EQ(utf8Of(back->title().get()), "Remember");
    EXPECT_EQ(back->state(), NSMixedState);
    EXPECT_EQ(back->imagePosition(), NSImageLeft);
    EXPECT_NE(back->image(), nullptr);
    EXPECT_EQ(utf8Of(back->keyEquivalent().get()), "r");
    EXPECT_EQ(back->tag(), 12);
    EXPECT_TRUE(back->action() == selector<"act:">);
}

TEST(NSButtonCell, AnArchiveKeepsHowItLooksAndRepeats)
{
    const Ref<NSButtonCell> cell = make<NSButtonCell>();
    const Ref<NSColor> blue = NSColor::cls().blueColor();
    const Ref<NSAttributedString> pressed
        = alloc<NSAttributedString>()->initWithString("Pressed"_ns);
    cell->setBaseWritingDirection(NSWritingDirectionRightToLeft);
    cell->setAttributedAlternateTitle(pressed.get());
    cell->setBackgroundColor(blue.get());
    cell->setGradientType(NSGradientConvexWeak);
    cell->setImageDimsWhenDisabled(false);
    cell->setPeriodicDelay_interval(1.5F, 0.25F);
    const Ref<NSData> archive = NSKeyedArchiver::cls().archivedDataWithRootObject(cell.get());
    const Ref<NSButtonCell> back
        = cast<NSButtonCell>(NSKeyedUnarchiver::cls().unarchiveObjectWithData(archive.get()));
    EXPECT_EQ(back->baseWritingDirection(), NSWritingDirectionRightToLeft);
    EXPECT_EQ(utf8Of(back->alternateTitle().get()), "Pressed");
    EXPECT_EQ(back->backgroundColor()->isEqual(blue.get()), true);
    EXPECT_EQ(back->gradientType(), NSGradientConvexWeak);
    EXPECT_FALSE(back->imageDimsWhenDisabled());
    float delay = 0;
    float interval = 0;
    back->getPeriodicDelay_interval(&delay, &interval);
    EXPECT_EQ(delay, 1.5F);
    EXPECT_EQ(interval, 0.25F);
}

}
