// Glyphs are measured without being rendered; their ink comes when they are drawn, so a huge
// font that is only measured holds no coverage.
#include "platform/draw/detail/font_face.h"
#include "platform/draw/font.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using talvor::platform::draw_detail::FontFace;
using talvor::platform::draw_detail::Glyph;

TEST(GlyphInk, MeasuringRendersNothingAndDrawingRendersOnce) {
    for (const LONG height : {-16L, -3000L}) {
        SCOPED_TRACE(height);
        LOGFONT lf = talvor::platform::PointFontLogFont(100, "DejaVu Sans Mono");
        lf.lfHeight = height;
        const auto face = FontFace::ForLogFont(lf);
        ASSERT_TRUE(face->IsLoaded());
        std::size_t coverage = 0;
        for (char32_t c = 32; c < 127; ++c) {
            const Glyph& glyph = face->GlyphFor(c);
            EXPECT_GT(glyph.advance, 0);
            coverage += glyph.coverage.size();
        }
        EXPECT_EQ(coverage, 0u) << "measured only";

        const Glyph& measured = face->GlyphFor(U'W');
        const int advance = measured.advance;
        const Glyph& inked = face->Inked(measured);
        EXPECT_EQ(&inked, &measured) << "the cached glyph itself gets its ink";
        EXPECT_EQ(inked.advance, advance);
        ASSERT_GT(inked.width, 0);
        ASSERT_GT(inked.rows, 0);
        EXPECT_EQ(inked.coverage.size(), static_cast<std::size_t>(inked.width) * inked.rows);
        const auto* before = inked.coverage.data();
        EXPECT_EQ(face->Inked(measured).coverage.data(), before) << "rendered once";
        EXPECT_LT(inked.width, 2 * (height < 0 ? -height : height)) << "a glyph's own size";
        EXPECT_TRUE(face->GlyphFor(U' ').coverage.empty());
    }
}

TEST(GlyphInk, AFaceKeepsItsInkWithinABudget) {
    LOGFONT lf = talvor::platform::PointFontLogFont(100, "DejaVu Sans");
    lf.lfHeight = -2400;
    const auto face = FontFace::ForLogFont(lf);
    ASSERT_TRUE(face->IsLoaded());
    std::size_t drawn = 0, largest = 0;
    for (char32_t c = 33; c < 127; ++c) {
        const Glyph& glyph = face->Inked(face->GlyphFor(c));
        ASSERT_TRUE(glyph.inked);
        drawn += glyph.coverage.size();
        largest = std::max(largest, glyph.coverage.size());
    }
    std::size_t kept = 0;
    for (char32_t c = 33; c < 127; ++c)
        kept += face->GlyphFor(c).coverage.size();
    ASSERT_GT(drawn, std::size_t{64} << 20) << "the test must draw more than the budget";
    EXPECT_LE(kept, (std::size_t{64} << 20) + largest);
    EXPECT_FALSE(face->Inked(face->GlyphFor(U'A')).coverage.empty()) << "drawn again on demand";
}

} // namespace
