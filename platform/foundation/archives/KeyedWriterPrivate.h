// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ArchiveListPrivate.h"
#include "KeyedArchivePrivate.h"
#include "ObjectNumbersPrivate.h"
#include "foundation/NSKeyedArchiver.h"

namespace brindle::archives {

/// What an archiver is made of: the list in the making, the objects met so far, and the entries of the objects that
/// are being encoded, innermost last.
class Writer {
public:
    using Index = lists::ArchiveList::Index;

    explicit Writer(NSKeyedArchiver& owner);
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    lists::ArchiveList& list() { return list_; }
    /// Adds an entry to the object that is being encoded.
    void put(NSString* key, Index value)
    {
        requireOpen();
        Frame& frame = frames_.last();
        if (frame.next < frame.usual->size() && (*frame.usual)[frame.next].key == key)
            entries_.add({ (*frame.usual)[frame.next++].text, value });
        else
            putUnusual(key, value);
    }
    /// Answers the reference that stands for an object, which is encoded now if it was not before.
    Index reference(NSObject* object, bool isConditional = false)
    {
        requireOpen();
        return objects_[object ? uidOf(object, isConditional) : 0].reference;
    }
    /// Adds an entry under a key of this coder's own.
    void putUnkeyed(Index value);
    /// Raises when the archive is finished.
    void requireOpen() const
    {
        if (isFinished_) [[unlikely]]
            refuseMore();
    }

    std::size_t beginList() const { return elements_.size(); }
    void addToList(Index element) { elements_.push_back(element); }
    void finishList(std::size_t start, NSString* key);
    void dropList(std::size_t start) { elements_.resize(start); }

    bool isFinished() const { return isFinished_; }
    Ref<NSData> finish();

    void setDelegate(NSObject* delegate);
    Ref<NSObject> delegate() const { return delegate_.get(); }

    NamesByClass names;
    bool isSecure = false;

private:
    using Uid = std::uint32_t;
    enum class Form : unsigned char { string, number, data, object };

    /// A key and its text in the list.
    struct KeyText {
        const NSString* key;
        Index text;
    };
    /// What is known of a class whose instances are archived.
    struct Archived {
        Class* cls = nullptr;
        Form form = Form::object;
        bool isReplaced = false; ///< instances may name a substitute
        bool isRenamed = false; ///< instances may be archived as another class
        Index reference = 0; ///< to the class's own record; 0 before it is written
        bool hasUsual = false; ///< an instance was encoded
        std::vector<KeyText> usual; ///< the first one's keys in their order, all different
    };
    /// An object that is being encoded.
    struct Frame {
        std::size_t start;
        const std::vector<KeyText>* usual; ///< of its class
        std::size_t next = 0; ///< so many keys came as usual
        bool isUsual = true; ///< no other key came
        unsigned unkeyed = 0;
    };
    /// What has a number in the archive.
    struct Numbered {
        NSObject* object; ///< kept, so that no address comes twice; nil for nil and for classes
        Index record; ///< kPending before it is encoded
        Index reference; ///< its number in the list
    };
    /// A key whose text was written before.
    struct KnownKey {
        Ref<NSString> key;
        Index text = 0;
    };
    class Nesting;

    [[noreturn]] static void refuseMore();
    void putUnusual(NSString* key, Index value);
    Uid uidOf(NSObject* object, bool isConditional);
    Uid uidOfSubstitute(NSObject* object, bool isConditional);
    Uid newUid(NSObject* object);
    void alias(NSObject* object, Uid uid);
    Ref<NSObject> substitute(NSObject* object);
    void encode(Uid uid, NSObject* object);
    Index encodeAsTold(Uid uid, NSObject* object);
    Index record(NSObject* object);
    Index number(NSObject* object);
    Index dictionary(NSObject* object, Archived& archived);
    Index keyText(NSString* key);
    std::vector<KeyText> keysFrom(std::size_t start) const;
    bool hasRepeatedKeys(std::size_t start);
    void dropRepeatedKeys(std::size_t start);
    Archived& archived(Class* cls);
    Archived& lookUp(Class* cls);
    Index classReference(Class* cls);
    Index classRecord(Class* cls);
    Ref<NSString> nameOf(Class* cls) const;
    Index newKeyText(NSString* key);
    void makeRoomForKey();
    void enterKey(KnownKey known);
    Index escapedKey(NSString* key);

    NSKeyedArchiver& owner_;
    WeakRef<NSObject> delegate_;
    lists::ArchiveList list_;
    ObjectNumbers numbers_; // the UID and one
    lists::Row<Numbered> objects_; // by their UIDs
    std::vector<Ref<NSObject>> aliases_; // kept like them; their numbers are those of others
    lists::Row<lists::ArchiveList::Entry> entries_;
    std::vector<Index> elements_;
    lists::Row<Frame> frames_;
    std::unordered_map<Class*, Archived> classes_;
    std::array<Archived*, 64> recentClasses_ {}; // by their address
    std::array<std::uint64_t, 256> seenKeys_ {}; // the upper half: in which search
    std::uint64_t searches_ = 0;
    std::vector<KnownKey> keys_ = std::vector<KnownKey>(1); // the size is a power of two
    std::unordered_map<std::string, Index>
        keyTexts_; // one index for one text: repeated keys are found by it
    std::size_t knownKeys_ = 0;
    Index null_;
    Index classKey_;
    bool isFinished_ = false;
    bool tellsBefore_ = false;
    bool tellsAfter_ = false;
    bool tellsOfReplacing_ = false;
};

}
