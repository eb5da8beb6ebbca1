// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <vector>

#include "KeyViewsPrivate.h"
#include "NSWindowPrivate.h"
#include "appkit/NSText.h"
#include "appkit/NSWindow+KeyViews.h"
#include "appkit/views/NSViewPrivate.h"
#include "foundation/NSNumber.h"
#include "runtime/Runtime.h"

namespace brindle {

namespace {

    using Views = std::vector<Ref<NSView>>;

    constexpr char kRecalculates = 0; // few windows do: it hangs on those
    constinit NSWindow* recalculating = nullptr; // whose way to do it may look at the loop

    struct Part {
        NSRect place; // in the window
        Ref<NSView> view; // who is asked may take it away
    };

    bool isHigher(const Part& a, const Part& b) { return NSMaxY(a.place) > NSMaxY(b.place); }
    bool isFurtherLeft(const Part& a, const Part& b) { return NSMinX(a.place) < NSMinX(b.place); }

    /// Answers whether two parts stand on one line: their tops or their middles are about as high.
    bool areBeside(NSRect a, NSRect b)
    {
        const CGFloat near = std::min(NSHeight(a), NSHeight(b)) / 2;
        return std::abs(NSMaxY(a) - NSMaxY(b)) < near || std::abs(NSMidY(a) - NSMidY(b)) < near;
    }

    std::vector<Part> partsOf(const NSView& view)
    {
        std::vector<Part> parts;
        for (const Ref<NSView>& part : ViewAccess::subviews(view))
            parts.push_back({ ViewAccess::toWindow(*part).apply(ViewAccess::bounds(*part)), part });
        std::stable_sort(parts.begin(), parts.end(), isHigher);
        for (auto line = parts.begin(); line != parts.end();) {
            const auto next = std::find_if_not(line, parts.end(), [&](const Part& part) {
                return &part == &*line || areBeside(line->place, part.place);
            });
            std::stable_sort(line, next, isFurtherLeft);
            line = next;
        }
        return parts;
    }

    bool isFieldEditor(const NSResponder& responder)
    {
        return responder.isKindOfClass(NSText::cls())
            && static_cast<const NSText&>(responder).isFieldEditor();
    }

    // The editor that is lent to a field is part of the field.
    void collect(const NSView& view, const NSView* also, Views& found)
    {
        for (const Part& part : partsOf(view)) {
            if (part.view == also
                || (part.view->acceptsFirstResponder() && !isFieldEditor(*part.view)))
                found.push_back(part.view);
            collect(*part.view, also, found);
        }
    }

    bool isLinked(const NSView& view)
    {
        const Views parts = ViewAccess::subviews(view); // an override may change the list
        return view.nextKeyView()
            || std::any_of(parts.begin(), parts.end(),
                [](const Ref<NSView>& part) { return isLinked(*part); });
    }

}

Ref<NSResponder> WindowAccess::focused(NSWindow& window)
{
    const Ref<NSResponder> first = window.firstResponder();
    if (!isFieldEditor(*first))
        return first;
    const Ref<NSObject> field = cast<NSText>(first)->delegate();
    return field && field->isKindOfClass(NSView::cls()) ? cast<NSView>(field) : first;
}

bool keyviews::hasLoop(NSWindow& window)
{
    if (autorecalculatesKeyViewLoop(window) && recalculating != &window) {
        const Ref<NSWindow> alive(&window);
        struct Done {
            NSWindow* before;
            ~Done() { recalculating = before; }
        } done { std::exchange(recalculating, &window) };
        window.recalculateKeyViewLoop();
    }
    return isLinked(WindowAccess::frameView(window));
}

Ref<NSView> keyviews::inReading(NSWindow& window, NSView* from, Step step)
{
    Views views;
    collect(WindowAccess::frameView(window), from, views);
    if (step == Step::back)
        std::reverse(views.begin(), views.end());
    const auto start = std::find(views.begin(), views.end(), from);
    if (start != views.end())
        std::rotate(views.begin(), start + 1, views.end()); // `from` itself is the last to be asked
    for (const Ref<NSView>& view : views) {
        if (view->canBecomeKeyView())
            return view;
    }
    return nullptr;
}

template <> struct NSWindow::Methods<struct KeyViews> {

    static Ref<NSView> focusedView(NSWindow& self)
    {
        const Ref<NSResponder> focused = WindowAccess::focused(self);
        return focused->isKindOfClass(NSView::cls()) ? cast<NSView>(focused) : nullptr;
    }
    static void focus(NSWindow& self, const Ref<NSView>& view)
    {
        if (view)
            self.makeFirstResponder(view.get());
    }
    static void selectNext(NSWindow& self, NSObject*)
    {
        if (const Ref<NSView> view = focusedView(self))
            return focus(self, view->nextValidKeyView());
        const Ref<NSView> initial = self.initialFirstResponder();
        if (!initial)
            return focus(self, keyviews::inReading(self, nullptr, keyviews::Step::on));
        focus(self, initial->canBecomeKeyView() ? initial : initial->nextValidKeyView());
    }
    static void selectPrevious(NSWindow& self, NSObject*)
    {
        Ref<NSView> view = focusedView(self);
        if (!view)
            view = self.initialFirstResponder();
        focus(self,
            view ? view->previousValidKeyView()
                 : keyviews::inReading(self, nullptr, keyviews::Step::back));
    }
    static void recalculateLoop(NSWindow& self)
    {
        Views views;
        collect(WindowAccess::frameView(self), nullptr, views);
        for (std::size_t i = 0; i < views.size(); ++i)
            views[i]->setNextKeyView(views[(i + 1) % views.size()].get());
    }
    static bool recalculates(NSWindow& self)
    {
        return objc_borrowAssociatedObject(&self, &kRecalculates) != nullptr;
    }
    static void setRecalculates(NSWindow& self, bool recalculates)
    {
        const Ref<NSNumber> mark = recalculates ? NSNumber::cls().numberWithBool(true) : nullptr;
        objc_setAssociatedObject(
            &self, &kRecalculates, mark.get(), OBJC_ASSOCIATION_RETAIN_NONATOMIC);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "selectNextKeyView:", imp<selectNext> },
            { "selectPreviousKeyView:", imp<selectPrevious> },
            { "recalculateKeyViewLoop", imp<recalculateLoop> },
            { "autorecalculatesKeyViewLoop", imp<recalculates> },
            { "setAutorecalculatesKeyViewLoop:", imp<setRecalculates> },
        });
    }
};
BRINDLE_RECORD(NSWindow, KeyViews)

}
