// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSWindow.h"
#include "quartz/layers/CATransaction.h"

namespace brindle {

struct TransactionGroup;

/// How long changes through `animator` take, and who is told when they have ended.
///
/// Groups nest and begin with the values of the outer one; what is changed inside starts to move when the outermost one
/// ends. Without a group it starts at once. Movements of layers count as well.
///
/// `animator` of a view takes `setFrame:`, `setFrameOrigin:`, `setFrameSize:`, `setBounds:`, `setBoundsOrigin:` and
/// `setAlphaValue:`; that of a window `setFrame:display:` and `setAlphaValue:`; any other message goes to the object at
/// once. A movement starts from what is seen, takes the place of one of the same property, and ends with exactly the
/// value that was set.
/// Thread: main.
class NSAnimationContext : public NSObject {
    BRINDLE_OBJECT(NSAnimationContext, NSObject)

public:
    struct Meta : NSObject::Meta {
        void beginGrouping() const { send<"beginGrouping">(); }
        /// Ends the innermost group. Without one it does nothing.
        void endGrouping() const { send<"endGrouping">(); }
        /// Answers the context of the innermost group.
        Ref<NSAnimationContext> currentContext() const
        {
            return send<"currentContext", Ref<NSAnimationContext>>();
        }
        /// Runs the changes in a group of their own.
        /// - completion: called once all movements of the group have ended; at once without any. May be empty.
        void runAnimationGroup_completionHandler(
            const Block<void(NSAnimationContext*)>& changes, const Block<void()>& completion) const
        {
            send<"runAnimationGroup:completionHandler:">(changes.get(), completion.get());
        }
        void runAnimationGroup(const Block<void(NSAnimationContext*)>& changes) const
        {
            send<"runAnimationGroup:">(changes.get());
        }
    };

    /// Seconds, 0.25 at first; 0 changes at once.
    NSTimeInterval duration() const { return send<"duration", NSTimeInterval>(); }
    void setDuration(NSTimeInterval seconds) { send<"setDuration:">(seconds); }
    /// - Nil: nil is the default curve.
    Ref<CAMediaTimingFunction> timingFunction() const
    {
        return send<"timingFunction", Ref<CAMediaTimingFunction>>();
    }
    void setTimingFunction(CAMediaTimingFunction* function)
    {
        send<"setTimingFunction:">(function);
    }
    Block<void()> completionHandler() const { return send<"completionHandler", Block<void()>>(); }
    void setCompletionHandler(const Block<void()>& handler)
    {
        send<"setCompletionHandler:">(handler.get());
    }
    /// Whether changes of the layers of views move by degrees. NO at first.
    bool allowsImplicitAnimation() const { return send<"allowsImplicitAnimation", bool>(); }
    void setAllowsImplicitAnimation(bool allows) { send<"setAllowsImplicitAnimation:">(allows); }

private:
    std::shared_ptr<TransactionGroup> group_;
};

/// Answers what stands for the window and changes it by degrees, as the current animation context says.
inline Ref<NSWindow> animator(To<NSWindow> window)
{
    return window.send<"animator", Ref<NSWindow>>();
}

}
