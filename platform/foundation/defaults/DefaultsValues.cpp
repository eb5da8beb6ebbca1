// SPDX-License-Identifier: Apache-2.0
// What defaults may hold, and what was changed of it.

#include <cmath>
#include <unordered_map>
#include <vector>

#include "DefaultsStorePrivate.h"
#include "foundation/CollectionsPrivate.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSNull.h"
#include "foundation/NSNumber.h"

namespace brindle::defaults {

namespace {

    constexpr unsigned kDeepestList
        = 511; // with the dictionary that holds the value, the most that is written

    class Freezer {
    public:
        Ref<NSObject> freeze(NSObject* object, unsigned depth)
        {
            if (object->isKindOfClass(NSString::cls()))
                return text(static_cast<NSString*>(object));
            if (object->isKindOfClass(NSNumber::cls()))
                return object;
            if (object->isKindOfClass(NSData::cls()))
                return object->copy();
            if (object->isKindOfClass(NSDate::cls()))
                return isFinite(static_cast<NSDate*>(object)) ? object : nullptr;
            if (object->isKindOfClass(NSArray::cls()))
                return once(object, depth, &Freezer::array);
            if (object->isKindOfClass(NSDictionary::cls()))
                return once(object, depth, &Freezer::dictionary);
            return nullptr;
        }

    private:
        static Ref<NSObject> text(NSString* string)
        {
            if (string->canBeConvertedToEncoding(NSUTF8StringEncoding))
                return string->copy();
            return stringFrom(utf8Of(string));
        }
        static bool isFinite(NSDate* date)
        {
            return std::isfinite(date->timeIntervalSinceReferenceDate());
        }

        /// Each container is frozen once, however many hold it; one that is being frozen holds itself.
        Ref<NSObject> once(NSObject* container, unsigned depth,
            Ref<NSObject> (Freezer::*make)(NSObject*, unsigned))
        {
            if (depth > kDeepestList)
                return nullptr;
            const auto [place, isNew] = done_.try_emplace(container);
            if (!isNew)
                return place->second;
            Ref<NSObject> made = (this->*make)(container, depth);
            if (made)
                done_[container] = made;
            return made;
        }
        Ref<NSObject> array(NSObject* container, unsigned depth)
        {
            collections::Items items;
            for (NSObject* item : *static_cast<NSArray*>(container)) {
                Ref<NSObject> made = freeze(item, depth + 1);
                if (!made)
                    return nullptr;
                items.push_back(std::move(made));
            }
            std::vector<NSObject*> lent;
            for (const Ref<NSObject>& item : items)
                lent.push_back(item.get());
            return NSArray::cls().arrayWithObjects_count(lent.data(), lent.size());
        }
        Ref<NSObject> dictionary(NSObject* container, unsigned depth)
        {
            const auto all = make<NSMutableDictionary>();
            const auto* const source = static_cast<NSDictionary*>(container);
            for (auto at = source->begin(); at != source->end(); ++at) {
                if (!(*at)->isKindOfClass(NSString::cls()))
                    return nullptr;
                const Ref<NSObject> value = freeze(at.value(), depth + 1);
                if (!value)
                    return nullptr;
                all->setObject_forKey(value.get(), text(static_cast<NSString*>(*at)).get());
            }
            return all->copy();
        }

        std::unordered_map<NSObject*, Ref<NSObject>> done_;
    };

    bool isBoolean(NSObject* value)
    {
        return value->isKindOfClass(NSNumber::cls())
            && *static_cast<NSNumber*>(value)->objCType() == 'B';
    }

    /// Containers are not searched for what differs in them: they count as different.
    bool isSame(NSObject* one, NSObject* other)
    {
        if (one == other)
            return true;
        return one && other && !one->isKindOfClass(NSArray::cls())
            && !one->isKindOfClass(NSDictionary::cls()) && isBoolean(one) == isBoolean(other)
            && one->isEqual(other);
    }

}

Ref<NSObject> frozen(NSObject* object) { return object ? Freezer().freeze(object, 1) : nullptr; }

bool setValue(NSMutableDictionary* values, NSObject* key, NSObject* value)
{
    const bool differs = !isSame(values->objectForKey(key).get(), value);
    if (value)
        values->setObject_forKey(value, key);
    else
        values->removeObjectForKey(key);
    return differs;
}

void Changes::set(NSObject* key, NSObject* value)
{
    if (!keys_)
        keys_ = make<NSMutableDictionary>();
    keys_->setObject_forKey(value ? value : NSNull::cls().null().get(), key);
}

void Changes::startFromNothing()
{
    fromNothing_ = true;
    keys_ = nullptr;
}

void Changes::add(const Changes& later)
{
    if (later.fromNothing_)
        startFromNothing();
    if (!later.keys_)
        return;
    if (!keys_)
        keys_ = make<NSMutableDictionary>();
    keys_->addEntriesFromDictionary(later.keys_.get());
}

bool Changes::applyTo(NSMutableDictionary* values) const
{
    bool differs = fromNothing_ && values->count() > 0;
    if (fromNothing_)
        values->removeAllObjects();
    if (!keys_)
        return differs;
    for (auto at = keys_->begin(); at != keys_->end(); ++at) {
        NSObject* const value = at.value()->isKindOfClass(NSNull::cls()) ? nullptr : at.value();
        differs |= setValue(values, *at, value);
    }
    return differs;
}

}
