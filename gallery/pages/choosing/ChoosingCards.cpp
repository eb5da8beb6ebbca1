// SPDX-License-Identifier: Apache-2.0
#include "ChoosingCards.h"

#include <array>

#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSTextField.h"
#include "foundation/NSArray.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kNames = 92;
    constexpr double kRow = 38;

    double rowAt(NSRect body, std::size_t row)
    {
        return body.origin.y + kRow * static_cast<double>(row);
    }
    /// Puts a control at its row, in the middle of the line.
    void put(NSControl& control, NSRect body, std::size_t row)
    {
        control.sizeToFit();
        const double height = control.frame().size.height;
        control.setFrameOrigin({ body.origin.x + kNames, rowAt(body, row) + (26 - height) / 2 });
    }
    template <std::size_t Count>
    void drawNames(const std::array<const char*, Count>& names, NSRect body)
    {
        for (std::size_t row = 0; row < Count; ++row)
            drawText(stringFrom(names[row]).get(), { body.origin.x, rowAt(body, row) + 5 },
                Style::body, palette().text.get());
    }
    void drawSaid(NSString* said, NSRect body, std::size_t rows)
    {
        drawFitted(said, { body.origin.x, rowAt(body, rows) + 4 }, body.size.width, Style::body,
            palette().accent.get());
    }

}

template <> struct SegmentsCard::Methods<struct Bars> {

    static constexpr std::array kRows { "One of them", "Any of them", "None", "Small",
        "With one off" };

    static void add(SegmentsCard& self, NSArray* labels, NSSegmentSwitchTracking tracking)
    {
        self.bars_.push_back(
            NSSegmentedControl::cls().segmentedControlWithLabels_trackingMode_target_action(
                labels, tracking, &self, selector<"choose:">));
        self.addSubview(self.bars_.back().get());
    }
    static Ref<NSView> initWithFrame(SegmentsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<SegmentsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Segments"_ns);
        self.setCaption("Arrows go along the bar, Space presses"_ns);
        const auto labels = [](auto... names) { return NSArray::cls().arrayWithObjects(names...); };
        add(self, labels("List"_ns, "Columns"_ns, "Gallery"_ns).get(),
            NSSegmentSwitchTrackingSelectOne);
        add(self, labels("Bold"_ns, "Italic"_ns, "Underlined"_ns).get(),
            NSSegmentSwitchTrackingSelectAny);
        add(self, labels("Back"_ns, "Forward"_ns).get(), NSSegmentSwitchTrackingMomentary);
        add(self, labels("Day"_ns, "Week"_ns, "Month"_ns, "Year"_ns).get(),
            NSSegmentSwitchTrackingSelectOne);
        add(self, labels("Left"_ns, "Centre"_ns, "Right"_ns).get(),
            NSSegmentSwitchTrackingSelectOne);
        self.bars_[0]->setSelectedSegment(1);
        self.bars_[1]->setSelected_forSegment(true, 0);
        self.bars_[1]->setSelected_forSegment(true, 2);
        self.bars_[3]->setControlSize(NSControlSizeSmall);
        self.bars_[3]->setSelectedSegment(0);
        self.bars_[4]->setSelectedSegment(2);
        self.bars_[4]->setEnabled_forSegment(false, 1);
        self.said_ = "Nothing pressed yet"_ns;
        return made;
    }
    static void setFrameSize(SegmentsCard& self, NSSize size)
    {
        super<SegmentsCard, "setFrameSize:">(self, size);
        for (std::size_t row = 0; row < self.bars_.size(); ++row)
            put(*self.bars_[row], self.bodyRect(), row);
    }
    static void drawBody(SegmentsCard& self, NSRect body)
    {
        drawNames(kRows, body);
        drawSaid(self.said_.get(), body, kRows.size());
    }
    static void choose(SegmentsCard& self, NSObject* sender)
    {
        const Ref<NSSegmentedControl> bar = cast<NSSegmentedControl>(Ref<NSObject>(sender));
        const NSInteger segment = bar->selectedSegment();
        const Ref<NSString> label = segment < 0 ? nullptr : bar->labelForSegment(segment);
        const bool isOn = segment >= 0 && bar->isSelectedForSegment(segment);
        self.said_ = !label ? Ref<NSString>("Nothing is chosen"_ns)
                            : NSString::cls().stringWithFormat(
                                isOn ? "“%@” is chosen"_ns : "“%@” was pressed"_ns, label.get());
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
            { "choose:", imp<choose> },
        });
    }
};
BRINDLE_RECORD(SegmentsCard, Bars)

template <> struct PopUpsCard::Methods<struct Buttons> {

    static constexpr std::array kRows { "Pop-up", "Pull-down", "Small", "Disabled" };

    static NSPopUpButton& add(
        PopUpsCard& self, bool pullsDown, std::initializer_list<const char*> titles)
    {
        const Ref<NSPopUpButton> button
            = alloc<NSPopUpButton>()->initWithFrame_pullsDown(NSMakeRect(0, 0, 150, 25), pullsDown);
        for (const char* title : titles) {
            if (*title)
                button->addItemWithTitle(stringFrom(title).get());
            else
                button->menu()->addItem(NSMenuItem::cls().separatorItem().get());
        }
        button->setTarget(&self);
        button->setAction(selector<"choose:">);
        self.addSubview(button.get());
        self.buttons_.push_back(button);
        return *button;
    }
    static Ref<NSView> initWithFrame(PopUpsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<PopUpsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Buttons with menus"_ns);
        self.setCaption("Space or Down opens, letters choose"_ns);
        add(self, false, { "Haarlem", "Nantes", "Tartu", "", "Somewhere else" });
        add(self, true, { "Add", "A lamp", "A table", "", "A whole room" });
        add(self, false, { "Small", "Smaller", "Smallest" }).setControlSize(NSControlSizeSmall);
        add(self, false, { "Not to be chosen" }).setEnabled(false);
        self.said_ = "Nothing chosen yet"_ns;
        return made;
    }
    static void setFrameSize(PopUpsCard& self, NSSize size)
    {
        super<PopUpsCard, "setFrameSize:">(self, size);
        for (std::size_t row = 0; row < self.buttons_.size(); ++row)
            put(*self.buttons_[row], self.bodyRect(), row);
    }
    static void drawBody(PopUpsCard& self, NSRect body)
    {
        drawNames(kRows, body);
        drawSaid(self.said_.get(), body, kRows.size() + 1); // beside what the segments say
    }
    static void choose(PopUpsCard& self, NSObject* sender)
    {
        const Ref<NSPopUpButton> button = cast<NSPopUpButton>(Ref<NSObject>(sender));
        self.said_ = NSString::cls().stringWithFormat(
            "“%@” was chosen"_ns, button->titleOfSelectedItem().get());
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
            { "choose:", imp<choose> },
        });
    }
};
BRINDLE_RECORD(PopUpsCard, Buttons)

template <> struct TabSidesCard::Methods<struct Tabs> {

    static constexpr std::array kTypes { NSTopTabsBezelBorder, NSLeftTabsBezelBorder,
        NSBottomTabsBezelBorder, NSRightTabsBezelBorder, NSNoTabsBezelBorder };

    static void addTab(TabSidesCard& self, NSString* name, NSString* text)
    {
        const Ref<NSTextField> label = NSTextField::cls().labelWithString(text);
        label->setAlignment(NSTextAlignmentCenter);
        const Ref<NSTabViewItem> item = alloc<NSTabViewItem>()->initWithIdentifier(name);
        item->setLabel(name);
        item->setView(label.get());
        self.tabs_->addTabViewItem(item.get());
    }
    static Ref<NSView> initWithFrame(TabSidesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<TabSidesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Tabs"_ns);
        self.setCaption("Labels stand upright at the sides; arrows go along them"_ns);
        const auto names = NSArray::cls().arrayWithObjects(
            "Top"_ns, "Left"_ns, "Bottom"_ns, "Right"_ns, "None"_ns);
        self.sides_
            = NSSegmentedControl::cls().segmentedControlWithLabels_trackingMode_target_action(
                names.get(), NSSegmentSwitchTrackingSelectOne, &self, selector<"chooseSide:">);
        self.sides_->setSelectedSegment(1);
        self.tabs_ = make<NSTabView>();
        addTab(self, "Morning"_ns, "Tea, and a walk along the river"_ns);
        addTab(self, "Noon"_ns, "Soup with bread"_ns);
        addTab(self, "Evening"_ns, "A book that does not end"_ns);
        self.addSubview(self.sides_.get());
        self.addSubview(self.tabs_.get());
        chooseSide(self, nullptr);
        return made;
    }
    static void chooseSide(TabSidesCard& self, NSObject*)
    {
        const NSInteger side = std::max<NSInteger>(self.sides_->selectedSegment(), 0);
        self.tabs_->setTabViewType(kTypes[static_cast<std::size_t>(side)]);
    }
    static void setFrameSize(TabSidesCard& self, NSSize size)
    {
        super<TabSidesCard, "setFrameSize:">(self, size);
        if (!self.tabs_)
            return;
        NSRect body = self.bodyRect();
        self.sides_->sizeToFit();
        self.sides_->setFrameOrigin(body.origin);
        takeTop(body, self.sides_->frame().size.height);
        self.tabs_->setFrame(body);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "chooseSide:", imp<chooseSide> },
        });
    }
};
BRINDLE_RECORD(TabSidesCard, Tabs)

}
