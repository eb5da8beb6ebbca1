// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSCursor.h"

#include <array>
#include <vector>

#include "CodingPrivate.h"
#include "CursorPrivate.h"
#include "appkit/NSImage.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "foundation/Exceptions.h"

namespace brindle {

namespace {

    using display::Cursor;

    constexpr NSInteger kShapes
        = static_cast<NSInteger>(Cursor::hidden); // those that a host can choose

    /// What the pointer looks like, and what it looked like before.
    struct PointerState {
        Ref<NSCursor> current; // nil is the arrow
        Ref<NSCursor> place; // whose shape the pointer took when it came where it is
        std::vector<Ref<NSCursor>> pushed; // what was there before each push
        int hides = 0;
        bool hiddenUntilMoved = false;

        static PointerState& shared()
        {
            static auto* const state = new PointerState;
            return *state;
        }
        Ref<NSCursor> cursor() const
        {
            return current ? current : CursorAccess::standard(Cursor::arrow);
        }
        void show() const
        {
            display::Display* const display = ApplicationAccess::displayOrNull();
            if (!display)
                return;
            const bool hidden = hides > 0 || hiddenUntilMoved;
            const Ref<NSCursor> shown = cursor();
            display->setCursor(hidden ? Cursor::hidden : CursorAccess::shape(*shown));
        }
        void set(const Ref<NSCursor>& cursor)
        {
            current = cursor;
            show();
        }
    };

}

Ref<NSCursor> CursorAccess::standard(Cursor shape)
{
    static auto* const all = new std::array<Ref<NSCursor>, kShapes>;
    Ref<NSCursor>& known = all->at(static_cast<std::size_t>(shape));
    if (!known) {
        known = alloc<NSCursor>();
        known->shape_ = static_cast<NSInteger>(shape);
    }
    return known;
}

bool CursorAccess::isUsable(NSInteger shape) { return shape >= 0 && shape < kShapes; }

void CursorAccess::enter(NSCursor* cursor)
{
    PointerState& state = PointerState::shared();
    if (state.place == cursor)
        return;
    state.place = cursor;
    const Ref<NSCursor> shown = cursor ? Ref<NSCursor>(cursor) : standard(Cursor::arrow);
    shown->set();
}

void CursorAccess::pointerMoved()
{
    PointerState& state = PointerState::shared();
    if (std::exchange(state.hiddenUntilMoved, false))
        state.show();
}

void CursorAccess::displayChanged()
{
    PointerState& state = PointerState::shared();
    state.place = nullptr;
    state.hiddenUntilMoved = false;
    state.set(nullptr);
}

template <> struct NSCursor::Methods<struct Shapes> {

    template <Cursor Shape> static Ref<NSCursor> standard(Class&)
    {
        return CursorAccess::standard(Shape);
    }
    static Ref<NSCursor> current(Class&) { return PointerState::shared().cursor(); }

    // ---- hiding

    static void hide(Class&)
    {
        ++PointerState::shared().hides;
        PointerState::shared().show();
    }
    static void unhide(Class&)
    {
        PointerState& state = PointerState::shared();
        state.hides = std::max(state.hides - 1, 0);
        state.show();
    }
    static void hideUntilMoved(Class&, bool hidden)
    {
        PointerState::shared().hiddenUntilMoved = hidden;
        PointerState::shared().show();
    }

    // ---- one cursor

    static Ref<NSCursor> initWithImage(NSCursor& self, NSImage* image, NSPoint hotSpot)
    {
        if (!image || !image->isKindOfClass(NSImage::cls()))
            raise("NSInvalidArgumentException", "*** -[NSCursor initWithImage:hotSpot:]: no image");
        self.image_ = image;
        self.hotSpot_ = hotSpot;
        return &self;
    }
    static Ref<NSImage> image(NSCursor& self) { return self.image_; }
    static NSPoint hotSpot(NSCursor& self) { return self.hotSpot_; }
    static void set(NSCursor& self) { PointerState::shared().set(&self); }
    static void push(NSCursor& self)
    {
        PointerState::shared().pushed.push_back(PointerState::shared().cursor());
        self.set();
    }
    static void pop(Class&)
    {
        std::vector<Ref<NSCursor>>& pushed = PointerState::shared().pushed;
        if (pushed.empty())
            return;
        const Ref<NSCursor> before = pushed.back();
        pushed.pop_back();
        before->set();
    }
    static void popFromInstance(NSCursor&) { NSCursor::cls().pop(); }

    // ---- archives; "NSCursorType" is the number of a standard shape

    static void encode(NSCursor& self, NSCoder* coder)
    {
        coder->encodeInteger_forKey(self.shape_, "NSCursorType"_ns);
        coder->encodeObject_forKey(self.image_.get(), "NSImage"_ns);
        coder->encodePoint_forKey(self.hotSpot_, "NSHotSpot"_ns);
    }
    static Ref<NSObject> initWithCoder(NSCursor& self, NSCoder* coder)
    {
        self.image_ = decode<NSImage>(coder, "NSImage"_ns);
        self.hotSpot_ = coder->decodePointForKey("NSHotSpot"_ns);
        const NSInteger shape = coder->decodeIntegerForKey("NSCursorType"_ns);
        if (self.image_)
            return &self;
        return CursorAccess::standard(
            CursorAccess::isUsable(shape) ? static_cast<Cursor>(shape) : Cursor::arrow);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "currentCursor", imp<current> },
            { "currentSystemCursor", imp<current> },
            { "arrowCursor", imp<standard<Cursor::arrow>> },
            { "IBeamCursor", imp<standard<Cursor::iBeam>> },
            { "pointingHandCursor", imp<standard<Cursor::pointingHand>> },
            { "openHandCursor", imp<standard<Cursor::openHand>> },
            { "closedHandCursor", imp<standard<Cursor::closedHand>> },
            { "crosshairCursor", imp<standard<Cursor::crosshair>> },
            { "resizeLeftCursor", imp<standard<Cursor::resizeLeftRight>> },
            { "resizeRightCursor", imp<standard<Cursor::resizeLeftRight>> },
            { "resizeLeftRightCursor", imp<standard<Cursor::resizeLeftRight>> },
            { "resizeUpCursor", imp<standard<Cursor::resizeUpDown>> },
            { "resizeDownCursor", imp<standard<Cursor::resizeUpDown>> },
            { "resizeUpDownCursor", imp<standard<Cursor::resizeUpDown>> },
            { "operationNotAllowedCursor", imp<standard<Cursor::notAllowed>> },
            { "hide", imp<hide> },
            { "unhide", imp<unhide> },
            { "setHiddenUntilMouseMoves:", imp<hideUntilMoved> },
            { "pop", imp<pop> },
        });
        t.methods({
            { "initWithImage:hotSpot:", imp<initWithImage> },
            { "image", imp<image> },
            { "hotSpot", imp<hotSpot> },
            { "set", imp<set> },
            { "push", imp<push> },
            { "pop", imp<popFromInstance> },
        });
        declareCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSCursor, Shapes)

}
