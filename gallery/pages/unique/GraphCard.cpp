// SPDX-License-Identifier: Apache-2.0
#include "GraphCard.h"

#include <cmath>

#include "appkit/NSEvent.h"
#include "foundation/NSUUID.h"
#include "introspection/NSObject+UniqueObjects.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GraphCard::Methods<struct Graph> {

    static constexpr double kColumnGap = 72;
    static constexpr double kTitleHeight = 24;
    static constexpr double kNodeHeight = 38;

    enum Column { copies, lists, songs };

    static Ref<NSView> initWithFrame(GraphCard& self, NSRect frame)
    {
        loadMusic();
        self.setHeading("Objects with an identity"_ns);
        self.setCaption("Click a list, then songs to put in or take out"_ns);
        self.selected_
            = cast<GalleryPlaylist>(uniqueObjects(GalleryPlaylist::cls())->objectAtIndex(0));
        return super<GraphCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static Ref<NSArray> objectsIn(GraphCard& self, Column column)
    {
        return column == copies ? self.copies_
            : column == lists   ? uniqueObjects(GalleryPlaylist::cls())
                                : uniqueObjects(GallerySong::cls());
    }

    static double columnWidth(NSRect body) { return (body.size.width - 2 * kColumnGap) / 3; }
    static double columnLeft(NSRect body, Column column)
    {
        return body.origin.x + static_cast<double>(column) * (columnWidth(body) + kColumnGap);
    }

    /// Nodes share the column's height evenly.
    static NSRect nodeRect(GraphCard& self, Column column, NSUInteger index)
    {
        const NSRect body = self.bodyRect();
        const auto count = static_cast<double>(objectsIn(self, column)->count());
        const double share = (body.size.height - kTitleHeight) / count;
        const double middle = share * (static_cast<double>(index) + 0.5);
        return NSMakeRect(columnLeft(body, column),
            std::round(body.origin.y + kTitleHeight + middle - kNodeHeight / 2), columnWidth(body),
            kNodeHeight);
    }
    static NSRect rectOf(GraphCard& self, Column column, NSObject* object)
    {
        return nodeRect(self, column, objectsIn(self, column)->indexOfObjectIdenticalTo(object));
    }

    static void changed(GraphCard& self)
    {
        self.setNeedsDisplay(true);
        if (self.onChange_)
            self.onChange_();
    }

    static void selectNext(GraphCard& self, NSInteger places)
    {
        const Ref<NSArray> all = objectsIn(self, lists);
        const NSUInteger now = all->indexOfObjectIdenticalTo(self.selected_.get());
        self.selected_
            = cast<GalleryPlaylist>(all->objectAtIndex(placeInRing(now, places, all->count())));
        changed(self);
    }

    static void setCopies(GraphCard& self, NSArray* copies)
    {
        self.copies_ = Ref<NSArray>(copies);
        self.setNeedsDisplay(true);
    }

    static Ref<NSObject> objectAt(GraphCard& self, Column column, NSPoint place)
    {
        NSUInteger index = 0;
        for (NSObject* object : each(objectsIn(self, column)))
            if (NSPointInRect(place, nodeRect(self, column, index++)))
                return object;
        return nullptr;
    }

    static void mouseDown(GraphCard& self, NSEvent* event)
    {
        const NSPoint place = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        if (const Ref<NSObject> list = objectAt(self, lists, place))
            self.selected_ = cast<GalleryPlaylist>(list);
        else if (const Ref<NSObject> song = objectAt(self, songs, place))
            self.selected_->toggleSong(static_cast<GallerySong*>(song.get()));
        else
            return;
        changed(self);
    }

    enum class Look { usual, selected, copy };

    static void drawNode(NSRect box, NSString* name, NSString* detail, Look look)
    {
        const Palette& colors = palette();
        const bool isSelected = look == Look::selected;
        if (look == Look::copy)
            strokeRounded(box, 7, colors.accent.get());
        else
            fillRounded(box, 7, isSelected ? colors.accent.get() : colors.soft.get());
        drawFitted(name, { box.origin.x + 10, box.origin.y + 4 }, box.size.width - 20,
            Style::heading, isSelected ? colors.accentText.get() : colors.text.get());
        drawFitted(detail, { box.origin.x + 10, box.origin.y + 20 }, box.size.width - 20,
            Style::code, isSelected ? colors.accentText.get() : colors.quietText.get());
    }

    static Ref<NSString> shortIdentity(NSObject* object)
    {
        return UUID(object)->UUIDString()->substringToIndex(8);
    }

    static void drawLinks(GraphCard& self, GalleryPlaylist* list)
    {
        const Ref<NSColor> quiet = palette().quietText->colorWithAlphaComponent(0.45);
        NSColor* const color = list == self.selected_.get() ? palette().accent.get() : quiet.get();
        const NSRect from = rectOf(self, lists, list);
        for (NSObject* song : each(list->songs())) {
            const NSRect to = rectOf(self, songs, song);
            drawArrow({ NSMaxX(from) + 3, NSMidY(from) }, { to.origin.x - 3, NSMidY(to) }, color);
        }
        if (const Ref<GalleryPlaylist> next = list->next())
            drawArrow({ NSMidX(from), NSMaxY(from) + 3 },
                { NSMidX(from), rectOf(self, lists, next.get()).origin.y - 3 }, color);
    }

    static void drawCopy(GraphCard& self, GalleryPlaylist* copy)
    {
        const NSRect box = rectOf(self, copies, copy);
        const auto count = maybe(copy->songs())->count();
        const auto detail = count == 0
            ? Ref<NSString>("identities read"_ns)
            : NSString::cls().stringWithFormat("%lu songs found"_ns, count);
        drawNode(box, copy->name().get(), detail.get(), Look::copy);
        const Ref<NSObject> real = realObject(copy);
        const NSRect to = rectOf(self, lists, real.get());
        drawArrow({ NSMaxX(box) + 3, NSMidY(box) }, { to.origin.x - 3, NSMidY(to) },
            palette().accent.get());
        drawCentered("realObject"_ns, NSMakeRect(NSMaxX(box), NSMidY(box) - 17, kColumnGap, 14),
            Style::caption, palette().quietText.get());
    }

    static void drawBody(GraphCard& self, NSRect body)
    {
        const Palette& colors = palette();
        NSString* const titles[] = { "Read from the defaults"_ns, "Lists"_ns, "Songs"_ns };
        for (const Column column : { copies, lists, songs })
            drawText(titles[column], { columnLeft(body, column), body.origin.y }, Style::caption,
                colors.quietText.get());
        if (!self.copies_)
            drawText("nothing read yet"_ns, { body.origin.x, body.origin.y + kTitleHeight },
                Style::body, colors.quietText.get());
        for (GalleryPlaylist* list : each<GalleryPlaylist>(objectsIn(self, lists)))
            drawLinks(self, list);
        for (GalleryPlaylist* list : each<GalleryPlaylist>(objectsIn(self, lists)))
            drawNode(rectOf(self, lists, list), list->name().get(), shortIdentity(list).get(),
                list == self.selected_.get() ? Look::selected : Look::usual);
        for (GallerySong* song : each<GallerySong>(objectsIn(self, songs)))
            drawNode(rectOf(self, songs, song), song->name().get(), shortIdentity(song).get(),
                Look::usual);
        for (GalleryPlaylist* copy : each<GalleryPlaylist>(objectsIn(self, copies)))
            drawCopy(self, copy);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&GraphCard::selected_>("selected", readonly, nonatomic),
            property<&GraphCard::onChange_>("onChange", copied, nonatomic),
        });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "selectNext:", imp<selectNext> },
            { "setCopies:", imp<setCopies> },
            { "mouseDown:", imp<mouseDown> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(GraphCard, Graph)

}
