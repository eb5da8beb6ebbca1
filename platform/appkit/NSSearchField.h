// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSSearchFieldCell.h"
#include "NSTextField.h"

namespace brindle {

class NSTimer;

/// A field in which the user looks for something.
///
/// The action is sent a third of a second after the last change, and at once by Return, by the button that clears the text
/// and by Escape, which clears it too. The settings are its cell's. Thread: main.
class NSSearchField : public NSTextField {
    BRINDLE_OBJECT(NSSearchField, NSTextField)

public:
    bool sendsWholeSearchString() const { return send<"sendsWholeSearchString", bool>(); }
    void setSendsWholeSearchString(bool whole) { send<"setSendsWholeSearchString:">(whole); }
    bool sendsSearchStringImmediately() const
    {
        return send<"sendsSearchStringImmediately", bool>();
    }
    void setSendsSearchStringImmediately(bool immediately)
    {
        send<"setSendsSearchStringImmediately:">(immediately);
    }
    Ref<NSArray> recentSearches() const { return send<"recentSearches", Ref<NSArray>>(); }
    void setRecentSearches(NSArray* texts) { send<"setRecentSearches:">(texts); }
    NSInteger maximumRecents() const { return send<"maximumRecents", NSInteger>(); }
    void setMaximumRecents(NSInteger count) { send<"setMaximumRecents:">(count); }
    Ref<NSString> recentsAutosaveName() const
    {
        return send<"recentsAutosaveName", Ref<NSString>>();
    }
    void setRecentsAutosaveName(NSString* name) { send<"setRecentsAutosaveName:">(name); }

private:
    Ref<NSTimer> rest_; // since the last change
};

}
