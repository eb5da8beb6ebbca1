// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The part of the message bus library that is used. Declared here and loaded when it is wanted, so that neither its
/// headers nor the library itself have to be there; the library keeps these for ever.
extern "C" {
using sd_bus = struct sd_bus;
using sd_bus_message = struct sd_bus_message;
using sd_bus_slot = struct sd_bus_slot;
using sd_bus_error = struct sd_bus_error;
using sd_bus_message_handler_t
    = int (*)(sd_bus_message* message, void* context, sd_bus_error* error);
}

namespace brindle::desktop {

/// Functions of the library. Those that answer an int answer a negative number of the system's errors on failure.
struct BusLibrary {
    int (*create)(sd_bus** bus);
    int (*setAddress)(sd_bus* bus, const char* address);
    int (*setBusClient)(sd_bus* bus, int isClient);
    int (*start)(sd_bus* bus);
    void (*close)(sd_bus* bus);
    sd_bus* (*unref)(sd_bus* bus);

    int (*fileDescriptor)(sd_bus* bus);
    /// - Returns: what `poll` is to wait for.
    int (*events)(sd_bus* bus);
    /// - Returns: more than 0 where something was done and there may be more.
    int (*process)(sd_bus* bus, sd_bus_message** message);

    int (*addMatch)(sd_bus* bus, sd_bus_slot** slot, const char* rule,
        sd_bus_message_handler_t taken, sd_bus_message_handler_t installed, void* context);
    int (*call)(sd_bus* bus, sd_bus_slot** slot, const char* destination, const char* path,
        const char* interface, const char* member, sd_bus_message_handler_t answered, void* context,
        const char* types, ...);

    int (*isError)(sd_bus_message* message, const char* name);
    int (*peekType)(sd_bus_message* message, char* type, const char** contents);
    int (*enterContainer)(sd_bus_message* message, char type, const char* contents);
    int (*readBasic)(sd_bus_message* message, char type, void* value);

    /// Loads the library when it is first asked for.
    /// - Returns: nullptr where the machine has none.
    static const BusLibrary* loaded();
};

}
