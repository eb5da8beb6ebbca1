// SPDX-License-Identifier: Apache-2.0
#include "HarfBuzzPrivate.h"

namespace brindle::text {

void* harfBuzz()
{
    static void* const library = late::openLibrary("libharfbuzz.so.0");
    return library;
}

}
