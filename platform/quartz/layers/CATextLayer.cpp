// SPDX-License-Identifier: Apache-2.0
#include "CATextLayer.h"

#include <algorithm>
#include <cmath>

#include "../TextDrawing.h"
#include "LayerValuesPrivate.h"
#include "TextLinesPrivate.h"
#include "foundation/NSAttributedString.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr double kLargestSize = 100000;

    /// Answers the text of a string, plain or attributed; nil for anything else.
    Ref<NSString> plainText(NSObject* string)
    {
        if (!string)
            return nullptr;
        if (string->isKindOfClass(NSString::cls()))
            return static_cast<NSString*>(string);
        if (string->isKindOfClass(NSAttributedString::cls()))
            return static_cast<NSAttributedString*>(string)->string();
        return nullptr;
    }

    Ref<NSObject> firstAttribute(NSObject* string, NSString* name)
    {
        if (!string || !string->isKindOfClass(NSAttributedString::cls()))
            return nullptr;
        auto& text = *static_cast<NSAttributedString*>(string);
        return text.length() > 0 ? text.attribute_atIndex_effectiveRange(name, 0, nullptr)
                                 : Ref<NSObject>();
    }

    const text::FontFace* faceNamed(NSObject* font)
    {
        if (font && font->respondsToSelector(selector<"fontName">))
            return faceNamed(font->send<"fontName", Ref<NSString>>().get());
        if (font && font->isKindOfClass(NSString::cls()))
            return text::FontFace::named(utf8Of(static_cast<NSString*>(font)));
        return nullptr;
    }

}

template <> struct CATextLayer::Methods<struct Values> {

    static Ref<NSObject> init(CATextLayer& self)
    {
        const Ref<NSObject> fresh = super<CATextLayer, "init", Ref<NSObject>>(self);
        if (fresh)
            self.foregroundColor_ = Ref<CGColor>::adopt(CGColorCreateGenericGray(1, 1));
        return fresh;
    }
    static Ref<CALayer> initWithLayer(CATextLayer& self, CALayer* other)
    {
        const Ref<CALayer> fresh = super<CATextLayer, "initWithLayer:", Ref<CALayer>>(self, other);
        if (!fresh || !maybe(other)->isKindOfClass(CATextLayer::cls()))
            return fresh;
        const auto& from = static_cast<CATextLayer&>(*other);
        auto& to = static_cast<CATextLayer&>(*fresh);
        to.string_ = from.string_;
        to.font_ = from.font_;
        to.foregroundColor_ = from.foregroundColor_;
        to.truncationMode_ = from.truncationMode_;
        to.alignmentMode_ = from.alignmentMode_;
        to.fontSize_ = from.fontSize_;
        to.wrapped_ = from.wrapped_;
        return fresh;
    }

    static Ref<NSObject> string(CATextLayer& self) { return self.string_; }
    static Ref<NSObject> font(CATextLayer& self) { return self.font_; }
    static CGFloat fontSize(CATextLayer& self) { return self.fontSize_; }
    static Ref<CGColor> color(CATextLayer& self) { return self.foregroundColor_; }
    static bool isWrapped(CATextLayer& self) { return self.wrapped_; }
    static Ref<NSString> truncationMode(CATextLayer& self) { return self.truncationMode_; }
    static Ref<NSString> alignmentMode(CATextLayer& self) { return self.alignmentMode_; }

    static void setString(CATextLayer& self, NSObject* string)
    {
        const bool copies = maybe(string)->respondsToSelector(selector<"copyWithZone:">);
        LayerAccess::set(
            self, self.string_, copies ? string->copy() : Ref<NSObject>(string), "string"_ns);
    }
    static void setFont(CATextLayer& self, NSObject* font)
    {
        LayerAccess::set(self, self.font_, Ref<NSObject>(font), "font"_ns);
    }
    static void setFontSize(CATextLayer& self, CGFloat size)
    {
        LayerAccess::set(self, self.fontSize_, size, "fontSize"_ns);
    }
    static void setColor(CATextLayer& self, CGColor* color)
    {
        LayerAccess::set(self, self.foregroundColor_, Ref<CGColor>(color), "foregroundColor"_ns);
    }
    static void setWrapped(CATextLayer& self, bool wrapped)
    {
        LayerAccess::set(self, self.wrapped_, wrapped, "wrapped"_ns);
    }
    static void setMode(CATextLayer& self, Ref<NSString>& field, NSString* mode, NSString* key)
    {
        LayerAccess::set(self, field, mode ? cast<NSString>(mode->copy()) : Ref<NSString>(), key);
    }
    static void setTruncationMode(CATextLayer& self, NSString* mode)
    {
        setMode(self, self.truncationMode_, mode, "truncationMode"_ns);
    }
    static void setAlignmentMode(CATextLayer& self, NSString* mode)
    {
        setMode(self, self.alignmentMode_, mode, "alignmentMode"_ns);
    }

    // ---- drawing

    static text::Font fontOf(const CATextLayer& self)
    {
        const Ref<NSObject> own = firstAttribute(self.string_.get(), "NSFont"_ns);
        const text::FontFace* face = faceNamed(own ? own.get() : self.font_.get());
        if (!face)
            face = text::FontFace::named("Helvetica");
        double size = self.fontSize_;
        if (own && own->respondsToSelector(selector<"pointSize">))
            size = own->send<"pointSize", CGFloat>();
        return { face, size > 0 && size < kLargestSize ? size : 0 };
    }
    static Ref<CGColor> colorOf(const CATextLayer& self)
    {
        const Ref<NSObject> own = firstAttribute(self.string_.get(), "NSColor"_ns);
        if (own && own->isKindOfClass(CGColor::cls()))
            return cast<CGColor>(own);
        if (own && own->respondsToSelector(selector<"CGColor">))
            return own->send<"CGColor", Ref<CGColor>>();
        return self.foregroundColor_;
    }
    static double startOf(const CATextLayer& self, const text::Line& line, double width)
    {
        const auto is = [&self](NSString* mode) {
            return self.alignmentMode_ && self.alignmentMode_->isEqual(mode);
        };
        const bool fromRight = !line.runs().empty() && line.runs().front().rightToLeft
            && line.runs().back().rightToLeft;
        if (is(kCAAlignmentCenter))
            return (width - line.width()) / 2;
        if (is(kCAAlignmentRight) || (fromRight && !is(kCAAlignmentLeft)))
            return width - line.width();
        return 0;
    }
    static void drawInContext(CATextLayer& self, CGContextRef context)
    {
        const Ref<NSString> text = plainText(self.string_.get());
        const text::Font font = fontOf(self);
        const CGRect bounds = LayerAccess::values(self).bounds;
        const bool fits = std::isfinite(bounds.size.width) && std::isfinite(bounds.size.height);
        if (text && text->length() > 0 && font.face && font.size > 0 && fits) {
            const std::vector<text::Line> lines = quartz::linesFor(utf16Of(text),
                { font, bounds.size.width, bounds.size.height, self.wrapped_,
                    self.truncationMode_.get() });
            const bool down = self.contentsAreFlipped();
            const double step = down ? quartz::lineHeight(font) : -quartz::lineHeight(font);
            const double ascent = std::round(font.ascender());
            double y = down ? CGRectGetMinY(bounds) + ascent : CGRectGetMaxY(bounds) - ascent;
            const Ref<CGColor> color = colorOf(self);
            for (const text::Line& line : lines) {
                const double x = bounds.origin.x + startOf(self, line, bounds.size.width);
                quartz::drawTextLine(context, line, { x, y }, color.get());
                y += step;
            }
        }
        super<CATextLayer, "drawInContext:">(self, context);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "init", imp<init> },
            { "initWithLayer:", imp<initWithLayer> },
            { "string", imp<string> },
            { "setString:", imp<setString> },
            { "font", imp<font> },
            { "setFont:", imp<setFont> },
            { "fontSize", imp<fontSize> },
            { "setFontSize:", imp<setFontSize> },
            { "foregroundColor", imp<color> },
            { "setForegroundColor:", imp<setColor> },
            { "isWrapped", imp<isWrapped> },
            { "setWrapped:", imp<setWrapped> },
            { "truncationMode", imp<truncationMode> },
            { "setTruncationMode:", imp<setTruncationMode> },
            { "alignmentMode", imp<alignmentMode> },
            { "setAlignmentMode:", imp<setAlignmentMode> },
            { "drawInContext:", imp<drawInContext> },
        });
        t.properties({
            computed<Ref<NSObject>>("string", nonatomic, copied),
            computed<Ref<NSObject>>("font", nonatomic),
            computed<CGFloat>("fontSize", nonatomic),
            computed<Ref<CGColor>>("foregroundColor", nonatomic),
            computed<bool>("wrapped", nonatomic, getter("isWrapped")),
            computed<Ref<NSString>>("truncationMode", nonatomic, copied),
            computed<Ref<NSString>>("alignmentMode", nonatomic, copied),
        });
    }
};
BRINDLE_RECORD(CATextLayer, Values)

}
