// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "foundation/DispatchPrivate.h"
#include "foundation/NSNumber.h"
#include "foundation/NSUserDefaults.h"
#include "support/DefaultsFolder.h"
#include "support/Strings.h"
#include "support/VirtualClock.h"

namespace brindle {

/// The standard defaults in a folder of their own, under a clock that stands still.
class UserDefaults : public testing::Test {
protected:
    /// Lets time pass and waits for what it sets going in the background.
    void pass(double seconds)
    {
        clock.advance(seconds);
        while (queues::isBusy())
            std::this_thread::yield();
    }
    static Ref<NSUserDefaults> defaults() { return NSUserDefaults::cls().standardUserDefaults(); }
    static Ref<NSNumber> number(NSInteger value)
    {
        return NSNumber::cls().numberWithInteger(value);
    }
    static void registerOne(NSObject* value, NSString* key)
    {
        defaults()->registerDefaults(makeDictionary({ { key, value } }).get());
    }
    /// Sets a value and answers it as the next start of the program reads it.
    Ref<NSObject> kept(NSObject* value)
    {
        defaults()->setObject_forKey(value, "key"_ns);
        folder.restart();
        return defaults()->objectForKey("key"_ns);
    }
    /// Answers what setting a value raises.
    static std::string refusal(NSObject* value)
    {
        return raisedBy([value] { defaults()->setObject_forKey(value, "key"_ns); });
    }

    void otherProcessSets(NSString* key, NSObject* value) const
    {
        defaults::File file(folder.file().parent_path());
        EXPECT_TRUE(file.update(std::chrono::steady_clock::now() + std::chrono::seconds(20),
            [key, value](NSDictionary* now) -> Ref<NSDictionary> {
                const auto next = NSMutableDictionary::cls().dictionaryWithDictionary(now);
                next->setObject_forKey(value, key);
                return next;
            }));
    }

    test::VirtualClock clock; // nothing is written unless a test asks for it
    test::DefaultsFolder folder;
};

}
