// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSGraphicsContext.h"

#include "NSGraphicsContextPrivate.h"
#include "appkit/NSColor.h"
#include "quartz/CGBitmapContext.h"
#include "quartz/ContextState.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

#include <utility>
#include <vector>

namespace brindle {

namespace {

    /// What a thread draws into now, and what it will return to.
    struct Focus {
        Ref<NSGraphicsContext> current;
        std::vector<Ref<NSGraphicsContext>> remembered;
        std::size_t floor = 0; // what was remembered outside of the present scope
    };

    constexpr char kRepresentationKey = 0; // its address is the key

    Focus& focus()
    {
        static thread_local Focus focus;
        return focus;
    }

    CGContextRef portOf(const Ref<NSGraphicsContext>& context)
    {
        return context ? context->CGContext().get() : nullptr; // the object keeps it
    }

}

CurrentContextScope::CurrentContextScope(NSGraphicsContext* context)
    : previous_(focus().current)
    , floor_(std::exchange(focus().floor, focus().remembered.size()))
{
    focus().current = context;
}

CurrentContextScope::~CurrentContextScope()
{
    Focus& now = focus();
    now.current = previous_;
    now.remembered.resize(now.floor);
    now.floor = floor_;
}

template <> struct NSGraphicsContext::Methods<struct Current> {

    static Ref<NSGraphicsContext> currentContext(Class&) { return focus().current; }
    static void setCurrentContext(Class&, NSGraphicsContext* context) { focus().current = context; }

    static void saveAll(Class&)
    {
        const Ref<NSGraphicsContext> current = focus().current;
        focus().remembered.push_back(current);
        if (current)
            current->saveGraphicsState();
    }

    static void restoreAll(Class&)
    {
        Focus& now = focus();
        if (now.remembered.size() <= now.floor)
            return;
        now.current = std::move(now.remembered.back());
        now.remembered.pop_back();
        const Ref<NSGraphicsContext> current = now.current;
        if (current)
            current->restoreGraphicsState();
    }

    static bool currentContextDrawingToScreen(Class&)
    {
        return maybe(focus().current)->isDrawingToScreen();
    }

    static Ref<NSGraphicsContext> withPort(Class& self, class CGContext* port, bool flipped)
    {
        if (!port)
            return nullptr;
        Ref<NSGraphicsContext> context
            = cast<NSGraphicsContext>(self.send<"alloc", Ref<NSObject>>()->init());
        context->context_ = port;
        context->flipped_ = flipped;
        return context;
    }

    static Ref<NSGraphicsContext> withBitmapImageRep(Class& self, NSBitmapImageRep* representation)
    {
        if (!representation)
            return nullptr;
        const auto* rep = reinterpret_cast<const NSObject*>(representation);
        const auto count
            = [](NSInteger number) { return number > 0 ? static_cast<std::size_t>(number) : 0; };
        if (rep->send<"bitsPerPixel", NSInteger>() != 32
            || rep->send<"bitsPerSample", NSInteger>() != 8 || rep->send<"isPlanar", bool>())
            return nullptr;
        const CGBitmapInfo info = rep->send<"hasAlpha", bool>() ? kCGImageAlphaPremultipliedLast
                                                                : kCGImageAlphaNoneSkipLast;
        const Ref<CGColorSpace> space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
        const auto port = Ref<class CGContext>::adopt(CGBitmapContextCreate(
            rep->send<"bitmapData", unsigned char*>(), count(rep->send<"pixelsWide", NSInteger>()),
            count(rep->send<"pixelsHigh", NSInteger>()), 8,
            count(rep->send<"bytesPerRow", NSInteger>()), space.get(), info));
        if (port) {
            // The pixels belong to the representation: the context keeps it.
            objc_setAssociatedObject(port.get(), &kRepresentationKey, const_cast<NSObject*>(rep),
                OBJC_ASSOCIATION_RETAIN);
        }
        return withPort(self, port.get(), false);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "currentContext", imp<currentContext> },
            { "setCurrentContext:", imp<setCurrentContext> },
            { "saveGraphicsState", imp<saveAll> },
            { "restoreGraphicsState", imp<restoreAll> },
            { "currentContextDrawingToScreen", imp<currentContextDrawingToScreen> },
            { "graphicsContextWithGraphicsPort:flipped:", imp<withPort> },
            { "graphicsContextWithCGContext:flipped:", imp<withPort> },
            { "graphicsContextWithBitmapImageRep:", imp<withBitmapImageRep> },
        });
    }
};
BRINDLE_RECORD(NSGraphicsContext, Current)

template <> struct NSGraphicsContext::Methods<struct State> {

    static Ref<class CGContext> port(NSGraphicsContext& self) { return self.context_; }
    static bool isFlipped(NSGraphicsContext& self) { return self.flipped_; }
    static bool isDrawingToScreen(NSGraphicsContext&) { return false; }
    static void flush(NSGraphicsContext& self) { CGContextFlush(self.context_.get()); }
    static void save(NSGraphicsContext& self) { CGContextSaveGState(self.context_.get()); }
    static void restore(NSGraphicsContext& self) { CGContextRestoreGState(self.context_.get()); }

    static NSImageInterpolation imageInterpolation(NSGraphicsContext& self)
    {
        return static_cast<NSImageInterpolation>(
            CGContextGetInterpolationQuality(self.context_.get()));
    }

    static void setImageInterpolation(NSGraphicsContext& self, NSImageInterpolation quality)
    {
        CGContextSetInterpolationQuality(
            self.context_.get(), static_cast<CGInterpolationQuality>(quality));
    }

    static NSCompositingOperation compositingOperation(NSGraphicsContext& self)
    {
        const CGBlendMode mode = quartz::blendMode(self.context_.get());
        for (NSUInteger i = NSCompositeClear; i <= NSCompositePlusLighter; ++i) {
            const auto operation = static_cast<NSCompositingOperation>(i);
            if (blendModeFor(operation) == mode)
                return operation;
        }
        return NSCompositeSourceOver;
    }

    static void setCompositingOperation(NSGraphicsContext& self, NSCompositingOperation operation)
    {
        CGContextSetBlendMode(self.context_.get(), blendModeFor(operation));
    }

    static bool shouldAntialias(NSGraphicsContext& self)
    {
        return quartz::shouldAntialias(self.context_.get());
    }

    static void setShouldAntialias(NSGraphicsContext& self, bool antialias)
    {
        CGContextSetShouldAntialias(self.context_.get(), antialias);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "graphicsPort", imp<port> },
            { "CGContext", imp<port> },
            { "isFlipped", imp<isFlipped> },
            { "isDrawingToScreen", imp<isDrawingToScreen> },
            { "flushGraphics", imp<flush> },
            { "saveGraphicsState", imp<save> },
            { "restoreGraphicsState", imp<restore> },
            { "imageInterpolation", imp<imageInterpolation> },
            { "setImageInterpolation:", imp<setImageInterpolation> },
            { "compositingOperation", imp<compositingOperation> },
            { "setCompositingOperation:", imp<setCompositingOperation> },
            { "shouldAntialias", imp<shouldAntialias> },
            { "setShouldAntialias:", imp<setShouldAntialias> },
        });
    }
};
BRINDLE_RECORD(NSGraphicsContext, State)

// ---- functions

CGBlendMode blendModeFor(NSCompositingOperation operation)
{
    static constexpr CGBlendMode kModes[] = { kCGBlendModeClear, kCGBlendModeCopy,
        kCGBlendModeNormal, kCGBlendModeSourceIn, kCGBlendModeSourceOut, kCGBlendModeSourceAtop,
        kCGBlendModeDestinationOver, kCGBlendModeDestinationIn, kCGBlendModeDestinationOut,
        kCGBlendModeDestinationAtop, kCGBlendModeXOR, kCGBlendModePlusDarker, kCGBlendModeNormal,
        kCGBlendModePlusLighter };
    return operation < std::size(kModes) ? kModes[operation] : kCGBlendModeNormal;
}

Ref<CGContext> currentCGContext() { return maybe(focus().current)->CGContext(); }

void NSRectFill(NSRect rect) { NSRectFillUsingOperation(rect, NSCompositeCopy); }

void NSRectFillUsingOperation(NSRect rect, NSCompositingOperation operation)
{
    NSRectFillListUsingOperation(&rect, 1, operation);
}

void NSRectFillList(const NSRect* rects, NSInteger count)
{
    NSRectFillListUsingOperation(rects, count, NSCompositeCopy);
}

void NSRectFillListUsingOperation(
    const NSRect* rects, NSInteger count, NSCompositingOperation operation)
{
    const CGContextRef port = portOf(focus().current);
    if (!port || !rects || count <= 0)
        return;
    const CGBlendMode kept = quartz::blendMode(port);
    CGContextSetBlendMode(port, blendModeFor(operation));
    CGContextFillRects(port, rects, static_cast<std::size_t>(count));
    CGContextSetBlendMode(port, kept);
}

void NSFrameRect(NSRect rect) { NSFrameRectWithWidth(rect, 1); }

void NSFrameRectWithWidth(NSRect rect, CGFloat width)
{
    NSFrameRectWithWidthUsingOperation(rect, width, NSCompositeCopy);
}

void NSFrameRectWithWidthUsingOperation(
    NSRect rect, CGFloat width, NSCompositingOperation operation)
{
    const NSRect r = CGRectStandardize(rect);
    if (!(r.size.width > 2 * width) || !(r.size.height > 2 * width))
        return NSRectFillUsingOperation(r, operation);
    const CGFloat inner = r.size.height - 2 * width;
    const NSRect sides[] = {
        NSMakeRect(r.origin.x, r.origin.y, r.size.width, width),
        NSMakeRect(r.origin.x, NSMaxY(r) - width, r.size.width, width),
        NSMakeRect(r.origin.x, r.origin.y + width, width, inner),
        NSMakeRect(NSMaxX(r) - width, r.origin.y + width, width, inner),
    };
    NSRectFillListUsingOperation(sides, std::size(sides), operation);
}

void NSRectClip(NSRect rect) { NSRectClipList(&rect, 1); }

void NSRectClipList(const NSRect* rects, NSInteger count)
{
    if (rects && count >= 0)
        CGContextClipToRects(portOf(focus().current), rects, static_cast<std::size_t>(count));
}

void NSEraseRect(NSRect rect)
{
    const GraphicsStateGuard saved;
    CGContextSetGrayFillColor(portOf(focus().current), 1, 1);
    NSRectFill(rect);
}

void NSSetFocusRingStyle(NSFocusRingPlacement placement)
{
    const CGContextRef port = portOf(focus().current);
    const Ref<CGColor> color = NSColor::cls().keyboardFocusIndicatorColor()->CGColor();
    if (port)
        quartz::setFocusRing(port, static_cast<quartz::FocusRing>(placement + 1), color.get());
}

}
