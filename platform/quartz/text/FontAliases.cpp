// SPDX-License-Identifier: Apache-2.0
#include "FontAliases.h"

#include <algorithm>

namespace brindle::text {

namespace {

    struct Row {
        std::string_view name;
        FaceAliases faces;
    };

    // Sorted by name. Where widths can agree they do: Liberation Sans, Serif and Mono have the
    // advances of Helvetica, Times and Courier, and DejaVu Sans Mono those of Menlo. Weights that
    // Liberation lacks come from Inter.
    constexpr Row kRows[] = {
        { "Arial", { "LiberationSans", "Inter-Regular", "DejaVuSans" } },
        { "Arial-BoldItalicMT",
            { "LiberationSans-BoldItalic", "Inter-BoldItalic", "DejaVuSans-BoldOblique" } },
        { "Arial-BoldMT", { "LiberationSans-Bold", "Inter-Bold", "DejaVuSans-Bold" } },
        { "Arial-ItalicMT", { "LiberationSans-Italic", "Inter-Italic", "DejaVuSans-Oblique" } },
        { "ArialMT", { "LiberationSans", "Inter-Regular", "DejaVuSans" } },
        { "Courier", { "LiberationMono", "DejaVuSansMono", "" } },
        { "Courier-Bold", { "LiberationMono-Bold", "DejaVuSansMono-Bold", "" } },
        { "Courier-BoldOblique",
            { "LiberationMono-BoldItalic", "DejaVuSansMono-BoldOblique", "" } },
        { "Courier-Oblique", { "LiberationMono-Italic", "DejaVuSansMono-Oblique", "" } },
        { "Georgia", { "DejaVuSerif", "LiberationSerif", "" } },
        { "Georgia-Bold", { "DejaVuSerif-Bold", "LiberationSerif-Bold", "" } },
        { "Helvetica", { "LiberationSans", "Inter-Regular", "DejaVuSans" } },
        { "Helvetica Neue", { "LiberationSans", "Inter-Regular", "DejaVuSans" } },
        { "Helvetica-Bold", { "LiberationSans-Bold", "Inter-Bold", "DejaVuSans-Bold" } },
        { "Helvetica-BoldOblique",
            { "LiberationSans-BoldItalic", "Inter-BoldItalic", "DejaVuSans-BoldOblique" } },
        { "Helvetica-Light", { "Inter-Light", "LiberationSans", "DejaVuSans" } },
        { "Helvetica-LightOblique",
            { "Inter-LightItalic", "LiberationSans-Italic", "DejaVuSans-Oblique" } },
        { "Helvetica-Oblique", { "LiberationSans-Italic", "Inter-Italic", "DejaVuSans-Oblique" } },
        { "HelveticaNeue", { "LiberationSans", "Inter-Regular", "DejaVuSans" } },
        { "HelveticaNeue-Bold", { "LiberationSans-Bold", "Inter-Bold", "DejaVuSans-Bold" } },
        { "HelveticaNeue-BoldItalic",
            { "LiberationSans-BoldItalic", "Inter-BoldItalic", "DejaVuSans-BoldOblique" } },
        { "HelveticaNeue-CondensedBlack",
            { "Inter-Black", "LiberationSans-Bold", "DejaVuSans-Bold" } },
        { "HelveticaNeue-CondensedBold",
            { "LiberationSansNarrow-Bold", "LiberationSans-Bold", "DejaVuSans-Bold" } },
        { "HelveticaNeue-Italic",
            { "LiberationSans-Italic", "Inter-Italic", "DejaVuSans-Oblique" } },
        { "HelveticaNeue-Light", { "Inter-Light", "LiberationSans", "DejaVuSans" } },
        { "HelveticaNeue-LightItalic",
            { "Inter-LightItalic", "LiberationSans-Italic", "DejaVuSans-Oblique" } },
        { "HelveticaNeue-Medium", { "Inter-Medium", "LiberationSans", "DejaVuSans" } },
        { "HelveticaNeue-MediumItalic",
            { "Inter-MediumItalic", "LiberationSans-Italic", "DejaVuSans-Oblique" } },
        { "HelveticaNeue-Thin", { "Inter-Thin", "Inter-Light", "LiberationSans" } },
        { "HelveticaNeue-ThinItalic",
            { "Inter-ThinItalic", "Inter-LightItalic", "LiberationSans-Italic" } },
        { "HelveticaNeue-UltraLight", { "Inter-ExtraLight", "Inter-Light", "LiberationSans" } },
        { "HelveticaNeue-UltraLightItalic",
            { "Inter-ExtraLightItalic", "Inter-LightItalic", "LiberationSans-Italic" } },
        { "Lucida Grande", { "DejaVuSans", "Inter-Regular", "LiberationSans" } },
        { "LucidaGrande", { "DejaVuSans", "Inter-Regular", "LiberationSans" } },
        { "LucidaGrande-Bold", { "DejaVuSans-Bold", "Inter-Bold", "LiberationSans-Bold" } },
        { "Menlo", { "DejaVuSansMono", "LiberationMono", "" } },
        { "Menlo-Bold", { "DejaVuSansMono-Bold", "LiberationMono-Bold", "" } },
        { "Menlo-BoldItalic", { "DejaVuSansMono-BoldOblique", "LiberationMono-BoldItalic", "" } },
        { "Menlo-Italic", { "DejaVuSansMono-Oblique", "LiberationMono-Italic", "" } },
        { "Menlo-Regular", { "DejaVuSansMono", "LiberationMono", "" } },
        { "Monaco", { "DejaVuSansMono", "LiberationMono", "" } },
        { "Times", { "LiberationSerif", "DejaVuSerif", "" } },
        { "Times New Roman", { "LiberationSerif", "DejaVuSerif", "" } },
        { "Times-Bold", { "LiberationSerif-Bold", "DejaVuSerif-Bold", "" } },
        { "Times-BoldItalic", { "LiberationSerif-BoldItalic", "DejaVuSerif-BoldItalic", "" } },
        { "Times-Italic", { "LiberationSerif-Italic", "DejaVuSerif-Italic", "" } },
        { "Times-Roman", { "LiberationSerif", "DejaVuSerif", "" } },
        { "TimesNewRomanPS-BoldMT", { "LiberationSerif-Bold", "DejaVuSerif-Bold", "" } },
        { "TimesNewRomanPSMT", { "LiberationSerif", "DejaVuSerif", "" } },
        { "Verdana", { "DejaVuSans", "Inter-Regular", "LiberationSans" } },
        { "Verdana-Bold", { "DejaVuSans-Bold", "Inter-Bold", "LiberationSans-Bold" } },
    };

    static_assert(std::ranges::is_sorted(kRows, {}, &Row::name));

}

const FaceAliases* aliasesForName(std::string_view name)
{
    const Row* row = std::ranges::lower_bound(kRows, name, {}, &Row::name);
    return row != std::end(kRows) && row->name == name ? &row->faces : nullptr;
}

}
