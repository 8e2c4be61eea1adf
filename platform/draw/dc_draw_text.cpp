// DrawText: text formatted in a rectangle, with mnemonic prefixes, line breaks, tab expansion,
// alignment and the end ellipsis.
#include "platform/draw/dc.h"

#include "platform/draw/detail/font_face.h"
#include "platform/draw/detail/text_layout.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int TabStopChars = 8;

struct Line {
    std::string text;
    int mnemonic = -1; // byte offset of the underlined character, or -1
};

// Removes the prefix characters: "&&" gives "&", "&x" gives x and marks it.
std::string StripPrefixes(const char* text, int length, int& mnemonic) {
    std::string out;
    out.reserve(length);
    mnemonic = -1;
    for (int i = 0; i < length; ++i) {
        if (text[i] == '&' && i + 1 < length) {
            ++i;
            if (text[i] != '&' && mnemonic < 0)
                mnemonic = static_cast<int>(out.size());
        } else if (text[i] == '&') {
            continue; // a lone prefix at the end shows nothing
        }
        out.push_back(text[i]);
    }
    return out;
}

} // namespace

void CDC::LayoutExpanded(const std::string& line, bool expandTabs, TextLayout& layout) const {
    Layout(line.data(), static_cast<int>(line.size()), nullptr, layout);
    if (!expandTabs || line.find('\t') == std::string::npos)
        return;
    const int stop = std::max(1, TabStopChars * Face()->Metrics().aveCharWidth);
    std::vector<int> widths(layout.codePoints.size());
    int pen = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        widths[i] = layout.codePoints[i] == U'\t' ? (pen / stop + 1) * stop - pen
                                                  : layout.glyphs[i]->advance;
        pen += widths[i];
    }
    Layout(line.data(), static_cast<int>(line.size()), widths.data(), layout);
    for (std::size_t i = 0; i < widths.size(); ++i) // a tab moves the pen and draws nothing
        if (layout.codePoints[i] == U'\t')
            layout.glyphs[i] = &Face()->GlyphFor(U' ');
}

int CDC::DrawText(LPCTSTR text, int count, LPRECT rect, UINT format) {
    if (!rect)
        return 0;
    const int length = !text ? 0 : count < 0 ? static_cast<int>(std::strlen(text)) : count;
    const bool expandTabs = format & DT_EXPANDTABS;
    int mnemonic = -1;
    const std::string whole = (format & DT_NOPREFIX) ? std::string(text ? text : "", length)
                                                     : StripPrefixes(text, length, mnemonic);
    if (format & DT_HIDEPREFIX)
        mnemonic = -1;
    const auto& metrics = Face()->Metrics();
    const int lineHeight = metrics.ascent + metrics.descent;
    const CRect box(*rect);
    TextLayout layout;

    // Lines: at line ends unless single line, then at blanks to fit the width.
    std::vector<Line> lines;
    auto addLine = [&](std::size_t from, std::size_t to) {
        Line line{whole.substr(from, to - from), -1};
        if (mnemonic >= static_cast<int>(from) && mnemonic < static_cast<int>(to))
            line.mnemonic = mnemonic - static_cast<int>(from);
        lines.push_back(std::move(line));
    };
    std::vector<std::pair<std::size_t, std::size_t>> paragraphs;
    if (format & DT_SINGLELINE) {
        paragraphs.emplace_back(0, whole.size());
    } else {
        std::size_t start = 0;
        for (std::size_t i = 0; i <= whole.size(); ++i) {
            if (i == whole.size() || whole[i] == '\n' || whole[i] == '\r') {
                paragraphs.emplace_back(start, i);
                if (i + 1 < whole.size() && whole[i] == '\r' && whole[i + 1] == '\n')
                    ++i;
                start = i + 1;
            }
        }
    }
    for (const auto& [from, to] : paragraphs) {
        if (!(format & DT_WORDBREAK) || (format & DT_SINGLELINE)) {
            addLine(from, to);
            continue;
        }
        std::size_t lineStart = from;
        while (true) {
            // The longest run of whole words from lineStart that fits; at least one word.
            std::size_t end = lineStart, fitted = 0;
            while (end < to) {
                std::size_t next = whole.find(' ', end);
                next = next == std::string::npos || next > to ? to : next;
                LayoutExpanded(whole.substr(lineStart, next - lineStart), expandTabs, layout);
                if (fitted != 0 && layout.width > box.Width())
                    break;
                fitted = next;
                end = next < to ? next + 1 : to;
            }
            if (fitted == 0)
                fitted = to;
            addLine(lineStart, fitted);
            lineStart = fitted;
            while (lineStart < to && whole[lineStart] == ' ')
                ++lineStart;
            if (lineStart >= to)
                break;
        }
    }

    const int height = lineHeight * static_cast<int>(lines.size());
    int top = box.top;
    if ((format & DT_SINGLELINE) && (format & DT_VCENTER))
        top = box.top + (box.Height() - lineHeight) / 2;
    else if ((format & DT_SINGLELINE) && (format & DT_BOTTOM))
        top = box.bottom - lineHeight;

    int widest = 0;
    CRect clip = DeviceBounds();
    if (!(format & DT_NOCLIP)) {
        CRect deviceBox = ToDevice(box);
        if (!clip.IntersectRect(&clip, &deviceBox))
            clip = CRect();
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Line& line = lines[i];
        LayoutExpanded(line.text, expandTabs, layout);
        if ((format & DT_END_ELLIPSIS) && layout.width > box.Width()) {
            // Drop whole characters from the end until the text and "..." fit.
            std::vector<int> lengths = layout.byteLengths;
            std::string kept = line.text;
            while (!kept.empty()) {
                kept.resize(kept.size() - lengths.back());
                lengths.pop_back();
                LayoutExpanded(kept + "...", expandTabs, layout);
                if (layout.width <= box.Width())
                    break;
            }
            line.text = kept + "...";
            if (line.mnemonic >= static_cast<int>(kept.size()))
                line.mnemonic = -1;
            LayoutExpanded(line.text, expandTabs, layout);
        }
        widest = std::max(widest, layout.width);
        if (format & DT_CALCRECT)
            continue;
        int x = box.left;
        if (format & DT_CENTER)
            x = box.left + (box.Width() - layout.width) / 2;
        else if (format & DT_RIGHT)
            x = box.right - layout.width;
        const int y = top + static_cast<int>(i) * lineHeight;
        if (m_state.bkMode == OPAQUE) {
            CRect cell = ToDevice(CRect(x, y, x + layout.width, y + lineHeight));
            if (cell.IntersectRect(&cell, &clip))
                FillDevice(cell, m_state.bkColor);
        }
        int underline = -1;
        if (line.mnemonic >= 0) {
            int bytes = 0;
            for (std::size_t c = 0; c < layout.byteLengths.size() && underline < 0; ++c) {
                if (bytes == line.mnemonic)
                    underline = static_cast<int>(c);
                bytes += layout.byteLengths[c];
            }
        }
        if (m_state.raster)
            PaintText(x, y, layout, clip, underline);
    }
    if (format & DT_CALCRECT) {
        rect->right = rect->left + widest;
        rect->bottom = rect->top + height;
        return height;
    }
    if ((format & DT_SINGLELINE) && (format & (DT_VCENTER | DT_BOTTOM)))
        return top + lineHeight - box.top;
    return height;
}

int CDC::DrawText(const CString& text, LPRECT rect, UINT format) {
    return DrawText(text.GetString(), text.GetLength(), rect, format);
}
