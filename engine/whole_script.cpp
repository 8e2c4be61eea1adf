// A whole script into a VB_ALL_PROGRAMME_INFO and back: the global block, the event handlers
// found by their exact head lines, then the other Subs and Functions by their first and last
// lines. Lines are removed by marks and head lines found through an index, so the parse costs
// time in proportion to the script, with the same results as walking the array from its start
// for every event and again after every block.
#include "engine/script_text_disposal.h"

#include "engine/detail/script_line_list.h"
#include "engine/detail/text_compare.h"
#include "resources/resource_guard.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

using talvor::engine::detail::BeginsWith;
using talvor::engine::detail::BeginsWithAsciiNoCase;
using talvor::engine::detail::SameNoCase;
using talvor::engine::detail::ScriptLineList;

namespace {

// Removes the lines of a block and the one line behind it, the empty line that follows a
// procedure; at the end of the script only the block goes. Returns the line after all that
// was removed, or -1.
int RemoveBlock(ScriptLineList& list, const std::vector<int>& block) {
    int behind = list.Next(block.back());
    int resume = behind >= 0 ? list.Next(behind) : -1;
    for (int position : block)
        list.Remove(position);
    if (behind >= 0)
        list.Remove(behind);
    return resume;
}

// Appends the text of a block, each line ended by "\r\n", to blocks; built at its full size
// and moved into its place.
void AddBlockText(CStringArray& blocks, const ScriptLineList& list, const std::vector<int>& block) {
    std::size_t size = 0;
    for (int position : block)
        size += static_cast<std::size_t>(list.At(position).GetLength()) + 2;
    std::string text;
    text.reserve(size);
    for (int position : block) {
        text += list.At(position).View();
        text += "\r\n";
    }
    INT_PTR at = blocks.GetSize();
    blocks.SetSize(at + 1);
    blocks[at] = CString(std::move(text));
}

// "Sub Name_Event(a, b)": the head line that the system writes for an event handler. A null
// parameter adds neither a name nor a separator.
CString HandlerHead(const CString& sub, const CString& owner, const CVXMethodInfo& event) {
    CString head = sub + " " + owner + "_" + event.GetName() + "(";
    bool first = true;
    for (int i = 0; i < event.GetNumParams(); ++i) {
        const CVXMethodParamInfo* param = event.GetParam(i);
        if (param == nullptr)
            continue;
        if (!first)
            head += ", ";
        head += param->GetName();
        first = false;
    }
    head += ")";
    return head;
}

} // namespace

void CTalvorScriptTextDisposal::GetCodeInfoByScriptText(
    CStringArray& lines, CStringArray& names, CVXInterfaceInfo* pFormEvents,
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*>& interfaces, VB_ALL_PROGRAMME_INFO* pInfo) {
    if (pInfo == nullptr)
        return;
    talvor::resources::ResourceGuard guard;
    ClearData(pInfo);
    if (lines.IsEmpty())
        return;

    // The global block: up to the first empty line, which goes with it. Without an empty
    // line every line stays for the steps below as well.
    const int count = static_cast<int>(lines.GetSize());
    int firstAfterGlobal = 0;
    std::string global;
    for (int i = 0; i < count; ++i) {
        const CString& line = lines[i];
        if (line.IsEmpty()) {
            firstAfterGlobal = i + 1;
            break;
        }
        global += line.View();
        global += "\r\n";
    }
    pInfo->strGlobal = CString(std::move(global));

    // One look at each line for what the steps below ask of it. Only lines that begin like
    // a head line ("Sub " without regard to case) can equal one, and only those are indexed;
    // a keyword beyond ASCII leaves every line in the index.
    ScriptLineList list(lines, firstAfterGlobal);
    enum : unsigned char { EndsSub = 1, EndsFunction = 2, Opens = 4 };
    std::vector<unsigned char> facts(static_cast<std::size_t>(count), 0);
    const std::string headPrefix = m_strSub.Str() + " ";
    const bool asciiPrefix = std::all_of(headPrefix.begin(), headPrefix.end(),
                                         [](char ch) { return ch > 0 && ch < 0x7F; });
    const bool anyEvents = !interfaces.IsEmpty();
    for (int i = list.First(); i >= 0; i = list.Next(i)) {
        const CString& line = list.At(i);
        unsigned char& fact = facts[static_cast<std::size_t>(i)];
        if (SameNoCase(line, m_strEndSub))
            fact |= EndsSub;
        else if (SameNoCase(line, m_strEndFunction))
            fact |= EndsFunction;
        if (BeginsWith(line, m_strSub) || BeginsWith(line, m_strFunction))
            fact |= Opens;
        if (anyEvents && (!asciiPrefix || BeginsWithAsciiNoCase(line, headPrefix)))
            list.AddToIndex(i);
    }

    // Event handlers, in the order of the interfaces and of their events: the first line
    // equal to the head line, up to and including the first End Sub line behind it (or to
    // the end of the script).
    std::vector<int> block;
    for (INT_PTR i = 0; i < interfaces.GetSize(); ++i) {
        CVXInterfaceInfo* events = interfaces[i];
        if (events == nullptr || i >= names.GetSize())
            continue;
        for (int j = 0; j < events->GetNumMethods(); ++j) {
            const CVXMethodInfo* event = events->GetMethod(j);
            if (event == nullptr)
                continue;
            int start = list.FindNoCase(HandlerHead(m_strSub, names[i], *event));
            if (start < 0)
                continue;
            block.clear();
            for (int k = start; k >= 0; k = list.Next(k)) {
                block.push_back(k);
                if (facts[static_cast<std::size_t>(k)] & EndsSub)
                    break;
            }
            if (events == pFormEvents) {
                pInfo->arrFormEventID.Add(event->GetID());
                AddBlockText(pInfo->arrFormEventCode, list, block);
            } else {
                AddBlockText(pInfo->arrCtrlEventCode, list, block);
            }
            RemoveBlock(list, block);
        }
    }

    // Other procedures: a line that begins with the Sub or Function word (in its case) opens
    // a block, an End Sub or End Function line closes it and decides where it goes. A further
    // opening line inside a block is collected with it. After a block the walk would begin
    // again at the top, but every line above the block has been walked without opening one,
    // so it goes on behind the removed lines with the same result.
    block.clear();
    int k = list.First();
    while (k >= 0) {
        const unsigned char fact = facts[static_cast<std::size_t>(k)];
        if (block.empty() && !(fact & Opens)) {
            k = list.Next(k);
            continue;
        }
        block.push_back(k);
        if (!(fact & (EndsSub | EndsFunction))) {
            k = list.Next(k);
            continue;
        }
        AddBlockText(fact & EndsSub ? pInfo->arrSubCode : pInfo->arrFunctionCode, list, block);
        k = RemoveBlock(list, block);
        block.clear();
    }

    list.Compact();
}

CString CTalvorScriptTextDisposal::SetScriptTextByCodeInfo(VB_ALL_PROGRAMME_INFO* pInfo) {
    if (pInfo == nullptr)
        return CString();
    if (pInfo->strGlobal.IsEmpty() && pInfo->arrFormEventCode.IsEmpty() &&
        pInfo->arrCtrlEventCode.IsEmpty() && pInfo->arrSubCode.IsEmpty() &&
        pInfo->arrFunctionCode.IsEmpty())
        return CString();

    const std::initializer_list<const CStringArray*> order = {
        &pInfo->arrCtrlEventCode, &pInfo->arrSubCode, &pInfo->arrFunctionCode,
        &pInfo->arrFormEventCode};
    std::size_t size = static_cast<std::size_t>(pInfo->strGlobal.GetLength()) + 2;
    for (const CStringArray* blocks : order) {
        for (const CString& block : *blocks)
            size += static_cast<std::size_t>(block.GetLength()) + 2;
    }
    std::string script;
    script.reserve(size);
    script += pInfo->strGlobal.View();
    script += "\r\n";
    for (const CStringArray* blocks : order) {
        for (const CString& block : *blocks) {
            script += block.View();
            script += "\r\n";
        }
    }
    return CString(std::move(script));
}
