// SPDX-License-Identifier: Apache-2.0
#include "LateLibrariesPrivate.h"
#include "X11SurfacePrivate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <unistd.h>

#include "X11DisplayPrivate.h"
#include "display/Strut.h"

namespace brindle::display {

namespace {

    // Of the inter-client conventions; the server's library for them is not needed for three numbers.
    constexpr std::uint32_t kHintInput = 1 << 0;
    constexpr std::uint32_t kHintState = 1 << 1;
    constexpr std::uint32_t kStateNormal = 1;
    constexpr std::uint32_t kStateIconic = 3;
    constexpr std::uint32_t kSizePosition = 1 << 0; // chosen by the user, which managers respect
    constexpr std::uint32_t kSizeMinimum = 1 << 4;
    constexpr std::uint32_t kSizeMaximum = 1 << 5;
    constexpr std::uint32_t kSizeGravity = 1 << 9;
    constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;

    // The program's own name twice, as instance and class.
    std::string programClass()
    {
        char path[4096];
        const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
        std::string_view name(path, length > 0 ? static_cast<std::size_t>(length) : 0);
        name.remove_prefix(std::min(name.find_last_of('/') + 1, name.size()));
        if (name.empty())
            name = "brindle";
        std::string both(name);
        both += '\0';
        both += name;
        both += '\0';
        return both;
    }

    Atom typeOf(SurfaceKind kind)
    {
        switch (kind) {
        case SurfaceKind::normal:
            break;
        case SurfaceKind::utility:
            return Atom::netWmWindowTypeUtility;
        case SurfaceKind::dialog:
        case SurfaceKind::modal:
            return Atom::netWmWindowTypeDialog;
        case SurfaceKind::dock:
            return Atom::netWmWindowTypeDock;
        case SurfaceKind::popup:
            return Atom::netWmWindowTypePopupMenu;
        case SurfaceKind::tooltip:
            return Atom::netWmWindowTypeTooltip;
        }
        return Atom::netWmWindowTypeNormal;
    }

    // As the window manager counts the sides of a resize.
    std::uint32_t directionOf(ResizeEdge edge)
    {
        switch (edge) {
        case ResizeEdge::topLeft:
            return 0;
        case ResizeEdge::top:
            return 1;
        case ResizeEdge::topRight:
            return 2;
        case ResizeEdge::right:
            return 3;
        case ResizeEdge::bottomRight:
            return 4;
        case ResizeEdge::bottom:
            return 5;
        case ResizeEdge::bottomLeft:
            return 6;
        case ResizeEdge::left:
            return 7;
        }
        return 4;
    }
    constexpr std::uint32_t kDirectionMove = 8;
    constexpr std::uint32_t kDirectionCancel = 11;

}

void X11Surface::writeAllHints()
{
    Connection& connection = display_.connection();
    const std::array<std::uint32_t, 1> process { static_cast<std::uint32_t>(getpid()) };
    connection.setValues(window_, connection.atom(Atom::netWmPid), XCB_ATOM_CARDINAL, process);
    connection.setText(window_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, programClass());
    // The process number means something only together with the machine.
    char host[256] = {};
    if (gethostname(host, sizeof host - 1) == 0)
        connection.setText(window_, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, host);
    writeTitle();
    writeKind();
    writeSizeHints();
    writeDecoration();
    writeFocusHints();
    writeTransientFor();
    if (alpha_ < 1)
        writeAlpha();
    if (passthrough_)
        applyPassthrough();
    if (concealed_)
        applyConcealment();
    applyCursor();
}

void X11Surface::setTitle(std::string_view title)
{
    title_ = title;
    writeTitle();
}

void X11Surface::writeTitle()
{
    if (!window_)
        return;
    Connection& connection = display_.connection();
    const xcb_atom_t utf8 = connection.atom(Atom::utf8String);
    connection.setText(window_, connection.atom(Atom::netWmName), utf8, title_);
    connection.setText(window_, connection.atom(Atom::netWmIconName), utf8, title_);
    connection.setText(window_, XCB_ATOM_WM_NAME, utf8, title_);
}

void X11Surface::setKind(SurfaceKind kind)
{
    kind_ = kind;
    writeKind();
}

void X11Surface::writeKind()
{
    if (!window_)
        return;
    Connection& connection = display_.connection();
    const std::array<std::uint32_t, 1> type { connection.atom(typeOf(kind_)) };
    connection.setValues(window_, connection.atom(Atom::netWmWindowType), XCB_ATOM_ATOM, type);
    if (kind_ == SurfaceKind::dock) {
        const std::array<std::uint32_t, 1> all { kAllDesktops };
        connection.setValues(window_, connection.atom(Atom::netWmDesktop), XCB_ATOM_CARDINAL, all);
    }
}

void X11Surface::setSizeLimits(CGSize minimum, CGSize maximum)
{
    minimum_ = minimum;
    maximum_ = maximum;
    writeSizeHints();
}

void X11Surface::setResizable(bool resizable)
{
    resizable_ = resizable;
    writeSizeHints();
}

void X11Surface::writeSizeHints()
{
    if (!window_)
        return;
    const double scale = display_.mapping().scale;
    PixelSize least = pixelSizeOf(minimum_, scale);
    PixelSize most { maximum_.width > 0 ? pixelSizeOf(maximum_, scale).width : kLargestPixel,
        maximum_.height > 0 ? pixelSizeOf(maximum_, scale).height : kLargestPixel };
    if (!resizable_)
        least = most = pixelSize();
    std::array<std::uint32_t, 18> hints {};
    hints[0] = kSizePosition | kSizeMinimum | kSizeMaximum | kSizeGravity;
    hints[5] = static_cast<std::uint32_t>(least.width);
    hints[6] = static_cast<std::uint32_t>(least.height);
    hints[7] = static_cast<std::uint32_t>(most.width);
    hints[8] = static_cast<std::uint32_t>(most.height);
    hints[17] = XCB_GRAVITY_STATIC;
    display_.connection().setValues(
        window_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints);
}

void X11Surface::writeDecoration()
{
    Connection& connection = display_.connection();
    const xcb_atom_t property = connection.atom(Atom::motifWmHints);
    const std::array<std::uint32_t, 5> withoutFrame { 1 << 1, 0, 0, 0, 0 };
    connection.setValues(window_, property, property, withoutFrame);
}

void X11Surface::setAcceptsFocus(bool accepts)
{
    acceptsFocus_ = accepts;
    writeFocusHints();
}

void X11Surface::writeFocusHints()
{
    if (!window_)
        return;
    std::array<std::uint32_t, 9> hints {};
    hints[0] = kHintInput | kHintState;
    hints[1] = acceptsFocus_;
    hints[2] = state_.minimised ? kStateIconic : kStateNormal;
    Connection& connection = display_.connection();
    connection.setValues(window_, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, hints);
    const std::array<std::uint32_t, 3> protocols { connection.atom(Atom::wmDeleteWindow),
        connection.atom(Atom::netWmPing), connection.atom(Atom::wmTakeFocus) };
    connection.setValues(window_, connection.atom(Atom::wmProtocols), XCB_ATOM_ATOM,
        std::span(protocols).first(acceptsFocus_ ? 3 : 2));
}

void X11Surface::setTransientFor(Surface* parent)
{
    parent_ = static_cast<X11Surface*>(parent);
    writeTransientFor();
    applyFrame(); // the parent may be shown lower than its frame
    if (parent_ && shown_)
        display_.restack(*this, *parent_, true);
}

void X11Surface::writeTransientFor()
{
    if (!window_)
        return;
    Connection& connection = display_.connection();
    if (parent_ && parent_->window_) {
        const std::array<std::uint32_t, 1> value { parent_->window_ };
        connection.setValues(window_, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, value);
    } else {
        connection.remove(window_, XCB_ATOM_WM_TRANSIENT_FOR);
    }
}

void X11Surface::setAlpha(double alpha)
{
    alpha_ = std::isnan(alpha) ? 1 : std::clamp(alpha, 0.0, 1.0);
    writeAlpha();
}

void X11Surface::writeAlpha()
{
    if (!window_)
        return;
    Connection& connection = display_.connection();
    const xcb_atom_t property = connection.atom(Atom::netWmWindowOpacity);
    if (alpha_ >= 1) {
        connection.remove(window_, property);
        return;
    }
    const std::array<std::uint32_t, 1> value { static_cast<std::uint32_t>(alpha_ * 0xFFFFFFFFU) };
    connection.setValues(window_, property, XCB_ATOM_CARDINAL, value);
}

void X11Surface::setInputPassthrough(bool passthrough)
{
    passthrough_ = passthrough;
    applyPassthrough();
}

void X11Surface::applyPassthrough() { setShape(XCB_SHAPE_SK_INPUT, passthrough_); }

// Whether or not somebody blends windows, one without a shape is not there to be seen.
void X11Surface::applyConcealment() { setShape(XCB_SHAPE_SK_BOUNDING, concealed_); }

void X11Surface::setShape(xcb_shape_sk_t kind, bool empty)
{
    Connection& connection = display_.connection();
    if (!window_ || !connection.extensions().fixesEvent)
        return;
    xcb_connection_t* raw = connection.raw();
    if (!empty) {
        XFIXES(xcb_xfixes_set_window_shape_region)(raw, window_, kind, 0, 0, XCB_NONE);
        return;
    }
    const xcb_xfixes_region_t nothing = xcb_generate_id(raw);
    XFIXES(xcb_xfixes_create_region)(raw, nothing, 0, nullptr);
    XFIXES(xcb_xfixes_set_window_shape_region)(raw, window_, kind, 0, 0, nothing);
    XFIXES(xcb_xfixes_destroy_region)(raw, nothing);
}

void X11Surface::setConcealed(bool concealed)
{
    if (concealed == concealed_)
        return;
    concealed_ = concealed;
    applyConcealment();
    if (concealed)
        display_.loseGrab(*this);
}

// --- struts ------------------------------------------------------------------------------------------------

void X11Surface::setStrut(const std::optional<Strut>& strut)
{
    strut_ = strut;
    settleScreenEdge();
    if (!strut_)
        removeStrut();
}

const X11Surface& X11Surface::leader() const
{
    constexpr int kMostParents = 16; // they may belong to each other in a circle
    const X11Surface* found = this;
    for (int i = 0; i < kMostParents && !found->strut_ && found->parent_; ++i)
        found = found->parent_;
    return *found;
}

double X11Surface::strutOffset() const { return offset() / display_.mapping().scale; }

void X11Surface::settleScreenEdge()
{
    int wanted = 0;
    standing_ = StrutStanding::none;
    if (strut_ && shown_ && strut_->edge == Strut::Edge::top) {
        const PixelRect there = display_.mapping().pixels(frame_);
        if (!display_.manager().isAlive())
            standing_ = StrutStanding::noManager;
        else if (!strutValuesFor(*strut_))
            standing_ = StrutStanding::screenBeyond;
        else {
            const bool isPlaced = mapped_ && reserved_;
            wanted = display_.depthBelowPanels(
                there, isPlaced ? std::optional(rect_.bottom) : std::nullopt);
            standing_ = wanted > 0 ? StrutStanding::belowPanel : StrutStanding::atEdge;
        }
    }
    if (std::exchange(ownOffset_, wanted) != wanted)
        display_.offsetChanged(*this);
    writeStrut();
}

std::optional<StrutValues> X11Surface::strutValuesFor(const Strut& strut) const
{
    const Screens& screens = display_.screenTable();
    const std::size_t screen = screens.indexFor(display_.mapping().pixels(frame_));
    return strutValues(strut, screens.pixelFrames(), screen, screens.desktop(), screens.mapping());
}

// Only what is different is written: window managers answer by a new work area, which is looked at again.
void X11Surface::writeStrut()
{
    if (!window_ || !shown_ || !strut_)
        return;
    auto values = strutValuesFor(*strut_);
    if (!values) {
        removeStrut();
        return;
    }
    constexpr std::size_t kTop = 2;
    (*values)[kTop] += static_cast<std::uint32_t>(ownOffset_);
    ScreenEdge& edge = display_.screenEdge();
    edge.reserved(static_cast<int>((*values)[kTop]));
    if (std::exchange(reserved_, values) == values)
        return;
    Connection& connection = display_.connection();
    constexpr xcb_atom_t kCardinal = XCB_ATOM_CARDINAL;
    connection.setValues(window_, connection.atom(Atom::netWmStrutPartial), kCardinal, *values);
    connection.setValues(
        window_, connection.atom(Atom::netWmStrut), kCardinal, std::span(*values).first(4));
    const std::array<std::uint32_t, 1> mark { static_cast<std::uint32_t>(edge.hidden()) };
    connection.setValues(window_, connection.atom(Atom::brindleScreenEdge), kCardinal, mark);
}

void X11Surface::removeStrut()
{
    if (!window_ || !std::exchange(reserved_, std::nullopt))
        return;
    Connection& connection = display_.connection();
    connection.remove(window_, connection.atom(Atom::netWmStrutPartial));
    connection.remove(window_, connection.atom(Atom::netWmStrut));
    connection.remove(window_, connection.atom(Atom::brindleScreenEdge));
}

// --- states ------------------------------------------------------------------------------------------------

void X11Surface::setLevel(int level)
{
    level_ = level;
    display_.levelChanged(*this);
    if (window_ && shown_ && isManaged())
        changeState(isFloating(), Atom::netWmStateAbove, Atom::count);
}

// A window that is not shown says what it wants in the property; for the others the window manager is asked.
void X11Surface::writeState()
{
    Connection& connection = display_.connection();
    std::vector<std::uint32_t> atoms;
    const auto add = [&](bool wanted, Atom atom) {
        if (wanted)
            atoms.push_back(connection.atom(atom));
    };
    const bool isHelper = kind_ == SurfaceKind::dock || kind_ == SurfaceKind::utility;
    add(isFloating(), Atom::netWmStateAbove);
    add(kind_ == SurfaceKind::modal, Atom::netWmStateModal);
    add(state_.fullScreen, Atom::netWmStateFullScreen);
    add(state_.zoomed, Atom::netWmStateMaximizedVertically);
    add(state_.zoomed, Atom::netWmStateMaximizedHorizontally);
    add(isHelper, Atom::netWmStateSkipTaskbar);
    add(isHelper, Atom::netWmStateSkipPager);
    connection.setValues(window_, connection.atom(Atom::netWmState), XCB_ATOM_ATOM, atoms);
    writeFocusHints();
    writeTransientFor(); // the parent may have got its window since
}

void X11Surface::changeState(bool on, Atom first, Atom second)
{
    Connection& connection = display_.connection();
    const std::array<std::uint32_t, 4> data { on ? 1U : 0U, connection.atom(first),
        second == Atom::count ? 0U : connection.atom(second), 1 };
    connection.tellManager(window_, Atom::netWmState, data);
}

void X11Surface::takeState(SurfaceState state)
{
    if (state == state_)
        return;
    state_ = state;
    mapsAgain_ = false;
    display_.post(Event::Kind::stateChanged, *this).state = state;
}

void X11Surface::readState()
{
    Connection& connection = display_.connection();
    const auto atoms = connection.values(window_, connection.atom(Atom::netWmState), XCB_ATOM_ATOM);
    const auto has = [&](Atom atom) {
        return std::find(atoms.begin(), atoms.end(), connection.atom(atom)) != atoms.end();
    };
    const xcb_atom_t wmState = connection.atom(Atom::wmState);
    const auto iconic = connection.values(window_, wmState, wmState, 2);
    SurfaceState state;
    state.minimised = has(Atom::netWmStateHidden) || (!iconic.empty() && iconic[0] == kStateIconic);
    state.fullScreen = has(Atom::netWmStateFullScreen);
    state.zoomed
        = has(Atom::netWmStateMaximizedVertically) && has(Atom::netWmStateMaximizedHorizontally);
    takeState(state);
}

void X11Surface::propertyChanged(xcb_atom_t property)
{
    Connection& connection = display_.connection();
    const bool isState = property == connection.atom(Atom::netWmState)
        || property == connection.atom(Atom::wmState);
    // Before it is shown the property is our own doing; without a manager nobody answers it.
    if (isState && shown_ && isManaged())
        readState();
}

void X11Surface::minimise()
{
    mapsAgain_ = false;
    if (window_ && shown_ && isManaged()) {
        const std::array<std::uint32_t, 1> data { kStateIconic };
        display_.connection().tellManager(window_, Atom::wmChangeState, data);
        return;
    }
    takeState({ true, state_.zoomed, state_.fullScreen });
    mapped_ = false;
    if (window_)
        xcb_unmap_window(display_.connection().raw(), window_);
}

void X11Surface::setZoomed(bool zoomed)
{
    if (window_ && shown_ && isManaged()) {
        changeState(
            zoomed, Atom::netWmStateMaximizedVertically, Atom::netWmStateMaximizedHorizontally);
    } else {
        fill({ state_.minimised, zoomed, state_.fullScreen });
    }
}

void X11Surface::setFullScreen(bool fullScreen)
{
    if (window_ && shown_ && isManaged())
        changeState(fullScreen, Atom::netWmStateFullScreen, Atom::count);
    else
        fill({ state_.minimised, state_.zoomed, fullScreen });
}

// What a window manager would do, where there is none. One that comes later takes the state from the property.
void X11Surface::fill(SurfaceState wanted)
{
    if (wanted == state_ || !display_.isConnected())
        return;
    const bool filled = state_.zoomed || state_.fullScreen;
    if (!filled)
        frameBefore_ = frame_;
    takeState(wanted);
    const Screen& screen = display_.screens()[display_.screenTable().indexFor(rect_)];
    const CGRect frame = wanted.fullScreen ? screen.frame
        : wanted.zoomed                    ? screen.visibleFrame
                                           : frameBefore_;
    if (frame == frame_)
        return;
    setFrame(frame);
    display_.post(Event::Kind::frameChanged, *this).frame = frame;
}

// --- moves by the window manager ------------------------------------------------------------------------------

bool X11Surface::beginMove(CGPoint screenPoint)
{
    return beginWithManager(kDirectionMove, screenPoint);
}

bool X11Surface::beginResize(ResizeEdge edge, CGPoint screenPoint)
{
    return beginWithManager(directionOf(edge), screenPoint);
}

bool X11Surface::beginWithManager(std::uint32_t direction, CGPoint screenPoint)
{
    if (!mapped_ || overrideRedirect_ || !display_.manager().supports(Atom::netWmMoveResize))
        return false;
    // The press holds the pointer for us; the window manager could not take it.
    display_.pointer().ungrab();
    if (!display_.beginManaged(*this))
        return false;
    followFrame();
    askToMoveOrResize(direction, display_.mapping().pixels({ screenPoint, { 0, 0 } }));
    return true;
}

void X11Surface::cancelManaged() const { askToMoveOrResize(kDirectionCancel, {}); }

void X11Surface::askToMoveOrResize(std::uint32_t direction, PixelRect place) const
{
    constexpr std::uint32_t kLeftButton = 1;
    const std::array<std::uint32_t, 5> data { static_cast<std::uint32_t>(place.left),
        static_cast<std::uint32_t>(place.top), direction, kLeftButton, 1 };
    display_.connection().tellManager(window_, Atom::netWmMoveResize, data);
}

}
