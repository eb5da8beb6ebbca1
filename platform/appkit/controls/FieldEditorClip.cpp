// SPDX-License-Identifier: Apache-2.0
#include "FieldEditorClipPrivate.h"

#include <algorithm>

#include "appkit/NSText.h"
#include "appkit/views/NSViewPrivate.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace brindle {

void FieldEditorClip::install(NSTextFieldCell& cell, NSRect frame, NSView& view, NSText& editor)
{
    remove(editor);
    const Ref<FieldEditorClip> clip
        = cast<FieldEditorClip>(alloc<FieldEditorClip>()->initWithFrame(frame));
    clip->cell_ = &cell;
    clip->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    view.addSubview(clip.get());
    editor.setFrame({ {}, frame.size });
    clip->addSubview(&editor);
}

void FieldEditorClip::remove(NSText& editor)
{
    const Ref<NSView> clip = editor.superview();
    editor.removeFromSuperview();
    if (clip && clip->isKindOfClass(FieldEditorClip::cls()))
        clip->removeFromSuperview();
}

Ref<FieldEditorClip> FieldEditorClip::of(NSCell& cell, NSView* view)
{
    if (!view)
        return nullptr;
    for (const Ref<NSView>& child : ViewAccess::subviews(*view)) {
        if (!child->isKindOfClass(FieldEditorClip::cls()))
            continue;
        auto* const clip = static_cast<FieldEditorClip*>(child.get());
        if (clip->cell_.get() == &cell)
            return clip;
    }
    return nullptr;
}

template <> struct FieldEditorClip::Methods<struct Scrolling> {

    static constexpr CGFloat kMargin = 2; // beside the caret, as beside a text that is not scrolled

    static bool yes(FieldEditorClip&) { return true; }
    static bool no(FieldEditorClip&) { return false; }

    static CGFloat shifted(
        CGFloat origin, CGFloat room, CGFloat start, CGFloat end, CGFloat contentSize)
    {
        if (end > origin + room)
            origin = end - room;
        if (start < origin)
            origin = start;
        return std::max(std::min(origin, contentSize - room), 0.0);
    }
    static void show(FieldEditorClip& self, NSRect rect)
    {
        const Ref<NSArray> inside = self.subviews();
        if (!inside->count())
            return;
        const NSSize content = static_cast<NSView*>(inside->objectAtIndex(0).get())->frame().size;
        const NSRect bounds = self.bounds();
        rect = NSInsetRect(rect, -kMargin, 0);
        const NSPoint origin {
            shifted(bounds.origin.x, bounds.size.width, NSMinX(rect), NSMaxX(rect), content.width),
            shifted(bounds.origin.y, bounds.size.height, NSMinY(rect), NSMaxY(rect), content.height)
        };
        if (origin.x == bounds.origin.x && origin.y == bounds.origin.y)
            return;
        self.setBoundsOrigin(origin);
        self.setNeedsDisplay(true);
    }
    // The room right of a short text belongs to the editor too.
    static void resizeContents(FieldEditorClip& self, NSSize)
    {
        for (NSView* child : each<NSView>(self.subviews())) {
            auto* const editor = static_cast<NSText*>(child);
            editor->setMinSize(self.bounds().size);
            if (!editor->isHorizontallyResizable())
                editor->setFrameSize({ self.bounds().size.width, editor->frame().size.height });
            editor->sizeToFit();
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<yes> },
            { "mouseDownCanMoveWindow", imp<no> },
            { "scrollEditorToShow:", imp<show> },
            { "resizeSubviewsWithOldSize:", imp<resizeContents> },
        });
    }
};
BRINDLE_RECORD(FieldEditorClip, Scrolling)

}
