// CTalvorSyntaxEdit: the script editor. A rich edit control keeps the text, caret, selection
// and undo; the editor paints everything itself, double-buffered, from the runs of the line
// parser of its one language: line numbers, gutter marks, selection, tab and line-end marks,
// underlining and the cross hair. Settings live in the application profile, per language for
// the colours.
#pragma once

#include "host/core/vp_state.h"
#include "platform/draw/bitmap.h"
#include "platform/draw/font.h"
#include "platform/richedit/rich_edit_ctrl.h"
#include "platform/window/cmd_ui.h"
#include "syntax/syntax.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

class CArchive;
class CVTControlListBox;

// Profile sections of the editor's settings; the colour section gets the language's name
// appended.
inline constexpr const char* EditorFontSection =
    "MainWnd\\DockingPaneLayouts\\PaneMacro\\icrEdit_Font";
inline constexpr const char* EditorColorSection =
    "MainWnd\\DockingPaneLayouts\\PaneMacro\\icrEdit_Color";

class CTalvorSyntaxEdit : public CRichEditCtrl, public CTalvorSyntax, public CVPState {
public:
    CTalvorSyntaxEdit();
    ~CTalvorSyntaxEdit() override;

    const CRuntimeClass* GetRuntimeClass() const override { return &classCTalvorSyntaxEdit; }
    static const CRuntimeClass classCTalvorSyntaxEdit;

    // Storing writes the bytes of the selection, without a length; loading reads the rest of
    // the archive and keeps nothing of it.
    void Serialize(CArchive& ar) override;
    // Storing writes the 104-byte state record; loading reads nothing.
    void SerializeState(CArchive& ar) override;
    BOOL PreTranslateMessage(MSG* pMsg) override;
    LRESULT WindowProc(UINT nMsg, WPARAM wParam, LPARAM lParam) override;

    // Settings in the application profile.
    void ReadSettings();
    void WriteSettings();
    // Reads the seventeen colours of the current language (the argument plays no part).
    void ReadColorInfo(int nLanguage);
    // Changes the language: colours, rules and keywords, a fresh cookie cache, a paint.
    void SelectLanguage(int nLanguage);
    void Initialize();
    void InitEditorFont();

    // Index table: 0-5 the parser's colours, 6 background, ... 17 selection; others give
    // m_clrNormalColor and set nothing.
    void SetColor(int nIndex, unsigned long clr);
    unsigned long GetColor(int nIndex);

    void SetMacroEditFont(LOGFONT lf);
    LOGFONT GetMacroEditFont() { return m_lfFont; }
    void SetSynCtrlFont(LOGFONT lf);
    void SetSynCtrlTabSize(int nSize);
    void SetWrapMode(int nMode);
    void WrapChanged();
    void ShowLineNumber(int b);
    void ShowReturnLineToken(int b);
    void ShowUnderLine(int b) { m_bShowUnderLine = b; }
    void ShowSelectLine(int b) { m_bShowSelectLine = b; }
    void ShowCross(int b) { m_bShowCross = b; }
    void ShowTabSpace(int b) { m_bShowTabSpace = b; }
    void SetUndoLimits(int n);
    int GetUndoLimits() { return m_nUndoLimits; }
    int IsAutoWordSelect();
    void SetAutoWordSelect(int b);
    CHARFORMAT2& GetCharFormatSelection();

    int GetWrapMode() { return m_nWrapMode; }
    int GetTabSize() { return m_nTabSize; }
    int GetSpaceWidth() { return m_nSpaceWidth; }
    int IsShowLineNumber() { return m_bShowLineNumber; }
    int IsShowSelectLine() { return m_bShowSelectLine; }
    int IsShowUnderLine() { return m_bShowUnderLine; }
    int IsShowReturnLineToken() { return m_bShowReturnLineToken; }
    int IsShowCross() { return m_bShowCross; }
    int IsShowTabSpace() { return m_bShowTabSpace; }
    int GetVisibleLineCount();

    // Lines and cookies (display lines of the control, from 0).
    int GetLineString(int nLine, CString& str);
    unsigned long GetParseCookie(int nLine);
    void ResetParseCookie();
    void SetParseCookieZeroFromGivenLine(int nLine);
    int GetLinesTop(int nLine);
    int GetCurrentLine();
    void GetSelection();
    void GetSelLine(int& nFirst, int& nLast);
    void SetLeftMargin();
    void SetCharWidth();
    void SetLineHeight();
    void CalcHorzScrollPos();
    void GotoLine(int nLine);

    virtual CString GetCursorString();

    // Text commands (identifiers 6000 to 6018). Line commands work on the lines of the
    // selection and select them whole afterwards; the others transform the selected text.
    void OnEditMoveright();
    void OnEditMoveleft();
    void OnEditComment();
    void OnEditUncomment();
    void OnEditUcase();
    void OnEditLcase();
    void OnEditInvert();
    void OnEditCapitalize();
    void OnEditTabtospace();
    void OnEditSpacetotab();
    void OnEditLeadingspacetotab();
    void OnEditTrimtraillingspace();
    void OnEditTrimtraillingtab();
    void OnEditSentancecase();
    // Drops the cookie cache and re-applies the font, which puts the control's text back; the
    // argument is not used.
    void LoadText(CString& str);

    // Input. Keys and characters go to the control first; the editor then repaints what moved.
    void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags) override;
    void OnChar(UINT nChar, UINT nRepCnt, UINT nFlags) override;
    // A writable editor shows its context menu (resource 5428) at the cursor; the control's
    // own handling of the button follows in any case.
    void OnRButtonDown(UINT nFlags, CPoint pt) override;
    // The control's EN_CHANGE, reflected by the parent: the text was changed by editing.
    void OnEnChange();
    // Asks the control to lay out again when its horizontal range changed since last seen.
    void ReCalcCursorPostion();
    // Sets the caption beside a host's undo (57643) or redo drop-down list: the control static
    // of the list's bar with the list's identifier gets "Undo n action(s)" for the n selected
    // rows. Nothing happens without such a control.
    void SetUndoMessage(CVTControlListBox* pList);

    // Clipboard and undo commands (57634 to 57644).
    void OnEditcut();
    void OnEditcopy();
    void OnEditPaste();
    void OnEditselectall();
    void OnEditundo();
    void OnEditredo();
    // Replaces a non-empty selection by nothing, with undo; OnClearAll empties the text.
    void OnClear();
    void OnClearAll();

    // Enable states: writable means the control lacks ES_READONLY.
    void OnUpdateReadOnly(CCmdUI* pCmdUI);
    void OnUpdateEditcut(CCmdUI* pCmdUI);
    void OnUpdateEditUcase(CCmdUI* pCmdUI);
    void OnUpdateEditLcase(CCmdUI* pCmdUI);
    void OnUpdateEditInvert(CCmdUI* pCmdUI);
    void OnUpdateEditSentancecase(CCmdUI* pCmdUI);
    void OnUpdateEditcopy(CCmdUI* pCmdUI);
    void OnUpdateEditCapitalize(CCmdUI* pCmdUI);
    void OnUpdateEditpaste(CCmdUI* pCmdUI);
    void OnUpdateEditundo(CCmdUI* pCmdUI);
    void OnUpdateEditredo(CCmdUI* pCmdUI);
    void OnUpdateClearAll(CCmdUI* pCmdUI);
    // Runs the update handler bound to the command's identifier; FALSE when none is.
    BOOL UpdateCommandUI(CCmdUI* pCmdUI);

    // Command 6010: asks for a file with the types of the profile's "FileTypes" list, keeps the
    // chosen filter in the profile (also on Cancel), and replaces the selection by the file's
    // text with undo; a file that cannot be read inserts nothing but still marks a change.
    void OnEditInsertfile();
    // The filter list of OnEditInsertfile, always ending in the filter for all files.
    CString GetInsertFileFilter();
    // Lets the user choose a font, starting from the format at the caret or of the selection;
    // on OK the text and the modified state are kept, the tab stops left as they are. An empty
    // text comes back as a single blank.
    void OnViewFont();
    // Replaces the control's text by a file's (silently empty when it cannot be read) and
    // clears the modified state.
    void LoadFile(CString strPath);
    // The text of a file: 16-bit little-endian text when it starts with 0xFF, else 8-bit text
    // up to its first zero byte; a file that cannot be read shows a message and gives "".
    CString GetFileContext(CString strPath);
    // 1 when the path is not empty and the file can be read.
    int IsFileExist(CString& strPath);
    // Writes the control's text (CRLF line ends); a null or empty path does nothing.
    void SaveTheContext(const char* pszPath);

protected:
    BOOL PreCreateWindow(CREATESTRUCT& cs) override;
    int OnCreate(LPCREATESTRUCT cs) override;
    void OnDestroy() override;
    void OnSize(UINT nType, int cx, int cy) override;
    void OnPaint() override;
    void OnHScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar) override;
    void OnVScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar) override;
    // Idle time works out the cookies no paint has needed yet, a slice of lines at a time.
    BOOL OnIdle(LONG lCount) override;

    void DrawSingleLineColorText(CDC* pDC, int nLine, CRect rc);
    void JudgeInSeletioAndDrawText(CDC* pDC, CRect& rc, CString& str, COLORREF clrBk,
                                   COLORREF clrText);
    void DrawReturnLineToken(int bHardEnd, CDC* pDC, CRect& rc);
    void DrawLineNumber(CDC* pDC, int nLine, CRect rc);
    void DrawCross(CDC* pDC);
    int IsStrInSelection(int x, int y, int bStart);
    int IsSelectionInStr(int x, int nWidth, int y);
    // The control's change notification: the cookies from the changed line on are forgotten,
    // and a change by editing marks the text modified.
    void OnTextChanged(long firstChar, bool wholeText) override;
    // Runs the handler of a command identifier; FALSE for one the editor does not handle.
    BOOL OnCommand(UINT nID);

    int m_nHScrollPos;
    int m_nMarkCount;
    int m_nMarkLine[256];
    int m_bShowTabSpace;
    int m_nLineNumberDigits;
    int m_bShowCross;
    int m_bAutoWordSelect;
    int m_nUndoLimits;
    int m_bShowReturnLineToken;
    int m_nLineCount;
    int m_bHScrollTracking;
    CPoint m_ptSelEnd;
    CPoint m_ptSelStart;
    int m_nTabWidth;
    int m_nSpaceWidth;
    int m_nGutterWidth;
    int m_bShowLineNumber;
    int m_bPrevHardEnd;
    int m_bShowSelectLine;
    int m_bShowUnderLine;
    int m_nCurLine;
    int m_nCookieCount;
    std::unique_ptr<unsigned long[]> m_pParseCookie;
    CFont m_font;
    LOGFONT m_lfFont;
    int m_nDigitWidth;
    int m_nLineHeight;
    int m_nWrapMode;
    int m_nTabSize;
    int m_nLeftMargin;
    CRect m_rcClient;
    std::unique_ptr<CBitmap> m_pPaintBitmap;
    int m_bRepaintAfterSize;
    int m_bModified;
    int m_nHScrollMax;
    int m_bCanPaint;
    int m_nWrapType;
    CHARFORMAT2 m_cfSelection;

private:
    // The control's whole text (CRLF line ends) and back, NUL bytes included; putting it back
    // leaves the control unmodified and without undo steps.
    std::string TakeText();
    void PutText(const std::string& text);
    // The cookie a line starts with, from the cookie at the end of the line above.
    unsigned long CarriedCookie(unsigned long cookieAbove, int hardEndAbove);
    void ResynchroniseCookies();
    // One slice of the idle work: the cookies of the first run of unknown lines, at most a
    // slice long. False when none is left, or while a change waits for the paint that brings
    // the cache in step (that paint asks for idle time again).
    bool WorkOutCookiesAhead();
    void DrawTabMark(CDC* pDC, int x, const CRect& rc);
    // The frames of the text commands.
    void LineCommand(const std::function<void(long, std::string_view)>& step);
    void SelectionCommand(const std::function<std::string(std::string)>& transform,
                          bool keepSelection);
    void RemoveChars(long index, long count);
    // Font made from m_lfFont for the paint, kept while m_lfFont stays the same.
    CFont& PaintFont();

    CFont m_paintFont;
    LOGFONT m_paintFontSource{};
    std::vector<COLORINFO> m_runs;
    // No cookie above this line is unknown: where the idle work looks for the next unknown one.
    // Everything that forgets cookies moves it up.
    int m_nKnownCookiesBelow = 0;
};
