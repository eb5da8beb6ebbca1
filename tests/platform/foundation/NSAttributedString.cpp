// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSAttributedString.h"

#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSMutableAttributedString.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSDictionary> marked(NSString* value)
    {
        return NSDictionary::cls().dictionaryWithObject_forKey(value, "mark"_ns);
    }
    Ref<NSAttributedString> plain(NSString* text)
    {
        return alloc<NSAttributedString>()->initWithString(text);
    }
    Ref<NSMutableAttributedString> editable(NSString* text, NSDictionary* attributes = nullptr)
    {
        return cast<NSMutableAttributedString>(
            alloc<NSMutableAttributedString>()->initWithString_attributes(text, attributes));
    }
    void mark(const Ref<NSMutableAttributedString>& string, NSString* value, NSUInteger location,
        NSUInteger length)
    {
        string->addAttribute_value_range("mark"_ns, value, NSMakeRange(location, length));
    }

    /// Writes every stretch as its text and its mark: "He:a|llo:-".
    std::string runsOf(const Ref<NSAttributedString>& string)
    {
        std::string text;
        for (NSUInteger at = 0; at < string->length();) {
            NSRange range {};
            const Ref<NSDictionary> attributes
                = string->attributesAtIndex_effectiveRange(at, &range);
            EXPECT_EQ(range.location, at);
            const Ref<NSObject> value = attributes->objectForKey("mark"_ns);
            text += (at ? "|" : "") + utf8(string->string()->substringWithRange(range)) + ":"
                + (value ? textOf(value) : "-");
            at = NSMaxRange(range);
        }
        return text;
    }
    std::string runsOf(const Ref<NSMutableAttributedString>& string)
    {
        return runsOf(Ref<NSAttributedString>(string));
    }

}

TEST(NSAttributedString, BareInitAnswersAnEmptyText)
{
    const Ref<NSAttributedString> string = make<NSAttributedString>();
    EXPECT_EQ(string->length(), 0u);
    EXPECT_EQ(utf8(string->string()), "");
}

TEST(NSAttributedString, OneSetOfAttributesHoldsForTheWholeText)
{
    const Ref<NSAttributedString> string
        = alloc<NSAttributedString>()->initWithString_attributes("Lamp"_ns, marked("a"_ns).get());
    NSRange range {};
    EXPECT_EQ(textOf(string->attribute_atIndex_effectiveRange("mark"_ns, 2, &range)), "a");
    EXPECT_EQ(range, NSMakeRange(0, 4));
}

TEST(NSAttributedString, TextWithoutAttributesAnswersAnEmptyDictionary)
{
    EXPECT_EQ(plain("Lamp"_ns)->attributesAtIndex_effectiveRange(0, nullptr)->count(), 0u);
}

TEST(NSAttributedString, AskingAtTheEndRaises)
{
    const Ref<NSAttributedString> string = plain("Lamp"_ns);
    EXPECT_EQ(raisedBy([&] { string->attributesAtIndex_effectiveRange(4, nullptr); }),
        "NSRangeException: *** -[NSAttributedString attributesAtIndex:effectiveRange:]: Out of "
        "bounds");
}

TEST(NSAttributedString, AskingAnEmptyTextRaises)
{
    const Ref<NSAttributedString> string = plain(""_ns);
    EXPECT_EQ(raisedBy([&] { string->attributesAtIndex_effectiveRange(0, nullptr); }),
        "NSRangeException: *** -[NSAttributedString attributesAtIndex:effectiveRange:]: Out of "
        "bounds");
}

TEST(NSAttributedString, NilStringRaises)
{
    EXPECT_EQ(raisedBy([] { alloc<NSAttributedString>()->initWithString(nullptr); }),
        "NSInvalidArgumentException: *** -[NSAttributedString initWithString:attributes:]: nil "
        "argument");
}

TEST(NSAttributedString, AnotherKindOfObjectAsTextRaises)
{
    const Ref<NSNumber> number = NSNumber::cls().numberWithInt(3);
    EXPECT_EQ(raisedBy([&] {
        alloc<NSAttributedString>()->send<"initWithString:", Ref<NSObject>>(
            static_cast<NSObject*>(number.get()));
    }),
        "NSInvalidArgumentException: *** -[NSAttributedString initWithString:attributes:]: "
        "argument is not "
        "a NSString");
}

TEST(NSAttributedString, SubstringKeepsItsAttributes)
{
    const auto string = editable("Lamplight"_ns);
    mark(string, "a"_ns, 2, 4);
    EXPECT_EQ(runsOf(string->attributedSubstringFromRange(NSMakeRange(1, 4))), "a:-|mpl:a");
}

TEST(NSAttributedString, SubstringOutsideRaises)
{
    EXPECT_EQ(raisedBy([] { plain("ab"_ns)->attributedSubstringFromRange(NSMakeRange(1, 2)); }),
        "NSRangeException: *** -[NSAttributedString attributedSubstringFromRange:]: Out of bounds");
}

TEST(NSAttributedString, EqualMeansTextAndAttributes)
{
    const auto one = editable("Lamp"_ns);
    const auto other = editable("Lamp"_ns);
    EXPECT_TRUE(one->isEqual(other.get()));
    EXPECT_EQ(one->hash(), other->hash());
    mark(one, "a"_ns, 0, 2);
    EXPECT_FALSE(one->isEqual(other.get()));
    mark(other, "a"_ns, 0, 2);
    EXPECT_TRUE(one->isEqual(other.get()));
    EXPECT_FALSE(one->isEqual("Lamp"_ns));
}

TEST(NSAttributedString, CopyOfWhatChangesStaysAsItIs)
{
    const auto string = editable("Lamp"_ns);
    const auto copy = cast<NSAttributedString>(string->copy());
    mark(string, "a"_ns, 0, 4);
    string->deleteCharactersInRange(NSMakeRange(0, 2));
    EXPECT_EQ(runsOf(copy), "Lamp:-");
    EXPECT_EQ(copy->copy(), copy.get());
}

TEST(NSAttributedString, LongestRangeJoinsWhatAnotherAttributeCuts)
{
    const auto string = editable("Lamplight"_ns, marked("a"_ns).get());
    string->addAttribute_value_range("other"_ns, "x"_ns, NSMakeRange(3, 2));
    NSRange range {};
    string->attribute_atIndex_effectiveRange("mark"_ns, 0, &range);
    EXPECT_EQ(range, NSMakeRange(0, 3));
    string->attribute_atIndex_longestEffectiveRange_inRange(
        "mark"_ns, 4, &range, NSMakeRange(1, 7));
    EXPECT_EQ(range, NSMakeRange(1, 7));
}

TEST(NSAttributedString, EnumerationVisitsEveryStretchWithNilForNone)
{
    const auto string = editable("Lamplight"_ns);
    mark(string, "a"_ns, 2, 4);
    std::string log;
    const auto visit = [&](NSObject* value, NSRange range, bool*) {
        log += std::to_string(range.location) + "+" + std::to_string(range.length)
            + (value ? "a " : "- ");
    };
    string->enumerateAttribute_inRange_options_usingBlock("mark"_ns, NSMakeRange(1, 8), 0, visit);
    EXPECT_EQ(log, "1+1- 2+4a 6+3- ");
    log.clear();
    string->enumerateAttribute_inRange_options_usingBlock(
        "mark"_ns, NSMakeRange(1, 8), NSAttributedStringEnumerationReverse, visit);
    EXPECT_EQ(log, "6+3- 2+4a 1+1- ");
}

TEST(NSAttributedString, EnumerationStopsWhenTold)
{
    const auto string = editable("Lamplight"_ns);
    mark(string, "a"_ns, 2, 4);
    int visits = 0;
    string->enumerateAttributesInRange_options_usingBlock(
        NSMakeRange(0, 9), 0, [&](NSDictionary*, NSRange, bool* stop) {
            ++visits;
            *stop = true;
        });
    EXPECT_EQ(visits, 1);
}

TEST(NSAttributedString, EnumerationGoesOnBehindWhatItsClosureReplaced)
{
    const auto string = editable("one two one"_ns);
    mark(string, "a"_ns, 0, 3);
    mark(string, "b"_ns, 8, 3);
    std::string seen;
    string->enumerateAttribute_inRange_options_usingBlock(
        "mark"_ns, NSMakeRange(0, 11), 0, [&](NSObject* value, NSRange range, bool*) {
            seen += value ? textOf(value) : "-";
            if (value)
                string->replaceCharactersInRange_withString(range, "x"_ns);
        });
    EXPECT_EQ(seen, "a-b");
    EXPECT_EQ(runsOf(string), "x:a| two :-|x:b");
}

TEST(NSAttributedString, DescriptionShowsEachStretchWithItsAttributes)
{
    const auto string = editable("Lamp"_ns);
    mark(string, "a"_ns, 2, 2);
    EXPECT_EQ(textOf(string), "La{\n}mp{\n    mark = a;\n}");
}

TEST(NSMutableAttributedString, ReplacementTakesTheAttributesOfTheFirstUnitItReplaces)
{
    const auto string = editable("Lamplight"_ns);
    mark(string, "a"_ns, 2, 4);
    string->replaceCharactersInRange_withString(NSMakeRange(4, 4), "__"_ns);
    EXPECT_EQ(runsOf(string), "La:-|mp__:a|t:-");
}

TEST(NSMutableAttributedString, InsertionTakesTheAttributesBeforeIt)
{
    const auto string = editable("Lamp"_ns);
    mark(string, "a"_ns, 0, 2);
    string->replaceCharactersInRange_withString(NSMakeRange(2, 0), "_"_ns);
    EXPECT_EQ(runsOf(string), "La_:a|mp:-");
}

TEST(NSMutableAttributedString, InsertionAtTheStartTakesTheAttributesBehindIt)
{
    const auto string = editable("Lamp"_ns);
    mark(string, "a"_ns, 0, 2);
    string->replaceCharactersInRange_withString(NSMakeRange(0, 0), "_"_ns);
    EXPECT_EQ(runsOf(string), "_La:a|mp:-");
}

TEST(NSMutableAttributedString, TextIntoAnEmptyStringHasNoAttributes)
{
    const auto string = editable(""_ns);
    string->replaceCharactersInRange_withString(NSMakeRange(0, 0), "Lamp"_ns);
    EXPECT_EQ(runsOf(string), "Lamp:-");
}

TEST(NSMutableAttributedString, DeletingJoinsWhatBecomesNeighbours)
{
    const auto string = editable("Lamplight"_ns);
    mark(string, "a"_ns, 2, 4);
    string->deleteCharactersInRange(NSMakeRange(2, 4));
    EXPECT_EQ(runsOf(string), "Laght:-");
    string->deleteCharactersInRange(NSMakeRange(0, 5));
    EXPECT_EQ(string->length(), 0u);
}

TEST(NSMutableAttributedString, AttributedReplacementKeepsItsOwnAttributes)
{
    const auto string = editable("Lamp"_ns, marked("a"_ns).get());
    string->insertAttributedString_atIndex(plain("__"_ns).get(), 2);
    EXPECT_EQ(runsOf(string), "La:a|__:-|mp:a");
}

TEST(NSMutableAttributedString, ItselfCanBeAppended)
{
    const auto string = editable("ab"_ns);
    mark(string, "x"_ns, 1, 1);
    string->appendAttributedString(string.get());
    EXPECT_EQ(runsOf(string), "a:-|b:x|a:-|b:x");
}

TEST(NSMutableAttributedString, AddedAttributesWinAndOthersStay)
{
    const auto string = editable("Lamp"_ns, marked("a"_ns).get());
    string->addAttribute_value_range("other"_ns, "y"_ns, NSMakeRange(0, 4));
    mark(string, "b"_ns, 1, 2);
    EXPECT_EQ(runsOf(string), "L:a|am:b|p:a");
    EXPECT_EQ(textOf(string->attribute_atIndex_effectiveRange("other"_ns, 1, nullptr)), "y");
    string->removeAttribute_range("mark"_ns, NSMakeRange(0, 4));
    EXPECT_EQ(runsOf(string), "Lamp:-");
}

TEST(NSMutableAttributedString, NilAttributesRemoveAll)
{
    const auto string = editable("Lamp"_ns, marked("a"_ns).get());
    string->setAttributes_range(nullptr, NSMakeRange(1, 2));
    EXPECT_EQ(runsOf(string), "L:a|am:-|p:a");
}

TEST(NSMutableAttributedString, NilValueRaises)
{
    const auto string = editable("Lamp"_ns);
    EXPECT_EQ(
        raisedBy([&] { string->addAttribute_value_range("mark"_ns, nullptr, NSMakeRange(0, 1)); }),
        "NSInvalidArgumentException: *** -[NSMutableAttributedString addAttribute:value:range:]: "
        "nil "
        "argument");
}

TEST(NSMutableAttributedString, RangeOutsideRaisesAndChangesNothing)
{
    const auto string = editable("Lamp"_ns);
    EXPECT_EQ(raisedBy([&] {
        string->replaceCharactersInRange_withString(NSMakeRange(3, ~NSUInteger {}), "x"_ns);
    }),
        "NSRangeException: *** -[NSMutableAttributedString replaceCharactersInRange:withString:]: "
        "Out of "
        "bounds");
    EXPECT_EQ(runsOf(string), "Lamp:-");
}

TEST(NSMutableAttributedString, EditsOfItsMutableStringAreItsOwn)
{
    const auto string = editable("Lamp"_ns, marked("a"_ns).get());
    string->mutableString()->appendString("light"_ns);
    EXPECT_EQ(runsOf(string), "Lamplight:a");
    EXPECT_EQ(utf8(Ref<NSString>(string->mutableString())), "Lamplight");
}

TEST(NSAttributedStringCoding, RunsComeBack)
{
    const auto string = editable("Lamplight"_ns);
    mark(string, "a"_ns, 2, 4);
    mark(string, "b"_ns, 6, 2);
    const Ref<NSData> data
        = NSKeyedArchiver::cls().archivedDataWithRootObject(Ref<NSObject>(string->copy()).get());
    const Ref<NSObject> back = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
    ASSERT_TRUE(back && back->isKindOfClass(NSAttributedString::cls()));
    EXPECT_EQ(runsOf(cast<NSAttributedString>(back)), "La:-|mpli:a|gh:b|t:-");
}

TEST(NSAttributedStringCoding, MutableStringsComeBackMutable)
{
    const auto string = editable("Lamp"_ns, marked("a"_ns).get());
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(string.get());
    const Ref<NSObject> back = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
    ASSERT_TRUE(back && back->isKindOfClass(NSMutableAttributedString::cls()));
    EXPECT_EQ(runsOf(cast<NSAttributedString>(back)), "Lamp:a");
}

}
