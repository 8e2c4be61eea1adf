// Enable states of the editor's commands, and clearing.
#include "editor/syntax_edit.h"

#include "platform/window/input_state.h"

namespace {
bool Writable(CWnd& wnd) {
    return (wnd.GetStyle() & ES_READONLY) == 0;
}
} // namespace

void CTalvorSyntaxEdit::OnClear() {
    long start, end;
    GetSel(start, end);
    if (start != end)
        ReplaceSel("", TRUE);
}

void CTalvorSyntaxEdit::OnClearAll() {
    SetWindowText("");
}

void CTalvorSyntaxEdit::OnUpdateReadOnly(CCmdUI* pCmdUI) {
    pCmdUI->Enable(Writable(*this));
}

void CTalvorSyntaxEdit::OnUpdateEditcut(CCmdUI* pCmdUI) {
    long start, end;
    GetSel(start, end);
    pCmdUI->Enable(start != end && Writable(*this));
}
void CTalvorSyntaxEdit::OnUpdateEditUcase(CCmdUI* pCmdUI) {
    OnUpdateEditcut(pCmdUI);
}
void CTalvorSyntaxEdit::OnUpdateEditLcase(CCmdUI* pCmdUI) {
    OnUpdateEditcut(pCmdUI);
}
void CTalvorSyntaxEdit::OnUpdateEditInvert(CCmdUI* pCmdUI) {
    OnUpdateEditcut(pCmdUI);
}
void CTalvorSyntaxEdit::OnUpdateEditSentancecase(CCmdUI* pCmdUI) {
    OnUpdateEditcut(pCmdUI);
}

void CTalvorSyntaxEdit::OnUpdateEditcopy(CCmdUI* pCmdUI) {
    long start, end;
    GetSel(start, end);
    pCmdUI->Enable(start != end);
}
void CTalvorSyntaxEdit::OnUpdateEditCapitalize(CCmdUI* pCmdUI) {
    OnUpdateEditcopy(pCmdUI);
}

void CTalvorSyntaxEdit::OnUpdateEditpaste(CCmdUI* pCmdUI) {
    pCmdUI->Enable(IsClipboardFormatAvailable(CF_TEXT) && Writable(*this));
}
void CTalvorSyntaxEdit::OnUpdateEditundo(CCmdUI* pCmdUI) {
    pCmdUI->Enable(SendMessage(EM_CANUNDO) && Writable(*this));
}
void CTalvorSyntaxEdit::OnUpdateEditredo(CCmdUI* pCmdUI) {
    pCmdUI->Enable(SendMessage(EM_CANREDO) && Writable(*this));
}
void CTalvorSyntaxEdit::OnUpdateClearAll(CCmdUI* pCmdUI) {
    pCmdUI->Enable(GetTextLength() > 0);
}

BOOL CTalvorSyntaxEdit::UpdateCommandUI(CCmdUI* pCmdUI) {
    if (!pCmdUI)
        return FALSE;
    switch (pCmdUI->m_nID) {
    case 6000:
    case 6001:
    case 6003:
    case 6004:
        OnUpdateReadOnly(pCmdUI);
        return TRUE;
    case 57635:
    case 6007:
    case 6008:
    case 6011:
    case 6018:
        OnUpdateEditcut(pCmdUI);
        return TRUE;
    case 57634:
    case 6012:
        OnUpdateEditcopy(pCmdUI);
        return TRUE;
    case 57637:
        OnUpdateEditpaste(pCmdUI);
        return TRUE;
    case 57643:
        OnUpdateEditundo(pCmdUI);
        return TRUE;
    case 57644:
        OnUpdateEditredo(pCmdUI);
        return TRUE;
    default:
        return FALSE;
    }
}
