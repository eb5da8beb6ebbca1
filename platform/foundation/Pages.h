// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGeometry.h"
#include "runtime/Export.h"

namespace brindle {

/// Answers the bytes of one page of memory.
BRINDLE_EXPORT NSUInteger NSPageSize();
/// Answers the power of two that the page size is.
BRINDLE_EXPORT NSUInteger NSLogPageSize();
BRINDLE_EXPORT NSUInteger NSRoundUpToMultipleOfPageSize(NSUInteger bytes);
BRINDLE_EXPORT NSUInteger NSRoundDownToMultipleOfPageSize(NSUInteger bytes);
/// Answers whole pages for at least that many bytes, all zero.
/// - Returns: nullptr when there is no room; for 0 bytes one page.
BRINDLE_EXPORT void* NSAllocateMemoryPages(NSUInteger bytes);
/// - bytes: what was asked for when they were allocated. nullptr is left alone.
BRINDLE_EXPORT void NSDeallocateMemoryPages(void* pages, NSUInteger bytes);
BRINDLE_EXPORT void NSCopyMemoryPages(const void* source, void* destination, NSUInteger bytes);

}
