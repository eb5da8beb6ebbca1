// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSImageView.h"

#include "ActionCodingPrivate.h"
#include "appkit/NSBitmapImageRep.h"
#include "appkit/NSEvent.h"
#include "appkit/NSImage.h"
#include "appkit/NSPasteboard.h"
#include "appkit/views/CodingPrivate.h"
#include "foundation/NSBeep.h"
#include "foundation/NSData.h"

namespace brindle {

template <> struct NSImageView::Methods<struct Pictures> {

    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(NSImageView::cls()))
            NSImageView::cls().setCellClass(NSImageCell::cls());
    }
    static Ref<NSImageView> viewWithImage(Class& self, NSImage* image)
    {
        const Ref<NSImageView> view = cast<NSImageView>(NSObject::Meta { &self }.alloc()->init());
        view->setImage(image);
        view->sizeToFit();
        return view;
    }

    // ---- what the cell does

    template <Text S, class R> static R ask(NSImageView& self)
    {
        return maybe(self.cell())->send<S, R>();
    }
    template <Text S, class T> static void tell(NSImageView& self, T value)
    {
        maybe(self.cell())->send<S>(value);
        self.setNeedsDisplay(true);
    }

    // ---- target and action

    static Ref<NSObject> target(NSImageView& self) { return self.target_.get(); }
    static void setTarget(NSImageView& self, NSObject* target) { self.target_ = target; }
    static SEL action(NSImageView& self) { return self.action_; }
    static void setAction(NSImageView& self, SEL action) { self.action_ = action; }

    // ---- the user's hand

    static bool acceptsFirstResponder(NSImageView& self)
    {
        return self.isEditable() && super<NSImageView, "acceptsFirstResponder", bool>(self);
    }
    // Past the tracking of controls: there is nothing to press.
    static void mouseDown(NSImageView& self, NSEvent* press)
    {
        super<NSControl, "mouseDown:">(static_cast<NSControl&>(self), press);
    }
    static void change(NSImageView& self, NSImage* image)
    {
        const Ref<NSImageView> alive(&self);
        self.setImage(image);
        self.sendAction_to(self.action(), self.target().get());
    }
    static bool mayChange(NSImageView& self) { return self.isEditable() && self.isEnabled(); }
    static bool exchanges(NSImageView& self) { return mayChange(self) && self.cutsAndPastes_; }

    static bool copyImage(NSImageView& self)
    {
        const Ref<NSData> file = maybe(self.image())->TIFFRepresentation();
        if (!self.cutsAndPastes_ || !file)
            return false;
        const Ref<NSPasteboard> board = NSPasteboard::cls().generalPasteboard();
        const Ref<NSBitmapImageRep> picture = NSBitmapImageRep::cls().imageRepWithData(file.get());
        board->clearContents();
        // Most programs of the desktop look for this one.
        board->setData_forType(
            maybe(picture)->representationUsingType_properties(NSPNGFileType, nullptr).get(),
            NSPasteboardTypePNG);
        return board->setData_forType(file.get(), NSPasteboardTypeTIFF);
    }
    static void copy(NSImageView& self, NSObject*)
    {
        if (!copyImage(self))
            NSBeep();
    }
    static void cut(NSImageView& self, NSObject*)
    {
        if (!exchanges(self) || !copyImage(self))
            return NSBeep();
        change(self, nullptr);
    }
    static Ref<NSImage> offered()
    {
        const Ref<NSPasteboard> board = NSPasteboard::cls().generalPasteboard();
        const Ref<NSArray> kinds
            = makeArray({ NSPasteboardTypePNG.get(), NSPasteboardTypeTIFF.get() });
        const Ref<NSString> type = board->availableTypeFromArray(kinds.get());
        const Ref<NSData> file = type ? board->dataForType(type.get()) : nullptr;
        return file ? alloc<NSImage>()->initWithData(file.get()) : nullptr;
    }
    static void paste(NSImageView& self, NSObject*)
    {
        const Ref<NSImage> image = exchanges(self) ? offered() : nullptr;
        if (!image)
            return NSBeep();
        change(self, image.get());
    }
    static void remove(NSImageView& self, NSObject*)
    {
        if (!mayChange(self) || !self.image())
            return NSBeep();
        change(self, nullptr);
    }
    static void keyDown(NSImageView& self, NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        const unichar key = maybe(typed)->length() ? typed->characterAtIndex(0) : unichar {};
        const bool deletes = key == 0x7F || key == 0x08 || key == NSDeleteFunctionKey;
        if (deletes && mayChange(self))
            return remove(self, nullptr);
        super<NSImageView, "keyDown:">(self, event);
    }
    static bool validate(NSImageView& self, NSObject* item)
    {
        const SEL action = maybe(item)->send<"action", SEL>();
        if (action == selector<"copy:">)
            return self.image() && self.cutsAndPastes_;
        if (action == selector<"cut:">)
            return self.image() && exchanges(self);
        if (action == selector<"delete:">)
            return self.image() && mayChange(self);
        return action != selector<"paste:"> || exchanges(self);
    }

    static bool cutsAndPastes(NSImageView& self) { return self.cutsAndPastes_; }
    static void setCutsAndPastes(NSImageView& self, bool allows) { self.cutsAndPastes_ = allows; }
    static bool animates(NSImageView& self) { return self.animates_; }
    static void setAnimates(NSImageView& self, bool animates) { self.animates_ = animates; }

    // ---- archives

    static void code(const NumberCoding& number, NSImageView& self)
    {
        number("NSAllowsCutCopyPaste"_ns, self.cutsAndPastes_);
        number("NSAnimates"_ns, self.animates_);
    }
    static void encode(NSImageView& self, NSCoder* coder)
    {
        super<NSImageView, "encodeWithCoder:">(self, coder);
        encodeAction(coder, self.target_.get().get(), self.action_);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSImageView& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSImageView, "initWithCoder:", Ref<NSObject>>(self, coder);
        self.target_ = coder->decodeObjectForKey("NSTarget"_ns);
        self.action_ = decodeAction(coder);
        code({ coder, true }, self);
        return made;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "initialize", imp<initialize> },
            { "imageViewWithImage:", imp<viewWithImage> },
        });
        t.methods({
            { "image", imp<ask<"image", Ref<NSImage>>> },
            { "setImage:", imp<tell<"setImage:", NSImage*>> },
            { "imageScaling", imp<ask<"imageScaling", NSImageScaling>> },
            { "setImageScaling:", imp<tell<"setImageScaling:", NSImageScaling>> },
            { "imageAlignment", imp<ask<"imageAlignment", NSImageAlignment>> },
            { "setImageAlignment:", imp<tell<"setImageAlignment:", NSImageAlignment>> },
            { "imageFrameStyle", imp<ask<"imageFrameStyle", NSImageFrameStyle>> },
            { "setImageFrameStyle:", imp<tell<"setImageFrameStyle:", NSImageFrameStyle>> },
            { "contentTintColor", imp<ask<"contentTintColor", Ref<NSColor>>> },
            { "setContentTintColor:", imp<tell<"setContentTintColor:", NSColor*>> },
            { "isEditable", imp<ask<"isEditable", bool>> },
            { "setEditable:", imp<tell<"setEditable:", bool>> },
            { "allowsCutCopyPaste", imp<cutsAndPastes> },
            { "setAllowsCutCopyPaste:", imp<setCutsAndPastes> },
            { "animates", imp<animates> },
            { "setAnimates:", imp<setAnimates> },
            { "target", imp<target> },
            { "setTarget:", imp<setTarget> },
            { "action", imp<action> },
            { "setAction:", imp<setAction> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "mouseDown:", imp<mouseDown> },
            { "keyDown:", imp<keyDown> },
            { "copy:", imp<copy> },
            { "cut:", imp<cut> },
            { "paste:", imp<paste> },
            { "delete:", imp<remove> },
            { "validateMenuItem:", imp<validate> },
            { "validateUserInterfaceItem:", imp<validate> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSImageView, Pictures)

}
