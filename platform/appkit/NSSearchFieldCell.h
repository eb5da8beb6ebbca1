// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSTextFieldCell.h"

namespace brindle {

class NSArray;

/// Draws a search field: a rounded field with a glass before the text and, behind a text, a button that clears it.
/// Thread: main.
class NSSearchFieldCell : public NSTextFieldCell {
    BRINDLE_OBJECT(NSSearchFieldCell, NSTextFieldCell)

public:
    // ---- places

    NSRect searchButtonRectForBounds(NSRect bounds) const
    {
        return send<"searchButtonRectForBounds:", NSRect>(bounds);
    }
    /// Empty while there is no text.
    NSRect cancelButtonRectForBounds(NSRect bounds) const
    {
        return send<"cancelButtonRectForBounds:", NSRect>(bounds);
    }
    NSRect searchTextRectForBounds(NSRect bounds) const
    {
        return send<"searchTextRectForBounds:", NSRect>(bounds);
    }

    // ---- when the action is sent

    /// YES sends it for Return only; NO, as at first, while the user types as well.
    bool sendsWholeSearchString() const { return send<"sendsWholeSearchString", bool>(); }
    void setSendsWholeSearchString(bool whole) { send<"setSendsWholeSearchString:">(whole); }
    /// YES sends it with every change; NO, as at first, after a short rest.
    bool sendsSearchStringImmediately() const
    {
        return send<"sendsSearchStringImmediately", bool>();
    }
    void setSendsSearchStringImmediately(bool immediately)
    {
        send<"setSendsSearchStringImmediately:">(immediately);
    }

    // ---- what was searched for

    /// Answers the texts that were searched for by Return, the last one first.
    Ref<NSArray> recentSearches() const { return send<"recentSearches", Ref<NSArray>>(); }
    /// Sets them; what is no string is left out. - Nil: none.
    void setRecentSearches(NSArray* texts) { send<"setRecentSearches:">(texts); }
    NSInteger maximumRecents() const { return send<"maximumRecents", NSInteger>(); }
    /// - count: kept between 0 and 254; 10 at first.
    void setMaximumRecents(NSInteger count) { send<"setMaximumRecents:">(count); }
    /// The name under which they are saved in the standard defaults; setting it takes saved ones over.
    Ref<NSString> recentsAutosaveName() const
    {
        return send<"recentsAutosaveName", Ref<NSString>>();
    }
    void setRecentsAutosaveName(NSString* name) { send<"setRecentsAutosaveName:">(name); }
    /// Remembers a text as the last one searched for; "" is not remembered.
    void addRecentSearch(NSString* text) { send<"addRecentSearch:">(text); }

private:
    std::vector<Ref<NSString>> recents_;
    Ref<NSString> autosaveName_;
    NSInteger maximumRecents_ = 10;
    bool whole_ = false;
    bool immediately_ = false;
};

}
