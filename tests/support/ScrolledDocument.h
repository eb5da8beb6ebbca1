// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "appkit/NSScrollView.h"
#include "foundation/NSNotificationCenter.h"
#include "support/Strings.h"

namespace brindle {

/// A document for scroll views: its rows have different shades, and it knows which of it was drawn.
class ScrolledDocument : public NSView {
    BRINDLE_OBJECT(ScrolledDocument, NSView)

public:
    bool upright_ = false; // y up
    int drawings_ = 0;
    NSRect drawn_ {}; // last
    Ref<NSView> header_;
    CGFloat grid_ = 0; // what `adjustScroll:` rounds to; 0 is nothing
};

namespace test {

    Ref<ScrolledDocument> scrolledDocument(NSSize size);

    /// A scroll view without border whose document is larger than itself.
    struct Scrolled {
        explicit Scrolled(NSRect frame = NSMakeRect(0, 0, 100, 200),
            NSSize size = NSMakeSize(100, 1000), bool upright = false)
            : view(cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(frame)))
            , document(scrolledDocument(size))
        {
            document->upright_ = upright;
            view->setDocumentView(document.get());
        }
        NSPoint place() const { return view->contentView()->bounds().origin; }
        CGFloat y() const { return place().y; }

        Ref<NSScrollView> view;
        Ref<ScrolledDocument> document;
    };

    /// Counts or writes down notifications of one object while it lives.
    class Notes {
    public:
        Notes(NSObject* object, std::vector<NSString*> names)
        {
            for (NSString* name : names)
                tokens_.push_back(NSNotificationCenter::cls()
                                      .defaultCenter()
                                      ->addObserverForName_object_queue_usingBlock(
                                          name, object, nullptr, [this, name](NSNotification*) {
                                              ++count;
                                              log += utf8Of(name) + " ";
                                          }));
        }
        ~Notes()
        {
            for (const Ref<NSObject>& token : tokens_)
                NSNotificationCenter::cls().defaultCenter()->removeObserver(token.get());
        }
        Notes(const Notes&) = delete;
        Notes& operator=(const Notes&) = delete;

        int count = 0;
        std::string log;

    private:
        std::vector<Ref<NSObject>> tokens_;
    };

}

}
