// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/NSCoder.h"
#include "foundation/NSError.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSStringPrivate.h"

// What the archiver, the unarchiver and the coding of the foundation's classes share.

namespace brindle {

/// The way to a coder's own fields.
struct CoderAccess {
    static void keepFailure(NSCoder& coder, NSError* error)
    {
        if (!coder.error_)
            coder.error_ = error;
    }
    static bool hasFailed(const NSCoder& coder) { return static_cast<bool>(coder.error_); }
};

}

namespace brindle::archives {

/// That many objects may be in the making at a time, each for the one before.
inline constexpr std::size_t kDeepest = 10000;
/// How many different keys are remembered; what has more of them only takes longer.
inline constexpr std::size_t kMostKnownKeys = 4096;

/// Answers whether so little of the thread's stack is left that no more foreign code should be called.
bool isStackShort();

/// Classes and names, for one coder or for all.
using NamesByClass = std::unordered_map<Class*, Ref<NSString>>;
using ClassesByName = std::unordered_map<std::string, Class*>;

/// Answers whether a class says that its instances may be read from data of unknown origin.
bool supportsSecureCoding(Class* cls);

/// The key of an element where a coder knows no lists: "NS.objects" has "NS.object.0", "NS.object.1" …
Ref<NSString> elementKey(NSString* key, std::size_t index);

/// Writes a list of objects under one key.
class ListEncoder {
public:
    ListEncoder(NSCoder* coder, NSString* key);
    ~ListEncoder();
    ListEncoder(const ListEncoder&) = delete;
    ListEncoder& operator=(const ListEncoder&) = delete;
    void add(NSObject* object);
    void finish();

private:
    NSCoder* coder_;
    NSKeyedArchiver* archiver_; // nil for a coder of somebody else
    NSString* key_;
    std::size_t start_ = 0;
    std::size_t count_ = 0;
};

/// Reads such a list.
/// - Returns: false when there is none or an object is missing; `failWithError:` has been sent, and may have raised.
bool decodeList(NSCoder* coder, NSString* key, std::vector<Ref<NSObject>>& items);

/// Writes text as a plain value; false, and nothing is written, for text that no property list can hold.
bool encodeText(NSCoder* coder, strings::View text, NSString* key);

/// Counts what an object copies out of the archive; false after a failure.
bool charge(NSCoder* coder, std::size_t bytes);

/// Answers how many comparisons of collections the coder's objects may still cause, to be counted down; nullptr where
/// nobody counts.
std::size_t* comparisonsLeft(NSCoder* coder);

/// Writes a number in groups of seven bits, the lowest first; all bytes but the last have the top bit.
void appendNumber(std::vector<std::uint8_t>& bytes, NSUInteger number);
/// Takes such a number from the front; false when there is none.
bool takeNumber(std::span<const std::uint8_t>& bytes, NSUInteger& number);

/// Tells the coder that what it read makes no sense.
void refuse(NSCoder* coder, const std::string& reason);

}
