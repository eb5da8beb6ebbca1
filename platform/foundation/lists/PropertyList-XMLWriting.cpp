// SPDX-License-Identifier: Apache-2.0
#include "OutputPrivate.h"
#include "PropertyListWalkPrivate.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <unordered_set>

#include "PropertyListXMLPrivate.h"
#include "foundation/Base64Private.h"
#include "foundation/NSDate.h"
#include "foundation/NSNumber.h"
#include "foundation/NSStringPrivate.h"
#include "foundation/PropertyListUID.h"

namespace brindle::lists {

namespace {

    constexpr std::string_view kXMLHeader
        = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
          "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
          "<plist version=\"1.0\">\n";
    constexpr std::string_view kFooter = "</plist>\n";

    // ---- how long the text may become

    constexpr std::size_t kAlwaysAllowed = std::size_t { 64 } << 20;
    constexpr std::size_t kTimesTheObjects = 20;

    /// Adds up what objects of a list are made of, each counted once, however often it is held.
    class Weighing {
    public:
        static constexpr bool kOnce = true;

        std::size_t bytes() const { return bytes_; }

        bool leaf(Kind kind, NSObject& object)
        {
            constexpr std::size_t kSmall = 16;
            if (!seen_.insert(&object).second)
                return true;
            bytes_ += kind == Kind::string ? 2 * static_cast<NSString&>(object).length()
                : kind == Kind::data       ? static_cast<NSData&>(object).length()
                                           : kSmall;
            return true;
        }
        bool key(NSObject& object) { return leaf(Kind::string, object); }
        bool enter(Kind, std::size_t count)
        {
            bytes_ += (count + 1) * sizeof(void*);
            return true;
        }
        std::uint32_t leave(Kind, std::size_t) { return 0; }
        void again(std::uint32_t) { }

    private:
        std::size_t bytes_ = 0;
        std::unordered_set<const NSObject*> seen_;
    };

    // ---- text

    enum Care : unsigned char { plain, escaped, forbidden };

    constexpr std::array<Care, 128> kCare = [] {
        std::array<Care, 128> care {};
        for (std::size_t c = 0; c < 0x20; ++c)
            care[c] = c == '\t' || c == '\n' ? plain : forbidden;
        care['\r'] = care['&'] = care['<'] = care['>'] = escaped;
        return care;
    }();

    std::string_view escape(char c)
    {
        switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        default:
            return "&#13;"; // a plain one would be read as the end of a line
        }
    }

    /// Writes ASCII; false for characters that XML does not have.
    bool putNarrow(Output& out, std::string_view text)
    {
        const char* const end = text.data() + text.size();
        for (const char* at = text.data(); at < end;) {
            const char* const run = at;
            while (end - at >= kBlock && isPlainBlock(at))
                at += kBlock;
            while (at < end && kCare[static_cast<unsigned char>(*at)] == plain)
                ++at;
            out.put(run, static_cast<std::size_t>(at - run));
            if (at == end)
                return true;
            if (kCare[static_cast<unsigned char>(*at)] == forbidden)
                return false;
            out.put(escape(*at++));
        }
        return true;
    }

    /// Writes a code point that takes more than one byte.
    void putWide(Output& out, char32_t c)
    {
        unsigned char* to = out.room(4);
        const auto put = [&to](char32_t byte) { *to++ = static_cast<unsigned char>(byte); };
        const std::size_t count = c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
        put((count == 2 ? 0xc0u : count == 3 ? 0xe0u : 0xf0u) | c >> (6 * (count - 1)));
        for (std::size_t i = count - 1; i > 0; --i)
            put(0x80 | (c >> (6 * (i - 1)) & 0x3f));
        out.advance(count);
    }

    bool putText(Output& out, strings::View text)
    {
        if (text.isNarrow())
            return putNarrow(out, text.narrow());
        std::size_t units = 0;
        for (std::size_t i = 0; i < text.size(); i += units) {
            const char32_t c = text.codePoint(i, units);
            if (c < 0x80) {
                const char narrow = static_cast<char>(c);
                if (!putNarrow(out, { &narrow, 1 }))
                    return false;
            } else if ((c & 0xfffff800) == 0xd800 || (c & 0xfffffffe) == 0xfffe)
                return false;
            else
                putWide(out, c);
        }
        return true;
    }

    // ---- objects

    class XMLWriting {
    public:
        static constexpr bool kOnce = false;

        XMLWriting(NSObject* list, Failure& failure)
            : list_(list)
            , failure_(failure)
        {
            out_.put(kXMLHeader);
        }

        bool leaf(Kind kind, NSObject& object)
        {
            indent();
            switch (kind) {
            case Kind::string:
                out_.put("<string>");
                return text(object) && close("</string>\n");
            case Kind::data:
                return data(bytesOf(static_cast<NSData*>(&object)));
            case Kind::date:
                return date(static_cast<NSDate&>(object).timeIntervalSinceReferenceDate());
            case Kind::uid:
                return uid(static_cast<PropertyListUID&>(object).unsignedIntegerValue());
            case Kind::boolean:
                out_.put(static_cast<NSNumber&>(object).boolValue() ? "<true/>\n" : "<false/>\n");
                return isShortEnough();
            case Kind::real:
                return real(static_cast<NSNumber&>(object).doubleValue());
            default:
                return integer(static_cast<NSNumber&>(object));
            }
        }
        bool key(NSObject& object)
        {
            indent();
            out_.put("<key>");
            return text(object) && close("</key>\n");
        }
        bool enter(Kind kind, std::size_t count)
        {
            indent();
            const bool isArray = kind == Kind::array;
            if (count == 0)
                out_.put(isArray ? "<array/>\n" : "<dict/>\n");
            else
                out_.put(isArray ? "<array>\n" : "<dict>\n");
            ++depth_;
            return isShortEnough();
        }
        std::uint32_t leave(Kind kind, std::size_t count)
        {
            --depth_;
            if (count == 0)
                return 0;
            indent();
            out_.put(kind == Kind::array ? "</array>\n" : "</dict>\n");
            return 0;
        }
        void again(std::uint32_t) { }

        Ref<NSData> finish()
        {
            out_.put(kFooter);
            return out_.data();
        }

    private:
        bool refuse(const char* reason)
        {
            failure_.reason = reason;
            return false;
        }

        /// Children that are shared are written once for each parent, which can go on for ever: past a size that
        /// lists seldom have the text is held against what the objects are made of.
        bool isShortEnough()
        {
            if (out_.size() <= limit_)
                return true;
            if (!isWeighed_) {
                isWeighed_ = true;
                Weighing weighing;
                if (!Walk(weighing, failure_).run(list_))
                    return false;
                limit_ += kTimesTheObjects * weighing.bytes();
                return isShortEnough();
            }
            return refuse("children shared by many parents make the text too long");
        }

        void indent()
        {
            constexpr std::size_t kUsual = 8; // so many are written at once
            std::memset(out_.room(depth_ + kUsual), '\t', kUsual);
            if (depth_ > kUsual)
                std::memset(out_.room(depth_), '\t', depth_);
            out_.advance(depth_);
        }
        bool close(std::string_view tag)
        {
            out_.put(tag);
            return isShortEnough();
        }

        bool text(const NSObject& object)
        {
            const strings::Contents contents(static_cast<const NSString*>(&object));
            return putText(out_, contents.view())
                || refuse("a string has a character that is not allowed in XML");
        }
        template <class T> void number(T value)
        {
            char* const to = reinterpret_cast<char*>(out_.room(32));
            out_.advance(static_cast<std::size_t>(std::to_chars(to, to + 32, value).ptr - to));
        }
        bool real(double value)
        {
            out_.put("<real>");
            number(std::isnan(value) ? std::fabs(value) : value); // its sign is not worth a word
            return close("</real>\n");
        }
        template <class T> bool integer(T value)
        {
            out_.put("<integer>");
            number(value);
            return close("</integer>\n");
        }
        bool integer(const NSNumber& value)
        {
            if (*value.objCType() == 'Q')
                return integer(value.unsignedLongLongValue());
            return integer(value.longLongValue());
        }
        bool uid(NSUInteger value)
        {
            out_.put("<dict>\n");
            ++depth_;
            indent();
            out_.put("<key>CF$UID</key>\n");
            indent();
            integer(value);
            --depth_;
            indent();
            out_.put("</dict>\n");
            return isShortEnough();
        }
        bool date(double seconds)
        {
            using namespace std::chrono;
            constexpr double kFarthest = 1e12; // beyond the years of four digits
            if (!(std::fabs(seconds) < kFarthest))
                return refuse("a date lies outside of the years 0 to 9999");
            const auto whole
                = static_cast<std::int64_t>(std::floor(seconds + NSTimeIntervalSince1970));
            const sys_seconds moment { std::chrono::seconds(whole) };
            const sys_days days = floor<std::chrono::days>(moment);
            const year_month_day day(days);
            const hh_mm_ss time(moment - days);
            const int year = static_cast<int>(day.year());
            if (year < 0 || year > 9999)
                return refuse("a date lies outside of the years 0 to 9999");
            out_.put("<date>");
            digits(static_cast<unsigned>(year), 4);
            part('-', static_cast<unsigned>(day.month()));
            part('-', static_cast<unsigned>(day.day()));
            part('T', time.hours().count());
            part(':', time.minutes().count());
            part(':', time.seconds().count());
            return close("Z</date>\n");
        }
        void digits(unsigned value, std::size_t count)
        {
            unsigned char* const to = out_.room(count);
            for (std::size_t i = count; i-- > 0; value /= 10)
                to[i] = static_cast<unsigned char>('0' + value % 10);
            out_.advance(count);
        }
        void part(char separator, std::int64_t value)
        {
            out_.put(separator);
            digits(static_cast<unsigned>(value), 2);
        }
        bool data(std::span<const unsigned char> bytes)
        {
            // Lines end at column 76; a tab counts eight, and deep inside some columns are left.
            const std::size_t columns = depth_ < 8 ? 76 - 8 * depth_ : 16;
            const std::size_t line = columns / 4 * 3;
            out_.put("<data>\n");
            for (std::size_t at = 0; at < bytes.size(); at += line) {
                indent();
                const auto part = bytes.subspan(at, std::min(line, bytes.size() - at));
                char* const to = reinterpret_cast<char*>(out_.room(columns));
                out_.advance(static_cast<std::size_t>(base64::encode(part, to) - to));
                out_.put('\n');
                if (!isShortEnough())
                    return false;
            }
            indent();
            return close("</data>\n");
        }

        NSObject* list_;
        Failure& failure_;
        Output out_;
        std::size_t depth_ = 0;
        std::size_t limit_ = kAlwaysAllowed;
        bool isWeighed_ = false;
    };

}

Ref<NSData> writeXML(NSObject* list, Failure& failure)
{
    XMLWriting writing(list, failure);
    if (!Walk(writing, failure).run(list))
        return nullptr;
    return writing.finish();
}

}
