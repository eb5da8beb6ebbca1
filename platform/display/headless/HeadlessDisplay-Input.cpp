// SPDX-License-Identifier: Apache-2.0
#include "HeadlessDisplay.h"

#include <algorithm>
#include <utility>

#include "HeadlessSurfacePrivate.h"

namespace brindle::display {

namespace {

    bool contains(CGRect frame, CGPoint place)
    {
        return place.x >= NSMinX(frame) && place.x < NSMaxX(frame) && place.y >= NSMinY(frame)
            && place.y < NSMaxY(frame);
    }

    char32_t latinIn(const std::u16string& text)
    {
        return text.size() == 1 && text[0] > 0x20 && text[0] < 0x7F ? text[0] : 0;
    }

    ScriptedKey completed(ScriptedKey key)
    {
        if (key.charactersIgnoringModifiers.empty())
            key.charactersIgnoringModifiers = key.characters;
        if (key.latinCharacter == 0)
            key.latinCharacter = latinIn(key.charactersIgnoringModifiers);
        return key;
    }

}

Event& HeadlessDisplay::post(Event::Kind kind, const HeadlessSurface* surface)
{
    if (!connected_) {
        dropped_ = {};
        return dropped_;
    }
    Event& event = events_.emplace_back();
    event.kind = kind;
    event.surface = surface ? surface->id() : 0;
    event.time = now();
    event.modifiers = modifiers_;
    event.screenLocation = pointer_;
    if (surface) {
        event.screenLocation.y += surface->strutOffset();
        const CGPoint corner = surface->frame().origin;
        event.location = { event.screenLocation.x - corner.x, event.screenLocation.y - corner.y };
    }
    return event;
}

void HeadlessDisplay::postPointer(Event::Kind kind, const HeadlessSurface* surface, int button)
{
    if (surface)
        post(kind, surface).button = button;
}

HeadlessSurface* HeadlessDisplay::topSurfaceAt(CGPoint place) const
{
    const auto found = std::find_if(
        surfaces_.rbegin(), surfaces_.rend(), [place](const HeadlessSurface* surface) {
            return surface->isVisible() && !surface->passthrough_
                && contains(surface->shownFrame(), place);
        });
    return found == surfaces_.rend() ? nullptr : *found;
}

HeadlessSurface* HeadlessDisplay::pointerTarget() const
{
    if (grabs_.pressed)
        return grabs_.pressed;
    HeadlessSurface* below = topSurfaceAt(pointer_);
    return below ? below : grabs_.menu;
}

void HeadlessDisplay::updatePointerSurface()
{
    // Who holds the button keeps the pointer; the crossing is told after the release.
    if (!connected_ || grabs_.pressed)
        return;
    HeadlessSurface* below = topSurfaceAt(pointer_);
    if (below == underPointer_)
        return;
    HeadlessSurface* before = std::exchange(underPointer_, below);
    postPointer(Event::Kind::pointerLeft, before);
    postPointer(Event::Kind::pointerEntered, below);
}

SurfaceId HeadlessDisplay::surfaceAt(CGPoint place) const
{
    const HeadlessSurface* surface = topSurfaceAt(place);
    return surface ? surface->id() : 0;
}

SurfaceId HeadlessDisplay::focusedSurface() const { return focused_ ? focused_->id() : 0; }

SurfaceId HeadlessDisplay::grabbingSurface() const { return grabs_.menu ? grabs_.menu->id() : 0; }

Cursor HeadlessDisplay::visibleCursor() const
{
    const HeadlessSurface* surface = pointerTarget();
    return surface ? surface->cursor_.value_or(cursor_) : Cursor::arrow;
}

// --- pointer ----------------------------------------------------------------------------------------------

void HeadlessDisplay::movePointer(CGPoint place)
{
    if (!connected_)
        return;
    const bool moved = place != pointer_;
    pointer_ = place;
    updatePointerSurface();
    if (moved)
        postPointer(Event::Kind::pointerMoved, pointerTarget());
}

void HeadlessDisplay::pressButton(int button)
{
    if (!connected_)
        return;
    HeadlessSurface* target = pointerTarget();
    if (grabs_.buttons == 0 && !grabs_.menu && target) {
        if (!target->overrideRedirect_)
            raise(*target);
        if (target->acceptsFocus_ && !target->overrideRedirect_)
            setFocus(target);
    }
    grabs_.buttons |= 1U << (button & 31);
    if (!grabs_.pressed)
        grabs_.pressed = grabs_.menu ? nullptr : target;
    postPointer(Event::Kind::pointerDown, target, button);
}

void HeadlessDisplay::releaseButton(int button)
{
    if (!connected_)
        return;
    postPointer(Event::Kind::pointerUp, pointerTarget(), button);
    grabs_.buttons &= ~(1U << (button & 31));
    if (grabs_.buttons != 0)
        return;
    grabs_.pressed = nullptr;
    updatePointerSurface();
}

void HeadlessDisplay::click(CGPoint place, int count, int button)
{
    movePointer(place);
    for (int i = 0; i < count; ++i) {
        pressButton(button);
        releaseButton(button);
    }
}

void HeadlessDisplay::drag(CGPoint from, CGPoint to, int steps, int button)
{
    movePointer(from);
    pressButton(button);
    for (int step = 1; step <= steps; ++step) {
        const double part = static_cast<double>(step) / steps;
        movePointer({ from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part });
    }
    releaseButton(button);
}

void HeadlessDisplay::scroll(double x, double y, bool precise)
{
    const HeadlessSurface* target = pointerTarget();
    if (!target)
        return;
    Event& event = post(Event::Kind::scroll, target);
    event.scrollX = x;
    event.scrollY = y;
    event.preciseScroll = precise;
}

// --- keyboard and focus ---------------------------------------------------------------------------------

void HeadlessDisplay::postKey(Event::Kind kind, const ScriptedKey& scripted)
{
    const HeadlessSurface* target = grabs_.menu ? grabs_.menu : focused_;
    if (!target)
        return;
    ScriptedKey key = completed(scripted);
    Event& event = post(kind, target);
    event.modifiers |= key.modifiers;
    event.keyCode = key.keyCode;
    event.characters = std::move(key.characters);
    event.charactersIgnoringModifiers = std::move(key.charactersIgnoringModifiers);
    event.latinCharacter = key.latinCharacter;
    event.repeat = key.repeat;
}

void HeadlessDisplay::pressKey(const ScriptedKey& key) { postKey(Event::Kind::keyDown, key); }

void HeadlessDisplay::releaseKey(const ScriptedKey& key) { postKey(Event::Kind::keyUp, key); }

void HeadlessDisplay::typeText(std::u16string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPair = (text[i] & 0xFC00) == 0xD800 && i + 1 < text.size();
        ScriptedKey key { .characters = std::u16string(text.substr(i, isPair ? 2 : 1)) };
        i += isPair;
        pressKey(key);
        releaseKey(key);
    }
}

void HeadlessDisplay::setModifiers(Modifiers modifiers)
{
    if (modifiers == modifiers_ || !connected_)
        return;
    modifiers_ = modifiers;
    const HeadlessSurface* target = grabs_.menu ? grabs_.menu : focused_;
    if (target)
        post(Event::Kind::modifiersChanged, target).keyCode = 0xFFFF;
}

void HeadlessDisplay::setFocus(HeadlessSurface* surface)
{
    if (surface == focused_ || !connected_)
        return;
    HeadlessSurface* before = std::exchange(focused_, surface);
    if (before)
        post(Event::Kind::focusOut, before);
    if (surface)
        post(Event::Kind::focusIn, surface);
}

void HeadlessDisplay::focus(Surface* surface) { setFocus(static_cast<HeadlessSurface*>(surface)); }

void HeadlessDisplay::requestClose(Surface& surface)
{
    post(Event::Kind::closeRequested, &static_cast<HeadlessSurface&>(surface));
}

void HeadlessDisplay::setFrameByUser(Surface& surface, CGRect frame)
{
    auto& target = static_cast<HeadlessSurface&>(surface);
    if (!target.resizable_)
        frame.size = target.frame_.size;
    target.takeFrame(frame);
}

void HeadlessDisplay::setStateByUser(Surface& surface, SurfaceState state)
{
    static_cast<HeadlessSurface&>(surface).takeState(state);
}

}
