// One face at one pixel size: fontconfig's match for a LOGFONT, opened by FreeType, with the
// metrics the framework reports and a cache of rendered glyphs. Faces are shared by every font
// of the same description and kept for the life of the process, so making a font again (the
// editor does once per painted line) costs one lookup. Finding a face may happen on any thread;
// its glyph cache belongs to the user-interface thread, like all drawing.
#pragma once

#include "platform/draw/gdi_types.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace talvor::platform::draw_detail {

// A glyph: the whole-pixel advance that measuring and drawing both use and, once it is drawn
// (FontFace::Inked), its 8-bit coverage with its offset from the pen position on the baseline.
// Measuring alone renders nothing, so a huge font costs no memory until its glyphs are drawn.
struct Glyph {
    int advance = 0;
    int left = 0; // from the pen position to the first column
    int top = 0;  // from the baseline up to the first row
    int width = 0;
    int rows = 0;
    std::vector<std::uint8_t> coverage; // rows * width, 0 background .. 255 ink

    // Where the ink comes from: the FreeType face and glyph, with the synthetic styles.
    void* source = nullptr;
    unsigned index = 0;
    bool embolden = false;
    bool oblique = false;
    bool inked = false;
};

struct FaceMetrics {
    int ascent = 0;
    int descent = 0;
    int internalLeading = 0;
    int externalLeading = 0;
    int aveCharWidth = 0;
    int maxCharWidth = 0;
    int underlinePosition = 0; // rows below the baseline
    int underlineThickness = 1;
    int strikeoutPosition = 0; // rows above the baseline
    bool fixedPitch = false;
};

class FontFace {
public:
    // The shared face for this description: face name, height, weight, italic (width, escapement,
    // underline, strike out and quality do not change the glyphs here).
    static std::shared_ptr<FontFace> ForLogFont(const LOGFONT& logFont);

    ~FontFace();
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

    bool IsLoaded() const { return m_face != nullptr; }
    const FaceMetrics& Metrics() const { return m_metrics; }
    const std::string& Family() const { return m_family; }
    const std::string& FilePath() const { return m_file; }
    int Weight() const { return m_weight; }
    bool Italic() const { return m_italic; }

    // The glyph of a code point, rendered on first use. A code point the face lacks comes from
    // the installed face fontconfig finds for it, the same family preferred, at the same size;
    // when none has it, the face's missing-glyph box. An unloaded face gives an empty glyph of
    // no width.
    const Glyph& GlyphFor(char32_t codePoint) {
        if (codePoint < 128 && m_ascii[codePoint])
            return *m_ascii[codePoint];
        return Load(codePoint);
    }
    // The same glyph with its coverage, rendered on first use.
    const Glyph& Inked(const Glyph& glyph);

private:
    // Another installed face that holds a character this one lacks, at the same size.
    struct FallbackFace {
        void* face = nullptr; // FT_Face
        std::string file;
        int index = 0;
        bool embolden = false;
        bool oblique = false;
    };

    FontFace() = default;
    void Open(const LOGFONT& logFont);
    const Glyph& Load(char32_t codePoint);
    const FallbackFace* FallbackFor(char32_t codePoint);
    // Loads the glyph for its advance and, with ink, renders its coverage.
    void Render(void* face, unsigned glyphIndex, bool embolden, bool oblique, Glyph& glyph,
                bool ink) const;

    void* m_face = nullptr; // FT_Face
    std::string m_family;
    std::string m_file;
    int m_weight = FW_NORMAL;
    bool m_italic = false;
    bool m_emboldenSynthetic = false;
    bool m_obliqueSynthetic = false;
    int m_emboldenStrength = 0; // 26.6 pixels added to the width of a synthetic bold glyph
    double m_emPixels = 0;
    std::vector<FallbackFace> m_fallbacks;
    FaceMetrics m_metrics;
    const Glyph* m_ascii[128] = {};
    std::unordered_map<char32_t, std::unique_ptr<Glyph>> m_glyphs;
    std::size_t m_inkBytes = 0; // coverage held by m_glyphs
};

// The characters of 8-bit text in the system code page, as code points, with the byte length
// of each. Bytes that are no character of the page become U+FFFD, one per byte.
void DecodeText(const char* text, int length, std::vector<char32_t>& codePoints,
                std::vector<int>* byteLengths = nullptr);

} // namespace talvor::platform::draw_detail
