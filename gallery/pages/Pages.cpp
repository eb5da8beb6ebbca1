// SPDX-License-Identifier: Apache-2.0
#include "Pages.h"

#include "choosing/ChoosingPage.h"
#include "colour/ColourPage.h"
#include "controls/ControlsPage.h"
#include "defaults/DefaultsPage.h"
#include "editing/EditingPage.h"
#include "expressions/ExpressionsPage.h"
#include "fields/FieldsPage.h"
#include "files/FilesPage.h"
#include "fonts/FontsPage.h"
#include "formats/FormatsPage.h"
#include "ground/GroundPage.h"
#include "images/ImagesPage.h"
#include "layers/LayersPage.h"
#include "measures/MeasuresPage.h"
#include "menubar/MenubarPage.h"
#include "movement/MovementPage.h"
#include "objects/ObjectsPage.h"
#include "operations/OperationsPage.h"
#include "paths/PathsPage.h"
#include "pointer/PointerPage.h"
#include "review/ReviewPage.h"
#include "scrolling/ScrollingPage.h"
#include "strip/StripPage.h"
#include "styled/StyledPage.h"
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

    constexpr const char* kData = "Objects and data";
    constexpr const char* kDrawing = "Drawing";
    constexpr const char* kViews = "Views and controls";
    constexpr const char* kWindows = "Windows and menus";

    constexpr PageEntry kPages[] = {
        { kData, "The ground", "ground", makePage<GroundPage>, tourGround },
        { kData, "Operations", "operations", makePage<OperationsPage>, tourOperations },
        { kData, "Objects", "objects", makePage<ObjectsPage>, tourObjects },
        { kData, "Unique objects", "unique", makePage<UniquePage>, tourUnique },
        { kData, "Defaults", "defaults", makePage<DefaultsPage>, tourDefaults },
        { kData, "Review request", "review", makePage<ReviewPage>, tourReview },
        { kData, "Files", "files", makePage<FilesPage>, tourFiles },
        { kData, "Numbers and dates", "formats", makePage<FormatsPage>, tourFormats },
        { kData, "Intervals and URLs", "text", makePage<TextPage>, tourText },
        { kData, "Regular expressions", "expressions", makePage<ExpressionsPage>, tourExpressions },
        { kDrawing, "Colour", "colour", makePage<ColourPage>, tourColour },
        { kDrawing, "Images", "images", makePage<ImagesPage>, tourImages },
        { kDrawing, "Paths", "paths", makePage<PathsPage>, tourPaths },
        { kDrawing, "Layers", "layers", makePage<LayersPage>, tourLayers },
        { kDrawing, "Text", "measures", makePage<MeasuresPage>, tourMeasures },
        { kDrawing, "Fonts", "fonts", makePage<FontsPage>, tourFonts },
        { kDrawing, "Styled text", "styled", makePage<StyledPage>, tourStyled },
        { kViews, "Controls", "controls", makePage<ControlsPage>, tourControls },
        { kViews, "Segments and tabs", "choosing", makePage<ChoosingPage>, tourChoosing },
        { kViews, "Fields", "fields", makePage<FieldsPage>, tourFields },
        { kViews, "Editing", "editing", makePage<EditingPage>, tourEditing },
        { kViews, "Switches", "switches", makePage<SwitchesPage>, tourSwitches },
        { kViews, "Pointer", "pointer", makePage<PointerPage>, tourPointer },
        { kViews, "Views and borders", "views", makePage<ViewsPage>, tourViews },
        { kViews, "Movement", "movement", makePage<MovementPage>, tourMovement },
        { kViews, "Scrolling", "scrolling", makePage<ScrollingPage>, tourScrolling },
        { kViews, "Tables", "tables", makePage<TablesPage>, tourTables },
        { kWindows, "Title strip", "strip", makePage<StripPage>, tourStrip },
        { kWindows, "Menubar", "menubar", makePage<MenubarPage>, tourMenubar },
        { kWindows, "Windows", "windows", makePage<WindowsPage>, tourWindows },
    };

}

std::span<const PageEntry> pages() { return kPages; }

}
