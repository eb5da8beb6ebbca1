// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSURL.h"

namespace gallery {

/// Answers a folder with a few files that the page works with; made anew when it is missing.
brindle::Ref<brindle::NSURL> sampleFolder();
/// Answers the file that access is asked for.
brindle::Ref<brindle::NSURL> sampleLetter();

}
