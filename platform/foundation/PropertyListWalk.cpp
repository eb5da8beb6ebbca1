// SPDX-License-Identifier: Apache-2.0
#include "PropertyListWalkPrivate.h"

#include "NSDate.h"
#include "NSMutableArray.h"
#include "NSMutableDictionary.h"
#include "NSNumber.h"
#include "NSStringPrivate.h"
#include "PropertyListUID.h"

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
    if (strings::isString(object))
        return Kind::string;
    const auto is
        = [object](Class* cls) { return object->isa_ == cls || object->isKindOfClass(cls); };
    if (is(classOf<NSNumber>()))
        return kindOfNumber(object);
    if (is(classOf<NSDictionary>()))
        return Kind::dictionary;
    if (is(classOf<NSArray>()))
        return Kind::array;
    if (is(classOf<NSData>()))
        return Kind::data;
    if (is(classOf<NSDate>()))
        return Kind::date;
    return is(classOf<PropertyListUID>()) ? Kind::uid : Kind::none;
}

}
