// SPDX-License-Identifier: Apache-2.0
#include "Pages.h"

#include "colour/ColourPage.h"
#include "controls/ControlsPage.h"
#include "defaults/DefaultsPage.h"
#include "fields/FieldsPage.h"
#include "files/FilesPage.h"
#include "ground/GroundPage.h"
#include "images/ImagesPage.h"
#include "layers/LayersPage.h"
#include "measures/MeasuresPage.h"
#include "menubar/MenubarPage.h"
#include "objects/ObjectsPage.h"
#include "paths/PathsPage.h"
#include "review/ReviewPage.h"
#include "scrolling/ScrollingPage.h"
#include "strip/StripPage.h"
#include "switches/SwitchesPage.h"
#include "tables/TablesPage.h"
#include "text/TextPage.h"
#include "unique/UniquePage.h"
#include "views/ViewsPage.h"
#include "windows/WindowsPage.h"

namespace gallery {

namespace {

    template <class Page> brindle::Ref<GalleryPage> makePage()
    {
        return brindle::Ref<GalleryPage>(brindle::make<Page>());
    }

    constexpr PageEntry kPages[] = {
        { "The ground", makePage<GroundPage>, tourGround },
        { "Objects", makePage<ObjectsPage>, tourObjects },
        { "Unique objects", makePage<UniquePage>, tourUnique },
        { "Defaults", makePage<DefaultsPage>, tourDefaults },
        { "Review request", makePage<ReviewPage>, tourReview },
        { "Files", makePage<FilesPage>, tourFiles },
        { "Intervals and URLs", makePage<TextPage>, tourText },
        { "Colour", makePage<ColourPage>, tourColour },
        { "Images", makePage<ImagesPage>, tourImages },
        { "Paths", makePage<PathsPage>, tourPaths },
        { "Layers", makePage<LayersPage>, tourLayers },
        { "Text", makePage<MeasuresPage>, tourMeasures },
        { "Controls", makePage<ControlsPage>, tourControls },
        { "Fields", makePage<FieldsPage>, tourFields },
        { "Switches", makePage<SwitchesPage>, tourSwitches },
        { "Views and borders", makePage<ViewsPage>, tourViews },
        { "Scrolling", makePage<ScrollingPage>, tourScrolling },
        { "Tables", makePage<TablesPage>, tourTables },
        { "Title strip", makePage<StripPage>, tourStrip },
        { "Menubar", makePage<MenubarPage>, tourMenubar },
        { "Windows", makePage<WindowsPage>, tourWindows },
    };

}

std::span<const PageEntry> pages() { return kPages; }

}
