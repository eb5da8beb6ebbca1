// SPDX-License-Identifier: Apache-2.0
#include "ScannerCard.h"

#include <algorithm>
#include <cmath>

#include "core/NSObject+SelectorAndBlockTimeout.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "text/NSScanner+BRExtensions.h"

namespace gallery {

using namespace brindle;

template <> struct ScannerCard::Methods<struct Scanning> {

    static constexpr double kStepSeconds = 0.25;
    static constexpr double kMostCell = 24;

    static NSString* text() { return "one;two;key;six;now;"_ns; }

    static Ref<NSView> initWithFrame(ScannerCard& self, NSRect frame)
    {
        self.setHeading("Scanner"_ns);
        self.setCaption("scanBackToString: steps back by the length of the word"_ns);
        self.keyChip_ = addChip(&self, "“key”"_ns, "k"_ns, sending<"scanKey">(&self));
        self.nowChip_ = addChip(&self, "“now”"_ns, "n"_ns, sending<"scanNow">(&self));
        self.oneChip_ = addChip(&self, "“one;”"_ns, "o"_ns, sending<"scanOne">(&self));
        return super<ScannerCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(ScannerCard& self, NSSize size)
    {
        super<ScannerCard, "setFrameSize:">(self, size);
        layOutChips({ self.keyChip_.get(), self.nowChip_.get(), self.oneChip_.get() },
            { 16, size.height - 44 });
    }

    static void scan(ScannerCard& self, NSString* word)
    {
        const Ref<NSScanner> scanner = NSScanner::cls().scannerWithString(text());
        scanner->setScanLocation(text()->length());
        self.isFound_ = false;
        try {
            self.isFound_ = scanBackToString(scanner, word);
            self.answer_ = NSString::cls().stringWithFormat(
                self.isFound_ ? "YES, at %lu"_ns : "NO, at %lu"_ns, scanner->scanLocation());
        } catch (const Exception& exception) {
            self.answer_ = exception->name();
        }
        self.word_ = Ref<NSString>(word);
        self.end_ = scanner->scanLocation();
        self.shownSteps_ = 0;
        showNextStep(self);
    }
    static void scanKey(ScannerCard& self) { scan(self, "key"_ns); }
    static void scanNow(ScannerCard& self) { scan(self, "now"_ns); }
    static void scanOne(ScannerCard& self) { scan(self, "one;"_ns); }

    static NSUInteger steps(ScannerCard& self)
    {
        return (text()->length() - self.end_) / self.word_->length();
    }

    static void showNextStep(ScannerCard& self)
    {
        self.setNeedsDisplay(true);
        if (self.shownSteps_ == steps(self))
            return;
        ++self.shownSteps_;
        timeoutToSelector_afterDelay(self, selector<"showNextStep">, kStepSeconds);
    }

    static void drawLetters(ScannerCard& self, NSPoint place, double side)
    {
        const Palette& colors = palette();
        const bool isOver = self.word_ && self.shownSteps_ == steps(self);
        for (NSUInteger i = 0; i < text()->length(); ++i, place.x += side) {
            const NSRect cell = inset(NSMakeRect(place.x, place.y, side, side + 4), 1);
            const bool isHit
                = isOver && self.isFound_ && i >= self.end_ && i < self.end_ + self.word_->length();
            fillRounded(cell, 4, isHit ? colors.accent.get() : colors.soft.get());
            drawCentered(text()->substringWithRange(NSMakeRange(i, 1)).get(), cell, Style::body,
                isHit ? colors.accentText.get() : colors.text.get());
        }
    }

    static void drawSteps(ScannerCard& self, NSPoint place, double side)
    {
        if (!self.word_)
            return;
        const auto length = static_cast<double>(self.word_->length());
        double from = place.x + static_cast<double>(text()->length()) * side;
        for (NSUInteger i = 0; i < self.shownSteps_; ++i, from -= length * side)
            drawArrow({ from - 2, place.y }, { from - length * side + 1, place.y },
                palette().accent.get());
    }

    static void drawBody(ScannerCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const double side = std::min(
            kMostCell, std::floor(body.size.width / static_cast<double>(text()->length())));
        drawLetters(self, body.origin, side);
        drawSteps(self, { body.origin.x, body.origin.y + side + 13 }, side);
        if (!self.word_ || self.shownSteps_ < steps(self))
            return;
        const double width = sizeOf(self.answer_.get(), Style::heading).width;
        drawText(self.answer_.get(), { NSMaxX(body) - width, kChipHeight - 12 }, Style::heading,
            colors.accent.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "scanKey", imp<scanKey> },
            { "scanNow", imp<scanNow> },
            { "scanOne", imp<scanOne> },
            { "showNextStep", imp<showNextStep> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ScannerCard, Scanning)

}
