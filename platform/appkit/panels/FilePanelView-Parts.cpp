// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "FilePanelViewPrivate.h"
#include "FilePicturesPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphics.h"
#include "appkit/NSImage.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/application/PhrasesPrivate.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/NSAttributedString.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    Ref<NSAttributedString> small(NSString* text, NSColor* color, bool bold = false)
    {
        const Ref<NSFont> font
            = bold ? NSFont::cls().boldSystemFontOfSize(12) : NSFont::cls().systemFontOfSize(12);
        return files::styled(text, font.get(), color);
    }

}

// ---- the path

void FilePathView::layOut()
{
    constexpr CGFloat kBetween = 18; // for the sign between two steps
    steps_.clear();
    if (!browser_ || browser_->folder().empty())
        return;
    const std::string& folder = browser_->folder();
    std::vector<Step> all { { phrase("Computer"_ns), "/", {} } };
    for (std::size_t at = 1; at < folder.size();) {
        const std::size_t end = std::min(folder.find('/', at), folder.size());
        const Ref<NSString> name = stringFrom(folder.substr(at, end - at));
        all.push_back({ name ? name : Ref<NSString>("?"_ns), folder.substr(0, end), {} });
        at = end + 1;
    }
    CGFloat room = bounds().size.width - kBetween;
    std::size_t first = all.size();
    while (first > 0) { // the last ones are what matters
        const bool isLast = first == all.size();
        Step& step = all[first - 1];
        const CGFloat width
            = controls::sizeOf(small(step.name.get(), nullptr, isLast).get()).width + 4;
        if (width > room && !isLast)
            break;
        step.place.size = { std::min(width, room), bounds().size.height };
        room -= width + kBetween;
        --first;
    }
    CGFloat left = first > 0 ? kBetween : 0;
    for (std::size_t i = first; i < all.size(); ++i) {
        all[i].place.origin.x = left;
        left += all[i].place.size.width + kBetween;
        steps_.push_back(std::move(all[i]));
    }
}

template <> struct FilePathView::Methods<struct Steps> {

    static bool yes(FilePathView&) { return true; }
    static bool takesMouse(FilePathView&, NSEvent*) { return true; }
    static void drawSign(CGFloat left, CGFloat middle)
    {
        const NSPoint sign[]
            = { { left + 6, middle - 4 }, { left + 10, middle }, { left + 6, middle + 4 } };
        controls::strokeLine(
            sign, std::size(sign), 1.2, controls::shadeOf(NSColor::cls().tertiaryLabelColor()));
    }
    static void drawRect(FilePathView& self, NSRect)
    {
        self.layOut();
        for (const Step& step : self.steps_) {
            const bool isLast = &step == &self.steps_.back();
            if (NSMinX(step.place) > 0)
                drawSign(NSMinX(step.place) - 17, NSMidY(step.place));
            const Ref<NSColor> color
                = isLast ? NSColor::cls().controlTextColor() : NSColor::cls().secondaryLabelColor();
            controls::drawText(small(step.name.get(), color.get(), isLast).get(),
                NSInsetRect(step.place, 2, 0), NSTextAlignmentLeft);
        }
    }
    static void mouseDown(FilePathView& self, NSEvent* event)
    {
        if (!event || !self.browser_)
            return;
        self.layOut();
        const NSPoint point = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        for (const Step& step : self.steps_) {
            if (!NSPointInRect(point, step.place))
                continue;
            const std::string path = step.path; // showing it makes the steps anew
            return self.browser_->show(path);
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<yes> },
            { "acceptsFirstMouse:", imp<takesMouse> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
        });
    }
};
BRINDLE_RECORD(FilePathView, Steps)

// ---- the places

template <> struct FilePlacesView::Methods<struct Lines> {

    static constexpr CGFloat kLine = 26;

    static bool yes(FilePlacesView&) { return true; }
    static bool takesMouse(FilePlacesView&, NSEvent*) { return true; }
    static NSRect lineAt(FilePlacesView& self, std::size_t index)
    {
        return { { 0, 6 + static_cast<CGFloat>(index) * kLine },
            { self.bounds().size.width, kLine } };
    }
    static void drawPlace(const files::Place& place, NSRect line, bool isShown)
    {
        if (isShown)
            controls::fillRounded(NSInsetRect(line, 8, 1), 5,
                controls::shadeOf(NSColor::cls().unemphasizedSelectedContentBackgroundColor()));
        const controls::Shade accent = controls::shadeOf(NSColor::cls().controlAccentColor());
        controls::drawImage(files::pictureOf(static_cast<files::Sign>(place.sign)).get(),
            { { 17, NSMidY(line) - 8 }, { 16, 16 } }, accent, 1);
        const Ref<NSString> name = stringFrom(place.name);
        controls::drawText(small(name.get(), NSColor::cls().controlTextColor().get()).get(),
            { { 40, NSMinY(line) }, { line.size.width - 40 - 12, kLine } }, NSTextAlignmentLeft);
    }
    static void drawHeading(const files::Place& place, NSRect line)
    {
        const Ref<NSString> english = stringFrom(place.name);
        const Ref<NSAttributedString> text = files::styled(phrase(english.get()).get(),
            NSFont::cls().boldSystemFontOfSize(11).get(),
            NSColor::cls().tertiaryLabelColor().get());
        controls::drawText(text.get(), NSInsetRect(line, 14, 0), NSTextAlignmentLeft);
    }
    static void drawRect(FilePlacesView& self, NSRect)
    {
        for (std::size_t i = 0; i < self.places_.size(); ++i) {
            const files::Place& place = self.places_[i];
            if (place.path.empty())
                drawHeading(place, lineAt(self, i));
            else
                drawPlace(
                    place, lineAt(self, i), self.browser_ && self.browser_->folder() == place.path);
        }
    }
    static void mouseDown(FilePlacesView& self, NSEvent* event)
    {
        if (!event || !self.browser_)
            return;
        const NSPoint point = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        for (std::size_t i = 0; i < self.places_.size(); ++i) {
            if (NSPointInRect(point, lineAt(self, i)) && !self.places_[i].path.empty())
                return self.browser_->show(self.places_[i].path);
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<yes> },
            { "acceptsFirstMouse:", imp<takesMouse> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
        });
    }
};
BRINDLE_RECORD(FilePlacesView, Lines)

// ---- the titles of the columns

template <> struct FileHeaderView::Methods<struct Titles> {

    struct Title {
        files::Column column;
        NSString* name;
        NSRect place;
    };
    static std::array<Title, 3> titles(FileHeaderView& self)
    {
        const NSRect all = self.bounds();
        const files::Columns columns = files::columnsFor(all.size.width);
        const auto between = [&](CGFloat left, CGFloat right) {
            return NSRect { { left, 0 }, { right - left, all.size.height } };
        };
        return { Title { files::Column::name, "Name"_ns, between(0, columns.modified - 8) },
            Title { files::Column::modified, "Date Modified"_ns,
                between(columns.modified - 8, columns.size - 8) },
            Title { files::Column::size, "Size"_ns, between(columns.size - 8, all.size.width) } };
    }

    static bool yes(FileHeaderView&) { return true; }
    static void drawArrow(NSPoint middle, bool up)
    {
        const CGFloat rise = up ? -2 : 2;
        const NSPoint arrow[] = { { middle.x - 3.5, middle.y - rise },
            { middle.x, middle.y + rise }, { middle.x + 3.5, middle.y - rise } };
        controls::strokeLine(
            arrow, std::size(arrow), 1.3, controls::shadeOf(NSColor::cls().headerTextColor()));
    }
    static void drawRect(FileHeaderView& self, NSRect)
    {
        const NSRect all = self.bounds();
        NSColor::cls().headerColor()->set();
        NSRectFill(all);
        NSColor::cls().gridColor()->set();
        NSRectFill({ { 0, NSMaxY(all) - 1 }, { all.size.width, 1 } });
        for (const Title& title : titles(self)) {
            if (NSMinX(title.place) > 0) {
                NSColor::cls().gridColor()->set();
                NSRectFill({ { NSMinX(title.place), 5 }, { 1, all.size.height - 10 } });
            }
            const bool isSorted = self.browser_ && self.browser_->order().column == title.column;
            const NSRect text { { NSMinX(title.place) + (NSMinX(title.place) > 0 ? 8.0 : 12.0), 0 },
                { title.place.size.width - 32, all.size.height } };
            controls::drawText(
                small(phrase(title.name).get(), NSColor::cls().headerTextColor().get(), isSorted)
                    .get(),
                text, NSTextAlignmentLeft);
            if (isSorted)
                drawArrow(
                    { NSMaxX(title.place) - 14, NSMidY(all) }, self.browser_->order().ascending);
        }
    }
    static void mouseDown(FileHeaderView& self, NSEvent* event)
    {
        if (!event || !self.browser_)
            return;
        const NSPoint point = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        for (const Title& title : titles(self)) {
            if (NSPointInRect(point, title.place))
                self.browser_->sortBy(title.column);
        }
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<yes> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
        });
    }
};
BRINDLE_RECORD(FileHeaderView, Titles)

}
