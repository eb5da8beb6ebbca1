// SPDX-License-Identifier: Apache-2.0
#include "display/headless/RandomUser.h"

#include "display/headless/HeadlessDisplay.h"

namespace brindle::display {

RandomUser::RandomUser(HeadlessDisplay& display, std::uint32_t seed)
    : display_(display)
    , random_(seed)
{
}

void RandomUser::act()
{
    switch (random_() % 7) {
    case 0:
        return display_.movePointer(place());
    case 1: {
        const CGPoint where = place();
        const int count = 1 + static_cast<int>(random_() % 3);
        return display_.click(where, count, static_cast<int>(random_() % 3));
    }
    case 2: {
        const CGPoint from = place();
        const CGPoint to = place();
        return display_.drag(from, to, 1 + static_cast<int>(random_() % 5));
    }
    case 3: {
        const double x = amount();
        const double y = amount();
        return display_.scroll(x, y, random_() % 2 != 0);
    }
    case 4:
        return typeAKey();
    case 5:
        return display_.typeText(u"A\u00E4\u05D0 1");
    default:
        return display_.setModifiers(someModifiers());
    }
}

void RandomUser::giveUp()
{
    display_.setModifiers(0);
    for (int button = 0; button < 3; ++button)
        display_.releaseButton(button);
    display_.typeText(u"\x1B");
}

CGPoint RandomUser::place()
{
    constexpr unsigned kOutside = 10;
    const CGRect screen = display_.screens().empty() ? CGRect {} : display_.screens().front().frame;
    const auto within = [this](double from, double length) {
        const auto steps = static_cast<unsigned>(length) + 2 * kOutside;
        return from - kOutside + static_cast<double>(random_() % steps);
    };
    const double x = within(screen.origin.x, screen.size.width);
    return { x, within(screen.origin.y, screen.size.height) };
}

double RandomUser::amount() { return static_cast<double>(random_() % 200) - 100; }

Modifiers RandomUser::someModifiers()
{
    Modifiers held = 0;
    for (const Modifiers each : { kShift, kControl, kOption, kCommand })
        held |= random_() % 2 ? each : 0;
    return held;
}

void RandomUser::typeAKey()
{
    constexpr std::u16string_view kKeys
        = u"\r\t\x1b\x7f\x08 aczvx\uF700\uF701\uF702\uF703\uF728\uF729\uF72B\uF72C\uF72D";
    ScriptedKey key;
    key.characters = kKeys[random_() % kKeys.size()];
    key.modifiers = someModifiers();
    display_.pressKey(key);
    display_.releaseKey(key);
}

}
