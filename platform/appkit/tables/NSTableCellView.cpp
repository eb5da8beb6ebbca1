// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTableCellView.h"

#include "appkit/NSTextField.h"
#include "appkit/views/SubviewsPrivate.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableCellView::Methods<struct Basics> {

    static bool no(NSTableCellView&) { return false; }
    static Ref<NSTextField> textField(NSTableCellView& self)
    {
        return cast<NSTextField>(self.textField_.get());
    }
    static void setTextField(NSTableCellView& self, NSTextField* field)
    {
        if (field && !field->isKindOfClass(NSTextField::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSTableCellView setTextField:]: not a text field");
        self.textField_ = field;
    }
    static Ref<NSView> imageView(NSTableCellView& self) { return self.imageView_.get(); }
    static void setImageView(NSTableCellView& self, NSView* view)
    {
        if (view && !view->isKindOfClass(NSView::cls()))
            raise("NSInvalidArgumentException", "*** -[NSTableCellView setImageView:]: not a view");
        self.imageView_ = view;
    }
    static void setObjectValue(NSTableCellView& self, NSObject* value)
    {
        self.objectValue_ = value;
        maybe(self.textField())->setObjectValue(value);
    }
    static void setBackgroundStyle(NSTableCellView& self, NSBackgroundStyle style)
    {
        if (self.backgroundStyle_ == style)
            return;
        self.backgroundStyle_ = style;
        forSubviews(self, [style](NSView& view) {
            if (!view.isKindOfClass(NSControl::cls()))
                return;
            maybe(static_cast<NSControl&>(view).cell())->setBackgroundStyle(style);
            view.setNeedsDisplay(true);
        });
    }
    // A control that comes later lies on the same ground.
    static void didAddSubview(NSTableCellView& self, NSView* view)
    {
        super<NSTableCellView, "didAddSubview:">(self, view);
        if (view && view->isKindOfClass(NSControl::cls()))
            maybe(static_cast<NSControl*>(view)->cell())->setBackgroundStyle(self.backgroundStyle_);
    }

    static void table(Builder& t)
    {
        using C = NSTableCellView;
        t.methods({
            { "mouseDownCanMoveWindow", imp<no> },
            { "textField", imp<textField> },
            { "setTextField:", imp<setTextField> },
            { "imageView", imp<imageView> },
            { "setImageView:", imp<setImageView> },
            { "setObjectValue:", imp<setObjectValue> },
            { "setBackgroundStyle:", imp<setBackgroundStyle> },
            { "didAddSubview:", imp<didAddSubview> },
        });
        t.properties({
            property<&C::objectValue_>("objectValue", nonatomic),
            computed<WeakRef<NSTextField>>("textField", nonatomic),
            computed<WeakRef<NSView>>("imageView", nonatomic),
            property<&C::backgroundStyle_>("backgroundStyle", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSTableCellView, Basics)

}
