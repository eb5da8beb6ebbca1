// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <utility>

#include "appkit/NSTextField.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"

namespace brindle::test {

/// Does something the first time that a text field says that typing in it has ended.
class AtTheEndOfEditing {
public:
    explicit AtTheEndOfEditing(std::function<void()> reaction)
        : reaction_(std::move(reaction))
        , token_(center()->addObserverForName_object_queue_usingBlock(
              NSControlTextDidEndEditingNotification, nullptr, nullptr, [this](NSNotification*) {
                  if (const auto first = std::exchange(reaction_, nullptr))
                      first();
              }))
    {
    }
    ~AtTheEndOfEditing() { center()->removeObserver(token_.get()); }
    AtTheEndOfEditing(const AtTheEndOfEditing&) = delete;
    AtTheEndOfEditing& operator=(const AtTheEndOfEditing&) = delete;

    bool happened() const { return !reaction_; }

private:
    static Ref<NSNotificationCenter> center()
    {
        return NSNotificationCenter::cls().defaultCenter();
    }
    std::function<void()> reaction_;
    Ref<NSObject> token_;
};

}
