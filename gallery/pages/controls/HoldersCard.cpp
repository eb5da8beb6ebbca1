// SPDX-License-Identifier: Apache-2.0
#include "HoldersCard.h"

#include <cmath>

#include "appkit/NSButton.h"
#include "appkit/NSImage.h"
#include "appkit/NSTextField.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct HoldersCard::Methods<struct Parts> {

    static Ref<NSView> label(NSString* text)
    {
        const Ref<NSTextField> field = NSTextField::cls().labelWithString(text);
        field->setAlignment(NSTextAlignmentCenter);
        return field;
    }
    static void addTab(HoldersCard& self, NSString* name, const Ref<NSView>& view)
    {
        const Ref<NSTabViewItem> item = alloc<NSTabViewItem>()->initWithIdentifier(name);
        item->setLabel(name);
        item->setView(view.get());
        self.tabs_->addTabViewItem(item.get());
    }
    static Ref<NSView> picture()
    {
        const Ref<NSImageView> view = NSImageView::cls().imageViewWithImage(
            NSImage::cls().imageNamed(NSImageNameIconViewTemplate).get());
        view->setImageFrameStyle(NSImageFrameGrayBezel);
        view->setImageScaling(NSImageScaleProportionallyUpOrDown);
        return view;
    }
    static Ref<NSView> initWithFrame(HoldersCard& self, NSRect frame)
    {
        Ref<NSView> made = super<HoldersCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("What holds views"_ns);
        self.setCaption("Drag the divider; arrows turn the tabs"_ns);
        self.box_ = make<NSBox>();
        self.box_->setTitle("A box"_ns);
        self.box_->addSubview(
            NSButton::cls().checkboxWithTitle_target_action("First"_ns, nullptr, {}).get());
        self.box_->addSubview(
            NSButton::cls().checkboxWithTitle_target_action("Second"_ns, nullptr, {}).get());
        self.tabs_ = make<NSTabView>();
        self.split_ = make<NSSplitView>();
        self.split_->setVertical(true);
        self.split_->addSubview(label("Left"_ns).get());
        self.split_->addSubview(label("Right"_ns).get());
        addTab(self, "Split"_ns, self.split_);
        addTab(self, "Picture"_ns, picture());
        self.addSubview(self.box_.get());
        self.addSubview(self.tabs_.get());
        return made;
    }
    static void setFrameSize(HoldersCard& self, NSSize size)
    {
        super<HoldersCard, "setFrameSize:">(self, size);
        if (!self.tabs_)
            return;
        NSRect body = self.bodyRect();
        const double width = std::round(body.size.width * 0.36);
        self.box_->setFrame(takeLeft(body, width));
        self.tabs_->setFrame(body);
        double y = self.box_->contentView()->bounds().size.height - 26;
        for (NSView* view : each<NSView>(self.box_->contentView()->subviews())) {
            view->setFrameOrigin({ 4, y });
            y -= 26;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
        });
    }
};
BRINDLE_RECORD(HoldersCard, Parts)

}
