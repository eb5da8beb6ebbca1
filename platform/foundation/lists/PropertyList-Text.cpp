// SPDX-License-Identifier: Apache-2.0
#include "PropertyListMakingPrivate.h"

#include "PropertyListWalkPrivate.h"
#include "foundation/NSStringPrivate.h"

namespace brindle::lists {

namespace {

    bool isBare(char c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
            || c == '_' || c == '$' || c == '/' || c == ':' || c == '.' || c == '-';
    }

    int hexadecimal(char c)
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
    }

    /// What the octal escapes from \200 on stand for: the letters of the character set in which this format was born.
    constexpr char16_t kOctalLetters[] = {
        0x00a0, 0x00c0, 0x00c1, 0x00c2, 0x00c3, 0x00c4, 0x00c5, 0x00c7, // 200
        0x00c8, 0x00c9, 0x00ca, 0x00cb, 0x00cc, 0x00cd, 0x00ce, 0x00cf, // 210
        0x00d0, 0x00d1, 0x00d2, 0x00d3, 0x00d4, 0x00d5, 0x00d6, 0x00d9, // 220
        0x00da, 0x00db, 0x00dc, 0x00dd, 0x00de, 0x00b5, 0x00d7, 0x00f7, // 230
        0x00a9, 0x00a1, 0x00a2, 0x00a3, 0x2044, 0x00a5, 0x0192, 0x00a7, // 240
        0x00a4, 0x2019, 0x201c, 0x00ab, 0x2039, 0x203a, 0xfb01, 0xfb02, // 250
        0x00ae, 0x2013, 0x2020, 0x2021, 0x00b7, 0x00a6, 0x00b6, 0x2022, // 260
        0x201a, 0x201e, 0x201d, 0x00bb, 0x2026, 0x2030, 0x00ac, 0x00bf, // 270
        0x00b9, 0x02cb, 0x00b4, 0x02c6, 0x02dc, 0x00af, 0x02d8, 0x02d9, // 300
        0x00a8, 0x00b2, 0x02da, 0x00b8, 0x00b3, 0x02dd, 0x02db, 0x02c7, // 310
        0x2014, 0x00b1, 0x00bc, 0x00bd, 0x00be, 0x00e0, 0x00e1, 0x00e2, // 320
        0x00e3, 0x00e4, 0x00e5, 0x00e7, 0x00e8, 0x00e9, 0x00ea, 0x00eb, // 330
        0x00ec, 0x00c6, 0x00ed, 0x00aa, 0x00ee, 0x00ef, 0x00f0, 0x00f1, // 340
        0x0141, 0x00d8, 0x0152, 0x00ba, 0x00f2, 0x00f3, 0x00f4, 0x00f5, // 350
        0x00f6, 0x00e6, 0x00f9, 0x00fa, 0x00fb, 0x0131, 0x00fc, 0x00fd, // 360
        0x0142, 0x00f8, 0x0153, 0x00df, 0x00fe, 0x00ff, 0xfffd, 0xfffd, // 370
    };

    class TextReader {
    public:
        TextReader(std::string_view text, Mutability mutability, Failure& failure)
            : text_(text)
            , mutability_(mutability)
            , failure_(failure)
        {
        }

        /// Reads a value, or the entries of a strings file.
        Ref<NSObject> read()
        {
            if (!skip())
                return nullptr;
            if (isAtEnd())
                return refused("there is no value");
            const std::size_t start = at_;
            if (!value())
                return nullptr;
            if (frames_.empty() && values_.front()->isKindOfClass(classOf<NSString>())) {
                if (!skip())
                    return nullptr;
                if (peek() == '=' || peek() == ';') {
                    at_ = start;
                    values_.clear();
                    return entries();
                }
            }
            return rest() && skip() && isEnd() ? values_.front() : nullptr;
        }

        /// Reads entries without braces around them.
        Ref<NSObject> entries()
        {
            frames_.push_back({ Bracket::file, 0 });
            return rest() ? values_.front() : nullptr;
        }

    private:
        enum class Bracket : unsigned char { file, brace, parenthesis };
        struct Frame {
            Bracket bracket;
            std::size_t first; // of its values; a dictionary's are key, value, key, value
        };

        bool refuse(std::string reason)
        {
            return failInLine(failure_, text_.substr(0, at_), std::move(reason));
        }
        Ref<NSObject> refused(const char* reason)
        {
            refuse(reason);
            return nullptr;
        }

        bool isAtEnd() const { return at_ >= text_.size(); }
        /// Answers the next character, or a NUL at the end.
        char peek() const { return isAtEnd() ? '\0' : text_[at_]; }
        bool isEnd() { return isAtEnd() || refuse("text stands behind the value"); }

        /// Goes on over spaces and comments.
        bool skip()
        {
            for (;; ++at_) {
                while (!isAtEnd() && (text_[at_] == ' ' || (text_[at_] >= 9 && text_[at_] <= 13)))
                    ++at_;
                const std::string_view next = text_.substr(at_, 2);
                if (next == "//") {
                    at_ = std::min(text_.find_first_of("\r\n", at_), text_.size() - 1);
                } else if (next == "/*") {
                    const std::size_t end = text_.find("*/", at_ + 2);
                    if (end == std::string_view::npos)
                        return refuse("a comment does not end");
                    at_ = end + 1;
                } else
                    return true;
            }
        }

        /// Reads on until all containers are closed.
        bool rest()
        {
            while (!frames_.empty()) {
                if (!skip())
                    return false;
                const bool isList = frames_.back().bracket == Bracket::parenthesis;
                if (!(isList ? element() : entry()))
                    return false;
            }
            return true;
        }

        bool element() { return peek() == ')' ? close() : value(); }

        bool entry()
        {
            const bool isFile = frames_.back().bracket == Bracket::file;
            if (isFile ? isAtEnd() : peek() == '}')
                return close();
            Ref<NSString> key;
            if (!string(key) || !skip())
                return false;
            values_.push_back(key);
            if (peek() == ';') // it stands for itself
                return leaf(key);
            if (peek() != '=')
                return refuse("a key has no value");
            ++at_;
            return skip() && value();
        }

        /// Reads a leaf, or the begin of a container.
        bool value()
        {
            switch (peek()) {
            case '{':
                return open(Bracket::brace);
            case '(':
                return open(Bracket::parenthesis);
            case '<':
                return data();
            default:
                Ref<NSString> text;
                return string(text) && leaf(text);
            }
        }

        bool open(Bracket bracket)
        {
            if (frames_.size() >= kDeepest)
                return refuse("containers are nested too deeply");
            ++at_;
            frames_.push_back({ bracket, values_.size() });
            return true;
        }

        bool close()
        {
            const Frame frame = frames_.back();
            frames_.pop_back();
            if (frame.bracket != Bracket::file)
                ++at_;
            Ref<NSObject> made
                = frame.bracket == Bracket::parenthesis ? array(frame.first) : table(frame.first);
            values_.resize(frame.first);
            return add(std::move(made));
        }

        Ref<NSObject> array(std::size_t first)
        {
            const auto from = values_.begin() + static_cast<std::ptrdiff_t>(first);
            return makeList(collections::Items(std::make_move_iterator(from),
                                std::make_move_iterator(values_.end())),
                mutability_);
        }

        Ref<NSObject> table(std::size_t first)
        {
            Ref<NSDictionary> made = makeTable((values_.size() - first) / 2, mutability_);
            for (std::size_t i = first; i < values_.size(); i += 2)
                addEntry(*made, std::move(values_[i]), std::move(values_[i + 1]));
            return made;
        }

        bool leaf(Ref<NSObject> leaf) { return add(asLeaf(std::move(leaf), mutability_)); }

        /// Adds a complete value to the container around it, and reads what separates it from the next.
        bool add(Ref<NSObject> value)
        {
            values_.push_back(std::move(value));
            if (frames_.empty())
                return true;
            if (!skip())
                return false;
            const bool isList = frames_.back().bracket == Bracket::parenthesis;
            if (peek() == (isList ? ',' : ';')) {
                ++at_;
                return true;
            }
            if (isList)
                return peek() == ')' || refuse("a comma or parenthesis is missing");
            return refuse("a semicolon is missing");
        }

        bool data()
        {
            std::string bytes;
            int high = -1;
            for (++at_; peek() != '>'; ++at_) {
                const char c = peek();
                if (c == ' ' || (c >= 9 && c <= 13))
                    continue;
                const int digit = hexadecimal(c);
                if (digit < 0)
                    return refuse(isAtEnd() ? "data does not end" : "data is not hexadecimal");
                if (high < 0) {
                    high = digit;
                    continue;
                }
                bytes += static_cast<char>(high << 4 | digit);
                high = -1;
            }
            if (high >= 0)
                return refuse("data has half a byte");
            ++at_;
            return leaf(NSData::cls().dataWithBytes_length(bytes.data(), bytes.size()));
        }

        // ---- strings

        bool string(Ref<NSString>& string)
        {
            if (peek() == '"' || peek() == '\'')
                return quoted(string);
            const std::size_t start = at_;
            while (!isAtEnd() && isBare(text_[at_]))
                ++at_;
            if (at_ == start)
                return refuse(isAtEnd() ? "the text ends too early" : "a value is missing");
            string = strings::plain(std::string(text_.substr(start, at_ - start)));
            return true;
        }

        bool quoted(Ref<NSString>& string)
        {
            const char quote = text_[at_++];
            const char stops[] = { quote, '\\', 0 };
            strings::TextBuilder builder;
            for (;;) {
                const std::size_t stop = text_.find_first_of(stops, at_);
                if (stop == std::string_view::npos)
                    return refuse("a quoted string does not end");
                builder.addUtf8(text_.substr(at_, stop - at_));
                at_ = stop + 1;
                if (text_[stop] == quote)
                    break;
                if (isAtEnd())
                    return refuse("a quoted string does not end");
                escape(builder);
            }
            string = builder.string();
            const strings::Contents contents(string.get());
            return isPaired(contents->size(), [&](std::size_t i) { return contents.view()[i]; })
                || refuse("a string has a surrogate without its partner");
        }

        void escape(strings::TextBuilder& builder)
        {
            constexpr std::string_view kNames = "abfnrtv";
            constexpr std::string_view kMeanings = "\a\b\f\n\r\t\v";
            const char c = text_[at_];
            if (c >= '0' && c <= '7')
                return builder.add(octal());
            if (c == 'U')
                return builder.add(unit());
            const std::size_t name = kNames.find(c);
            if (c & 0x80)
                return; // stands for itself, with the other bytes of the letter
            builder.add(
                static_cast<char16_t>(name == std::string_view::npos ? c : kMeanings[name]));
            ++at_;
        }

        char16_t octal()
        {
            unsigned value = 0;
            for (int i = 0; i < 3 && peek() >= '0' && peek() <= '7'; ++i)
                value = value * 8 + static_cast<unsigned>(text_[at_++] - '0');
            value &= 0xff;
            return value < 0x80 ? static_cast<char16_t>(value) : kOctalLetters[value - 0x80];
        }

        char16_t unit()
        {
            unsigned value = 0;
            const std::size_t first = ++at_;
            for (; at_ < first + 4 && hexadecimal(peek()) >= 0; ++at_)
                value = value << 4 | static_cast<unsigned>(hexadecimal(text_[at_]));
            return at_ == first ? u'U' : static_cast<char16_t>(value);
        }

        std::string_view text_;
        std::size_t at_ = 0;
        Mutability mutability_;
        Failure& failure_;
        std::vector<Frame> frames_;
        collections::Items values_;
    };

    /// Finds what old-style text has no form for.
    class Fitting {
    public:
        static constexpr bool kOnce = true;

        explicit Fitting(Failure& failure)
            : failure_(failure)
        {
        }
        bool leaf(Kind kind, NSObject&)
        {
            if (kind == Kind::string || kind == Kind::data)
                return true;
            failure_.reason = "old-style text has strings and data only";
            return false;
        }
        bool key(NSObject&) { return true; }
        bool enter(Kind, std::size_t) { return true; }
        std::uint32_t leave(Kind, std::size_t) { return 0; }
        void again(std::uint32_t) { }

    private:
        Failure& failure_;
    };

}

Ref<NSObject> readText(std::string_view utf8, Mutability mutability, Failure& failure)
{
    return TextReader(utf8, mutability, failure).read();
}

Ref<NSObject> readStrings(std::string_view utf8, Failure& failure)
{
    return TextReader(utf8, Mutability::none, failure).entries();
}

bool fitsText(NSObject* list, Failure& failure)
{
    Fitting fitting(failure);
    return Walk(fitting, failure).run(list);
}

}
