// SPDX-License-Identifier: Apache-2.0
#include "PlacesCard.h"

#include "Samples.h"
#include "foundation/NSBundle.h"
#include "foundation/NSDate.h"
#include "foundation/NSDateFormatter.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSFileManager.h"
#include "foundation/NSNumber.h"
#include "foundation/NSURL.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct PlacesCard::Methods<struct Facts> {

    static constexpr double kNames = 130;
    static constexpr double kRow = 22;

    static Ref<NSView> initWithFrame(PlacesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<PlacesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Files and folders"_ns);
        self.setCaption("What the file manager, the bundle and a date formatter say"_ns);
        return made;
    }
    static Ref<NSString> changedAt(NSDictionary* attributes)
    {
        const Ref<NSObject> date = maybe(attributes)->objectForKey(NSFileModificationDate);
        const Ref<NSDateFormatter> formatter = make<NSDateFormatter>();
        formatter->setDateStyle(NSDateFormatterLongStyle);
        formatter->setTimeStyle(NSDateFormatterShortStyle);
        return date ? formatter->stringFromDate(cast<NSDate>(date).get()) : nullptr;
    }
    static Ref<NSString> sizeOf(NSDictionary* attributes)
    {
        const Ref<NSObject> size = maybe(attributes)->objectForKey(NSFileSize);
        return size
            ? NSString::cls().stringWithFormat("%ld bytes"_ns, cast<NSNumber>(size)->integerValue())
            : nullptr;
    }
    static void drawBody(PlacesCard&, NSRect body)
    {
        const Ref<NSFileManager> manager = NSFileManager::cls().defaultManager();
        const Ref<NSString> letter = sampleLetter()->path();
        const Ref<NSDictionary> attributes
            = manager->attributesOfItemAtPath_error(letter.get(), nullptr);
        const Ref<NSBundle> bundle = NSBundle::cls().mainBundle();
        const std::pair<const char*, Ref<NSString>> rows[] = {
            { "the letter", letter->lastPathComponent() },
            { "its size", sizeOf(attributes.get()) },
            { "changed", changedAt(attributes.get()) },
            { "shown as", manager->displayNameAtPath(letter.get()) },
            { "the application", bundle->bundleIdentifier() },
        };
        double y = body.origin.y;
        for (const auto& [name, value] : rows) {
            drawText(stringFrom(name).get(), { body.origin.x, y }, Style::body,
                palette().quietText.get());
            drawFitted(value ? value.get() : "nothing"_ns, { body.origin.x + kNames, y },
                body.size.width - kNames, Style::body, palette().text.get());
            y += kRow;
        }
    }

    static void table(Builder& t)
    {
        t.methods({ { "initWithFrame:", imp<initWithFrame> }, { "drawBody:", imp<drawBody> } });
    }
};
BRINDLE_RECORD(PlacesCard, Facts)

}
