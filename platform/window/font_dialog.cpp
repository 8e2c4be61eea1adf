// The font dialog and its headless default answers.
#include "platform/window/font_dialog.h"

#include "platform/app/message_box.h"
#include "platform/draw/dc.h"

#include <cstring>
#include <deque>
#include <utility>

namespace {
talvor::platform::FontDialogHandler& Handler() {
    static talvor::platform::FontDialogHandler handler;
    return handler;
}
std::deque<talvor::platform::FontDialogAnswer>& Answers() {
    static std::deque<talvor::platform::FontDialogAnswer> answers;
    return answers;
}

INT_PTR AnswerFromQueue(CFontDialog& dialog) {
    if (Answers().empty())
        return IDCANCEL;
    const talvor::platform::FontDialogAnswer answer = Answers().front();
    Answers().pop_front();
    if (answer.result != IDOK)
        return IDCANCEL;
    dialog.m_lf = answer.font;
    return IDOK;
}

int ScreenPixelsPerInch() {
    CDC screen;
    screen.CreateCompatibleDC(nullptr);
    return screen.GetDeviceCaps(LOGPIXELSY);
}

// a * b / c rounded half away from zero, in 64 bits.
LONG MulDivRounded(long long a, long long b, long long c) {
    const long long product = a * b;
    const long long half = (c / 2) * ((product < 0) != (c < 0) ? -1 : 1);
    return static_cast<LONG>((product + half) / c);
}
} // namespace

CFontDialog::CFontDialog(const LOGFONT* lplfInitial, DWORD dwFlags, CDC*, CWnd* pParentWnd)
    : m_pParentWnd(pParentWnd) {
    m_cf.Flags = dwFlags;
    m_cf.lpLogFont = &m_lf;
    if (lplfInitial) {
        m_lf = *lplfInitial;
        m_cf.Flags |= CF_INITTOLOGFONTSTRUCT;
    }
}

CFontDialog::CFontDialog(const CHARFORMAT2& cf, DWORD dwFlags, CDC*, CWnd* pParentWnd)
    : m_pParentWnd(pParentWnd) {
    m_cf.Flags = dwFlags | CF_INITTOLOGFONTSTRUCT;
    m_cf.lpLogFont = &m_lf;
    if (cf.dwMask & CFM_SIZE)
        m_lf.lfHeight = -MulDivRounded(cf.yHeight, ScreenPixelsPerInch(), 1440);
    m_lf.lfWeight = (cf.dwMask & CFM_BOLD) && (cf.dwEffects & CFE_BOLD) ? 700 : 400;
    m_lf.lfItalic = (cf.dwMask & CFM_ITALIC) && (cf.dwEffects & CFE_ITALIC) ? 1 : 0;
    if (cf.dwMask & CFM_CHARSET)
        m_lf.lfCharSet = cf.bCharSet;
    if (cf.dwMask & CFM_FACE) {
        m_lf.lfPitchAndFamily = cf.bPitchAndFamily;
        std::memcpy(m_lf.lfFaceName, cf.szFaceName, LF_FACESIZE);
        m_lf.lfFaceName[LF_FACESIZE - 1] = '\0';
    }
    if (cf.dwMask & CFM_COLOR)
        m_cf.rgbColors = cf.crTextColor;
}

INT_PTR CFontDialog::DoModal() {
    const INT_PTR result = Handler() ? Handler()(*this) : AnswerFromQueue(*this);
    if (result != IDOK)
        return IDCANCEL;
    m_cf.iPointSize = GetSize();
    return IDOK;
}

void CFontDialog::GetCurrentFont(LPLOGFONT lplf) const {
    if (lplf)
        *lplf = m_lf;
}

int CFontDialog::GetSize() const {
    const LONG height = m_lf.lfHeight < 0 ? -m_lf.lfHeight : m_lf.lfHeight;
    return MulDivRounded(height, 720, ScreenPixelsPerInch());
}

namespace talvor::platform {

FontDialogHandler SetFontDialogHandler(FontDialogHandler handler) {
    return std::exchange(Handler(), std::move(handler));
}

void QueueFontDialogAnswer(const FontDialogAnswer& answer) {
    Answers().push_back(answer);
}

void ClearFontDialogAnswers() {
    Answers().clear();
}

} // namespace talvor::platform
