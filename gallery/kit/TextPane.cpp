// SPDX-License-Identifier: Apache-2.0
#include "TextPane.h"

#include "appkit/NSFont.h"

namespace gallery {

using namespace brindle;

TextPane addTextPane(NSView& card, NSString* string, double points)
{
    const auto text
        = cast<NSTextView>(alloc<NSTextView>()->initWithFrame(NSMakeRect(0, 0, 300, 100)));
    text->setString(string);
    text->setFont(NSFont::cls().systemFontOfSize(points).get());
    text->setTextContainerInset({ 6, 8 });
    text->setAllowsUndo(true);
    text->setVerticallyResizable(true);
    text->setAutoresizingMask(NSViewWidthSizable);
    const auto scroll = make<NSScrollView>();
    scroll->setHasVerticalScroller(true);
    scroll->setAutohidesScrollers(true);
    scroll->setBorderType(NSBezelBorder);
    scroll->setDocumentView(text.get());
    card.addSubview(scroll.get());
    return { text, scroll };
}

}
