// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>

#include "appkit/NSView.h"

namespace gallery {

/// A rounded sheet with a heading and a line about it; subclasses draw into `bodyRect`. Flipped.
class GalleryCard : public brindle::NSView {
    BRINDLE_OBJECT(GalleryCard, brindle::NSView)

public:
    brindle::Ref<brindle::NSString> heading() const
    {
        return send<"heading", brindle::Ref<brindle::NSString>>();
    }
    void setHeading(brindle::NSString* text) { send<"setHeading:">(text); }
    brindle::Ref<brindle::NSString> caption() const
    {
        return send<"caption", brindle::Ref<brindle::NSString>>();
    }
    void setCaption(brindle::NSString* text) { send<"setCaption:">(text); }
    /// Answers the room under the heading.
    brindle::NSRect bodyRect() const { return send<"bodyRect", brindle::NSRect>(); }
    /// Draws what the card is about; called with the sheet and the heading drawn.
    void drawBody(brindle::NSRect body) { send<"drawBody:">(body); }

private:
    brindle::Ref<brindle::NSString> heading_;
    brindle::Ref<brindle::NSString> caption_;
    brindle::Ref<brindle::NSView> codeButton_; // shows the card's code
};

/// The room between cards.
constexpr double kCardGap = 16;

/// Answers the place so many further in a ring of places.
inline brindle::NSUInteger placeInRing(
    brindle::NSUInteger place, brindle::NSInteger further, std::size_t count)
{
    const auto whole = static_cast<brindle::NSInteger>(count);
    const brindle::NSInteger sum = static_cast<brindle::NSInteger>(place) + further % whole + whole;
    return static_cast<brindle::NSUInteger>(sum % whole);
}

/// Gives views an even share of a row, from left to right.
void layOutRow(std::initializer_list<brindle::NSView*> views, brindle::NSRect row);
/// Gives views an even share of a column, from top to bottom.
void layOutColumn(std::initializer_list<brindle::NSView*> views, brindle::NSRect column);

// Each takes a piece of this size off a side of the room, with the gap behind it, and answers the piece.
brindle::NSRect takeTop(brindle::NSRect& room, double height);
brindle::NSRect takeBottom(brindle::NSRect& room, double height);
brindle::NSRect takeLeft(brindle::NSRect& room, double width);

/// Makes a card and adds it to a page.
template <class Card> brindle::Ref<Card> addCard(brindle::NSView& page)
{
    brindle::Ref<Card> card = brindle::make<Card>();
    page.addSubview(card.get());
    return card;
}
/// The same for a card that does not head itself.
template <class Card>
brindle::Ref<Card> addCard(
    brindle::NSView& page, brindle::NSString* heading, brindle::NSString* caption)
{
    brindle::Ref<Card> card = addCard<Card>(page);
    card->setHeading(heading);
    card->setCaption(caption);
    return card;
}

}
