// SPDX-License-Identifier: Apache-2.0
#include "PainterPrivate.h"
#include "SubviewsPrivate.h"

#include "quartz/CGContext.h"
#include "runtime/NSException.h"

namespace brindle {

namespace {

    CGAffineTransform matrixOf(const AxisTransform& t)
    {
        return { t.scaleX, 0, 0, t.scaleY, t.moveX, t.moveY };
    }

    NSRect boxAround(const Parts& parts)
    {
        if (parts.isEmpty())
            return {};
        NSRect box = parts[0];
        for (const NSRect& part : parts.all().subspan(1))
            box = NSUnionRect(box, part);
        return box;
    }

    /// Answers a box of the window in a view's coordinates, and a little more: its edges have been rounded.
    NSRect reachIn(const AxisTransform& toWindow, NSRect box)
    {
        return NSInsetRect(toWindow.inverse().apply(box), -1, -1);
    }

}

// ---- focus

std::vector<Focus*>& Focus::stack()
{
    static auto* const stack
        = new std::vector<Focus*>; // views may be focused while the process ends
    return *stack;
}

Ref<NSView> Focus::current() { return stack().empty() ? Ref<NSView>() : stack().back()->view_; }

std::span<const NSRect> Focus::partsOf(const NSView& view)
{
    for (std::size_t i = stack().size(); i-- > 0;) {
        if (stack()[i]->view_ == &view)
            return stack()[i]->parts_.all();
    }
    return {};
}

Focus::Focus(NSView& view, const AxisTransform& toWindow, std::span<const NSRect> clip)
    : Focus(view, WindowAccess::backing(*ViewAccess::window(view)), toWindow, clip)
{
}

Focus::Focus(NSView& view, const Backing& backing, const AxisTransform& toWindow,
    std::span<const NSRect> clip)
    : view_(&view)
    , context_(backing.context)
    , state_(context_.get())
    , current_(toWindow.scaleY < 0 ? backing.flipped.get() : backing.upright.get())
{
    const AxisTransform inverse = toWindow.inverse();
    for (const NSRect& part : clip) {
        parts_.add(inverse.apply(part));
        clipped_ = clipped_ == NSRect {} ? part : NSUnionRect(clipped_, part);
    }
    quartz::clipToTouchedPixels(context_.get(), clip);
    CGContextConcatCTM(context_.get(), matrixOf(toWindow));
    stack().push_back(this);
}

Focus::~Focus()
{
    // Above it lies only what was locked while the view drew, and never unlocked.
    while (stack().back() != this)
        delete stack().back();
    stack().pop_back();
}

NSRect Focus::box() const { return boxAround(parts_); }

void Focus::lock(NSView& view)
{
    const NSRect visible = ViewAccess::visibleInWindow(view);
    auto* const focus
        = new Focus(view, ViewAccess::toWindow(view), { &visible, 1 }); // until unlock
    focus->locked_ = true;
}

void Focus::unlock(NSView& view)
{
    if (stack().empty() || stack().back()->view_ != &view || !stack().back()->locked_)
        raise("NSInternalInconsistencyException", "-[NSView unlockFocus]: the view has no focus");
    const std::unique_ptr<Focus> focus(stack().back());
    NSWindow* const window = ViewAccess::window(view);
    if (!window)
        return;
    const Backing& backing = WindowAccess::backing(*window);
    const display::PixelRect drawn = Damage::pixelsOf(focus->clipped_, backing.scale, backing.size);
    WindowAccess::present(*window, { &drawn, 1 });
}

// ---- painting

namespace {

    /// Everything that is drawn in its scope is one picture, faded as a whole.
    class Group {
    public:
        Group(CGContext* context, CGFloat alpha, NSRect rect)
            : context_(alpha < 1 ? context : nullptr)
        {
            if (!context_)
                return;
            CGContextSaveGState(context_.get());
            CGContextSetAlpha(context_.get(), alpha);
            CGContextBeginTransparencyLayerWithRect(context_.get(), rect, nullptr);
        }
        ~Group()
        {
            if (!context_)
                return;
            CGContextEndTransparencyLayer(context_.get());
            CGContextRestoreGState(context_.get());
        }
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;

    private:
        Ref<CGContext> context_;
    };

    /// Gives the context the coordinates of a layer's view, or takes them back, for a scope.
    class Coordinates {
    public:
        Coordinates(CGContext* context, const AxisTransform& transform)
            : context_(context)
        {
            CGContextSaveGState(context_);
            CGContextConcatCTM(context_, matrixOf(transform));
        }
        ~Coordinates() { CGContextRestoreGState(context_); }
        Coordinates(const Coordinates&) = delete;
        Coordinates& operator=(const Coordinates&) = delete;

    private:
        CGContext* context_;
    };

}

Painter::Painter(const Backing& backing, const Parts& parts)
    : backing_(backing)
    , parts_(parts)
    , box_(boxAround(parts_))
{
}

Painter::Painter(CGContext* context, NSRect part, quartz::LayerLook look)
    : box_(part)
    , look_(look)
    , clearsMarks_(false)
{
    parts_.add(part);
    NSGraphicsContext::Meta maker = NSGraphicsContext::cls();
    backing_.context = context;
    backing_.upright = maker.graphicsContextWithGraphicsPort_flipped(context, false);
    backing_.flipped = maker.graphicsContextWithGraphicsPort_flipped(context, true);
}

Parts Painter::partsIn(NSRect visible) const
{
    Parts inside;
    for (const NSRect& part : parts_.all()) {
        if (NSIntersectsRect(part, visible))
            inside.add(NSIntersectionRect(part, visible));
    }
    return inside;
}

// Siblings are sorted out by their frames alone, which costs a few comparisons each; who passes is asked exactly.
template <class Step>
void Painter::forTouched(NSView& view, const AxisTransform& toWindow, Step&& step) const
{
    const NSRect reach = reachIn(toWindow, box_);
    forSubviews(
        view, [&reach](const NSView& subview) { return ViewAccess::mayReach(subview, reach); },
        step);
}

// The last opaque view, in the order of drawing, that covers all that is to be drawn: nothing before it shows.
Ref<NSView> Painter::coveringView(NSView& view, const AxisTransform& outer, NSRect clip) const
{
    if (ViewAccess::isHidden(view) || ViewAccess::alpha(view) < 1 || ViewAccess::layer(view))
        return nullptr;
    const AxisTransform toWindow = ViewAccess::toSuperview(view).then(outer);
    const NSRect visible = NSIntersectionRect(clip, toWindow.apply(ViewAccess::bounds(view)));
    if (!NSContainsRect(visible, box_))
        return nullptr;
    const NSRect reach = reachIn(toWindow, box_);
    const std::vector<Ref<NSView>>& inside = ViewAccess::subviews(view);
    for (std::size_t i = inside.size(); i-- > 0;) {
        // A view that is asked may take others away.
        if (i >= inside.size() || !ViewAccess::mayReach(*inside[i], reach))
            continue;
        const Ref<NSView> subview = inside[i];
        if (Ref<NSView> found = coveringView(*subview, toWindow, visible))
            return found;
    }
    return view.isOpaque() ? Ref<NSView>(&view) : nullptr;
}

void Painter::plan(NSView& root)
{
    first_ = coveringView(root, {}, ViewAccess::frame(root));
    const NSView* above = first_.get();
    while (above && above != &root)
        above = ViewAccess::superview(*above);
    if (!above)
        first_ = nullptr; // it has left the window when it was asked, and would never be reached
}

template <class Step> void Painter::attempt(Step&& step)
{
    try {
        step();
    } catch (...) {
        if (!raised_)
            raised_ = std::current_exception();
    }
}

void Painter::paint(NSView& root)
{
    const quartz::StateScope scope(backing_.context.get(), quartz::StateScope::Start::bottom);
    paint(root, {}, ViewAccess::frame(root));
}

void Painter::paintAlone(NSView& view)
{
    const NSRect bounds = ViewAccess::bounds(view);
    const quartz::StateScope scope(backing_.context.get());
    AxisTransform upright;
    if (view.isFlipped())
        upright = { 1, -1, 0, NSMinY(bounds) + NSMaxY(bounds) };
    paintAt(view, upright, box_);
}

/// Answers what of a view may be painted, in its own coordinates.
NSRect Painter::areaOf(NSView& view) const
{
    ViewLayer* const shower = ViewAccess::layer(view);
    return shower ? shower->extent(look_) : ViewAccess::bounds(view);
}

void Painter::announce(NSView& view, const AxisTransform& outer, NSRect clip)
{
    if (ViewAccess::isHidden(view))
        return;
    const AxisTransform toWindow = ViewAccess::toSuperview(view).then(outer);
    if (!NSIntersectsRect(NSIntersectionRect(clip, toWindow.apply(areaOf(view))), box_))
        return;
    if (ViewLayer* const shower = ViewAccess::layer(view))
        shower->settle();
    if (ViewAccess::needsDisplay(view))
        attempt([&] { view.viewWillDraw(); });
    if (ViewAccess::subviews(view).empty())
        return;
    const NSRect visible = NSIntersectionRect(clip, toWindow.apply(ViewAccess::bounds(view)));
    forTouched(view, toWindow, [&](NSView& subview) { announce(subview, toWindow, visible); });
}

void Painter::paint(NSView& view, const AxisTransform& outer, NSRect clip)
{
    if (!ViewAccess::isHidden(view))
        paintAt(view, ViewAccess::toSuperview(view).then(outer), clip);
}

void Painter::paintAt(NSView& view, const AxisTransform& toWindow, NSRect clip)
{
    if (ViewLayer* const layer = ViewAccess::layer(view)) {
        const std::shared_ptr<ViewLayer> shower
            = layer->shared_from_this(); // the view may leave it
        paintLayered(view, *shower, toWindow, clip);
        return;
    }
    const CGFloat alpha = ViewAccess::alpha(view);
    const NSRect visible = NSIntersectionRect(clip, toWindow.apply(ViewAccess::bounds(view)));
    if (alpha <= 0 || !NSIntersectsRect(visible, box_))
        return;
    const Group group(backing_.context.get(), alpha, visible);
    if (beginView(view))
        drawOwn(view, toWindow, visible);
    paintSubviews(view, toWindow, visible);
}

// Ground and shadow may lie outside of the view's bounds; what the view and its subviews draw does not.
void Painter::paintLayered(
    NSView& view, ViewLayer& shower, const AxisTransform& toWindow, NSRect clip)
{
    const Parts parts = partsIn(NSIntersectionRect(clip, toWindow.apply(areaOf(view))));
    if (parts.isEmpty())
        return;
    const bool draws = beginView(view);
    const bool updates = draws && view.wantsUpdateLayer();
    if (updates)
        attempt([&] { shower.update(); });
    CGContext* const context = backing_.context.get();
    const NSRect visible = NSIntersectionRect(clip, toWindow.apply(ViewAccess::bounds(view)));
    const quartz::StateScope scope(context);
    quartz::clipToTouchedPixels(context, parts.all());
    CGContextConcatCTM(context, matrixOf(toWindow));
    quartz::HostedDrawing drawing(*shower.layer(), context, look_);
    if (clearsMarks_)
        shower.wasPainted();
    if (!drawing.isVisible())
        return;
    if (draws && !updates) {
        const Coordinates outside(context, toWindow.inverse());
        drawOwn(view, toWindow, visible);
    }
    drawing.drawSublayers();
    const Coordinates outside(context, toWindow.inverse());
    paintSubviews(view, toWindow, visible);
}

/// Answers whether the view's own drawing will be seen.
bool Painter::beginView(NSView& view)
{
    if (first_ == &view)
        first_ = nullptr;
    if (clearsMarks_)
        ViewAccess::needsDisplay(view) = false;
    return !first_;
}

void Painter::drawOwn(NSView& view, const AxisTransform& toWindow, NSRect visible)
{
    const Parts parts = partsIn(visible);
    if (parts.isEmpty())
        return;
    attempt([&] {
        const Focus focus(view, backing_, toWindow, parts.all());
        view.drawRect(focus.box());
    });
}

void Painter::paintSubviews(NSView& view, const AxisTransform& toWindow, NSRect visible)
{
    if (ViewAccess::subviews(view).empty() || !NSIntersectsRect(visible, box_))
        return;
    forTouched(view, toWindow, [&](NSView& subview) {
        if (ViewAccess::superview(subview) == &view)
            paint(subview, toWindow, visible);
    });
}

}
