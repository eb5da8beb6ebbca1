// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "appkit/views/PainterPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    // Windows larger than any screen draw into as many pixels as a context can have.
    constexpr int kMostPixels = 16384;

    display::PixelSize pixelSizeOf(NSWindow& window)
    {
        const WindowState& state = WindowAccess::state(window);
        if (state.surface)
            return state.surface->pixelSize();
        const double scale = window.backingScaleFactor();
        const auto pixels = [scale](double points) {
            const double whole = std::round(points * scale);
            return whole >= 1 ? static_cast<int>(std::min<double>(whole, kMostPixels)) : 1;
        };
        return { pixels(state.frame.size.width), pixels(state.frame.size.height) };
    }

    void clearPixels(const Backing& backing, display::PixelRect rect)
    {
        for (int y = rect.top; y < rect.bottom; ++y) {
            std::uint32_t* const row = backing.words
                + static_cast<std::size_t>(y) * static_cast<std::size_t>(backing.size.width);
            std::fill(row + rect.left, row + rect.right, 0);
        }
    }

}

Backing& WindowAccess::backing(NSWindow& window)
{
    WindowState& s = state(window);
    const display::PixelSize size = pixelSizeOf(window);
    const double scale = window.backingScaleFactor();
    if (s.backing && s.backing->size == size && s.backing->scale == scale)
        return *s.backing;
    if (s.drawing && s.backing)
        return *s.backing; // a view resized the window while it was drawn: the next pass follows
    auto fresh = std::make_unique<Backing>();
    fresh->size = size;
    fresh->scale = scale;
    fresh->context = quartz::makeContext(size.width, size.height, scale);
    fresh->words = static_cast<std::uint32_t*>(CGBitmapContextGetData(fresh->context.get()));
    NSGraphicsContext::Meta maker = NSGraphicsContext::cls();
    fresh->upright = maker.graphicsContextWithGraphicsPort_flipped(fresh->context.get(), false);
    fresh->flipped = maker.graphicsContextWithGraphicsPort_flipped(fresh->context.get(), true);
    s.backing = std::move(fresh);
    damageAll(window);
    return *s.backing;
}

void WindowAccess::damageAll(NSWindow& window)
{
    WindowState& s = state(window);
    s.damage.clear();
    s.moved.clear();
    if (s.backing)
        s.damage.add({ 0, 0, s.backing->size.width, s.backing->size.height });
}

void WindowAccess::addDamage(NSWindow& window, NSRect rect)
{
    WindowState& s = state(window);
    if (s.backing) // without pixels everything will be drawn anyway
        s.damage.add(Damage::pixelsOf(rect, s.backing->scale, s.backing->size));
}

void WindowAccess::present(NSWindow& window, std::span<const display::PixelRect> rects)
{
    WindowState& s = state(window);
    if (s.surface && s.surface->isShown() && s.backing && s.surface->pixelSize() == s.backing->size)
        s.surface->present(s.backing->pixels(), rects);
}

void WindowAccess::drawIfVisible(NSWindow& window)
{
    const WindowState& s = state(window);
    if (s.visible && s.surface && !s.miniaturized)
        window.displayIfNeeded();
}

template <> struct NSWindow::Methods<struct Drawing> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static bool viewsNeedDisplay(NSWindow& self)
    {
        const WindowState& state = of(self);
        return !state.backing || !state.damage.isEmpty() || !state.moved.isEmpty();
    }
    static void setViewsNeedDisplay(NSWindow& self, bool needs)
    {
        if (needs)
            WindowAccess::damageAll(self);
        else
            of(self).damage.clear();
    }

    struct DrawingScope {
        explicit DrawingScope(WindowState& windowState)
            : state(windowState)
        {
            state.drawing = true;
        }
        ~DrawingScope() { state.drawing = false; }
        DrawingScope(const DrawingScope&) = delete;
        DrawingScope& operator=(const DrawingScope&) = delete;
        WindowState& state;
    };

    static Parts partsOf(const WindowState& state)
    {
        Parts parts;
        for (const display::PixelRect& rect : state.damage.rects())
            parts.add(Damage::pointsOf(rect, state.backing->scale, state.backing->size));
        return parts;
    }

    static void rethrow(const Painter& painter)
    {
        if (painter.raised())
            std::rethrow_exception(painter.raised());
    }

    // One pass: what is marked while it runs is drawn in the next one. What a view raises leaves it when the others
    // have been drawn and everything is on the screen.
    static void displayIfNeeded(NSWindow& self)
    {
        WindowState& state = of(self);
        if (state.drawing)
            return;
        const Ref<NSWindow> alive(&self);
        const Backing* const before = state.backing.get();
        const bool isFresh = &WindowAccess::backing(self) != before; // and clear
        if (state.damage.isEmpty() && state.moved.isEmpty())
            return;
        const DrawingScope scope(state);
        const Ref<NSView> root(&WindowAccess::frameView(self));
        const Backing backing = *state.backing; // a view may close the window
        Painter announcing(backing, partsOf(state));
        announcing.announce(*root); // views may mark more now
        if (!state.backing || state.backing->context != backing.context)
            return rethrow(announcing);
        Painter painter(backing, partsOf(state));
        painter.plan(*root);
        const Damage::Rects rects = state.damage.take();
        for (const display::PixelRect& rect : rects.all()) {
            if (!isFresh)
                clearPixels(backing, rect);
        }
        painter.paint(*root);
        Damage changed = std::exchange(state.moved, {});
        for (const display::PixelRect& rect : rects.all())
            changed.add(rect);
        WindowAccess::present(self, changed.rects());
        rethrow(announcing);
        rethrow(painter);
    }
    static void display(NSWindow& self)
    {
        WindowAccess::damageAll(self);
        self.displayIfNeeded();
    }
    static void flush(NSWindow& self)
    {
        const Backing& backing = WindowAccess::backing(self);
        const display::PixelRect whole { 0, 0, backing.size.width, backing.size.height };
        WindowAccess::present(self, { &whole, 1 });
    }
    static Ref<NSGraphicsContext> graphicsContext(NSWindow& self)
    {
        return WindowAccess::backing(self).upright;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "viewsNeedDisplay", imp<viewsNeedDisplay> },
            { "setViewsNeedDisplay:", imp<setViewsNeedDisplay> },
            { "display", imp<display> },
            { "displayIfNeeded", imp<displayIfNeeded> },
            { "flushWindow", imp<flush> },
            { "graphicsContext", imp<graphicsContext> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Drawing)

}
