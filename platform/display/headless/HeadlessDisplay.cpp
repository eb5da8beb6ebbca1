// SPDX-License-Identifier: Apache-2.0
#include "HeadlessDisplay.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "HeadlessSurfacePrivate.h"
#include "display/Strut.h"
#include "display/SurfaceNumber.h"

namespace brindle::display {

HeadlessDisplay::HeadlessDisplay(std::vector<Screen> screens)
    : bareScreens_(std::move(screens))
    , screens_(bareScreens_)
    , hasDisplay_(!screens_.empty())
{
}

HeadlessDisplay::~HeadlessDisplay() { assert(surfaces_.empty()); }

Screen HeadlessDisplay::defaultScreen() { return screenOfSize(1280, 800); }

Screen HeadlessDisplay::screenOfSize(double width, double height, double scale)
{
    const CGRect frame { { 0, 0 }, { width, height } };
    return { frame, frame, scale, "headless", true };
}

std::string_view HeadlessDisplay::name() const { return hasDisplay_ ? "headless" : "none"; }
bool HeadlessDisplay::isConnected() const { return connected_; }
const std::vector<Screen>& HeadlessDisplay::screens() const { return screens_; }
int HeadlessDisplay::fileDescriptor() const { return -1; }
void HeadlessDisplay::flush() { }
CGPoint HeadlessDisplay::pointerLocation() const
{
    return { pointer_.x, pointer_.y + (underPointer_ ? underPointer_->strutOffset() : 0) };
}
Modifiers HeadlessDisplay::modifiers() const { return modifiers_; }
void HeadlessDisplay::setCursor(Cursor cursor) { cursor_ = cursor; }
const Counters& HeadlessDisplay::counters() const { return counters_; }
void HeadlessDisplay::setBackground(std::uint32_t color) { background_ = color; }
void HeadlessDisplay::advance(double seconds) { now_ += seconds; }
double HeadlessDisplay::now() const { return timeSource_ ? timeSource_() : now_; }

std::unique_ptr<Surface> HeadlessDisplay::createSurface(const SurfaceOptions& options)
{
    return std::make_unique<HeadlessSurface>(*this, nextSurfaceNumber(), options);
}

bool HeadlessDisplay::pollEvent(Event& event)
{
    if (events_.empty())
        return false;
    event = std::move(events_.front());
    events_.pop_front();
    return true;
}

bool HeadlessDisplay::grab(Surface& surface)
{
    auto& wanted = static_cast<HeadlessSurface&>(surface);
    if (!connected_ || !grabs_.allowed || !wanted.isVisible())
        return false;
    grabs_.menu = &wanted;
    grabs_.pressed = nullptr;
    return true;
}

void HeadlessDisplay::ungrab()
{
    grabs_.menu = nullptr;
    updatePointerSurface();
}

void HeadlessDisplay::beep()
{
    if (connected_)
        ++counters_.beeps;
}

void HeadlessDisplay::setScreens(std::vector<Screen> screens)
{
    bareScreens_ = std::move(screens);
    screens_ = bareScreens_;
    // The bare screens are told unless the struts leave something else, which is then told instead.
    const std::size_t before = events_.size();
    updateStruts();
    if (events_.size() == before)
        post(Event::Kind::screensChanged, nullptr);
    updatePointerSurface();
}

void HeadlessDisplay::changeAppearance() { post(Event::Kind::appearanceChanged, nullptr); }

void HeadlessDisplay::setAllowsGrabs(bool allows)
{
    grabs_.allowed = allows;
    if (allows || !grabs_.menu)
        return;
    post(Event::Kind::grabLost, grabs_.menu);
    ungrab();
}

void HeadlessDisplay::disconnect()
{
    if (!connected_)
        return;
    events_.clear();
    post(Event::Kind::disconnected, nullptr);
    connected_ = false;
    grabs_ = { nullptr, nullptr, 0, grabs_.allowed };
    focused_ = nullptr;
    underPointer_ = nullptr;
}

void HeadlessDisplay::setTimeSource(std::function<double()> source)
{
    timeSource_ = std::move(source);
}

void HeadlessDisplay::setImageWriter(ImageWriter writer) { imageWriter_ = std::move(writer); }

bool HeadlessDisplay::saveSnapshot(const std::string& path, std::size_t screen) const
{
    if (!imageWriter_)
        return false;
    const Snapshot image = snapshot(screen);
    return imageWriter_(image.pixels(), path);
}

// --- surfaces -------------------------------------------------------------------------------------------

std::vector<SurfaceId> HeadlessDisplay::stackingOrder() const
{
    std::vector<SurfaceId> order;
    for (const HeadlessSurface* surface : surfaces_) {
        if (surface->isVisible())
            order.push_back(surface->id());
    }
    return order;
}

void HeadlessDisplay::sortByLevel()
{
    std::stable_sort(surfaces_.begin(), surfaces_.end(),
        [](const HeadlessSurface* a, const HeadlessSurface* b) { return a->level_ < b->level_; });
}

void HeadlessDisplay::raise(HeadlessSurface& surface)
{
    const auto place = std::find(surfaces_.begin(), surfaces_.end(), &surface);
    std::rotate(place, place + 1, surfaces_.end());
    // What belongs to it comes along, in its old order. Parents in a circle would raise each other for ever, so each
    // surface is taken once.
    std::vector<HeadlessSurface*> family { &surface };
    for (std::size_t i = 0; i < family.size(); ++i) {
        for (HeadlessSurface* other : surfaces_) {
            if (other->parent_ == family[i]
                && std::find(family.begin(), family.end(), other) == family.end())
                family.push_back(other);
        }
    }
    std::stable_partition(surfaces_.begin(), surfaces_.end(), [&family](HeadlessSurface* other) {
        return std::find(family.begin() + 1, family.end(), other) == family.end();
    });
    sortByLevel();
    updatePointerSurface();
}

void HeadlessDisplay::vanish(HeadlessSurface& surface)
{
    if (grabs_.menu == &surface) {
        post(Event::Kind::grabLost, &surface);
        grabs_.menu = nullptr;
    }
    if (grabs_.pressed == &surface)
        grabs_.pressed = nullptr;
    if (focused_ == &surface)
        setFocus(nullptr);
    if (underPointer_ == &surface)
        postPointer(Event::Kind::pointerLeft, std::exchange(underPointer_, nullptr));
    updateStruts();
    updatePointerSurface();
}

void HeadlessDisplay::forget(HeadlessSurface& surface)
{
    surface.shown_ = false;
    vanish(surface);
    surfaces_.erase(std::find(surfaces_.begin(), surfaces_.end(), &surface));
    for (HeadlessSurface* other : surfaces_) {
        if (other->parent_ == &surface)
            other->parent_ = nullptr;
    }
    std::erase_if(events_, [&surface](const Event& e) { return e.surface == surface.id(); });
}

std::size_t HeadlessDisplay::screenIndexFor(CGRect frame) const
{
    double best = 0;
    std::size_t found = 0;
    for (std::size_t i = 0; i < screens_.size(); ++i) {
        const CGRect screen = screens_[i].frame;
        const double width
            = std::min(NSMaxX(frame), NSMaxX(screen)) - std::max(NSMinX(frame), NSMinX(screen));
        const double height
            = std::min(NSMaxY(frame), NSMaxY(screen)) - std::max(NSMinY(frame), NSMinY(screen));
        if (width > 0 && height > 0 && width * height > best) {
            best = width * height;
            found = i;
        }
    }
    return found;
}

double HeadlessDisplay::scaleFor(CGRect frame) const
{
    return screens_.empty() ? 1 : screens_[screenIndexFor(frame)].scale;
}

void HeadlessDisplay::updateStruts()
{
    if (screens_.empty())
        return;
    std::vector<Screen> now = bareScreens_;
    for (const HeadlessSurface* surface : surfaces_) {
        if (!surface->strut_ || !surface->shown_)
            continue;
        Screen& screen = now[screenIndexFor(surface->frame_)];
        Strut strut = *surface->strut_;
        strut.thickness += surface->strutOffset();
        screen.visibleFrame = frameWithoutStrut(screen.frame, screen.visibleFrame, strut);
    }
    if (now == screens_)
        return;
    screens_ = std::move(now);
    post(Event::Kind::screensChanged, nullptr);
}

SurfaceDescription HeadlessDisplay::describe(const Surface& surface) const
{
    const auto& own = static_cast<const HeadlessSurface&>(surface);
    return { .title = own.title_,
        .kind = own.kind_,
        .level = own.level_,
        .alpha = own.alpha_,
        .opaque = own.opaque_,
        .overrideRedirect = own.overrideRedirect_,
        .acceptsFocus = own.acceptsFocus_,
        .resizable = own.resizable_,
        .inputPassthrough = own.passthrough_,
        .concealed = own.concealed_,
        .transientFor = own.parent_ ? own.parent_->id() : 0,
        .strut = own.strut_ };
}

}
