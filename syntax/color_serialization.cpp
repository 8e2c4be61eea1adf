// The colour table in archive form: 17 little-endian 32-bit values, 68 bytes, no header.
#include "syntax/syntax.h"

#include "platform/files/archive.h"

void CTalvorSyntax::SerializeColor(CArchive& ar) {
    // The record's order, which puts m_clrTab before m_clrBKSelText unlike the members.
    COLORREF* const record[] = {
        &m_clrBkColor,      &m_clrCommentColor,     &m_clrSyntaxColor,
        &m_clrNormalColor,  &m_clrStringColor,      &m_clrCharColor,
        &m_clrNumberColor,  &m_clrUnderLine,        &m_clrBkCurLine,
        &m_clrLineEnd,      &m_clrLinNumberBkColor, &m_clrLinNumberNormal,
        &m_clrCurLinNumber, &m_clrLinNumberSep,     &m_clrCross,
        &m_clrTab,          &m_clrBKSelText,
    };
    static_assert(sizeof(record) / sizeof(record[0]) == 17);
    if (ar.IsStoring()) {
        for (COLORREF* colour : record)
            ar << static_cast<DWORD>(*colour);
    } else {
        for (COLORREF* colour : record) {
            DWORD value = 0;
            ar >> value;
            *colour = value;
        }
    }
}
