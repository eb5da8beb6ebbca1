// SPDX-License-Identifier: Apache-2.0
#include "MenuTableCard.h"

#include <array>

#include "appkit/NSTableHeaderView.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"
#include "viewkit/NSTableCellView+BRExtensions.h"
#include "viewkit/NSTableView+UICode.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr std::array kEntries { "New workshop", "Open a drawing", "Open recent", "Save",
        "Save a copy", "Send to the printer", "Export as a picture", "Page layout", "Undo", "Redo",
        "Cut", "Copy", "Paste", "Select all", "Find", "Preferences" };

    Ref<NSString> entry(NSInteger row)
    {
        return NSString::cls().stringWithUTF8String(kEntries[static_cast<std::size_t>(row)]);
    }

}

template <> struct MenuEntryView::Methods<struct Drawing> {
    // A row that was tapped is light in every appearance.
    static Ref<NSColor> ink(MenuEntryView& self)
    {
        const Ref<NSTableView> table = superTableView(self);
        if (!isSelected(self) || !table)
            return palette().text;
        const bool hovers
            = static_cast<BRMenuTableView&>(*table).menuHoverMode() == BRMenuHoverModeHover;
        return textColorForBackgroundStyle(
            MenuEntryView::cls(), hovers ? relevantBackgroundStyle(self) : NSBackgroundStyleLight);
    }
    static bool isFlipped(MenuEntryView&) { return true; }
    static void drawRect(MenuEntryView& self, NSRect)
    {
        const Ref<NSString> text = cast<NSString>(self.objectValue());
        const double height = sizeOf(text.get(), Style::body).height;
        drawFitted(text.get(), { 10, (self.bounds().size.height - height) / 2 },
            self.bounds().size.width - 20, Style::body, ink(self).get());
    }
    static void table(Builder& t)
    {
        t.methods({ { "isFlipped", imp<isFlipped> }, { "drawRect:", imp<drawRect> } });
    }
};
BRINDLE_RECORD(MenuEntryView, Drawing)

template <> struct MenuEntries::Methods<struct Content> {

    static NSInteger numberOfRows(MenuEntries&, NSTableView*)
    {
        return static_cast<NSInteger>(kEntries.size());
    }
    static Ref<NSView> viewFor(MenuEntries&, NSTableView* table, NSTableColumn*, NSInteger row)
    {
        Ref<NSView> view = table->makeViewWithIdentifier_owner("ENTRY"_ns, nullptr);
        if (!view) {
            view = make<MenuEntryView>();
            setIdentifier(view, "ENTRY"_ns);
        }
        static_cast<NSTableCellView&>(*view).setObjectValue(entry(row).get());
        return view;
    }
    static void wasTapped(MenuEntries& self, NSTableView* table)
    {
        const NSInteger row = table->selectedRow();
        self.tapped_ = row < 0 ? nullptr : entry(row);
        maybe(self.card_.get())->setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "numberOfRowsInTableView:", imp<numberOfRows> },
            { "tableView:viewForTableColumn:row:", imp<viewFor> },
            { "menuWasTapped:", imp<wasTapped> },
        });
    }
};
BRINDLE_RECORD(MenuEntries, Content)

template <> struct MenuTableCard::Methods<struct Menu> {

    static Ref<NSView> initWithFrame(MenuTableCard& self, NSRect frame)
    {
        self.setHeading("Menu table"_ns);
        self.setCaption("It follows the pointer, and a click taps"_ns);
        self.menu_
            = cast<BRMenuTableView>(initIncScrollView(alloc<BRMenuTableView>(), &self.scroll_));
        self.menu_->setHeaderView(nullptr);
        self.menu_->setRowHeight(34);
        self.menu_->setIntercellSpacing(NSZeroSize);
        self.menu_->setAllowsTypeSelect(false); // letters are the page's
        self.scroll_->setHasVerticalScroller(true);
        self.scroll_->setBorderType(NSLineBorder);
        self.addSubview(self.scroll_.get());
        self.entries_ = make<MenuEntries>();
        self.entries_->card_ = &self;
        self.menu_->setDelegate(self.entries_.get());
        self.menu_->setDataSource(self.entries_.get());
        self.menu_->setTapTarget(self.entries_.get());
        self.menu_->setTapAction(selector<"menuWasTapped:">);
        self.menu_->reloadData();
        return super<MenuTableCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(MenuTableCard& self, NSSize size)
    {
        super<MenuTableCard, "setFrameSize:">(self, size);
        if (!self.scroll_)
            return;
        NSRect body = self.bodyRect();
        takeBottom(body, 16);
        self.scroll_->setFrame(body);
    }
    static void drawBody(MenuTableCard& self, NSRect body)
    {
        const Ref<NSString> text = self.entries_->tapped_
            ? NSString::cls().stringWithFormat("Tapped: %@"_ns, self.entries_->tapped_)
            : Ref<NSString>("Nothing tapped yet"_ns);
        drawFitted(text.get(), { body.origin.x, NSMaxY(body) - 16 }, body.size.width,
            Style::caption, palette().quietText.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(MenuTableCard, Menu)

}
