// Flow structure of statement lines: the class of one line, the skeleton of a new statement,
// and the block positions that come from counting the classes of the lines around a line.
#include "engine/script_text_disposal.h"

#include "engine/detail/keyword_test.h"
#include "engine/detail/statement_mask.h"

using talvor::engine::detail::MaskedLine;

namespace {

bool IsLoopHead(ENUM_FLOWLOOP flow) {
    return flow == FLOW_FOR || flow == FLOW_DO_WHILE || flow == FLOW_DO;
}

// The end class of a loop head and the head class of a loop end: they are neighbours.
ENUM_FLOWLOOP LoopPartner(ENUM_FLOWLOOP flow) {
    return static_cast<ENUM_FLOWLOOP>(IsLoopHead(flow) ? flow + 1 : flow - 1);
}

} // namespace

ENUM_FLOWLOOP CTalvorScriptTextDisposal::CheckCodeFlow(CString code) {
    if (code.IsEmpty())
        return FLOW_NONE;
    CString masked;
    if (!talvor::engine::detail::MaskLiterals(code, masked))
        return FLOW_NONE;
    talvor::engine::detail::MaskGroupsEverywhere(masked);

    // The order matters: Select Case before Case Else before Case, and so on.
    const MaskedLine line(masked);
    talvor::engine::detail::FlowKeywordPatterns& patterns = talvor::engine::detail::FlowPatterns();
    if (line.Has(patterns.ifWord, m_strIf) && line.Has(patterns.thenWord, m_strThen))
        return FLOW_IF;
    if (line.Is(m_strElse))
        return FLOW_ELSE;
    if (line.Is(m_strEndIf))
        return FLOW_END_IF;
    if (line.Has(patterns.doWhile, m_strDoWhile))
        return FLOW_DO_WHILE;
    if (line.Is(m_strLoop))
        return FLOW_LOOP;
    if (line.Has(patterns.forWord, m_strFor) && line.Has(patterns.toWord, m_strTo))
        return FLOW_FOR;
    if (line.Is(m_strNext))
        return FLOW_NEXT;
    if (line.Has(patterns.loopWhile, m_strLoopWhile))
        return FLOW_LOOP_WHILE;
    if (line.Is(m_strDo))
        return FLOW_DO;
    if (line.Has(patterns.selectCase, m_strSelectCase))
        return FLOW_SELECT;
    if (line.Has(patterns.caseElse, m_strCaseElse))
        return FLOW_CASE_ELSE;
    if (line.Has(patterns.caseWord, m_strCase))
        return FLOW_CASE;
    if (line.Has(patterns.endSelect, m_strEndSelect))
        return FLOW_END_SELECT;
    if (line.Has(patterns.exitWord, m_strExit))
        return FLOW_EXIT;
    return FLOW_NONE;
}

ENUM_FLOWLOOP CTalvorScriptTextDisposal::GetArryByFlowType(CStringArray& lines, CString code) {
    lines.RemoveAll();
    ENUM_FLOWLOOP flow = CheckCodeFlow(code);
    switch (flow) {
    case FLOW_NONE:
        lines.Add(code);
        break;
    case FLOW_IF:
        lines.Add(code);
        lines.Add(m_strElse);
        lines.Add(m_strEndIf);
        break;
    case FLOW_FOR:
        lines.Add(code);
        lines.Add(m_strNext);
        break;
    case FLOW_DO_WHILE:
        lines.Add(code);
        lines.Add(m_strLoop);
        break;
    case FLOW_LOOP_WHILE:
        lines.Add(m_strDo);
        lines.Add(code);
        break;
    case FLOW_EXIT:
        lines.Add(m_strExit);
        break;
    default: // lines that close or divide a block have no skeleton of their own
        break;
    }
    return flow;
}

void CTalvorScriptTextDisposal::GetFlowPosByKeyWord(CStringArray& lines, int& nIndex, int& nStart,
                                                    int& nMiddle, int& nEnd) {
    nStart = nMiddle = nEnd = -1;
    const int count = static_cast<int>(lines.GetSize());
    if (nIndex < 0 || nIndex >= count)
        return;
    const ENUM_FLOWLOOP flow = CheckCodeFlow(lines[nIndex]);

    if (flow == FLOW_NONE || flow == FLOW_EXIT) {
        nStart = nIndex;
        return;
    }
    if (flow >= FLOW_SELECT) // the Select family has no positions here
        return;

    if (flow == FLOW_IF) {
        // The given line is the first If. The middle relies on every If having an Else.
        int ifs = 0, elses = 0, endIfs = 0, middle = -1, end = -1;
        for (int k = nIndex; k < count; ++k) {
            ENUM_FLOWLOOP at = k == nIndex ? flow : CheckCodeFlow(lines[k]);
            if (at == FLOW_IF) {
                ++ifs;
            } else if (at == FLOW_ELSE) {
                if (++elses == ifs && middle < 0)
                    middle = k;
            } else if (at == FLOW_END_IF) {
                if (++endIfs == ifs) {
                    end = k;
                    break;
                }
            }
        }
        nStart = nIndex;
        nMiddle = middle;
        nEnd = end >= 0 ? end : 0; // a walk that finds nothing gives 0
        nIndex = nEnd;
        return;
    }

    if (flow == FLOW_ELSE || flow == FLOW_END_IF) {
        // Back to the If whose count levels the count of lines of the given class; lines of
        // the other class don't count. The block is then that of the If line.
        int own = 1, ifs = 0, ifLine = -1;
        for (int k = nIndex - 1; k >= 0; --k) {
            ENUM_FLOWLOOP at = CheckCodeFlow(lines[k]);
            if (at == flow) {
                ++own;
            } else if (at == FLOW_IF && ++ifs == own) {
                ifLine = k;
                break;
            }
        }
        if (ifLine < 0) {
            // Without an If the answer is that of line 0. Where line 0 is itself an Else or
            // End If, that would ask the same question again without end; line 0 is then
            // taken as a plain statement.
            ENUM_FLOWLOOP first = nIndex == 0 ? flow : CheckCodeFlow(lines[0]);
            if (first == FLOW_ELSE || first == FLOW_END_IF) {
                nIndex = 0;
                nStart = 0;
                return;
            }
            ifLine = 0;
        }
        nIndex = ifLine;
        GetFlowPosByKeyWord(lines, nIndex, nStart, nMiddle, nEnd);
        return;
    }

    // Loops: count heads and ends of this form until they level.
    const ENUM_FLOWLOOP partner = LoopPartner(flow);
    int same = 1, other = 0, found = -1;
    if (IsLoopHead(flow)) {
        for (int k = nIndex + 1; k < count; ++k) {
            ENUM_FLOWLOOP at = CheckCodeFlow(lines[k]);
            if (at == flow)
                ++same;
            else if (at == partner && ++other == same) {
                found = k;
                break;
            }
        }
        nStart = nIndex;
        nEnd = found >= 0 ? found : 0;
    } else {
        for (int k = nIndex - 1; k >= 0; --k) {
            ENUM_FLOWLOOP at = CheckCodeFlow(lines[k]);
            if (at == flow)
                ++same;
            else if (at == partner && ++other == same) {
                found = k;
                break;
            }
        }
        nStart = found >= 0 ? found : 0;
        nEnd = nIndex;
    }
    nIndex = nEnd;
}

void CTalvorScriptTextDisposal::GetCasePosByKeyWord(CStringArray& lines, int& nIndex, int& nSelect,
                                                    int& nCaseElse, int& nEndSelect,
                                                    CArray<int, int>& casePos) {
    if (lines.IsEmpty())
        return;
    nSelect = nCaseElse = nEndSelect = -1;
    const int count = static_cast<int>(lines.GetSize());
    if (nIndex < 0 || nIndex >= count || CheckCodeFlow(lines[nIndex]) != FLOW_SELECT)
        return;
    int depth = 0;
    for (int k = nIndex; k < count && (nSelect < 0 || nEndSelect < 0); ++k) {
        switch (CheckCodeFlow(lines[k])) {
        case FLOW_SELECT:
            if (depth == 0)
                nSelect = k;
            ++depth;
            break;
        case FLOW_END_SELECT:
            if (depth == 1)
                nEndSelect = k;
            --depth;
            break;
        case FLOW_CASE:
            if (depth == 1)
                casePos.Add(k);
            break;
        case FLOW_CASE_ELSE:
            if (depth == 1)
                nCaseElse = k;
            break;
        default:
            break;
        }
    }
}

CString CTalvorScriptTextDisposal::GetExitStr(CStringArray& lines, int nIndex) {
    const CString procedureExit = m_strExit + " " + m_strExitSub;
    if (nIndex >= lines.GetSize() || nIndex == 0)
        return procedureExit;
    // The nearest block above that still runs past nIndex decides. A Select block is no
    // block here.
    for (int k = nIndex - 1; k >= 0; --k) {
        ENUM_FLOWLOOP flow = CheckCodeFlow(lines[k]);
        if (flow != FLOW_FOR && flow != FLOW_DO_WHILE && flow != FLOW_DO && flow != FLOW_IF)
            continue;
        int position = k, start = -1, middle = -1, end = -1;
        GetFlowPosByKeyWord(lines, position, start, middle, end);
        if (flow == FLOW_FOR && end > nIndex)
            return m_strExit + " " + m_strExitFor;
        if ((flow == FLOW_DO_WHILE || flow == FLOW_DO) && end > nIndex)
            return m_strExit + " " + m_strExitDo;
        if (flow == FLOW_IF && (middle > nIndex || end > nIndex))
            return procedureExit;
    }
    return procedureExit;
}
