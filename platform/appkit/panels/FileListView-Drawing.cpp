// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "FileListViewPrivate.h"
#include "FilePicturesPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphics.h"
#include "appkit/NSImage.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSWindow.h"
#include "appkit/application/PhrasesPrivate.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDate.h"
#include "foundation/NSDateFormatter.h"
#include "foundation/NSDictionary.h"

namespace brindle {

namespace files {

    Columns columnsFor(CGFloat width)
    {
        const CGFloat end = width - 12;
        const CGFloat size = std::max(160.0, end - 76);
        return { std::max(120.0, size - 168), size, end };
    }

    std::string readableSize(std::uint64_t bytes)
    {
        constexpr const char* kUnits[] = { "bytes", "KB", "MB", "GB", "TB", "PB", "EB" };
        double amount = static_cast<double>(bytes);
        std::size_t unit = 0;
        while (amount >= 999.5 && unit + 1 < std::size(kUnits)) {
            amount /= 1000;
            ++unit;
        }
        char text[32];
        std::snprintf(text, sizeof text, unit > 1 && amount < 99.5 ? "%.1f %s" : "%.0f %s", amount,
            kUnits[unit]);
        return text;
    }

    Ref<NSString> readableDate(std::int64_t nanoseconds)
    {
        static NSDateFormatter* const formatter = [] {
            Ref<NSDateFormatter> made = make<NSDateFormatter>();
            made->setDateStyle(NSDateFormatterMediumStyle);
            made->setTimeStyle(NSDateFormatterShortStyle);
            made->setDoesRelativeDateFormatting(true);
            return made.leak();
        }();
        const Ref<NSDate> date
            = NSDate::cls().dateWithTimeIntervalSince1970(static_cast<double>(nanoseconds) / 1e9);
        return formatter->stringFromDate(date.get());
    }

    Ref<NSAttributedString> styled(NSString* text, NSFont* font, NSColor* color)
    {
        const auto attributes = NSDictionary::cls().dictionaryWithObjectsAndKeys(font,
            static_cast<NSString*>(NSFontAttributeName), color,
            static_cast<NSString*>(NSForegroundColorAttributeName));
        return alloc<NSAttributedString>()->initWithString_attributes(
            text ? text : ""_ns, attributes.get());
    }

}

namespace {

    using files::Entry;

    /// What all rows of one drawing share.
    struct Brush {
        FileListView& view;
        files::Browser& browser;
        Ref<NSFont> font = NSFont::cls().systemFontOfSize(13);
        Ref<NSFont> small = NSFont::cls().systemFontOfSize(12);
        bool isFocused = false; // the selection is what the keyboard acts on

        Ref<NSColor> ink(std::size_t index, bool isSecondary) const
        {
            if (browser.isSelected(index) && isFocused)
                return NSColor::cls().alternateSelectedControlTextColor();
            if (!browser.isEnabled(index))
                return NSColor::cls().disabledControlTextColor();
            return isSecondary ? NSColor::cls().secondaryLabelColor()
                               : NSColor::cls().controlTextColor();
        }
        Ref<NSColor> highlight() const
        {
            return isFocused ? NSColor::cls().selectedContentBackgroundColor()
                             : NSColor::cls().unemphasizedSelectedContentBackgroundColor();
        }
        void text(NSString* text, NSFont* style, NSColor* color, NSRect place,
            NSTextAlignment alignment) const
        {
            controls::drawText(files::styled(text, style, color).get(), place, alignment);
        }
    };

    Ref<NSString> shownName(const Entry& entry, bool hidesExtension)
    {
        std::string name = entry.name;
        const std::size_t dot = name.rfind('.');
        if (hidesExtension && !entry.isFolder && dot != std::string::npos && dot > 0)
            name.resize(dot);
        if (Ref<NSString> text = stringFrom(name))
            return text;
        for (char& byte : name) // no text: its ASCII is all that can be read
            byte = static_cast<signed char>(byte) < 0 ? '?' : byte;
        return stringFrom(name);
    }
    void drawIcon(const Brush& brush, std::size_t index, NSRect place)
    {
        const Entry& entry = brush.browser.entry(index);
        const Ref<NSImage> picture
            = files::pictureOf(files::kindOf(entry.name, entry.isFolder, entry.isExecutable));
        controls::drawImage(picture.get(), place, {}, brush.browser.isEnabled(index) ? 1 : 0.45);
    }

    void drawRow(const Brush& brush, std::size_t index, NSRect row)
    {
        const Entry& entry = brush.browser.entry(index);
        if (brush.browser.isSelected(index)) {
            brush.highlight()->set();
            NSRectFill(row);
        } else if (index % 2) {
            NSColor::cls().alternatingContentBackgroundColor()->set();
            NSRectFill(row);
        }
        drawIcon(brush, index, { { 12, NSMinY(row) + 2 }, { 18, 18 } });
        const files::Columns columns = files::columnsFor(row.size.width);
        const Ref<NSColor> ink = brush.ink(index, false);
        const Ref<NSColor> secondary = brush.ink(index, true);
        brush.text(shownName(entry, FileList::hidesExtensions(brush.view)).get(), brush.font.get(),
            ink.get(), { { 36, NSMinY(row) }, { columns.modified - 36 - 12, row.size.height } },
            NSTextAlignmentLeft);
        brush.text(files::readableDate(entry.modified).get(), brush.small.get(), secondary.get(),
            { { columns.modified, NSMinY(row) },
                { columns.size - columns.modified - 8, row.size.height } },
            NSTextAlignmentLeft);
        const Ref<NSString> size
            = entry.isFolder ? Ref<NSString>("–"_ns) : stringFrom(files::readableSize(entry.size));
        brush.text(size.get(), brush.small.get(), secondary.get(),
            { { columns.size, NSMinY(row) }, { columns.end - columns.size, row.size.height } },
            NSTextAlignmentRight);
    }

    void drawTile(const Brush& brush, std::size_t index, NSRect tile)
    {
        constexpr CGFloat kIcon = 52;
        const Entry& entry = brush.browser.entry(index);
        const NSRect icon { { NSMidX(tile) - kIcon / 2, NSMinY(tile) + 10 }, { kIcon, kIcon } };
        const NSRect label { { NSMinX(tile) + 4, NSMaxY(icon) + 6 }, { tile.size.width - 8, 18 } };
        if (brush.browser.isSelected(index)) {
            controls::fillRounded(NSInsetRect(icon, -6, -4), 6,
                controls::shadeOf(NSColor::cls().unemphasizedSelectedContentBackgroundColor()));
            controls::fillRounded(label, 5, controls::shadeOf(brush.highlight()));
        }
        drawIcon(brush, index, icon);
        const Ref<NSColor> ink = brush.ink(index, false);
        brush.text(shownName(entry, FileList::hidesExtensions(brush.view)).get(), brush.small.get(),
            ink.get(), NSInsetRect(label, 4, 0), NSTextAlignmentCenter);
    }

    /// What stands in place of entries.
    Ref<NSString> remark(files::Browser& browser)
    {
        if (browser.error() != 0) {
            const Ref<NSString> folder = stringFrom(browser.folder());
            return NSString::cls().stringWithFormat(phrase("“%@” cannot be opened: %s."_ns).get(),
                maybe(folder)->lastPathComponent(), std::strerror(browser.error()));
        }
        return browser.isReading() ? phrase("Reading…"_ns) : phrase("This folder is empty."_ns);
    }

}

void FileList::draw(FileListView& view, NSRect dirty)
{
    NSColor::cls().controlBackgroundColor()->set();
    NSRectFill(dirty);
    if (!view.browser_)
        return;
    const Ref<NSWindow> window = view.window();
    Brush brush { view, *view.browser_ };
    brush.isFocused = controls::isActive(&view) && window->firstResponder() == &view;
    const std::size_t count = brush.browser.count();
    if (count == 0) {
        const NSRect shown = view.visibleRect();
        const NSRect line { { NSMinX(shown) + 16, NSMidY(shown) - 12 },
            { shown.size.width - 32, 24 } };
        return brush.text(remark(brush.browser).get(), brush.font.get(),
            NSColor::cls().secondaryLabelColor().get(), line, NSTextAlignmentCenter);
    }
    const CGFloat height = rectOf(view, 0).size.height;
    const auto rowAt = [&](CGFloat y) {
        return static_cast<std::size_t>(std::clamp(y / height, 0.0, static_cast<double>(count)));
    };
    const std::size_t first = rowAt(NSMinY(dirty)) * perRow(view);
    const std::size_t end = std::min(count, (rowAt(NSMaxY(dirty)) + 1) * perRow(view));
    for (std::size_t i = first; i < end; ++i) {
        if (view.look_ == files::Look::list)
            drawRow(brush, i, rectOf(view, i));
        else
            drawTile(brush, i, rectOf(view, i));
    }
}

}
