// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "foundation/NSMutableAttributedString.h"
#include "foundation/StringConstant.h"

namespace brindle {

class NSArray;
class NSLayoutManager;

/// What an edit changed; bits that are added together.
using NSTextStorageEditActions = NSUInteger;
enum : NSUInteger {
    NSTextStorageEditedAttributes = 1,
    NSTextStorageEditedCharacters = 2,
};

/// Posted by a text storage when edits end: before it fixes attributes, and after.
inline constexpr StringConstant<"NSTextStorageWillProcessEditingNotification">
    NSTextStorageWillProcessEditingNotification;
inline constexpr StringConstant<"NSTextStorageDidProcessEditingNotification">
    NSTextStorageDidProcessEditingNotification;

/// Text with attributes that tells its layout managers about every edit.
///
/// Edits between `beginEditing` and `endEditing` are told at once. The delegate may answer
/// `textStorage:willProcessEditing:range:changeInLength:`, the same with `did`, `textStorageWillProcessEditing:` and
/// `textStorageDidProcessEditing:`; the first may still change the text.
/// Thread: one at a time, with its layout managers.
class NSTextStorage : public NSMutableAttributedString {
    BRINDLE_OBJECT(NSTextStorage, NSMutableAttributedString)

public:
    // ---- layout managers: kept here, they know the storage without keeping it

    void addLayoutManager(NSLayoutManager* manager) { send<"addLayoutManager:">(manager); }
    void removeLayoutManager(NSLayoutManager* manager) { send<"removeLayoutManager:">(manager); }
    Ref<NSArray> layoutManagers() const { return send<"layoutManagers", Ref<NSArray>>(); }

    // ---- edits

    /// Says what an edit changed. A subclass that keeps its text in its own way sends it.
    /// - range: before the edit. - delta: by how much the text has become longer.
    void edited_range_changeInLength(
        NSTextStorageEditActions actions, NSRange range, NSInteger delta)
    {
        send<"edited:range:changeInLength:">(actions, range, delta);
    }
    /// Fixes attributes and tells everybody; sent when the outermost group of edits ends.
    void processEditing() { send<"processEditing">(); }
    NSTextStorageEditActions editedMask() const
    {
        return send<"editedMask", NSTextStorageEditActions>();
    }
    /// Answers the edited range of the new text; its location is `NSNotFound` when nothing waits.
    NSRange editedRange() const { return send<"editedRange", NSRange>(); }
    NSInteger changeInLength() const { return send<"changeInLength", NSInteger>(); }

    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    /// Not kept.
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

protected:
    /// Layout managers that live on forget the storage.
    BRINDLE_EXPORT ~NSTextStorage();

private:
    std::vector<Ref<NSLayoutManager>> managers_;
    WeakRef<NSObject> delegate_;
    NSTextStorageEditActions mask_ = 0;
    NSRange range_ { NSNotFound, 0 };
    NSInteger delta_ = 0;
    int groups_ = 0;
};

}
