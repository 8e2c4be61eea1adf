// Faces matched by fontconfig and rendered by FreeType, shared per description, with their
// glyph caches. Light hinting keeps stems sharp vertically while whole-pixel advances keep
// measuring and drawing in step.
#include "platform/draw/detail/font_face.h"

#include "platform/codepage/code_page.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_SYNTHESIS_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <map>
#include <mutex>
#include <strings.h>
#include <tuple>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) && !defined(__SANITIZE_ADDRESS__)
#define __SANITIZE_ADDRESS__ 1 // clang names it by feature only
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
// fontconfig 2.14 loses a few hundred bytes while it parses its configuration files, once per
// process; LeakSanitizer is told so here, in the one library that calls fontconfig, so every
// program that draws text runs clean under the sanitizers.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
#endif

namespace talvor::platform::draw_detail {

namespace {

constexpr const char* LastResortFamily = "DejaVu Sans Mono";
constexpr const char* LastResortFile = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";
constexpr double DefaultEmPixels = 13.0; // 10 points at 96 dots per inch
constexpr double MaxEmPixels = 2048.0;

// Never released: faces stay alive to the end of the process and need it until then.
FT_Library Library() {
    static FT_Library library = [] {
        FT_Library made = nullptr;
        return FT_Init_FreeType(&made) == 0 ? made : nullptr;
    }();
    return library;
}

// Names of the framework's common faces, mapped to the generic family that stands in for them
// when no installed family carries the name.
const char* GenericForWindowsName(const std::string& name) {
    static const char* const monospace[] = {
        "courier",  "courier new",    "consolas", "fixedsys",
        "terminal", "lucida console", "fixed",    "lucida sans typewriter"};
    static const char* const sans[] = {
        "arial",  "ms sans serif", "microsoft sans serif", "tahoma",  "segoe ui", "verdana",
        "system", "ms shell dlg",  "ms shell dlg 2",       "calibri", "helvetica"};
    static const char* const serif[] = {"times new roman", "times", "ms serif", "georgia",
                                        "cambria"};
    for (const char* n : monospace)
        if (strcasecmp(n, name.c_str()) == 0)
            return "monospace";
    for (const char* n : sans)
        if (strcasecmp(n, name.c_str()) == 0)
            return "sans-serif";
    for (const char* n : serif)
        if (strcasecmp(n, name.c_str()) == 0)
            return "serif";
    return nullptr;
}

const char* GenericForPitchAndFamily(BYTE pitchAndFamily) {
    if ((pitchAndFamily & 0x03) == FIXED_PITCH || (pitchAndFamily & 0xF0) == FF_MODERN)
        return "monospace";
    if ((pitchAndFamily & 0xF0) == FF_SWISS)
        return "sans-serif";
    if ((pitchAndFamily & 0xF0) == FF_ROMAN)
        return "serif";
    return nullptr;
}

struct Match {
    std::string file;
    int index = 0;
    std::string family;
};

// fontconfig's best face for a family; with exactFamily, only a face whose family is that name.
bool FontconfigReady() {
    static const bool ready = FcInit() == FcTrue;
    return ready;
}

bool MatchFamily(const std::string& family, int weight, bool italic, bool exactFamily, Match& out) {
    if (!FontconfigReady())
        return false;
    FcPattern* pattern = FcPatternCreate();
    if (!pattern)
        return false;
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    FcPatternAddInteger(pattern, FC_WEIGHT, FcWeightFromOpenType(weight));
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(nullptr, pattern, &result);
    FcPatternDestroy(pattern);
    if (!match)
        return false;
    bool ok = false;
    FcChar8* file = nullptr;
    FcChar8* matchedFamily = nullptr;
    if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch &&
        FcPatternGetString(match, FC_FAMILY, 0, &matchedFamily) == FcResultMatch) {
        ok = !exactFamily;
        for (int i = 0; !ok; ++i) {
            FcChar8* name = nullptr;
            if (FcPatternGetString(match, FC_FAMILY, i, &name) != FcResultMatch)
                break;
            ok = strcasecmp(reinterpret_cast<const char*>(name), family.c_str()) == 0;
        }
        if (ok) {
            out.file = reinterpret_cast<const char*>(file);
            out.family = reinterpret_cast<const char*>(matchedFamily);
            int index = 0;
            FcPatternGetInteger(match, FC_INDEX, 0, &index);
            out.index = index;
        }
    }
    FcPatternDestroy(match);
    return ok;
}

std::string FaceNameOf(const LOGFONT& logFont) {
    return std::string(logFont.lfFaceName, strnlen(logFont.lfFaceName, LF_FACESIZE));
}

int RequestedWeight(const LOGFONT& logFont) {
    if (logFont.lfWeight <= 0)
        return FW_NORMAL;
    return std::min<LONG>(logFont.lfWeight, 1000);
}

} // namespace

namespace {
// Coverage bytes of all faces. Past the budget a new face first lets go of the faces nobody
// uses; within a face, past its own budget, drawing a glyph drops the ink of the others, which
// are rendered again when next drawn.
std::atomic<std::size_t> g_inkBytes{0};
constexpr std::size_t InkBudget = 256u << 20;
constexpr std::size_t FaceInkBudget = 64u << 20;
} // namespace

std::shared_ptr<FontFace> FontFace::ForLogFont(const LOGFONT& logFont) {
    using Key = std::tuple<std::string, LONG, int, bool, BYTE>;
    static std::mutex lock;
    static std::map<Key, std::shared_ptr<FontFace>> faces;

    const int weight = RequestedWeight(logFont);
    Key key{FaceNameOf(logFont), logFont.lfHeight, weight, logFont.lfItalic != 0,
            logFont.lfPitchAndFamily};
    std::lock_guard<std::mutex> guard(lock);
    if (auto found = faces.find(key); found != faces.end())
        return found->second;
    if (faces.size() >= 512 || g_inkBytes > InkBudget) { // faces in use stay
        for (auto it = faces.begin(); it != faces.end();)
            it = it->second.use_count() == 1 ? faces.erase(it) : std::next(it);
    }
    std::shared_ptr<FontFace> face(new FontFace());
    face->Open(logFont);
    faces.emplace(std::move(key), face);
    return face;
}

FontFace::~FontFace() {
    g_inkBytes -= m_inkBytes;
    for (FallbackFace& fallback : m_fallbacks)
        if (fallback.face)
            FT_Done_Face(static_cast<FT_Face>(fallback.face));
    if (m_face)
        FT_Done_Face(static_cast<FT_Face>(m_face));
}

void FontFace::Open(const LOGFONT& logFont) {
    const int weight = RequestedWeight(logFont);
    const bool italic = logFont.lfItalic != 0;
    const std::string name = FaceNameOf(logFont);

    Match match;
    bool found = !name.empty() && MatchFamily(name, weight, italic, true, match);
    if (!found) {
        const char* generic = name.empty() ? nullptr : GenericForWindowsName(name);
        if (!generic)
            generic = GenericForPitchAndFamily(logFont.lfPitchAndFamily);
        found = MatchFamily(generic ? generic : LastResortFamily, weight, italic, false, match);
    }
    FT_Library library = Library();
    FT_Face face = nullptr;
    if (library && found && FT_New_Face(library, match.file.c_str(), match.index, &face) != 0)
        face = nullptr;
    if (library && !face) {
        match = Match{LastResortFile, 0, LastResortFamily};
        if (FT_New_Face(library, LastResortFile, 0, &face) != 0)
            face = nullptr;
    }
    m_weight = weight;
    m_italic = italic;
    if (!face)
        return;
    if (!FT_IS_SCALABLE(face)) {
        FT_Done_Face(face);
        return;
    }
    m_face = face;
    m_family = match.family;
    m_file = match.file;
    const double unitsPerEm = face->units_per_EM > 0 ? face->units_per_EM : 2048;
    const TT_OS2* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    // The style of the file itself: fontconfig's synthetic rules report the weight and slant
    // that were asked for, not those the outlines have.
    const bool faceBold = os2 && os2->version != 0xFFFF ? os2->usWeightClass >= FW_SEMIBOLD
                                                        : (face->style_flags & FT_STYLE_FLAG_BOLD);
    const bool faceItalic = face->style_flags & FT_STYLE_FLAG_ITALIC;
    m_emboldenSynthetic = weight >= FW_SEMIBOLD && !faceBold;
    m_obliqueSynthetic = italic && !faceItalic;
    const TT_HoriHeader* hhea = static_cast<TT_HoriHeader*>(FT_Get_Sfnt_Table(face, FT_SFNT_HHEA));
    double ascentUnits = face->ascender;
    double descentUnits = -face->descender;
    if (os2 && os2->version != 0xFFFF && os2->usWinAscent + os2->usWinDescent > 0) {
        ascentUnits = os2->usWinAscent;
        descentUnits = os2->usWinDescent;
    }
    if (ascentUnits + descentUnits <= 0) {
        ascentUnits = unitsPerEm * 0.8;
        descentUnits = unitsPerEm * 0.2;
    }

    double em = DefaultEmPixels;
    if (logFont.lfHeight < 0)
        em = -static_cast<double>(logFont.lfHeight);
    else if (logFont.lfHeight > 0)
        em = logFont.lfHeight * unitsPerEm / (ascentUnits + descentUnits);
    em = std::clamp(em, 1.0, MaxEmPixels);
    FT_Set_Char_Size(face, 0, static_cast<FT_F26Dot6>(std::lround(em * 64)), 72, 72);
    m_emPixels = em;
    const double scale = em / unitsPerEm;

    FaceMetrics& m = m_metrics;
    m.ascent = static_cast<int>(std::lround(ascentUnits * scale));
    if (logFont.lfHeight > 0)
        m.descent = std::max(0, static_cast<int>(logFont.lfHeight) - m.ascent);
    else
        m.descent = static_cast<int>(std::lround(descentUnits * scale));
    m.internalLeading = std::max(0, m.ascent + m.descent - static_cast<int>(std::lround(em)));
    if (hhea) {
        const double gap =
            hhea->Line_Gap - ((ascentUnits + descentUnits) - (hhea->Ascender - hhea->Descender));
        m.externalLeading = std::max(0, static_cast<int>(std::lround(gap * scale)));
    }
    m.fixedPitch = FT_IS_FIXED_WIDTH(face);
    m_emboldenStrength = std::max<int>(64, std::lround(em / 48) * 64);
    m.maxCharWidth = static_cast<int>(std::lround(face->max_advance_width * scale)) +
                     (m_emboldenSynthetic ? m_emboldenStrength / 64 : 0);
    if (m.fixedPitch || !os2 || os2->xAvgCharWidth <= 0)
        m.aveCharWidth = GlyphFor(m.fixedPitch ? U' ' : U'x').advance;
    else
        m.aveCharWidth = static_cast<int>(std::lround(os2->xAvgCharWidth * scale));
    m.underlinePosition =
        std::max(1, static_cast<int>(std::lround(-face->underline_position * scale)));
    m.underlineThickness =
        std::max(1, static_cast<int>(std::lround(face->underline_thickness * scale)));
    m.strikeoutPosition = os2 && os2->version != 0xFFFF && os2->yStrikeoutPosition > 0
                              ? static_cast<int>(std::lround(os2->yStrikeoutPosition * scale))
                              : m.ascent / 3;
}

void FontFace::Render(void* faceHandle, unsigned glyphIndex, bool embolden, bool oblique,
                      Glyph& glyph, bool ink) const {
    glyph.source = faceHandle;
    glyph.index = glyphIndex;
    glyph.embolden = embolden;
    glyph.oblique = oblique;
    FT_Face face = static_cast<FT_Face>(faceHandle);
    if (FT_Load_Glyph(face, glyphIndex, FT_LOAD_TARGET_LIGHT | FT_LOAD_NO_BITMAP) != 0)
        return;
    FT_GlyphSlot slot = face->glyph;
    if (slot->format == FT_GLYPH_FORMAT_OUTLINE) {
        if (oblique)
            FT_GlyphSlot_Oblique(slot);
        if (embolden)
            FT_Outline_EmboldenXY(&slot->outline, m_emboldenStrength, 0);
    }
    glyph.advance =
        static_cast<int>((slot->advance.x + 32) >> 6) + (embolden ? m_emboldenStrength / 64 : 0);
    if (!ink)
        return;
    glyph.inked = true;
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_LIGHT) != 0 ||
        slot->bitmap.pixel_mode != FT_PIXEL_MODE_GRAY)
        return;
    const FT_Bitmap& bitmap = slot->bitmap;
    glyph.left = slot->bitmap_left;
    glyph.top = slot->bitmap_top;
    glyph.width = static_cast<int>(bitmap.width);
    glyph.rows = static_cast<int>(bitmap.rows);
    glyph.coverage.resize(static_cast<std::size_t>(glyph.width) * glyph.rows);
    const int pitch = bitmap.pitch;
    const unsigned char* row =
        pitch >= 0 ? bitmap.buffer : bitmap.buffer - pitch * (glyph.rows - 1);
    for (int y = 0; y < glyph.rows; ++y, row += pitch)
        std::memcpy(&glyph.coverage[static_cast<std::size_t>(y) * glyph.width], row, glyph.width);
}

const FontFace::FallbackFace* FontFace::FallbackFor(char32_t codePoint) {
    if (codePoint < 0x20 || !FontconfigReady() || !Library())
        return nullptr;
    FcPattern* pattern = FcPatternCreate();
    FcCharSet* wanted = FcCharSetCreate();
    if (!pattern || !wanted) {
        if (pattern)
            FcPatternDestroy(pattern);
        if (wanted)
            FcCharSetDestroy(wanted);
        return nullptr;
    }
    FcCharSetAddChar(wanted, codePoint);
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(m_family.c_str()));
    FcPatternAddCharSet(pattern, FC_CHARSET, wanted);
    FcCharSetDestroy(wanted);
    FcPatternAddInteger(pattern, FC_WEIGHT, FcWeightFromOpenType(m_weight));
    FcPatternAddInteger(pattern, FC_SLANT, m_italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(nullptr, pattern, &result);
    FcPatternDestroy(pattern);
    if (!match)
        return nullptr;
    FcCharSet* has = nullptr;
    FcChar8* file = nullptr;
    int index = 0;
    const bool covers = FcPatternGetCharSet(match, FC_CHARSET, 0, &has) == FcResultMatch &&
                        FcCharSetHasChar(has, codePoint) &&
                        FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch;
    const std::string path = covers ? reinterpret_cast<const char*>(file) : "";
    FcPatternGetInteger(match, FC_INDEX, 0, &index);
    FcPatternDestroy(match);
    if (!covers || (path == m_file))
        return nullptr;
    for (const FallbackFace& known : m_fallbacks)
        if (known.file == path && known.index == index)
            return known.face ? &known : nullptr;
    FallbackFace fallback{nullptr, path, index};
    FT_Face face = nullptr;
    if (FT_New_Face(Library(), path.c_str(), index, &face) == 0 && FT_IS_SCALABLE(face)) {
        FT_Set_Char_Size(face, 0, static_cast<FT_F26Dot6>(std::lround(m_emPixels * 64)), 72, 72);
        const TT_OS2* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
        const bool bold = os2 && os2->version != 0xFFFF ? os2->usWeightClass >= FW_SEMIBOLD
                                                        : (face->style_flags & FT_STYLE_FLAG_BOLD);
        fallback.face = face;
        fallback.embolden = m_weight >= FW_SEMIBOLD && !bold;
        fallback.oblique = m_italic && !(face->style_flags & FT_STYLE_FLAG_ITALIC);
    } else if (face) {
        FT_Done_Face(face);
    }
    m_fallbacks.push_back(std::move(fallback));
    return m_fallbacks.back().face ? &m_fallbacks.back() : nullptr;
}

const Glyph& FontFace::Load(char32_t codePoint) {
    if (auto found = m_glyphs.find(codePoint); found != m_glyphs.end())
        return *found->second;
    auto glyph = std::make_unique<Glyph>();
    if (FT_Face face = static_cast<FT_Face>(m_face)) {
        const FT_UInt index = FT_Get_Char_Index(face, codePoint);
        const FallbackFace* fallback = index == 0 ? FallbackFor(codePoint) : nullptr;
        if (fallback)
            Render(fallback->face,
                   FT_Get_Char_Index(static_cast<FT_Face>(fallback->face), codePoint),
                   fallback->embolden, fallback->oblique, *glyph, false);
        else
            Render(face, index, m_emboldenSynthetic, m_obliqueSynthetic, *glyph, false);
    }
    const Glyph& result = *glyph;
    if (codePoint < 128)
        m_ascii[codePoint] = glyph.get();
    m_glyphs.emplace(codePoint, std::move(glyph));
    return result;
}

const Glyph& FontFace::Inked(const Glyph& glyph) {
    if (glyph.inked || !glyph.source)
        return glyph;
    // Every glyph handed out lives in m_glyphs, which holds it as a non-const object.
    Glyph& owned = const_cast<Glyph&>(glyph);
    if (m_inkBytes > FaceInkBudget) {
        for (auto& [codePoint, other] : m_glyphs) {
            if (!other->inked)
                continue;
            other->inked = false;
            std::vector<std::uint8_t>().swap(other->coverage);
        }
        g_inkBytes -= m_inkBytes;
        m_inkBytes = 0;
    }
    Render(owned.source, owned.index, owned.embolden, owned.oblique, owned, true);
    owned.inked = true;
    m_inkBytes += owned.coverage.size();
    g_inkBytes += owned.coverage.size();
    return glyph;
}

void DecodeText(const char* text, int length, std::vector<char32_t>& codePoints,
                std::vector<int>* byteLengths) {
    codePoints.clear();
    if (byteLengths)
        byteLengths->clear();
    if (!text || length <= 0)
        return;
    const std::size_t size = static_cast<std::size_t>(length);
    std::size_t i = 0;
    while (i < size) {
        const unsigned char byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            codePoints.push_back(byte);
            if (byteLengths)
                byteLengths->push_back(1);
            ++i;
            continue;
        }
        std::size_t charLength = CharLengthAt(text, size, i);
        if (charLength == 0)
            charLength = 1;
        const std::u16string wide = ToWide(std::string_view(text + i, charLength));
        char32_t cp = 0xFFFD;
        if (wide.size() == 2 && wide[0] >= 0xD800 && wide[0] < 0xDC00 && wide[1] >= 0xDC00 &&
            wide[1] < 0xE000)
            cp = 0x10000 + ((static_cast<char32_t>(wide[0]) - 0xD800) << 10) +
                 (static_cast<char32_t>(wide[1]) - 0xDC00);
        else if (wide.size() == 1 && (wide[0] < 0xD800 || wide[0] >= 0xE000))
            cp = wide[0];
        codePoints.push_back(cp);
        if (byteLengths)
            byteLengths->push_back(static_cast<int>(charLength));
        i += charLength;
    }
}

} // namespace talvor::platform::draw_detail
