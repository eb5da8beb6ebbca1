// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unordered_map>
#include <vector>

#include "PropertyListPrivate.h"
#include "foundation/CollectionsPrivate.h"
#include "runtime/Runtime.h"

// How writers of property lists go through the objects.

namespace brindle::lists {

/// Answers what a list would hold for an object; `none` for what has no place in one.
Kind kindOf(const NSObject* object);

/// Goes through a list, depth first, without using the stack for depth. The visitor is asked:
///
/// - `bool leaf(Kind, NSObject&)`, `bool key(NSObject&)`: false ends the walk; the visitor has said why.
/// - `bool enter(Kind, std::size_t count)` before what a container holds.
/// - `std::uint32_t leave(Kind, std::size_t count)` after it.
/// - `void again(std::uint32_t)` when `kOnce` is set, for a container that was left before with that answer, instead
///   of entering it again.
/// - `bool knows(const OrderedTable<PairEntry>&)`, if there is such a function, after entering a dictionary: true for one
///   whose keys need not be gone through.
template <class Visitor> class Walk {
public:
    Walk(Visitor& visitor, Failure& failure)
        : visitor_(visitor)
        , failure_(failure)
    {
    }

    bool run(NSObject* top)
    {
        if (!visit(top, kindOf(top)))
            return false;
        while (!way_.empty()) {
            if (!step())
                return false;
        }
        return true;
    }

private:
    struct Step {
        const NSObject* object;
        Kind kind;
        bool isShared;
        const collections::Items* items; // of an array
        const OrderedTable<PairEntry>* table; // of a dictionary
        std::size_t count;
        std::size_t next;
        std::size_t height; // of what was seen inside
        bool knowsKeys;
    };
    struct Known {
        std::uint32_t answer;
        std::size_t height; // 0 while inside
    };

    bool refuse(std::string reason)
    {
        failure_.reason = std::move(reason);
        return false;
    }

    bool visit(NSObject* object, Kind kind)
    {
        if (kind == Kind::none)
            return refuse(std::string("an object of class ")
                + (object ? class_getName(object->classObject()) : "nil")
                + " has no place in a list");
        return isContainer(kind) ? enter(object, kind) : visitor_.leaf(kind, *object);
    }

    bool enter(NSObject* object, Kind kind)
    {
        const bool isShared = Visitor::kOnce && mayBeShared(object);
        if (isShared) {
            const auto [known, isNew] = known_.try_emplace(object);
            if (!isNew)
                return meet(known->second);
        }
        if (way_.size() >= kDeepest)
            return refuse(isInside(object) ? "a container contains itself"
                                           : "containers are nested too deeply");
        Step step { object, kind, isShared, nullptr, nullptr, 0, 0, 0, false };
        if (kind == Kind::array) {
            const auto& array = static_cast<const NSArray&>(*object);
            step.items = &ArrayAccess::items(
                ArrayAccess::isDirect(array) ? array : keep(makeArray(ArrayAccess::copy(&array))));
            step.count = step.items->size();
        } else {
            const auto& dictionary = static_cast<const NSDictionary&>(*object);
            step.table = &DictionaryAccess::table(DictionaryAccess::isDirect(dictionary)
                    ? dictionary
                    : keep(NSDictionary::cls().dictionaryWithDictionary(&dictionary)));
            step.count = step.table->count();
        }
        if (!visitor_.enter(kind, step.count))
            return false;
        if constexpr (requires { visitor_.knows(*step.table); }) {
            if (step.table)
                step.knowsKeys = visitor_.knows(*step.table);
        }
        lookAhead(step);
        way_.push_back(step);
        return true;
    }

    /// Asks for the memory of what a dictionary holds, all at once.
    // Compilers drop calls of functions that only ask for memory, so these must not be called.
    [[gnu::always_inline]] static void lookAhead(const Step& step)
    {
        constexpr std::size_t kMost = 16;
        const std::size_t count = step.table ? std::min(step.table->places(), kMost) : 0;
        for (std::size_t i = 0; i < count; ++i) {
            const auto* const value = reinterpret_cast<const char*>(step.table->at(i).value.get());
            __builtin_prefetch(value);
        }
    }
    /// Asks for what comes after the next few elements of an array.
    [[gnu::always_inline]] static void lookAhead(const collections::Items& items, std::size_t next)
    {
        constexpr std::size_t kFar = 8;
        constexpr std::size_t kNear = 3;
        if (next + kFar >= items.size())
            return;
        const NSObject* const far = items[next + kFar].get();
        __builtin_prefetch(&headerOf(far));
        __builtin_prefetch(far + 8);
        const NSObject* const near = items[next + kNear].get();
        if (near->isa_ != classOf<NSDictionary>())
            return;
        const auto& table = DictionaryAccess::table(static_cast<const NSDictionary&>(*near));
        if (!table.places())
            return;
        const char* const entries = reinterpret_cast<const char*>(&table.at(0));
        const std::size_t size = std::min<std::size_t>(table.places() * sizeof(PairEntry), 512);
        for (std::size_t at = 0; at < size; at += 64)
            __builtin_prefetch(entries + at);
    }

    /// What has one owner, the container around it, is met once.
    static bool mayBeShared(const NSObject* object)
    {
        return headerOf(object).count.load(std::memory_order_relaxed) != 1;
    }

    /// Comes to a container for a second time.
    bool meet(const Known& known)
    {
        if (!known.height)
            return refuse("a container contains itself");
        if (way_.size() + known.height > kDeepest)
            return refuse("containers are nested too deeply");
        if (!way_.empty())
            way_.back().height = std::max(way_.back().height, known.height);
        visitor_.again(known.answer);
        return true;
    }

    bool isInside(const NSObject* object) const
    {
        return std::any_of(
            way_.begin(), way_.end(), [&](const Step& step) { return step.object == object; });
    }

    /// Goes on in a container until it comes to another one, or to the end.
    bool step()
    {
        Step& step = way_.back();
        if (step.items) {
            while (step.next < step.items->size()) {
                lookAhead(*step.items, step.next);
                NSObject* const object = (*step.items)[step.next++].get();
                const Kind kind = kindOf(object);
                if (!isLeaf(kind))
                    return visit(object, kind);
                if (!visitor_.leaf(kind, *object))
                    return false;
            }
            return leave();
        }
        while ((step.next = step.table->skip(step.next)) < step.table->places()) {
            const PairEntry& entry = step.table->at(step.next++);
            if (!step.knowsKeys && !key(entry.key.get()))
                return false;
            NSObject* const object = entry.value.get();
            const Kind kind = kindOf(object);
            if (!isLeaf(kind))
                return visit(object, kind);
            if (!visitor_.leaf(kind, *object))
                return false;
        }
        return leave();
    }

    static bool isLeaf(Kind kind) { return kind != Kind::none && !isContainer(kind); }

    bool key(NSObject* object)
    {
        return kindOf(object) == Kind::string ? visitor_.key(*object)
                                              : refuse("a dictionary's key is no string");
    }

    bool leave()
    {
        const Step done = way_.back();
        way_.pop_back();
        const std::uint32_t answer = visitor_.leave(done.kind, done.count);
        if (!way_.empty())
            way_.back().height = std::max(way_.back().height, done.height + 1);
        if (done.isShared)
            known_[done.object] = { answer, done.height + 1 };
        return true;
    }

    /// Keeps a snapshot of a container that keeps its elements in its own way.
    template <class T> const T& keep(Ref<T> snapshot)
    {
        const T& kept = *snapshot;
        snapshots_.push_back(std::move(snapshot));
        return kept;
    }

    Visitor& visitor_;
    Failure& failure_;
    std::vector<Step> way_;
    std::unordered_map<const NSObject*, Known> known_;
    std::vector<Ref<NSObject>> snapshots_;
};

}
