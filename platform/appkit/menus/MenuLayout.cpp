// SPDX-License-Identifier: Apache-2.0
#include "MenuLayoutPrivate.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSStringDrawing.h"
#include "appkit/application/KeyEquivalentPrivate.h"
#include "foundation/NSDictionary.h"

namespace brindle {

using namespace menus;

namespace {

    constexpr NSEventModifierFlags kShown
        = NSControlKeyMask | NSAlternateKeyMask | NSShiftKeyMask | NSCommandKeyMask;

    // ---- rows

    bool areAlternatives(const NSMenuItem& first, const NSMenuItem& other)
    {
        return MenuItemAccess::isAlternate(other)
            && foldedKey(MenuItemAccess::key(first).get())
            == foldedKey(MenuItemAccess::key(other).get());
    }

    /// The item of a group of alternatives whose modifiers are down; without such a one the first that is no alternate.
    NSMenuItem* chosen(
        const std::vector<NSMenuItem*>& shown, std::size_t first, std::size_t end, NSUInteger down)
    {
        for (std::size_t i = first; end - first > 1 && i < end; ++i) {
            if ((MenuItemAccess::modifiers(*shown[i]) & kShown) == (down & kShown))
                return shown[i];
        }
        return shown[first];
    }

    std::vector<NSMenuItem*> shownItems(NSMenu& menu, NSEventModifierFlags modifiers)
    {
        std::vector<NSMenuItem*> shown;
        for (const Ref<NSMenuItem>& item : MenuAccess::items(menu)) {
            if (!MenuItemAccess::isHidden(*item))
                shown.push_back(item.get());
        }
        std::vector<NSMenuItem*> kept;
        kept.reserve(shown.size());
        for (std::size_t i = 0; i < shown.size();) {
            std::size_t end = i + 1;
            while (end < shown.size() && areAlternatives(*shown[i], *shown[end]))
                ++end;
            kept.push_back(chosen(shown, i, end, modifiers));
            i = end;
        }
        return kept;
    }

    // ---- widths

    class Measure {
    public:
        explicit Measure(NSFont* font)
            : attributes_(
                NSDictionary::cls().dictionaryWithObject_forKey(font, NSFontAttributeName))
            , keeps_(font->isEqual(NSFont::cls().menuFontOfSize(0).get()))
        {
        }
        CGFloat text(NSString* text) const
        {
            return sizeWithAttributes(text, attributes_.get()).width;
        }
        /// Titles in the ordinary font are measured once in an item's life.
        CGFloat title(NSMenuItem& item) const
        {
            CGFloat& known = MenuItemAccess::titleWidth(item);
            if (keeps_ && known >= 0)
                return known;
            const CGFloat width = text(titleOnOneLine(item).get());
            if (keeps_)
                known = width;
            return width;
        }

    private:
        Ref<NSDictionary> attributes_;
        bool keeps_;
    };

    NSSize titleSize(NSMenuItem& item, const Measure& measure, CGFloat lineHeight)
    {
        if (const Ref<NSAttributedString>& title = MenuItemAccess::attributed(item))
            return size(title);
        return { measure.title(item), lineHeight };
    }

}

NSInteger MenuLayout::rowAt(CGFloat y) const
{
    const auto found = std::upper_bound(
        rows.begin(), rows.end(), y, [](CGFloat at, const MenuRow& row) { return at < row.top; });
    if (found == rows.begin())
        return -1;
    const auto row = std::prev(found);
    return y < row->bottom() ? row - rows.begin() : -1;
}

NSInteger MenuLayout::rowOf(const NSMenuItem* item) const
{
    const auto found = std::find_if(
        rows.begin(), rows.end(), [&](const MenuRow& row) { return row.item == item; });
    return found == rows.end() ? -1 : found - rows.begin();
}

Ref<NSString> titleOnOneLine(const NSMenuItem& item)
{
    const Ref<NSString>& title = MenuItemAccess::title(item);
    std::u16string units = utf16Of(title.get());
    const auto isEnd
        = [](char16_t c) { return c == '\n' || c == '\r' || c == 0x2028 || c == 0x2029; };
    if (std::none_of(units.begin(), units.end(), isEnd))
        return title;
    std::replace_if(units.begin(), units.end(), isEnd, u' ');
    return stringFrom(std::u16string_view(units));
}

MenuLayout layOut(NSMenu& menu, NSFont* font, NSEventModifierFlags modifiers)
{
    MenuLayout layout;
    layout.font = font;
    const CGFloat lineHeight = std::ceil(font->ascender() - font->descender() + font->leading());
    layout.rowHeight = std::max(lineHeight + kRowRoom, 16.0);
    const Measure measure(font);
    CGFloat titles = 0;
    CGFloat keys = 0;
    CGFloat views = 0;
    CGFloat top = kRim;
    const std::vector<NSMenuItem*> items = shownItems(menu, modifiers);
    layout.rows.reserve(items.size());
    for (NSMenuItem* item : items) {
        MenuRow row { item, top, layout.rowHeight };
        if (MenuItemAccess::isSeparator(*item)) {
            row.height = kSeparatorHeight;
        } else if (const Ref<NSView>& view = MenuItemAccess::view(*item)) {
            const NSSize own = view->frame().size;
            row.height = std::clamp(own.height, 0.0, 10000.0);
            views = std::max(views, own.width);
        } else {
            const NSSize text = titleSize(*item, measure, lineHeight);
            row.height = std::max(row.height, std::ceil(text.height) + kRowRoom);
            CGFloat width
                = text.width + kIndent * static_cast<CGFloat>(MenuItemAccess::indentation(*item));
            if (const Ref<NSImage>& image = MenuItemAccess::image(*item)) {
                const NSSize picture = image->size();
                width += picture.width + kImageGap;
                row.height = std::max(row.height, std::min(picture.height + 4, 200.0));
            }
            titles = std::max(titles, width);
            const std::u16string signs = keySigns(*item, display::CommandKey::super);
            if (!signs.empty())
                keys = std::max(keys, measure.text(stringFrom(std::u16string_view(signs)).get()));
            else if (MenuItemAccess::submenu(*item))
                keys = std::max(keys, kArrowWidth);
        }
        top += row.height;
        layout.rows.push_back(std::move(row));
    }
    layout.titleLeft = kSide + (MenuAccess::showsState(menu) ? kStateWidth : 0);
    CGFloat width = layout.titleLeft + std::ceil(titles) + kSide;
    if (keys > 0)
        width += kKeyGap + std::ceil(keys);
    const CGFloat widest = std::max(kWidest, views);
    width = std::min(std::max({ width, views, MenuAccess::minimumWidth(menu) }),
        std::max(widest, MenuAccess::minimumWidth(menu)));
    layout.size = { std::min(width, 10000.0), top + kRim };
    return layout;
}

// ---- keys

namespace {

    char16_t signFor(unichar key)
    {
        switch (key) {
        case '\r':
            return 0x21A9;
        case 0x03:
            return 0x2324;
        case '\t':
            return 0x21E5;
        case 0x1B:
            return 0x238B;
        case 0x08:
        case 0x7F:
            return 0x232B;
        case NSDeleteFunctionKey:
            return 0x2326;
        case NSUpArrowFunctionKey:
            return 0x2191;
        case NSDownArrowFunctionKey:
            return 0x2193;
        case NSLeftArrowFunctionKey:
            return 0x2190;
        case NSRightArrowFunctionKey:
            return 0x2192;
        case NSHomeFunctionKey:
            return 0x2196;
        case NSEndFunctionKey:
            return 0x2198;
        case NSPageUpFunctionKey:
            return 0x21DE;
        case NSPageDownFunctionKey:
            return 0x21DF;
        case ' ':
            return 0x2423;
        default:
            return 0;
        }
    }

    void appendKey(std::u16string& signs, NSString* key)
    {
        constexpr unichar kF35 = NSF1FunctionKey + 34;
        const unichar first = key->characterAtIndex(0);
        if (const char16_t sign = signFor(first)) {
            signs += sign;
        } else if (first >= NSF1FunctionKey && first <= kF35) {
            signs += u'F';
            const int number = first - NSF1FunctionKey + 1;
            if (number >= 10)
                signs += static_cast<char16_t>('0' + number / 10);
            signs += static_cast<char16_t>('0' + number % 10);
        } else {
            constexpr NSUInteger kMost = 8; // what nobody can type need not be shown in full
            signs += utf16Of(
                key->uppercaseString()->substringToIndex(std::min(key->length(), kMost)).get());
        }
    }

}

std::u16string keySigns(const NSMenuItem& item, display::CommandKey command)
{
    const Ref<NSString>& key = MenuItemAccess::key(item);
    std::u16string signs;
    if (!key || key->length() == 0 || MenuItemAccess::submenu(item))
        return signs;
    NSEventModifierFlags down = MenuItemAccess::modifiers(item);
    if (!key->isEqualToString(key->lowercaseString().get()))
        down |= NSShiftKeyMask;
    const bool isSuper = command == display::CommandKey::super;
    const NSEventModifierFlags control = isSuper ? NSControlKeyMask : NSCommandKeyMask;
    const NSEventModifierFlags super = isSuper ? NSCommandKeyMask : NSControlKeyMask;
    if (down & control)
        signs += u'\u2303';
    if (down & NSAlternateKeyMask)
        signs += u'\u2325';
    if (down & NSShiftKeyMask)
        signs += u'\u21E7';
    if (down & super)
        signs += u'\u2318';
    appendKey(signs, key.get());
    return signs;
}

}
