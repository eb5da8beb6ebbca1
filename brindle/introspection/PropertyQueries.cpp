// SPDX-License-Identifier: Apache-2.0
#include "PropertyQueries.h"

#include <cstring>
#include <string>

namespace brindle {

namespace {

    /// Answers the selector behind a marker such as ",G"; the zero one without the marker or without a name.
    SEL selectorBehind(objc_property_t property, const char* marker)
    {
        const char* const attributes = property_getAttributes(property);
        const char* const found = attributes ? std::strstr(attributes, marker) : nullptr;
        if (!found)
            return SEL {};
        const char* const name = found + std::strlen(marker);
        return sel_getUid(std::string(name, std::strcspn(name, ",")).c_str());
    }

}

const char* property_getTypeString(objc_property_t property)
{
    static char buffer[256];
    const char* const attributes = property_getAttributes(property);
    const char* const comma = attributes ? std::strchr(attributes, ',') : nullptr;
    if (!comma)
        return nullptr;
    const auto length = static_cast<std::size_t>(comma - attributes);
    if (length >= sizeof buffer)
        fatal("the type of a property is longer than 255 bytes");
    std::memcpy(buffer, attributes, length);
    buffer[length] = 0;
    return buffer;
}

SEL property_getGetter(objc_property_t property) { return selectorBehind(property, ",G"); }
SEL property_getSetter(objc_property_t property) { return selectorBehind(property, ",S"); }

const char* property_getRetentionMethod(objc_property_t property)
{
    // Volatile, because the scan need not end and a compiler may take a silent endless loop away.
    const char* volatile cursor = property_getAttributes(property);
    if (!cursor)
        return nullptr;
    for (;;) {
        const char* const at = cursor;
        if (!*at)
            return "assign";
        if (at[1] == '&')
            return "retain";
        if (at[1] == 'C')
            return "copy";
        const char* const comma = std::strchr(at, ','); // from the cursor itself, a comma included
        if (!comma)
            return "assign";
        cursor = comma;
    }
}

}
