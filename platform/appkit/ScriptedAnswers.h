// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSObjCRuntime.h"
#include "runtime/Block.h"

namespace brindle {

class NSAlert;
class NSArray;
class NSSavePanel;
class NSURL;

/// Somebody in place of the person before the screen, and in place of the desktop: for tests, which have neither.
namespace scripted {

    /// Asks a closure instead of showing alerts; an empty closure ends that.
    /// - person: answers the code that the alert ends with. It is asked at once by `runModal`, and in a later turn of
    ///   the main queue for a sheet. Thread: main.
    BRINDLE_EXPORT void answerAlerts(const Block<NSInteger(NSAlert*)>& person);
    /// Asks a closure instead of showing open and save panels; an empty closure ends that.
    /// - person: answers the URLs to choose, nil to cancel. What a person could not choose, because the panel does not
    ///   enable it, cancels the panel as well. Thread: main.
    BRINDLE_EXPORT void answerPanels(const Block<Ref<NSArray>(NSSavePanel*)>& person);
    /// Hands the URLs that are to be opened to a closure instead of the desktop; an empty closure ends that.
    /// - desktop: answers whether it takes the URL. Thread: any.
    BRINDLE_EXPORT void takeOpenedURLs(const Block<bool(NSURL*)>& desktop);

}

}
