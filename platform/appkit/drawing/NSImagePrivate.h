// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdlib>
#include <string>

#include "appkit/NSBitmapImageRep.h"
#include "appkit/NSImage.h"
#include "foundation/NSMutableDictionary.h"
#include "quartz/ImageFiles.h"

/// What the sources of images and their representations share.

namespace brindle {

/// How finely a context draws: device pixels a point of its user space.
struct DeviceScale {
    double across = 1;
    double down = 1;

    /// - context: nil for the main screen, or one pixel a point where there is none.
    static DeviceScale of(const Ref<CGContext>& context);
};

/// Answers how many pixels a length takes; at least one.
std::size_t pixelsFor(double length, double scale);

struct ImageRepAccess {
    struct Facts {
        NSSize size {};
        NSInteger wide = 0;
        NSInteger high = 0;
        NSInteger bits = 0;
        bool alpha = false;
        bool opaque = false;
    };
    static void describe(NSImageRep& rep, const Facts& facts, NSString* space);
    static void copyFacts(NSImageRep& to, const NSImageRep& from);
};

/// How samples lie in memory.
struct BitmapLayout {
    std::size_t wide = 0;
    std::size_t high = 0;
    std::size_t bits = 0; // of a sample
    std::size_t samples = 0;
    bool alpha = false;
    bool planar = false;
    bool gray = false;
    NSUInteger format = 0;
    std::size_t bytesPerRow = 0;
    std::size_t bitsPerPixel = 0;

    std::size_t planes() const { return planar ? samples : 1; }
    std::size_t bytesPerPlane() const { return bytesPerRow * high; }
    bool isMultiplied() const { return alpha && !(format & NSAlphaNonpremultipliedBitmapFormat); }
    /// Answers where a sample stands among those of its pixel: colours first, alpha last.
    std::size_t place(std::size_t sample) const
    {
        if (!alpha || !(format & NSAlphaFirstBitmapFormat))
            return sample;
        return sample + 1 == samples ? 0 : sample + 1;
    }
    NSUInteger greatest() const { return (NSUInteger { 1 } << bits) - 1; }
};

/// A bitmap's pixels: a picture as drawing wants it, or bytes of some layout once somebody asked for them.
struct BitmapState {
    struct Free {
        void operator()(unsigned char* bytes) const { std::free(bytes); }
    };

    BitmapLayout layout;
    Ref<CGImage> picture; // nil once the bytes can be written
    std::unique_ptr<unsigned char, Free> memory;
    std::array<unsigned char*, 5> planes {};
    std::vector<quartz::ImageFile> frames; // of an animation
    std::size_t frame = 0;
    int loops = 0;
    Ref<NSMutableDictionary> properties;

    /// Allocates zeroed planes; false when there is no memory.
    bool allocate();
    /// Makes bytes of the picture, which is over then.
    void makeBytes();
    NSUInteger sample(std::size_t x, std::size_t y, std::size_t sample) const;
    void setSample(std::size_t x, std::size_t y, std::size_t sample, NSUInteger value);
    /// Answers a picture of the bytes.
    Ref<CGImage> convert() const;
    Ref<CGImage> image() const { return picture ? picture : convert(); }
};

struct BitmapAccess {
    /// Answers the pixels; of a bitmap that nobody has initialised there are none.
    static BitmapState& state(NSBitmapImageRep& rep);
    /// Makes a bitmap of a picture.
    /// - size: points; zero for one point a pixel.
    static void take(NSBitmapImageRep& rep, const Ref<CGImage>& picture, NSSize size);
    static Ref<NSBitmapImageRep> bitmap(const Ref<CGImage>& picture, NSSize size);
    /// Answers a bitmap for each picture of a file; none for a broken one.
    static std::vector<Ref<NSBitmapImageRep>> read(std::span<const std::byte> bytes);
    static std::vector<Ref<NSBitmapImageRep>> readFile(const std::string& path);
};

struct ImageAccess {
    /// Answers the representations, after reading the file of an image that only refers to one.
    static std::vector<Ref<NSImageRep>>& reps(NSImage& image);
    static void setReps(NSImage& image, std::vector<Ref<NSImageRep>> reps, NSSize size);
    /// Answers the representations of a picture file and of its finer variants; none when it cannot be read.
    static std::vector<Ref<NSImageRep>> readVariants(const std::string& path);
    /// Answers the representation whose pixels fit a rectangle best; nil for an empty image.
    static Ref<NSImageRep> best(NSImage& image, NSSize points, DeviceScale scale);
    /// Answers the representations as bitmaps, those that are none drawn.
    static std::vector<Ref<NSImageRep>> bitmaps(NSImage& image);
    /// Gives an image the name under which it was found.
    static void setFoundName(NSImage& image, NSString* name) { image.name_ = name; }
};

/// Draws one of the pictures that need no file; nil for an unknown name.
Ref<NSImage> builtInImage(const std::string& name);
/// Answers the picture that the Info.plist's "CFBundleIconFile" names, else one for all programs without; never nil.
Ref<NSImage> applicationIcon();

/// Answers an array of what a vector holds.
template <class T> Ref<NSArray> arrayOf(const std::vector<Ref<T>>& items)
{
    std::vector<NSObject*> bare;
    for (const Ref<T>& item : items)
        bare.push_back(item.get());
    return NSArray::cls().arrayWithObjects_count(bare.data(), bare.size());
}

}
