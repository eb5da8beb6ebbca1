// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSImage;

/// A shape of the pointer.
///
/// The standard shapes are those of the desktop's theme; two requests for one answer the same object. The pointer has one
/// shape in all windows of the program: the one last set or pushed, until it comes to a cursor rectangle
/// (`NSView+CursorRects.h`), to the edge of a window that can be resized, or leaves one of them. The shape of a
/// custom image is kept, answered and archived, but the desktop is shown the arrow in its place.
/// Thread: main.
class NSCursor : public NSObject {
    BRINDLE_OBJECT(NSCursor, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the cursor that was last set or pushed; the arrow at first. Hiding does not change it.
        Ref<NSCursor> currentCursor() const { return send<"currentCursor", Ref<NSCursor>>(); }
        Ref<NSCursor> currentSystemCursor() const
        {
            return send<"currentSystemCursor", Ref<NSCursor>>();
        }
        Ref<NSCursor> arrowCursor() const { return send<"arrowCursor", Ref<NSCursor>>(); }
        Ref<NSCursor> IBeamCursor() const { return send<"IBeamCursor", Ref<NSCursor>>(); }
        Ref<NSCursor> pointingHandCursor() const
        {
            return send<"pointingHandCursor", Ref<NSCursor>>();
        }
        Ref<NSCursor> openHandCursor() const { return send<"openHandCursor", Ref<NSCursor>>(); }
        Ref<NSCursor> closedHandCursor() const { return send<"closedHandCursor", Ref<NSCursor>>(); }
        Ref<NSCursor> crosshairCursor() const { return send<"crosshairCursor", Ref<NSCursor>>(); }
        /// The next three are one shape in most themes, and so are the three after them.
        Ref<NSCursor> resizeLeftCursor() const { return send<"resizeLeftCursor", Ref<NSCursor>>(); }
        Ref<NSCursor> resizeRightCursor() const
        {
            return send<"resizeRightCursor", Ref<NSCursor>>();
        }
        Ref<NSCursor> resizeLeftRightCursor() const
        {
            return send<"resizeLeftRightCursor", Ref<NSCursor>>();
        }
        Ref<NSCursor> resizeUpCursor() const { return send<"resizeUpCursor", Ref<NSCursor>>(); }
        Ref<NSCursor> resizeDownCursor() const { return send<"resizeDownCursor", Ref<NSCursor>>(); }
        Ref<NSCursor> resizeUpDownCursor() const
        {
            return send<"resizeUpDownCursor", Ref<NSCursor>>();
        }
        Ref<NSCursor> operationNotAllowedCursor() const
        {
            return send<"operationNotAllowedCursor", Ref<NSCursor>>();
        }
        /// Hides the pointer over the program's windows; as many `unhide` show it again.
        void hide() const { send<"hide">(); }
        void unhide() const { send<"unhide">(); }
        /// Hides it until it next moves; NO shows it at once.
        void setHiddenUntilMouseMoves(bool hidden) const
        {
            send<"setHiddenUntilMouseMoves:">(hidden);
        }
        /// Takes the pushed cursor away and sets the one before it; nothing happens where none was pushed.
        void pop() const { send<"pop">(); }
    };

    /// - hotSpot: the point of the image that points, from its top left.
    /// - Raises: `NSInvalidArgumentException` for a nil image.
    Ref<NSCursor> initWithImage_hotSpot(NSImage* image, NSPoint hotSpot)
    {
        return send<"initWithImage:hotSpot:", Ref<NSCursor>>(image, hotSpot);
    }
    /// Answers the image it was made with; nil for the standard shapes, which the theme draws.
    Ref<NSImage> image() const { return send<"image", Ref<NSImage>>(); }
    NSPoint hotSpot() const { return send<"hotSpot", NSPoint>(); }

    /// Makes it the pointer's shape.
    void set() { send<"set">(); }
    /// The same, and remembers the one before for `pop`.
    void push() { send<"push">(); }
    void pop() { send<"pop">(); }

private:
    friend struct CursorAccess;

    Ref<NSImage> image_;
    NSPoint hotSpot_ {};
    NSInteger shape_ = 0; // one of the display's
};

}
