// SPDX-License-Identifier: Apache-2.0
#include "FormCard.h"

#include <array>
#include <cmath>

#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNumber.h"
#include "foundation/NSNumberFormatter.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct FormCard::Methods<struct Editing> {

    static constexpr double kRow = 40;
    static constexpr double kNames = 76;
    static constexpr std::array kRows { "Name", "Gears", "Tags", "Weight", "Motor" };

    static Ref<NSTextField> addField(FormCard& self, NSString* placeholder)
    {
        const Ref<NSTextField> field = make<NSTextField>();
        field->setPlaceholderString(placeholder);
        take(self, *field);
        return field;
    }
    static void take(FormCard& self, NSControl& control)
    {
        control.setTarget(&self);
        control.setAction(selector<"takeValues:">);
        self.addSubview(&control);
    }
    static Ref<NSView> initWithFrame(FormCard& self, NSRect frame)
    {
        Ref<NSView> made = super<FormCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("A bike to edit"_ns);
        self.setCaption("Return takes a text over, Escape puts it back, Tab goes on"_ns);
        self.bike_ = make<GalleryBike>();
        self.original_ = NSKeyedArchiver::cls().archivedDataWithRootObject(self.bike_.get());
        self.name_ = addField(self, "A name"_ns);
        self.gears_ = addField(self, "A number"_ns);
        const Ref<NSNumberFormatter> whole = make<NSNumberFormatter>();
        self.gears_->setFormatter(whole.get());
        self.tags_ = addField(self, "Words with commas between them"_ns);
        self.weight_ = NSSlider::cls().sliderWithValue_minValue_maxValue_target_action(
            0, 6, 24, nullptr, {});
        self.electric_
            = NSButton::cls().checkboxWithTitle_target_action("Electric"_ns, nullptr, {});
        self.revert_ = NSButton::cls().buttonWithTitle_target_action(
            "Revert"_ns, &self, selector<"revert:">);
        take(self, *self.weight_);
        take(self, *self.electric_);
        self.addSubview(self.revert_.get());
        show(self);
        return made;
    }

    // ---- between the bike and its controls

    static void show(FormCard& self)
    {
        const auto value = [&](NSString* key) { return valueForKey(self.bike_, key); };
        self.name_->setObjectValue(value("name"_ns).get());
        self.gears_->setObjectValue(value("gears"_ns).get());
        self.tags_->setStringValue(
            cast<NSArray>(value("tags"_ns))->componentsJoinedByString(", "_ns).get());
        self.weight_->setObjectValue(value("weight"_ns).get());
        self.electric_->setState(
            cast<NSNumber>(value("electric"_ns))->boolValue() ? NSOnState : NSOffState);
        self.setNeedsDisplay(true);
    }
    static void takeValues(FormCard& self, NSObject*)
    {
        const auto set
            = [&](NSObject* value, NSString* key) { setValue_forKey(self.bike_, value, key); };
        set(self.name_->stringValue().get(), "name"_ns);
        set(NSNumber::cls().numberWithInteger(self.gears_->integerValue()).get(), "gears"_ns);
        set(self.tags_->stringValue()->componentsSeparatedByString(", "_ns).get(), "tags"_ns);
        set(NSNumber::cls().numberWithDouble(std::round(self.weight_->doubleValue() * 2) / 2).get(),
            "weight"_ns);
        set(NSNumber::cls().numberWithBool(self.electric_->state() == NSOnState).get(),
            "electric"_ns);
        self.setNeedsDisplay(true);
    }
    static void revert(FormCard& self, NSObject*)
    {
        for (const auto& field : { self.name_, self.gears_, self.tags_ })
            field->abortEditing();
        self.bike_ = cast<GalleryBike>(
            NSKeyedUnarchiver::cls().unarchiveObjectWithData(self.original_.get()));
        show(self);
    }

    // ---- places

    static double rowAt(NSRect body, std::size_t row)
    {
        return body.origin.y + kRow * static_cast<double>(row);
    }
    static void setFrameSize(FormCard& self, NSSize size)
    {
        super<FormCard, "setFrameSize:">(self, size);
        if (!self.revert_)
            return;
        const NSRect body = self.bodyRect();
        const double left = body.origin.x + kNames;
        const double width = NSMaxX(body) - left;
        const auto put = [&](NSView& view, std::size_t row, double wide, double high) {
            view.setFrame(NSMakeRect(
                left, rowAt(body, row) + std::round((kRow - 12 - high) / 2), wide, high));
        };
        put(*self.name_, 0, width, 24);
        put(*self.gears_, 1, 80, 24);
        put(*self.tags_, 2, width, 24);
        put(*self.weight_, 3, width, 20);
        put(*self.electric_, 4, width, 20);
        self.revert_->sizeToFit();
        self.revert_->setFrameOrigin({ left - 2, rowAt(body, kRows.size() + 1) + 4 });
    }
    static void drawBody(FormCard& self, NSRect body)
    {
        for (std::size_t row = 0; row < kRows.size(); ++row)
            drawText(NSString::cls().stringWithUTF8String(kRows[row]).get(),
                { body.origin.x, rowAt(body, row) + 6 }, Style::body, palette().text.get());
        const auto value = [&](NSString* key) { return valueForKey(self.bike_, key); };
        const bool electric = cast<NSNumber>(value("electric"_ns))->boolValue();
        const Ref<NSString> said = NSString::cls().stringWithFormat(
            "%@, %@ gears, %@ kg, %@, %@"_ns, value("name"_ns).get(), value("gears"_ns).get(),
            value("weight"_ns).get(), electric ? "electric"_ns : "no motor"_ns,
            cast<NSArray>(value("tags"_ns))->componentsJoinedByString(" and "_ns).get());
        drawFitted(said.get(), { body.origin.x, rowAt(body, kRows.size()) + 10 }, body.size.width,
            Style::body, palette().accent.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
            { "takeValues:", imp<takeValues> },
            { "revert:", imp<revert> },
        });
    }
};
BRINDLE_RECORD(FormCard, Editing)

}
