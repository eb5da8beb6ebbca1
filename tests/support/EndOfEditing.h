// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <utility>

#include "appkit/NSTextField.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"

namespace brindle::test {

/// Does something each time that a text field says that typing in it has ended.
class AtEachEndOfEditing {
public:
    explicit AtEachEndOfEditing(std::function<void()> reaction)
        : token_(center()->addObserverForName_object_queue_usingBlock(
            NSControlTextDidEndEditingNotification, nullptr, nullptr,
            [reaction = std::move(reaction)](NSNotification*) { reaction(); }))
    {
    }
    ~AtEachEndOfEditing() { center()->removeObserver(token_.get()); }
    AtEachEndOfEditing(const AtEachEndOfEditing&) = delete;
    AtEachEndOfEditing& operator=(const AtEachEndOfEditing&) = delete;

private:
    static Ref<NSNotificationCenter> center()
    {
        return NSNotificationCenter::cls().defaultCenter();
    }
    Ref<NSObject> token_;
};

/// Does something the first time.
class AtTheEndOfEditing {
public:
    explicit AtTheEndOfEditing(std::function<void()> reaction)
        : reaction_(std::move(reaction))
    {
    }
    bool happened() const { return !reaction_; }

private:
    std::function<void()> reaction_;
    AtEachEndOfEditing ends_ { [this] {
        if (const auto first = std::exchange(reaction_, nullptr))
            first();
    } };
};

}
