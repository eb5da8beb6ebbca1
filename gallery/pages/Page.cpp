// SPDX-License-Identifier: Apache-2.0
#include "Page.h"

#include "Gallery.h"
#include "Options.h"
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "foundation/NSArray.h"
#include "foundation/NSString.h"
#include "kit/Chip.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryPage::Methods<struct Frame> {

    static constexpr double kMargin = 24;
    static constexpr double kHeaderHeight = 84;

    static bool isFlipped(GalleryPage&) { return true; }
    static bool isOpaque(GalleryPage&) { return true; }
    static bool acceptsFirstResponder(GalleryPage&) { return true; }
    static bool canBecomeKeyView(GalleryPage&) { return false; } // Tab goes to what is on it
    static Ref<NSString> noText(GalleryPage&) { return ""_ns; }
    static void addCards(GalleryPage&) { }
    static void layOutIn(GalleryPage&, NSRect) { }
    static void chooseNext(GalleryPage&, NSInteger) { }

    static Ref<NSView> initWithFrame(GalleryPage& self, NSRect frame)
    {
        Ref<NSView> page = super<GalleryPage, "initWithFrame:", Ref<NSView>>(self, frame);
        self.addCards();
        self.code_ = addChip(&self, "Code"_ns, nullptr, forController<"toggleCode:">());
        self.dark_ = addChip(&self, "Dark"_ns, "d"_ns, forController<"switchAppearance:">());
        self.showOptions();
        return page;
    }

    static void setFrameSize(GalleryPage& self, NSSize size)
    {
        super<GalleryPage, "setFrameSize:">(self, size);
        if (!self.dark_)
            return;
        const double chips = self.code_->fittingWidth() + 8 + self.dark_->fittingWidth();
        layOutChips({ self.code_.get(), self.dark_.get() }, { size.width - kMargin - chips, 20 });
        self.layOutIn(NSMakeRect(kMargin, kHeaderHeight, size.width - 2 * kMargin,
            size.height - kHeaderHeight - kMargin));
    }

    template <Text S> static Block<void()> forController()
    {
        return [] {
            const Ref<NSObject> controller = NSApplication::cls().sharedApplication()->delegate();
            controller->send<S>(static_cast<NSObject*>(nullptr));
        };
    }
    static void showOptions(GalleryPage& self)
    {
        self.code_->setOn(options().showsCode_);
        self.dark_->setOn(isDark());
    }

    static void drawRect(GalleryPage& self, NSRect)
    {
        const Palette& colors = palette();
        const double width = self.bounds().size.width - 2 * kMargin;
        fill(self.bounds(), colors.window.get());
        drawText(self.pageTitle().get(), { kMargin, 20 }, Style::title, colors.text.get());
        drawFitted(
            self.pageCaption().get(), { kMargin, 54 }, width, Style::body, colors.quietText.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<isOpaque> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "canBecomeKeyView", imp<canBecomeKeyView> },
            { "showOptions", imp<showOptions> },
            { "pageTitle", imp<noText> },
            { "pageCaption", imp<noText> },
            { "addCards", imp<addCards> },
            { "layOutIn:", imp<layOutIn> },
            { "chooseNext:", imp<chooseNext> },
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(GalleryPage, Frame)

template <> struct GalleryPage::Methods<struct Keys> {

    static Ref<GalleryChip> chipOfKey(NSView* view, NSString* key)
    {
        for (NSView* part : each<NSView>(view->subviews())) {
            Ref<GalleryChip> found = part->isKindOfClass(GalleryChip::cls())
                ? Ref<GalleryChip>(static_cast<GalleryChip*>(part))
                : chipOfKey(part, key);
            if (found && key->isEqual(found->key().get()))
                return found;
        }
        return nullptr;
    }

    static void keyDown(GalleryPage& self, NSEvent* event)
    {
        const unichar key = keyOf(event);
        switch (key) {
        case NSLeftArrowFunctionKey:
            return self.chooseNext(-1);
        case NSRightArrowFunctionKey:
            return self.chooseNext(1);
        case NSPageUpFunctionKey:
            return controller()->turnPages(-1);
        case NSPageDownFunctionKey:
            return controller()->turnPages(1);
        default:
            break;
        }
        if (key >= u'1' && key <= u'9')
            controller()->showPage(key - u'1');
        else if (const Ref<GalleryChip> chip
            = key ? chipOfKey(&self, event->charactersIgnoringModifiers().get()) : nullptr)
            chip->press();
        else
            super<GalleryPage, "keyDown:">(self, event);
    }

    static void table(Builder& t) { t.methods({ { "keyDown:", imp<keyDown> } }); }
};
BRINDLE_RECORD(GalleryPage, Keys)

unichar keyOf(NSEvent* event)
{
    const Ref<NSString> text = event->charactersIgnoringModifiers();
    return maybe(text)->length() == 1 ? text->characterAtIndex(0) : 0;
}

}
