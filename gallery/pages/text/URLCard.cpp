// SPDX-License-Identifier: Apache-2.0
#include "URLCard.h"

#include "appkit/NSEvent.h"
#include "foundation/NSArray.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"
#include "text/NSString+PercentEscapes.h"
#include "text/NSString+URLs.h"
#include "text/NSURL+ParameterDictionary.h"
#include "text/NSURL+Strings.h"

namespace gallery {

using namespace brindle;

template <> struct URLCard::Methods<struct Reading> {

    static constexpr double kRowHeight = 26;
    static constexpr double kLineHeight = 22;
    static constexpr double kLabelWidth = 84;

    static constexpr std::size_t kCount = 5;
    static NSString* sample(NSUInteger index)
    {
        NSString* const samples[kCount] = {
            "example.org/search?q=red%20bike&page=2"_ns,
            "HTTPS://shop.west.example.org/?to=caf%C3%A9&x=1=2#top"_ns,
            "two words.example.org"_ns,
            "http://localhost:8080/?flag&empty=&last=1&last=2"_ns,
            "example.org/?broken=%zz"_ns,
        };
        return samples[index];
    }

    static NSRect rowRect(URLCard& self, NSUInteger index)
    {
        const NSRect body = self.bodyRect();
        return NSMakeRect(body.origin.x - 8,
            body.origin.y + static_cast<double>(index) * kRowHeight, body.size.width + 16,
            kRowHeight);
    }

    static void choose(URLCard& self, NSUInteger index)
    {
        self.chosen_ = index;
        self.setNeedsDisplay(true);
    }
    static void chooseNext(URLCard& self, NSInteger places)
    {
        choose(self, placeInRing(self.chosen_, places, kCount));
    }

    static void mouseDown(URLCard& self, NSEvent* event)
    {
        const NSPoint place = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        for (NSUInteger i = 0; i < kCount; ++i)
            if (NSPointInRect(place, rowRect(self, i)))
                choose(self, i);
    }

    /// Draws one line of the answers and answers where the next one begins.
    static NSPoint drawLine(NSPoint place, double width, NSString* label, const Ref<NSString>& text)
    {
        const Palette& colors = palette();
        drawText(label, place, Style::caption, colors.quietText.get());
        drawFitted(text ? text.get() : "nil"_ns, { place.x + kLabelWidth, place.y },
            width - kLabelWidth, Style::code, text ? colors.text.get() : colors.quietText.get());
        return { place.x, place.y + kLineHeight };
    }

    static void drawAnswers(NSString* typed, NSPoint place, double width)
    {
        const Ref<NSURL> url = URLValue(typed);
        place = drawLine(place, width, "URLValue"_ns, maybe(url)->absoluteString());
        place = drawLine(place, width, "domain"_ns, url ? domain(url) : nullptr);
        place = drawLine(place, width, "escaped"_ns, stringByAddingPercentEscapes(typed));
        place = drawLine(place, width, "unescaped"_ns, stringByReplacingPercentEscapes(typed));
        NSString* label = "parameters"_ns;
        const Ref<NSDictionary> parameters = url ? parameterDictionary(url) : nullptr;
        if (maybe(parameters)->count() == 0)
            drawLine(place, width, label, "none"_ns);
        for (NSString* key : each<NSString>(maybe(parameters)->allKeys())) {
            const auto pair = NSString::cls().stringWithFormat(
                "%@ = “%@”"_ns, key, parameters->objectForKey(key).get());
            place = drawLine(place, width, label, pair);
            label = ""_ns;
        }
    }

    static void drawBody(URLCard& self, NSRect body)
    {
        const Palette& colors = palette();
        for (NSUInteger i = 0; i < kCount; ++i) {
            const NSRect row = rowRect(self, i);
            const bool isChosen = i == self.chosen_;
            if (isChosen)
                fillRounded(row, 6, colors.soft.get());
            drawFitted(sample(i), { body.origin.x, row.origin.y + 6 }, body.size.width, Style::code,
                isChosen ? colors.accent.get() : colors.text.get());
        }
        drawAnswers(sample(self.chosen_),
            { body.origin.x, body.origin.y + kCount * kRowHeight + 12 }, body.size.width);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "chooseNext:", imp<chooseNext> },
            { "mouseDown:", imp<mouseDown> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(URLCard, Reading)

}
