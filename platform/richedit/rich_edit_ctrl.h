// CRichEditCtrl: a multi-line plain text edit control without a screen. It keeps the text as
// paragraphs (a carriage return ends each but the last; CRLF when streamed out), the caret and
// selection, undo and redo with a limit (typing grouped into one step), the modified flag, the
// read-only state, options and tab stops. Each change of the text made through the control
// (typing, replacing the selection, undo) is told to the parent window as WM_COMMAND with
// EN_CHANGE, which the parent reflects back first (CWnd::OnChildNotify). It lays the text out in
// display lines, wrapping by pixel width when asked, and measures with the very font it is given,
// so a window that paints the text itself with that font finds each character where the control
// puts the caret. Positions count characters of the system code page (a double-byte character is
// one).
#pragma once

#include "platform/draw/dc.h"
#include "platform/draw/font.h"
#include "platform/richedit/rich_edit_types.h"
#include "platform/window/wnd.h"

#include <string>
#include <string_view>
#include <vector>

class CRichEditCtrl : public CWnd {
public:
    CRichEditCtrl();
    ~CRichEditCtrl() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // Lines are display lines, from 0.
    int GetLineCount() const;
    // First character of the line; -1 for the caret's line. -1 for a line beyond the last.
    int LineIndex(int line = -1) const;
    // Line of the character (-1: the caret's); a position beyond the text gives the last line.
    long LineFromChar(long charIndex) const;
    // Characters of the line holding the character, without its line end; -1: the caret's.
    int LineLength(int charIndex = -1) const;
    // The line's characters, with a carriage return when a paragraph ends there, copied up to
    // maxLength bytes without a terminating zero; the result counts the characters copied.
    int GetLine(int line, LPTSTR buffer, int maxLength) const;
    // The line's text as GetLine gives it, in full.
    CString GetLineText(int line) const;
    // The same appended to text, so a caller walking many lines keeps one buffer.
    void AppendLineText(int line, CString& text) const;
    int GetFirstVisibleLine() const { return m_firstVisible; }
    // Scrolls by lines (clamped to the text) and pixels sideways.
    void LineScroll(int lines, int chars = 0);

    void GetSel(long& start, long& end) const;
    void GetSel(CHARRANGE& range) const;
    // -1 as start removes the selection (caret at the start of the old one); an end of -1 or
    // beyond the text means the text's end. The caret goes to end.
    void SetSel(long start, long end);
    void SetSel(CHARRANGE& range) { SetSel(range.cpMin, range.cpMax); }
    CString GetSelText() const;
    // Replaces the selection (ignored when read-only); the caret ends behind the new text.
    void ReplaceSel(LPCTSTR newText, BOOL canUndo = FALSE);
    void Clear();
    void Copy() const;
    void Cut();
    void Paste();
    BOOL CanPaste(UINT format = 0) const;
    void HideSelection(BOOL hide, BOOL permanent);
    BOOL IsSelectionHidden() const { return m_hideSelection; }
    // Characters of the text, paragraph ends counted as one.
    long GetTextLength() const;
    // The characters from start to end as text (paragraph ends as carriage returns).
    CString GetTextRange(long start, long end) const;

    // Top left of the character's cell in client coordinates; the text's end is a valid
    // position. Out of range: (0, 0)... as the framework answers, the end's position.
    CPoint PosFromChar(UINT charIndex) const;
    // The character boundary nearest to the point.
    int CharFromPos(CPoint point) const;

    // Formatting rectangle: where the lines are laid out; wrapping at the window uses its width.
    void SetRect(LPCRECT rect);
    void GetRect(LPRECT rect) const;
    // lineWidth 0 wraps at the formatting rectangle, 1 switches wrapping off, a larger value
    // wraps at that many twips.
    BOOL SetTargetDevice(HDC dc, long lineWidth);
    BOOL IsWrapping() const { return m_wrapWidth != 1; }

    BOOL CanUndo() const;
    BOOL CanRedo() const;
    BOOL Undo();
    BOOL Redo();
    void EmptyUndoBuffer();
    // The deepest the undo list goes; 0 switches undo off. Returns the new limit.
    UINT SetUndoLimit(UINT limit);
    BOOL GetModify() const { return m_modified ? TRUE : FALSE; }
    void SetModify(BOOL modified = TRUE) { m_modified = modified != FALSE; }
    BOOL SetReadOnly(BOOL readOnly = TRUE);
    BOOL IsReadOnly() const { return (GetStyle() & ES_READONLY) ? TRUE : FALSE; }

    UINT GetOptions() const { return m_options; }
    void SetOptions(WORD operation, DWORD flags);

    // Plain text only (SF_TEXT, with SFF_SELECTION for the selection). Stream in takes any
    // line ends; stream out writes CRLF. Both return the characters moved.
    long StreamIn(int format, EDITSTREAM& es);
    long StreamOut(int format, EDITSTREAM& es);

    DWORD GetParaFormat(PARAFORMAT& pf) const;
    BOOL SetParaFormat(PARAFORMAT& pf);
    DWORD GetSelectionCharFormat(CHARFORMAT2& cf) const;
    DWORD GetDefaultCharFormat(CHARFORMAT2& cf) const { return GetSelectionCharFormat(cf); }
    COLORREF SetBackgroundColor(BOOL useSystem, COLORREF color);
    COLORREF GetBackgroundColor() const { return m_background; }

    // The font the control lays out with (WM_SETFONT); the control keeps its own copy.
    void SetFont(CFont* font, BOOL redraw = TRUE);
    const CFont* GetControlFont() const { return &m_font; }
    // Pixels from line to line: the font's cell height.
    int GetLineHeight() const { return m_lineHeight; }
    int GetHorzScrollPixels() const { return m_hScroll; }

    const CRuntimeClass* GetRuntimeClass() const override { return &classCRichEditCtrl; }
    static const CRuntimeClass classCRichEditCtrl;

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The change notification: the text changed from this character on (wholeText: all of
    // it was replaced). A window that keeps data per line forgets it from there.
    virtual void OnTextChanged(long firstChar, bool wholeText) {
        (void)firstChar;
        (void)wholeText;
    }

private:
    struct Paragraph {
        std::string text;       // bytes, no line end
        int chars = 0;          // characters
        int width = 0;          // pixels of the whole paragraph on one line
        std::vector<int> wraps; // character offsets where display lines 2, 3, ... start
    };
    struct Step {
        long start = 0;
        std::string removed;  // paragraph ends as '\r'
        std::string inserted; // likewise
        long insertedChars = 0;
        long selStart = 0, selEnd = 0; // selection before the step
        bool typing = false;
    };
    struct Location {
        int para;
        int offset; // characters into the paragraph
    };

    // Text store.
    void SetAllText(std::string_view text);
    std::string AllText(bool crlf) const;
    void EnsureStarts() const;
    void Invalidated(int fromPara) const;
    // Brings the paragraph starts up to date after paragraphs first to last were replaced by as
    // many new ones; falls back to Invalidated when the index was not complete.
    void ShiftStarts(int first, int last);
    long ParaStart(int para) const;
    Location Locate(long charIndex) const;
    static int ByteOfChar(const std::string& text, int chars);
    static int CountChars(std::string_view text);
    std::string Range(long start, long end) const;

    // Layout.
    void RebuildMetrics();
    int CharWidth(const char* p, int length) const;
    int TabStop(int x) const;
    void LayoutParagraph(Paragraph& para) const;
    void RelayoutAll();
    int WrapPixels() const;
    int LineOfLocation(Location loc) const;
    void LineSpan(int line, int& para, int& first, int& last) const; // chars [first, last)
    int XOfChar(const Paragraph& para, int lineFirst, int offset) const;
    void UpdateScrollBars();
    void ScrollCaretIntoView();
    int VisibleLines() const;

    // Editing.
    void Replace(long start, long end, std::string_view text, bool canUndo, bool typing);
    void Record(Step step);
    long Clamp(long charIndex) const;
    void MoveCaret(long to, bool extend);
    long WordStart(long pos) const;
    long WordEnd(long pos) const;

    // Input.
    void KeyDown(UINT key);
    void CharIn(UINT ch);
    void Scroll(int bar, UINT code, int thumb);
    void PaintSelf();

    std::vector<Paragraph> m_paras;
    mutable std::vector<long> m_starts;    // first character of each paragraph
    mutable std::vector<int> m_firstLines; // first display line of each paragraph
    mutable int m_validFrom = 0;           // entries below this are right
    mutable int m_spanPara = 0; // paragraph of the last line looked up: walks go line by line
    long m_selAnchor = 0, m_selActive = 0;
    bool m_hideSelection = false;
    int m_firstVisible = 0;
    int m_hScroll = 0;
    int m_maxWidth = 0;
    bool m_maxWidthStale = false;
    CRect m_format;
    bool m_formatSet = false;
    long m_wrapWidth = 0;
    std::vector<Step> m_undo, m_redo;
    UINT m_undoLimit = 100;
    bool m_modified = false;
    UINT m_options = 0;
    UINT m_textMode = TM_RICHTEXT | TM_MULTILEVELUNDO | TM_MULTICODEPAGE;
    PARAFORMAT m_para;
    COLORREF m_background = RGB(255, 255, 255);
    CFont m_font;
    CDC m_measure;
    int m_byteWidth[256] = {};
    int m_lineHeight = 16;
    std::string m_pending; // first bytes of a multi-byte character typed byte by byte
    bool m_dragging = false;
};
