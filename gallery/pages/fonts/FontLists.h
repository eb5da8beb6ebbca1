// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSFont.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTableView.h"
#include "foundation/NSArray.h"
#include "kit/Card.h"

namespace gallery {

/// A card that is filled by a table, whose data it has; a row that is chosen is told to the page.
class FontListCard : public GalleryCard {
    BRINDLE_OBJECT(FontListCard, GalleryCard)

public:
    brindle::Ref<brindle::NSTableView> list() const
    {
        return send<"list", brindle::Ref<brindle::NSTableView>>();
    }
    void addColumn(brindle::NSString* title, double width);

protected:
    /// Chooses a row without telling the page; none for -1.
    void showRow(brindle::NSInteger row);
    /// Whether a row is being chosen by the program.
    bool isShowing() const { return showing_; }

private:
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSTableView> list_;
    bool showing_ = false;
};

/// All families that are installed.
class FamiliesCard : public FontListCard {
    BRINDLE_OBJECT(FamiliesCard, FontListCard)

public:
    void show(brindle::NSString* family);

private:
    brindle::Ref<brindle::NSArray> families_;
};

/// The faces of one family: their names, weights and traits.
class FacesCard : public FontListCard {
    BRINDLE_OBJECT(FacesCard, FontListCard)

public:
    void show(brindle::NSFont* font);

private:
    brindle::Ref<brindle::NSArray> faces_; // arrays: PostScript name, style, weight, traits
};

/// Answers traits in words: "bold, italic", or a dash.
brindle::Ref<brindle::NSString> wordsOf(brindle::NSUInteger traits);

}
