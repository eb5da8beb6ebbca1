// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "FileListViewPrivate.h"
#include "appkit/NSClipView.h"
#include "appkit/NSScrollView.h"
#include "foundation/Clock.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr CGFloat kRow = 22; // height of a row
    constexpr NSSize kTile { 104, 98 };

    Ref<NSClipView> clipOf(FileListView& view)
    {
        const Ref<NSView> above = view.superview();
        return above && above->isKindOfClass(NSClipView::cls()) ? cast<NSClipView>(above) : nullptr;
    }

}

void FileList::connect(FileListView& view, std::shared_ptr<files::Browser> browser)
{
    view.browser_ = std::move(browser);
}
void FileList::setLook(FileListView& view, files::Look look)
{
    if (view.look_ == look)
        return;
    view.look_ = look;
    resize(view);
    showSelection(view);
}
void FileList::setHidesExtensions(FileListView& view, bool hides)
{
    view.hidesExtensions_ = hides;
    view.setNeedsDisplay(true);
}

// ---- places of entries

std::size_t FileList::perRow(FileListView& view)
{
    if (view.look_ == files::Look::list)
        return 1;
    const CGFloat fits = std::floor(view.bounds().size.width / kTile.width);
    return static_cast<std::size_t>(std::clamp(fits, 1.0, 1000.0));
}
NSRect FileList::rectOf(FileListView& view, std::size_t index)
{
    const CGFloat width = view.bounds().size.width;
    if (view.look_ == files::Look::list)
        return { { 0, static_cast<CGFloat>(index) * kRow }, { width, kRow } };
    const std::size_t columns = perRow(view);
    const CGFloat gap
        = (width - static_cast<CGFloat>(columns) * kTile.width) / static_cast<CGFloat>(columns + 1);
    const CGFloat left = std::max(0.0, gap)
        + static_cast<CGFloat>(index % columns) * (kTile.width + std::max(0.0, gap));
    return { { std::floor(left), static_cast<CGFloat>(index / columns) * kTile.height }, kTile };
}
std::size_t FileList::indexAt(FileListView& view, NSPoint point)
{
    const std::size_t count = view.browser_ ? view.browser_->count() : 0;
    const CGFloat height = view.look_ == files::Look::list ? kRow : kTile.height;
    if (!(point.y >= 0) || point.y / height > static_cast<CGFloat>(count))
        return count;
    const std::size_t first = static_cast<std::size_t>(point.y / height) * perRow(view);
    for (std::size_t i = first; i < std::min(count, first + perRow(view)); ++i) {
        if (NSPointInRect(point, rectOf(view, i)))
            return i;
    }
    return count;
}

void FileList::resize(FileListView& view)
{
    const Ref<NSClipView> clip = clipOf(view);
    const NSSize room = clip ? clip->bounds().size : view.frame().size;
    if (view.frame().size.width != room.width) // how many fit in a row depends on it
        view.setFrameSize({ room.width, view.frame().size.height });
    const std::size_t count = view.browser_ ? view.browser_->count() : 0;
    const CGFloat needed = count == 0 ? 0 : NSMaxY(rectOf(view, count - 1));
    view.setFrameSize({ room.width, std::max(room.height, needed) });
    view.setNeedsDisplay(true);
}
void FileList::showSelection(FileListView& view)
{
    view.setNeedsDisplay(true);
    if (!view.browser_ || view.browser_->selection().empty())
        return;
    const std::size_t lead = view.browser_->lead();
    if (lead < view.browser_->count())
        scrollRectToVisible(view, rectOf(view, lead));
}

bool FileList::type(FileListView& view, std::u16string_view text)
{
    constexpr double kPause = 1; // seconds, after which a new name begins
    const double now = Clock::uptime();
    if (now - view.typedAt_ > kPause)
        view.typed_.clear();
    view.typedAt_ = now;
    view.typed_ += text;
    return view.browser_ && view.browser_->selectByPrefix(view.typed_);
}

template <> struct FileListView::Methods<struct Acting> {

    using Extend = files::Extend;

    static bool yes(FileListView&) { return true; }
    static bool takesMouse(FileListView&, NSEvent*) { return true; }
    static void drawRect(FileListView& self, NSRect dirty) { FileList::draw(self, dirty); }
    static bool focusChanged(FileListView& self)
    {
        self.setNeedsDisplay(true);
        return true;
    }

    static Extend extendFor(NSEventModifierFlags flags)
    {
        return flags & NSShiftKeyMask  ? Extend::to
            : flags & NSCommandKeyMask ? Extend::toggling
                                       : Extend::no;
    }
    static void mouseDown(FileListView& self, NSEvent* event)
    {
        const std::shared_ptr<files::Browser> browser = self.browser_;
        if (!event || !browser)
            return;
        const NSPoint point = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        const std::size_t index = FileList::indexAt(self, point);
        if (index == browser->count()) {
            if (extendFor(event->modifierFlags()) == Extend::no)
                browser->clearSelection();
            return;
        }
        if (event->clickCount() == 2 && browser->isSelected(index)) {
            if (!browser->goDown())
                browser->confirm();
            return;
        }
        browser->select(index, extendFor(event->modifierFlags()));
    }

    /// How many rows a page has.
    static std::ptrdiff_t page(FileListView& self)
    {
        const NSRect shown = self.visibleRect();
        const CGFloat height = FileList::rectOf(self, 0).size.height;
        const auto rows
            = static_cast<std::ptrdiff_t>(std::max(1.0, shown.size.height / height - 1));
        return rows * static_cast<std::ptrdiff_t>(FileList::perRow(self));
    }
    static bool moveBy(FileListView& self, unichar key, Extend extend)
    {
        files::Browser& browser = *self.browser_;
        const auto row = static_cast<std::ptrdiff_t>(FileList::perRow(self));
        const bool isList = self.look_ == files::Look::list;
        switch (key) {
        case NSUpArrowFunctionKey:
            return browser.move(-row, extend), true;
        case NSDownArrowFunctionKey:
            return browser.move(row, extend), true;
        case NSLeftArrowFunctionKey:
            return isList ? browser.goUp() : browser.move(-1, extend), true;
        case NSRightArrowFunctionKey:
            if (isList)
                browser.goDown();
            else
                browser.move(1, extend);
            return true;
        case NSHomeFunctionKey:
            return browser.selectFirst(extend), true;
        case NSEndFunctionKey:
            return browser.selectLast(extend), true;
        case NSPageUpFunctionKey:
            return browser.move(-page(self), extend), true;
        case NSPageDownFunctionKey:
            return browser.move(page(self), extend), true;
        default:
            return false;
        }
    }
    static void keyDown(FileListView& self, NSEvent* event)
    {
        const Ref<NSString> plain = maybe(event)->charactersIgnoringModifiers();
        const std::u16string text = utf16Of(maybe(event)->characters());
        const NSEventModifierFlags flags = maybe(event)->modifierFlags();
        if (!self.browser_ || maybe(plain)->length() == 0)
            return super<FileListView, "keyDown:">(self, event);
        const unichar key = plain->characterAtIndex(0);
        const bool isHeld = (flags & (NSCommandKeyMask | NSControlKeyMask)) != 0;
        if (!isHeld && moveBy(self, key, flags & NSShiftKeyMask ? Extend::to : Extend::no))
            return;
        const bool isText = !text.empty() && text[0] > 0x20 && text[0] != 0x7F
            && !(text[0] >= 0xF700 && text[0] <= 0xF8FF);
        const bool isSpace = text == u" " && !self.typed_.empty();
        if (isHeld || !(isText || isSpace))
            return super<FileListView, "keyDown:">(self, event);
        if ((text == u"/" || text == u"~")
            && self.tryToPerform_with(
                selector<"beginPathEntry:">, stringFrom(std::u16string_view(text)).get()))
            return;
        FileList::type(self, text);
    }
    static void selectAll(FileListView& self, NSObject*)
    {
        if (self.browser_)
            self.browser_->selectAll();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<yes> },
            { "isOpaque", imp<yes> },
            { "acceptsFirstResponder", imp<yes> },
            { "acceptsFirstMouse:", imp<takesMouse> },
            { "becomeFirstResponder", imp<focusChanged> },
            { "resignFirstResponder", imp<focusChanged> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
            { "keyDown:", imp<keyDown> },
            { "selectAll:", imp<selectAll> },
        });
    }
};
BRINDLE_RECORD(FileListView, Acting)

}
