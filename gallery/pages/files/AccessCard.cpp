// SPDX-License-Identifier: Apache-2.0
#include "AccessCard.h"

#include "Samples.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSUserDefaults.h"
#include "kit/Drawing.h"
#include "kit/Figure.h"
#include "kit/Palette.h"
#include "runtime/Table.h"
#include "sandbox/AppSandboxFileAccess.h"
#include "sandbox/AppSandboxFileAccessPersist.h"

namespace gallery {

using namespace brindle;

template <> struct AccessCard::Methods<struct Asking> {

    static constexpr std::size_t kMostLines = 5;

    static Ref<NSView> initWithFrame(AccessCard& self, NSRect frame)
    {
        self.setHeading("Access to a letter"_ns);
        self.setCaption("Asked for once, remembered by a bookmark"_ns);
        self.once_ = addChip(&self, "Read once"_ns, "r"_ns, sending<"readOnce">(&self));
        self.always_ = addChip(&self, "Read and remember"_ns, "a"_ns, sending<"readAlways">(&self));
        self.forget_ = addChip(&self, "Forget"_ns, "f"_ns, sending<"forgetGrants">(&self));
        return super<AccessCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(AccessCard& self, NSSize size)
    {
        super<AccessCard, "setFrameSize:">(self, size);
        layOutChips(
            { self.once_.get(), self.always_.get(), self.forget_.get() }, { 16, size.height - 44 });
    }

    static void say(AccessCard& self, const Ref<NSString>& line)
    {
        self.lines_.push_back(line);
        if (self.lines_.size() > kMostLines)
            self.lines_.erase(self.lines_.begin());
        self.setNeedsDisplay(true);
    }
    static void read(AccessCard& self, bool persist)
    {
        const Ref<AccessCard> alive(&self);
        const Ref<NSURL> letter = sampleLetter();
        NSUInteger length = 0;
        const bool isGranted
            = AppSandboxFileAccess::cls().fileAccess()->accessFileURL_withBlock_persistPermission(
                letter.get(),
                [&] {
                    length = maybe(NSData::cls().dataWithContentsOfFile(letter->path().get()))
                                 ->length();
                },
                persist);
        say(self,
            isGranted ? NSString::cls().stringWithFormat("read %lu bytes"_ns, length)
                      : Ref<NSString>("declined; nothing was run"_ns));
    }
    static void readOnce(AccessCard& self) { read(self, false); }
    static void readAlways(AccessCard& self) { read(self, true); }
    static void forget(AccessCard& self)
    {
        for (Ref<NSURL> url = sampleLetter(); url->path()->length() > 1;
             url = url->URLByDeletingLastPathComponent())
            AppSandboxFileAccessPersist::cls().setBookmarkData_forURL(nullptr, url.get());
        say(self, "forgotten"_ns);
    }

    static void drawBody(AccessCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const Ref<NSURL> letter = sampleLetter();
        const bool isKept
            = AppSandboxFileAccessPersist::cls().bookmarkDataForURL(letter.get()) != nullptr;
        drawFigure(letter->lastPathComponent().get(),
            isKept ? "a bookmark covers it"_ns : "no bookmark covers it"_ns, body);
        double y = body.origin.y + 60;
        for (const Ref<NSString>& line : self.lines_) {
            drawFitted(
                line.get(), { body.origin.x, y }, body.size.width, Style::code, colors.text.get());
            y += 20;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "readOnce", imp<readOnce> },
            { "readAlways", imp<readAlways> },
            { "forgetGrants", imp<forget> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(AccessCard, Asking)

}
