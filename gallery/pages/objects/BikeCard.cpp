// SPDX-License-Identifier: Apache-2.0
#include "BikeCard.h"

#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "introspection/NSObject+AutoCoding.h"
#include "introspection/NSObject+EQProperties.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kRowHeight = 17;
    constexpr double kNameWidth = 62;

    Ref<NSString> textOf(NSString* name, NSObject* value)
    {
        if (value->isKindOfClass(NSArray::cls()))
            return static_cast<NSArray*>(value)->componentsJoinedByString(", "_ns);
        if (value->isKindOfClass(NSDate::cls()))
            return value->description()->substringToIndex(10); // the day
        if (name->isEqualToString("electric"_ns))
            return static_cast<NSNumber*>(value)->boolValue() ? "yes"_ns : "no"_ns;
        if (name->isEqualToString("frame"_ns)) {
            const NSSize size = static_cast<NSValue*>(value)->sizeValue();
            return NSString::cls().stringWithFormat("%g by %g"_ns, size.width, size.height);
        }
        return value->description();
    }

}

template <> struct BikeCard::Methods<struct Keeping> {

    static Ref<NSView> initWithFrame(BikeCard& self, NSRect frame)
    {
        self.bike_ = make<GalleryBike>();
        self.setHeading("A bike"_ns);
        self.setCaption("Archive it, change it, restore it"_ns);
        self.archiveChip_ = addChip(&self, "Archive"_ns, "a"_ns, sending<"archive">(&self));
        self.changeChip_ = addChip(&self, "Change"_ns, "c"_ns, sending<"change">(&self));
        self.restoreChip_ = addChip(&self, "Restore"_ns, "r"_ns, sending<"restore">(&self));
        return super<BikeCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(BikeCard& self, NSSize size)
    {
        super<BikeCard, "setFrameSize:">(self, size);
        layOutChips({ self.archiveChip_.get(), self.changeChip_.get(), self.restoreChip_.get() },
            { 16, size.height - 44 });
    }

    static void say(BikeCard& self, NSString* what)
    {
        self.setCaption(what);
        self.setNeedsDisplay(true);
    }

    static void archive(BikeCard& self)
    {
        self.data_ = NSKeyedArchiver::cls().archivedDataWithRootObject(self.bike_.get());
        self.archived_ = dictionaryRepresentation(self.bike_);
        say(self,
            NSString::cls().stringWithFormat("Archived: %lu bytes"_ns, self.data_->length()).get());
        if (self.onArchived_)
            self.onArchived_(self.data_.get());
    }

    static void change(BikeCard& self)
    {
        const auto set
            = [&](NSObject* value, NSString* name) { setValue_forKey(self.bike_, value, name); };
        const auto bell = make<GalleryBell>();
        bell->setSound("ring ring"_ns);
        set("Racer"_ns, "name"_ns);
        set(NSNumber::cls().numberWithInteger(11).get(), "gears"_ns);
        set(NSNumber::cls().numberWithDouble(8.5).get(), "weight"_ns);
        set(NSNumber::cls().numberWithBool(true).get(), "electric"_ns);
        set(NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0.75, 0.2, 0.2, 1).get(),
            "paint"_ns);
        set(bell.get(), "bell"_ns);
        set(NSNumber::cls().numberWithInteger(340).get(), "trips"_ns);
        say(self, "Changed by key-value coding"_ns);
    }

    static void restore(BikeCard& self)
    {
        if (!self.data_)
            return say(self, "Archive it first"_ns);
        const Ref<NSObject> restored
            = NSKeyedUnarchiver::cls().unarchiveObjectWithData(self.data_.get());
        self.bike_ = cast<GalleryBike>(restored);
        say(self, "Restored: a new bike with the values of the archive"_ns);
    }

    /// Archived values that are other than in the archive.
    static bool differs(BikeCard& self, NSString* name, NSObject* value)
    {
        const Ref<NSObject> archived = maybe(self.archived_)->objectForKey(name);
        return archived && !textOf(name, archived.get())->isEqual(textOf(name, value).get());
    }

    static void drawValue(BikeCard& self, NSString* name, NSPoint place, double width)
    {
        const Palette& colors = palette();
        const Ref<NSObject> value = valueForKey(self.bike_, name);
        const Ref<NSDictionary> codable = codableProperties(self.bike_);
        const bool isCodable = static_cast<bool>(codable->objectForKey(name));
        drawText(name, place, Style::caption, colors.quietText.get());
        place.x += kNameWidth;
        width -= kNameWidth;
        if (value->isKindOfClass(NSColor::cls()))
            return fillRounded(
                NSMakeRect(place.x, place.y + 1, 36, 12), 4, static_cast<NSColor*>(value.get()));
        const Ref<NSString> text = isCodable
            ? textOf(name, value.get())
            : textOf(name, value.get())->stringByAppendingString(", not archived"_ns);
        drawFitted(text.get(), place, width, Style::caption,
            differs(self, name, value.get()) ? colors.accent.get() : colors.text.get());
    }

    static void drawBody(BikeCard& self, NSRect body)
    {
        const double width = body.size.width / 2;
        const Ref<NSArray> names = propertyNames(self.bike_);
        const NSUInteger half = (names->count() + 1) / 2;
        for (NSUInteger i = 0; i < names->count(); ++i)
            drawValue(self, cast<NSString>(names->objectAtIndex(i)).get(),
                { body.origin.x + (i < half ? 0 : width),
                    body.origin.y + static_cast<double>(i % half) * kRowHeight },
                width - 8);
    }

    static void table(Builder& t)
    {
        t.properties({ property<&BikeCard::onArchived_>("onArchived", copied, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "archive", imp<archive> },
            { "change", imp<change> },
            { "restore", imp<restore> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(BikeCard, Keeping)

}
