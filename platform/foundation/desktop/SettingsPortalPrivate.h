// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "BusLibraryPrivate.h"
#include "ColorScheme.h"
#include "foundation/NSRunLoop.h"

namespace brindle::desktop {

/// Asks the desktop's settings portal which colour scheme is preferred, and hears when that changes.
///
/// Everything is asked for and nothing is waited for: the bus, the portal and its answer come when they come, in the
/// main run loop's common modes. Only the one setting is subscribed to, so nothing else wakes the program. When
/// the bus goes away, that is the end of it, and of nothing else.
/// Thread: main.
class SettingsPortal {
public:
    using Handler = std::function<void(ColorScheme)>;

    /// - address: of the bus. Only sockets of this machine are tried, and of several addresses the first: to look for another
    ///   machine may take its time.
    /// - heard: is called with the portal's answer and after each change; never for what makes no sense.
    /// - Nil: without the library, and where nobody listens at the address.
    static std::unique_ptr<SettingsPortal> open(const std::string& address, Handler heard);
    ~SettingsPortal();
    SettingsPortal(const SettingsPortal&) = delete;
    SettingsPortal& operator=(const SettingsPortal&) = delete;

    /// Answers the address of the session's bus, "" for none.
    static std::string sessionAddress();
    bool isOpen() const { return bus_ != nullptr; }

private:
    SettingsPortal(const BusLibrary& library, Handler heard);

    bool connect(const std::string& address);
    void ask(const char* operation, sd_bus_message_handler_t take);
    void pump();
    void close();
    void keep(sd_bus_message* message);

    static int answeredOne(sd_bus_message* message, void* self, sd_bus_error* error);
    static int answered(sd_bus_message* message, void* self, sd_bus_error* error);
    static int changed(sd_bus_message* message, void* self, sd_bus_error* error);

    const BusLibrary& library_;
    Handler heard_;
    sd_bus* bus_ = nullptr;
    Ref<NSRunLoopSource> source_;
    std::optional<ColorScheme> news_; // heard, not handed on
};

}
