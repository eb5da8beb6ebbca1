// SPDX-License-Identifier: Apache-2.0
#include "PropertyCells.h"

#include <cstring>

#include "foundation/NSDictionary.h"
#include "foundation/NSObjCRuntime.h"
#include "introspection/NSObject+AutoCoding.h"
#include "introspection/NSObject+PropertiesBR.h"
#include "introspection/PropertyQueries.h"

namespace gallery {

using namespace brindle;

namespace {

    PropertyCell getterOf(objc_property_t property)
    {
        const SEL getter = property_getGetter(property);
        return getter == SEL {} ? PropertyCell { "usual"_ns, true }
                                : PropertyCell { NSStringFromSelector(getter) };
    }

    PropertyCell setterOf(objc_property_t property)
    {
        const SEL setter = property_getSetter(property);
        if (setter != SEL {})
            return { NSStringFromSelector(setter) };
        const bool isReadOnly = std::strstr(property_getAttributes(property), ",R");
        return { isReadOnly ? "none"_ns : "usual"_ns, !isReadOnly };
    }

    /// `property_getRetentionMethod` answers only for properties of objects that are kept or copied.
    PropertyCell retentionOf(objc_property_t property)
    {
        const char* const comma = std::strchr(property_getAttributes(property), ',');
        const bool answers = !comma || comma[1] == '&' || comma[1] == 'C';
        return answers ? PropertyCell { stringFrom(property_getRetentionMethod(property)) }
                       : PropertyCell { "–"_ns, true };
    }

}

PropertyCells cellsOf(Class* cls, NSString* name)
{
    objc_property_t const property = class_getProperty(cls, name->UTF8String());
    return { PropertyCell { name }, { propertyTypeOfProperty(cls, name) }, getterOf(property),
        setterOf(property), retentionOf(property) };
}

bool isArchived(Class* cls, NSString* name)
{
    const Ref<NSDictionary> codable = codableProperties(cls);
    return static_cast<bool>(maybe(codable)->objectForKey(name));
}

}
