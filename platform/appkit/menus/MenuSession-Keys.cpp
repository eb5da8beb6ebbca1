// SPDX-License-Identifier: Apache-2.0
#include "MenuSessionPrivate.h"
#include "foundation/NSBeep.h"

namespace brindle {

namespace {

    constexpr double kTypingSeconds = 1; // after which letters begin a new search
    constexpr NSStringCompareOptions kSearch
        = NSCaseInsensitiveSearch | NSDiacriticInsensitiveSearch | NSAnchoredSearch;

    bool isOneLetter(const std::u16string& text)
    {
        return text.find_first_not_of(text.front()) == std::u16string::npos;
    }

}

void MenuSession::key(NSEvent& event)
{
    const Ref<NSString> plain = event.charactersIgnoringModifiers();
    const unichar key = maybe(plain)->length() ? plain->characterAtIndex(0) : unichar {};
    const NSEventModifierFlags flags = event.modifierFlags();
    if (flags & NSCommandKeyMask) {
        if (key == '.')
            return end();
        if (const Ref<NSMenuItem> item = MenuAccess::itemForKey(panels_.front()->menu(), event))
            return choose(*item);
        return NSBeep();
    }
    switch (key) {
    case NSDownArrowFunctionKey:
        return move(1);
    case NSUpArrowFunctionKey:
        return move(-1);
    case NSRightArrowFunctionKey:
        return goRight();
    case NSLeftArrowFunctionKey:
        return goLeft();
    case NSHomeFunctionKey:
        return moveTo(deepest().liveRowFrom(-1, 1));
    case NSEndFunctionKey:
        return moveTo(deepest().liveRowFrom(-1, -1));
    case NSPageDownFunctionKey:
        return movePage(1);
    case NSPageUpFunctionKey:
        return movePage(-1);
    case 0x1B:
        return end();
    case '\r':
    case 0x03:
        return activate();
    case ' ':
        if (event.timestamp() - typedTime_ > kTypingSeconds)
            return activate();
        break;
    default:
        break;
    }
    if (!typeSelect(event))
        NSBeep();
}

void MenuSession::moveTo(NSInteger row)
{
    if (row < 0)
        return;
    grace_.stop();
    hover_.stop();
    deepest().setHighlighted(row);
    deepest().reveal(row);
}

void MenuSession::move(int direction)
{
    moveTo(deepest().liveRowFrom(deepest().highlighted(), direction));
}

void MenuSession::movePage(int direction)
{
    const MenuPanel& panel = deepest();
    const auto topOf
        = [&](NSInteger row) { return panel.layout().rows[static_cast<std::size_t>(row)].top; };
    NSInteger row
        = panel.highlighted() < 0 ? panel.liveRowFrom(-1, direction) : panel.highlighted();
    if (row < 0)
        return;
    const CGFloat start = topOf(row);
    for (;;) {
        const NSInteger next = panel.liveRowFrom(row, direction, false);
        if (next < 0 || (topOf(next) - start) * direction > panel.pageHeight())
            return moveTo(row);
        row = next;
    }
}

void MenuSession::goRight()
{
    const NSMenuItem* item = deepest().itemAt(deepest().highlighted());
    if (item && MenuItemAccess::submenu(*item))
        return openSubmenu(panels_.size() - 1, true);
    if ((next_ = neighbourToward(1)))
        end();
}

void MenuSession::goLeft()
{
    if (panels_.size() > 1)
        return closeFrom(panels_.size() - 1);
    if ((next_ = neighbourToward(-1)))
        end();
}

void MenuSession::activate()
{
    const Ref<NSMenuItem> item(deepest().itemAt(deepest().highlighted()));
    if (!item || !deepest().isLive(deepest().highlighted()))
        return end();
    if (MenuItemAccess::submenu(*item))
        return openSubmenu(panels_.size() - 1, true);
    choose(*item);
}

// ---- letters find titles

NSInteger MenuSession::rowWithPrefix(const std::u16string& prefix, NSInteger from)
{
    const MenuPanel& panel = deepest();
    const Ref<NSString> text = stringFrom(std::u16string_view(prefix));
    const auto count = static_cast<NSInteger>(panel.layout().rows.size());
    for (NSInteger i = 0; i < count; ++i) {
        const NSInteger row = (from + i) % count;
        if (!panel.isLive(row))
            continue;
        const NSMenuItem& item = *panel.itemAt(row);
        const Ref<NSAttributedString>& attributed = MenuItemAccess::attributed(item);
        const Ref<NSString> title = attributed ? attributed->string() : MenuItemAccess::title(item);
        if (title->rangeOfString_options(text.get(), kSearch).location != NSNotFound)
            return row;
    }
    return -1;
}

bool MenuSession::typeSelect(NSEvent& event)
{
    const std::u16string letters = utf16Of(event.characters());
    constexpr char16_t kFirstFunctionKey = 0xF700;
    const bool isText = !letters.empty() && letters[0] >= 0x20 && letters[0] != 0x7F
        && (letters[0] < kFirstFunctionKey || letters[0] > 0xF8FF);
    if (!isText)
        return false;
    if (event.timestamp() - typedTime_ > kTypingSeconds)
        typed_.clear();
    typedTime_ = event.timestamp();
    constexpr std::size_t kLongest = 256;
    if (typed_.size() < kLongest)
        typed_ += letters;
    const NSInteger here = std::max<NSInteger>(deepest().highlighted(), 0);
    NSInteger row = rowWithPrefix(typed_, here);
    const bool again = isOneLetter(typed_) && deepest().highlighted() >= 0;
    if (again && (row < 0 || typed_.size() == 1))
        row = rowWithPrefix(typed_.substr(0, 1), here + 1); // the same letter goes on to the next
    moveTo(row);
    return row >= 0;
}

}
