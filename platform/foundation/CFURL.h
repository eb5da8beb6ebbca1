// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

/// The C functions for the escapes of URLs. Their strings are string objects, and the other way round.
namespace brindle {

using CFTypeRef = const void*;
using CFStringRef = const NSString*;
using CFAllocatorRef = const void*; ///< memory is had one way only: always null, and not looked at
using CFStringEncoding = std::uint32_t;

inline constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

BRINDLE_C_BEGIN

/// Adds a count to an object and answers it. The object must not be nil.
BRINDLE_EXPORT CFTypeRef CFRetain(CFTypeRef object);
/// Takes a count away. The object must not be nil.
BRINDLE_EXPORT void CFRelease(CFTypeRef object);

/// Answers the text with escapes for everything that is not legal in a URL; capitals as digits.
/// - leave: characters that stay although they are not legal; may be nil.
/// - escape: legal ones that are escaped too; may be nil. Letters outside ASCII are always escaped.
/// - Owner: the caller.
/// - Nil: for nil, unpaired surrogates, and every encoding but UTF-8.
BRINDLE_EXPORT CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef allocator,
    CFStringRef string, CFStringRef leave, CFStringRef escape, CFStringEncoding encoding);
/// Answers the text with its escapes replaced by what they stand for.
/// - leave: characters whose escapes stay; "" replaces all, nil none.
/// - Owner: the caller.
/// - Nil: for nil, malformed escapes, bytes that are not UTF-8, and every encoding but UTF-8.
BRINDLE_EXPORT CFStringRef CFURLCreateStringByReplacingPercentEscapesUsingEncoding(
    CFAllocatorRef allocator, CFStringRef string, CFStringRef leave, CFStringEncoding encoding);

BRINDLE_C_END

/// Takes over what a function with "Create" in its name answered.
template <class T> Ref<T> created(const T* object) { return Ref<T>::adopt(const_cast<T*>(object)); }

}
