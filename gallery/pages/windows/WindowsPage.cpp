// SPDX-License-Identifier: Apache-2.0
#include "WindowsPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct WindowsPage::Methods<struct Cards> {

    static constexpr double kKinds = 146;
    static constexpr double kState = 238;

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
        NSRect left = takeLeft(room, std::round((room.size.width - kCardGap) / 2));
        self.kinds_->setFrame(takeTop(left, kKinds));
        self.list_->setFrame(left);
        self.state_->setFrame(takeBottom(room, kState));
        self.screens_->setFrame(room);
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
