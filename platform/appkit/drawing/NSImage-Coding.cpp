// SPDX-License-Identifier: Apache-2.0
#include "NSImagePrivate.h"
#include "foundation/CodingTable.h"
#include "foundation/NSData.h"
#include "foundation/NSSet.h"
#include "runtime/Table.h"

namespace brindle {

// - Shape: "NSTIFFRepresentation" is the bitmap as a TIFF file, "NSSize" its size in points.
template <> struct NSBitmapImageRep::Methods<struct Coding> {

    static void encode(NSBitmapImageRep& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.TIFFRepresentation().get(), "NSTIFFRepresentation"_ns);
        coder->encodeSize_forKey(self.size(), "NSSize"_ns);
    }
    static Ref<NSObject> initWithCoder(NSBitmapImageRep& self, NSCoder* coder)
    {
        const Ref<NSData> file = decode<NSData>(coder, "NSTIFFRepresentation"_ns);
        if (!self.initWithData(file.get()))
            return nullptr;
        if (coder->containsValueForKey("NSSize"_ns))
            self.setSize(coder->decodeSizeForKey("NSSize"_ns));
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSBitmapImageRep, Coding)

// - Shape: "NSReps" is an array of bitmaps, in which everything else was drawn; "NSSize", "NSTemplate" and the margins
//   "NSCapInsets" (a rectangle of left, bottom, right, top) with "NSResizingMode" are the image's own.
template <> struct NSImage::Methods<struct Coding> {

    static void encode(NSImage& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(arrayOf(ImageAccess::bitmaps(self)).get(), "NSReps"_ns);
        coder->encodeSize_forKey(self.size(), "NSSize"_ns);
        coder->encodeBool_forKey(self.template_, "NSTemplate"_ns);
        const NSEdgeInsets& caps = self.capInsets_;
        coder->encodeRect_forKey(
            NSMakeRect(caps.left, caps.bottom, caps.right, caps.top), "NSCapInsets"_ns);
        coder->encodeInteger_forKey(self.resizingMode_, "NSResizingMode"_ns);
        coder->encodeObject_forKey(
            self.accessibilityDescription_.get(), "NSAccessibilityDescription"_ns);
    }
    static Ref<NSObject> initWithCoder(NSImage& self, NSCoder* coder)
    {
        const std::vector<Ref<NSObject>> classes { Ref<NSObject>(classOf<NSArray>()),
            Ref<NSObject>(classOf<NSBitmapImageRep>()) };
        const Ref<NSSet> allowed = NSSet::cls().setWithArray(arrayOf(classes).get());
        const Ref<NSObject> reps = coder->decodeObjectOfClasses_forKey(allowed.get(), "NSReps"_ns);
        if (!reps || !reps->isKindOfClass(NSArray::cls())
            || !self.initWithSize(coder->decodeSizeForKey("NSSize"_ns)))
            return nullptr;
        for (NSObject* rep : each(cast<NSArray>(reps))) {
            if (!rep->isKindOfClass(NSBitmapImageRep::cls()))
                return nullptr;
            self.addRepresentation(static_cast<NSImageRep*>(rep));
        }
        self.template_ = coder->decodeBoolForKey("NSTemplate"_ns);
        const NSRect caps = coder->decodeRectForKey("NSCapInsets"_ns);
        self.capInsets_
            = NSEdgeInsetsMake(caps.size.height, caps.origin.x, caps.origin.y, caps.size.width);
        self.resizingMode_ = coder->decodeIntegerForKey("NSResizingMode"_ns) == 1
            ? NSImageResizingModeTile
            : NSImageResizingModeStretch;
        self.accessibilityDescription_ = decode<NSString>(coder, "NSAccessibilityDescription"_ns);
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSImage, Coding)

}
