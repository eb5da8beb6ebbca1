// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSImageRep.h"

namespace brindle {

class NSColor;
struct BitmapState;

/// Formats a bitmap can be written in.
enum NSBitmapImageFileType : NSUInteger {
    NSTIFFFileType = 0,
    NSBMPFileType = 1,
    NSGIFFileType = 2, ///< read only
    NSJPEGFileType = 3,
    NSPNGFileType = 4,
    NSJPEG2000FileType = 5, ///< neither read nor written
};

/// How samples lie in a bitmap; bits.
enum NSBitmapFormat : NSUInteger {
    NSAlphaFirstBitmapFormat = 1,
    NSAlphaNonpremultipliedBitmapFormat = 2,
};

enum NSTIFFCompression : NSUInteger {
    NSTIFFCompressionNone = 1,
    NSTIFFCompressionPackBits = 32773,
};

// Properties of bitmaps and of the files they are written to.
/// For TIFF: an NSNumber of `NSTIFFCompression`; without it nothing is packed.
inline constexpr StringConstant<"NSImageCompressionMethod"> NSImageCompressionMethod;
/// For JPEG: an NSNumber, 0 (smallest) to 1 (best).
inline constexpr StringConstant<"NSImageCompressionFactor"> NSImageCompressionFactor;
/// Of an animation, NSNumber: how many frames there are.
inline constexpr StringConstant<"NSImageFrameCount"> NSImageFrameCount;
/// Which frame is shown; can be set.
inline constexpr StringConstant<"NSImageCurrentFrame"> NSImageCurrentFrame;
/// How long it is shown, seconds.
inline constexpr StringConstant<"NSImageCurrentFrameDuration"> NSImageCurrentFrameDuration;
/// How often all frames are shown; 0 for ever.
inline constexpr StringConstant<"NSImageLoopCount"> NSImageLoopCount;

/// A picture made of pixels.
///
/// Rows lie from the top down, `bytesPerRow` bytes apart. With alpha the colours are multiplied by it unless the format
/// says otherwise. A picture that came from a file or from Quartz keeps its pixels as drawing wants them; bytes are made of
/// them when somebody asks: R, G, B, A a pixel, or R, G, B and a byte of no meaning where the picture has no alpha.
/// Once the bytes were handed out, every drawing reads them anew.
class NSBitmapImageRep : public NSImageRep {
    BRINDLE_OBJECT(NSBitmapImageRep, NSImageRep)

public:
    struct Meta : NSImageRep::Meta {
        Ref<NSArray> imageRepsWithData(NSData* data) const
        {
            return send<"imageRepsWithData:", Ref<NSArray>>(data);
        }
        Ref<NSBitmapImageRep> imageRepWithData(NSData* data) const
        {
            return send<"imageRepWithData:", Ref<NSBitmapImageRep>>(data);
        }
        /// Answers a TIFF file that holds all of the bitmaps, or another format's file of the first one.
        Ref<NSData> representationOfImageRepsInArray_usingType_properties(
            NSArray* reps, NSBitmapImageFileType type, NSDictionary* properties) const
        {
            return send<"representationOfImageRepsInArray:usingType:properties:", Ref<NSData>>(
                reps, type, properties);
        }
        Ref<NSData> TIFFRepresentationOfImageRepsInArray(NSArray* reps) const
        {
            return send<"TIFFRepresentationOfImageRepsInArray:", Ref<NSData>>(reps);
        }
    };

    /// Makes a bitmap of chosen layout.
    /// - planes: one pointer a plane (one in all unless planar), used where they lie and never freed; nil, or a nil first
    ///   plane, allocates zeroed memory.
    /// - bits: of a sample: 1, 2, 4, 8 or 16 (in the machine's order). - samples: 1 or 2 for white, 3 or 4 for RGB.
    /// - bytesPerRow, bitsPerPixel: 0 for as few as possible.
    /// - Nil: for combinations that make no bitmap, and for more than 48 million pixels.
    Ref<NSBitmapImageRep>
    initWithBitmapDataPlanes_pixelsWide_pixelsHigh_bitsPerSample_samplesPerPixel_hasAlpha_isPlanar_colorSpaceName_bytesPerRow_bitsPerPixel(
        unsigned char** planes, NSInteger width, NSInteger height, NSInteger bits,
        NSInteger samples, bool alpha, bool planar, NSString* space, NSInteger bytesPerRow,
        NSInteger bitsPerPixel)
    {
        return send<"initWithBitmapDataPlanes:pixelsWide:pixelsHigh:bitsPerSample:samplesPerPixel:"
                    "hasAlpha:isPlanar:"
                    "colorSpaceName:bytesPerRow:bitsPerPixel:",
            Ref<NSBitmapImageRep>>(
            planes, width, height, bits, samples, alpha, planar, space, bytesPerRow, bitsPerPixel);
    }
    /// The same with a choice of `NSBitmapFormat` bits.
    Ref<NSBitmapImageRep>
    initWithBitmapDataPlanes_pixelsWide_pixelsHigh_bitsPerSample_samplesPerPixel_hasAlpha_isPlanar_colorSpaceName_bitmapFormat_bytesPerRow_bitsPerPixel(
        unsigned char** planes, NSInteger width, NSInteger height, NSInteger bits,
        NSInteger samples, bool alpha, bool planar, NSString* space, NSBitmapFormat format,
        NSInteger bytesPerRow, NSInteger bitsPerPixel)
    {
        return send<"initWithBitmapDataPlanes:pixelsWide:pixelsHigh:bitsPerSample:samplesPerPixel:"
                    "hasAlpha:isPlanar:"
                    "colorSpaceName:bitmapFormat:bytesPerRow:bitsPerPixel:",
            Ref<NSBitmapImageRep>>(planes, width, height, bits, samples, alpha, planar, space,
            format, bytesPerRow, bitsPerPixel);
    }
    /// Takes a Quartz picture; its size is one point a pixel. Nil answers nil.
    Ref<NSBitmapImageRep> initWithCGImage(class CGImage* image)
    {
        return send<"initWithCGImage:", Ref<NSBitmapImageRep>>(image);
    }
    /// Reads the first picture of a file's bytes: PNG, JPEG, GIF, BMP or TIFF. Nil when it is broken or too large.
    Ref<NSBitmapImageRep> initWithData(NSData* data)
    {
        return send<"initWithData:", Ref<NSBitmapImageRep>>(data);
    }
    /// Takes what the current context shows in a rectangle of its user space.
    /// - Nil: without a current context, and for a rectangle outside of it.
    Ref<NSBitmapImageRep> initWithFocusedViewRect(NSRect rect)
    {
        return send<"initWithFocusedViewRect:", Ref<NSBitmapImageRep>>(rect);
    }

    /// Answers the bytes, for reading and writing; of planar bitmaps the first plane. They live as long as the receiver.
    unsigned char* bitmapData() { return send<"bitmapData", unsigned char*>(); }
    /// Fills in five pointers, nil where there is no plane.
    void getBitmapDataPlanes(unsigned char** planes) { send<"getBitmapDataPlanes:">(planes); }
    NSInteger bytesPerRow() const { return send<"bytesPerRow", NSInteger>(); }
    NSInteger bytesPerPlane() const { return send<"bytesPerPlane", NSInteger>(); }
    NSInteger bitsPerPixel() const { return send<"bitsPerPixel", NSInteger>(); }
    NSInteger samplesPerPixel() const { return send<"samplesPerPixel", NSInteger>(); }
    NSInteger numberOfPlanes() const { return send<"numberOfPlanes", NSInteger>(); }
    bool isPlanar() const { return send<"isPlanar", bool>(); }
    NSBitmapFormat bitmapFormat() const { return send<"bitmapFormat", NSBitmapFormat>(); }

    /// Answers a pixel's colour, not multiplied by its alpha, in the bitmap's colour space.
    /// - y: 0 is the top row. - Nil: outside of the bitmap.
    Ref<NSColor> colorAtX_y(NSInteger x, NSInteger y) const
    {
        return send<"colorAtX:y:", Ref<NSColor>>(x, y);
    }
    /// Does nothing outside of the bitmap and for colours without components.
    void setColor_atX_y(NSColor* color, NSInteger x, NSInteger y)
    {
        send<"setColor:atX:y:">(color, x, y);
    }
    /// Copies a pixel's samples as they are.
    /// - samples: `samplesPerPixel` numbers; not touched outside of the bitmap.
    void getPixel_atX_y(NSUInteger* samples, NSInteger x, NSInteger y) const
    {
        send<"getPixel:atX:y:">(samples, x, y);
    }
    void setPixel_atX_y(const NSUInteger* samples, NSInteger x, NSInteger y)
    {
        send<"setPixel:atX:y:">(const_cast<NSUInteger*>(samples), x, y);
    }

    /// Answers a picture of the pixels of now.
    Ref<class CGImage> CGImage() const { return send<"CGImage", Ref<class CGImage>>(); }
    Ref<NSData> TIFFRepresentation() const { return send<"TIFFRepresentation", Ref<NSData>>(); }
    /// Answers the bytes of a picture file, with the resolution that `size` means.
    /// - Nil: for formats that are not written.
    Ref<NSData> representationUsingType_properties(
        NSBitmapImageFileType type, NSDictionary* properties) const
    {
        return send<"representationUsingType:properties:", Ref<NSData>>(type, properties);
    }
    Ref<NSObject> valueForProperty(NSString* name) const
    {
        return send<"valueForProperty:", Ref<NSObject>>(name);
    }
    /// Keeps a value; `NSImageCurrentFrame` turns to another frame. Nil forgets it.
    void setProperty_withValue(NSString* name, NSObject* value)
    {
        send<"setProperty:withValue:">(name, value);
    }

private:
    friend struct BitmapAccess;

    std::shared_ptr<BitmapState> state_;
};

}
