// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSApplication.h"

/// Sheets by way of the application; a window shows and ends them by its own operations as well.

namespace brindle {

/// Shows a sheet. `didEnd`, which may be empty, is sent to the delegate after the sheet has gone, with the sheet, the code and
/// `context`.
/// - window: nil shows a free window. - delegate: kept until then.
/// - Raises: `NSInvalidArgumentException` for a nil sheet; at the end for an operation that takes something else.
inline void beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(
    To<NSApplication> application, NSWindow* sheet, NSWindow* window, NSObject* delegate,
    SEL didEnd, void* context)
{
    application.send<"beginSheet:modalForWindow:modalDelegate:didEndSelector:contextInfo:">(
        sheet, window, delegate, didEnd, context);
}
/// The same as `endSheet:returnCode:` with 0.
inline void endSheet(To<NSApplication> application, NSWindow* sheet)
{
    application.send<"endSheet:">(sheet);
}
/// Takes a sheet away from whatever window has it. What is no sheet is left alone.
inline void endSheet_returnCode(To<NSApplication> application, NSWindow* sheet, NSInteger code)
{
    application.send<"endSheet:returnCode:">(sheet, code);
}

}
