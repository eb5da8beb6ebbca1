// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>

#include "KeyedArchivePrivate.h"
#include "foundation/NSData.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/lists/BinaryListReaderPrivate.h"

namespace brindle::archives {

/// What an unarchiver is made of: the list, the objects built so far, and the objects that are being built, innermost
/// last.
class Reader {
public:
    using Index = lists::BinaryListReader::Index;
    static constexpr Index kNowhere = ~Index {};

    explicit Reader(NSKeyedUnarchiver& owner);

    /// Takes an archive in; false when the data is none.
    bool open(const NSData* data);

    const lists::BinaryListReader& list() const { return list_; }
    /// Answers where the value of a key of the object being built is, or `kNowhere`.
    Index find(NSString* key);
    /// The same for the next value without a key.
    Index findUnkeyed();
    /// Answers where a plain value is that may have been archived as an object; `kNowhere` when it is none.
    Index plain(Index value) const;
    /// Answers the object of a value, built now if it was not before.
    Ref<NSObject> object(Index value, NSString* key);
    /// Answers the class that `object` would give, or nil when that is not certain.
    Class* classOf(Index value);
    /// Appends the objects of a list; false after a failure.
    bool objects(Index value, NSString* key, std::vector<Ref<NSObject>>& items);

    /// Raises, or keeps an error, as the policy says; answers nil.
    std::nullptr_t fail(const std::string& reason);
    /// Counts bytes that are built or looked through again because several objects share them; false after a failure,
    /// when there are more than any honest archive of this size has.
    bool charge(std::size_t bytes);

    /// The classes that a decode allows, as long as it runs.
    class Allowing {
    public:
        Allowing(Reader& reader, std::span<Class* const> classes);
        ~Allowing() { reader_.allowed_ = before_; }
        Allowing(const Allowing&) = delete;
        Allowing& operator=(const Allowing&) = delete;

    private:
        Reader& reader_;
        std::span<Class* const> before_;
    };
    std::span<Class* const> allowed() const { return allowed_; }

    void setDelegate(NSObject* delegate);
    Ref<NSObject> delegate() const { return delegate_.get(); }

    ClassesByName classes;
    bool isSecure = false;
    /// Members of sets and keys may be collections that are alike in most of their parts, or hold themselves.
    std::size_t comparisonsLeft = std::size_t { 8 } << 20;
    bool isFinished = true; ///< also before an archive was opened

private:
    using Uid = std::uint64_t;
    enum class State : unsigned char { unknown, busy, done };

    /// A class that the archive names.
    struct Named {
        Class* cls = nullptr; ///< nil when nobody knows it
        std::string name;
        bool supportsSecureCoding = false;
        bool isReplaced = false; ///< instances may name a substitute
    };
    using Places = std::unordered_map<std::string_view, std::size_t>;
    struct Frame {
        lists::BinaryListReader::References keys;
        lists::BinaryListReader::References values;
        std::size_t last
            = 0; ///< found before: keys are mostly asked for in the order in which they stand
        unsigned unkeyed = 0;
        std::unique_ptr<Places> places = nullptr; ///< only where there are many keys
    };
    /// Where a key's text was found before.
    struct KnownKey {
        Ref<NSString> key;
        Index text = kNowhere;
    };
    class Nesting;

    bool isReady();
    bool openList(const NSData* data);
    bool readTop();
    Ref<NSObject> objectAt(Uid uid, NSString* key);
    Ref<NSObject> leaf(Index value);
    Ref<NSObject> build(Uid uid, Index record, NSString* key);
    /// Answers the class of a record that may be built now; null after a failure.
    const Named* buildable(Index record, NSString* key);
    Ref<NSObject> initialized(Uid uid, Index record, const Named& named);
    Ref<NSObject> substituted(Ref<NSObject> object);
    const Named* classOfRecord(Index record);
    bool readClass(Index record, Named& named);
    void resolve(Index record, Named& named);
    Class* classNamed(const std::string& name) const;
    Class* classFromDelegate(Index record, const std::string& name) const;
    bool isAllowed(Class* cls, NSString* key);
    Index findText(Frame& frame, strings::View text);
    Index findAmongMany(Frame& frame, std::string_view text);
    static Index findKnown(Frame& frame, const KnownKey& known);
    bool isText(Index index, strings::View text) const;
    KnownKey* knownKey(NSString* key);

    NSKeyedUnarchiver& owner_;
    WeakRef<NSObject> delegate_;
    Ref<NSData> data_;
    lists::BinaryListReader list_;
    Index objects_ = kNowhere;
    Index top_ = kNowhere;
    std::vector<Ref<NSObject>> built_; // by UID
    std::vector<State> states_;
    std::unordered_map<Uid, Named> named_;
    std::vector<Frame> frames_;
    std::vector<KnownKey> keys_;
    std::size_t knownKeys_ = 0;
    std::span<Class* const> allowed_;
    std::size_t credit_ = 0;
    bool replacesDecoded_ = false;
    bool tellsOfReplacing_ = false;
};

}
