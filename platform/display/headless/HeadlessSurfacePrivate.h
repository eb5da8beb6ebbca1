// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "HeadlessDisplay.h"

namespace brindle::display {

/// A surface of the display in memory. It keeps what was presented, so hiding it loses nothing.
class HeadlessSurface final : public Surface {
public:
    HeadlessSurface(HeadlessDisplay& display, SurfaceId id, const SurfaceOptions& options);
    ~HeadlessSurface() override;

    CGRect frame() const override { return frame_; }
    void setFrame(CGRect frame) override;
    double scale() const override { return display_.scaleFor(frame_); }
    PixelSize pixelSize() const override;
    void setSizeLimits(CGSize minimum, CGSize maximum) override;
    void setResizable(bool resizable) override { resizable_ = resizable; }
    void setTitle(std::string_view title) override { title_ = title; }
    void setKind(SurfaceKind kind) override { kind_ = kind; }
    void setLevel(int level) override;
    void setTransientFor(Surface* parent) override;
    void setInputPassthrough(bool passthrough) override;
    void setOpaque(bool opaque) override { opaque_ = opaque; }
    void setOverrideRedirect(bool redirect) override { overrideRedirect_ = redirect; }
    void setAcceptsFocus(bool accepts) override { acceptsFocus_ = accepts; }
    void setAlpha(double alpha) override;
    void setCursor(Cursor cursor) override { cursor_ = cursor; }
    void setStrut(const std::optional<Strut>& strut) override;
    StrutStanding strutStanding() const override;
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

    /// Answers whether there is something of it on the screen.
    bool isVisible() const { return shown_ && !state_.minimised && !concealed_; }
    /// Answers where it is shown: lower than its frame below a panel.
    CGRect shownFrame() const;
    /// Applies a frame that somebody else decided, within the size limits, and tells it.
    void takeFrame(CGRect frame);
    /// Applies a state and the frame that belongs to it, and tells both.
    void takeState(SurfaceState state);

private:
    friend class HeadlessDisplay;

    void restack(HeadlessSurface& other, int offset);

    HeadlessDisplay& display_;
    CGRect frame_;
    CGRect frameBefore_; // zooming and full screen
    CGSize minimum_;
    CGSize maximum_;
    std::string title_;
    Snapshot contents_;
    double contentsScale_ = 1;
    std::optional<Strut> strut_;
    std::optional<Cursor> cursor_;
    HeadlessSurface* parent_ = nullptr;
    SurfaceState state_;
    SurfaceKind kind_;
    double alpha_ = 1;
    int level_;
    bool opaque_;
    bool overrideRedirect_;
    bool acceptsFocus_;
    bool resizable_;
    bool passthrough_ = false;
    bool shown_ = false;
    bool concealed_ = false;
};

}
