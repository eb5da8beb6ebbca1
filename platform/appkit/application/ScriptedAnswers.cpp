// SPDX-License-Identifier: Apache-2.0
#include "ScriptedAnswersPrivate.h"

#include <mutex>

#include "foundation/NSArray.h"
#include "runtime/Function.h"

namespace brindle {

namespace scripted {

    namespace {

        struct StandIns {
            std::mutex mutex;
            Block<NSInteger(NSAlert*)> alerts;
            Block<Ref<NSArray>(NSSavePanel*)> panels;
            Block<bool(NSURL*)> desktop;
        };
        StandIns& standIns()
        {
            static StandIns* const all = new StandIns; // somebody may ask while the process ends
            return *all;
        }
        template <class B> void set(B StandIns::*place, const B& closure)
        {
            B before = closure; // ends behind the lock
            const std::lock_guard guard(standIns().mutex);
            (standIns().*place).swap(before);
        }
        template <class B> B get(B StandIns::*place)
        {
            const std::lock_guard guard(standIns().mutex);
            return standIns().*place;
        }

    }

    void answerAlerts(const Block<NSInteger(NSAlert*)>& person) { set(&StandIns::alerts, person); }
    void answerPanels(const Block<Ref<NSArray>(NSSavePanel*)>& person)
    {
        set(&StandIns::panels, person);
    }
    void takeOpenedURLs(const Block<bool(NSURL*)>& taker) { set(&StandIns::desktop, taker); }

    Block<NSInteger(NSAlert*)> alertPerson() { return get(&StandIns::alerts); }
    Block<Ref<NSArray>(NSSavePanel*)> panelPerson() { return get(&StandIns::panels); }
    Block<bool(NSURL*)> desktop() { return get(&StandIns::desktop); }

}

BRINDLE_FUNCTION_AS(brindleAnswerAlerts, &scripted::answerAlerts)
BRINDLE_FUNCTION_AS(brindleAnswerPanels, &scripted::answerPanels)
BRINDLE_FUNCTION_AS(brindleTakeOpenedURLs, &scripted::takeOpenedURLs)

}
