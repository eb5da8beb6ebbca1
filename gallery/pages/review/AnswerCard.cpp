// SPDX-License-Identifier: Apache-2.0
#include "AnswerCard.h"

#include "foundation/NSNotificationCenter.h"
#include "foundation/NSUserDefaults.h"
#include "kit/Drawing.h"
#include "kit/Figure.h"
#include "kit/OpenedURLs.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct AnswerCard::Methods<struct Showing> {

    static Ref<NSView> initWithFrame(AnswerCard& self, NSRect frame)
    {
        self.setHeading("Answer"_ns);
        self.setCaption("Kept in the defaults with the count it was given at"_ns);
        NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(
            &self, selector<"defaultsChanged">, NSUserDefaultsDidChangeNotification, nullptr);
        return super<AnswerCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void defaultsChanged(AnswerCard& self) { self.setNeedsDisplay(true); }
    static NSString* nameOf(NSInteger response)
    {
        switch (response) {
        case 0:
            return "No answer yet"_ns;
        case 2:
            return "Later"_ns;
        default:
            return "Rated"_ns;
        }
    }
    static void drawBody(AnswerCard&, NSRect body)
    {
        const Palette& colors = palette();
        const auto defaults = NSUserDefaults::cls().standardUserDefaults();
        const NSInteger response = defaults->integerForKey("JUAppUsesResponse"_ns);
        const NSInteger at = defaults->integerForKey("JUAppRespondedAt"_ns);
        const NSPoint place = body.origin;
        const auto line = response == 0
            ? Ref<NSString>("asked again at every use from the eighth"_ns)
            : response == 2
            ? NSString::cls().stringWithFormat("at use %ld; asked again at use %ld"_ns, at, at + 11)
            : NSString::cls().stringWithFormat("at use %ld; never asked again"_ns, at);
        drawFigure(nameOf(response), line.get(), body);
        const Ref<NSString> opened = lastOpenedURL();
        if (!opened || response != 1)
            return;
        drawText("Opened"_ns, { place.x, place.y + 64 }, Style::caption, colors.quietText.get());
        drawFitted(opened.get(), { place.x, place.y + 82 }, body.size.width, Style::code,
            colors.text.get());
    }
    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "defaultsChanged", imp<defaultsChanged> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(AnswerCard, Showing)

}
