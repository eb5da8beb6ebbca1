// SPDX-License-Identifier: Apache-2.0
#include "HeadlessSurfacePrivate.h"

#include <algorithm>
#include <cmath>

#include "display/PixelMapping.h"

namespace brindle::display {

HeadlessSurface::HeadlessSurface(
    HeadlessDisplay& display, SurfaceId id, const SurfaceOptions& options)
    : Surface(id)
    , display_(display)
    , frame_(options.frame)
    , title_(options.title)
    , parent_(static_cast<HeadlessSurface*>(options.transientFor))
    , kind_(options.kind)
    , level_(options.level)
    , opaque_(options.opaque)
    , overrideRedirect_(options.overrideRedirect)
    , acceptsFocus_(options.acceptsFocus)
    , resizable_(options.resizable)
{
    display_.surfaces_.push_back(this);
    display_.sortByLevel();
}

HeadlessSurface::~HeadlessSurface() { display_.forget(*this); }

void HeadlessSurface::setFrame(CGRect frame)
{
    const PixelSize before = pixelSize();
    frame_ = frame;
    if (strut_)
        display_.updateStruts();
    display_.updatePointerSurface();
    if (isVisible() && pixelSize() != before)
        display_.post(Event::Kind::exposed, this);
}

PixelSize HeadlessSurface::pixelSize() const { return pixelSizeOf(frame_.size, scale()); }

void HeadlessSurface::setSizeLimits(CGSize minimum, CGSize maximum)
{
    minimum_ = minimum;
    maximum_ = maximum;
}

void HeadlessSurface::setLevel(int level)
{
    level_ = level;
    display_.sortByLevel();
    display_.updatePointerSurface();
}

void HeadlessSurface::setTransientFor(Surface* parent)
{
    parent_ = static_cast<HeadlessSurface*>(parent);
    const auto& all = display_.surfaces_;
    if (parent_
        && std::find(all.begin(), all.end(), parent_) > std::find(all.begin(), all.end(), this))
        restack(*parent_, 1);
}

void HeadlessSurface::setInputPassthrough(bool passthrough)
{
    passthrough_ = passthrough;
    display_.updatePointerSurface();
}

void HeadlessSurface::setAlpha(double alpha)
{
    alpha_ = std::isnan(alpha) ? 1 : std::clamp(alpha, 0.0, 1.0);
}

void HeadlessSurface::setStrut(const std::optional<Strut>& strut)
{
    strut_ = strut;
    display_.updateStruts();
}

double HeadlessSurface::strutOffset() const
{
    constexpr int kMostParents = 16; // they may belong to each other in a circle
    const HeadlessSurface* leader = this;
    for (int i = 0; i < kMostParents && !leader->strut_ && leader->parent_; ++i)
        leader = leader->parent_;
    if (!leader->strut_ || leader->strut_->edge != Strut::Edge::top
        || display_.bareScreens_.empty())
        return 0;
    const Screen& screen = display_.bareScreens_[display_.screenIndexFor(leader->frame_)];
    return NSMaxY(screen.frame) - NSMaxY(screen.visibleFrame);
}

StrutStanding HeadlessSurface::strutStanding() const
{
    if (!strut_ || !shown_ || display_.bareScreens_.empty())
        return StrutStanding::none;
    return strutOffset() > 0 ? StrutStanding::belowPanel : StrutStanding::atEdge;
}

CGRect HeadlessSurface::shownFrame() const { return NSOffsetRect(frame_, 0, -strutOffset()); }

void HeadlessSurface::setConcealed(bool concealed)
{
    if (concealed == concealed_)
        return;
    concealed_ = concealed;
    if (concealed)
        display_.updatePointerSurface();
    else if (isVisible())
        display_.post(Event::Kind::exposed, this);
}

void HeadlessSurface::show()
{
    if (!display_.connected_)
        return;
    const bool wasVisible = isVisible();
    shown_ = true;
    if (state_.minimised)
        takeState({ false, state_.zoomed, state_.fullScreen });
    display_.raise(*this);
    display_.updateStruts();
    if (!wasVisible)
        display_.post(Event::Kind::exposed, this);
}

void HeadlessSurface::hide()
{
    if (!shown_)
        return;
    shown_ = false;
    display_.vanish(*this);
}

void HeadlessSurface::raise() { display_.raise(*this); }

void HeadlessSurface::lower()
{
    auto& all = display_.surfaces_;
    const auto place = std::find(all.begin(), all.end(), this);
    std::rotate(all.begin(), place, place + 1);
    display_.sortByLevel();
    display_.updatePointerSurface();
}

void HeadlessSurface::stackAbove(Surface& other)
{
    restack(static_cast<HeadlessSurface&>(other), 1);
}

void HeadlessSurface::stackBelow(Surface& other)
{
    restack(static_cast<HeadlessSurface&>(other), 0);
}

void HeadlessSurface::restack(HeadlessSurface& other, int offset)
{
    if (&other == this)
        return;
    auto& all = display_.surfaces_;
    all.erase(std::find(all.begin(), all.end(), this));
    all.insert(std::find(all.begin(), all.end(), &other) + offset, this);
    display_.sortByLevel();
    display_.updatePointerSurface();
}

void HeadlessSurface::activate()
{
    if (!shown_)
        return;
    if (state_.minimised)
        takeState({ false, state_.zoomed, state_.fullScreen });
    display_.raise(*this);
    if (acceptsFocus_)
        display_.setFocus(this);
}

void HeadlessSurface::minimise() { takeState({ true, state_.zoomed, state_.fullScreen }); }

void HeadlessSurface::setZoomed(bool zoomed)
{
    takeState({ state_.minimised, zoomed, state_.fullScreen });
}

void HeadlessSurface::setFullScreen(bool fullScreen)
{
    takeState({ state_.minimised, state_.zoomed, fullScreen });
}

bool HeadlessSurface::beginMove(CGPoint) { return false; }

bool HeadlessSurface::beginResize(ResizeEdge, CGPoint) { return false; }

void HeadlessSurface::takeFrame(CGRect frame)
{
    const auto limited = [](double value, double least, double most) {
        return std::max(most > 0 ? std::min(value, most) : value, least);
    };
    frame.size.width = limited(frame.size.width, minimum_.width, maximum_.width);
    frame.size.height = limited(frame.size.height, minimum_.height, maximum_.height);
    if (frame == frame_)
        return;
    const PixelSize before = pixelSize();
    frame_ = frame;
    if (strut_)
        display_.updateStruts();
    display_.post(Event::Kind::frameChanged, this).frame = frame;
    if (isVisible() && pixelSize() != before)
        display_.post(Event::Kind::exposed, this);
    display_.updatePointerSurface();
}

void HeadlessSurface::takeState(SurfaceState state)
{
    if (state == state_ || !display_.connected_)
        return;
    const SurfaceState before = state_;
    const bool filled = before.zoomed || before.fullScreen;
    if (!filled)
        frameBefore_ = frame_;
    state_ = state;
    display_.post(Event::Kind::stateChanged, this).state = state;
    if ((state.zoomed || state.fullScreen) && !display_.screens_.empty()) {
        const Screen& screen = display_.screens_[display_.screenIndexFor(frameBefore_)];
        takeFrame(state.fullScreen ? screen.frame : screen.visibleFrame);
    } else if (filled)
        takeFrame(frameBefore_);
    if (state.minimised)
        display_.vanish(*this);
    else if (before.minimised && shown_)
        display_.post(Event::Kind::exposed, this);
    display_.updatePointerSurface();
}

void HeadlessSurface::present(const Pixels& image, std::span<const PixelRect> damage)
{
    if (!display_.connected_ || !image.data)
        return;
    const PixelSize size = pixelSize();
    if (contents_.width != size.width || contents_.height != size.height) {
        contents_.width = size.width;
        contents_.height = size.height;
        contents_.words.assign(
            static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), 0);
    }
    contentsScale_ = scale();
    const PixelRect whole { 0, 0, std::min(size.width, image.width),
        std::min(size.height, image.height) };
    std::uint64_t pixels = 0;
    for (const PixelRect& part : damage) {
        const PixelRect rect = intersection(part, whole);
        if (rect.isEmpty())
            continue;
        for (int y = rect.top; y < rect.bottom; ++y) {
            const std::ptrdiff_t start = static_cast<std::ptrdiff_t>(y) * size.width + rect.left;
            std::copy_n(image.row(y) + rect.left, rect.width(), contents_.words.begin() + start);
        }
        pixels
            += static_cast<std::uint64_t>(rect.width()) * static_cast<std::uint64_t>(rect.height());
    }
    display_.counters_.presents += pixels > 0;
    display_.counters_.presentedPixels += pixels;
}

}
