// SPDX-License-Identifier: Apache-2.0
#include "FontConfigurationPrivate.h"

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/FilesPrivate.h"

namespace brindle::text {

namespace {

    struct ConfigDeleter {
        void operator()(FcConfig* config) const { FcConfigDestroy(config); }
    };
    using Config = std::unique_ptr<FcConfig, ConfigDeleter>;
    using Place = std::unique_ptr<FcChar8, decltype(&std::free)>;

    /// Answers the file or folder that a configuration means by a name; by none, the main file.
    std::string placeOf(FcConfig* config, const char* name)
    {
        const Place place(
            FcConfigGetFilename(config, reinterpret_cast<const FcChar8*>(name)), &std::free);
        return place ? reinterpret_cast<const char*>(place.get()) : "";
    }

    std::string_view textOf(const ByteBuffer& file)
    {
        return { reinterpret_cast<const char*>(file.bytes()), file.length() };
    }

    bool says(std::string_view text, std::string_view words)
    {
        return text.find(words) != text.npos;
    }

    /// Answers whether a file names folders, leaves fonts out, changes what is noted of a font or leads to another file.
    bool bearsOnTheList(std::string_view text)
    {
        static constexpr std::string_view kSigns[] = { "<dir", "<remap-dir", "<reset-dirs",
            "<cachedir", "<selectfont", "<include", "scan" };
        // Entities and wide characters may hide them.
        static constexpr std::string_view kVeils[] = { "<!ENTITY", { "\0", 1 } };
        const auto isSaid = [text](std::string_view words) { return says(text, words); };
        return std::ranges::any_of(kSigns, isSaid) || std::ranges::any_of(kVeils, isSaid);
    }

    /// Answers the files that fontconfig reads where a folder is included, in its order; nothing for what is no folder.
    std::optional<std::vector<std::string>> filesIn(const std::string& folder)
    {
        const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), &closedir);
        if (!open)
            return std::nullopt;
        std::vector<std::string> files;
        while (const dirent* const entry = readdir(open.get())) {
            const std::string_view name = entry->d_name;
            if (name[0] >= '0' && name[0] <= '9' && name.ends_with(".conf"))
                files.push_back(folder + "/" + entry->d_name);
        }
        std::ranges::sort(files);
        return files;
    }

    bool hasCache(FcConfig* config)
    {
        const std::unique_ptr<FcStrList, decltype(&FcStrListDone)> folders(
            FcConfigGetCacheDirs(config), &FcStrListDone);
        return folders && FcStrListNext(folders.get());
    }

    /// Answers whether a path may stand in an element, and in a comment round it, as it is.
    bool isPlain(const std::string& path)
    {
        return path.find_first_of("<>&") == path.npos && !says(path, "--");
    }

    /// Answers elements that include those of the folder's files that bear on the list; nothing for what is better left alone.
    std::optional<std::string> includingFewOf(const std::string& folder)
    {
        const auto files = filesIn(folder);
        if (!files || !std::ranges::all_of(*files, isPlain))
            return std::nullopt;
        std::string elements;
        for (const std::string& file : *files) {
            const std::optional<ByteBuffer> read = files::map(file.c_str());
            if (read && bearsOnTheList(textOf(*read)))
                elements += "<include ignore_missing=\"yes\">" + file + "</include>\n";
        }
        return elements;
    }

    /// Answers what stands in for an element `<include…>…</include>`.
    std::string replacementFor(FcConfig* config, const std::string& element)
    {
        const std::size_t attributes = std::string_view("<include").size();
        const std::size_t end = element.find('>') + 1;
        const std::string_view said(element.data() + attributes, end - 1 - attributes);
        if (!said.empty() && said != " ignore_missing=\"yes\"")
            return element;
        const std::string name = element.substr(end, element.rfind('<') - end);
        if (!isPlain(name))
            return element;
        return includingFewOf(placeOf(config, name.c_str())).value_or(element);
    }

}

std::string withoutFilesOfRules(FcConfig* config, const std::string& text)
{
    constexpr std::string_view kBegin = "<include";
    constexpr std::string_view kEnd = "</include>";
    std::string result;
    std::size_t done = 0;
    for (std::size_t begin = 0; (begin = text.find(kBegin, done)) != text.npos;) {
        const std::size_t end = text.find(kEnd, begin);
        if (end == text.npos)
            break;
        result.append(text, done, begin - done);
        done = end + kEnd.size();
        result += replacementFor(config, text.substr(begin, done - begin));
    }
    return result.append(text, done);
}

FcConfig* configurationOfFonts()
{
    Config config(FcConfigCreate());
    if (!config || FcConfigGetSysRoot(config.get()))
        return nullptr;
    const std::optional<ByteBuffer> main = files::map(placeOf(config.get(), nullptr).c_str());
    if (!main || says(textOf(*main), "relative")) // to the file, which text in memory has none of
        return nullptr;
    const std::string text = withoutFilesOfRules(config.get(), std::string(textOf(*main)));
    const auto* const bytes = reinterpret_cast<const FcChar8*>(text.c_str());
    if (!FcConfigParseAndLoadFromMemory(config.get(), bytes, FcFalse) || !hasCache(config.get())
        || !FcConfigBuildFonts(config.get()))
        return nullptr;
    return config.release();
}

}
