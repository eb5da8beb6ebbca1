// SPDX-License-Identifier: Apache-2.0
// Property lists go to another program and come back.

#include <cstdio>
#include <random>
#include <sstream>

#include "foundation/NSDate.h"
#include "foundation/PropertyListUID.h"
#include "support/PropertyLists.h"
#include "support/Python.h"
#include "support/RandomLists.h"

using namespace brindle;
using namespace brindle::test;

namespace {

/// Reads a list and writes it in a format, as it is.
std::string converter(const char* format)
{
    return std::string("import plistlib\n"
                       "value = plistlib.load(open('in', 'rb'))\n"
                       "out = open('out', 'wb')\n"
                       "plistlib.dump(value, out, sort_keys=False, fmt=plistlib.")
        + format + ")\n";
}

void expectEqual(const Ref<NSObject>& list, NSPropertyListFormat format, const char* other)
{
    const std::string back = Python().run(converter(other), writeList(list, format));
    ASSERT_FALSE(back.empty());
    const Ref<NSObject> read = readList(back);
    ASSERT_TRUE(read) << readFailure(back);
    EXPECT_TRUE(read->isEqual(list.get()));
}

Ref<NSObject> randomLists(RandomLists::Dates dates)
{
    RandomLists random(20240131, dates);
    std::vector<Ref<NSObject>> lists;
    for (int i = 0; i < 300; ++i)
        lists.push_back(random.list());
    return makeArray(std::move(lists));
}

}

TEST(PropertyListExchange, BinaryListsPassThroughPythonAsBinary)
{
    expectEqual(randomLists(RandomLists::Dates::whole), kBinary, "FMT_BINARY");
}

TEST(PropertyListExchange, BinaryListsPassThroughPythonAsXML)
{
    expectEqual(randomLists(RandomLists::Dates::whole), kBinary, "FMT_XML");
}

TEST(PropertyListExchange, XMLListsPassThroughPythonAsBinary)
{
    expectEqual(randomLists(RandomLists::Dates::whole), kXML, "FMT_BINARY");
}

TEST(PropertyListExchange, XMLListsPassThroughPythonAsXML)
{
    expectEqual(randomLists(RandomLists::Dates::whole), kXML, "FMT_XML");
}

TEST(PropertyListExchange, PythonUnderstandsReferencesOfArchives)
{
    const std::string text = Python().run("import plistlib\n"
                                          "value = plistlib.load(open('in', 'rb'))\n"
                                          "open('out', 'w').write(repr(value))\n",
        writeList(makeArray({ makeUID(5).get(), makeUID(70000).get() }), kBinary));
    EXPECT_EQ(text, "[UID(5), UID(70000)]");
}

TEST(PropertyListExchange, PythonWritesTheSameXML)
{
    const Ref<NSDictionary> list = makeDictionary({ { "b"_ns, dataOf(std::string(100, 'x')).get() },
        { "a"_ns,
            makeArray({ number(5).get(), "a<b"_ns, NSDate::cls().distantFuture().get() }).get() },
        { "c"_ns, NSDictionary::cls().dictionary().get() } });
    EXPECT_EQ(Python().run(converter("FMT_XML"), writeList(list, kBinary)), writeList(list, kXML));
}

TEST(PropertyListExchange, RandomListsComeBackInBothFormats)
{
    RandomLists random(4711, RandomLists::Dates::whole);
    for (int i = 0; i < 500; ++i) {
        const Ref<NSObject> list = random.list();
        const Ref<NSObject> asXML = readList(writeList(readList(writeList(list, kBinary)), kXML));
        ASSERT_TRUE(asXML);
        EXPECT_TRUE(readList(writeList(asXML, kBinary))->isEqual(list.get()));
    }
}
