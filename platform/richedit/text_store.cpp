// The control's text: paragraphs with their character counts, and the lazily kept prefix sums
// that map character positions and display lines to paragraphs. An edit invalidates the sums
// from its paragraph on; the next question recomputes only that tail.
#include "platform/richedit/rich_edit_ctrl.h"

#include "platform/codepage/code_page.h"

#include <algorithm>

using talvor::platform::CharLengthAt;
using talvor::platform::IsMultiByteCodePage;

int CRichEditCtrl::CountChars(std::string_view text) {
    if (!IsMultiByteCodePage())
        return static_cast<int>(text.size());
    int chars = 0;
    for (std::size_t pos = 0; pos < text.size(); pos += CharLengthAt(text, pos))
        ++chars;
    return chars;
}

int CRichEditCtrl::ByteOfChar(const std::string& text, int chars) {
    if (!IsMultiByteCodePage())
        return std::min<int>(chars, static_cast<int>(text.size()));
    std::size_t pos = 0;
    for (int k = 0; k < chars && pos < text.size(); ++k)
        pos += CharLengthAt(text, pos);
    return static_cast<int>(pos);
}

void CRichEditCtrl::Invalidated(int fromPara) const {
    m_validFrom = std::min(m_validFrom, std::max(0, fromPara));
}

void CRichEditCtrl::EnsureStarts() const {
    const int count = static_cast<int>(m_paras.size());
    if (m_validFrom > count && static_cast<int>(m_starts.size()) == count + 1)
        return;
    m_starts.resize(count + 1);
    m_firstLines.resize(count + 1);
    int from = std::min(m_validFrom, count);
    if (from == 0) {
        m_starts[0] = 0;
        m_firstLines[0] = 0;
    }
    for (int i = std::max(from, 0); i < count; ++i) {
        m_starts[i + 1] = m_starts[i] + m_paras[i].chars + 1;
        m_firstLines[i + 1] = m_firstLines[i] + 1 + static_cast<int>(m_paras[i].wraps.size());
    }
    m_validFrom = count + 1;
}

void CRichEditCtrl::ShiftStarts(int first, int last) {
    const int count = static_cast<int>(m_paras.size());
    if (m_validFrom <= count || static_cast<int>(m_starts.size()) != count + 1 || first < 0 ||
        last >= count || first > last) {
        Invalidated(first);
        return;
    }
    // Typing changes one paragraph: its successors only move by the same amount, which is a
    // pass over two flat arrays instead of one over every paragraph.
    const long nextStart = m_starts[last + 1];
    const int nextLine = m_firstLines[last + 1];
    for (int i = first; i <= last; ++i) {
        m_starts[i + 1] = m_starts[i] + m_paras[i].chars + 1;
        m_firstLines[i + 1] = m_firstLines[i] + 1 + static_cast<int>(m_paras[i].wraps.size());
    }
    const long charShift = m_starts[last + 1] - nextStart;
    const int lineShift = m_firstLines[last + 1] - nextLine;
    for (int i = last + 2; i <= count && (charShift || lineShift); ++i) {
        m_starts[i] += charShift;
        m_firstLines[i] += lineShift;
    }
}

long CRichEditCtrl::ParaStart(int para) const {
    EnsureStarts();
    return m_starts[std::clamp<int>(para, 0, static_cast<int>(m_paras.size()))];
}

long CRichEditCtrl::GetTextLength() const {
    EnsureStarts();
    return m_starts.back() - 1;
}

long CRichEditCtrl::Clamp(long charIndex) const {
    return std::clamp<long>(charIndex, 0, GetTextLength());
}

CRichEditCtrl::Location CRichEditCtrl::Locate(long charIndex) const {
    EnsureStarts();
    charIndex = Clamp(charIndex);
    const auto it = std::upper_bound(m_starts.begin(), m_starts.end() - 1, charIndex);
    const int para = static_cast<int>(it - m_starts.begin()) - 1;
    return Location{para, static_cast<int>(charIndex - m_starts[para])};
}

std::string CRichEditCtrl::Range(long start, long end) const {
    start = Clamp(start);
    end = Clamp(end);
    if (end <= start)
        return {};
    const Location a = Locate(start), b = Locate(end);
    std::string out;
    for (int p = a.para; p <= b.para; ++p) {
        const std::string& text = m_paras[p].text;
        const int from = p == a.para ? ByteOfChar(text, a.offset) : 0;
        const int to = p == b.para ? ByteOfChar(text, b.offset) : static_cast<int>(text.size());
        out.append(text, from, to - from);
        if (p != b.para)
            out.push_back('\r');
    }
    return out;
}

void CRichEditCtrl::SetAllText(std::string_view text) {
    m_paras.clear();
    m_paras.emplace_back();
    std::size_t pos = 0;
    while (pos <= text.size()) {
        const std::size_t end = text.find_first_of("\r\n", pos);
        const std::size_t stop = end == std::string_view::npos ? text.size() : end;
        Paragraph& para = m_paras.back();
        para.text.assign(text.data() + pos, stop - pos);
        para.chars = CountChars(para.text);
        LayoutParagraph(para);
        if (end == std::string_view::npos)
            break;
        pos = end + 1;
        if (text[end] == '\r' && pos < text.size() && text[pos] == '\n')
            ++pos;
        m_paras.emplace_back();
    }
    // The last paragraph was laid out in the loop unless the text ended with a line end.
    if (m_paras.back().text.empty())
        LayoutParagraph(m_paras.back());
    m_validFrom = 0;
    m_maxWidthStale = true;
    m_selAnchor = m_selActive = 0;
    m_firstVisible = 0;
    m_hScroll = 0;
    m_undo.clear();
    m_redo.clear();
    UpdateScrollBars();
    OnTextChanged(0, true);
}

std::string CRichEditCtrl::AllText(bool crlf) const {
    std::size_t size = 0;
    for (const Paragraph& para : m_paras)
        size += para.text.size() + 2;
    std::string out;
    out.reserve(size);
    for (std::size_t i = 0; i < m_paras.size(); ++i) {
        if (i)
            out += crlf ? "\r\n" : "\r";
        out += m_paras[i].text;
    }
    return out;
}

CString CRichEditCtrl::GetTextRange(long start, long end) const {
    return CString(std::string_view(Range(start, end)));
}
