// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "BRInspector.h"
#include "InspectorFramePrivate.h"
#include "InspectorTextsPrivate.h"
#include "appkit/NSButton.h"
#include "appkit/NSTableView.h"

namespace brindle {

/// What the inspector has open.
struct InspectorState {
    Ref<NSWindow> window;
    Ref<NSTableView> tree, details;
    Ref<NSButton> pick;
    inspector::Frame frame;
    WeakRef<NSObject> inspected;
    std::vector<inspector::TreeRow> treeRows;
    std::vector<inspector::DetailRow> detailRows;
    bool isPicking = false;
    bool isChoosing = false; // the program selects a row, not the user

    bool owns(const NSWindow& other) const { return window.get() == &other || frame.has(other); }
    bool isVisible() const { return window && window->isVisible(); }
    /// Puts the frame where the inspected view is now.
    void follow();
};

InspectorState& stateOf(BRInspector& self);

namespace inspector {
    /// Answers what shows of a view, or a window, on the screen; the empty rectangle where nothing does.
    NSRect placeOf(NSObject* object);
}

}
