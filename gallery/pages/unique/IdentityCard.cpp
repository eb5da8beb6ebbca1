// SPDX-License-Identifier: Apache-2.0
#include "IdentityCard.h"

#include "foundation/NSMutableArray.h"
#include "foundation/NSObjCRuntime.h"
#include "foundation/NSUUID.h"
#include "introspection/NSArray+UniqueObjects.h"
#include "introspection/NSObject+UniqueObjects.h"
#include "introspection/NSUUID+UniqueObjects.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct IdentityCard::Methods<struct Finding> {

    static constexpr double kLabelWidth = 104;
    static constexpr double kLineHeight = 17;

    static void setList(IdentityCard& self, GalleryPlaylist* list)
    {
        self.list_ = Ref<GalleryPlaylist>(list);
        self.setNeedsDisplay(true);
    }

    static void drawBody(IdentityCard& self, NSRect body)
    {
        if (!self.list_)
            return;
        const Palette& colors = palette();
        NSPoint place = body.origin;
        const auto line = [&](NSString* label, NSString* text, Style style) {
            drawText(label, place, Style::caption, colors.quietText.get());
            drawFitted(text, { place.x + kLabelWidth, place.y }, body.size.width - kLabelWidth,
                style, colors.text.get());
            place.y += kLineHeight;
        };
        const Ref<NSUUID> identity = UUID(self.list_);
        const auto found = cast<GalleryPlaylist>(uniqueObject(identity));
        const auto songs = uniqueObjectsFromUUIDs(UUIDs(self.list_->songs()));
        const auto held = NSString::cls().stringWithFormat("%lu songs, %lu lists"_ns,
            uniqueObjects(GallerySong::cls())->count(),
            uniqueObjects(GalleryPlaylist::cls())->count());
        line("UUID"_ns, identity->UUIDString().get(), Style::code);
        line("uniqueObject"_ns,
            NSString::cls()
                .stringWithFormat("%@ “%@”"_ns, NSStringFromClass(found->classObject()).get(),
                    found->name().get())
                .get(),
            Style::caption);
        line("its songs"_ns, namesOf(songs.get()).get(), Style::caption);
        line("registered"_ns, held.get(), Style::caption);
    }

    static Ref<NSString> namesOf(NSArray* songs)
    {
        const auto names = NSMutableArray::cls().array();
        for (NSObject* song : *songs)
            names->addObject(static_cast<GallerySong*>(song)->name().get());
        return names->componentsJoinedByString(", "_ns);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "setList:", imp<setList> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(IdentityCard, Finding)

}
