// SPDX-License-Identifier: Apache-2.0
#include "PropertyListWalkPrivate.h"

#include "foundation/NSDate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSString.h"
#include "foundation/PropertyListUID.h"

namespace brindle::lists {

namespace {

    Kind kindOfNumber(const NSObject* object)
    {
        switch (*static_cast<const NSNumber*>(object)->objCType()) {
        case 'B':
            return Kind::boolean;
        case 'f':
        case 'd':
            return Kind::real;
        default:
            return Kind::integer;
        }
    }

}

Kind kindOf(const NSObject* object)
{
    if (!object)
        return Kind::none;
    const Class* const cls = object->isa_;
    if (cls == classOf<NSString>())
        return Kind::string;
    if (cls == classOf<NSNumber>())
        return kindOfNumber(object);
    if (cls == classOf<NSDictionary>())
        return Kind::dictionary;
    if (cls == classOf<NSArray>())
        return Kind::array;
    if (cls == classOf<NSData>())
        return Kind::data;
    if (cls == classOf<NSDate>())
        return Kind::date;
    const auto is = [&](Class* wanted) { return object->isKindOfClass(wanted); };
    if (is(classOf<NSDictionary>()))
        return Kind::dictionary;
    if (is(classOf<NSArray>()))
        return Kind::array;
    if (is(classOf<NSData>()))
        return Kind::data;
    if (is(classOf<NSDate>()))
        return Kind::date;
    if (is(classOf<NSString>()))
        return Kind::string;
    if (is(classOf<NSNumber>()))
        return kindOfNumber(object);
    return is(classOf<PropertyListUID>()) ? Kind::uid : Kind::none;
}

}
