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

    /// Answers 32 bits of which any few tell pointers apart.
    std::size_t spread(const void* pointer)
    {
        return static_cast<std::size_t>(
            (reinterpret_cast<std::uintptr_t>(pointer) * 0x9e3779b97f4a7c15u) >> 32);
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

// ---- the way in and out of an object

class Writer::Nesting {
public:
    Nesting(Writer& writer, const Archived& archived)
        : writer_(writer)
        , start_(writer.entries_.size())
    {
        if (writer.frames_.size() > kDeepest)
            refuseToEncode("objects are nested more than " + std::to_string(kDeepest) + " deep");
        if (isStackShort())
            refuseToEncode("objects are nested deeper than this thread's stack allows");
        writer.frames_.add({ start_, &archived.usual });
    }
    ~Nesting()
    {
        writer_.frames_.cutTo(writer_.frames_.size() - 1);
        writer_.entries_.cutTo(start_);
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
    objects_.add({ nullptr, null_, list_.uid(0) });
    static const std::vector<KeyText> none;
    frames_.add({ 0, &none });
}

Writer::~Writer()
{
    constexpr std::size_t kAhead = 8;
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (i + kAhead < objects_.size() && objects_[i + kAhead].object)
            __builtin_prefetch(&headerOf(objects_[i + kAhead].object), 1);
        if (objects_[i].object)
            release(objects_[i].object);
    }
}

void Writer::setDelegate(NSObject* delegate)
{
    delegate_ = delegate;
    const auto answers = [&](SEL sel) { return delegate && delegate->respondsToSelector(sel); };
    tellsBefore_ = answers(selector<"archiver:willEncodeObject:">);
    tellsAfter_ = answers(selector<"archiver:didEncodeObject:">);
    tellsOfReplacing_ = answers(selector<"archiver:willReplaceObject:withObject:">);
}

void Writer::refuseMore()
{
    refuseToEncode("archive already finished, cannot encode anything more");
}

// ---- entries

void Writer::putUnusual(NSString* key, Index value)
{
    const Index text = keyText(key);
    frames_.last().isUsual = false;
    entries_.add({ text, value });
}

void Writer::putUnkeyed(Index value)
{
    requireOpen();
    Frame& frame = frames_.last();
    frame.isUsual = false;
    const std::string key = "$" + std::to_string(frame.unkeyed++);
    entries_.add({ list_.string(std::string_view(key)), value });
}

Writer::Index Writer::keyText(NSString* key)
{
    const std::size_t mask = keys_.size() - 1;
    std::size_t at = spread(key) & mask;
    while (keys_[at].key && keys_[at].key != key)
        at = (at + 1) & mask;
    return key && keys_[at].key ? keys_[at].text : newKeyText(key);
}

Writer::Index Writer::newKeyText(NSString* key)
{
    if (!key)
        raise("NSInvalidArgumentException", "*** -[NSKeyedArchiver encodeObject:forKey:]: nil key");
    const Index text = escapedKey(key);
    // The text of other strings may change.
    if (key->isa_ == classOf<NSString>() && knownKeys_ < kMostKnownKeys) {
        makeRoomForKey();
        enterKey({ Ref<NSString>(key), text });
        ++knownKeys_;
    }
    return text;
}

void Writer::makeRoomForKey()
{
    if ((knownKeys_ + 1) * 2 <= keys_.size())
        return;
    std::vector<KnownKey> old(std::max<std::size_t>(64, keys_.size() * 2));
    old.swap(keys_);
    for (KnownKey& known : old) {
        if (known.key)
            enterKey(std::move(known));
    }
}

void Writer::enterKey(KnownKey known)
{
    const std::size_t mask = keys_.size() - 1;
    std::size_t at = spread(known.key.get()) & mask;
    while (keys_[at].key)
        at = (at + 1) & mask;
    keys_[at] = std::move(known);
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

bool Writer::hasRepeatedKeys(std::size_t start)
{
    if (entries_.size() - start > seenKeys_.size() / 2)
        return true; // or perhaps not
    const std::uint64_t search = ++searches_ << 32;
    const std::size_t mask = seenKeys_.size() - 1;
    for (std::size_t i = start; i < entries_.size(); ++i) {
        const std::uint64_t seen = search | entries_[i].key;
        std::size_t at = entries_[i].key & mask;
        for (; seenKeys_[at] >= search; at = (at + 1) & mask) {
            if (seenKeys_[at] == seen)
                return true;
        }
        seenKeys_[at] = seen;
    }
    return false;
}

/// Answers the keys of the entries from `start` on; none when they are many, or one is not known by its object.
std::vector<Writer::KeyText> Writer::keysFrom(std::size_t start) const
{
    constexpr std::size_t kMost = 64;
    std::vector<KeyText> found;
    if (entries_.size() - start > kMost)
        return found;
    for (std::size_t i = start; i < entries_.size(); ++i) {
        const auto known = std::find_if(keys_.begin(), keys_.end(),
            [&](const KnownKey& each) { return each.key && each.text == entries_[i].key; });
        if (known == keys_.end())
            return {};
        found.push_back({ known->key.get(), known->text });
    }
    return found;
}

/// The last value of a key stays; readers refuse dictionaries with two.
void Writer::dropRepeatedKeys(std::size_t start)
{
    if (!hasRepeatedKeys(start))
        return;
    std::unordered_map<Index, std::size_t> places;
    std::size_t end = start;
    for (std::size_t i = start; i < entries_.size(); ++i) {
        const auto [place, isNew] = places.emplace(entries_[i].key, end);
        entries_[place->second] = entries_[i];
        end += isNew;
    }
    entries_.cutTo(end);
}

// ---- objects

Writer::Uid Writer::newUid(NSObject* object)
{
    const auto uid = static_cast<Uid>(objects_.size());
    objects_.add({ object, kPending, list_.uid(uid) });
    if (object)
        retain(object);
    return uid;
}

/// Lets an object be what has that number.
void Writer::alias(NSObject* object, Uid uid)
{
    aliases_.emplace_back(object);
    numbers_[object] = uid + 1;
}

Writer::Uid Writer::uidOf(NSObject* object, bool isConditional)
{
    std::uint32_t& number = numbers_[object];
    if (!number && archived(object->isa_).isReplaced)
        return uidOfSubstitute(object, isConditional);
    if (!number)
        number = newUid(object) + 1;
    const Uid uid = number - 1;
    if (objects_[uid].record == kPending && !isConditional)
        encode(uid, objects_[uid].object); // others may stand for it
    return uid;
}

Writer::Uid Writer::uidOfSubstitute(NSObject* object, bool isConditional)
{
    const Ref<NSObject> substituted = substitute(object);
    if (substituted == object) {
        numbers_[object] = newUid(object) + 1;
        return uidOf(object, isConditional);
    }
    const Uid uid = substituted ? uidOf(substituted.get(), isConditional) : 0;
    alias(object, uid);
    return uid;
}

Ref<NSObject> Writer::substitute(NSObject* object)
{
    Ref<NSObject> other = replacementObjectForKeyedArchiver(object, &owner_);
    // A substitute speaks for itself: were it asked in turn, two could name each other for ever.
    if (other && other != object && !numbers_[other.get()])
        numbers_[other.get()] = newUid(other.get()) + 1;
    if (other != object && tellsOfReplacing_)
        maybe(delegate())
            ->send<"archiver:willReplaceObject:withObject:">(
                static_cast<NSCoder*>(&owner_), object, other.get());
    return other;
}

void Writer::encode(Uid uid, NSObject* object)
{
    struct Progress {
        Index& operator*() const { return writer.objects_[uid].record; }
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
    const Index written = tellsBefore_ || tellsAfter_ ? encodeAsTold(uid, object) : record(object);
    *progress = written;
}

/// Encodes what the listener wants in place of the object.
Writer::Index Writer::encodeAsTold(Uid uid, NSObject* object)
{
    Ref<NSObject> encoded = object;
    const Ref<NSObject> listener = delegate();
    if (listener && tellsBefore_) {
        encoded = listener->send<"archiver:willEncodeObject:", Ref<NSObject>>(
            static_cast<NSCoder*>(&owner_), object);
        if (encoded != object && tellsOfReplacing_)
            listener->send<"archiver:willReplaceObject:withObject:">(
                static_cast<NSCoder*>(&owner_), object, encoded.get());
        if (encoded && !numbers_[encoded.get()])
            alias(encoded.get(), uid);
    }
    const Index written = encoded ? record(encoded.get()) : null_;
    objects_[uid].record = written; // the listener may ask
    if (listener && tellsAfter_)
        listener->send<"archiver:didEncodeObject:">(static_cast<NSCoder*>(&owner_), encoded.get());
    return written;
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
    const Nesting nesting(*this, archived);
    entries_.add({ classKey_, 0 });
    object->send<"encodeWithCoder:">(static_cast<NSCoder*>(&owner_));
    if (!frames_.last().isUsual) {
        dropRepeatedKeys(nesting.start());
        if (!std::exchange(archived.hasUsual, true))
            archived.usual = keysFrom(nesting.start() + 1);
    }
    Class* const cls = archived.isRenamed ? classForKeyedArchiver(object) : archived.cls;
    const Index reference = classReference(cls ? cls : archived.cls);
    entries_[nesting.start()].value = reference;
    return list_.dictionary(entries_.from(nesting.start()));
}

// ---- classes

Writer::Archived& Writer::archived(Class* cls)
{
    Archived* const recent = recentClasses_[spread(cls) % recentClasses_.size()];
    return recent && recent->cls == cls ? *recent : lookUp(cls);
}

Writer::Archived& Writer::lookUp(Class* cls)
{
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
    recentClasses_[spread(cls) % recentClasses_.size()] = &found;
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
    const Uid uid = newUid(nullptr);
    const Index record = classRecord(cls);
    objects_[uid].record = record;
    return found.reference = objects_[uid].reference;
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
    lists::Row<Index> records;
    records.reserve(objects_.size());
    for (const Numbered& object : objects_) // those at hand have conditional references alone
        records.add(object.record < kBusy ? object.record : null_);
    const auto text = [&](std::string_view ascii) { return list_.string(ascii); };
    const lists::ArchiveList::Entry entries[] = {
        { text("$version"), list_.integer(100000) },
        { text("$archiver"), text("NSKeyedArchiver") },
        { text("$top"), list_.dictionary(entries_.from(0)) },
        { text("$objects"), list_.array(records.from(0)) },
    };
    const Index top = list_.dictionary(entries);
    return list_.finish(top);
}

}
