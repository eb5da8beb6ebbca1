// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "foundation/NSString.h"

namespace gallery {

struct PropertyCell {
    brindle::Ref<brindle::NSString> text;
    bool isUsual = false; // what every property has that asks for nothing else
};

/// Name, type, getter, setter, way of keeping.
using PropertyCells = std::array<PropertyCell, 5>;

/// Answers what a class tells about one of its properties.
PropertyCells cellsOf(brindle::Class* cls, brindle::NSString* name);
/// Answers whether automatic archiving writes the property.
bool isArchived(brindle::Class* cls, brindle::NSString* name);

}
