// SPDX-License-Identifier: Apache-2.0
#include "KeyEquivalentPrivate.h"

namespace brindle {

namespace {

    bool isSame(NSString* typed, NSString* key)
    {
        constexpr unichar kEnter = 0x03;
        if (!typed || typed->length() == 0)
            return false;
        if (typed->length() == 1 && typed->characterAtIndex(0) == kEnter)
            return key->isEqualToString("\r"_ns);
        return typed->lowercaseString()->isEqualToString(key->lowercaseString().get());
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
