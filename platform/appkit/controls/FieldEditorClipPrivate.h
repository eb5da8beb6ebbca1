// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTextFieldCell.h"
#include "appkit/NSView.h"

namespace brindle {

/// The window through which an editor is seen in a field: longer text scrolls in it.
class FieldEditorClip : public NSView {
    BRINDLE_OBJECT(FieldEditorClip, NSView)

public:
    /// Puts an editor into a view, in place of what a cell draws there.
    static void install(NSTextFieldCell& cell, NSRect frame, NSView& view, NSText& editor);
    /// Takes an editor out of the view it is in.
    static void remove(NSText& editor);
    /// Answers the clip in which the cell's text is edited, or nil.
    static Ref<FieldEditorClip> of(NSCell& cell, NSView* view);

private:
    WeakRef<NSCell> cell_;
};

}
