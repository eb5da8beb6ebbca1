// SPDX-License-Identifier: Apache-2.0
#include "FilePicturesPrivate.h"

#include <algorithm>
#include <array>
#include <string>

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSGradient.h"
#include "appkit/NSImage.h"

namespace brindle::files {

namespace {

    // All pictures are drawn in a square of 32 points, y up; signs in one of 16.

    Ref<NSColor> rgb(int word)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(
            (word >> 16 & 255) / 255.0, (word >> 8 & 255) / 255.0, (word & 255) / 255.0, 1);
    }
    Ref<NSBezierPath> rounded(NSRect rect, CGFloat radius)
    {
        return NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(rect, radius, radius);
    }
    Ref<NSBezierPath> polygon(std::initializer_list<NSPoint> points)
    {
        Ref<NSBezierPath> path = NSBezierPath::cls().bezierPath();
        path->appendBezierPathWithPoints_count(
            std::data(points), static_cast<NSInteger>(points.size()));
        path->closePath();
        return path;
    }
    void fade(NSBezierPath* path, int above, int below)
    {
        alloc<NSGradient>()
            ->initWithStartingColor_endingColor(rgb(below).get(), rgb(above).get())
            ->drawInBezierPath_angle(path, 90);
    }
    void line(NSPoint from, NSPoint to, CGFloat width)
    {
        const Ref<NSBezierPath> path = NSBezierPath::cls().bezierPath();
        path->moveToPoint(from);
        path->lineToPoint(to);
        path->setLineWidth(width);
        path->setLineCapStyle(NSRoundLineCapStyle);
        path->stroke();
    }

    void drawFolder()
    {
        const Ref<NSBezierPath> back = rounded({ { 2, 5 }, { 28, 20 } }, 2.5);
        back->appendBezierPath(rounded({ { 2, 18 }, { 12, 9 } }, 2.5).get());
        fade(back.get(), 0x5796DE, 0x3F7FCB);
        fade(rounded({ { 2, 5 }, { 28, 17.5 } }, 2.5).get(), 0x83BBF5, 0x5C9DE6);
        rgb(0xA9D2FA)->set();
        line({ 4.5, 21.75 }, { 27.5, 21.75 }, 0.75);
    }
    void drawSheet()
    {
        const Ref<NSBezierPath> sheet
            = polygon({ { 6, 2 }, { 26, 2 }, { 26, 23 }, { 19, 30 }, { 6, 30 } });
        fade(sheet.get(), 0xFFFFFF, 0xF0F2F5);
        rgb(0xA7ADB8)->set();
        sheet->setLineWidth(0.75);
        sheet->setLineJoinStyle(NSRoundLineJoinStyle);
        sheet->stroke();
        const Ref<NSBezierPath> corner = polygon({ { 19, 30 }, { 19, 23 }, { 26, 23 } });
        rgb(0xDDE1E7)->set();
        corner->fill();
        rgb(0xA7ADB8)->set();
        corner->setLineWidth(0.75);
        corner->stroke();
    }
    void drawText()
    {
        drawSheet();
        rgb(0x9AA2AF)->set();
        for (const CGFloat y : { 19.0, 15.5, 12.0, 8.5 })
            line({ 9.5, y }, { y == 8.5 ? 17.0 : 22.5, y }, 1.2);
    }
    void drawPicture()
    {
        drawSheet();
        fade(rounded({ { 9, 7 }, { 14, 12 } }, 1).get(), 0xBFE0FF, 0xE6F3FF);
        rgb(0xF6C544)->set();
        NSBezierPath::cls().bezierPathWithOvalInRect({ { 18, 14.5 }, { 3, 3 } })->fill();
        rgb(0x4FA36B)->set();
        polygon({ { 9, 7 }, { 14, 14.5 }, { 18, 9.5 }, { 19.5, 11 }, { 23, 7 } })->fill();
    }
    void drawSound()
    {
        drawSheet();
        rgb(0xD1477A)->set();
        NSBezierPath::cls().bezierPathWithOvalInRect({ { 10.5, 6.5 }, { 5, 4 } })->fill();
        NSBezierPath::cls().bezierPathWithOvalInRect({ { 17.5, 8.5 }, { 5, 4 } })->fill();
        line({ 15, 8.5 }, { 15, 18 }, 1.4);
        line({ 22, 10.5 }, { 22, 20 }, 1.4);
        line({ 15, 18 }, { 22, 20 }, 2.4);
    }
    void drawFilm()
    {
        drawSheet();
        rgb(0x6A5ACD)->set();
        rounded({ { 9, 7 }, { 14, 13 } }, 2.5)->fill();
        rgb(0xFFFFFF)->set();
        polygon({ { 14, 10 }, { 14, 17 }, { 20, 13.5 } })->fill();
    }
    void drawArchive()
    {
        drawSheet();
        rgb(0x9C7A3C)->set();
        for (int i = 0; i < 6; ++i)
            rounded({ { i % 2 ? 16.0 : 13.5, 25.5 - i * 2.5 }, { 2.5, 2 } }, 0.5)->fill();
        rounded({ { 13, 6.5 }, { 6, 6 } }, 1.5)->fill();
        rgb(0xF7F3E8)->set();
        rounded({ { 15, 7.5 }, { 2, 3 } }, 0.8)->fill();
    }
    void drawProgram()
    {
        fade(rounded({ { 3, 3 }, { 26, 26 } }, 6).get(), 0x6E7683, 0x464C57);
        rgb(0xFFFFFF)->set();
        line({ 9, 20 }, { 13.5, 16 }, 2);
        line({ 9, 12 }, { 13.5, 16 }, 2);
        line({ 16, 11.5 }, { 22, 11.5 }, 2);
    }

    Ref<NSBezierPath> outline()
    {
        Ref<NSBezierPath> path = NSBezierPath::cls().bezierPath();
        path->setLineWidth(1.3);
        path->setLineJoinStyle(NSRoundLineJoinStyle);
        path->setLineCapStyle(NSRoundLineCapStyle);
        return path;
    }
    void drawHome()
    {
        const Ref<NSBezierPath> house = outline();
        for (const NSPoint point : { NSPoint { 2, 8.5 }, { 8, 14 }, { 14, 8.5 }, { 8, 14 },
                 { 3.75, 10.1 }, { 3.75, 2.5 }, { 6.5, 2.5 }, { 6.5, 6.5 }, { 9.5, 6.5 },
                 { 9.5, 2.5 }, { 12.25, 2.5 }, { 12.25, 10.1 } }) {
            if (house->isEmpty())
                house->moveToPoint(point);
            else
                house->lineToPoint(point);
        }
        house->stroke();
    }
    void drawFolderSign()
    {
        const Ref<NSBezierPath> folder = outline();
        const NSPoint shape[]
            = { { 2, 3.5 }, { 2, 12.5 }, { 6.5, 12.5 }, { 8, 11 }, { 14, 11 }, { 14, 3.5 } };
        folder->appendBezierPathWithPoints_count(shape, std::size(shape));
        folder->closePath();
        folder->stroke();
    }
    void drawDisk()
    {
        const Ref<NSBezierPath> disk = outline();
        disk->appendBezierPathWithRoundedRect_xRadius_yRadius({ { 2, 4 }, { 12, 8 } }, 1.5, 1.5);
        disk->moveToPoint({ 2, 7.5 });
        disk->lineToPoint({ 14, 7.5 });
        disk->stroke();
        NSBezierPath::cls().bezierPathWithOvalInRect({ { 10.5, 5 }, { 1.6, 1.6 } })->fill();
    }
    void drawRecent()
    {
        const Ref<NSBezierPath> clock = outline();
        clock->appendBezierPathWithOvalInRect({ { 2.2, 2.2 }, { 11.6, 11.6 } });
        clock->moveToPoint({ 8, 11 });
        clock->lineToPoint({ 8, 8 });
        clock->lineToPoint({ 10.3, 6.6 });
        clock->stroke();
    }

    using Draw = void (*)();
    constexpr std::array<Draw, kKinds> kPictures { drawFolder, drawSheet, drawText, drawPicture,
        drawSound, drawFilm, drawArchive, drawProgram };
    constexpr std::array<Draw, kSigns> kSignDrawings { drawHome, drawFolderSign, drawDisk,
        drawRecent };

    Ref<NSImage> imageOf(CGFloat side, Draw draw)
    {
        const NSCustomImageRep::Handler handler = [draw](NSRect) {
            NSColor::cls().blackColor()->set();
            draw();
            return true;
        };
        return NSImage::cls().imageWithSize_flipped_drawingHandler({ side, side }, false, handler);
    }

    struct Extension {
        std::string_view name;
        Kind kind;
    };
    constexpr Extension kExtensions[] = { // sorted
        { "7z", Kind::archive }, { "aac", Kind::sound }, { "avi", Kind::film },
        { "bmp", Kind::picture }, { "bz2", Kind::archive }, { "c", Kind::text },
        { "cpp", Kind::text }, { "css", Kind::text }, { "csv", Kind::text },
        { "deb", Kind::archive }, { "flac", Kind::sound }, { "gif", Kind::picture },
        { "gz", Kind::archive }, { "h", Kind::text }, { "heic", Kind::picture },
        { "html", Kind::text }, { "jpeg", Kind::picture }, { "jpg", Kind::picture },
        { "js", Kind::text }, { "json", Kind::text }, { "log", Kind::text }, { "m4a", Kind::sound },
        { "md", Kind::text }, { "mkv", Kind::film }, { "mov", Kind::film }, { "mp3", Kind::sound },
        { "mp4", Kind::film }, { "ogg", Kind::sound }, { "plist", Kind::text },
        { "png", Kind::picture }, { "py", Kind::text }, { "rtf", Kind::text }, { "sh", Kind::text },
        { "strings", Kind::text }, { "svg", Kind::picture }, { "tar", Kind::archive },
        { "tif", Kind::picture }, { "tiff", Kind::picture }, { "txt", Kind::text },
        { "wav", Kind::sound }, { "webm", Kind::film }, { "webp", Kind::picture },
        { "xml", Kind::text }, { "xz", Kind::archive }, { "zip", Kind::archive },
        { "zst", Kind::archive }
    };

}

Kind kindForExtension(std::string_view extension)
{
    std::string wanted(extension.substr(0, 8));
    std::transform(wanted.begin(), wanted.end(), wanted.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    const auto* const found = std::lower_bound(std::begin(kExtensions), std::end(kExtensions),
        wanted, [](const Extension& e, const std::string& name) { return e.name < name; });
    return found != std::end(kExtensions) && found->name == wanted ? found->kind : Kind::document;
}

Kind kindOf(std::string_view name, bool isFolder, bool isExecutable)
{
    if (isFolder)
        return Kind::folder;
    const std::size_t dot = name.rfind('.');
    const bool hasExtension = dot != std::string_view::npos && dot > 0;
    const Kind kind = hasExtension ? kindForExtension(name.substr(dot + 1)) : Kind::document;
    return kind == Kind::document && isExecutable ? Kind::program : kind;
}

Ref<NSImage> pictureOf(Kind kind)
{
    static auto* const pictures = new std::array<Ref<NSImage>, kKinds>;
    const auto index = static_cast<std::size_t>(kind);
    Ref<NSImage>& picture = (*pictures)[index];
    if (!picture)
        picture = imageOf(32, kPictures[index]);
    return picture;
}

Ref<NSImage> pictureOf(Sign sign)
{
    static auto* const pictures = new std::array<Ref<NSImage>, kSigns>;
    const auto index = static_cast<std::size_t>(sign);
    Ref<NSImage>& picture = (*pictures)[index];
    if (!picture) {
        picture = imageOf(16, kSignDrawings[index]);
        picture->setTemplate(true);
    }
    return picture;
}

}
