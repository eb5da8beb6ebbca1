// SPDX-License-Identifier: Apache-2.0
#include "StoreCard.h"

#include "foundation/NSData.h"
#include "foundation/NSObjCRuntime.h"
#include "foundation/NSUserDefaults.h"
#include "introspection/NSObject+UniqueObjects.h"
#include "introspection/NSUserDefaults+Archive.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct StoreCard::Methods<struct Keeping> {

    static Ref<NSView> initWithFrame(StoreCard& self, NSRect frame)
    {
        self.setHeading("In the defaults"_ns);
        self.setCaption("Each class under its name; references as identities"_ns);
        self.saveChip_ = addChip(&self, "Save"_ns, "s"_ns, sending<"save">(&self));
        self.readChip_ = addChip(&self, "Read"_ns, "r"_ns, sending<"read">(&self));
        self.resolveChip_ = addChip(&self, "Resolve"_ns, "l"_ns, sending<"resolve">(&self));
        return super<StoreCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(StoreCard& self, NSSize size)
    {
        super<StoreCard, "setFrameSize:">(self, size);
        layOutChips({ self.saveChip_.get(), self.readChip_.get(), self.resolveChip_.get() },
            { 16, size.height - 44 });
    }

    static void save(StoreCard& self)
    {
        archiveUniqueObjects(GallerySong::cls());
        archiveUniqueObjects(GalleryPlaylist::cls());
        self.setNeedsDisplay(true);
    }

    /// Being decoded, each list finds that its identity is taken and becomes a second copy.
    static void read(StoreCard& self)
    {
        const Ref<NSObject> lists = unarchiveObjectForKey(
            NSUserDefaults::cls().standardUserDefaults(), "GalleryPlaylist"_ns);
        self.copies_ = cast<NSArray>(lists);
        maybe(self.graph_.get())->setCopies(self.copies_.get());
    }

    static void resolve(StoreCard& self)
    {
        for (NSObject* copy : each(self.copies_))
            loadObjectsForUUIDProperties(copy);
        maybe(self.graph_.get())->setNeedsDisplay(true);
    }

    static void drawBody(StoreCard&, NSRect body)
    {
        const Palette& colors = palette();
        NSPoint place = body.origin;
        Class* const classes[] = { GallerySong::cls(), GalleryPlaylist::cls() };
        for (Class* cls : classes) {
            const Ref<NSString> name = NSStringFromClass(cls);
            const Ref<NSData> data
                = NSUserDefaults::cls().standardUserDefaults()->dataForKey(name.get());
            drawText(name.get(), place, Style::caption, colors.quietText.get());
            const auto size = data
                ? NSString::cls().stringWithFormat("%lu bytes"_ns, data->length())
                : Ref<NSString>("not saved"_ns);
            drawText(size.get(), { place.x + 110, place.y }, Style::caption,
                data ? colors.accent.get() : colors.text.get());
            place.y += 17;
        }
    }

    static void table(Builder& t)
    {
        t.properties({ property<&StoreCard::graph_>("graph", nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "save", imp<save> },
            { "read", imp<read> },
            { "resolve", imp<resolve> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(StoreCard, Keeping)

}
