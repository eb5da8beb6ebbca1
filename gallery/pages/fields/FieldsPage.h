// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FormCard.h"
#include "FormattersCard.h"
#include "KindsCard.h"
#include "pages/Page.h"

namespace gallery {

/// An object that is edited in fields and other controls, fields of every kind, and fields with formatters.
class FieldsPage : public GalleryPage {
    BRINDLE_OBJECT(FieldsPage, GalleryPage)

private:
    brindle::Ref<FormCard> form_;
    brindle::Ref<KindsCard> kinds_;
    brindle::Ref<FormattersCard> formatters_;
};

class Tour;
void tourFields(Tour& tour);

}
