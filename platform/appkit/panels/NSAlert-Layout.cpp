// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "NSAlertPrivate.h"
#include "appkit/NSButton.h"
#include "appkit/NSColor.h"
#include "appkit/NSCustomImageRep.h"
#include "appkit/NSFont.h"
#include "appkit/NSImage.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextField.h"
#include "appkit/NSTextView.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    // The measures of an alert, in points.
    constexpr CGFloat kMargin = 20;
    constexpr CGFloat kIcon = 56;
    constexpr CGFloat kTextWidth = 340;
    constexpr CGFloat kWidest = 640;
    constexpr CGFloat kGap = 16; // between icon and text, and above the buttons
    constexpr CGFloat kSmallGap = 8; // between texts, and between buttons
    constexpr CGFloat kLeastButton = 84;
    constexpr CGFloat kButtonHeight = 26;
    constexpr CGFloat kTallestText = 260; // taller ones are scrolled

    constexpr CGFloat kTextLeft = kMargin + kIcon + kGap;

}

/// Shows the alert's icon.
class AlertIconView : public NSView {
    BRINDLE_OBJECT(AlertIconView, NSView)

public:
    Ref<NSImage> image_;
};
template <> struct AlertIconView::Methods<struct Drawing> {
    static void drawRect(AlertIconView& self, NSRect)
    {
        if (self.image_)
            self.image_->drawInRect(self.bounds());
    }
    static void table(Builder& t) { t.methods({ { "drawRect:", imp<drawRect> } }); }
};
BRINDLE_RECORD(AlertIconView, Drawing)

namespace {

    Ref<NSTextField> textOf(NSString* text, NSFont* font, CGFloat width)
    {
        Ref<NSTextField> field = NSTextField::cls().wrappingLabelWithString(text);
        field->setSelectable(false);
        field->setFont(font);
        const NSSize size = field->cell()->cellSizeForBounds({ {}, { width, 1e7 } });
        field->setFrameSize({ width, std::ceil(size.height) });
        return field;
    }
    Ref<NSView> scrolled(NSString* text, NSFont* font, CGFloat width)
    {
        Ref<NSScrollView> scroll = cast<NSScrollView>(
            alloc<NSScrollView>()->initWithFrame({ {}, { width, kTallestText } }));
        scroll->setHasVerticalScroller(true);
        scroll->setBorderType(NSLineBorder);
        const NSSize room = scroll->contentSize();
        const Ref<NSTextView> view
            = cast<NSTextView>(alloc<NSTextView>()->initWithFrame({ {}, room }));
        view->setEditable(false);
        view->setFont(font);
        view->setString(text);
        view->setAutoresizingMask(NSViewWidthSizable);
        scroll->setDocumentView(view.get());
        return scroll;
    }
    /// Answers a text's view, its height bounded.
    Ref<NSView> paragraph(NSString* text, NSFont* font, CGFloat width)
    {
        // What is this long is not laid out twice to find that it is too tall.
        constexpr NSUInteger kLongest = 8000;
        if (maybe(text)->length() > kLongest)
            return scrolled(text, font, width);
        Ref<NSTextField> field = textOf(text, font, width);
        if (field->frame().size.height <= kTallestText)
            return field;
        return scrolled(text, font, width);
    }

    /// Puts views one below the other, and says how far it has come.
    class Column {
    public:
        void add(const Ref<NSView>& view, CGFloat left, CGFloat gapAbove)
        {
            if (!view)
                return;
            if (!places_.empty())
                height_ += gapAbove;
            places_.push_back({ view, left, height_ });
            height_ += view->frame().size.height;
        }
        CGFloat height() const { return height_; }
        /// Adds the views to a parent whose y grows upward, the first with its top at `top`.
        void addTo(NSView& parent, CGFloat top) const
        {
            for (const Place& place : places_) {
                place.view->setFrameOrigin({ place.left,
                    std::round(top - place.above - place.view->frame().size.height) });
                parent.addSubview(place.view.get());
            }
        }

    private:
        struct Place {
            Ref<NSView> view;
            CGFloat left;
            CGFloat above;
        };
        std::vector<Place> places_;
        CGFloat height_ = 0;
    };

    /// The buttons: in a row that ends at the right, or below each other where that is too wide.
    struct ButtonRow {
        explicit ButtonRow(const std::vector<Ref<NSButton>>& all)
            : buttons(all)
        {
            for (const Ref<NSButton>& button : buttons) {
                button->sizeToFit();
                const CGFloat width = std::max(kLeastButton, button->frame().size.width);
                button->setFrameSize({ width, kButtonHeight });
                widest = std::max(widest, width);
                width_ += width + kSmallGap;
            }
            width_ -= kSmallGap;
        }
        bool isStacked() const { return width_ > kWidest - 2 * kMargin; }
        CGFloat neededWidth() const
        {
            return isStacked() ? std::min(widest, kWidest - 2 * kMargin) : width_;
        }
        CGFloat height() const
        {
            const auto rows = isStacked() ? static_cast<CGFloat>(buttons.size()) : 1;
            return rows * (kButtonHeight + kSmallGap) - kSmallGap;
        }
        void addTo(NSView& parent, CGFloat width) const
        {
            CGFloat right = width - kMargin;
            CGFloat low = kMargin + height() - kButtonHeight;
            for (const Ref<NSButton>& button : buttons) {
                if (isStacked()) {
                    button->setFrame({ { kMargin, low }, { width - 2 * kMargin, kButtonHeight } });
                    low -= kButtonHeight + kSmallGap;
                } else {
                    right -= button->frame().size.width;
                    button->setFrameOrigin({ right, low });
                    right -= kSmallGap;
                }
                parent.addSubview(button.get());
            }
        }

        const std::vector<Ref<NSButton>>& buttons;
        CGFloat widest = 0;

    private:
        CGFloat width_ = 0;
    };

}

void AlertAccess::arrange(NSAlert& alert)
{
    const Ref<NSWindow> window = alert.window();
    const Ref<NSView> content = window->contentView();
    content->setSubviews(NSArray::cls().array().get());

    const ButtonRow row(buttons(alert));
    const Ref<NSView> accessory = alert.accessoryView();
    CGFloat textWidth = std::max(kTextWidth, row.neededWidth() + kMargin - kTextLeft);
    if (accessory)
        textWidth = std::max(textWidth, accessory->frame().size.width);
    const CGFloat width = kTextLeft + textWidth + kMargin;

    Column texts;
    const Ref<NSFont> bold = NSFont::cls().boldSystemFontOfSize(13);
    texts.add(paragraph(alert.messageText().get(), bold.get(), textWidth), kTextLeft, 0);
    if (const Ref<NSString> information = alert.informativeText(); maybe(information)->length())
        texts.add(paragraph(information.get(), NSFont::cls().systemFontOfSize(12).get(), textWidth),
            kTextLeft, kSmallGap);
    texts.add(accessory, kTextLeft, kGap);
    if (alert.showsSuppressionButton()) {
        alert.suppressionButton()->sizeToFit();
        texts.add(alert.suppressionButton(), kTextLeft, kGap);
    }

    const CGFloat body = std::max(texts.height(), kIcon);
    const CGFloat height = kMargin + body + kGap + row.height() + kMargin;
    window->setContentSize({ width, height });
    const CGFloat top = height - kMargin;
    const Ref<AlertIconView> icon = cast<AlertIconView>(
        alloc<AlertIconView>()->initWithFrame({ { kMargin, top - kIcon }, { kIcon, kIcon } }));
    icon->image_ = alert.icon();
    content->addSubview(icon.get());
    // A single line stands beside the middle of the icon.
    texts.addTo(*content, top - std::max(0.0, std::round((kIcon - texts.height()) / 2)));
    row.addTo(*content, width);

    window->recalculateKeyViewLoop();
    const bool hasField = accessory && accessory->canBecomeKeyView();
    window->setInitialFirstResponder(hasField ? accessory.get() : row.buttons.front().get());
}

}
