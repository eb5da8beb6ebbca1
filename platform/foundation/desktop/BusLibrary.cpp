// SPDX-License-Identifier: Apache-2.0
#include "BusLibraryPrivate.h"

#include <optional>

#include "foundation/LateLibrary.h"

namespace brindle::desktop {

namespace {

    std::optional<BusLibrary> load()
    {
        void* const library = late::openLibrary("libsystemd.so.0");
        if (!library)
            return std::nullopt;
        using late::find;
        BusLibrary bus;
        const bool complete = find(library, "sd_bus_new", bus.create)
            && find(library, "sd_bus_set_address", bus.setAddress)
            && find(library, "sd_bus_set_bus_client", bus.setBusClient)
            && find(library, "sd_bus_start", bus.start) && find(library, "sd_bus_close", bus.close)
            && find(library, "sd_bus_unref", bus.unref)
            && find(library, "sd_bus_get_fd", bus.fileDescriptor)
            && find(library, "sd_bus_get_events", bus.events)
            && find(library, "sd_bus_process", bus.process)
            && find(library, "sd_bus_add_match_async", bus.addMatch)
            && find(library, "sd_bus_call_method_async", bus.call)
            && find(library, "sd_bus_message_is_method_error", bus.isError)
            && find(library, "sd_bus_message_peek_type", bus.peekType)
            && find(library, "sd_bus_message_enter_container", bus.enterContainer)
            && find(library, "sd_bus_message_read_basic", bus.readBasic);
        return complete ? std::optional(bus) : std::nullopt;
    }

}

const BusLibrary* BusLibrary::loaded()
{
    static const std::optional<BusLibrary> library = load();
    return library ? &*library : nullptr;
}

}
