// CFontDialog: the font dialog, started from a LOGFONT or from a rich edit character format.
// There is no screen, so the dialog is answered by a handler that the host installs; the default
// handler gives the answers queued for it, oldest first, and Cancel when none is left.
#pragma once

#include "platform/app/message_box.h"
#include "platform/window/char_format.h"
#include "platform/window/wnd.h"

#include <functional>

constexpr DWORD CF_SCREENFONTS = 0x00000001;
constexpr DWORD CF_PRINTERFONTS = 0x00000002;
constexpr DWORD CF_BOTH = 0x00000003;
constexpr DWORD CF_INITTOLOGFONTSTRUCT = 0x00000040;
constexpr DWORD CF_EFFECTS = 0x00000100;
constexpr DWORD CF_NOVECTORFONTS = 0x00000800;
constexpr DWORD CF_FIXEDPITCHONLY = 0x00004000;
constexpr DWORD CF_TTONLY = 0x00040000;

// The part of the dialog's description a handler reads and answers in.
struct CHOOSEFONT {
    DWORD Flags = 0;
    LOGFONT* lpLogFont = nullptr; // the dialog's m_lf
    int iPointSize = 0;           // tenths of a point, set when the user chooses
    COLORREF rgbColors = 0;
};

class CFontDialog {
public:
    // Starts from the font, or from the system's default when it is null.
    explicit CFontDialog(const LOGFONT* lplfInitial = nullptr,
                         DWORD dwFlags = CF_EFFECTS | CF_SCREENFONTS, CDC* pdcPrinter = nullptr,
                         CWnd* pParentWnd = nullptr);
    // Starts from the face, size, weight, italics and character set the format holds (its
    // mask says which); the size in twips becomes a height in pixels of the screen.
    CFontDialog(const CHARFORMAT2& charFormat, DWORD dwFlags = CF_SCREENFONTS,
                CDC* pdcPrinter = nullptr, CWnd* pParentWnd = nullptr);
    CFontDialog(const CFontDialog&) = delete;
    CFontDialog& operator=(const CFontDialog&) = delete;

    // IDOK (1) when a font was chosen (m_lf holds it), IDCANCEL (2) otherwise.
    INT_PTR DoModal();
    void GetCurrentFont(LPLOGFONT lplf) const;
    CString GetFaceName() const { return CString(m_lf.lfFaceName); }
    // Tenths of a point.
    int GetSize() const;
    BOOL IsBold() const { return m_lf.lfWeight >= 700; }
    BOOL IsItalic() const { return m_lf.lfItalic != 0; }
    CWnd* GetParentWnd() const { return m_pParentWnd; }

    CHOOSEFONT m_cf;
    LOGFONT m_lf{};

private:
    CWnd* m_pParentWnd;
};

namespace talvor::platform {

// Answers a font dialog in place of a user: fills in m_lf and gives IDOK, or gives IDCANCEL.
using FontDialogHandler = std::function<INT_PTR(CFontDialog& dialog)>;
// Installs the handler for all later dialogs and returns the one it replaces; an empty handler
// restores the default.
FontDialogHandler SetFontDialogHandler(FontDialogHandler handler);

// One answer of the default handler: OK with a font, or Cancel.
struct FontDialogAnswer {
    INT_PTR result = IDCANCEL;
    LOGFONT font{};
};
void QueueFontDialogAnswer(const FontDialogAnswer& answer);
// Forgets the answers not yet given.
void ClearFontDialogAnswers();

} // namespace talvor::platform
