// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "FileListViewPrivate.h"
#include "FilePanelPrivate.h"
#include "appkit/NSButton.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextField.h"

namespace brindle {

/// The folders on the way to the one that is shown, side by side; a click goes to one. Flipped.
class FilePathView : public NSView {
    BRINDLE_OBJECT(FilePathView, NSView)

private:
    friend struct FilePanelViews;

    struct Step {
        Ref<NSString> name;
        std::string path;
        NSRect place;
    };
    void layOut(); // fills in the steps that fit, the last ones first

    std::shared_ptr<files::Browser> browser_;
    std::vector<Step> steps_;
};

/// The places beside the files; a click goes to one. Flipped.
class FilePlacesView : public NSView {
    BRINDLE_OBJECT(FilePlacesView, NSView)

private:
    friend struct FilePanelViews;

    std::shared_ptr<files::Browser> browser_;
    std::vector<files::Place> places_;
};

/// The titles of the columns; a click sorts by one. Flipped.
class FileHeaderView : public NSView {
    BRINDLE_OBJECT(FileHeaderView, NSView)

private:
    friend struct FilePanelViews;

    std::shared_ptr<files::Browser> browser_;
};

/// All that an open or save panel shows, and what its buttons and fields do. Flipped.
class FilePanelView : public NSView {
    BRINDLE_OBJECT(FilePanelView, NSView)

private:
    friend struct FilePanelViews;

    NSSavePanel* panel_ = nullptr; // whose view this is; null after it has gone
    std::shared_ptr<files::Browser> browser_;
    Ref<NSTextField> message_;
    Ref<NSTextField> nameLabel_;
    Ref<NSTextField> nameField_;
    Ref<NSTextField> pathField_; // over the path, while one is typed
    Ref<NSTextField> status_;
    Ref<NSButton> back_;
    Ref<NSButton> forward_;
    Ref<NSButton> asList_;
    Ref<NSButton> asIcons_;
    Ref<NSButton> newFolder_;
    Ref<NSButton> cancel_;
    Ref<NSButton> confirm_;
    Ref<FilePathView> path_;
    Ref<FilePlacesView> places_;
    Ref<FileHeaderView> header_;
    Ref<NSScrollView> scroll_;
    Ref<FileListView> list_;
    NSRect sidebar_ {}; // where the places are
    CGFloat barBelow_ = 0; // the top of the lowest bar
    CGFloat barAbove_ = 0; // the top of the bar with the path
};

/// What the panel does with its views.
struct FilePanelViews {
    static Ref<FilePanelView> build(NSSavePanel& panel);
    static void forget(FilePanelView& view) { view.panel_ = nullptr; }
    /// Shows what has been set in the panel.
    static void settle(FilePanelView& view);
    static void layOut(FilePanelView& view);
    static Ref<NSString> typedName(FilePanelView& view);
    /// Gives the keyboard to where the user most likely goes on.
    static void begin(FilePanelView& view);
    static bool performKey(FilePanelView& view, NSEvent* event);
    static void folderChanged(FilePanelView& view);
    static void contentsChanged(FilePanelView& view);
    static void selectionChanged(FilePanelView& view);
    static void beginPath(FilePanelView& view, NSString* text);
    /// Types what the path can only go on with, or beeps.
    static void completePath(FilePanelView& view);
    static void endPath(FilePanelView& view);
    static void askForFolder(FilePanelView& view);
    static void showAs(FilePanelView& view, files::Look look);
    static bool isTyping(FilePanelView& view, NSObject* field);
    static void typed(FilePanelView& view, NSObject* field);
};

}
