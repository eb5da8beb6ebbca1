// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Types.h"
#include "runtime/Export.h"

namespace brindle::display {

class Surface;

/// How a surface begins. Everything can be changed later.
struct SurfaceOptions {
    CGRect frame {}; ///< points, screen coordinates
    SurfaceKind kind = SurfaceKind::normal;
    int level = 0; ///< surfaces of a higher level stay above those of a lower one
    bool opaque = true; ///< false: the alpha of its pixels shows what is below
    bool overrideRedirect
        = false; ///< true: the window manager keeps its hands off (menus, tooltips)
    bool acceptsFocus = true;
    bool resizable = true; ///< by the user
    std::string title {}; ///< UTF-8
    Surface* transientFor = nullptr;
};

/// One native window, without any decoration of the desktop's.
///
/// The native window is made when the surface is first shown; until then a surface costs no request.
/// It goes with the object. Geometry is in points, y up, (0, 0) at the bottom-left of the primary screen.
/// Requests to a display that has gone do nothing. Thread: main.
class BRINDLE_EXPORT Surface {
public:
    virtual ~Surface();
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    /// Answers the number that events carry.
    SurfaceId id() const { return id_; }

    /// Answers the frame last set, or what the desktop made of it; never rounded by the way to pixels and back.
    virtual CGRect frame() const = 0;
    /// Sets the frame. The desktop may decide otherwise, which a `frameChanged` tells. May lie off every screen.
    virtual void setFrame(CGRect frame) = 0;
    /// Answers how many device pixels a point of this surface has: that of the screen which shows most of it.
    virtual double scale() const = 0;
    /// Answers the size that presented images have: the frame times the scale, rounded, at least 1 x 1.
    virtual PixelSize pixelSize() const = 0;
    /// Limits what the user can resize it to. A maximum of 0 is no limit.
    virtual void setSizeLimits(CGSize minimum, CGSize maximum) = 0;
    /// Sets whether the user can resize it.
    virtual void setResizable(bool resizable) = 0;

    virtual void setTitle(std::string_view title) = 0;
    virtual void setKind(SurfaceKind kind) = 0;
    virtual void setLevel(int level) = 0;
    /// Keeps this surface above another and minimised with it; null ends that.
    virtual void setTransientFor(Surface* parent) = 0;
    /// Sets whether clicks and pointer movements go to what lies below, other programs included.
    virtual void setInputPassthrough(bool passthrough) = 0;
    /// A change while shown makes the native window anew.
    virtual void setOpaque(bool opaque) = 0;
    /// A change while shown hides and shows it.
    virtual void setOverrideRedirect(bool redirect) = 0;
    virtual void setAcceptsFocus(bool accepts) = 0;
    /// Fades the whole surface, 0 to 1, where the desktop can.
    virtual void setAlpha(double alpha) = 0;
    virtual void setCursor(Cursor cursor) = 0;
    /// Reserves a screen edge while the surface is shown; nothing ends that. At the top edge the surface, and what is transient
    /// for it, is shown below what others have there already, and the strut grows by that. Its frame and the
    /// places of events do not tell of it.
    virtual void setStrut(const std::optional<Strut>& strut) = 0;
    virtual StrutStanding strutStanding() const = 0;
    /// Answers how many points lower than its frame the surface is shown.
    virtual double strutOffset() const = 0;
    /// Makes the surface neither seen nor hit while it goes on to be shown and to keep its strut.
    virtual void setConcealed(bool concealed) = 0;

    /// Shows the surface on top of its level, without focus; an `exposed` asks for its pixels. Restores a minimised one.
    virtual void show() = 0;
    virtual void hide() = 0;
    /// Answers whether it was shown and not hidden since; a minimised surface is shown.
    virtual bool isShown() const = 0;
    virtual void raise() = 0;
    virtual void lower() = 0;
    /// Restacks directly above or below another one, as far as the levels allow.
    virtual void stackAbove(Surface& other) = 0;
    virtual void stackBelow(Surface& other) = 0;

    /// Asks for the keyboard focus and raises it; a `focusIn` tells that it was granted.
    virtual void activate() = 0;
    virtual void minimise() = 0;
    virtual void setZoomed(bool zoomed) = 0;
    virtual void setFullScreen(bool fullScreen) = 0;
    virtual SurfaceState state() const = 0;

    /// Lets the window manager move the surface with the pointer that is down at a point of the screen.
    /// - Returns: true when it does: `frameChanged` events follow, then a `moveResizeEnded`, and no `pointerUp`. False when
    ///   there is none that can, or the button is up again already; the caller then follows the pointer itself.
    virtual bool beginMove(CGPoint screenPoint) = 0;
    /// The same for a resize from a side or corner.
    virtual bool beginResize(ResizeEdge edge, CGPoint screenPoint) = 0;

    /// Shows the damaged parts of an image whose size is `pixelSize()`. Parts outside of it are ignored.
    /// - Cost: the damaged pixels are copied before this returns.
    virtual void present(const Pixels& image, std::span<const PixelRect> damage) = 0;

protected:
    explicit Surface(SurfaceId id)
        : id_(id)
    {
    }

private:
    SurfaceId id_;
};

}
