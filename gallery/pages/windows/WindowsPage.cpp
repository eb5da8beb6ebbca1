// SPDX-License-Identifier: Apache-2.0
#include "WindowsPage.h"

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct WindowsPage::Methods<struct Cards> {

    static void addCards(WindowsPage& self)
    {
        self.kinds_ = addCard<WindowKindsCard>(self);
        self.list_ = addCard<WindowListCard>(
            self, "Which are open"_ns, "Front to back, and who has the keyboard"_ns);
        self.state_ = addCard<WindowStateCard>(self);
        self.screens_ = addCard<ScreensCard>(self);
    }
    static Ref<NSString> pageTitle(WindowsPage&) { return "Windows"_ns; }
    static Ref<NSString> pageCaption(WindowsPage&)
    {
        return "Every window may become key, whatever its style"_ns;
    }
    static void layOutIn(WindowsPage& self, NSRect room)
    {
        const double half = (room.size.height - kCardGap) / 2;
        layOutRow({ self.kinds_.get(), self.list_.get() }, takeTop(room, half));
        layOutRow({ self.state_.get(), self.screens_.get() }, room);
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
BRINDLE_RECORD(WindowsPage, Cards)

}
