// SPDX-License-Identifier: Apache-2.0
#include "Card.h"

#include "Drawing.h"
#include "Palette.h"
#include "appkit/NSButton.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryCard::Methods<struct Sheet> {

    static constexpr double kMargin = 16;
    static constexpr double kHeadingHeight = 44;
    static constexpr double kButton = 24; // the width that the heading leaves

    static bool isFlipped(GalleryCard&) { return true; }

    static Ref<NSView> initWithFrame(GalleryCard& self, NSRect frame)
    {
        Ref<NSView> made = super<GalleryCard, "initWithFrame:", Ref<NSView>>(self, frame);
        const Ref<NSButton> button
            = NSButton::cls().buttonWithTitle_target_action("{ }"_ns, &self, selector<"showCode:">);
        button->setBezelStyle(NSRecessedBezelStyle);
        button->setShowsBorderOnlyWhileMouseInside(true);
        button->setControlSize(NSControlSizeSmall);
        button->setFont(fontOf(Style::code).get());
        button->setRefusesFirstResponder(true);
        button->setToolTip("Show the code of this card"_ns);
        button->sizeToFit();
        self.codeButton_ = Ref<NSView>(button);
        self.addSubview(button.get());
        return made;
    }
    static void showCode(GalleryCard& self, NSObject*)
    {
        self.tryToPerform_with(selector<"showCodeOf:">, &self); // the window's delegate
    }
    static void setFrameSize(GalleryCard& self, NSSize size)
    {
        super<GalleryCard, "setFrameSize:">(self, size);
        if (!self.codeButton_)
            return;
        const NSSize button = self.codeButton_->frame().size;
        self.codeButton_->setFrameOrigin({ size.width - button.width - 8, 10 });
    }

    static NSRect bodyRect(GalleryCard& self)
    {
        const NSRect b = self.bounds();
        return NSMakeRect(kMargin, kMargin + kHeadingHeight, b.size.width - 2 * kMargin,
            b.size.height - 2 * kMargin - kHeadingHeight);
    }

    static void drawRect(GalleryCard& self, NSRect)
    {
        const Palette& colors = palette();
        fillRounded(self.bounds(), 10, colors.card.get());
        strokeRounded(self.bounds(), 10, colors.border.get());
        const double width = self.bounds().size.width - 2 * kMargin;
        drawFitted(self.heading_.get(), { kMargin, kMargin }, width - kButton, Style::heading,
            colors.text.get());
        drawFitted(self.caption_.get(), { kMargin, kMargin + 19 }, width, Style::caption,
            colors.quietText.get());
        self.drawBody(self.bodyRect());
    }

    static void drawBody(GalleryCard&, NSRect) { }

    static void table(Builder& t)
    {
        t.properties({
            property<&GalleryCard::heading_>("heading", copied, nonatomic),
            property<&GalleryCard::caption_>("caption", copied, nonatomic),
        });
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "showCode:", imp<showCode> },
            { "bodyRect", imp<bodyRect> },
            { "drawRect:", imp<drawRect> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(GalleryCard, Sheet)

void layOutRow(std::initializer_list<NSView*> views, NSRect row)
{
    const auto count = static_cast<double>(views.size());
    const double width = (row.size.width - (count - 1) * kCardGap) / count;
    for (NSView* view : views)
        view->setFrame(takeLeft(row, width));
}

void layOutColumn(std::initializer_list<NSView*> views, NSRect column)
{
    const auto count = static_cast<double>(views.size());
    const double height = (column.size.height - (count - 1) * kCardGap) / count;
    for (NSView* view : views)
        view->setFrame(takeTop(column, height));
}

NSRect takeTop(NSRect& room, double height)
{
    const NSRect piece = NSMakeRect(room.origin.x, room.origin.y, room.size.width, height);
    room.origin.y += height + kCardGap;
    room.size.height -= height + kCardGap;
    return piece;
}

NSRect takeBottom(NSRect& room, double height)
{
    room.size.height -= height + kCardGap;
    return NSMakeRect(room.origin.x, NSMaxY(room) + kCardGap, room.size.width, height);
}

NSRect takeLeft(NSRect& room, double width)
{
    const NSRect piece = NSMakeRect(room.origin.x, room.origin.y, width, room.size.height);
    room.origin.x += width + kCardGap;
    room.size.width -= width + kCardGap;
    return piece;
}

}
