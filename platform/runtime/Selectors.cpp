// SPDX-License-Identifier: Apache-2.0
#include "Selector.h"

#include "ClassPrivate.h"
#include "NSException.h"

namespace brindle {

namespace {

    /// Names by selector value, open addressing; guarded by the runtime lock. Three quarters may be full: the two thousand
    /// names of a usual program then take 64 KB.
    class Names {
    public:
        const char** entry(std::uint64_t value)
        {
            if ((used_ + 1) * 4 > entries_.size() * 3)
                grow();
            Entry& found = locate(value);
            if (!found.value) {
                found.value = value;
                ++used_;
            }
            return &found.name;
        }
        const char* find(std::uint64_t value)
        {
            return entries_.empty() ? nullptr : locate(value).name;
        }

    private:
        struct Entry {
            std::uint64_t value = 0;
            const char* name = nullptr;
        };
        Entry& locate(std::uint64_t value)
        {
            const std::size_t mask = entries_.size() - 1;
            std::size_t i = value & mask;
            while (entries_[i].value && entries_[i].value != value)
                i = (i + 1) & mask;
            return entries_[i];
        }
        void grow()
        {
            std::vector<Entry> old(entries_.empty() ? 1024 : entries_.size() * 2);
            old.swap(entries_);
            for (const Entry& entry : old) {
                if (entry.value)
                    locate(entry.value) = entry;
            }
        }
        std::vector<Entry> entries_;
        std::size_t used_ = 0;
    };

    Names& names()
    {
        static Names& instance = *new Names; // outlives every static object
        return instance;
    }

}

std::recursive_mutex& runtimeLock()
{
    static std::recursive_mutex& instance = *new std::recursive_mutex;
    return instance;
}

SEL registerSelector(SEL sel, const char* name, bool copy)
{
    const char* taken = nullptr;
    {
        const std::lock_guard guard(runtimeLock());
        const char** entry = names().entry(sel.value);
        if (!*entry)
            *entry = copy ? strdup(name) : name;
        else if (*entry != name && std::strcmp(*entry, name) != 0)
            taken = *entry;
    }
    if (taken)
        raise("NSInternalInconsistencyException",
            std::string("the selectors \"") + name + "\" and \"" + taken + "\" collide");
    return sel;
}

SEL sel_registerName(const char* name)
{
    return name && *name ? registerSelector(selectorOf(name), name, true) : SEL {};
}

SEL sel_getUid(const char* name) { return sel_registerName(name); }

const char* sel_getName(SEL sel)
{
    const std::lock_guard guard(runtimeLock());
    return names().find(sel.value);
}

}
