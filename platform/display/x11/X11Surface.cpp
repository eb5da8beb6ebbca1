// SPDX-License-Identifier: Apache-2.0
#include "X11SurfacePrivate.h"

#include <algorithm>
#include <array>
#include <utility>

#include "X11DisplayPrivate.h"

namespace brindle::display {

X11Surface::X11Surface(X11Display& display, SurfaceId id, const SurfaceOptions& options)
    : Surface(id)
    , display_(display)
    , frame_(options.frame)
    , title_(options.title)
    , parent_(static_cast<X11Surface*>(options.transientFor))
    , kind_(options.kind)
    , level_(options.level)
    , opaque_(options.opaque)
    , overrideRedirect_(options.overrideRedirect)
    , acceptsFocus_(options.acceptsFocus)
    , resizable_(options.resizable)
{
    rect_ = pixelsFor(frame_);
    display_.add(*this);
}

X11Surface::~X11Surface()
{
    dropWindow();
    display_.remove(*this);
}

double X11Surface::scale() const { return display_.mapping().scale; }

PixelSize X11Surface::pixelSize() const { return { rect_.width(), rect_.height() }; }

bool X11Surface::isManaged() const
{
    return !overrideRedirect_ && (reparented_ || display_.manager().isAlive());
}

void X11Surface::ensureWindow()
{
    if (window_)
        return;
    Connection& connection = display_.connection();
    xcb_connection_t* raw = connection.raw();
    format_ = opaque_ ? connection.opaqueFormat() : connection.alphaFormat();
    window_ = xcb_generate_id(raw);
    const std::uint32_t events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY
        | XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE
        | XCB_EVENT_MASK_PROPERTY_CHANGE | display_.pointer().coreEventMask();
    // No background: the server would paint it before our pixels come. In the order of the mask's bits.
    const std::array<std::uint32_t, 6> values { XCB_BACK_PIXMAP_NONE, 0, XCB_GRAVITY_NORTH_WEST,
        overrideRedirect_ ? 1U : 0U, events, connection.colormap(format_) };
    xcb_create_window(raw, format_.depth, window_, connection.root(),
        static_cast<std::int16_t>(rect_.left), static_cast<std::int16_t>(rect_.top),
        static_cast<std::uint16_t>(rect_.width()), static_cast<std::uint16_t>(rect_.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, format_.visual,
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_OVERRIDE_REDIRECT
            | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
        values.data());
    context_ = xcb_generate_id(raw);
    const std::uint32_t silent = 0;
    xcb_create_gc(raw, context_, window_, XCB_GC_GRAPHICS_EXPOSURES, &silent);
    display_.pointer().selectEvents(window_);
    display_.addWindow(*this);
    writeAllHints();
    display_.parentHasWindow(*this);
}

void X11Surface::dropWindow()
{
    if (!window_)
        return;
    removeStrut(); // some window managers forget to look when the window has gone
    xcb_destroy_window(display_.connection().raw(), window_);
    destroyed();
}

void X11Surface::remakeWindow()
{
    if (!window_)
        return;
    const bool wasShown = shown_;
    dropWindow();
    if (wasShown)
        show();
}

// --- place -----------------------------------------------------------------------------------------------

PixelRect X11Surface::pixelsFor(CGRect frame) const
{
    PixelRect rect = display_.mapping().pixels(frame);
    rect.top += offset();
    rect.bottom += offset();
    return rect;
}

CGRect X11Surface::pointsFor(PixelRect rect) const
{
    rect.top -= offset();
    rect.bottom -= offset();
    return display_.mapping().points(rect);
}

void X11Surface::setFrame(CGRect frame)
{
    frame_ = frame;
    applyFrame();
}

void X11Surface::applyFrame()
{
    const PixelRect before = rect_;
    rect_ = pixelsFor(frame_);
    if (!window_ || rect_ == before)
        return;
    const std::array<std::uint32_t, 4> values { static_cast<std::uint32_t>(rect_.left),
        static_cast<std::uint32_t>(rect_.top), static_cast<std::uint32_t>(rect_.width()),
        static_cast<std::uint32_t>(rect_.height()) };
    if (!resizable_)
        writeSizeHints(); // or a window manager would hold it to the old size
    lastConfigure_ = xcb_configure_window(display_.connection().raw(), window_,
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
            | XCB_CONFIG_WINDOW_HEIGHT,
        values.data())
                         .sequence;
    placed_ = true;
    followed_ = XCB_NONE;
    sizeChangedFrom(before);
    if (strut_)
        writeStrut();
}

// The server asks only for what has become visible, but a new size is a new picture.
void X11Surface::sizeChangedFrom(PixelRect before)
{
    const bool sameSize = before.width() == rect_.width() && before.height() == rect_.height();
    if (!sameSize && mapped_ && !display_.hasQueued(Event::Kind::exposed, *this))
        display_.post(Event::Kind::exposed, *this);
}

void X11Surface::configured(const xcb_configure_notify_event_t& event)
{
    // An answer to an older request says nothing about the latest one.
    const auto sequence = reinterpret_cast<const xcb_generic_event_t&>(event).full_sequence;
    if (placed_ && static_cast<std::int32_t>(sequence - lastConfigure_) < 0)
        return;
    int left = event.x;
    int top = event.y;
    const bool isSynthetic = event.response_type & 0x80;
    if (reparented_
        && !isSynthetic) // counted from the window manager's frame, which nobody wants to know
        readPlace(left, top);
    takeRect({ left, top, left + event.width, top + event.height });
}

void X11Surface::readPlace(int& left, int& top) const
{
    xcb_connection_t* raw = display_.connection().raw();
    const auto reply = owned(xcb_translate_coordinates_reply(
        raw, xcb_translate_coordinates(raw, window_, display_.connection().root(), 0, 0), nullptr));
    left = reply ? reply->dst_x : rect_.left;
    top = reply ? reply->dst_y : rect_.top;
}

// A manager that moves its frame step by step may forget to tell the window where the last step has led.
void X11Surface::followFrame()
{
    if (!reparented_)
        return;
    followed_ = parentWindow_;
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(display_.connection().raw(), followed_, XCB_CW_EVENT_MASK, &mask);
}

void X11Surface::frameMoved()
{
    int left = 0;
    int top = 0;
    readPlace(left, top);
    takeRect({ left, top, left + rect_.width(), top + rect_.height() });
}

void X11Surface::takeRect(PixelRect rect)
{
    if (rect == rect_)
        return;
    const PixelRect before = std::exchange(rect_, rect);
    frame_ = pointsFor(rect);
    display_.post(Event::Kind::frameChanged, *this).frame = frame_;
    sizeChangedFrom(before);
    if (strut_)
        writeStrut();
}

void X11Surface::reparented(xcb_window_t parent)
{
    reparented_ = parent != display_.connection().root();
    parentWindow_ = parent;
    followed_ = XCB_NONE;
}

void X11Surface::scaleChanged()
{
    writeSizeHints();
    applyFrame();
}

void X11Surface::screensMoved()
{
    const CGRect now = pointsFor(rect_);
    if (window_ && pixelsFor(frame_) != rect_) {
        frame_ = now;
        display_.post(Event::Kind::frameChanged, *this).frame = frame_;
    } else if (!window_) {
        rect_ = pixelsFor(frame_);
    }
    if (strut_)
        writeStrut();
}

// --- visibility --------------------------------------------------------------------------------------------

void X11Surface::show()
{
    if (!display_.isConnected())
        return;
    ensureWindow();
    const bool wasShown = std::exchange(shown_, true);
    const bool wasMinimised = state_.minimised;
    if (!wasShown) {
        writeState();
        settleScreenEdge();
    }
    if (!isManaged() && wasMinimised)
        takeState({ false, state_.zoomed, state_.fullScreen });
    display_.raise(*this);
    if (!wasShown || !mapped_ || wasMinimised)
        xcb_map_window(display_.connection().raw(), window_);
    mapsAgain_ = wasMinimised && mapped_; // the server may have had nothing to do
}

void X11Surface::hide()
{
    if (!shown_)
        return;
    wantsFocus_ = false;
    mapsAgain_ = false;
    if (isManaged()) {
        // A window manager needs time to let go of a window, and until then it must not be shown again. A new one next
        // time need not wait.
        dropWindow();
        return;
    }
    shown_ = false;
    mapped_ = false;
    display_.loseGrab(*this);
    removeStrut();
    xcb_unmap_window(display_.connection().raw(), window_);
}

void X11Surface::mapped()
{
    mapped_ = true;
    if (wantsFocus_)
        activate();
}

void X11Surface::unmapped()
{
    mapped_ = false;
    display_.loseGrab(*this);
    if (std::exchange(mapsAgain_, false))
        xcb_map_window(display_.connection().raw(), window_);
}

void X11Surface::destroyed()
{
    display_.loseGrab(*this);
    display_.removeWindow(*this);
    xcb_free_gc(display_.connection().raw(), context_);
    window_ = XCB_NONE;
    context_ = XCB_NONE;
    shown_ = false;
    mapped_ = false;
    mapsAgain_ = false;
    reparented_ = false;
    followed_ = XCB_NONE;
    placed_ = false;
    reserved_.reset();
}

void X11Surface::exposed(const xcb_expose_event_t& event)
{
    if (event.count == 0 && !display_.hasQueued(Event::Kind::exposed, *this))
        display_.post(Event::Kind::exposed, *this);
}

void X11Surface::raise() { display_.raise(*this); }

void X11Surface::lower() { display_.lower(*this); }

void X11Surface::stackAbove(Surface& other)
{
    display_.restack(*this, static_cast<X11Surface&>(other), true);
}

void X11Surface::stackBelow(Surface& other)
{
    display_.restack(*this, static_cast<X11Surface&>(other), false);
}

void X11Surface::setOpaque(bool opaque)
{
    if (opaque == opaque_)
        return;
    opaque_ = opaque;
    remakeWindow();
}

void X11Surface::setOverrideRedirect(bool redirect)
{
    if (redirect == overrideRedirect_)
        return;
    overrideRedirect_ = redirect;
    remakeWindow();
}

void X11Surface::setCursor(Cursor cursor)
{
    cursor_ = cursor;
    applyCursor();
}

void X11Surface::applyCursor()
{
    const std::optional<Cursor> wanted = cursor_ ? cursor_ : display_.cursor();
    if (!window_ || !wanted)
        return;
    const std::uint32_t value = display_.cursors()[*wanted];
    xcb_change_window_attributes(display_.connection().raw(), window_, XCB_CW_CURSOR, &value);
}

// --- focus -------------------------------------------------------------------------------------------------

void X11Surface::activate()
{
    if (!shown_)
        return;
    if (state_.minimised)
        show();
    display_.raise(*this);
    // A window that the manager has not taken up yet cannot be asked for.
    wantsFocus_ = !mapped_;
    if (!mapped_ || !acceptsFocus_)
        return;
    Connection& connection = display_.connection();
    if (isManaged() && display_.manager().supports(Atom::netActiveWindow)) {
        const std::array<std::uint32_t, 2> data { 1, connection.lastTime() };
        connection.tellManager(window_, Atom::netActiveWindow, data);
        return;
    }
    takeFocus();
}

void X11Surface::takeFocus()
{
    if (mapped_ && acceptsFocus_) {
        xcb_set_input_focus(display_.connection().raw(), XCB_INPUT_FOCUS_PARENT, window_,
            display_.connection().lastTime());
    }
}

// --- pixels --------------------------------------------------------------------------------------------------

void X11Surface::present(const Pixels& image, std::span<const PixelRect> damage)
{
    // What is drawn into a window that is not there yet is lost; an `exposed` comes with it.
    if (!mapped_ || !image.data)
        return;
    const PixelRect whole { 0, 0, std::min(rect_.width(), image.width),
        std::min(rect_.height(), image.height) };
    Counters& counters = display_.connection().counters();
    std::uint64_t pixels = 0;
    for (const PixelRect& part : damage) {
        const PixelRect rect = intersection(part, whole);
        if (rect.isEmpty())
            continue;
        display_.presenter().present(window_, context_, format_.depth, image, rect);
        pixels
            += static_cast<std::uint64_t>(rect.width()) * static_cast<std::uint64_t>(rect.height());
    }
    counters.presents += pixels > 0;
    counters.presentedPixels += pixels;
}

}
