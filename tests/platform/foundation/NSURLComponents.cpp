// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSURLComponents.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSURLQueryItem.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSURLComponents> from(NSString* text)
    {
        return NSURLComponents::cls().componentsWithString(text);
    }
    std::string items(const Ref<NSURLComponents>& components)
    {
        const auto found = components->queryItems();
        if (!found)
            return "(nil)";
        std::string out;
        for (NSUInteger i = 0; i < found->count(); ++i) {
            const auto item = cast<NSURLQueryItem>(found->objectAtIndex(i));
            out += (i ? "|" : "") + utf8(item->name()) + "→" + utf8(item->value());
        }
        return out;
    }

    TEST(NSURLComponents, ComeBackAsTheirText)
    {
        for (NSString* text : { "http://u:p@h:1/a%20b;c?q=%26#f"_ns, "mailto:a@b?c=d"_ns, "/a"_ns,
                 "a/b:c"_ns, "?q"_ns, "//h"_ns, "http://[::1]/"_ns, "file:///a"_ns, ""_ns })
            EXPECT_EQ(utf8(from(text)->string()), utf8(text));
    }
    TEST(NSURLComponents, OfTextThatIsNoURLAreNil)
    {
        EXPECT_EQ(from("http://h/ "_ns), nullptr);
        EXPECT_EQ(from("ä"_ns), nullptr);
        EXPECT_EQ(from(nullptr), nullptr);
    }
    TEST(NSURLComponents, HaveNoEscapes)
    {
        const auto c = from("s://u%40:p%3A@h%C3%A4:80/a%20b?q%20#f%20"_ns);
        EXPECT_EQ(utf8(c->scheme()), "s");
        EXPECT_EQ(utf8(c->user()), "u@");
        EXPECT_EQ(utf8(c->password()), "p:");
        EXPECT_EQ(utf8(c->host()), "hä");
        EXPECT_EQ(c->port()->integerValue(), 80);
        EXPECT_EQ(utf8(c->path()), "/a b");
        EXPECT_EQ(utf8(c->query()), "q ");
        EXPECT_EQ(utf8(c->fragment()), "f ");
        EXPECT_EQ(utf8(c->percentEncodedHost()), "h%C3%A4");
        EXPECT_EQ(utf8(c->percentEncodedPath()), "/a%20b");
    }
    TEST(NSURLComponents, TakeEscapesWhereTheyAreWanted)
    {
        const Ref<NSURLComponents> c = make<NSURLComponents>();
        c->setScheme("http"_ns);
        c->setUser("a@b"_ns);
        c->setPassword(":"_ns);
        c->setHost("ä"_ns);
        c->setPort(NSNumber::cls().numberWithInteger(8080).get());
        c->setPath("/x?;"_ns);
        c->setQuery("#="_ns);
        c->setFragment("#?"_ns);
        EXPECT_EQ(utf8(c->string()), "http://a%40b:%3A@%C3%A4:8080/x%3F%3B?%23=#%23?");
        EXPECT_NE(c->URL(), nullptr);
    }
    TEST(NSURLComponents, StartEmpty)
    {
        const Ref<NSURLComponents> c = make<NSURLComponents>();
        EXPECT_EQ(utf8(c->string()), "");
        EXPECT_EQ(utf8(c->path()), "");
        EXPECT_EQ(c->host(), nullptr);
        EXPECT_EQ(c->queryItems(), nullptr);
    }
    TEST(NSURLComponents, NilTakesAPieceAway)
    {
        const auto c = from("http://u@h:1/p?q#f"_ns);
        c->setUser(nullptr);
        c->setPort(nullptr);
        c->setPath(nullptr);
        c->setQuery(nullptr);
        c->setFragment(nullptr);
        EXPECT_EQ(utf8(c->string()), "http://h");
        c->setHost(nullptr);
        c->setScheme(nullptr);
        EXPECT_EQ(utf8(c->string()), "");
    }
    TEST(NSURLComponents, ANumericAddressStandsInBrackets)
    {
        const auto c = from("http://h/"_ns);
        c->setHost("::1"_ns);
        EXPECT_EQ(utf8(c->string()), "http://[::1]/");
        EXPECT_EQ(utf8(c->host()), "::1");
    }
    TEST(NSURLComponents, PiecesThatMakeNoURLHaveNoText)
    {
        const auto made = [](NSString* text, NSString* path) {
            const auto c = from(text);
            c->setPath(path);
            return utf8(c->string());
        };
        EXPECT_EQ(made("http://h"_ns, "a"_ns), "(nil)");
        EXPECT_EQ(made("file:"_ns, "//a"_ns), "(nil)");
        EXPECT_EQ(made(""_ns, "a:b/c"_ns), "(nil)");
        EXPECT_EQ(made(""_ns, "a/b:c"_ns), "a/b:c");
    }
    TEST(NSURLComponents, BadPiecesRaise)
    {
        const auto c = from("http://h/"_ns);
        EXPECT_NE(raisedBy([&] { c->setScheme("1"_ns); }), "");
        EXPECT_NE(raisedBy([&] { c->setScheme(""_ns); }), "");
        EXPECT_NE(raisedBy([&] { c->setHost("a:^"_ns); }), "");
        EXPECT_NE(raisedBy([&] { c->setPort(NSNumber::cls().numberWithInteger(-1).get()); }), "");
        EXPECT_NE(raisedBy([&] { c->setPercentEncodedPath("%"_ns); }), "");
        EXPECT_NE(raisedBy([&] { c->setPercentEncodedPath("/a?"_ns); }), "");
        EXPECT_NE(raisedBy([&] { c->setPercentEncodedQuery("ä"_ns); }), "");
        EXPECT_NE(raisedBy([&] { c->setPercentEncodedHost("a/b"_ns); }), "");
        EXPECT_EQ(utf8(c->string()), "http://h/");
    }
    TEST(NSURLComponents, AreMadeOfAURL)
    {
        const auto url = NSURL::cls().URLWithString_relativeToURL(
            "b?q"_ns, NSURL::cls().URLWithString("http://h/a"_ns).get());
        const auto made = [&](bool resolving) {
            return utf8(NSURLComponents::cls()
                            .componentsWithURL_resolvingAgainstBaseURL(url.get(), resolving)
                            ->string());
        };
        EXPECT_EQ(made(true), "http://h/b?q");
        EXPECT_EQ(made(false), "b?q");
    }

    // ---- parameters

    TEST(NSURLComponents, CutTheQueryIntoItems)
    {
        EXPECT_EQ(items(from("?a=1&b=x%20y&c&d=1=2&&e="_ns)), "a→1|b→x y|c→(nil)|d→1=2|→(nil)|e→");
    }
    TEST(NSURLComponents, WithoutAQueryHaveNoItems)
    {
        EXPECT_EQ(items(from("a"_ns)), "(nil)");
        EXPECT_EQ(items(from("a?"_ns)), "");
    }
    TEST(NSURLComponents, MalformedEscapesOfItemsStay)
    {
        EXPECT_EQ(items(from("?a=%ff"_ns)), "a→%ff");
    }
    TEST(NSURLComponents, JoinItemsToAQuery)
    {
        const auto item = [](NSString* name, NSString* value) {
            return NSURLQueryItem::cls().queryItemWithName_value(name, value);
        };
        const Ref<NSURLComponents> c = make<NSURLComponents>();
        c->setQueryItems(NSArray::cls()
                             .arrayWithObjects(item("a&="_ns, "b&="_ns).get(),
                                 item("c"_ns, nullptr).get(), item("d"_ns, ""_ns).get())
                             .get());
        EXPECT_EQ(utf8(c->percentEncodedQuery()), "a%26%3D=b%26=&c&d=");
        EXPECT_EQ(items(c), "a&=→b&=|c→(nil)|d→");
        c->setQueryItems(NSArray::cls().array().get());
        EXPECT_EQ(utf8(c->query()), "");
        c->setQueryItems(nullptr);
        EXPECT_EQ(c->query(), nullptr);
    }

    // ---- values

    TEST(NSURLComponents, ACopyIsItsOwn)
    {
        const auto c = from("a?b"_ns);
        const auto copy = cast<NSURLComponents>(c->copy());
        EXPECT_TRUE(copy->isEqual(c.get()));
        EXPECT_EQ(copy->hash(), c->hash());
        copy->setQuery(nullptr);
        EXPECT_FALSE(copy->isEqual(c.get()));
        EXPECT_EQ(utf8(c->string()), "a?b");
    }
    TEST(NSURLQueryItem, EqualityComparesNameAndValue)
    {
        const auto item = [](NSString* name, NSString* value) {
            return NSURLQueryItem::cls().queryItemWithName_value(name, value);
        };
        EXPECT_TRUE(item("a"_ns, "b"_ns)->isEqual(item("a"_ns, "b"_ns).get()));
        EXPECT_FALSE(item("a"_ns, nullptr)->isEqual(item("a"_ns, ""_ns).get()));
        EXPECT_TRUE(item("a"_ns, nullptr)->isEqual(item("a"_ns, nullptr).get()));
        EXPECT_EQ(utf8(item(nullptr, nullptr)->name()), "");
    }

}

}
