// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSImage.h"

#include "NSImagePrivate.h"
#include "foundation/NSBundle.h"
#include "runtime/Table.h"

#include <mutex>
#include <unordered_map>

namespace brindle {

namespace {

    struct NamedImage {
        Ref<NSImage> image;
        Ref<NSBundle> bundle; // where it was found; nil for names that were set
    };

    /// Images by name; they stay for the life of the process.
    struct NameTable {
        std::mutex mutex;
        std::unordered_map<std::string, NamedImage> images;
    };

    NameTable& names()
    {
        static NameTable* const names = new NameTable;
        return *names;
    }

    /// Answers an image known by a name; one of a bundle that is no longer the main one does not count.
    Ref<NSImage> known(const std::string& name, NSBundle* main)
    {
        const std::lock_guard guard(names().mutex);
        const auto found = names().images.find(name);
        const bool counts = found != names().images.end()
            && (!found->second.bundle || found->second.bundle == main);
        return counts ? found->second.image : nullptr;
    }

    void remember(const std::string& name, NamedImage named)
    {
        const std::lock_guard guard(names().mutex);
        std::swap(names().images[name], named); // the former one goes after the lock
    }

    bool endsInTemplate(std::string name)
    {
        const std::size_t dot = name.rfind('.');
        if (dot != std::string::npos)
            name.resize(dot);
        return name.ends_with("Template");
    }

}

template <> struct NSImage::Methods<struct Named> {

    static Ref<NSImage> imageNamed(Class&, NSString* name)
    {
        const std::string key = utf8Of(name);
        if (key.empty())
            return nullptr;
        const Ref<NSBundle> bundle = NSBundle::cls().mainBundle();
        if (Ref<NSImage> image = known(key, bundle.get()))
            return image;
        const Ref<NSString> path = maybe(bundle)->pathForImageResource(name);
        Ref<NSImage> image = path ? alloc<NSImage>()->initWithContentsOfFile(path.get()) : nullptr;
        if (!image)
            image = builtInImage(key);
        if (!image)
            return nullptr;
        image->setTemplate(endsInTemplate(key));
        ImageAccess::setFoundName(*image, name);
        remember(key, { image, bundle });
        return image;
    }

    static Ref<NSString> name(NSImage& self) { return self.name_; }
    static bool setName(NSImage& self, NSString* name)
    {
        NameTable& all = names();
        const std::string key = utf8Of(name);
        NamedImage named { &self, nullptr };
        NamedImage former; // goes after the lock
        const std::lock_guard guard(all.mutex);
        const auto other = all.images.find(key);
        if (other != all.images.end() && !other->second.bundle && other->second.image != &self)
            return false;
        const auto own = all.images.find(utf8Of(self.name_)); // may be another one's by now
        if (own != all.images.end() && own->second.image == &self) {
            former = std::move(own->second);
            all.images.erase(own);
        }
        self.name_ = cast<NSString>(maybe(name)->copy());
        if (!key.empty())
            std::swap(all.images[key], named);
        return true;
    }

    static Ref<NSArray> arrayOfTexts(std::initializer_list<const char*> texts)
    {
        std::vector<Ref<NSString>> strings;
        for (const char* text : texts)
            strings.push_back(stringFrom(text));
        return arrayOf(strings);
    }
    static Ref<NSArray> types(Class&)
    {
        return arrayOfTexts({ "public.png", "public.jpeg", "public.tiff", "com.compuserve.gif",
            "com.microsoft.bmp" });
    }
    static Ref<NSArray> fileTypes(Class&)
    {
        return arrayOfTexts({ "png", "jpg", "jpeg", "tiff", "tif", "gif", "bmp" });
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "imageNamed:", imp<imageNamed> },
            { "imageTypes", imp<types> },
            { "imageUnfilteredTypes", imp<types> },
            { "imageFileTypes", imp<fileTypes> },
            { "imageUnfilteredFileTypes", imp<fileTypes> },
        });
        t.methods({ { "name", imp<name> }, { "setName:", imp<setName> } });
    }
};
BRINDLE_RECORD(NSImage, Named)

}
