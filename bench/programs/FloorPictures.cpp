// SPDX-License-Identifier: Apache-2.0
#include "FloorPictures.h"

#include <cmath>
#include <string>

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include "Scene.h"

namespace brindle::bench::scene {

namespace {

    /// Answers the face of a family; the process ends before it does.
    cairo_font_face_t* faceNamed(const char* family, int weight)
    {
        static FT_Library library = nullptr;
        if (!library)
            FT_Init_FreeType(&library);
        FcPattern* const wanted = FcPatternCreate();
        FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
        FcPatternAddInteger(wanted, FC_WEIGHT, weight);
        FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
        FcDefaultSubstitute(wanted);
        FcResult result {};
        FcPattern* const found = FcFontMatch(nullptr, wanted, &result);
        FcChar8* path = nullptr;
        FcPatternGetString(found, FC_FILE, 0, &path);
        FT_Face face = nullptr;
        FT_New_Face(library, reinterpret_cast<const char*>(path), 0, &face);
        return cairo_ft_font_face_create_for_ft_face(face, FT_LOAD_NO_HINTING);
    }

    /// A picture while it is painted; y grows downward.
    class Painting {
    public:
        Painting(int width, int height)
            : surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height),
                &cairo_surface_destroy)
            , drawing_(cairo_create(surface_.get()))
        {
        }
        ~Painting() { cairo_destroy(drawing_); }
        Painting(const Painting&) = delete;
        Painting& operator=(const Painting&) = delete;

        void rectangle(double left, double top, double width, double height, double grey)
        {
            cairo_set_source_rgb(drawing_, grey, grey, grey);
            cairo_rectangle(drawing_, left, top, width, height);
            cairo_fill(drawing_);
        }
        /// A shape that grows darker towards its lower edge.
        void shaded(double left, double top, double width, double height, double radius)
        {
            outline(left, top, width, height, radius);
            cairo_pattern_t* const shades = cairo_pattern_create_linear(0, top, 0, top + height);
            cairo_pattern_add_color_stop_rgb(shades, 0, 1, 1, 1);
            cairo_pattern_add_color_stop_rgb(shades, 1, kBandGrey, kBandGrey, kBandGrey);
            cairo_set_source(drawing_, shades);
            cairo_fill_preserve(drawing_);
            cairo_pattern_destroy(shades);
            cairo_set_source_rgb(drawing_, kLineGrey, kLineGrey, kLineGrey);
            cairo_set_line_width(drawing_, 1);
            cairo_stroke(drawing_);
        }
        void setFace(cairo_font_face_t* face)
        {
            cairo_set_font_face(drawing_, face);
            cairo_set_font_size(drawing_, kTextSize);
        }
        void text(double left, double baseline, const std::string& text)
        {
            cairo_set_source_rgb(drawing_, 0, 0, 0);
            cairo_move_to(drawing_, left, baseline);
            cairo_show_text(drawing_, text.c_str());
        }
        Picture end(int left, int top)
        {
            cairo_surface_flush(surface_.get());
            return { left, top, std::move(surface_) };
        }

    private:
        void outline(double left, double top, double width, double height, double radius)
        {
            const double right = left + width - radius;
            const double bottom = top + height - radius;
            cairo_new_path(drawing_);
            cairo_arc(drawing_, right, top + radius, radius, -M_PI_2, 0);
            cairo_arc(drawing_, right, bottom, radius, 0, M_PI_2);
            cairo_arc(drawing_, left + radius, bottom, radius, M_PI_2, M_PI);
            cairo_arc(drawing_, left + radius, top + radius, radius, M_PI, M_PI + M_PI_2);
            cairo_close_path(drawing_);
        }

        Surface surface_;
        cairo_t* drawing_;
    };

    Picture paintBar(cairo_font_face_t* bold)
    {
        Painting bar(kScreenWidth, kBarHeight);
        bar.setFace(bold);
        bar.shaded(0, 0, kScreenWidth, kBarHeight, 0);
        double left = kTextLeft;
        for (const char* title : kTitles) {
            bar.text(left, 16, title);
            left += 60;
        }
        return bar.end(0, 0);
    }

    Picture paintWindow(cairo_font_face_t* face, cairo_font_face_t* bold)
    {
        Painting window(kWidth, kControlsHeight);
        window.rectangle(0, 0, kWidth, kControlsHeight, kBandGrey);
        window.setFace(face);
        window.shaded(0, 0, kWidth, kBarHeight, 0);
        window.text(200, 16, "startup");
        window.text(20, 54, "A thousand rows");
        window.shaded(280, 38, 100, 24, 4);
        window.text(310, 54, "Reload");
        window.shaded(400, 40, 60, 20, 10);
        window.shaded(401, 41, 24, 18, 9);
        window.rectangle(20, 82, 440, 280, 1);
        window.shaded(20, 82, 440, kRowHeight, 0);
        window.shaded(446, 106, 8, 30, 4);
        for (int row = 1; row < 280 / kRowHeight; ++row)
            window.text(
                24, 82 + row * kRowHeight + 14, "Row " + std::to_string(row) + " of a thousand");
        window.setFace(bold);
        window.text(24, 96, "Name");
        return window.end(100, 100);
    }

}

std::vector<Picture> paintRows()
{
    Painting window(kWidth, kHeight);
    window.setFace(faceNamed(kFontFamily, FC_WEIGHT_REGULAR));
    for (int row = 0; row < kRows; ++row) {
        const double top = row * kRowHeight;
        window.rectangle(0, top, kWidth, kRowHeight, row % 2 ? 1 : kBandGrey);
        window.text(kTextLeft, top + 14, textOf(row));
    }
    std::vector<Picture> pictures;
    pictures.push_back(window.end(100, 100));
    return pictures;
}

std::vector<Picture> paintControls()
{
    cairo_font_face_t* const bold = faceNamed(kFontFamily, FC_WEIGHT_BOLD);
    std::vector<Picture> pictures;
    pictures.push_back(paintBar(bold));
    pictures.push_back(paintWindow(faceNamed(kSystemFamily, FC_WEIGHT_REGULAR), bold));
    return pictures;
}

}
