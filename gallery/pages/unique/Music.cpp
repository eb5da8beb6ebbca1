// SPDX-License-Identifier: Apache-2.0
#include "Music.h"

#include "foundation/NSMutableArray.h"
#include "foundation/NSUUID.h"
#include "introspection/NSCoder+UniqueObjects.h"
#include "introspection/NSObject+UniqueObjects.h"
#include "introspection/NSUUID+UniqueObjects.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GallerySong::Methods<struct Declared> {
    static void table(Builder& t)
    {
        t.conformsTo({ "UniqueObjects" });
        t.properties({ property<&GallerySong::name_>("name", copied, nonatomic) });
    }
};
BRINDLE_RECORD(GallerySong, Declared)

template <> struct GalleryPlaylist::Methods<struct Declared> {

    static Ref<NSArray> UUIDProperties(Class&)
    {
        return NSArray::cls().arrayWithObjects("songs"_ns, "next"_ns);
    }
    static void encodeWithCoder(GalleryPlaylist& self, NSCoder* coder)
    {
        super<GalleryPlaylist, "encodeWithCoder:">(self, coder);
        encodeToUUIDsForPropertiesOf(coder, &self);
    }
    static Ref<NSObject> initWithCoder(GalleryPlaylist& self, NSCoder* coder)
    {
        super<GalleryPlaylist, "initWithCoder:", Ref<NSObject>>(self, coder);
        decodeUUIDsForPropertiesOf(coder, &self);
        return &self;
    }

    static void toggleSong(GalleryPlaylist& self, GallerySong* song)
    {
        const auto songs = NSMutableArray::cls().arrayWithArray(self.songs_.get());
        if (songs->containsObject(song))
            songs->removeObject(song);
        else
            songs->addObject(song);
        self.setSongs(songs.get());
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "UniqueObjects" });
        t.properties({
            property<&GalleryPlaylist::name_>("name", copied, nonatomic),
            property<&GalleryPlaylist::songs_>("songs", copied, nonatomic),
            property<&GalleryPlaylist::next_>("next", nonatomic),
        });
        t.classMethods({ { "UUIDProperties", imp<UUIDProperties> } });
        t.methods({
            { "encodeWithCoder:", imp<encodeWithCoder> },
            { "initWithCoder:", imp<initWithCoder> },
            { "toggleSong:", imp<toggleSong> },
        });
    }
};
BRINDLE_RECORD(GalleryPlaylist, Declared)

namespace {

    /// Answers the object of an identity, which is the same wherever the gallery runs.
    template <class T> Ref<T> ensureNamed(NSString* name, NSString* text)
    {
        const Ref<NSUUID> identity = alloc<NSUUID>()->initWithUUIDString(text);
        if (const Ref<NSObject> known = uniqueObjectOfClass(identity, T::cls()))
            return cast<T>(known);
        const Ref<T> object = make<T>();
        object->setName(name);
        setUUID(object, identity.get());
        return object;
    }

    void makeMusic()
    {
        const Ref<GallerySong> songs[] = {
            ensureNamed<GallerySong>("First light"_ns, "3F0A51C2-7B64-4C7E-9D0B-52A1C86E1B01"_ns),
            ensureNamed<GallerySong>("Low tide"_ns, "B81D6E94-0C3F-4A52-8E67-1D94F2A37C02"_ns),
            ensureNamed<GallerySong>("Gravel"_ns, "5C92E7A0-D418-4B3D-A5F1-8E06B7D49203"_ns),
            ensureNamed<GallerySong>("Paper boats"_ns, "E47B2F18-96A3-4D80-B21C-6F3A90C5D804"_ns),
            ensureNamed<GallerySong>("Northward"_ns, "09D6C3B5-2E71-4F9A-8C44-A7E5130F6B05"_ns),
        };
        const auto morning
            = ensureNamed<GalleryPlaylist>("Morning"_ns, "A1C4F3E8-5B27-4D09-9E36-70B8D2C15A11"_ns);
        const auto ride
            = ensureNamed<GalleryPlaylist>("Ride"_ns, "6E58B09D-C3F2-4A71-8D15-2B94E7A60C12"_ns);
        const auto evening
            = ensureNamed<GalleryPlaylist>("Evening"_ns, "D2703A6C-18E5-4B9F-A0C7-F5614D8B3E13"_ns);
        const auto list = [&](int a, int b) {
            return NSArray::cls().arrayWithObjects(songs[a].get(), songs[b].get());
        };
        morning->setSongs(list(0, 1).get());
        morning->setNext(ride.get());
        ride->setSongs(list(2, 4).get());
        ride->setNext(evening.get());
        evening->setSongs(list(1, 3).get());
    }

}

void loadMusic()
{
    Class* const classes[] = { GallerySong::cls(), GalleryPlaylist::cls() };
    if (uniqueObjects(classes[1]))
        return;
    for (Class* cls : classes)
        unarchiveUniqueObjects(cls);
    for (Class* cls : classes)
        loadObjectsForUUIDProperties(cls);
    for (Class* cls : classes)
        UUIDPropertiesLoadedForAllClasses(cls);
    if (!uniqueObjects(classes[1]))
        makeMusic();
}

}
