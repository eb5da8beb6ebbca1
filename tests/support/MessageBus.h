// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

#include "foundation/NSRunLoop.h"
#include "foundation/desktop/BusLibraryPrivate.h"
#include "support/TemporaryFolder.h"

namespace brindle::test {

/// A message bus for one test, with nothing on it that could be started.
class MessageBus {
public:
    MessageBus();
    ~MessageBus();
    MessageBus(const MessageBus&) = delete;
    MessageBus& operator=(const MessageBus&) = delete;

    const std::string& address() const { return address_; }
    /// Ends it for all who are connected.
    void end();

private:
    TemporaryFolder folder_;
    pid_t process_ = -1;
    std::string address_;
};

/// Stands in for a desktop's settings portal. It lives in the main run loop, beside those who ask it.
class SettingsDesk {
public:
    /// How it answers the questions for a setting.
    enum class Answers {
        firstVersion, ///< `Read` only, the number in a variant in a variant
        secondVersion, ///< `ReadOne` too, the number in one variant
        refusal, ///< an error
        text, ///< something that is no number
        wrappings, ///< the number in nine variants
        nothing, ///< an answer without anything in it
        silence, ///< never
    };

    SettingsDesk(const MessageBus& bus, Answers answers, unsigned scheme);
    ~SettingsDesk();
    SettingsDesk(const SettingsDesk&) = delete;
    SettingsDesk& operator=(const SettingsDesk&) = delete;

    /// Tells everybody of a change.
    void announce(unsigned scheme, const char* space = "org.freedesktop.appearance",
        const char* key = "color-scheme");
    /// Tells of a change to a text.
    void announceText(const char* text);
    int questions() const { return questions_; }

private:
    static int take(sd_bus_message* message, void* self, sd_bus_error* error);
    int answer(sd_bus_message* message);
    void pump();

    Answers answers_;
    unsigned scheme_;
    int questions_ = 0;
    sd_bus* bus_ = nullptr;
    Ref<NSRunLoopSource> source_;
};

/// Runs the main loop until something is so, seconds at most; only a failing test waits as long.
bool runUntil(const std::function<bool()>& isSo);

}
