// SPDX-License-Identifier: Apache-2.0
#include "KeyedArchivePrivate.h"

#include <pthread.h>

#include "runtime/Runtime.h"

namespace brindle::archives {

namespace {

    /// Answers the lowest address of this thread's stack; 0 when the system does not tell.
    std::uintptr_t stackEnd()
    {
        pthread_attr_t attributes;
        if (pthread_getattr_np(pthread_self(), &attributes) != 0)
            return 0;
        void* lowest = nullptr;
        std::size_t size = 0;
        pthread_attr_getstack(&attributes, &lowest, &size);
        pthread_attr_destroy(&attributes);
        return reinterpret_cast<std::uintptr_t>(lowest);
    }

}

bool isStackShort()
{
    constexpr std::uintptr_t kReserve = 128 << 10; // for one object's own coding and for raising
    static thread_local const std::uintptr_t end = stackEnd();
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) < end + kReserve;
}

bool supportsSecureCoding(Class* cls)
{
    const NSObject::Meta meta { cls };
    return meta.respondsToSelector(selector<"supportsSecureCoding">)
        && meta.send<"supportsSecureCoding", bool>();
}

Ref<NSString> elementKey(NSString* key, std::size_t index)
{
    std::string name = utf8Of(key);
    if (name.ends_with('s'))
        name.pop_back();
    return stringFrom(name + "." + std::to_string(index));
}

void appendNumber(std::vector<std::uint8_t>& bytes, NSUInteger number)
{
    for (; number >= 0x80; number >>= 7)
        bytes.push_back(static_cast<std::uint8_t>(number | 0x80));
    bytes.push_back(static_cast<std::uint8_t>(number));
}

bool takeNumber(std::span<const std::uint8_t>& bytes, NSUInteger& number)
{
    number = 0;
    for (unsigned shift = 0; shift < 64 && !bytes.empty(); shift += 7) {
        const std::uint8_t byte = bytes.front();
        bytes = bytes.subspan(1);
        number |= static_cast<NSUInteger>(byte & 0x7f) << shift;
        if (byte < 0x80)
            return true;
    }
    return false;
}

}
