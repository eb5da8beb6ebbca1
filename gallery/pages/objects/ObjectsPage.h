// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ArchiveCard.h"
#include "BikeCard.h"
#include "PropertiesCard.h"
#include "pages/Page.h"

namespace gallery {

/// What objects know about themselves: the properties of classes, and an object that is archived from them.
///
/// Keys: Left and Right choose the class; the letters are those of the chips.
class ObjectsPage : public GalleryPage {
    BRINDLE_OBJECT(ObjectsPage, GalleryPage)

private:
    brindle::Ref<PropertiesCard> properties_;
    brindle::Ref<BikeCard> bike_;
    brindle::Ref<ArchiveCard> archive_;
};

class Tour;
void tourObjects(Tour& tour);

}
