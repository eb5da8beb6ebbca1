// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"
#include "NSView.h"

namespace brindle {

class NSTextField;

/// A view for one value of a row, in one column of a table. Its superview is the row view.
///
/// The table sets `objectValue` where the data source has values, and the text field shows it; the row sets
/// `backgroundStyle`, which goes on to the cells of the controls inside.
/// Thread: main.
class NSTableCellView : public NSView {
    BRINDLE_OBJECT(NSTableCellView, NSView)

public:
    Ref<NSObject> objectValue() const { return send<"objectValue", Ref<NSObject>>(); }
    void setObjectValue(NSObject* value) { send<"setObjectValue:">(value); }
    /// Answers the text of the cell; not kept, it belongs into the cell as a subview.
    Ref<NSTextField> textField() const { return send<"textField", Ref<NSTextField>>(); }
    void setTextField(NSTextField* field) { send<"setTextField:">(field); }
    /// Answers the image of the cell; not kept.
    Ref<NSView> imageView() const { return send<"imageView", Ref<NSView>>(); }
    void setImageView(NSView* view) { send<"setImageView:">(view); }
    NSBackgroundStyle backgroundStyle() const
    {
        return send<"backgroundStyle", NSBackgroundStyle>();
    }
    void setBackgroundStyle(NSBackgroundStyle style) { send<"setBackgroundStyle:">(style); }

private:
    Ref<NSObject> objectValue_;
    WeakRef<NSView> textField_;
    WeakRef<NSView> imageView_;
    NSBackgroundStyle backgroundStyle_ = NSBackgroundStyleLight;
};

}
