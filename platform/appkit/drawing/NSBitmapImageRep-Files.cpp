// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBitmapImageRep.h"

#include "NSImagePrivate.h"
#include "foundation/NSData.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>

namespace brindle {

namespace {

    NSSize pointsOf(const quartz::ImageFile& file)
    {
        const double scale = 72 / file.dotsPerInch;
        return NSMakeSize(static_cast<double>(file.image->width()) * scale,
            static_cast<double>(file.image->height()) * scale);
    }

    Ref<NSData> dataOf(const std::string& bytes)
    {
        return bytes.empty() ? nullptr
                             : NSData::cls().dataWithBytes_length(bytes.data(), bytes.size());
    }

    /// Answers a bitmap's picture with the resolution that its size means.
    quartz::ImageFile fileOf(NSBitmapImageRep& rep)
    {
        const double width = rep.size().width;
        const double pixels = static_cast<double>(rep.pixelsWide());
        const bool isUsable = width > 0 && pixels > 0 && std::isfinite(width);
        return { rep.CGImage(), isUsable ? pixels * 72 / width : 72, 0 };
    }

    double number(NSDictionary* properties, NSString* key, double otherwise)
    {
        const Ref<NSObject> value = maybe(properties)->objectForKey(key);
        return value && value->isKindOfClass(NSNumber::cls())
            ? static_cast<NSNumber*>(value.get())->doubleValue()
            : otherwise;
    }

}

std::vector<Ref<NSBitmapImageRep>> BitmapAccess::read(std::span<const std::byte> bytes)
{
    quartz::ImageFiles files = quartz::decodeImages(bytes);
    std::vector<Ref<NSBitmapImageRep>> reps;
    for (const quartz::ImageFile& file : files.pictures) {
        reps.push_back(bitmap(file.image, pointsOf(file)));
        if (files.isAnimation) { // one representation that turns its frames
            BitmapState& first = state(*reps.front());
            first.frames = std::move(files.pictures);
            first.loops = files.loops;
            break;
        }
    }
    return reps;
}

std::vector<Ref<NSBitmapImageRep>> BitmapAccess::readFile(const std::string& path)
{
    const auto file = Ref<CGDataProvider>::adopt(CGDataProviderCreateWithFilename(path.c_str()));
    return file ? read(file->bytes()) : std::vector<Ref<NSBitmapImageRep>>();
}

template <> struct NSBitmapImageRep::Methods<struct Files> {

    static Ref<NSArray> repsWithData(Class&, NSData* data)
    {
        return arrayOf(BitmapAccess::read(std::as_bytes(bytesOf(data))));
    }
    static Ref<NSBitmapImageRep> repWithData(Class& self, NSData* data)
    {
        return cast<NSBitmapImageRep>(self.send<"alloc", Ref<NSObject>>())->initWithData(data);
    }
    static Ref<NSBitmapImageRep> initWithData(NSBitmapImageRep& self, NSData* data)
    {
        const auto reps = BitmapAccess::read(std::as_bytes(bytesOf(data)));
        if (reps.empty() || !super<NSBitmapImageRep, "init", Ref<NSObject>>(self))
            return nullptr;
        ImageRepAccess::copyFacts(self, *reps.front());
        self.state_ = reps.front()->state_;
        return &self;
    }

    // ---- writing

    static std::string tiffOf(NSArray* reps, NSDictionary* properties)
    {
        std::vector<quartz::ImageFile> files;
        for (NSObject* item : each(Ref<NSArray>(reps))) {
            if (!item->isKindOfClass(NSBitmapImageRep::cls()))
                continue;
            quartz::ImageFile file = fileOf(*static_cast<NSBitmapImageRep*>(item));
            if (file.image)
                files.push_back(std::move(file));
        }
        const double compression = number(properties, NSImageCompressionMethod, 0);
        return quartz::encodeTIFF(
            files, static_cast<NSUInteger>(compression) == NSTIFFCompressionPackBits);
    }
    static Ref<NSData> tiffRepresentation(NSBitmapImageRep& self)
    {
        return self.representationUsingType_properties(NSTIFFFileType, nullptr);
    }
    static Ref<NSData> tiffOfReps(Class&, NSArray* reps) { return dataOf(tiffOf(reps, nullptr)); }
    static Ref<NSData> fileOfReps(
        Class&, NSArray* reps, NSBitmapImageFileType type, NSDictionary* properties)
    {
        if (type == NSTIFFFileType)
            return dataOf(tiffOf(reps, properties));
        for (NSObject* item : each(Ref<NSArray>(reps))) {
            if (item->isKindOfClass(NSBitmapImageRep::cls()))
                return static_cast<NSBitmapImageRep*>(item)->representationUsingType_properties(
                    type, properties);
        }
        return nullptr;
    }
    static Ref<NSData> representation(
        NSBitmapImageRep& self, NSBitmapImageFileType type, NSDictionary* properties)
    {
        const quartz::ImageFile file = fileOf(self);
        switch (type) {
        case NSTIFFFileType:
            return dataOf(tiffOf(NSArray::cls().arrayWithObject(&self).get(), properties));
        case NSBMPFileType:
            return dataOf(quartz::encodeBMP(file));
        case NSJPEGFileType:
            return dataOf(quartz::encodeJPEG(file.image.get(),
                number(properties, NSImageCompressionFactor, 0.8), file.dotsPerInch));
        case NSPNGFileType:
            return dataOf(quartz::encodePNG(file.image.get(), file.dotsPerInch));
        default:
            return nullptr;
        }
    }

    // ---- animations and properties

    static void showFrame(NSBitmapImageRep& self, NSObject* value)
    {
        BitmapState& s = BitmapAccess::state(self);
        const NSInteger wanted = value->isKindOfClass(NSNumber::cls())
            ? static_cast<NSNumber*>(value)->integerValue()
            : -1;
        if (wanted < 0 || static_cast<std::size_t>(wanted) >= s.frames.size())
            return;
        s.frame = static_cast<std::size_t>(wanted);
        s.picture = s.frames[s.frame].image;
        s.memory = nullptr;
        s.planes = {};
    }
    static void setProperty(NSBitmapImageRep& self, NSString* name, NSObject* value)
    {
        BitmapState& s = BitmapAccess::state(self);
        if (!name)
            return;
        if (value && name->isEqual(NSImageCurrentFrame.get()))
            return showFrame(self, value);
        if (!s.properties)
            s.properties = make<NSMutableDictionary>();
        if (value)
            s.properties->setObject_forKey(value, name);
        else
            s.properties->removeObjectForKey(name);
    }
    static Ref<NSObject> valueForProperty(NSBitmapImageRep& self, NSString* name)
    {
        const BitmapState& s = BitmapAccess::state(self);
        if (!name)
            return nullptr;
        if (!s.frames.empty()) {
            const auto numbers = NSNumber::cls();
            if (name->isEqual(NSImageFrameCount.get()))
                return numbers.numberWithInteger(static_cast<NSInteger>(s.frames.size()));
            if (name->isEqual(NSImageCurrentFrame.get()))
                return numbers.numberWithInteger(static_cast<NSInteger>(s.frame));
            if (name->isEqual(NSImageCurrentFrameDuration.get()))
                return numbers.numberWithDouble(s.frames[s.frame].seconds);
            if (name->isEqual(NSImageLoopCount.get()))
                return numbers.numberWithInteger(s.loops);
        }
        return maybe(s.properties)->objectForKey(name);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "imageRepsWithData:", imp<repsWithData> },
            { "imageRepWithData:", imp<repWithData> },
            { "representationOfImageRepsInArray:usingType:properties:", imp<fileOfReps> },
            { "TIFFRepresentationOfImageRepsInArray:", imp<tiffOfReps> },
        });
        t.methods({
            { "initWithData:", imp<initWithData> },
            { "TIFFRepresentation", imp<tiffRepresentation> },
            { "representationUsingType:properties:", imp<representation> },
            { "setProperty:withValue:", imp<setProperty> },
            { "valueForProperty:", imp<valueForProperty> },
        });
    }
};
BRINDLE_RECORD(NSBitmapImageRep, Files)

}
