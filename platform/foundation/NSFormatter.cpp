// SPDX-License-Identifier: Apache-2.0
#include "NSFormatter.h"

#include "runtime/Table.h"

namespace brindle {

bool reportReading(const Ref<NSObject>& read, Ref<NSObject>* object, Ref<NSString>* error)
{
    if (read && object)
        *object = read;
    if (!read && error)
        *error = "The value is invalid."_ns;
    return read != nullptr;
}

template <> struct NSFormatter::Methods<struct Base> {

    static Ref<NSString> stringFor(NSFormatter&, NSObject*) { return nullptr; }
    static Ref<NSString> editingString(NSFormatter& self, NSObject* object)
    {
        return self.stringForObjectValue(object);
    }
    static bool getObject(NSFormatter&, Ref<NSObject>* object, NSString*, Ref<NSString>* error)
    {
        return reportReading(nullptr, object, error);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "stringForObjectValue:", imp<stringFor> },
            { "editingStringForObjectValue:", imp<editingString> },
            { "getObjectValue:forString:errorDescription:", imp<getObject> },
        });
    }
};
BRINDLE_RECORD(NSFormatter, Base)

}
