// SPDX-License-Identifier: Apache-2.0
#include "PropertyListMakingPrivate.h"

#include <array>
#include <charconv>
#include <chrono>
#include <optional>

#include "PropertyListXMLPrivate.h"
#include "foundation/Base64Private.h"
#include "foundation/NSDate.h"
#include "foundation/NSNumber.h"
#include "foundation/NSStringPrivate.h"
#include "foundation/PropertyListUID.h"
#include "foundation/SameBytesPrivate.h"
#include "runtime/ObjectMemory.h"

namespace brindle::lists {

// ---- leaves

namespace {

    std::string_view trimmed(std::string_view text)
    {
        while (!text.empty() && isSpace(text.front()))
            text.remove_prefix(1);
        while (!text.empty() && isSpace(text.back()))
            text.remove_suffix(1);
        return text;
    }

    /// Reads digits to the end of the text.
    template <class T, class... How> bool readAll(std::string_view text, T& value, How... how)
    {
        const auto [end, error]
            = std::from_chars(text.data(), text.data() + text.size(), value, how...);
        return error == std::errc() && end == text.data() + text.size();
    }

    Ref<NSObject> integerFrom(std::string_view text)
    {
        text = trimmed(text);
        const bool isNegative = text.starts_with('-');
        if (isNegative || text.starts_with('+'))
            text.remove_prefix(1);
        const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
        if (isHexadecimal)
            text.remove_prefix(2);
        std::uint64_t size = 0;
        if (!readAll(text, size, isHexadecimal ? 16 : 10))
            return nullptr;
        constexpr std::uint64_t kHalf = std::uint64_t { 1 } << 63;
        if (isNegative && size > kHalf)
            return nullptr;
        if (!isNegative && size >= kHalf)
            return NSNumber::cls().numberWithUnsignedInteger(size);
        return NSNumber::cls().numberWithInteger(
            static_cast<NSInteger>(isNegative ? 0 - size : size));
    }

    Ref<NSObject> realFrom(std::string_view text)
    {
        text = trimmed(text);
        if (text.starts_with('+') && !text.starts_with("+-"))
            text.remove_prefix(1);
        double value = 0;
        if (text.find('(') != std::string_view::npos || !readAll(text, value))
            return nullptr;
        return NSNumber::cls().numberWithDouble(value);
    }

    /// Reads "2024-01-31T12:34:56Z".
    Ref<NSObject> dateFrom(std::string_view text)
    {
        constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
        text = trimmed(text);
        if (text.size() != kForm.size())
            return nullptr;
        for (std::size_t i = 0; i < kForm.size(); ++i) {
            const bool isDigit = text[i] >= '0' && text[i] <= '9';
            if (kForm[i] == '0' ? !isDigit : text[i] != kForm[i])
                return nullptr;
        }
        const auto part = [&](std::size_t from, std::size_t length) {
            unsigned value = 0;
            readAll(text.substr(from, length), value);
            return value;
        };
        using namespace std::chrono;
        const year_month_day day(
            year(static_cast<int>(part(0, 4))), month(part(5, 2)), std::chrono::day(part(8, 2)));
        const unsigned hours = part(11, 2);
        const unsigned minutes = part(14, 2);
        const unsigned rest = part(17, 2);
        if (!day.ok() || hours > 23 || minutes > 59 || rest > 59)
            return nullptr;
        const double days = static_cast<double>(sys_days(day).time_since_epoch().count());
        return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(
            days * 86400 + hours * 3600 + minutes * 60 + rest - NSTimeIntervalSince1970);
    }

    Ref<NSData> dataFrom(std::string_view text)
    {
        auto* const bytes = static_cast<unsigned char*>(std::malloc(text.size() / 4 * 3 + 3));
        if (!bytes)
            throw std::bad_alloc();
        const std::optional<std::size_t> count
            = base64::decode({ reinterpret_cast<const unsigned char*>(text.data()), text.size() },
                base64::Unknown::spacePassedOver, bytes);
        if (!count) {
            std::free(bytes);
            return nullptr;
        }
        return NSData::cls().dataWithBytesNoCopy_length(bytes, *count);
    }

    Ref<NSString> stringIn(std::string_view text, bool isAscii)
    {
        return isAscii ? strings::plain(std::string(text)) : stringFrom(text);
    }

    /// The same number whether a list was binary or XML: a reference of an archive.
    Ref<NSObject> asReference(const NSObject* key, NSObject* value)
    {
        static constexpr std::string_view kKey = "CF$UID";
        const strings::Contents text(static_cast<const NSString*>(key));
        if (text->size() != kKey.size() || !strings::equal(text, strings::View(kKey))
            || !value->isKindOfClass(classOf<NSNumber>()))
            return nullptr;
        const auto* const number = static_cast<NSNumber*>(value);
        const char type = *number->objCType();
        const bool isIndex = type == 'Q' || (type == 'q' && number->integerValue() >= 0);
        return isIndex ? Ref<NSObject>(makeUID(number->unsignedIntegerValue())) : nullptr;
    }

    class XMLReader {
    public:
        XMLReader(std::string_view text, Mutability mutability, Failure& failure)
            : source_(text, failure)
            , mutability_(mutability)
        {
        }

        Ref<NSObject> read()
        {
            if (!source_.prolog())
                return nullptr;
            frames_.push_back({ Tag::plist, 0 });
            while (!frames_.empty()) {
                if (!source_.skip())
                    return nullptr;
                const bool isGood = source_.isAtEndTag() ? close() : element();
                if (!isGood)
                    return nullptr;
            }
            if (!source_.epilog())
                return nullptr;
            return values_.front();
        }

    private:
        struct Frame {
            Tag tag;
            std::size_t first; // of its values; a dictionary's are key, value, key, value
        };
        struct KnownKey {
            std::string_view text;
            Ref<NSObject> key;
        };

        std::size_t count() const { return values_.size() - frames_.back().first; }

        bool element()
        {
            Element element;
            if (!source_.open(element))
                return false;
            if (const char* const wrong = misplaced(element.tag))
                return source_.refuse(wrong);
            if (isContainer(element.tag)) {
                if (frames_.size() > kDeepest)
                    return source_.refuse("containers are nested too deeply");
                frames_.push_back({ element.tag, values_.size() });
                return !element.isEmpty || end();
            }
            Text text;
            if (!element.isEmpty && !source_.text(element.tag, text))
                return false;
            Ref<NSObject> value = leaf(element.tag, text);
            if (!value)
                return source_.refuse(unreadable(element.tag));
            values_.push_back(std::move(value));
            return true;
        }

        static bool isContainer(Tag tag) { return tag == Tag::array || tag == Tag::dict; }

        /// Answers what is wrong about an element at this place, or nothing.
        const char* misplaced(Tag tag) const
        {
            if (tag == Tag::plist)
                return "a list stands in a list";
            const Tag around = frames_.back().tag;
            if (around == Tag::plist && count() > 0)
                return "there is more than one value";
            const bool isKeyDue = around == Tag::dict && count() % 2 == 0;
            if (isKeyDue == (tag == Tag::key))
                return nullptr;
            return isKeyDue ? "a value stands without its key"
                            : "a key stands where a value belongs";
        }

        static const char* unreadable(Tag tag)
        {
            switch (tag) {
            case Tag::integer:
                return "an integer cannot be read";
            case Tag::real:
                return "a real number cannot be read";
            case Tag::date:
                return "a date cannot be read";
            case Tag::data:
                return "data is not base64";
            default:
                return "true and false are empty";
            }
        }

        Ref<NSObject> leaf(Tag tag, const Text& text)
        {
            switch (tag) {
            case Tag::key:
                return key(text);
            case Tag::string:
                return asLeaf(stringIn(text.bytes, text.isAscii), mutability_);
            case Tag::integer:
                return integerFrom(text.bytes);
            case Tag::real:
                return realFrom(text.bytes);
            case Tag::date:
                return dateFrom(text.bytes);
            case Tag::data: {
                const Ref<NSData> data = dataFrom(text.bytes);
                return data ? asLeaf(data, mutability_) : nullptr;
            }
            default:
                if (!trimmed(text.bytes).empty())
                    return nullptr;
                return NSNumber::cls().numberWithBool(tag == Tag::yes);
            }
        }

        /// Keys come again and again: equal ones are one object, as long as none pushes it out.
        Ref<NSObject> key(const Text& text)
        {
            if (!text.isInSource || text.bytes.empty())
                return stringIn(text.bytes, text.isAscii);
            const auto byte
                = [&](std::size_t i) { return static_cast<unsigned char>(text.bytes[i]); };
            const std::size_t size = text.bytes.size();
            const std::size_t hash
                = size * 31 + byte(0) * 7u + byte(size / 2) * 131u + byte(size - 1) * 17u;
            KnownKey& known = keys_[hash % keys_.size()];
            if (!known.key || !sameBytes(known.text, text.bytes))
                known = { text.bytes, stringIn(text.bytes, text.isAscii) };
            return known.key;
        }

        bool close()
        {
            if (!source_.close(frames_.back().tag))
                return false;
            return end();
        }

        /// Ends a container: its values become one.
        bool end()
        {
            const Frame frame = frames_.back();
            const std::size_t held = count();
            if (frame.tag == Tag::plist && held == 0)
                return source_.refuse("the list is empty");
            if (frame.tag == Tag::dict && held % 2 == 1)
                return source_.refuse("a key has no value");
            frames_.pop_back();
            if (frame.tag == Tag::plist)
                return true;
            Ref<NSObject> made
                = frame.tag == Tag::array ? array(frame.first) : dictionary(frame.first, held / 2);
            values_.resize(frame.first);
            values_.push_back(std::move(made));
            return true;
        }

        Ref<NSObject> array(std::size_t first)
        {
            const auto from = values_.begin() + static_cast<std::ptrdiff_t>(first);
            return makeList(collections::Items(std::make_move_iterator(from),
                                std::make_move_iterator(values_.end())),
                mutability_);
        }

        Ref<NSObject> dictionary(std::size_t first, std::size_t count)
        {
            if (count == 1) {
                if (Ref<NSObject> uid = asReference(values_[first].get(), values_[first + 1].get()))
                    return uid;
            }
            Ref<NSDictionary> made = makeTable(count, mutability_);
            for (std::size_t i = first; i < first + 2 * count; i += 2)
                addEntry(*made, std::move(values_[i]), std::move(values_[i + 1]));
            return made;
        }

        XMLSource source_;
        Mutability mutability_;
        std::vector<Frame> frames_;
        collections::Items values_;
        std::array<KnownKey, 256> keys_;
    };

}

Ref<NSObject> readXML(std::string_view utf8, Mutability mutability, Failure& failure)
{
    constexpr std::size_t kLong = std::size_t { 1 } << 20; // its objects fill most of a block
    std::optional<ObjectRun> run;
    if (utf8.size() >= kLong)
        run.emplace();
    return XMLReader(utf8, mutability, failure).read();
}

}
