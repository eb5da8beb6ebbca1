// SPDX-License-Identifier: Apache-2.0
#include "CodePane.h"

#include "Drawing.h"
#include "Highlighting.h"
#include "Palette.h"
#include "appkit/NSClipView.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSPasteboard.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct CodePane::Methods<struct Parts> {

    static constexpr double kBar = 44;
    static constexpr double kMargin = 16;
    static constexpr double kEndless = 1e6;

    static bool isFlipped(CodePane&) { return true; }
    static bool isOpaque(CodePane&) { return true; }

    static void makeText(CodePane& self)
    {
        self.scroll_ = make<NSScrollView>();
        self.scroll_->setHasVerticalScroller(true);
        self.scroll_->setHasHorizontalScroller(true);
        self.scroll_->setScrollerStyle(NSScrollerStyleOverlay);
        self.scroll_->setBorderType(NSNoBorder);
        self.text_
            = cast<NSTextView>(alloc<NSTextView>()->initWithFrame(NSMakeRect(0, 0, 100, 100)));
        self.text_->setEditable(false);
        self.text_->setTextContainerInset({ kMargin - 5, 10 });
        self.text_->setMaxSize({ kEndless, kEndless });
        self.text_->setVerticallyResizable(true);
        self.text_->setHorizontallyResizable(true); // lines are as long as they were written
        const Ref<NSTextContainer> container = self.text_->textContainer();
        container->setWidthTracksTextView(false);
        container->setContainerSize({ kEndless, kEndless });
        self.scroll_->setDocumentView(self.text_.get());
        self.addSubview(self.scroll_.get());
    }
    static Ref<NSView> initWithFrame(CodePane& self, NSRect frame)
    {
        Ref<NSView> made = super<CodePane, "initWithFrame:", Ref<NSView>>(self, frame);
        self.files_ = make<NSPopUpButton>();
        self.files_->setTarget(&self);
        self.files_->setAction(selector<"chooseFile:">);
        self.addSubview(self.files_.get());
        self.copy_ = addChip(&self, "Copy"_ns, nullptr, sending<"copyAll">(&self));
        self.close_ = addChip(&self, "Close"_ns, nullptr, sending<"close">(&self));
        makeText(self);
        return made;
    }
    static void setFrameSize(CodePane& self, NSSize size)
    {
        super<CodePane, "setFrameSize:">(self, size);
        if (!self.scroll_)
            return;
        const double chips = self.copy_->fittingWidth() + 8 + self.close_->fittingWidth();
        const double room = size.width - 2 * kMargin - chips - 12;
        self.files_->setFrame(NSMakeRect(kMargin - 2, 10, std::min(room, 220.0), 25));
        layOutChips({ self.copy_.get(), self.close_.get() }, { size.width - kMargin - chips, 8 });
        self.scroll_->setFrame(NSMakeRect(0, kBar, size.width, size.height - kBar));
        self.text_->setMinSize(self.scroll_->contentSize());
        self.text_->sizeToFit();
    }
    static void drawRect(CodePane& self, NSRect)
    {
        const Palette& colors = palette();
        const NSRect b = self.bounds();
        fill(b, colors.sidebar.get());
        fill(NSMakeRect(0, kBar - 1, b.size.width, 1), colors.border.get());
    }

    static void chooseFile(CodePane& self, NSObject*)
    {
        const NSInteger file = self.files_->indexOfSelectedItem();
        if (file >= 0)
            self.show(static_cast<std::size_t>(file));
    }
    /// Copies what is selected, or else the whole file.
    static void copyAll(CodePane& self)
    {
        if (self.text_->selectedRange().length > 0)
            return self.text_->copy(&self);
        const Ref<NSPasteboard> board = NSPasteboard::cls().generalPasteboard();
        board->clearContents();
        board->setString_forType(self.text_->string().get(), NSPasteboardTypeString);
    }
    static void close(CodePane& self)
    {
        self.tryToPerform_with(selector<"toggleCode:">, &self); // the window's delegate
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&CodePane::text_>("text", readonly, nonatomic),
            property<&CodePane::files_>("files", readonly, nonatomic),
        });
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<isOpaque> },
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawRect:", imp<drawRect> },
            { "chooseFile:", imp<chooseFile> },
            { "copyAll", imp<copyAll> },
            { "close", imp<close> },
        });
    }
};
BRINDLE_RECORD(CodePane, Parts)

void CodePane::showPage(std::string_view folder)
{
    sources_ = sourcesOf(folder);
    files_->removeAllItems();
    std::size_t first = 0;
    for (std::size_t i = sources_.size(); i-- > 0;) {
        if (sources_[i].name.ends_with("Card.cpp") || sources_[i].name.ends_with("Cards.cpp"))
            first = i;
    }
    for (const SourceFile& file : sources_)
        files_->addItemWithTitle(stringFrom(std::string(file.name)).get());
    show(first);
}

void CodePane::show(std::size_t file)
{
    if (file >= sources_.size())
        return;
    shown_ = file;
    files_->selectItemAtIndex(static_cast<NSInteger>(file));
    text_->setSelectedRange(NSMakeRange(0, 0));
    takeColors();
    text_->setMinSize(scroll_->contentSize());
    text_->sizeToFit();
    scrollTo(0);
}

void CodePane::scrollTo(double y)
{
    const Ref<NSClipView> clip = scroll_->contentView();
    clip->scrollToPoint({ 0, y });
    scroll_->reflectScrolledClipView(clip.get());
}

void CodePane::showClass(std::string_view name)
{
    const std::string begin = "struct " + std::string(name) + "::Methods<";
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        const std::size_t at = sources_[i].text.find(begin);
        if (at == std::string_view::npos)
            continue;
        show(i);
        const Ref<NSString> before = stringFrom(std::string(sources_[i].text.substr(0, at)));
        const NSRect line = text_->layoutManager()->boundingRectForGlyphRange_inTextContainer(
            NSMakeRange(before->length(), 1), text_->textContainer().get());
        return scrollTo(line.origin.y);
    }
}

void CodePane::takeColors()
{
    text_->setBackgroundColor(palette().card.get());
    scroll_->setBackgroundColor(palette().card.get());
    if (shown_ < sources_.size())
        text_->textStorage()->setAttributedString(highlighted(sources_[shown_].text).get());
    setNeedsDisplay(true);
}

}
