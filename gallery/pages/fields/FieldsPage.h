// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FormCard.h"
#include "KindsCard.h"
#include "pages/Page.h"

namespace gallery {

/// An object that is edited in fields and other controls, and fields of every kind.
class FieldsPage : public GalleryPage {
    BRINDLE_OBJECT(FieldsPage, GalleryPage)

private:
    brindle::Ref<FormCard> form_;
    brindle::Ref<KindsCard> kinds_;
};

class Tour;
void tourFields(Tour& tour);

}
