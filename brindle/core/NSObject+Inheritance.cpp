// SPDX-License-Identifier: Apache-2.0
#include "NSObject+Inheritance.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct Inheritance {

        static bool isMethodOverridden(NSObject& self, SEL sel)
        {
            Class* const base = brindle::baseClassForSelector(self.classObject(), sel);
            return self.methodForSelector(sel)
                != maybe(base)->send<"instanceMethodForSelector:", IMP>(sel);
        }

        static Class* baseClassForSelector(Class& self, SEL sel)
        {
            Class* base = nullptr;
            for (Class* cls = &self; cls && cls->send<"instancesRespondToSelector:", bool>(sel);
                 cls = cls->superclass())
                base = cls;
            return base;
        }

        static void table(Builder& t)
        {
            t.methods({ { "isMethodOverridden:", imp<isMethodOverridden> } });
            t.classMethods({ { "baseClassForSelector:", imp<baseClassForSelector> } });
        }
    };

}
BRINDLE_EXTENSION(NSObject, Inheritance)

}
