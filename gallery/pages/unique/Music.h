// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "foundation/NSString.h"

namespace gallery {

/// A song with an identity.
class GallerySong : public brindle::NSObject {
    BRINDLE_OBJECT(GallerySong, brindle::NSObject)

public:
    brindle::Ref<brindle::NSString> name() const
    {
        return send<"name", brindle::Ref<brindle::NSString>>();
    }
    void setName(brindle::NSString* name) { send<"setName:">(name); }

private:
    brindle::Ref<brindle::NSString> name_;
};

/// A list with an identity that refers to songs and to the list to play next; archived, these are identities.
class GalleryPlaylist : public brindle::NSObject {
    BRINDLE_OBJECT(GalleryPlaylist, brindle::NSObject)

public:
    brindle::Ref<brindle::NSString> name() const
    {
        return send<"name", brindle::Ref<brindle::NSString>>();
    }
    void setName(brindle::NSString* name) { send<"setName:">(name); }
    brindle::Ref<brindle::NSArray> songs() const
    {
        return send<"songs", brindle::Ref<brindle::NSArray>>();
    }
    void setSongs(brindle::NSArray* songs) { send<"setSongs:">(songs); }
    brindle::Ref<GalleryPlaylist> next() const
    {
        return send<"next", brindle::Ref<GalleryPlaylist>>();
    }
    void setNext(GalleryPlaylist* next) { send<"setNext:">(next); }
    /// Puts a song in, or takes it out.
    void toggleSong(GallerySong* song) { send<"toggleSong:">(song); }

private:
    brindle::Ref<brindle::NSString> name_;
    brindle::Ref<brindle::NSArray> songs_;
    brindle::Ref<GalleryPlaylist> next_;
};

/// Reads what was archived, or makes some songs and lists to begin with; does nothing when there are lists.
void loadMusic();

}
