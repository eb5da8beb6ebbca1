// SPDX-License-Identifier: Apache-2.0
#include "controls/OnOffSwitchControlCell.h"

#include <gtest/gtest.h>

#include "appkit/NSControl.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    constexpr NSRect kCellFrame { { 0, 0 }, { 60, 20 } };
    // The width of the thumb in that frame: 58 times 0.38 in single precision.
    const double kThumb = 58 * static_cast<double>(0.38F);

    Ref<OnOffSwitchControlCell> makeCell(NSCellStateValue state = NSOffState)
    {
        Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
        cell->setAllowsMixedState(state == NSMixedState);
        cell->setState(state);
        return cell;
    }

}

TEST(OnOffSwitchControlCell, ItIsTrackedUntilTheButtonGoesUp)
{
    EXPECT_TRUE(OnOffSwitchControlCell::cls().prefersTrackingUntilMouseUp());
    EXPECT_EQ(OnOffSwitchControlCell::cls().defaultFocusRingType(), NSFocusRingTypeExterior);
}

TEST(OnOffSwitchControlCell, ANewCellHasTheDefaults)
{
    const Ref<OnOffSwitchControlCell> cell = makeCell();
    EXPECT_TRUE(cell->showsOnOffLabels());
    EXPECT_EQ(cell->onOffSwitchControlColors(), 2);
    EXPECT_EQ(utf8Of(cell->onSwitchLabel().get()), "ON");
    EXPECT_EQ(utf8Of(cell->offSwitchLabel().get()), "OFF");
    EXPECT_EQ(cell->focusRingType(), NSFocusRingTypeExterior);
    EXPECT_EQ(cell->customOnColor(), nullptr);
}

TEST(OnOffSwitchControlCell, EachInitialiserSetsTheDefaults)
{
    const Ref<OnOffSwitchControlCell> text = alloc<OnOffSwitchControlCell>();
    text->initTextCell("a"_ns);
    EXPECT_EQ(text->onOffSwitchControlColors(), 2);
    const Ref<OnOffSwitchControlCell> image = alloc<OnOffSwitchControlCell>();
    image->initImageCell(nullptr);
    EXPECT_EQ(image->onOffSwitchControlColors(), 2);
}

TEST(OnOffSwitchControlCell, ItsFieldsStandInOrder)
{
    unsigned count = 0;
    Ivar** const fields = class_copyIvarList(OnOffSwitchControlCell::cls(), &count);
    std::string names;
    for (unsigned i = 0; i < count; ++i)
        names += std::string(ivar_getName(fields[i])) + " ";
    releaseBuffer(fields);
    EXPECT_EQ(names,
        "tracking initialTrackingPoint trackingPoint initialTrackingTime trackingTime "
        "trackingCellFrame trackingThumbCenterX stuff _showsOnOffLabels _onOffSwitchControlColors "
        "_customOnColor _customOffColor _onSwitchLabel _offSwitchLabel ");
}

TEST(OnOffSwitchControlCell, ItsPropertiesAreAtomic)
{
    const auto attributes = [](const char* name) {
        return std::string(
            property_getAttributes(class_getProperty(OnOffSwitchControlCell::cls(), name)));
    };
    EXPECT_EQ(attributes("onOffSwitchControlColors"), "Ti,V_onOffSwitchControlColors");
    EXPECT_EQ(attributes("customOnColor"), "T@\"NSColor\",&,V_customOnColor");
    EXPECT_EQ(attributes("onSwitchLabel"), "T@\"NSString\",C,V_onSwitchLabel");
}

TEST(OnOffSwitchControlCell, AClickIsAThirdOfASecondWithinSixPoints)
{
    const Ref<OnOffSwitchControlCell> cell = makeCell();
    Ivar* const field = class_getInstanceVariable(OnOffSwitchControlCell::cls(), "stuff");
    const auto* const limits = *reinterpret_cast<double* const*>(
        reinterpret_cast<const char*>(cell.get()) + ivar_getOffset(field));
    ASSERT_NE(limits, nullptr);
    EXPECT_EQ(limits[0], 1.0 / 3);
    EXPECT_EQ(limits[1], 6);
    EXPECT_EQ(limits[2], 6);
}

TEST(OnOffSwitchControlCell, TheOffThumbIsAtTheLeft)
{
    const NSRect thumb = makeCell()->thumbRectInFrame(kCellFrame);
    EXPECT_EQ(thumb.origin.x, 1);
    EXPECT_EQ(thumb.origin.y, 1);
    EXPECT_EQ(thumb.size.width, kThumb);
    EXPECT_NEAR(thumb.size.width, 22.04, 1e-6);
    EXPECT_EQ(thumb.size.height, 18);
}

TEST(OnOffSwitchControlCell, TheOnThumbIsAtTheRight)
{
    const NSRect thumb = makeCell(NSOnState)->thumbRectInFrame(kCellFrame);
    EXPECT_EQ(thumb.origin.x, 1 + 58 - kThumb);
    EXPECT_NEAR(thumb.origin.x, 36.96, 1e-6);
}

TEST(OnOffSwitchControlCell, TheMixedThumbIsInTheMiddle)
{
    const NSRect thumb = makeCell(NSMixedState)->thumbRectInFrame(kCellFrame);
    EXPECT_NEAR(thumb.origin.x, 17.98, 1e-6);
}

TEST(OnOffSwitchControlCell, TheMixedThumbCountsFromZeroWhereverTheFrameIs)
{
    const NSRect moved { { 100, 50 }, { 60, 20 } };
    EXPECT_EQ(makeCell(NSMixedState)->thumbRectInFrame(moved).origin.x,
        makeCell(NSMixedState)->thumbRectInFrame(kCellFrame).origin.x);
    EXPECT_EQ(makeCell()->thumbRectInFrame(moved).origin.x, 101);
}

TEST(OnOffSwitchControlCell, AFrameWithoutRoomHasANegativeThumb)
{
    const NSRect thumb = makeCell()->thumbRectInFrame(NSMakeRect(0, 0, 1, 20));
    EXPECT_LT(thumb.size.width, 0);
}

TEST(OnOffSwitchControlCell, TheMiddleOfTheThumbFollowsTheState)
{
    EXPECT_EQ(makeCell()->centerXForThumbWithFrame(kCellFrame), 1 + kThumb * 0.5);
    EXPECT_EQ(
        makeCell(NSOnState)->centerXForThumbWithFrame(kCellFrame), 1 + 58 - kThumb + kThumb * 0.5);
}

TEST(OnOffSwitchControlCell, ADragMovesTheMiddleOfTheThumb)
{
    const Ref<NSControl> control = make<NSControl>();
    const Ref<OnOffSwitchControlCell> cell = makeCell();
    cell->startTrackingAt_inView({ 10, 10 }, control.get());
    cell->continueTracking_at_inView({ 10, 10 }, { 15, 12 }, control.get());
    EXPECT_EQ(cell->centerXForThumbWithFrame(kCellFrame), 6 + kThumb * 0.5);
}

TEST(OnOffSwitchControlCell, ADragPastAnEndStopsOnePointInside)
{
    const Ref<NSControl> control = make<NSControl>();
    const Ref<OnOffSwitchControlCell> cell = makeCell();
    cell->startTrackingAt_inView({ 10, 10 }, control.get());
    cell->continueTracking_at_inView({ 10, 10 }, { 500, 10 }, control.get());
    EXPECT_EQ(cell->centerXForThumbWithFrame(kCellFrame), (60 - kThumb - 1) + kThumb * 0.5);
    EXPECT_NEAR(cell->centerXForThumbWithFrame(kCellFrame), 47.98, 1e-6);
    cell->continueTracking_at_inView({ 500, 10 }, { -500, 10 }, control.get());
    EXPECT_EQ(cell->centerXForThumbWithFrame(kCellFrame), 1 + kThumb * 0.5);
}

TEST(OnOffSwitchControlCell, BothCustomColoursAreSetAndTheSchemeStays)
{
    const Ref<OnOffSwitchControlCell> cell = makeCell();
    const Ref<NSColor> on = NSColor::cls().greenColor();
    const Ref<NSColor> off = NSColor::cls().redColor();
    cell->setOnOffSwitchCustomOnColor_offColor(on.get(), off.get());
    EXPECT_EQ(cell->customOnColor(), on);
    EXPECT_EQ(cell->customOffColor(), off);
    EXPECT_EQ(cell->onOffSwitchControlColors(), 2);
}

TEST(OnOffSwitchControlCell, AViewThatIsNoControlEndsTracking)
{
    const Ref<NSView> view = make<NSView>();
    const Ref<OnOffSwitchControlCell> cell = makeCell();
    EXPECT_FALSE(cell->startTrackingAt_inView({}, view.get()));
    EXPECT_FALSE(cell->continueTracking_at_inView({}, {}, view.get()));
    cell->stopTracking_at_inView_mouseIsUp({}, { 50, 50 }, view.get(), true);
    EXPECT_EQ(cell->state(), NSOffState);
}

TEST(OnOffSwitchControlCell, ACopyKeepsColoursAndLabels)
{
    const Ref<OnOffSwitchControlCell> cell = makeCell(NSOnState);
    cell->setOnOffSwitchControlColors(4);
    cell->setOnSwitchLabel("JA"_ns);
    const Ref<OnOffSwitchControlCell> copy = cast<OnOffSwitchControlCell>(cell->copy());
    EXPECT_EQ(copy->onOffSwitchControlColors(), 4);
    EXPECT_EQ(utf8Of(copy->onSwitchLabel().get()), "JA");
    EXPECT_EQ(copy->state(), NSOnState);
}

}
