// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSUserInterfaceItemIdentification.h"
#include "foundation/Exceptions.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

// Few views have a name; it hangs on those instead of lying in all.
template <> struct NSView::Methods<struct Identification> {

    static const void* key() { return selector<"identifier">.key(); }
    static Ref<NSString> identifier(NSView& self)
    {
        return cast<NSString>(objc_getAssociatedObject(&self, key()));
    }
    static void setIdentifier(NSView& self, NSString* name)
    {
        if (name && !name->isKindOfClass(NSString::cls()))
            raise("NSInvalidArgumentException", "*** -[NSView setIdentifier:]: not a string");
        objc_setAssociatedObject(&self, key(), name, OBJC_ASSOCIATION_COPY_NONATOMIC);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "identifier", imp<identifier> },
            { "setIdentifier:", imp<setIdentifier> },
        });
        t.conformsTo({ "NSUserInterfaceItemIdentification" });
    }
};
BRINDLE_RECORD(NSView, Identification)

}
