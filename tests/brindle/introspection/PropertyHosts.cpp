// SPDX-License-Identifier: Apache-2.0
#include "PropertyHosts.h"

#include <string>

namespace brindle {

template <> struct PropertyHost::Methods<struct Declared> {
    static NSInteger unset(PropertyHost&) { return 0; }
    static void table(Builder& t)
    {
        t.properties({
            property<&PropertyHost::title_>("title", nonatomic),
            property<&PropertyHost::copiedTitle_>("copiedTitle", copied, nonatomic),
            property<&PropertyHost::code_>("code", copied, nonatomic),
            property<&PropertyHost::count_>("count", nonatomic),
            property<&PropertyHost::byte_>("byte", nonatomic),
            property<&PropertyHost::on_>("on", nonatomic, getter("isOn"), setter("setOn:")),
            property<&PropertyHost::controller_>(
                "controller", nonatomic, typed("@\"NSArrayController\"")),
            property<&PropertyHost::shouted_>("shouted", nonatomic, typed("@\"MYNSARRAY\"")),
            computed<NSInteger>("missing", nonatomic),
            computed<NSInteger>("unset", nonatomic),
        });
        t.methods({ { "unset", imp<unset> }, { "setUnset", imp<unset> } });
    }
};
BRINDLE_RECORD(PropertyHost, Declared)

template <> struct PlainPropertyHost::Methods<struct Declared> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(PlainPropertyHost, Declared)

objc_property_t propertyWith(const char* attributes)
{
    static int number = 0;
    Class* const cls = objc_allocateClassPair(
        NSObject::cls(), ("AttributeHost" + std::to_string(number++)).c_str(), 0);
    objc_registerClassPair(cls);
    class_addProperty(cls, "asked", attributes);
    return class_getProperty(cls, "asked");
}

}
