// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextStorage.h"

#include <algorithm>

#include "appkit/NSAttributedString+Fixing.h"
#include "appkit/NSLayoutManager.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"

namespace brindle {

NSTextStorage::~NSTextStorage()
{
    for (const auto& manager : managers_)
        manager->setTextStorage(nullptr);
}

template <> struct NSTextStorage::Methods<struct Managing> {

    static void addLayoutManager(NSTextStorage& self, NSLayoutManager* manager)
    {
        if (!manager || !manager->isKindOfClass(NSLayoutManager::cls()))
            return;
        const Ref<NSLayoutManager> kept = manager;
        if (std::ranges::find(self.managers_, kept) != self.managers_.end())
            return;
        if (const Ref<NSTextStorage> other = manager->textStorage())
            other->removeLayoutManager(manager);
        self.managers_.push_back(kept);
        manager->setTextStorage(&self);
    }
    static void removeLayoutManager(NSTextStorage& self, NSLayoutManager* manager)
    {
        const Ref<NSLayoutManager> kept = manager;
        if (std::erase(self.managers_, kept) > 0)
            manager->setTextStorage(nullptr);
    }
    static Ref<NSArray> layoutManagers(NSTextStorage& self)
    {
        std::vector<NSObject*> list;
        for (const auto& manager : self.managers_)
            list.push_back(manager.get());
        return NSArray::cls().arrayWithObjects_count(list.data(), list.size());
    }
    static Ref<NSObject> delegate(NSTextStorage& self) { return self.delegate_.get(); }
    static void setDelegate(NSTextStorage& self, NSObject* delegate) { self.delegate_ = delegate; }

    static void table(Builder& t)
    {
        t.methods({
            { "addLayoutManager:", imp<addLayoutManager> },
            { "removeLayoutManager:", imp<removeLayoutManager> },
            { "layoutManagers", imp<layoutManagers> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
        });
    }
};
BRINDLE_RECORD(NSTextStorage, Managing)

template <> struct NSTextStorage::Methods<struct Editing> {

    static void replaceString(NSTextStorage& self, NSRange range, NSString* text)
    {
        const NSUInteger before = self.length();
        super<NSTextStorage, "replaceCharactersInRange:withString:">(self, range, text);
        const auto delta = static_cast<NSInteger>(self.length() - before);
        self.edited_range_changeInLength(NSTextStorageEditedCharacters, range, delta);
    }
    static void setAttributes(NSTextStorage& self, NSDictionary* attributes, NSRange range)
    {
        super<NSTextStorage, "setAttributes:range:">(self, attributes, range);
        if (range.length)
            self.edited_range_changeInLength(NSTextStorageEditedAttributes, range, 0);
    }
    static void beginEditing(NSTextStorage& self) { ++self.groups_; }
    static void endEditing(NSTextStorage& self)
    {
        self.groups_ = std::max(self.groups_ - 1, 0);
        if (self.groups_ == 0 && self.mask_)
            self.processEditing();
    }

    static void edited(
        NSTextStorage& self, NSTextStorageEditActions actions, NSRange range, NSInteger delta)
    {
        // What waits counts in the text as it was before this edit.
        const NSRange waiting = self.mask_ ? NSUnionRange(self.range_, range) : range;
        self.range_ = waiting;
        self.range_.length += static_cast<NSUInteger>(delta);
        self.mask_ |= actions;
        self.delta_ += delta;
        if (self.groups_ == 0)
            self.processEditing();
    }

    /// Tells the delegate by one of its two operations.
    static void tellDelegate(NSTextStorage& self, SEL told)
    {
        const Ref<NSObject> delegate = self.delegate_.get();
        if (!delegate || !delegate->respondsToSelector(told))
            return;
        if (told == selector<"textStorage:willProcessEditing:range:changeInLength:">)
            delegate->send<"textStorage:willProcessEditing:range:changeInLength:">(
                &self, self.mask_, self.range_, self.delta_);
        else
            delegate->send<"textStorage:didProcessEditing:range:changeInLength:">(
                &self, self.mask_, self.range_, self.delta_);
    }
    static void post(NSTextStorage& self, NSString* name, SEL told)
    {
        const Ref<NSObject> delegate = self.delegate_.get();
        if (delegate && delegate->respondsToSelector(told)) {
            const auto notification
                = NSNotification::cls().notificationWithName_object(name, &self);
            delegate->performSelector_withObject(told, notification.get());
        }
        NSNotificationCenter::cls().defaultCenter()->postNotificationName_object(name, &self);
    }

    /// Holds the telling of edits back while it lives, also when foreign code raises.
    class Group {
    public:
        explicit Group(NSTextStorage& storage)
            : storage_(storage)
        {
            ++storage_.groups_;
        }
        ~Group() { --storage_.groups_; }
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;

    private:
        NSTextStorage& storage_;
    };

    static void processEditing(NSTextStorage& self)
    {
        if (!self.mask_)
            return;
        const Ref<NSTextStorage> alive(&self);
        {
            // What the delegate and the fixing change joins the edit that is told.
            const Group group(self);
            post(self, NSTextStorageWillProcessEditingNotification,
                selector<"textStorageWillProcessEditing:">);
            tellDelegate(self, selector<"textStorage:willProcessEditing:range:changeInLength:">);
            fixAttributesInRange(self, self.range_);
        }
        tellDelegate(self, selector<"textStorage:didProcessEditing:range:changeInLength:">);
        post(self, NSTextStorageDidProcessEditingNotification,
            selector<"textStorageDidProcessEditing:">);
        if (!self.mask_) // who was told has edited, and all of it has been processed
            return;
        const NSTextStorageEditActions mask = std::exchange(self.mask_, 0);
        const NSRange range = std::exchange(self.range_, NSMakeRange(NSNotFound, 0));
        const NSInteger delta = std::exchange(self.delta_, 0);
        const auto managers = self.managers_;
        for (const auto& manager : managers)
            manager->processEditingForTextStorage_edited_range_changeInLength_invalidatedRange(
                &self, mask, range, delta, range);
    }

    static NSTextStorageEditActions editedMask(NSTextStorage& self) { return self.mask_; }
    static NSRange editedRange(NSTextStorage& self) { return self.range_; }
    static NSInteger changeInLength(NSTextStorage& self) { return self.delta_; }

    static void table(Builder& t)
    {
        t.methods({
            { "replaceCharactersInRange:withString:", imp<replaceString> },
            { "setAttributes:range:", imp<setAttributes> },
            { "beginEditing", imp<beginEditing> },
            { "endEditing", imp<endEditing> },
            { "edited:range:changeInLength:", imp<edited> },
            { "processEditing", imp<processEditing> },
            { "editedMask", imp<editedMask> },
            { "editedRange", imp<editedRange> },
            { "changeInLength", imp<changeInLength> },
        });
    }
};
BRINDLE_RECORD(NSTextStorage, Editing)

}
