// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSURL.h"

namespace brindle {

class NSData;

/// The bookmarks of granted files, in the standard defaults: "bd_" and the URL's text is the key. Class operations only.
/// Thread: any.
class AppSandboxFileAccessPersist : public NSObject {
    BRINDLE_OBJECT(AppSandboxFileAccessPersist, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSString> keyForBookmarkDataForURL(NSURL* url) const
        {
            return send<"keyForBookmarkDataForURL:", Ref<NSString>>(url);
        }
        /// Answers the bookmark of a file or of the nearest folder above it; the root folder is never looked up.
        /// - Nil: when there is none.
        Ref<NSData> bookmarkDataForURL(NSURL* url) const
        {
            return send<"bookmarkDataForURL:", Ref<NSData>>(url);
        }
        /// - Nil: nil data takes the bookmark away.
        void setBookmarkData_forURL(NSData* data, NSURL* url) const
        {
            send<"setBookmarkData:forURL:">(data, url);
        }
    };
};

}
