// SPDX-License-Identifier: Apache-2.0
#include "EditingPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct EditingPage::Methods<struct Cards> {

    static void addCards(EditingPage& self)
    {
        self.editor_ = addCard<EditorCard>(self);
        self.board_ = addCard<PasteboardCard>(self);
        self.letters_ = addCard<LettersCard>(self);
    }
    static Ref<NSString> pageTitle(EditingPage&) { return "Editing"_ns; }
    static Ref<NSString> pageCaption(EditingPage&)
    {
        return "Text that is typed, undone, copied and measured.  The Menu key opens the text’s menu"_ns;
    }
    static void layOutIn(EditingPage& self, NSRect room)
    {
        NSRect top = takeTop(room, std::round((room.size.height - kCardGap) * 0.56));
        self.editor_->setFrame(takeLeft(top, std::round(top.size.width * 0.62)));
        self.board_->setFrame(top);
        self.letters_->setFrame(room);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
        });
    }
};
BRINDLE_RECORD(EditingPage, Cards)

}
