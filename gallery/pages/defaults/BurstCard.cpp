// SPDX-License-Identifier: Apache-2.0
#include "BurstCard.h"

#include <cstdlib>

#include "ReplaceCounter.h"
#include "foundation/NSBundle.h"
#include "foundation/NSProcessInfo.h"
#include "foundation/NSUserDefaults.h"
#include "kit/Figure.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct BurstCard::Methods<struct Burst> {

    static constexpr NSInteger kWrites = 1000;

    static Ref<NSView> initWithFrame(BurstCard& self, NSRect frame)
    {
        self.setHeading("Burst of writes"_ns);
        self.setCaption("Kept together, written at once"_ns);
        self.chip_ = addChip(&self, "Write 1,000 times"_ns, "w"_ns, sending<"writeBurst">(&self));
        return super<BurstCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(BurstCard& self, NSSize size)
    {
        super<BurstCard, "setFrameSize:">(self, size);
        layOutChips({ self.chip_.get() }, { 16, size.height - 44 });
    }

    /// Where the application's own domain lies.
    static std::string settingsFolder()
    {
        const char* const settings = std::getenv("XDG_CONFIG_HOME");
        const char* const home = std::getenv("HOME");
        const std::string base = settings && *settings ? settings
            : home                                     ? std::string(home) + "/.config"
                                                       : "";
        const Ref<NSString> identifier = NSBundle::cls().mainBundle()->bundleIdentifier();
        // A copy of the program without its resources has none and keeps its settings under its name.
        const Ref<NSString> name
            = identifier ? identifier : NSProcessInfo::cls().processInfo()->processName();
        return base + "/" + utf8Of(name.get());
    }

    static void writeBurst(BurstCard& self)
    {
        const Ref<NSUserDefaults> defaults = NSUserDefaults::cls().standardUserDefaults();
        defaults->setInteger_forKey(0, "Burst"_ns);
        defaults->synchronize(); // the folder is there, nothing waits
        ReplaceCounter counter(settingsFolder());
        for (NSInteger i = 1; i <= kWrites; ++i)
            defaults->setInteger_forKey(i, "Burst"_ns);
        defaults->synchronize();
        self.replacements_ = counter.count("defaults.plist");
        ++self.bursts_;
        self.setNeedsDisplay(true);
    }

    static void drawBody(BurstCard& self, NSRect body)
    {
        const auto figure = self.bursts_ == 0
            ? Ref<NSString>("Ready"_ns)
            : NSString::cls().stringWithFormat(
                self.replacements_ == 1 ? "%ld replacement"_ns : "%ld replacements"_ns,
                self.replacements_);
        drawFigure(figure.get(), "of the file, as the system counts"_ns, body);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "writeBurst", imp<writeBurst> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(BurstCard, Burst)

}
