// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "ConnectionPrivate.h"
#include "display/Event.h"
#include "display/Strut.h"
#include "display/Surface.h"

namespace brindle::display {

class X11Display;

/// A window of the X server. Until the first `show` it is only a description.
class X11Surface final : public Surface {
public:
    X11Surface(X11Display& display, SurfaceId id, const SurfaceOptions& options);
    ~X11Surface() override;

    CGRect frame() const override { return frame_; }
    void setFrame(CGRect frame) override;
    double scale() const override;
    PixelSize pixelSize() const override;
    void setSizeLimits(CGSize minimum, CGSize maximum) override;
    void setResizable(bool resizable) override;
    void setTitle(std::string_view title) override;
    void setKind(SurfaceKind kind) override;
    void setLevel(int level) override;
    void setTransientFor(Surface* parent) override;
    void setInputPassthrough(bool passthrough) override;
    void setOpaque(bool opaque) override;
    void setOverrideRedirect(bool redirect) override;
    void setAcceptsFocus(bool accepts) override;
    void setAlpha(double alpha) override;
    void setCursor(Cursor cursor) override;
    void setStrut(const std::optional<Strut>& strut) override;
    StrutStanding strutStanding() const override
    {
        return shown_ ? standing_ : StrutStanding::none;
    }
    double strutOffset() const override;
    void setConcealed(bool concealed) override;
    void show() override;
    void hide() override;
    bool isShown() const override { return shown_; }
    void raise() override;
    void lower() override;
    void stackAbove(Surface& other) override;
    void stackBelow(Surface& other) override;
    void activate() override;
    void minimise() override;
    void setZoomed(bool zoomed) override;
    void setFullScreen(bool fullScreen) override;
    SurfaceState state() const override { return state_; }
    bool beginMove(CGPoint screenPoint) override;
    bool beginResize(ResizeEdge edge, CGPoint screenPoint) override;
    void present(const Pixels& image, std::span<const PixelRect> damage) override;

    /// Answers the server's window; 0 before the first `show`.
    xcb_window_t window() const { return window_; }
    X11Surface* parent() const { return parent_; }
    int level() const { return level_; }
    /// Answers whether the window manager is asked to keep it above ordinary windows.
    bool isFloating() const { return level_ >= kFloatingLevel; }
    /// Answers whether a window manager decides about it.
    bool isManaged() const;
    PixelRect pixelRect() const { return rect_; }

    /// Answers the surface whose strut moves this one: itself, or one that it is transient for.
    const X11Surface& leader() const;
    /// Answers how many pixels lower than its frame it is shown.
    int offset() const { return leader().ownOffset_; }
    /// Finds its place below the panels that are there, and reserves its own.
    void settleScreenEdge();
    void applyFrame();

    // What the server tells about the window.
    void configured(const xcb_configure_notify_event_t& event);
    /// Answers the window manager's frame while its movements are to be told; else 0.
    xcb_window_t followedFrame() const { return followed_; }
    void frameMoved();
    void reparented(xcb_window_t parent);
    void mapped();
    void unmapped();
    void destroyed();
    void exposed(const xcb_expose_event_t& event);
    void propertyChanged(xcb_atom_t property);
    void takeFocus();

    /// Counts the frame anew: the screens moved under a window that stayed.
    void screensMoved();
    /// Brings the window to its frame again, whose points have another size now.
    void scaleChanged();
    void applyCursor();
    /// Tells the window manager that the button is up, in case it did not see that itself.
    void cancelManaged() const;
    void parentGone() { parent_ = nullptr; }
    void writeTransientFor();

private:
    static constexpr int kFloatingLevel = 3;

    void ensureWindow();
    void dropWindow();
    void remakeWindow();
    PixelRect pixelsFor(CGRect frame) const;
    CGRect pointsFor(PixelRect rect) const;
    void takeRect(PixelRect rect);
    void followFrame();
    void readPlace(int& left, int& top) const;
    void sizeChangedFrom(PixelRect before);
    void takeState(SurfaceState state);
    void readState();

    // Properties of the window, in X11Surface-Hints.cpp.
    void writeAllHints();
    void writeTitle();
    void writeKind();
    void writeSizeHints();
    void writeDecoration();
    void writeFocusHints();
    void writeState();
    void writeStrut();
    void removeStrut();
    void writeAlpha();
    void applyPassthrough();
    void applyConcealment();
    void setShape(xcb_shape_sk_t kind, bool empty);
    std::optional<StrutValues> strutValuesFor(const Strut& strut) const;
    void changeState(bool on, Atom first, Atom second);
    void fill(SurfaceState wanted);
    bool beginWithManager(std::uint32_t direction, CGPoint screenPoint);
    void askToMoveOrResize(std::uint32_t direction, PixelRect place) const;

    X11Display& display_;
    xcb_window_t window_ = XCB_NONE;
    xcb_gcontext_t context_ = XCB_NONE;
    VisualFormat format_;
    CGRect frame_;
    CGRect frameBefore_; // zooming and full screen without a window manager
    PixelRect rect_; // of the native window, on the root window
    CGSize minimum_;
    CGSize maximum_;
    std::string title_;
    std::optional<Cursor> cursor_;
    std::optional<Strut> strut_;
    X11Surface* parent_;
    SurfaceState state_;
    SurfaceKind kind_;
    StrutStanding standing_ = StrutStanding::none;
    int ownOffset_ = 0; // pixels down, of a surface with a strut
    std::optional<StrutValues> reserved_; // what the window says now
    double alpha_ = 1;
    int level_;
    unsigned lastConfigure_ = 0; // sequence number of our last request for a place
    bool opaque_;
    bool overrideRedirect_;
    bool acceptsFocus_;
    bool resizable_;
    bool passthrough_ = false;
    bool concealed_ = false;
    bool shown_ = false; // what the program wants
    bool mapped_ = false; // what the server has told
    bool reparented_ = false;
    xcb_window_t parentWindow_ = XCB_NONE;
    xcb_window_t followed_
        = XCB_NONE; // from a movement by the window manager to our own next request
    bool wantsFocus_ = false; // as soon as it is mapped
    bool mapsAgain_ = false; // as soon as a manager that minimises it has taken it away
    bool placed_ = false; // there was a request for a place
};

}
