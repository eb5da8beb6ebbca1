// SPDX-License-Identifier: Apache-2.0
#include "NSColorPrivate.h"
#include "SystemColorsPrivate.h"
#include "appkit/NSWorkspace.h"
#include "appkit/application/DesktopAppearancePrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

#include <atomic>
#include <string_view>

namespace brindle {

namespace {

    constinit std::atomic<appkit::Appearance> desktops { appkit::Appearance::light };
    constinit std::atomic<appkit::Appearance> chosen { appkit::Appearance::light };
    constinit std::atomic<bool> isChosen { false };

    /// Does something to the look and tells of it where it is another one then.
    template <class Change> void changeLook(const Change& change)
    {
        const appkit::Appearance before = appkit::appearance();
        change();
        if (appkit::appearance() != before)
            appkit::lookChanged();
    }

}

appkit::Appearance appkit::appearance()
{
    return isChosen.load() ? chosen.load() : desktops.load();
}
void appkit::setAppearance(Appearance appearance)
{
    changeLook([appearance] {
        chosen.store(appearance);
        isChosen.store(true);
    });
}
void appkit::followDesktopAppearance()
{
    changeLook([] { isChosen.store(false); });
}
void appkit::setDesktopAppearance(Appearance appearance)
{
    changeLook([appearance] { desktops.store(appearance); });
}

const char* NSColor::Methods<struct Parts>::systemName(const NSColor& self)
{
    return appkit::kSystemColors[self.systemIndex_].name;
}

Ref<NSColor> NSColor::Methods<struct Parts>::resolved(NSColor& self)
{
    return self.space_ == Space::named ? resolvedIn(self, appkit::appearance()) : &self;
}

Ref<NSColor> NSColor::Methods<struct Parts>::resolvedIn(NSColor& self, appkit::Appearance look)
{
    static constinit colors::PerSystemColor<NSColor> kept;
    return kept.at(self.systemIndex_, look, [&self, look] {
        const appkit::SystemColor& entry = appkit::kSystemColors[self.systemIndex_];
        const std::uint32_t value = look == appkit::Appearance::dark ? entry.dark : entry.light;
        const auto part = [value](int shift) { return (value >> shift & 0xFF) / 255.0; };
        return rgb(Space::calibratedRGB, { part(24), part(16), part(8) }, part(0));
    });
}

template <> struct NSColor::Methods<struct System> {

    using Parts = NSColor::Methods<struct Parts>;
    static_assert(appkit::kSystemColors.size() <= 256); // the index is a byte

    template <std::size_t I> static Ref<NSColor> system(Class&)
    {
        static NSColor* const color = [] {
            Ref<NSColor> named = Parts::plain(Space::named);
            named->systemIndex_ = I;
            return named.leak(); // lives as long as the process
        }();
        return color;
    }

    static Ref<NSColor> withCatalogName(Class& self, NSString* catalog, NSString* name)
    {
        const std::string wanted = utf8Of(name);
        for (const appkit::SystemColor& color : appkit::kSystemColors) {
            if (maybe(catalog)->isEqualToString("System"_ns) && wanted == color.name)
                return cast<NSColor>(self.performSelector(sel_registerName(color.name)));
        }
        return nullptr;
    }

    static Ref<NSArray> rowGrounds(Class&)
    {
        return makeArray({ NSColor::cls().controlBackgroundColor().get(),
            NSColor::cls().alternatingContentBackgroundColor().get() });
    }

    static Ref<NSString> catalogName(NSColor& self)
    {
        Parts::require(self, self.space_ == Space::named, "catalogNameComponent");
        return "System"_ns;
    }
    static Ref<NSString> colorName(NSColor& self)
    {
        Parts::require(self, self.space_ == Space::named, "colorNameComponent");
        return stringFrom(std::string_view(Parts::systemName(self)));
    }

    template <std::size_t... I> static void rows(Builder& t, std::index_sequence<I...>)
    {
        t.classMethods({ Row { appkit::kSystemColors[I].name, imp<system<I>> }... });
    }
    static void table(Builder& t)
    {
        rows(t, std::make_index_sequence<appkit::kSystemColors.size()>());
        t.classMethods({
            { "colorWithCatalogName:colorName:", imp<withCatalogName> },
            { "controlAlternatingRowBackgroundColors", imp<rowGrounds> },
            { "alternatingContentBackgroundColors", imp<rowGrounds> },
        });
        t.methods({
            { "catalogNameComponent", imp<catalogName> },
            { "colorNameComponent", imp<colorName> },
        });
    }
};
BRINDLE_RECORD(NSColor, System)

}
