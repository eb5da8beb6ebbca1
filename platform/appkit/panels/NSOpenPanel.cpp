// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSOpenPanel.h"

#include "FilePanelPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSOpenPanel::Methods<struct Choosing> {

    using State = FilePanelState;

    static Ref<NSOpenPanel> panel(Class& self)
    {
        return cast<NSOpenPanel>(NSObject::Meta { &self }.alloc()->init());
    }
    template <bool State::*Flag> static bool is(NSOpenPanel& self)
    {
        return FilePanelAccess::of(self).*Flag;
    }
    template <bool State::*Flag> static void set(NSOpenPanel& self, bool value)
    {
        State& state = FilePanelAccess::of(self);
        state.*Flag = value;
        state.browser->allowsMany = state.choosesMany;
        state.browser->forgetEnabled();
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "openPanel", imp<panel> } });
        t.methods({
            { "canChooseFiles", imp<is<&State::choosesFiles>> },
            { "setCanChooseFiles:", imp<set<&State::choosesFiles>> },
            { "canChooseDirectories", imp<is<&State::choosesFolders>> },
            { "setCanChooseDirectories:", imp<set<&State::choosesFolders>> },
            { "allowsMultipleSelection", imp<is<&State::choosesMany>> },
            { "setAllowsMultipleSelection:", imp<set<&State::choosesMany>> },
            { "resolvesAliases", imp<is<&State::resolvesLinks>> },
            { "setResolvesAliases:", imp<set<&State::resolvesLinks>> },
        });
    }
};
BRINDLE_RECORD(NSOpenPanel, Choosing)

}
