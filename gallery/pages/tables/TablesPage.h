// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MenuTableCard.h"
#include "TableCard.h"
#include "pages/Page.h"

namespace gallery {

class Tour;

/// A long table, and one that behaves like a menu.
class TablesPage : public GalleryPage {
    BRINDLE_OBJECT(TablesPage, GalleryPage)

private:
    brindle::Ref<TableCard> table_;
    brindle::Ref<MenuTableCard> menu_;
};

void tourTables(Tour& tour);

}
