// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "ConnectionPrivate.h"
#include "display/Event.h"
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
    bool isOverrideRedirect() const { return overrideRedirect_; }
    bool isMapped() const { return mapped_; }
    /// Answers whether a window manager decides about it.
    bool isManaged() const;
    PixelRect pixelRect() const { return rect_; }

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
    void focusChanged(bool focused);
    void takeFocus();

    /// Applies the frame anew, because the mapping of points to pixels changed.
    void screensChanged(bool scaleChanged);
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
    void applyFrame();
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
    double alpha_ = 1;
    int level_;
    unsigned lastConfigure_ = 0; // sequence number of our last request for a place
    bool opaque_;
    bool overrideRedirect_;
    bool acceptsFocus_;
    bool resizable_;
    bool passthrough_ = false;
    bool shown_ = false; // what the program wants
    bool mapped_ = false; // what the server has told
    bool reparented_ = false;
    xcb_window_t parentWindow_ = XCB_NONE;
    xcb_window_t followed_
        = XCB_NONE; // from a movement by the window manager to our own next request
    bool wantsFocus_ = false; // as soon as it is mapped
    bool placed_ = false; // there was a request for a place
};

}
