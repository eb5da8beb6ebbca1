// SPDX-License-Identifier: Apache-2.0
#include "KeyEquivalentPrivate.h"

namespace brindle {

unichar foldedKey(const NSString* key)
{
    constexpr unichar kEnter = 0x03;
    constexpr unichar kBackspace = 0x08;
    if (!key || key->length() == 0)
        return 0;
    const unichar first = key->lowercaseString()->characterAtIndex(0);
    return first == kEnter ? '\r' : first == kBackspace ? 0x7F : first;
}

namespace {

    bool isSame(NSString* typed, NSString* key)
    {
        if (!typed || typed->length() != key->length() || foldedKey(typed) != foldedKey(key))
            return false;
        return key->length() == 1
            || typed->lowercaseString()->isEqualToString(key->lowercaseString().get());
    }

}

bool matchesKeyEquivalent(NSEvent& press, NSString* key, NSEventModifierFlags modifiers)
{
    if (!key || key->length() == 0)
        return false;
    const Ref<NSString> typed = press.charactersIgnoringModifiers();
    const Ref<NSString> latin = press.latinCharacters();
    if (!isSame(typed.get(), key) && !isSame(latin.get(), key))
        return false;
    constexpr NSEventModifierFlags kCompared
        = NSCommandKeyMask | NSAlternateKeyMask | NSControlKeyMask;
    if ((press.modifierFlags() & kCompared) != (modifiers & kCompared))
        return false;
    const bool isUpper = !key->isEqualToString(key->lowercaseString().get());
    const bool isLetter = isUpper || !key->isEqualToString(key->uppercaseString().get());
    const bool wantsShift = isUpper || (modifiers & NSShiftKeyMask);
    const bool hasShift = (press.modifierFlags() & NSShiftKeyMask) != 0;
    return isLetter || (modifiers & NSShiftKeyMask) ? wantsShift == hasShift : true;
}

}
