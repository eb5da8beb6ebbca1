// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/Block.h"

namespace brindle {

class NSMutableDictionary;

/// A unit of work with parameters and a completion, run in the background or on the caller's thread.
///
/// A new job runs in the background. It can be run any number of times; while it runs it keeps itself alive.
/// Thread: `execute` from any thread; the closures must not be set while another thread runs the job.
class BRBlock : public NSObject {
    BRINDLE_OBJECT(BRBlock, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Runs a closure on the main queue, in a later turn. A nil closure ends the process when its turn comes.
        void returnToMain(const Block<void()>& code) const { send<"returnToMain:">(code.get()); }
    };

    /// Runs the job and answers at once.
    ///
    /// In the background: `code` runs on the global queue of default priority, then `completion`, if there is one, on
    /// the main queue; `code_` is not looked at, and a missing `code` ends the process. Otherwise here and now:
    /// `code_` with the job itself if it is set, else `code` if it is set, then `completion` if it is set.
    void execute() { send<"execute">(); }

    /// Whether `execute` leaves the work to a background queue.
    bool runInBackgroundCode() const { return send<"runInBackgroundCode", bool>(); }
    void setRunInBackgroundCode(bool flag) { send<"setRunInBackgroundCode:">(flag); }
    /// The work.
    Block<void()> code() const { return send<"code", Block<void()>>(); }
    void setCode(const Block<void()>& code) { send<"setCode:">(code.get()); }
    /// The work in its form with parameters: it receives the job and reads `parameters`.
    Block<void(BRBlock*)> code_() const { return send<"code_", Block<void(BRBlock*)>>(); }
    void setCode_(const Block<void(BRBlock*)>& code) { send<"setCode_:">(code.get()); }
    /// Inputs for `code_` by name; a new job has an empty dictionary.
    Ref<NSMutableDictionary> parameters() const
    {
        return send<"parameters", Ref<NSMutableDictionary>>();
    }
    void setParameters(NSMutableDictionary* parameters) { send<"setParameters:">(parameters); }
    /// Runs after the work.
    Block<void()> completion() const { return send<"completion", Block<void()>>(); }
    void setCompletion(const Block<void()>& code) { send<"setCompletion:">(code.get()); }

private:
    bool runInBackgroundCode_ = false;
    Block<void()> work_;
    Block<void(BRBlock*)> workWithParameters_;
    Ref<NSMutableDictionary> parameters_;
    Block<void()> completion_;
};

/// A job that runs in the background.
class BRBackgroundBlock : public BRBlock {
    BRINDLE_OBJECT(BRBackgroundBlock, BRBlock)
};

/// A job that runs on the caller's thread: when `execute` answers, work and completion are done.
class BRFunctionBlock : public BRBlock {
    BRINDLE_OBJECT(BRFunctionBlock, BRBlock)
};

}
