// SPDX-License-Identifier: Apache-2.0
#include "PainterPrivate.h"

#include "quartz/CGContext.h"
#include "runtime/NSException.h"

namespace brindle {

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
            return stack()[i]->parts_;
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
        parts_.push_back(inverse.apply(part));
        clipped_ = clipped_ == NSRect {} ? part : NSUnionRect(clipped_, part);
    }
    CGContextClipToRects(context_.get(), clip.data(), clip.size());
    CGContextConcatCTM(
        context_.get(), { toWindow.scaleX, 0, 0, toWindow.scaleY, toWindow.moveX, toWindow.moveY });
    stack().push_back(this);
}

Focus::~Focus()
{
    // Above it lies only what was locked while the view drew, and never unlocked.
    while (stack().back() != this)
        delete stack().back();
    stack().pop_back();
}

NSRect Focus::box() const
{
    NSRect box = parts_.empty() ? NSRect {} : parts_.front();
    for (const NSRect& part : parts_)
        box = NSUnionRect(box, part);
    return box;
}

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

}

Painter::Painter(NSWindow& window, std::vector<NSRect> parts)
    : window_(window)
    , parts_(std::move(parts))
    , box_(parts_.empty() ? NSRect {} : parts_.front())
{
    for (const NSRect& part : parts_)
        box_ = NSUnionRect(box_, part);
}

std::vector<NSRect> Painter::partsIn(NSRect visible) const
{
    std::vector<NSRect> inside;
    for (const NSRect& part : parts_) {
        if (NSIntersectsRect(part, visible))
            inside.push_back(NSIntersectionRect(part, visible));
    }
    return inside;
}

// The last opaque view, in the order of drawing, that covers all that is to be drawn: nothing before it shows.
NSView* Painter::coveringView(NSView& view, const AxisTransform& outer, NSRect clip) const
{
    if (ViewAccess::isHidden(view) || ViewAccess::alpha(view) < 1)
        return nullptr;
    const AxisTransform toWindow = ViewAccess::toSuperview(view).then(outer);
    const NSRect visible = NSIntersectionRect(clip, toWindow.apply(ViewAccess::bounds(view)));
    if (!NSContainsRect(visible, box_))
        return nullptr;
    const std::vector<Ref<NSView>>& inside = ViewAccess::subviews(view);
    for (std::size_t i = inside.size(); i-- > 0;) {
        if (NSView* found = coveringView(*inside[i], toWindow, visible))
            return found;
    }
    return view.isOpaque() ? &view : nullptr;
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
    const quartz::StateScope scope(
        WindowAccess::backing(window_).context.get(), quartz::StateScope::Start::bottom);
    paint(root, {}, ViewAccess::frame(root));
}

void Painter::announce(NSView& view, const AxisTransform& outer, NSRect clip)
{
    if (ViewAccess::isHidden(view))
        return;
    const AxisTransform toWindow = ViewAccess::toSuperview(view).then(outer);
    const NSRect visible = NSIntersectionRect(clip, toWindow.apply(ViewAccess::bounds(view)));
    if (!NSIntersectsRect(visible, box_))
        return;
    if (ViewAccess::needsDisplay(view))
        attempt([&] { view.viewWillDraw(); });
    const std::vector<Ref<NSView>> inside = ViewAccess::subviews(view);
    for (const Ref<NSView>& subview : inside)
        announce(*subview, toWindow, visible);
}

void Painter::paint(NSView& view, const AxisTransform& outer, NSRect clip)
{
    const CGFloat alpha = ViewAccess::alpha(view);
    if (ViewAccess::isHidden(view) || alpha <= 0)
        return;
    const AxisTransform toWindow = ViewAccess::toSuperview(view).then(outer);
    const NSRect visible = NSIntersectionRect(clip, toWindow.apply(ViewAccess::bounds(view)));
    if (!NSIntersectsRect(visible, box_))
        return;
    const Group group(WindowAccess::backing(window_).context.get(), alpha, visible);
    paintVisible(view, toWindow, visible);
}

void Painter::paintVisible(NSView& view, const AxisTransform& toWindow, NSRect visible)
{
    const std::vector<NSRect> parts = partsIn(visible);
    if (parts.empty())
        return;
    if (first_ == &view)
        first_ = nullptr;
    ViewAccess::needsDisplay(view) = false;
    if (!first_) {
        attempt([&] {
            const Focus focus(view, toWindow, parts);
            view.drawRect(focus.box());
        });
    }
    const std::vector<Ref<NSView>> inside
        = ViewAccess::subviews(view); // drawing may change the list
    for (const Ref<NSView>& subview : inside) {
        if (ViewAccess::superview(*subview) == &view)
            paint(*subview, toWindow, visible);
    }
}

}
