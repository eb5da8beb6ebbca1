// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CALayerPrivate.h"

namespace brindle::quartz {

/// Answers the colours of a list. Objects that answer `CGColor` count as that colour; anything else is nil.
std::vector<Ref<CGColor>> colorsIn(NSArray* list);

/// Answers where the colours of a gradient lie, 0 to 1, in rising order.
///
/// Without places they are spread evenly. Colours beyond the places are spread evenly from the last place to 1; places
/// beyond the colours are left out.
std::vector<double> gradientPlaces(std::size_t colors, NSArray* locations);

}
