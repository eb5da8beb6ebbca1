// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

/// Classes, selectors and protocols by their names as string objects.
///
/// A nil argument answers nil or the zero selector. Thread: any.

namespace brindle {

struct Protocol;

/// Answers the class's name.
BRINDLE_EXPORT Ref<NSString> NSStringFromClass(const Class* cls);
/// Answers the class of a name, or nil for one that nobody declared.
BRINDLE_EXPORT Class* NSClassFromString(const NSString* name);
/// Answers the selector's name; nil for one that was never registered.
BRINDLE_EXPORT Ref<NSString> NSStringFromSelector(SEL selector);
/// Answers the selector of a name and registers the name.
BRINDLE_EXPORT SEL NSSelectorFromString(const NSString* name);
BRINDLE_EXPORT Ref<NSString> NSStringFromProtocol(const Protocol* protocol);
/// Answers the protocol of a name, making it when it is new.
BRINDLE_EXPORT Protocol* NSProtocolFromString(const NSString* name);

}
