// SPDX-License-Identifier: Apache-2.0
#include "ExpressionsCards.h"

#include <algorithm>
#include <utility>

#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextStorage.h"
#include "appkit/NSWorkspace.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNotificationCenter.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "kit/TextPane.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kFieldHeight = 22;

    Ref<NSFont> codeFont() { return NSFont::cls().userFixedPitchFontOfSize(13); }

    /// Adds a field for code that tells the card whenever its text changes.
    Ref<NSTextField> addField(GalleryCard& card, NSString* text)
    {
        Ref<NSTextField> field = make<NSTextField>();
        field->setFont(codeFont().get());
        field->setStringValue(text);
        field->setDelegate(&card);
        card.addSubview(field.get());
        return field;
    }
    /// Lets the page search anew.
    void search(GalleryCard& card) { card.tryToPerform_with(selector<"searchAnew:">, &card); }

    NSRect fieldIn(NSRect body)
    {
        return NSMakeRect(body.origin.x, body.origin.y, body.size.width, kFieldHeight);
    }
    /// What does not fit need not be laid out.
    Ref<NSString> beginning(const Ref<NSString>& text)
    {
        constexpr NSUInteger kMost = 1500;
        return text->substringToIndex(std::min(text->length(), kMost));
    }

}

template <> struct ExpressionCard::Methods<struct PatternField> {

    struct Option {
        const char* name;
        const char* key;
        NSRegularExpressionOptions option;
    };
    static constexpr std::array<Option, kOptions> kAll { {
        { "Any case", "a", NSRegularExpressionCaseInsensitive },
        { "By lines", "b", NSRegularExpressionAnchorsMatchLines },
        { "Over lines", "o", NSRegularExpressionDotMatchesLineSeparators },
        { "Plain", "p", NSRegularExpressionIgnoreMetacharacters },
    } };

    static Ref<NSView> initWithFrame(ExpressionCard& self, NSRect frame)
    {
        Ref<NSView> made = super<ExpressionCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Pattern"_ns);
        self.setCaption("NSRegularExpression, read anew with every letter"_ns);
        self.field_ = addField(self, "(\\w+)@(\\w+)\\.(org|net)"_ns);
        for (std::size_t i = 0; i < kOptions; ++i)
            self.chips_[i] = addChip(&self, stringFrom(kAll[i].name).get(),
                stringFrom(kAll[i].key).get(), [weak = WeakRef<ExpressionCard>(&self), i] {
                    if (const Ref<ExpressionCard> card = weak.get())
                        toggle(*card, i);
                });
        return made;
    }
    static void toggle(ExpressionCard& self, std::size_t option)
    {
        self.chips_[option]->setOn(!self.chips_[option]->isOn());
        search(self);
    }
    static NSUInteger options(ExpressionCard& self)
    {
        NSUInteger all = 0;
        for (std::size_t i = 0; i < kOptions; ++i)
            all |= self.chips_[i]->isOn() ? kAll[i].option : 0;
        return all;
    }
    static void textChanged(ExpressionCard& self, NSNotification*) { search(self); }
    static void setFrameSize(ExpressionCard& self, NSSize size)
    {
        super<ExpressionCard, "setFrameSize:">(self, size);
        if (!self.chips_.back())
            return;
        const NSRect body = self.bodyRect();
        const auto& c = self.chips_;
        self.field_->setFrame(fieldIn(body));
        layOutChips({ c[0].get(), c[1].get(), c[2].get(), c[3].get() },
            { body.origin.x, NSMaxY(body) - kChipHeight });
    }
    static void drawBody(ExpressionCard& self, NSRect body)
    {
        const Palette& colors = palette();
        drawFitted(self.outcome_.get(), { body.origin.x, body.origin.y + kFieldHeight + 9 },
            body.size.width, Style::body, (self.isWrong_ ? colors.accent : colors.text).get());
    }

    static void table(Builder& t)
    {
        t.properties({ property<&ExpressionCard::field_>("field", readonly, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "options", imp<options> },
            { "controlTextDidChange:", imp<textChanged> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ExpressionCard, PatternField)

void ExpressionCard::show(const Search& search)
{
    isWrong_ = !search.expression;
    if (isWrong_)
        outcome_ = search.error->localizedDescription();
    else
        outcome_ = NSString::cls().stringWithFormat(search.matches.size() == 1
                ? "%lu match, groups in it: %lu"_ns
                : "%lu matches, groups in each: %lu"_ns,
            search.matches.size(), search.expression->numberOfCaptureGroups());
    setNeedsDisplay(true);
}

template <> struct SubjectCard::Methods<struct Marks> {

    static Ref<NSView> initWithFrame(SubjectCard& self, NSRect frame)
    {
        Ref<NSView> made = super<SubjectCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Text"_ns);
        self.setCaption("Edit it: what the pattern finds is marked while you type"_ns);
        const TextPane pane = addTextPane(self,
            "Write to ada@lamps.org or to grace@window.net before noon.\n"
            "desk@table is no address, and OLGA@BRASS.ORG is one in capitals.\n\n"
            "Older letters went to ivan@lamps.org, noor@shade.net and "
            "nobody@nowhere.example.\n\nWhat does not look like an address may "
            "look like a date: 3 May, "
            "12 June, 1 July. Try (\\d+) (\\w+)."_ns);
        self.text_ = pane.text;
        self.scroll_ = pane.scroll;
        self.text_->setDelegate(&self);
        NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(
            &self, selector<"colorsChanged:">, NSSystemColorsDidChangeNotification, nullptr);
        return made;
    }
    static void setFrameSize(SubjectCard& self, NSSize size)
    {
        super<SubjectCard, "setFrameSize:">(self, size);
        if (!self.scroll_)
            return;
        self.scroll_->setFrame(self.bodyRect());
        self.text_->setMinSize(self.scroll_->contentSize());
        self.text_->setFrameSize(self.scroll_->contentSize());
        self.text_->sizeToFit();
    }
    static void textChanged(SubjectCard& self, NSNotification*) { search(self); }

    /// Marks what was found; neighbours that touch have different grounds.
    static void mark(SubjectCard& self)
    {
        const Ref<NSTextStorage> storage = self.text_->textStorage();
        const Palette& colors = palette();
        storage->beginEditing();
        storage->removeAttribute_range(
            NSBackgroundColorAttributeName, NSMakeRange(0, storage->length()));
        bool second = false;
        for (const NSRange range : self.marks_) {
            if (NSMaxRange(range) <= storage->length())
                storage->addAttribute_value_range(NSBackgroundColorAttributeName,
                    (second ? colors.selection : colors.soft).get(), range);
            second = !second;
        }
        storage->endEditing();
    }
    static void colorsChanged(SubjectCard& self, NSNotification*) { mark(self); }

    static void table(Builder& t)
    {
        t.properties({ property<&SubjectCard::text_>("text", readonly, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "textDidChange:", imp<textChanged> },
            { "mark", imp<mark> },
            { "colorsChanged:", imp<colorsChanged> },
        });
    }
};
BRINDLE_RECORD(SubjectCard, Marks)

void SubjectCard::show(const Search& search)
{
    marks_.clear();
    for (const Ref<NSTextCheckingResult>& match : search.matches) {
        if (match->range().length > 0)
            marks_.push_back(match->range());
    }
    send<"mark">();
}

template <> struct MatchesCard::Methods<struct List> {

    static constexpr double kRow = 22;
    static constexpr double kIndent = 24;
    static constexpr double kGap = 8;

    static Ref<NSView> initWithFrame(MatchesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<MatchesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Matches"_ns);
        self.setCaption("Where each begins, and what its groups took"_ns);
        return made;
    }
    static Ref<NSString> groupText(const Search& search, const NSTextCheckingResult& match)
    {
        Ref<NSString> all = ""_ns;
        for (NSUInteger group = 1; group < match.numberOfRanges(); ++group) {
            const NSRange range = match.rangeAtIndex(group);
            const Ref<NSString> taken = range.location == NSNotFound
                ? Ref<NSString>("–"_ns)
                : search.text->substringWithRange(range);
            all = all->stringByAppendingString(
                NSString::cls().stringWithFormat("$%lu %@   "_ns, group, taken.get()).get());
        }
        return all;
    }
    static void drawRow(NSRect& room, double indent, NSString* text, Style style, NSColor* color)
    {
        drawFitted(text, { room.origin.x + indent, room.origin.y }, room.size.width - indent, style,
            color);
        room.origin.y += kRow;
        room.size.height -= kRow;
    }
    static void drawMatch(const Search& search, NSUInteger index, NSRect& room)
    {
        const Palette& colors = palette();
        const NSTextCheckingResult& match = *search.matches[index];
        const Ref<NSString> found = beginning(search.text->substringWithRange(match.range()));
        drawText(NSString::cls().stringWithFormat("%lu"_ns, match.range().location).get(),
            { room.origin.x, room.origin.y + 2 }, Style::caption, colors.quietText.get());
        drawRow(room, kIndent + 6, found.get(), Style::body, colors.text.get());
        if (match.numberOfRanges() > 1)
            drawRow(room, kIndent + 6, groupText(search, match).get(), Style::code,
                colors.codeText.get());
        room.origin.y += kGap;
        room.size.height -= kGap;
    }
    static void drawBody(MatchesCard& self, NSRect room)
    {
        const Search& search = self.search_;
        const double each
            = kGap + kRow * (maybe(search.expression)->numberOfCaptureGroups() ? 2 : 1);
        const std::size_t count = search.matches.size();
        std::size_t shown = 0;
        // The last row is for what finds no room.
        while (shown < count && room.size.height >= each + (shown + 1 < count ? kRow : 0))
            drawMatch(search, shown++, room);
        const Ref<NSString> rest = count == 0
            ? Ref<NSString>(search.expression ? "Nothing found"_ns : "Nothing to search by"_ns)
            : NSString::cls().stringWithFormat("and %lu more"_ns, count - shown);
        if (shown < count || count == 0)
            drawText(rest.get(), room.origin, Style::caption, palette().quietText.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(MatchesCard, List)

void MatchesCard::show(const Search& search)
{
    search_ = search;
    setNeedsDisplay(true);
}

template <> struct ReplacementCard::Methods<struct Template> {

    static Ref<NSView> initWithFrame(ReplacementCard& self, NSRect frame)
    {
        Ref<NSView> made = super<ReplacementCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Replacement"_ns);
        self.setCaption("$0 is the match, $1 its first group"_ns);
        self.field_ = addField(self, "$1 of $2"_ns);
        return made;
    }
    static void textChanged(ReplacementCard& self, NSNotification*) { search(self); }
    static void setFrameSize(ReplacementCard& self, NSSize size)
    {
        super<ReplacementCard, "setFrameSize:">(self, size);
        maybe(self.field_)->setFrame(fieldIn(self.bodyRect()));
    }
    static void drawBody(ReplacementCard& self, NSRect body)
    {
        if (!self.result_)
            return;
        body.origin.y += kFieldHeight + 12;
        body.size.height -= kFieldHeight + 12;
        const auto style = make<NSMutableParagraphStyle>();
        style->setLineBreakMode(NSLineBreakByWordWrapping);
        const auto attributes = make<NSMutableDictionary>();
        attributes->setObject_forKey(fontOf(Style::body).get(), NSFontAttributeName.get());
        attributes->setObject_forKey(palette().text.get(), NSForegroundColorAttributeName.get());
        attributes->setObject_forKey(style.get(), NSParagraphStyleAttributeName.get());
        drawWithRect_options_attributes(beginning(self.result_), body,
            NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine,
            attributes.get());
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&ReplacementCard::field_>("field", readonly, nonatomic),
            property<&ReplacementCard::result_>("result", readonly, nonatomic),
        });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "controlTextDidChange:", imp<textChanged> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ReplacementCard, Template)

void ReplacementCard::show(const Search& search)
{
    result_ = search.replaced;
    setNeedsDisplay(true);
}

}
