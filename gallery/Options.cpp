// SPDX-License-Identifier: Apache-2.0
#include "Options.h"

#include "foundation/NSUserDefaults.h"
#include "foundation/StringConstant.h"
#include "introspection/NSUserDefaults+Archive.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryOptions::Methods<struct Kept> {
    static void table(Builder& t)
    {
        t.properties({
            property<&GalleryOptions::page_>("page", copied, nonatomic),
            property<&GalleryOptions::hasAppearance_>("hasAppearance", nonatomic),
            property<&GalleryOptions::isDark_>("isDark", nonatomic),
            property<&GalleryOptions::showsCode_>("showsCode", nonatomic),
            property<&GalleryOptions::theme_>("theme", nonatomic),
            property<&GalleryOptions::spacing_>("spacing", nonatomic),
            property<&GalleryOptions::hasShadow_>("hasShadow", nonatomic),
        });
    }
};
BRINDLE_RECORD(GalleryOptions, Kept)

namespace {

    constexpr StringConstant<"GalleryOptions"> kKey;

    Ref<NSUserDefaults> defaults() { return NSUserDefaults::cls().standardUserDefaults(); }

    /// Somebody may have written anything into the file.
    Ref<GalleryOptions> kept()
    {
        try {
            const Ref<NSObject> read = unarchiveObjectForKey(defaults(), kKey);
            if (read && read->isKindOfClass(GalleryOptions::cls()))
                return cast<GalleryOptions>(read);
        } catch (const Exception&) {
        }
        return make<GalleryOptions>();
    }
    Ref<GalleryOptions>& inForce()
    {
        static auto* const options = new Ref<GalleryOptions>;
        return *options;
    }

}

GalleryOptions& options()
{
    if (!inForce())
        readOptions();
    return *inForce();
}

void keepOptions() { archiveObject_forKey(defaults(), &options(), kKey); }

void readOptions() { inForce() = kept(); }

}
