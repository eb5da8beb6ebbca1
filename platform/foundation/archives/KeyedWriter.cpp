// SPDX-License-Identifier: Apache-2.0
#include "KeyedWriterPrivate.h"

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSNumber.h"
#include "foundation/NSString.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle::archives {

namespace {

    constexpr std::uint32_t kPending = ~std::uint32_t {}; // known, and perhaps never encoded
    constexpr std::uint32_t kBusy = kPending - 1; // its encoding has begun
    constexpr std::size_t kMostKnownKeys = 4096;

    /// Answers 32 bits of which any few tell pointers apart.
    std::size_t spread(const void* pointer)
    {
        return static_cast<std::size_t>(
            (reinterpret_cast<std::uintptr_t>(pointer) * 0x9e3779b97f4a7c15u) >> 32);
    }

    /// Answers 32 bits that tell objects apart, near each other for objects that lie near each other: those are most
    /// often made, and archived, one after the other.
    std::size_t placeOf(const NSObject* object)
    {
        constexpr std::size_t kNear
            = 512; // larger pieces with gaps between objects would cover each other
        const auto address = reinterpret_cast<std::uintptr_t>(object);
        return static_cast<std::uint32_t>(address % kNear / 16
            + hashing::mixed(address / kNear ^ hashing::kFactor, 0xe7037ed1a0b428dbu));
    }

    [[noreturn]] void refuseToEncode(const std::string& reason)
    {
        raise("NSInvalidArchiveOperationException",
            "*** -[NSKeyedArchiver encodeObject:forKey:]: " + reason);
    }

    template <Text Selector> bool overrides(Class* cls)
    {
        return class_getMethodImplementation(cls, selector<Selector>)
            != class_getMethodImplementation(classOf<NSObject>(), selector<Selector>);
    }

}

// ---- identity

std::uint32_t IdentityTable::find(const NSObject* object) const
{
    if (!slots_.size())
        return kNowhere;
    const std::size_t hash = placeOf(object);
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t at = hash & mask; slots_[at]; at = (at + 1) & mask) {
        if (slots_[at] >> 32 != hash)
            continue;
        const Entry& entry = entries_[static_cast<std::uint32_t>(slots_[at]) - 1];
        if (entry.object.get() == object)
            return entry.value;
    }
    return kNowhere;
}

void IdentityTable::add(NSObject* object, std::uint32_t value)
{
    entries_.push_back({ Ref<NSObject>(object), value });
    if (2 * entries_.size() > slots_.size()) {
        const lists::Row<Slot> old
            = std::exchange(slots_, lists::Row<Slot>(std::max<std::size_t>(64, slots_.size() * 2)));
        for (const Slot slot : old) {
            if (slot)
                enter(slot);
        }
    }
    enter(Slot { placeOf(object) } << 32 | entries_.size());
}

void IdentityTable::enter(Slot slot)
{
    std::size_t at = (slot >> 32) & (slots_.size() - 1);
    while (slots_[at])
        at = (at + 1) & (slots_.size() - 1);
    slots_[at] = slot;
}

// ---- the way in and out of an object

class Writer::Nesting {
public:
    explicit Nesting(Writer& writer)
        : writer_(writer)
        , start_(writer.entries_.size())
    {
        if (writer.frames_.size() > kDeepest)
            refuseToEncode("objects are nested more than " + std::to_string(kDeepest) + " deep");
        if (isStackShort())
            refuseToEncode("objects are nested deeper than this thread's stack allows");
        writer.frames_.push_back({ start_ });
    }
    ~Nesting()
    {
        writer_.frames_.pop_back();
        writer_.entries_.resize(start_);
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    std::size_t start() const { return start_; }

private:
    Writer& writer_;
    std::size_t start_;
};

Writer::Writer(NSKeyedArchiver& owner)
    : owner_(owner)
    , null_(list_.string(std::string_view("$null")))
    , classKey_(list_.string(std::string_view("$class")))
{
    records_.add(null_);
    references_.add(list_.uid(0));
    frames_.push_back({ 0 });
}

void Writer::setDelegate(NSObject* delegate)
{
    delegate_ = delegate;
    const auto answers = [&](SEL sel) { return delegate && delegate->respondsToSelector(sel); };
    tellsBefore_ = answers(selector<"archiver:willEncodeObject:">);
    tellsAfter_ = answers(selector<"archiver:didEncodeObject:">);
    tellsOfReplacing_ = answers(selector<"archiver:willReplaceObject:withObject:">);
}

void Writer::requireOpen() const
{
    if (isFinished_)
        refuseToEncode("archive already finished, cannot encode anything more");
}

// ---- entries

void Writer::put(NSString* key, Index value)
{
    requireOpen();
    entries_.push_back({ keyText(key), value });
}

void Writer::putUnkeyed(Index value)
{
    requireOpen();
    const std::string key = "$" + std::to_string(frames_.back().unkeyed++);
    entries_.push_back({ list_.string(std::string_view(key)), value });
}

Writer::Index Writer::keyText(NSString* key)
{
    if (!key)
        raise("NSInvalidArgumentException", "*** -[NSKeyedArchiver encodeObject:forKey:]: nil key");
    if (key->isa_ != classOf<NSString>())
        return escapedKey(key); // its text may change
    if ((knownKeys_ + 1) * 2 > keys_.size() && knownKeys_ < kMostKnownKeys) {
        std::vector<KnownKey> old(std::max<std::size_t>(64, keys_.size() * 2));
        old.swap(keys_);
        for (KnownKey& known : old) {
            if (!known.key)
                continue;
            std::size_t at = spread(known.key.get()) & (keys_.size() - 1);
            while (keys_[at].key)
                at = (at + 1) & (keys_.size() - 1);
            keys_[at] = std::move(known);
        }
    }
    std::size_t at = spread(key) & (keys_.size() - 1);
    for (; keys_[at].key; at = (at + 1) & (keys_.size() - 1)) {
        if (keys_[at].key == key)
            return keys_[at].text;
    }
    const Index text = escapedKey(key);
    if (knownKeys_ < kMostKnownKeys) {
        keys_[at] = { Ref<NSString>(key), text };
        ++knownKeys_;
    }
    return text;
}

Writer::Index Writer::escapedKey(NSString* key)
{
    const strings::Contents text(key);
    if (!lists::isPaired(text->size(), [&](std::size_t i) { return text.view()[i]; }))
        raise("NSInvalidArgumentException",
            "*** -[NSKeyedArchiver encodeObject:forKey:]: a key is not UTF-16");
    std::string utf8 = strings::toUtf8(text.view());
    if (utf8.starts_with('$'))
        utf8.insert(0, 1, '$');
    const auto known = keyTexts_.find(utf8);
    if (known != keyTexts_.end())
        return known->second;
    const Index index = list_.string(stringFrom(utf8).get());
    return keyTexts_.emplace(std::move(utf8), index).first->second;
}

void Writer::finishList(std::size_t start, NSString* key)
{
    put(key, list_.array(std::span(elements_).subspan(start)));
}

/// The last value of a key stays; readers refuse dictionaries with two.
void Writer::dropRepeatedKeys(std::size_t start)
{
    constexpr std::size_t kFew = 24;
    const std::size_t count = entries_.size() - start;
    const auto first = entries_.begin() + static_cast<std::ptrdiff_t>(start);
    std::unordered_map<Index, std::size_t> seen;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const Index key = entries_[start + i].key;
        std::size_t at = kept;
        if (count > kFew) {
            at = seen.emplace(key, kept).first->second;
        } else {
            for (at = 0; at < kept && entries_[start + at].key != key; ++at) { }
        }
        entries_[start + at] = entries_[start + i];
        kept = std::max(kept, at + 1);
    }
    entries_.erase(first + static_cast<std::ptrdiff_t>(kept), entries_.end());
}

// ---- objects

Writer::Uid Writer::newUid()
{
    records_.add(kPending);
    references_.add(list_.uid(records_.size() - 1));
    return static_cast<Uid>(records_.size() - 1);
}

Writer::Index Writer::reference(NSObject* object, bool isConditional)
{
    requireOpen();
    return references_[object ? uidOf(object, isConditional) : 0];
}

Writer::Uid Writer::uidOf(NSObject* object, bool isConditional)
{
    Uid uid = identities_.find(object);
    if (uid == IdentityTable::kNowhere) {
        const Ref<NSObject> substituted
            = archived(object->isa_).isReplaced ? substitute(object) : Ref<NSObject>(object);
        if (substituted != object) {
            uid = substituted ? uidOf(substituted.get(), isConditional) : 0;
            identities_.add(object, uid);
            return uid;
        }
        uid = newUid();
        identities_.add(object, uid);
    }
    if (records_[uid] == kPending && !isConditional)
        encode(uid, object);
    return uid;
}

Ref<NSObject> Writer::substitute(NSObject* object)
{
    Ref<NSObject> other = replacementObjectForKeyedArchiver(object, &owner_);
    // A substitute speaks for itself: were it asked in turn, two could name each other for ever.
    if (other && other != object && identities_.find(other.get()) == IdentityTable::kNowhere)
        identities_.add(other.get(), newUid());
    if (other != object && tellsOfReplacing_)
        maybe(delegate())
            ->send<"archiver:willReplaceObject:withObject:">(
                static_cast<NSCoder*>(&owner_), object, other.get());
    return other;
}

void Writer::encode(Uid uid, NSObject* object)
{
    struct Progress {
        Index& operator*() const { return writer.records_[uid]; }
        ~Progress()
        {
            if (**this == kBusy)
                **this = kPending;
        }
        Writer& writer;
        Uid uid;
    };
    const Progress progress { *this, uid };
    *progress = kBusy;
    if (!tellsBefore_ && !tellsAfter_) {
        const Index written = record(object);
        *progress = written;
        return;
    }
    Ref<NSObject> encoded = object;
    const Ref<NSObject> listener = delegate();
    if (listener && tellsBefore_) {
        encoded = listener->send<"archiver:willEncodeObject:", Ref<NSObject>>(
            static_cast<NSCoder*>(&owner_), object);
        if (encoded != object && tellsOfReplacing_)
            listener->send<"archiver:willReplaceObject:withObject:">(
                static_cast<NSCoder*>(&owner_), object, encoded.get());
        if (encoded && identities_.find(encoded.get()) == IdentityTable::kNowhere)
            identities_.add(encoded.get(), uid);
    }
    const Index written = encoded ? record(encoded.get()) : null_;
    *progress = written;
    if (listener && tellsAfter_)
        listener->send<"archiver:didEncodeObject:">(static_cast<NSCoder*>(&owner_), encoded.get());
}

Writer::Index Writer::record(NSObject* object)
{
    Archived& known = archived(object->isa_);
    switch (known.form) {
    case Form::number:
        return number(object);
    case Form::data:
        return list_.data(bytesOf(static_cast<NSData*>(object)));
    case Form::string: {
        const strings::Contents text(static_cast<NSString*>(object));
        // The text of nil, and text that a list cannot hold, are written like objects.
        if (text->isNarrow()
                ? text->narrow() != "$null"
                : lists::isPaired(text->size(), [&](std::size_t i) { return text->wide()[i]; }))
            return list_.string(text.view());
        [[fallthrough]];
    }
    default:
        return dictionary(object, known);
    }
}

Writer::Index Writer::number(NSObject* object)
{
    auto* const number = static_cast<NSNumber*>(object);
    switch (*number->objCType()) {
    case 'B':
        return list_.boolean(number->boolValue());
    case 'f':
        return list_.single(number->floatValue());
    case 'd':
        return list_.real(number->doubleValue());
    case 'Q':
        return list_.natural(number->unsignedLongLongValue());
    default:
        return list_.integer(number->longLongValue());
    }
}

Writer::Index Writer::dictionary(NSObject* object, Archived& archived)
{
    const Nesting nesting(*this);
    entries_.push_back({ classKey_, 0 });
    object->send<"encodeWithCoder:">(static_cast<NSCoder*>(&owner_));
    dropRepeatedKeys(nesting.start());
    Class* const cls = archived.isRenamed ? classForKeyedArchiver(object) : archived.cls;
    const Index reference = classReference(cls ? cls : archived.cls);
    entries_[nesting.start()].value = reference;
    return list_.dictionary(std::span(entries_).subspan(nesting.start()));
}

// ---- classes

Writer::Archived& Writer::archived(Class* cls)
{
    Archived*& recent = recentClasses_[spread(cls) % recentClasses_.size()];
    if (recent && recent->cls == cls)
        return *recent;
    Archived& found = classes_[cls];
    if (!found.cls) {
        found.cls = cls;
        found.form = cls == classOf<NSString>() ? Form::string
            : cls == classOf<NSNumber>()        ? Form::number
            : cls == classOf<NSData>()          ? Form::data
                                                : Form::object;
        found.isReplaced = overrides<"replacementObjectForKeyedArchiver:">(cls)
            || overrides<"replacementObjectForCoder:">(cls);
        found.isRenamed = overrides<"classForKeyedArchiver">(cls) || overrides<"classForCoder">(cls)
            || overrides<"class">(cls);
    }
    recent = &found;
    return found;
}

Writer::Index Writer::classReference(Class* cls)
{
    Archived& found = archived(cls);
    if (found.reference)
        return found.reference;
    if (isSecure && !supportsSecureCoding(cls))
        refuseToEncode(std::string("class '") + class_getName(cls)
            + "' does not support secure coding, which this archiver requires");
    const Uid uid = newUid();
    records_[uid] = classRecord(cls);
    return found.reference = references_[uid];
}

Writer::Index Writer::classRecord(Class* cls)
{
    const Index name = list_.string(nameOf(cls).get());
    std::vector<Index> chain { name };
    for (Class* parent = cls->super_; parent; parent = parent->super_)
        chain.push_back(list_.string(nameOf(parent).get()));
    std::vector<lists::ArchiveList::Entry> entries {
        { list_.string(std::string_view("$classname")), name },
        { list_.string(std::string_view("$classes")), list_.array(chain) },
    };
    const Ref<NSArray> fallbacks = classFallbacksForKeyedArchiver(NSObject::Meta { cls });
    if (fallbacks && fallbacks->count() > 0) {
        std::vector<Index> hints;
        for (NSObject* hint : *fallbacks)
            hints.push_back(list_.string(hint->description().get()));
        entries.push_back({ list_.string(std::string_view("$classhints")), list_.array(hints) });
    }
    return list_.dictionary(entries);
}

Ref<NSString> Writer::nameOf(Class* cls) const
{
    if (const auto found = names.find(cls); found != names.end())
        return found->second;
    if (Ref<NSString> name = NSKeyedArchiver::cls().classNameForClass(cls))
        return name;
    return stringFrom(std::string_view(class_getName(cls)));
}

// ---- the end

Ref<NSData> Writer::finish()
{
    isFinished_ = true;
    dropRepeatedKeys(0);
    for (Index& record : records_) {
        if (record >= kBusy)
            record = null_; // only conditional references were made to it
    }
    const auto text = [&](std::string_view ascii) { return list_.string(ascii); };
    const lists::ArchiveList::Entry entries[] = {
        { text("$version"), list_.integer(100000) },
        { text("$archiver"), text("NSKeyedArchiver") },
        { text("$top"), list_.dictionary(entries_) },
        { text("$objects"), list_.array(records_) },
    };
    const Index top = list_.dictionary(entries);
    return list_.finish(top);
}

}
