// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iterator>
#include <type_traits>

#include "runtime/Ref.h"

namespace brindle {

struct Class;

/// Raises `NSInvalidArgumentException` for an element of another class.
BRINDLE_EXPORT void requireElement(NSObject* element, Class* cls);

/// A collection that is kept while a loop runs over it, its elements read as `T`; made by `each`.
template <class T, class Collection> class Each {
public:
    explicit Each(Ref<Collection> collection)
        : collection_(std::move(collection))
    {
    }

    template <class Iterator> class Typed {
    public:
        explicit Typed(Iterator at)
            : at_(std::move(at))
        {
        }
        T* operator*() const
        {
            if constexpr (!std::is_convertible_v<decltype(*at_), T*>)
                requireElement(*at_, T::cls());
            return static_cast<T*>(*at_);
        }
        Typed& operator++()
        {
            ++at_;
            return *this;
        }
        bool operator==(std::default_sentinel_t end) const { return at_ == end; }

    private:
        Iterator at_;
    };

    auto begin() const
    {
        using Iterator = decltype(collection_->begin());
        return Typed<Iterator>(collection_ ? collection_->begin() : Iterator());
    }
    std::default_sentinel_t end() const { return {}; }

private:
    Ref<Collection> collection_;
};

/// Runs over a collection and keeps it meanwhile; nil has no elements, and one that is no `T` raises
/// `NSInvalidArgumentException`. For an answer of an operation this is the only safe spelling, because a loop over
/// `*view->subviews()` would let go of the array before it begins: `for (NSView* view : each<NSView>(window->views()))`.
template <class T, class Collection> Each<T, Collection> each(Ref<Collection> collection)
{
    return Each<T, Collection>(std::move(collection));
}
template <class Collection> auto each(Ref<Collection> collection)
{
    return Each<typename Collection::Element, Collection>(std::move(collection));
}

}
