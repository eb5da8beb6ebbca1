// SPDX-License-Identifier: Apache-2.0
#include "KeyedReaderPrivate.h"

#include "foundation/NSString.h"

namespace brindle::archives {

namespace {

    constexpr std::size_t kManyKeys = 64;

}

Reader::KnownKey* Reader::knownKey(NSString* key)
{
    if (key->isa_ != brindle::classOf<NSString>())
        return nullptr; // its text may change
    const auto start = [&](const NSString* text) {
        return static_cast<std::size_t>(
                   (reinterpret_cast<std::uintptr_t>(text) * 0x9e3779b97f4a7c15u) >> 32)
            & (keys_.size() - 1);
    };
    if ((knownKeys_ + 1) * 2 > keys_.size() && knownKeys_ < kMostKnownKeys) {
        std::vector<KnownKey> old(std::max<std::size_t>(64, keys_.size() * 2));
        old.swap(keys_);
        for (KnownKey& known : old) {
            if (!known.key)
                continue;
            std::size_t at = start(known.key.get());
            while (keys_[at].key)
                at = (at + 1) & (keys_.size() - 1);
            keys_[at] = std::move(known);
        }
    }
    std::size_t at = start(key);
    for (; keys_[at].key; at = (at + 1) & (keys_.size() - 1)) {
        if (keys_[at].key == key)
            return &keys_[at];
    }
    if (knownKeys_ >= kMostKnownKeys)
        return nullptr;
    ++knownKeys_;
    keys_[at].key = key;
    return &keys_[at];
}

bool Reader::isReady()
{
    if (isFinished)
        fail("the unarchiver has finished");
    return !isFinished && !CoderAccess::hasFailed(owner_);
}

Reader::Index Reader::find(NSString* key)
{
    if (!key || !isReady())
        return kNowhere;
    Frame& frame = frames_.back();
    KnownKey* const known = knownKey(key);
    if (known && known->text != kNowhere) {
        const Index found = findKnown(frame, *known);
        if (found != kNowhere)
            return found;
    }
    // The same text may stand in the archive twice.
    const strings::Contents text(key);
    Index found = kNowhere;
    if (text->size() > 0 && text.view()[0] == u'$') {
        strings::TextBuilder escaped;
        escaped.add(u'$');
        escaped.add(text.view());
        found = findText(frame, strings::Contents(escaped.string().get()).view());
    } else {
        found = findText(frame, text.view());
    }
    if (known && found != kNowhere)
        known->text = frame.keys[frame.last];
    return found;
}

Reader::Index Reader::findUnkeyed()
{
    if (!isReady())
        return kNowhere;
    Frame& frame = frames_.back();
    const std::string key = "$" + std::to_string(frame.unkeyed++);
    return findText(frame, std::string_view(key));
}

Reader::Index Reader::findKnown(Frame& frame, const KnownKey& known)
{
    const auto findBetween = [&](std::size_t from, std::size_t end) {
        for (std::size_t i = from; i < end; ++i) {
            if (frame.keys[i] == known.text) {
                frame.last = i;
                return frame.values[i];
            }
        }
        return kNowhere;
    };
    const Index found = findBetween(frame.last, frame.keys.size());
    return found == kNowhere ? findBetween(0, frame.last) : found;
}

Reader::Index Reader::findText(Frame& frame, strings::View text)
{
    if (frame.keys.size() >= kManyKeys && text.isNarrow())
        return findAmongMany(frame, text.narrow());
    for (std::size_t i = 0; i < frame.keys.size(); ++i) {
        if (isText(frame.keys[i], text)) {
            frame.last = i;
            return frame.values[i];
        }
    }
    return kNowhere;
}

/// Old archives have a key for each element of a list.
Reader::Index Reader::findAmongMany(Frame& frame, std::string_view text)
{
    if (!frame.places) {
        frame.places = std::make_unique<Places>();
        for (std::size_t i = 0; i < frame.keys.size(); ++i) {
            const std::string_view key = list_.ascii(frame.keys[i]);
            if (key.data())
                frame.places->emplace(key, i); // the first of equal ones
        }
    }
    const auto found = frame.places->find(text);
    if (found == frame.places->end())
        return kNowhere;
    frame.last = found->second;
    return frame.values[frame.last];
}

bool Reader::isText(Index index, strings::View text) const
{
    const std::string_view ascii = list_.ascii(index);
    if (ascii.data())
        return text.isNarrow() && ascii == text.narrow();
    return !text.isNarrow()
        && strings::equal(strings::Contents(list_.string(index).get()).view(), text);
}

}
