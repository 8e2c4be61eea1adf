// The whole-script parse written the plain way: each event walks the lines from the start,
// each block is removed from the array at once, and the walk for Subs and Functions begins
// again at the top after every block. Slow (it grows with the square of the lines), and
// therefore the yardstick for the engine's indexed parse, which must give the same records
// and leave the same lines.
#pragma once

#include "engine/script_text_disposal.h"
#include "platform/codepage/code_page.h"
#include "platform/codepage/mbs_functions.h"

namespace talvor::engine::testing {

inline bool ReferenceSame(const CString& a, const CString& b) {
    return _mbsicmp(reinterpret_cast<const unsigned char*>(a.GetString()),
                    reinterpret_cast<const unsigned char*>(b.GetString())) == 0;
}

inline bool ReferenceBegins(const CString& line, const CString& word) {
    auto* text = reinterpret_cast<const unsigned char*>(line.GetString());
    return _mbsstr(text, reinterpret_cast<const unsigned char*>(word.GetString())) == text;
}

// Removes count lines from start and the line behind them, if there is one.
inline void ReferenceRemove(CStringArray& lines, int start, int count) {
    lines.RemoveAt(start, count);
    if (start < lines.GetSize())
        lines.RemoveAt(start);
}

inline void ReferenceParse(CTalvorScriptTextDisposal& engine, CStringArray& lines,
                           CStringArray& names, CVXInterfaceInfo* formEvents,
                           CArray<CVXInterfaceInfo*, CVXInterfaceInfo*>& interfaces,
                           VB_ALL_PROGRAMME_INFO& info) {
    engine.ClearData(&info);
    if (lines.IsEmpty())
        return;

    for (int i = 0; i < lines.GetSize(); ++i) {
        if (lines[i].IsEmpty()) {
            lines.RemoveAt(0, i + 1);
            break;
        }
        info.strGlobal += lines[i] + "\r\n";
    }

    for (INT_PTR i = 0; i < interfaces.GetSize() && i < names.GetSize(); ++i) {
        CVXInterfaceInfo* events = interfaces[i];
        if (events == nullptr)
            continue;
        for (int j = 0; j < events->GetNumMethods(); ++j) {
            CVXMethodInfo* event = events->GetMethod(j);
            if (event == nullptr)
                continue;
            CString head = engine.m_strSub + " " + names[i] + "_" + event->GetName() + "(";
            bool first = true;
            for (int p = 0; p < event->GetNumParams(); ++p) {
                if (CVXMethodParamInfo* param = event->GetParam(p)) {
                    head += (first ? "" : ", ") + param->GetName();
                    first = false;
                }
            }
            head += ")";
            int start = -1, count = 0;
            CString text;
            for (int k = 0; k < lines.GetSize(); ++k) {
                if (start < 0 && ReferenceSame(lines[k], head))
                    start = k;
                if (start < 0)
                    continue;
                text += lines[k] + "\r\n";
                ++count;
                if (ReferenceSame(lines[k], engine.m_strEndSub))
                    break;
            }
            if (start < 0 || text.IsEmpty())
                continue;
            ReferenceRemove(lines, start, count);
            if (events == formEvents) {
                info.arrFormEventID.Add(event->GetID());
                info.arrFormEventCode.Add(text);
            } else {
                info.arrCtrlEventCode.Add(text);
            }
        }
    }

    for (bool again = true; again;) {
        again = false;
        int start = -1, count = 0;
        CString text;
        for (int k = 0; k < lines.GetSize(); ++k) {
            const CString line = lines[k];
            if (start < 0 && (ReferenceBegins(line, engine.m_strSub) ||
                              ReferenceBegins(line, engine.m_strFunction)))
                start = k;
            if (start < 0)
                continue;
            text += line + "\r\n";
            ++count;
            bool endsSub = ReferenceSame(line, engine.m_strEndSub);
            if (endsSub || ReferenceSame(line, engine.m_strEndFunction)) {
                ReferenceRemove(lines, start, count);
                (endsSub ? info.arrSubCode : info.arrFunctionCode).Add(text);
                again = true;
                break;
            }
        }
    }
}

} // namespace talvor::engine::testing
