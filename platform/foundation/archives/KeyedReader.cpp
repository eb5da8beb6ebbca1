// SPDX-License-Identifier: Apache-2.0
#include "KeyedReaderPrivate.h"

#include "foundation/NSArray.h"
#include "foundation/NSDate.h"
#include "foundation/NSError.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSString.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle::archives {

using lists::Kind;

namespace {

    constexpr std::size_t kCredit = std::size_t { 64 } << 20;
    constexpr std::size_t kLook = 16; // what looking at a key or name counts for, in bytes

    bool isKindOf(Class* cls, Class* parent)
    {
        while (cls && cls != parent)
            cls = cls->super_;
        return cls != nullptr;
    }

    /// Answers whether objects of a class can be built by the name of their class: classes, protocols and closures are
    /// objects that only the runtime makes.
    bool isBuildable(Class* cls)
    {
        return !class_isMetaClass(cls) && !isKindOf(cls, brindle::classOf<Protocol>())
            && !isKindOf(cls, closureClass())
            && class_respondsToSelector(cls, selector<"initWithCoder:">);
    }

    Class* classOfKind(Kind kind)
    {
        switch (kind) {
        case Kind::boolean:
        case Kind::integer:
        case Kind::real:
            return brindle::classOf<NSNumber>();
        case Kind::string:
            return brindle::classOf<NSString>();
        case Kind::data:
            return brindle::classOf<NSData>();
        case Kind::date:
            return brindle::classOf<NSDate>();
        default:
            return nullptr;
        }
    }

    std::string quotedNames(std::span<Class* const> classes)
    {
        std::string text;
        for (Class* const cls : classes)
            text += (text.empty() ? "'" : ", '") + std::string(class_getName(cls)) + "'";
        return text.empty() ? "none" : text;
    }

}

// ---- the way in and out of an object

class Reader::Nesting {
public:
    Nesting(Reader& reader, Uid uid, Index record)
        : reader_(reader)
        , uid_(uid)
    {
        reader.frames_.push_back({ reader.list_.keys(record), reader.list_.values(record) });
        reader.states_[uid] = State::busy;
    }
    ~Nesting()
    {
        reader_.frames_.pop_back();
        if (reader_.states_[uid_] == State::busy) { // left by an exception
            reader_.states_[uid_] = State::unknown;
            reader_.built_[uid_] = nullptr;
        }
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    Reader& reader_;
    Uid uid_;
};

Reader::Allowing::Allowing(Reader& reader, std::span<Class* const> classes)
    : reader_(reader)
    , before_(std::exchange(reader.allowed_, classes))
{
}

Reader::Reader(NSKeyedUnarchiver& owner)
    : owner_(owner)
{
}

void Reader::setDelegate(NSObject* delegate)
{
    delegate_ = delegate;
    const auto answers = [&](SEL sel) { return delegate && delegate->respondsToSelector(sel); };
    replacesDecoded_ = answers(selector<"unarchiver:didDecodeObject:">);
    tellsOfReplacing_ = answers(selector<"unarchiver:willReplaceObject:withObject:">);
}

std::nullptr_t Reader::fail(const std::string& reason)
{
    const std::string text = "*** -[NSKeyedUnarchiver decodeObjectForKey:]: " + reason;
    if (owner_.decodingFailurePolicy() == NSDecodingFailurePolicyRaiseException)
        raise("NSInvalidUnarchiveOperationException", text);
    Ref<NSError> error;
    reportError(&error, NSCoderReadCorruptError,
        { { NSDebugDescriptionErrorKey, stringFrom(text).get() } });
    CoderAccess::keepFailure(owner_, error.get());
    return nullptr;
}

bool Reader::charge(std::size_t bytes)
{
    if (bytes > credit_) {
        fail("the objects are much larger than the archive they stand in");
        return false;
    }
    credit_ -= bytes;
    return true;
}

// ---- opening

bool Reader::open(const NSData* data) { return data && openList(data) && readTop(); }

bool Reader::openList(const NSData* data)
{
    lists::Failure failure;
    if (lists::BinaryListReader::isBinary(bytesOf(data))) {
        data_ = cast<NSData>(data->copy());
    } else {
        // Archives in another form are read by those who know it, and kept in the one form that is known here.
        const auto& plists = NSPropertyListSerialization::cls();
        NSPropertyListFormat format {};
        const Ref<NSObject> list = plists.propertyListWithData_options_format_error(
            const_cast<NSData*>(data), NSPropertyListImmutable, &format, nullptr);
        if (!list || format != NSPropertyListXMLFormat_v1_0)
            return false;
        data_ = plists.dataWithPropertyList_format_options_error(
            list.get(), NSPropertyListBinaryFormat_v1_0, 0, nullptr);
    }
    return data_ && list_.open(bytesOf(data_.get()), failure);
}

bool Reader::readTop()
{
    const Index dictionary = list_.top();
    if (list_.kind(dictionary) != Kind::dictionary)
        return false;
    const auto value = [&](std::string_view key, Kind kind) {
        const Index found = list_.find(dictionary, key);
        return found < list_.count() && list_.kind(found) == kind ? found : kNowhere;
    };
    const Index version = value("$version", Kind::integer);
    const Index archiver = value("$archiver", Kind::string);
    top_ = value("$top", Kind::dictionary);
    objects_ = value("$objects", Kind::array);
    if (version == kNowhere || archiver == kNowhere || top_ == kNowhere || objects_ == kNowhere)
        return false;
    if (list_.integer(version) != 100000 || list_.ascii(archiver) != "NSKeyedArchiver")
        return false;
    const auto objects = list_.elements(objects_);
    if (!objects.size() || list_.kind(objects[0]) != Kind::string
        || list_.ascii(objects[0]) != "$null")
        return false;
    built_.resize(objects.size());
    states_.resize(objects.size());
    credit_ = kCredit + 20 * bytesOf(data_.get()).size();
    frames_.push_back({ list_.keys(top_), list_.values(top_) });
    isFinished = false;
    return true;
}

// ---- values

Reader::Index Reader::plain(Index value) const
{
    if (value == kNowhere || list_.kind(value) != Kind::uid)
        return value;
    const Uid uid = list_.uid(value);
    const auto objects = list_.elements(objects_);
    return uid > 0 && uid < objects.size() ? objects[uid] : kNowhere;
}

Ref<NSObject> Reader::object(Index value, NSString* key)
{
    if (value == kNowhere)
        return nullptr;
    const Kind kind = list_.kind(value);
    if (kind == Kind::uid)
        return objectAt(list_.uid(value), key);
    if (lists::isContainer(kind))
        return fail("the value of key (" + utf8Of(key) + ") is no object");
    if (!isAllowed(classOfKind(kind), key))
        return nullptr;
    return leaf(value);
}

Ref<NSObject> Reader::objectAt(Uid uid, NSString* key)
{
    if (uid == 0)
        return nullptr;
    if (uid >= states_.size())
        return fail("reference " + std::to_string(uid) + " of key (" + utf8Of(key)
            + ") leads out of the archive");
    if (states_[uid] != State::unknown) {
        const Ref<NSObject>& object = built_[uid];
        if (object && isSecure && !isAllowed(object->classObject(), key))
            return nullptr;
        return object;
    }
    const Index record = list_.elements(objects_)[uid];
    const Kind kind = list_.kind(record);
    if (kind == Kind::dictionary)
        return build(uid, record, key);
    if (kind == Kind::string && list_.ascii(record) == "$null")
        return nullptr; // an object that was only referred to
    Class* const cls = classOfKind(kind);
    if (!cls)
        return fail("the object of key (" + utf8Of(key) + ") has no class");
    if (!isAllowed(cls, key))
        return nullptr;
    Ref<NSObject> object = leaf(record);
    if (object && replacesDecoded_)
        object = substituted(std::move(object));
    states_[uid] = State::done;
    built_[uid] = object;
    return object;
}

Ref<NSObject> Reader::leaf(Index value)
{
    const Kind kind = list_.kind(value);
    const bool isLong = kind == Kind::string || kind == Kind::data;
    return !isLong || charge(list_.length(value)) ? list_.leaf(value) : nullptr;
}

Ref<NSObject> Reader::build(Uid uid, Index record, NSString* key)
{
    const Named* const named = buildable(record, key);
    return named ? initialized(uid, record, *named) : nullptr;
}

// Apart from `build`, whose frames lie in each other by the thousand: the texts would make them large.
const Reader::Named* Reader::buildable(Index record, NSString* key)
{
    if (!charge(list_.length(record) * kLook))
        return nullptr;
    const Named* const named = classOfRecord(record);
    if (!named)
        return fail("the object of key (" + utf8Of(key) + ") has no class");
    if (!named->cls)
        return fail("cannot decode object of class (" + named->name + ") for key (" + utf8Of(key)
            + "); the class may be defined in source code or a library that is not linked");
    if (isSecure) {
        if (!isAllowed(named->cls, key))
            return nullptr;
        if (!named->supportsSecureCoding)
            return fail("class '" + named->name + "' of the value for key (" + utf8Of(key)
                + ") does not support secure coding");
    }
    if (frames_.size() > kDeepest)
        return fail("objects are nested more than " + std::to_string(kDeepest) + " deep");
    if (isStackShort())
        return fail("objects are nested deeper than this thread's stack allows");
    return named;
}

Ref<NSObject> Reader::initialized(Uid uid, Index record, const Named& named)
{
    const Nesting nesting(*this, uid, record);
    Ref<NSObject> object = NSObject::Meta { named.cls }.alloc();
    built_[uid] = object; // for those that refer to it before it is complete
    Ref<NSObject> made
        = object->send<"initWithCoder:", Ref<NSObject>>(static_cast<NSCoder*>(&owner_));
    if (made && (named.isReplaced || replacesDecoded_))
        made = substituted(std::move(made));
    if (made != object)
        built_[uid] = made;
    states_[uid] = State::done;
    return made;
}

Ref<NSObject> Reader::substituted(Ref<NSObject> object)
{
    const auto tell = [&](const Ref<NSObject>& other) {
        if (other != object && tellsOfReplacing_)
            maybe(delegate())
                ->send<"unarchiver:willReplaceObject:withObject:">(
                    static_cast<NSCoder*>(&owner_), object.get(), other.get());
    };
    Ref<NSObject> other = awakeAfterUsingCoder(object, &owner_);
    tell(other);
    object = std::move(other);
    if (!object || !replacesDecoded_)
        return object;
    const Ref<NSObject> listener = delegate();
    if (!listener)
        return object;
    other = listener->send<"unarchiver:didDecodeObject:", Ref<NSObject>>(
        static_cast<NSCoder*>(&owner_), object.get());
    tell(other);
    return other;
}

bool Reader::objects(Index value, NSString* key, std::vector<Ref<NSObject>>& items)
{
    if (value == kNowhere || list_.kind(value) != Kind::array) {
        fail("the value of key (" + utf8Of(key) + ") is no list of objects");
        return false;
    }
    const auto elements = list_.elements(value);
    if (!charge(elements.size() * sizeof(Ref<NSObject>)))
        return false;
    items.reserve(elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        Ref<NSObject> item
            = list_.kind(elements[i]) == Kind::uid ? object(elements[i], key) : nullptr;
        if (CoderAccess::hasFailed(owner_))
            return false;
        if (!item) {
            fail("the list of key (" + utf8Of(key) + ") holds what is no object");
            return false;
        }
        items.push_back(std::move(item));
    }
    return true;
}

// ---- classes

bool Reader::isAllowed(Class* cls, NSString* key)
{
    if (!isSecure)
        return true;
    for (Class* const allowed : allowed_) {
        if (isKindOf(cls, allowed))
            return true;
    }
    fail("value for key (" + utf8Of(key) + ") was of unexpected class '" + class_getName(cls)
        + "'; allowed classes are: " + quotedNames(allowed_));
    return false;
}

Class* Reader::classOf(Index value)
{
    if (value == kNowhere || replacesDecoded_ || isSecure)
        return nullptr;
    if (list_.kind(value) != Kind::uid)
        return classOfKind(list_.kind(value));
    const Uid uid = list_.uid(value);
    if (uid == 0 || uid >= states_.size())
        return nullptr;
    if (states_[uid] != State::unknown)
        return built_[uid] ? built_[uid]->classObject() : nullptr;
    const Index record = list_.elements(objects_)[uid];
    if (list_.kind(record) == Kind::dictionary) {
        const Named* const named = classOfRecord(record);
        return named && !named->isReplaced ? named->cls : nullptr;
    }
    return list_.kind(record) == Kind::string && list_.ascii(record) == "$null"
        ? nullptr
        : classOfKind(list_.kind(record));
}

const Reader::Named* Reader::classOfRecord(Index record)
{
    const Index reference = list_.find(record, "$class");
    if (reference >= list_.count() || list_.kind(reference) != Kind::uid)
        return nullptr;
    const Uid uid = list_.uid(reference);
    if (const auto known = named_.find(uid); known != named_.end())
        return &known->second;
    if (uid >= states_.size())
        return nullptr;
    const Index description = list_.elements(objects_)[uid];
    Named named;
    if (list_.kind(description) != Kind::dictionary || !readClass(description, named))
        return nullptr;
    resolve(description, named);
    return &named_.emplace(uid, std::move(named)).first->second;
}

/// A name must lead its own chain, or the record was not made by an archiver.
bool Reader::readClass(Index record, Named& named)
{
    const Index name = list_.find(record, "$classname");
    const Index chain = list_.find(record, "$classes");
    if (name >= list_.count() || chain >= list_.count() || list_.kind(name) != Kind::string
        || list_.kind(chain) != Kind::array)
        return false;
    const auto parents = list_.elements(chain);
    for (std::size_t i = 0; i < parents.size(); ++i) {
        if (list_.kind(parents[i]) != Kind::string || !charge(kLook + list_.length(parents[i])))
            return false;
    }
    if (!charge(list_.length(name)))
        return false;
    named.name = utf8Of(list_.string(name));
    return parents.size() > 0 && named.name.find('\0') == std::string::npos
        && utf8Of(list_.string(parents[0])) == named.name;
}

void Reader::resolve(Index record, Named& named)
{
    Class* cls = classNamed(named.name);
    const Index hints = list_.find(record, "$classhints");
    if (!cls && hints < list_.count() && list_.kind(hints) == Kind::array) {
        const auto names = list_.elements(hints);
        for (std::size_t i = 0; i < names.size() && !cls; ++i) {
            if (list_.kind(names[i]) == Kind::string && charge(kLook + list_.length(names[i])))
                cls = classNamed(utf8Of(list_.string(names[i])));
        }
    }
    if (!cls)
        cls = classFromDelegate(record, named.name);
    if (cls)
        cls = classForKeyedUnarchiver(NSObject::Meta { cls });
    if (!cls || !isBuildable(cls))
        return;
    constexpr SEL awake = selector<"awakeAfterUsingCoder:">;
    named.cls = cls;
    named.supportsSecureCoding = archives::supportsSecureCoding(cls);
    named.isReplaced = class_getMethodImplementation(cls, awake)
        != class_getMethodImplementation(brindle::classOf<NSObject>(), awake);
}

Class* Reader::classNamed(const std::string& name) const
{
    if (const auto found = classes.find(name); found != classes.end())
        return found->second;
    Class* const cls
        = NSKeyedUnarchiver::cls().classForClassName(stringFrom(std::string_view(name)).get());
    return cls ? cls : objc_getClass(name.c_str());
}

Class* Reader::classFromDelegate(Index record, const std::string& name) const
{
    const Ref<NSObject> listener = delegate();
    constexpr SEL question = selector<"unarchiver:cannotDecodeObjectOfClassName:originalClasses:">;
    if (!listener || !listener->respondsToSelector(question))
        return nullptr;
    std::vector<Ref<NSObject>> chain;
    const auto parents = list_.elements(list_.find(record, "$classes"));
    for (std::size_t i = 0; i < parents.size(); ++i)
        chain.emplace_back(list_.string(parents[i]));
    return listener->send<"unarchiver:cannotDecodeObjectOfClassName:originalClasses:", Class*>(
        static_cast<NSCoder*>(&owner_), stringFrom(std::string_view(name)).get(),
        makeArray(std::move(chain)).get());
}

}
