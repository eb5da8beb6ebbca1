// SPDX-License-Identifier: Apache-2.0
#include "BRBlock.h"

#include "foundation/Dispatch.h"
#include "foundation/NSMutableDictionary.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct BRBlock::Methods<struct Job> {

    static Ref<NSObject> init(BRBlock& self)
    {
        if (!super<BRBlock, "init", Ref<NSObject>>(self))
            return nullptr;
        self.parameters_ = NSMutableDictionary::cls().dictionary();
        self.runInBackgroundCode_ = true;
        return &self;
    }

    static void runInBackground(BRBlock& self)
    {
        dispatch_queue_t const queue
            = dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0);
        dispatch_async(queue, [job = Ref<BRBlock>(&self)] {
            job->code()();
            dispatch_async(dispatch_get_main_queue(), [job] {
                if (const Block<void()> completion = job->completion())
                    completion();
            });
        });
    }

    static void runHere(BRBlock& self)
    {
        const Ref<BRBlock> alive(&self);
        if (const Block<void(BRBlock*)> work = self.code_())
            work(&self);
        else if (const Block<void()> plain = self.code())
            plain();
        if (const Block<void()> completion = self.completion())
            completion();
    }

    static void execute(BRBlock& self)
    {
        if (self.runInBackgroundCode())
            runInBackground(self);
        else
            runHere(self);
    }

    static void returnToMain(Class&, Closure<void()>* code)
    {
        dispatch_async(dispatch_get_main_queue(), [code = Block<void()>(code)] { code(); });
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "returnToMain:", imp<returnToMain> } });
        t.methods({
            { "init", imp<init> },
            { "execute", imp<execute> },
        });
        t.properties({
            property<&BRBlock::runInBackgroundCode_>("runInBackgroundCode"),
            property<&BRBlock::work_>("code", copied, nonatomic),
            property<&BRBlock::workWithParameters_>("code_", copied, nonatomic),
            property<&BRBlock::parameters_>("parameters"),
            property<&BRBlock::completion_>("completion", copied, nonatomic),
        });
    }
};
BRINDLE_RECORD(BRBlock, Job)

template <> struct BRBackgroundBlock::Methods<struct Mode> {

    static Ref<NSObject> init(BRBackgroundBlock& self)
    {
        if (!super<BRBackgroundBlock, "init", Ref<NSObject>>(self))
            return nullptr;
        self.setRunInBackgroundCode(true);
        return &self;
    }
    static void table(Builder& t) { t.methods({ { "init", imp<init> } }); }
};
BRINDLE_RECORD(BRBackgroundBlock, Mode)

template <> struct BRFunctionBlock::Methods<struct Mode> {

    static Ref<NSObject> init(BRFunctionBlock& self)
    {
        if (!super<BRFunctionBlock, "init", Ref<NSObject>>(self))
            return nullptr;
        self.setRunInBackgroundCode(false);
        return &self;
    }
    static void table(Builder& t) { t.methods({ { "init", imp<init> } }); }
};
BRINDLE_RECORD(BRFunctionBlock, Mode)

}
