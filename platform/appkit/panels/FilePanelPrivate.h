// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "FileBrowserPrivate.h"
#include "appkit/NSSavePanel.h"
#include "foundation/NSArray.h"
#include "foundation/NSURL.h"

namespace brindle {

class FilePanelView;

/// Everything a panel is and has; between its browser and its views.
struct FilePanelState : files::BrowserClient {
    explicit FilePanelState(NSSavePanel& panel);
    ~FilePanelState() override;

    bool enables(const std::string& path, bool isFolder) override;
    void folderChanged() override;
    void contentsChanged() override;
    void selectionChanged() override;
    void confirm() override;

    NSSavePanel* owner; // which owns this
    std::shared_ptr<files::Browser> browser;
    Ref<FilePanelView> views; // none before it is shown

    Ref<NSString> message;
    Ref<NSString> prompt; // nil is the ordinary one
    Ref<NSString> nameLabel; // nil is the ordinary one
    Ref<NSString> name; // in the field
    Ref<NSView> accessory;
    Ref<NSArray> types; // nil is all
    std::string start; // the folder to begin in; "" is the ordinary one
    Ref<NSArray> chosen; // nil where nothing is
    Block<void(NSModalResponse)> handler; // while it is a window of its own
    Ref<NSSavePanel> kept; // itself, for that time

    bool opens = false; // files that are there, rather than one that is to be
    bool choosesFiles = true;
    bool choosesFolders = false;
    bool choosesMany = false;
    bool resolvesLinks = true;
    bool makesFolders = true;
    bool hidesExtensions = false;
    bool allowsOtherTypes = false;
    bool isShown = false; // until it is confirmed or cancelled
};

struct FilePanelAccess {
    static FilePanelState& of(NSSavePanel& panel)
    {
        if (!panel.state_)
            panel.state_ = std::make_shared<FilePanelState>(panel);
        return *panel.state_;
    }

    // What the user may choose; FilePanel-Choosing.cpp.
    /// Answers the URL of a path; nil where it is no text.
    static Ref<NSURL> urlOf(const std::string& path, bool isFolder);
    /// Answers whether the delegate wants to be asked what is enabled.
    static bool asksDelegate(NSSavePanel& panel);
    /// Answers whether the delegate enables a URL, or does not care.
    static bool delegateEnables(NSSavePanel& panel, NSURL* url);
    /// Answers what would be chosen now.
    static std::vector<Ref<NSURL>> candidates(NSSavePanel& panel);
    /// Answers whether confirming does something.
    static bool canConfirm(NSSavePanel& panel);
    /// Answers whether a person could have chosen these.
    static bool couldChoose(NSSavePanel& panel, NSArray* urls);
    static void confirm(NSSavePanel& panel);
    /// Ends the panel with what was chosen.
    static void choose(NSSavePanel& panel, const std::vector<Ref<NSURL>>& urls);
    /// Ends the panel.
    static void end(NSSavePanel& panel, NSModalResponse code);
    /// Goes to a path that was typed: a folder, or the folder of a file, which is selected.
    /// - Returns: whether something is there.
    static bool goTo(NSSavePanel& panel, const std::string& typed);
    /// Answers what somebody means who types a path: from the root, the user's folder, or the folder that is shown.
    static std::string pathOfTyped(const files::Browser& browser, const std::string& typed);
    /// Answers a typed path with as much at its end as all names there have in common; a folder's ends in a slash.
    static std::string completed(const files::Browser& browser, const std::string& typed);
    /// Answers the path of the folder that is shown, with a slash at its end, as it is typed.
    static Ref<NSString> shownPath(const files::Browser& browser);
    /// Makes a folder in the one that is shown and selects it; a failure is shown.
    static void makeFolder(NSSavePanel& panel, NSString* name);
    static void showError(NSSavePanel& panel, NSError* error);

    // Where panels have been; FilePlaces.cpp.
    /// Answers the folder that a panel begins in.
    static std::string startFolder(const FilePanelState& state);
    static void rememberFolder(const std::string& folder);

    // The content; FilePanelView.cpp.
    /// Makes the views when they are not there yet, and shows in them what has been set.
    static void settleViews(NSSavePanel& panel);
};

namespace files {

    /// Answers NO for what is not there, too.
    bool isFolder(const std::string& path);

    /// A line of the list beside the files.
    struct Place {
        std::string name;
        std::string path; // "" for a heading
        int sign = 0; // a Sign
    };
    /// Answers the user's folders, the disk, and the folders chosen last.
    std::vector<Place> places();

}

}
