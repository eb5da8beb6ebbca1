// SPDX-License-Identifier: Apache-2.0
#include "ActionCodingPrivate.h"
#include "NSButtonPrivate.h"
#include "appkit/NSActionCell.h"
#include "appkit/NSColor.h"
#include "appkit/NSMenu.h"
#include "appkit/NSView.h"
#include "appkit/views/CodingPrivate.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDate.h"
#include "foundation/NSNumber.h"
#include "foundation/NSURL.h"

#include <algorithm>

namespace brindle {

namespace {

    void code(const NumberCoding& number, CellAttributes& cell)
    {
        number("NSCellType"_ns, cell.type, NSImageCellType);
        number("NSState"_ns, cell.state);
        number("NSSendActionOn"_ns, cell.sendsOn);
        number("NSControlSize"_ns, cell.controlSize, NSControlSizeLarge);
        number("NSFocusRingType"_ns, cell.focusRingType, NSFocusRingTypeExterior);
        number("NSTextAlignment"_ns, cell.alignment, NSTextAlignmentNatural);
        number("NSLineBreakMode"_ns, cell.lineBreakMode, NSLineBreakByTruncatingMiddle);
        number("NSEnabled"_ns, cell.enabled);
        number("NSAllowsMixedState"_ns, cell.allowsMixed);
        number("NSRefusesFirstResponder"_ns, cell.refusesFirstResponder);
        number("NSBordered"_ns, cell.bordered);
        number("NSBezeled"_ns, cell.bezeled);
        number("NSEditable"_ns, cell.editable);
        number("NSSelectable"_ns, cell.selectable);
        number("NSScrollable"_ns, cell.scrollable);
        number("NSWraps"_ns, cell.wraps);
        number("NSSingleLine"_ns, cell.singleLine);
        number("NSTruncatesLastLine"_ns, cell.truncatesLastLine);
        number("NSControlTint"_ns, cell.controlTint);
        number("NSBackgroundStyle"_ns, cell.backgroundStyle, NSBackgroundStyleLowered);
        number("NSAllowsUndo"_ns, cell.allowsUndo);
        NSInteger direction = cell.writingDirection;
        number("NSBaseWritingDirection"_ns, direction);
        if (direction >= NSWritingDirectionNatural && direction <= NSWritingDirectionRightToLeft)
            cell.writingDirection = static_cast<NSWritingDirection>(direction);
    }
    /// What a cell can have as its value.
    Ref<NSObject> decodeValue(NSCoder* coder, NSString* key)
    {
        const Ref<NSSet> kinds = NSSet::cls().setWithArray(makeArray(
            { Ref<NSObject>(classOf<NSString>()), Ref<NSObject>(classOf<NSAttributedString>()),
                Ref<NSObject>(classOf<NSNumber>()), Ref<NSObject>(classOf<NSDate>()),
                Ref<NSObject>(classOf<NSURL>()) })
                                                               .get());
        return coder->decodeObjectOfClasses_forKey(kinds.get(), key);
    }
    void code(const NumberCoding& number, ButtonAttributes& button)
    {
        number("NSButtonType"_ns, button.type, NSMomentaryPushInButton);
        number("NSHighlightsBy"_ns, button.highlightsBy);
        number("NSShowsStateBy"_ns, button.showsStateBy);
        number("NSBezelStyle"_ns, button.bezel, NSInlineBezelStyle);
        number("NSImagePosition"_ns, button.imagePosition, NSImageTrailing);
        number("NSImageScaling"_ns, button.imageScaling, NSImageScaleProportionallyUpOrDown);
        number("NSKeyModifiers"_ns, button.keyModifiers);
        number("NSTransparent"_ns, button.transparent);
        number("NSBorderOnlyInside"_ns, button.borderOnlyInside);
        number("NSImageDims"_ns, button.imageDims);
        number("NSGradientType"_ns, button.gradient, NSGradientConvexStrong);
        double delay = button.delay;
        double interval = button.interval;
        number("NSPeriodicDelay"_ns, delay);
        number("NSPeriodicInterval"_ns, interval);
        button.delay = static_cast<float>(delay > 0 ? std::min(delay, 60.0) : 0);
        button.interval = static_cast<float>(interval > 0 ? std::min(interval, 60.0) : 0);
    }
    Ref<NSObject> decodeTitle(NSCoder* coder, NSString* key)
    {
        const Ref<NSSet> kinds = NSSet::cls().setWithArray(makeArray(
            { Ref<NSObject>(classOf<NSString>()), Ref<NSObject>(classOf<NSAttributedString>()) })
                                                               .get());
        return coder->decodeObjectOfClasses_forKey(kinds.get(), key);
    }

}

// - Shape: the value under "NSContents", a picture under "NSImage", "NSFormatter", "NSMenu", the font under "NSFontName" and
//   "NSFontSize", a number for every setting.
template <> struct NSCell::Methods<struct Coding> {

    static void encode(NSCell& self, NSCoder* coder)
    {
        CellAttributes& attributes = CellAccess::of(self);
        coder->encodeObject_forKey(attributes.contents.get(), "NSContents"_ns);
        coder->encodeObject_forKey(attributes.image.get(), "NSImage"_ns);
        coder->encodeObject_forKey(attributes.formatter.get(), "NSFormatter"_ns);
        coder->encodeObject_forKey(attributes.menu.get(), "NSMenu"_ns);
        if (attributes.font) {
            coder->encodeObject_forKey(attributes.font->fontName().get(), "NSFontName"_ns);
            coder->encodeDouble_forKey(attributes.font->pointSize(), "NSFontSize"_ns);
        }
        code({ coder, false }, attributes);
    }
    static Ref<NSObject> initWithCoder(NSCell& self, NSCoder* coder)
    {
        CellAttributes& attributes = CellAccess::of(self);
        attributes.contents = decodeValue(coder, "NSContents"_ns);
        attributes.image = decode<NSImage>(coder, "NSImage"_ns);
        attributes.formatter = decode<NSFormatter>(coder, "NSFormatter"_ns);
        attributes.menu = decode<NSMenu>(coder, "NSMenu"_ns);
        if (const Ref<NSString> name = decode<NSString>(coder, "NSFontName"_ns))
            attributes.font = NSFont::cls().fontWithName_size(
                name.get(), coder->decodeDoubleForKey("NSFontSize"_ns));
        code({ coder, true }, attributes);
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSCell, Coding)

template <> struct NSActionCell::Methods<struct Coding> {

    static void encode(NSActionCell& self, NSCoder* coder)
    {
        super<NSActionCell, "encodeWithCoder:">(self, coder);
        coder->encodeInteger_forKey(self.tag_, "NSTag"_ns);
        encodeAction(coder, self.target_.get().get(), self.action_);
    }
    static Ref<NSObject> initWithCoder(NSActionCell& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSActionCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        self.tag_ = coder->decodeIntegerForKey("NSTag"_ns);
        self.target_ = coder->decodeObjectForKey("NSTarget"_ns);
        self.action_ = decodeAction(coder);
        return made;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSActionCell, Coding)

template <> struct NSButtonCell::Methods<struct Coding> {

    static void encode(NSButtonCell& self, NSCoder* coder)
    {
        super<NSButtonCell, "encodeWithCoder:">(self, coder);
        ButtonAttributes& attributes = ButtonAccess::of(self);
        coder->encodeObject_forKey(attributes.alternateTitle.get(), "NSAlternateTitle"_ns);
        coder->encodeObject_forKey(attributes.key.get(), "NSKeyEquivalent"_ns);
        coder->encodeObject_forKey(attributes.background.get(), "NSBackgroundColor"_ns);
        if (attributes.image != markImage(attributes.type))
            coder->encodeObject_forKey(attributes.image.get(), "NSNormalImage"_ns);
        coder->encodeObject_forKey(attributes.alternateImage.get(), "NSAlternateImage"_ns);
        code({ coder, false }, attributes);
    }
    static Ref<NSObject> initWithCoder(NSButtonCell& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSButtonCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        ButtonAttributes& attributes = ButtonAccess::of(self);
        attributes.alternateTitle = decodeTitle(coder, "NSAlternateTitle"_ns);
        attributes.key = decode<NSString>(coder, "NSKeyEquivalent"_ns);
        attributes.background = decode<NSColor>(coder, "NSBackgroundColor"_ns);
        attributes.image = decode<NSImage>(coder, "NSNormalImage"_ns);
        attributes.alternateImage = decode<NSImage>(coder, "NSAlternateImage"_ns);
        code({ coder, true }, attributes);
        if (ButtonAccess::isMark(self) && !attributes.image)
            attributes.image = markImage(attributes.type);
        return made;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSButtonCell, Coding)

}
