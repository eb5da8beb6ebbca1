// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "foundation/NSString.h"

namespace brindle {

class NSArray;
class NSDictionary;

/// One screen. An object describes the screen as it was when it was asked for; after
/// `NSApplicationDidChangeScreenParametersNotification` ask again.
class NSScreen : public NSObject {
    BRINDLE_OBJECT(NSScreen, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers all screens, the primary one first; empty without a display.
        Ref<NSArray> screens() const { return send<"screens", Ref<NSArray>>(); }
        /// Answers the screen of the key window, else the primary one; nil without a display.
        Ref<NSScreen> mainScreen() const { return send<"mainScreen", Ref<NSScreen>>(); }
        /// Answers the screen with the most backing pixels for a point; nil without a display.
        Ref<NSScreen> deepestScreen() const { return send<"deepestScreen", Ref<NSScreen>>(); }
        /// Replaces the list of screens, for tests, and posts the change; nil goes back to the display's own.
        /// - screens: screens made by `initWithFrame:visibleFrame:backingScaleFactor:`, the primary one first.
        void setScreensOverride(NSArray* screens) const { send<"setScreensOverride:">(screens); }
    };

    /// Makes a description of a screen that need not exist, for `setScreensOverride`.
    Ref<NSScreen> initWithFrame_visibleFrame_backingScaleFactor(
        NSRect frame, NSRect visibleFrame, CGFloat scale)
    {
        return send<"initWithFrame:visibleFrame:backingScaleFactor:", Ref<NSScreen>>(
            frame, visibleFrame, scale);
    }
    /// Answers the screen's rectangle in points; the primary one begins at (0, 0), y goes up.
    NSRect frame() const { return send<"frame", NSRect>(); }
    /// Answers the frame without what docks and panels have reserved.
    NSRect visibleFrame() const { return send<"visibleFrame", NSRect>(); }
    /// Answers how many device pixels a point has.
    CGFloat backingScaleFactor() const { return send<"backingScaleFactor", CGFloat>(); }
    Ref<NSString> localizedName() const { return send<"localizedName", Ref<NSString>>(); }

private:
    friend struct ScreenAccess;

    NSRect frame_ {};
    NSRect visibleFrame_ {};
    CGFloat scale_ = 1;
    Ref<NSString> name_;
};

}
