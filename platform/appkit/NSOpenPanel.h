// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSSavePanel.h"

namespace brindle {

/// Lets the user choose files or folders that are there.
///
/// Where folders can be chosen and nothing is selected, the choice is the folder that is shown, if the delegate enables it.
/// Where they cannot, confirming a folder goes into it.
class NSOpenPanel : public NSSavePanel {
    BRINDLE_OBJECT(NSOpenPanel, NSSavePanel)

public:
    struct Meta : NSSavePanel::Meta {
        Ref<NSOpenPanel> openPanel() const { return send<"openPanel", Ref<NSOpenPanel>>(); }
    };

    /// YES at first.
    bool canChooseFiles() const { return send<"canChooseFiles", bool>(); }
    void setCanChooseFiles(bool can) { send<"setCanChooseFiles:">(can); }
    /// NO at first.
    bool canChooseDirectories() const { return send<"canChooseDirectories", bool>(); }
    void setCanChooseDirectories(bool can) { send<"setCanChooseDirectories:">(can); }
    /// NO at first.
    bool allowsMultipleSelection() const { return send<"allowsMultipleSelection", bool>(); }
    void setAllowsMultipleSelection(bool allows) { send<"setAllowsMultipleSelection:">(allows); }
    /// Whether a link is answered as what it leads to. YES at first.
    bool resolvesAliases() const { return send<"resolvesAliases", bool>(); }
    void setResolvesAliases(bool resolves) { send<"setResolvesAliases:">(resolves); }
    /// Answers all that is chosen, as `URL` does; empty where nothing is.
    Ref<NSArray> URLs() const { return send<"URLs", Ref<NSArray>>(); }
};

}
