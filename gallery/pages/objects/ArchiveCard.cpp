// SPDX-License-Identifier: Apache-2.0
#include "ArchiveCard.h"

#include <algorithm>

#include "appkit/NSEvent.h"
#include "foundation/NSArray.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/PropertyListUID.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ArchiveCard::Methods<struct Printing> {

    static constexpr double kLineHeight = 15;
    static constexpr double kIndent = 16;

    /// References stand alone and in arrays.
    static bool isReference(NSObject* value)
    {
        if (value->isKindOfClass(NSArray::cls())) {
            const auto* const items = static_cast<NSArray*>(value);
            return items->count() > 0 && isReference(items->objectAtIndex(0).get());
        }
        return value->isKindOfClass(PropertyListUID::cls());
    }

    static Ref<NSString> textOf(NSObject* value)
    {
        if (value->isKindOfClass(PropertyListUID::cls()))
            return NSString::cls().stringWithFormat(
                "→ %lu"_ns, static_cast<PropertyListUID*>(value)->unsignedIntegerValue());
        if (value->isKindOfClass(NSData::cls()))
            return NSString::cls().stringWithFormat(
                "%lu bytes"_ns, static_cast<NSData*>(value)->length());
        if (!value->isKindOfClass(NSArray::cls()))
            return value->description();
        Ref<NSString> all = ""_ns;
        for (NSObject* item : *static_cast<NSArray*>(value))
            all = all->stringByAppendingString(" "_ns)->stringByAppendingString(textOf(item).get());
        return all->length() > 0 ? all->substringFromIndex(1) : all;
    }

    static void add(ArchiveCard& self, int indent, NSString* label, NSObject* value)
    {
        self.lines_.push_back({ indent, label, textOf(value), isReference(value) });
    }

    /// Adds a dictionary's values; the class stands in the line above them.
    static void addValues(ArchiveCard& self, NSDictionary* values)
    {
        for (NSString* key : each<NSString>(values->allKeys()))
            if (!key->isEqualToString("$class"_ns))
                add(self, 2, key, values->objectForKey(key).get());
    }

    static void addObject(ArchiveCard& self, NSArray* objects, NSUInteger index)
    {
        const Ref<NSString> number = NSString::cls().stringWithFormat("%lu"_ns, index);
        const Ref<NSObject> object = objects->objectAtIndex(index);
        if (!object->isKindOfClass(NSDictionary::cls()))
            return add(self, 1, number.get(), object.get());
        const auto values = cast<NSDictionary>(object);
        if (const Ref<NSObject> name = values->objectForKey("$classname"_ns)) {
            const auto text = NSString::cls().stringWithFormat("class %@"_ns, name.get());
            return add(self, 1, number.get(), text.get());
        }
        const auto cls = cast<PropertyListUID>(values->objectForKey("$class"_ns));
        const auto described
            = cast<NSDictionary>(objects->objectAtIndex(maybe(cls)->unsignedIntegerValue()));
        add(self, 1, number.get(), described->objectForKey("$classname"_ns).get());
        addValues(self, values.get());
    }

    static void setArchive(ArchiveCard& self, NSData* archive)
    {
        const auto list = cast<NSDictionary>(
            NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                archive, NSPropertyListImmutable, nullptr, nullptr));
        const auto objects = cast<NSArray>(list->objectForKey("$objects"_ns));
        self.lines_.clear();
        self.firstLine_ = 0;
        add(self, 0, "$archiver"_ns, list->objectForKey("$archiver"_ns).get());
        add(self, 0, "$top"_ns, ""_ns);
        addValues(self, cast<NSDictionary>(list->objectForKey("$top"_ns)).get());
        add(self, 0, "$objects"_ns, ""_ns);
        for (NSUInteger i = 0; i < objects->count(); ++i)
            addObject(self, objects.get(), i);
        const auto caption = NSString::cls().stringWithFormat(
            "%lu objects, each written once"_ns, objects->count());
        self.setCaption(caption.get());
        self.setNeedsDisplay(true);
    }

    static NSUInteger shownLines(ArchiveCard& self)
    {
        return static_cast<NSUInteger>(std::max(self.bodyRect().size.height / kLineHeight, 0.0));
    }

    static void scrollWheel(ArchiveCard& self, NSEvent* event)
    {
        constexpr NSUInteger kStep = 3;
        const NSUInteger last = self.lines_.size() - std::min(self.lines_.size(), shownLines(self));
        self.firstLine_ = event->scrollingDeltaY() > 0
            ? self.firstLine_ - std::min(self.firstLine_, kStep)
            : std::min(self.firstLine_ + kStep, last);
        self.setNeedsDisplay(true);
    }

    static void drawBody(ArchiveCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const NSUInteger end = std::min(self.lines_.size(), self.firstLine_ + shownLines(self));
        NSPoint place = body.origin;
        for (NSUInteger i = self.firstLine_; i < end; ++i, place.y += kLineHeight) {
            const Line& line = self.lines_[i];
            const double x = place.x + line.indent * kIndent;
            drawText(line.label.get(), { x, place.y }, Style::code, colors.quietText.get());
            const double gap = sizeOf(line.label.get(), Style::code).width + 8;
            drawFitted(line.value.get(), { x + gap, place.y }, NSMaxX(body) - x - gap,
                line.isReference ? Style::caption : Style::code,
                line.isReference ? colors.accent.get() : colors.text.get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "setArchive:", imp<setArchive> },
            { "scrollWheel:", imp<scrollWheel> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ArchiveCard, Printing)

}
