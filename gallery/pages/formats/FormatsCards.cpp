// SPDX-License-Identifier: Apache-2.0
#include "FormatsCards.h"

#include "foundation/NSDateFormatter.h"
#include "foundation/NSISO8601DateFormatter.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNumberFormatter.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kFieldHeight = 24;
    constexpr double kRow = 24;
    constexpr double kNames = 92;

    /// Writes a name and what it stands for, and goes on to the next row.
    void drawRow(NSRect& room, NSString* name, NSString* value)
    {
        if (room.size.height < kRow)
            return;
        const double width = room.size.width - kNames;
        drawText(
            name, { room.origin.x, room.origin.y + 4 }, Style::caption, palette().quietText.get());
        drawFitted(value ? value : "–"_ns, { room.origin.x + kNames, room.origin.y + 2 }, width,
            Style::body, palette().text.get());
        room.origin.y += kRow;
        room.size.height -= kRow;
    }
    void skip(NSRect& room, double height)
    {
        room.origin.y += height;
        room.size.height -= height;
    }
    /// Adds a field that tells the card whenever its text changes.
    Ref<NSTextField> addField(LocalizedCard& card, NSString* text)
    {
        Ref<NSTextField> field = make<NSTextField>();
        field->setStringValue(text);
        field->setDelegate(&card);
        card.addSubview(field.get());
        return field;
    }

}

template <> struct LocalizedCard::Methods<struct Language> {

    static void setLocale(LocalizedCard& self, NSLocale* locale)
    {
        self.locale_ = locale;
        self.setNeedsDisplay(true);
    }
    static void textChanged(LocalizedCard& self, NSNotification*) { self.setNeedsDisplay(true); }

    static void table(Builder& t)
    {
        t.properties({ property<&LocalizedCard::locale_>("locale", nonatomic) });
        t.methods({
            { "setLocale:", imp<setLocale> },
            { "controlTextDidChange:", imp<textChanged> },
        });
    }
};
BRINDLE_RECORD(LocalizedCard, Language)

template <> struct NumbersCard::Methods<struct Numbers> {

    struct Row {
        NSString* name;
        NSNumberFormatterStyle style;
    };

    static Ref<NSView> initWithFrame(NumbersCard& self, NSRect frame)
    {
        Ref<NSView> made = super<NumbersCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Numbers"_ns);
        self.setCaption("Typed as the language writes it, shown in each style"_ns);
        self.field_ = addField(self, "1234567.891"_ns);
        return made;
    }
    static void setFrameSize(NumbersCard& self, NSSize size)
    {
        super<NumbersCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        maybe(self.field_)
            ->setFrame(NSMakeRect(body.origin.x, body.origin.y, body.size.width, kFieldHeight));
    }
    static Ref<NSNumberFormatter> formatter(NumbersCard& self, NSNumberFormatterStyle style)
    {
        Ref<NSNumberFormatter> made = make<NSNumberFormatter>();
        made->setNumberStyle(style);
        made->setLocale(self.locale().get());
        return made;
    }
    /// A number that was typed stays the same number in another language.
    static void setLocale(NumbersCard& self, NSLocale* locale)
    {
        const Ref<NSNumber> number = typed(self);
        super<NumbersCard, "setLocale:">(self, locale);
        const Ref<NSNumberFormatter> writer = formatter(self, NSNumberFormatterDecimalStyle);
        if (number)
            self.field_->setStringValue(writer->stringFromNumber(number.get()).get());
    }
    static Ref<NSNumber> typed(NumbersCard& self)
    {
        const Ref<NSString> text = self.field_->stringValue();
        return formatter(self, NSNumberFormatterDecimalStyle)->numberFromString(text.get());
    }
    static void drawBody(NumbersCard& self, NSRect body)
    {
        const Ref<NSNumber> number = typed(self);
        skip(body, kFieldHeight + 12);
        const Row rows[] = { { "Decimal"_ns, NSNumberFormatterDecimalStyle },
            { "Money"_ns, NSNumberFormatterCurrencyStyle },
            { "Percent"_ns, NSNumberFormatterPercentStyle },
            { "Scientific"_ns, NSNumberFormatterScientificStyle },
            { "Ordinal"_ns, NSNumberFormatterOrdinalStyle },
            { "Spelled out"_ns, NSNumberFormatterSpellOutStyle } };
        for (const Row& row : rows)
            drawRow(
                body, row.name, formatter(self, row.style)->stringFromNumber(number.get()).get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "setLocale:", imp<setLocale> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(NumbersCard, Numbers)

template <> struct DatesCard::Methods<struct Dates> {

    struct Row {
        NSString* name;
        NSDateFormatterStyle style;
    };
    static constexpr double kDay = 24 * 60 * 60;
    static constexpr double kStyles = 7; // rows
    static constexpr double kSpace = 10; // between dates and times

    static Ref<NSView> initWithFrame(DatesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<DatesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Dates"_ns);
        self.setCaption("A day and a time in each style, and by words where near"_ns);
        self.date_ = NSDate::cls().date();
        self.earlier_ = addChip(&self, "Day before"_ns, "b"_ns, moving(self, -kDay));
        self.later_ = addChip(&self, "Day after"_ns, "a"_ns, moving(self, kDay));
        self.now_ = addChip(&self, "Now"_ns, "n"_ns, sending<"now">(&self));
        self.month_ = make<MonthView>();
        self.month_->setChosen([weak = WeakRef<DatesCard>(&self)](NSDate* date) {
            if (const Ref<DatesCard> card = weak.get())
                show(*card, date);
        });
        self.addSubview(self.month_.get());
        return made;
    }
    static Block<void()> moving(DatesCard& self, double seconds)
    {
        return [weak = WeakRef<DatesCard>(&self), seconds] {
            if (const Ref<DatesCard> card = weak.get())
                show(*card, card->date_->dateByAddingTimeInterval(seconds));
        };
    }
    static void now(DatesCard& self) { show(self, NSDate::cls().date()); }
    static void show(DatesCard& self, const Ref<NSDate>& date)
    {
        self.date_ = date;
        self.month_->show(date.get(), self.locale().get());
        self.setNeedsDisplay(true);
    }
    static void setLocale(DatesCard& self, NSLocale* locale)
    {
        super<DatesCard, "setLocale:">(self, locale);
        show(self, self.date_);
    }
    static void setFrameSize(DatesCard& self, NSSize size)
    {
        super<DatesCard, "setFrameSize:">(self, size);
        if (!self.month_)
            return;
        NSRect body = self.bodyRect();
        layOutChips({ self.earlier_.get(), self.later_.get(), self.now_.get() },
            takeBottom(body, kChipHeight).origin);
        skip(body, kStyles * kRow + kSpace + kCardGap);
        self.month_->setFrame(body);
    }
    static Ref<NSString> text(
        DatesCard& self, NSDateFormatterStyle day, NSDateFormatterStyle time, bool relative)
    {
        const Ref<NSDateFormatter> formatter = make<NSDateFormatter>();
        formatter->setDateStyle(day);
        formatter->setTimeStyle(time);
        formatter->setDoesRelativeDateFormatting(relative);
        formatter->setLocale(self.locale().get());
        return formatter->stringFromDate(self.date_.get());
    }
    static void drawBody(DatesCard& self, NSRect body)
    {
        body.size.height -= kChipHeight;
        const Row rows[] = { { "Short"_ns, NSDateFormatterShortStyle },
            { "Medium"_ns, NSDateFormatterMediumStyle }, { "Long"_ns, NSDateFormatterLongStyle },
            { "Full"_ns, NSDateFormatterFullStyle } };
        for (const Row& row : rows)
            drawRow(body, row.name, text(self, row.style, NSDateFormatterNoStyle, false).get());
        skip(body, kSpace);
        drawRow(body, "Time"_ns,
            text(self, NSDateFormatterNoStyle, NSDateFormatterShortStyle, false).get());
        drawRow(body, "Near by"_ns,
            text(self, NSDateFormatterShortStyle, NSDateFormatterShortStyle, true).get());
        drawRow(body, "For programs"_ns,
            make<NSISO8601DateFormatter>()->stringFromDate(self.date_.get()).get());
    }

    static void table(Builder& t)
    {
        t.properties({ property<&DatesCard::date_>("date", readonly, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "setLocale:", imp<setLocale> },
            { "now", imp<now> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(DatesCard, Dates)

template <> struct PatternsCard::Methods<struct Patterns> {

    static Ref<NSView> initWithFrame(PatternsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<PatternsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Patterns"_ns);
        self.setCaption("Letters as typed, and in the order of the language"_ns);
        self.field_ = addField(self, "EEEE d MMMM yyyy, HH:mm"_ns);
        return made;
    }
    static void setFrameSize(PatternsCard& self, NSSize size)
    {
        super<PatternsCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        maybe(self.field_)
            ->setFrame(NSMakeRect(body.origin.x, body.origin.y, body.size.width, kFieldHeight));
    }
    static void drawBody(PatternsCard& self, NSRect body)
    {
        const Ref<NSDate> date = NSDate::cls().date();
        const Ref<NSDateFormatter> formatter = make<NSDateFormatter>();
        formatter->setLocale(self.locale().get());
        formatter->setDateFormat(self.field_->stringValue().get());
        skip(body, kFieldHeight + 12);
        drawRow(body, "By it"_ns, formatter->stringFromDate(date.get()).get());
        skip(body, 10);
        for (NSString* letters : { "yMMMMd"_ns, "EEEMMMd"_ns, "jm"_ns }) {
            formatter->setLocalizedDateFormatFromTemplate(letters);
            drawRow(body, letters, formatter->stringFromDate(date.get()).get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(PatternsCard, Patterns)

}
