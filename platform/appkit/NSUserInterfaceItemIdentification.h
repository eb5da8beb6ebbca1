// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSView.h"
#include "foundation/NSString.h"

/// Names by which parts of an interface are told apart. Every view and every column of a table has one.

namespace brindle {

/// Answers the view's identifier, or nil.
inline Ref<NSString> identifier(To<NSView> view)
{
    return view.send<"identifier", Ref<NSString>>();
}
/// Names the view; a table uses views again by this name. A copy is kept.
/// - Nil: it has no name then. - Raises: `NSInvalidArgumentException` for an object that is no string.
inline void setIdentifier(To<NSView> view, NSString* name) { view.send<"setIdentifier:">(name); }

}
