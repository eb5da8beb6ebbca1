// SPDX-License-Identifier: Apache-2.0
#include "NSCellPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/Exceptions.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

Ref<NSDictionary> textAttributesOf(const NSCell& cell, NSColor* color)
{
    Ref<NSColor> shade(color);
    const bool dark = cell.backgroundStyle() == NSBackgroundStyleDark;
    if (!shade && dark)
        shade = NSColor::cls().alternateSelectedControlTextColor();
    else if (!shade)
        shade = cell.isEnabled() ? NSColor::cls().controlTextColor()
                                 : NSColor::cls().disabledControlTextColor();
    const Ref<NSMutableParagraphStyle> style = make<NSMutableParagraphStyle>();
    style->setAlignment(cell.alignment());
    style->setLineBreakMode(cell.lineBreakMode());
    style->setBaseWritingDirection(cell.baseWritingDirection());
    return makeDictionary({ { NSFontAttributeName, cell.font().get() },
        { NSForegroundColorAttributeName, shade.get() },
        { NSParagraphStyleAttributeName, style.get() } });
}

template <> struct NSCell::Methods<struct Values> {

    static CellAttributes& of(NSCell& self) { return CellAccess::of(self); }

    // ---- the value as an object

    static Ref<NSObject> objectValue(NSCell& self)
    {
        return of(self).validContents ? of(self).contents : nullptr;
    }
    static bool hasValidObjectValue(NSCell& self)
    {
        return of(self).validContents && of(self).contents;
    }
    static void keep(NSCell& self, const Ref<NSObject>& object, bool valid)
    {
        CellAttributes& attributes = of(self);
        attributes.contents = object;
        attributes.validContents = valid;
        if (attributes.type == NSNullCellType && object)
            attributes.type = NSTextCellType;
        CellAccess::changed(self);
    }
    static void setObjectValue(NSCell& self, NSObject* object)
    {
        const bool copies = object && object->respondsToSelector(selector<"copyWithZone:">);
        keep(self, copies ? object->copy() : Ref<NSObject>(object), true);
    }

    // ---- as text

    static bool isText(const Ref<NSObject>& object)
    {
        return object && object->isKindOfClass(NSString::cls());
    }
    static bool isAttributed(const Ref<NSObject>& object)
    {
        return object && object->isKindOfClass(NSAttributedString::cls());
    }
    static Ref<NSString> stringValue(NSCell& self)
    {
        const Ref<NSObject> value = of(self).contents;
        if (!value)
            return ""_ns;
        if (of(self).formatter && of(self).validContents) {
            if (Ref<NSString> text = of(self).formatter->stringForObjectValue(value.get()))
                return text;
        }
        if (isText(value))
            return cast<NSString>(value);
        if (isAttributed(value))
            return cast<NSAttributedString>(value)->string();
        const Ref<NSString> text = value->description();
        return text ? text : Ref<NSString>(""_ns);
    }
    static void setStringValue(NSCell& self, NSString* text)
    {
        if (!text || !text->isKindOfClass(NSString::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSCell setStringValue:]: the value is no string");
        const Ref<NSObject> copy = text->copy();
        const Ref<NSFormatter> formatter = of(self).formatter;
        if (!formatter)
            return keep(self, copy, true);
        Ref<NSObject> read;
        if (formatter->getObjectValue_forString_errorDescription(&read, text, nullptr))
            return keep(self, read, true);
        keep(self, copy, false);
    }
    static Ref<NSAttributedString> attributedStringValue(NSCell& self)
    {
        const Ref<NSObject> value = of(self).contents;
        if (isAttributed(value) && !of(self).formatter)
            return cast<NSAttributedString>(value);
        return alloc<NSAttributedString>()->initWithString_attributes(
            self.stringValue().get(), textAttributesOf(self).get());
    }
    static void setAttributedStringValue(NSCell& self, NSAttributedString* text)
    {
        keep(self, text ? text->copy() : Ref<NSObject>(""_ns), true);
    }

    // ---- as a number: what the value itself says, else what its text says

    template <Text S, class T> static T number(NSCell& self)
    {
        const Ref<NSObject> value = self.objectValue();
        if (value && value->respondsToSelector(selector<S>))
            return value->send<S, T>();
        return self.stringValue()->send<S, T>();
    }
    static void setInt(NSCell& self, int value)
    {
        self.setObjectValue(NSNumber::cls().numberWithInt(value).get());
    }
    static void setInteger(NSCell& self, NSInteger value)
    {
        self.setObjectValue(NSNumber::cls().numberWithInteger(value).get());
    }
    static void setFloat(NSCell& self, float value)
    {
        self.setObjectValue(NSNumber::cls().numberWithFloat(value).get());
    }
    static void setDouble(NSCell& self, double value)
    {
        self.setObjectValue(NSNumber::cls().numberWithDouble(value).get());
    }

    // ---- from others

    template <Text Get, Text Set, class T> static void take(NSCell& self, NSObject* sender)
    {
        if (!sender || !sender->respondsToSelector(selector<Get>))
            return;
        const auto value = sender->send<Get, T>();
        if constexpr (std::is_arithmetic_v<T>)
            self.send<Set>(value);
        else
            self.send<Set>(value.get());
    }

    static void setFormatter(NSCell& self, NSFormatter* formatter)
    {
        if (formatter && !formatter->isKindOfClass(NSFormatter::cls()))
            raise("NSInvalidArgumentException", "*** -[NSCell setFormatter:]: not a formatter");
        of(self).formatter = formatter;
        CellAccess::changed(self);
    }
    static void setImage(NSCell& self, NSImage* image)
    {
        CellAttributes& attributes = of(self);
        attributes.image = image;
        if (image)
            attributes.type = NSImageCellType;
        else if (attributes.type == NSImageCellType)
            attributes.type = NSNullCellType;
        CellAccess::changed(self);
    }
    static Ref<NSString> title(NSCell& self) { return self.stringValue(); }
    static void setTitle(NSCell& self, NSString* title) { self.setStringValue(title); }

    static void table(Builder& t)
    {
        t.methods({
            { "objectValue", imp<objectValue> },
            { "setObjectValue:", imp<setObjectValue> },
            { "hasValidObjectValue", imp<hasValidObjectValue> },
            { "stringValue", imp<stringValue> },
            { "setStringValue:", imp<setStringValue> },
            { "attributedStringValue", imp<attributedStringValue> },
            { "setAttributedStringValue:", imp<setAttributedStringValue> },
            { "intValue", imp<number<"intValue", int>> },
            { "setIntValue:", imp<setInt> },
            { "integerValue", imp<number<"integerValue", NSInteger>> },
            { "setIntegerValue:", imp<setInteger> },
            { "floatValue", imp<number<"floatValue", float>> },
            { "setFloatValue:", imp<setFloat> },
            { "doubleValue", imp<number<"doubleValue", double>> },
            { "setDoubleValue:", imp<setDouble> },
            { "takeObjectValueFrom:", imp<take<"objectValue", "setObjectValue:", Ref<NSObject>>> },
            { "takeStringValueFrom:", imp<take<"stringValue", "setStringValue:", Ref<NSString>>> },
            { "takeIntValueFrom:", imp<take<"intValue", "setIntValue:", int>> },
            { "takeIntegerValueFrom:", imp<take<"integerValue", "setIntegerValue:", NSInteger>> },
            { "takeFloatValueFrom:", imp<take<"floatValue", "setFloatValue:", float>> },
            { "takeDoubleValueFrom:", imp<take<"doubleValue", "setDoubleValue:", double>> },
            { "formatter", imp<CellField<&CellAttributes::formatter>::get> },
            { "setFormatter:", imp<setFormatter> },
            { "image", imp<CellField<&CellAttributes::image>::get> },
            { "setImage:", imp<setImage> },
            { "title", imp<title> },
            { "setTitle:", imp<setTitle> },
        });
    }
};
BRINDLE_RECORD(NSCell, Values)

}
