// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSPanel.h"

namespace brindle {

class NSURL;
struct FilePanelState;

/// What panels answer, by their older names.
enum : NSInteger {
    NSFileHandlingPanelCancelButton = NSModalResponseCancel,
    NSFileHandlingPanelOKButton = NSModalResponseOK,
};

/// Lets the user choose a folder and a name for a file that is to be written.
///
/// Folders are read beside the main thread; one that cannot be read says why in the panel. Which folder was chosen last, and the
/// ones before, are kept in the standard defaults ("NSNavLastRootDirectory", "NSNavRecentPlaces").
///
/// The delegate, not kept, is asked by name: `panel:shouldEnableURL:` (for every entry and for the folder that is shown; what
/// is not enabled is grey and can be neither chosen nor gone into), `panel:validateURL:error:` (before the panel ends; NO shows
/// the error), `panel:userEnteredFilename:confirmed:` (answers the name to use, nil to go on); and told:
/// `panel:didChangeToDirectoryURL:`, `panelSelectionDidChange:`. Folders' URLs end in a slash.
///
/// Keys: arrows, Home, End and the page keys select, letters select by name, Return confirms, Escape cancels; Command with the
/// arrow up and down goes to the folder above and into the selected one, with "[" and "]" back and forward;
/// "/", "~" and Command-L begin to type a path; Command-Shift-N makes a folder, Command-Shift-"." shows hidden files.
/// Thread: main.
class NSSavePanel : public NSPanel {
    BRINDLE_OBJECT(NSSavePanel, NSPanel)

public:
    struct Meta : NSPanel::Meta {
        Ref<NSSavePanel> savePanel() const { return send<"savePanel", Ref<NSSavePanel>>(); }
    };

    // ---- what it says; the title is the window's

    Ref<NSString> message() const { return send<"message", Ref<NSString>>(); }
    /// Sets the text above the files. - Nil: "", no text.
    void setMessage(NSString* message) { send<"setMessage:">(message); }
    Ref<NSString> prompt() const { return send<"prompt", Ref<NSString>>(); }
    /// Sets the label of the confirming button. - Nil: "Save" or "Open".
    void setPrompt(NSString* prompt) { send<"setPrompt:">(prompt); }
    Ref<NSString> nameFieldLabel() const { return send<"nameFieldLabel", Ref<NSString>>(); }
    /// - Nil: "Save As:".
    void setNameFieldLabel(NSString* label) { send<"setNameFieldLabel:">(label); }
    /// Answers the name as it stands in the field.
    Ref<NSString> nameFieldStringValue() const
    {
        return send<"nameFieldStringValue", Ref<NSString>>();
    }
    void setNameFieldStringValue(NSString* name) { send<"setNameFieldStringValue:">(name); }
    Ref<NSView> accessoryView() const { return send<"accessoryView", Ref<NSView>>(); }
    /// Sets a view below the files; its frame's height counts.
    void setAccessoryView(NSView* view) { send<"setAccessoryView:">(view); }

    // ---- what may be chosen

    Ref<NSURL> directoryURL() const { return send<"directoryURL", Ref<NSURL>>(); }
    /// Sets the folder that is shown; that of a file for a file.
    /// - Nil: the one chosen last, else the user's documents.
    void setDirectoryURL(NSURL* url) { send<"setDirectoryURL:">(url); }
    Ref<NSArray> allowedFileTypes() const { return send<"allowedFileTypes", Ref<NSArray>>(); }
    /// Sets the extensions, in any case, of files that can be chosen; a saved file gets the first one unless it has one of them.
    /// - Nil: nil and an empty list allow all.
    void setAllowedFileTypes(NSArray* types) { send<"setAllowedFileTypes:">(types); }
    bool allowsOtherFileTypes() const { return send<"allowsOtherFileTypes", bool>(); }
    /// Lets a name keep an extension that is not in the list.
    void setAllowsOtherFileTypes(bool allows) { send<"setAllowsOtherFileTypes:">(allows); }
    bool canCreateDirectories() const { return send<"canCreateDirectories", bool>(); }
    void setCanCreateDirectories(bool can) { send<"setCanCreateDirectories:">(can); }
    bool showsHiddenFiles() const { return send<"showsHiddenFiles", bool>(); }
    void setShowsHiddenFiles(bool shows) { send<"setShowsHiddenFiles:">(shows); }
    bool isExtensionHidden() const { return send<"isExtensionHidden", bool>(); }
    /// YES shows names without their extensions.
    void setExtensionHidden(bool hidden) { send<"setExtensionHidden:">(hidden); }
    /// Asks the delegate anew what is enabled.
    void validateVisibleColumns() { send<"validateVisibleColumns">(); }

    // ---- showing

    /// Answers what is chosen: while the panel is shown what would be, afterwards what was; nil before, and when it was
    /// cancelled. `startAccessingSecurityScopedResource` answers YES for it.
    Ref<NSURL> URL() const { return send<"URL", Ref<NSURL>>(); }
    /// Shows the panel and waits for the user.
    /// - Returns: `NSModalResponseOK` or `NSModalResponseCancel`; the latter at once while the panel is shown already.
    /// - Raises: as `runModalForWindow:` of the application does without a display.
    NSModalResponse runModal() { return send<"runModal", NSModalResponse>(); }
    /// Shows it as a sheet; nil as a window of its own. The handler, which may be nil, is run when it has gone.
    void beginSheetModalForWindow_completionHandler(
        NSWindow* window, const Block<void(NSModalResponse)>& handler)
    {
        send<"beginSheetModalForWindow:completionHandler:">(window, handler.get());
    }
    void beginWithCompletionHandler(const Block<void(NSModalResponse)>& handler)
    {
        send<"beginWithCompletionHandler:">(handler.get());
    }
    /// Confirms as the user would; nothing happens where nothing can be chosen.
    void ok(NSObject* sender) { send<"ok:">(sender); }
    void cancel(NSObject* sender) { send<"cancel:">(sender); }

private:
    friend struct FilePanelAccess;

    std::shared_ptr<FilePanelState> state_;
};

}
