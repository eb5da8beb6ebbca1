// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextContainer.h"
#include "support/TextStack.h"

namespace brindle {

using test::lineHeight;
using test::TextStack;
using test::widthOf;

TEST(NSTextContainer, PaddingIsFiveUnlessSet)
{
    EXPECT_EQ(make<NSTextContainer>()->lineFragmentPadding(), 5);
    const TextStack stack("Lamp");
    stack.container->setLineFragmentPadding(0);
    EXPECT_NEAR(stack.used().size.width, widthOf("Lamp"_ns), 1e-9);
}

TEST(NSTextContainer, LineLimitAndTruncationPutAnEllipsisOnTheLastLine)
{
    const TextStack stack("one two three four", widthOf("one two"_ns) + 11);
    stack.container->setMaximumNumberOfLines(1);
    EXPECT_EQ(stack.lines(), "one two ");
    stack.container->setLineBreakMode(NSLineBreakByTruncatingTail);
    EXPECT_EQ(stack.lines(), "one two three four");
    EXPECT_EQ(stack.used().size.height, lineHeight());
}

}
