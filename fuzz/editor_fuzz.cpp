// Drives the editor with random keys, mouse clicks, scrolling, commands, the context menu, file
// insertion and loading, font changes and idle time over random text, and checks after each
// step that the selection lies within the text and that the cookies of the painted lines agree
// with a parse of the whole text.
#include "editor/syntax_edit.h"
#include "host/bars/command_bars.h"
#include "platform/app/message_box.h"
#include "platform/app/profile.h"
#include "platform/codepage/code_page.h"
#include "platform/window/file_dialog.h"
#include "platform/window/font_dialog.h"
#include "platform/window/input_state.h"
#include "platform/window/wnd.h"
#include "syntax/document_colourer.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

class FuzzEdit : public CTalvorSyntaxEdit {
public:
    // The cookie at the end of every display line, worked out from the first line down.
    std::vector<unsigned long> FullParse() {
        m_nLineCount = GetLineCount();
        talvor::syntax::DocumentColourer colourer(*this);
        std::vector<unsigned long> cookies;
        CString line;
        int hardEnd = 1;
        unsigned long end = 0;
        for (int k = 0; k < m_nLineCount; ++k) {
            const unsigned long start = k == 0 ? 0 : colourer.CookieForNextLine(end, hardEnd != 0);
            hardEnd = GetLineString(k, line);
            end = colourer.CookieAtEnd(start, line);
            cookies.push_back(end);
        }
        return cookies;
    }
    void Check() {
        long start, end;
        GetSel(start, end);
        if (start < 0 || end < start || end > GetTextLength()) {
            std::fprintf(stderr, "selection %ld-%ld outside the text\n", start, end);
            std::abort();
        }
        SendMessage(WM_PAINT);
        if (!m_pParseCookie || m_nCookieCount != GetLineCount())
            return;
        const auto cookies = FullParse();
        const int first = GetFirstVisibleLine();
        const int last = std::min(m_nCookieCount, first + GetVisibleLineCount());
        for (int k = first; k < last; ++k)
            if (m_pParseCookie[k] != cookies[static_cast<std::size_t>(k)]) {
                std::fprintf(stderr, "line %d: cookie %lx, a full parse gives %lx\n", k,
                             m_pParseCookie[k], cookies[static_cast<std::size_t>(k)]);
                std::abort();
            }
    }
};

constexpr int Keys[] = {VK_LEFT, VK_RIGHT,  VK_UP,   VK_DOWN, VK_HOME, VK_END, VK_PRIOR,
                        VK_NEXT, VK_DELETE, VK_BACK, 'A',     'C',     'V',    'X',
                        'Z',     'Y',       'K',     'L',     'U',     VK_F3};
constexpr UINT Commands[] = {6000, 6001, 6003, 6004, 6007,  6008,  6011,  6012,  6013,  6014,
                             6015, 6016, 6017, 6018, 57634, 57635, 57637, 57642, 57643, 57644};

// The file that insert and load read: the input's text, written once per input.
std::string TextFile(const std::string& text) {
    static const std::string path = "/tmp/talvor-editor-fuzz-" + std::to_string(::getpid());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    return path;
}

// No profile or message of the user's is touched while fuzzing.
struct QuietHost {
    QuietHost() {
        AfxGetApp()->SetProfileStore(std::make_shared<talvor::platform::MemoryProfile>());
        talvor::platform::SetMessageBoxHandler([](const char*, UINT) { return IDOK; });
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4)
        return 0;
    const unsigned codePages[] = {1252, 936, 65001};
    talvor::platform::SetSystemCodePage(codePages[data[0] % 3]);
    const int language = data[1] % 36;
    const int wrap = data[2] % 3;
    const std::size_t textLength = std::min<std::size_t>(data[3] * 8u, size - 4);
    const std::string text(reinterpret_cast<const char*>(data) + 4, textLength);
    const std::uint8_t* ops = data + 4 + textLength;
    const std::size_t opCount = (size - 4 - textLength) / 3;

    static const QuietHost quiet;
    const std::string file = TextFile(text);
    UINT menuChoice = 0;
    talvor::host::SetPopupMenuHandler(
        [&menuChoice](const CVTCommandBar&, UINT, POINT) { return menuChoice; });
    talvor::platform::ClearFileDialogAnswers();
    talvor::platform::ClearFontDialogAnswers();

    FuzzEdit edit;
    edit.Create(WS_CHILD | WS_VISIBLE | WS_HSCROLL | WS_VSCROLL, RECT{0, 0, 240, 120}, nullptr, 1);
    edit.SelectLanguage(language);
    edit.SetWrapMode(wrap);
    edit.ShowReturnLineToken(data[2] & 4);
    edit.ShowTabSpace(data[2] & 8);
    edit.ShowCross(data[2] & 16);
    edit.SetWindowText(text.c_str());
    edit.ResetParseCookie();
    talvor::platform::SetClipboardText(text.substr(0, text.size() / 3));
    for (std::size_t i = 0; i < opCount && i < 200; ++i) {
        const std::uint8_t op = ops[3 * i], a = ops[3 * i + 1], b = ops[3 * i + 2];
        talvor::platform::SetKeyDown(VK_CONTROL, op & 0x40);
        talvor::platform::SetKeyDown(VK_SHIFT, op & 0x80);
        switch (op & 0x0F) {
        case 0:
        case 1:
            edit.SendMessage(WM_CHAR, a == 0 ? 'x' : a, 1);
            break;
        case 2: {
            MSG msg{&edit, WM_KEYDOWN, static_cast<WPARAM>(Keys[a % 20]), 1};
            if (!edit.PreTranslateMessage(&msg))
                edit.SendMessage(WM_KEYDOWN, msg.wParam, 1);
            break;
        }
        case 3:
            edit.SendMessage(WM_LBUTTONDOWN, (op & 0x80) ? MK_SHIFT : 0, MAKELPARAM(a, b / 2));
            edit.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(b, a / 2));
            edit.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(b, a / 2));
            break;
        case 4:
            edit.SendMessage(WM_COMMAND, Commands[a % 20]);
            break;
        case 5:
            edit.SendMessage(WM_VSCROLL, MAKEWPARAM(a % 9, b * 4));
            break;
        case 6:
            edit.SendMessage(WM_HSCROLL, MAKEWPARAM(a % 9, b * 4));
            break;
        case 7:
            edit.SetSel(a * 3, b * 3);
            break;
        case 8:
            edit.GotoLine(a * 4 - 16);
            break;
        case 9:
            edit.SetSynCtrlTabSize(a % 9);
            break;
        case 10:
            edit.MoveWindow(0, 0, 40 + a, 20 + b);
            break;
        case 11:
            (void)edit.GetCursorString();
            break;
        case 12: {
            // A font of another size or face; a height of 0 or a huge one included.
            talvor::platform::FontDialogAnswer answer;
            answer.result = (b & 1) ? IDOK : IDCANCEL;
            answer.font = edit.GetMacroEditFont();
            answer.font.lfHeight = -static_cast<LONG>(a % 40) * ((b & 2) ? 1 : 100);
            talvor::platform::QueueFontDialogAnswer(answer);
            edit.OnViewFont();
            break;
        }
        case 13:
            talvor::platform::QueueFileDialogAnswer(
                {(b & 1) ? IDOK : IDCANCEL, (b & 2) ? file : std::string("/nonexistent"), a});
            edit.SendMessage(WM_COMMAND, 6010);
            break;
        case 14:
            if (b & 1) {
                edit.LoadFile(file.c_str());
            } else {
                menuChoice = (b & 2) ? Commands[a % 20] : 0;
                edit.SendMessage(WM_RBUTTONDOWN, 0, MAKELPARAM(a, b));
            }
            break;
        default:
            // A pause of the user's: the host's loop gives idle time.
            AfxPumpMessages();
            AfxIdle(a);
            break;
        }
        AfxPumpMessages();
        edit.Check();
    }
    talvor::platform::ReleaseAllKeys();
    edit.DestroyWindow();
    AfxPumpMessages();
    return 0;
}
