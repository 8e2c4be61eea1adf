// One-pass code tree. The walks of GetFlowPosByKeyWord count heads and ends from a line until
// the counts level; that is bracket matching, so a stack per pair of classes gives every
// line's partner at once: a head is pushed, an end takes the head on top (an end with no head
// open pairs with nothing), and the classes of other pairs are left out, as the walks leave
// them uncounted.
#include "engine/code_tree.h"

#include <algorithm>

namespace talvor::engine {
namespace {

struct Positions {
    int start = -1, middle = -1, end = -1;
};

// Partners of two classes: close[head] and open[end], -1 where there is none.
void PairUp(const std::vector<ENUM_FLOWLOOP>& flows, ENUM_FLOWLOOP head, ENUM_FLOWLOOP end,
            std::vector<int>& close, std::vector<int>& open) {
    std::vector<int> stack;
    for (int k = 0; k < static_cast<int>(flows.size()); ++k) {
        if (flows[k] == head) {
            stack.push_back(k);
        } else if (flows[k] == end && !stack.empty()) {
            close[stack.back()] = k;
            open[k] = stack.back();
            stack.pop_back();
        }
    }
}

bool IsLoopHead(ENUM_FLOWLOOP flow) {
    return flow == FLOW_FOR || flow == FLOW_DO_WHILE || flow == FLOW_DO;
}

class TreeBuilder {
public:
    explicit TreeBuilder(std::vector<ENUM_FLOWLOOP> flows)
        : m_flows(std::move(flows)), m_size(static_cast<int>(m_flows.size())), m_endIf(m_size, -1),
          m_else(m_size, -1), m_ifOf(m_size, -1), m_loopEnd(m_size, -1), m_loopHead(m_size, -1) {
        PairUp(m_flows, FLOW_IF, FLOW_END_IF, m_endIf, m_ifOf);
        PairUp(m_flows, FLOW_IF, FLOW_ELSE, m_else, m_ifOf); // Else and End If lines differ
        PairUp(m_flows, FLOW_FOR, FLOW_NEXT, m_loopEnd, m_loopHead);
        PairUp(m_flows, FLOW_DO_WHILE, FLOW_LOOP, m_loopEnd, m_loopHead);
        PairUp(m_flows, FLOW_DO, FLOW_LOOP_WHILE, m_loopEnd, m_loopHead);
    }

    // The answer of GetFlowPosByKeyWord for line i.
    Positions At(int i) const {
        const ENUM_FLOWLOOP flow = m_flows[i];
        if (flow == FLOW_NONE || flow == FLOW_EXIT)
            return {i, -1, -1};
        if (flow >= FLOW_SELECT)
            return {};
        if (flow == FLOW_IF) {
            // The walk stops at the End If, so an Else behind it is no middle; a walk that
            // finds no End If gives 0 for the end.
            const int end = m_endIf[i];
            int middle = m_else[i];
            if (end >= 0 && middle > end)
                middle = -1;
            return {i, middle, end >= 0 ? end : 0};
        }
        if (flow == FLOW_ELSE || flow == FLOW_END_IF) {
            if (m_ifOf[i] >= 0)
                return At(m_ifOf[i]);
            // Without an If: the answer of line 0, or line 0 as a plain statement where it
            // is itself an Else or End If.
            if (i == 0 || m_flows[0] == FLOW_ELSE || m_flows[0] == FLOW_END_IF)
                return {0, -1, -1};
            return At(0);
        }
        if (IsLoopHead(flow))
            return {i, -1, m_loopEnd[i] >= 0 ? m_loopEnd[i] : 0};
        return {m_loopHead[i] >= 0 ? m_loopHead[i] : 0, -1, i};
    }

    int Size() const { return m_size; }
    ENUM_FLOWLOOP Flow(int i) const { return m_flows[i]; }

private:
    std::vector<ENUM_FLOWLOOP> m_flows;
    int m_size;
    std::vector<int> m_endIf, m_else, m_ifOf, m_loopEnd, m_loopHead;
};

// Nesting from the block positions and the Select blocks, with a difference array: every
// block adds one to a range of lines at a constant cost.
void FillDepths(const TreeBuilder& builder, std::vector<CodeTreeLine>& tree) {
    const int size = builder.Size();
    std::vector<int> change(static_cast<std::size_t>(size) + 1, 0);
    auto deepen = [&](int from, int to) { // lines from .. to - 1
        if (from < to) {
            ++change[from];
            --change[to];
        }
    };
    for (int i = 0; i < size; ++i) {
        const ENUM_FLOWLOOP flow = builder.Flow(i);
        if (flow != FLOW_IF && !IsLoopHead(flow))
            continue;
        const CodeTreeLine& head = tree[i];
        if (head.end <= head.start)
            continue;
        deepen(head.start + 1, head.end);
        if (head.middle > head.start && head.middle < head.end) {
            --change[head.middle]; // the Else line stays at the block's level
            ++change[head.middle + 1];
        }
    }
    // Select blocks: a stack of the open ones with the Case marks each owns.
    struct OpenSelect {
        int line;
        std::vector<int> cases;
        int caseElse = -1;
    };
    std::vector<OpenSelect> open;
    for (int i = 0; i < size; ++i) {
        const ENUM_FLOWLOOP flow = builder.Flow(i);
        if (flow == FLOW_SELECT) {
            open.push_back({i, {}, -1});
        } else if (flow == FLOW_CASE && !open.empty()) {
            open.back().cases.push_back(i);
        } else if (flow == FLOW_CASE_ELSE && !open.empty()) {
            open.back().caseElse = i;
        } else if (flow == FLOW_END_SELECT && !open.empty()) {
            OpenSelect select = std::move(open.back());
            open.pop_back();
            deepen(select.line + 1, i);
            std::vector<int>& marks = select.cases;
            if (select.caseElse >= 0)
                marks.push_back(select.caseElse);
            std::sort(marks.begin(), marks.end());
            marks.push_back(i);
            for (std::size_t m = 0; m + 1 < marks.size(); ++m)
                deepen(marks[m] + 1, marks[m + 1]);
        }
    }
    int depth = 0;
    for (int i = 0; i < size; ++i) {
        depth += change[i];
        tree[i].depth = depth;
    }
}

// The Exit word of every Exit line: the nearest head above it whose block still runs past
// it decides. Heads wait on a stack; one whose block has ended by a line has ended for every
// later line too, so it leaves the stack for good.
void FillExitWords(CTalvorScriptTextDisposal& engine, const TreeBuilder& builder,
                   std::vector<CodeTreeLine>& tree) {
    const CString procedureExit = engine.m_strExit + " " + engine.m_strExitSub;
    const CString forExit = engine.m_strExit + " " + engine.m_strExitFor;
    const CString doExit = engine.m_strExit + " " + engine.m_strExitDo;
    std::vector<int> heads;
    auto reach = [&](int k) { return std::max(tree[k].middle, tree[k].end); };
    for (int i = 0; i < builder.Size(); ++i) {
        const ENUM_FLOWLOOP flow = builder.Flow(i);
        if (flow == FLOW_EXIT) {
            while (!heads.empty() && reach(heads.back()) <= i)
                heads.pop_back();
            if (i == 0 || heads.empty())
                tree[i].exitWord = procedureExit;
            else if (builder.Flow(heads.back()) == FLOW_FOR)
                tree[i].exitWord = forExit;
            else if (builder.Flow(heads.back()) == FLOW_IF)
                tree[i].exitWord = procedureExit;
            else
                tree[i].exitWord = doExit;
        }
        if (flow == FLOW_IF || IsLoopHead(flow))
            heads.push_back(i);
    }
}

} // namespace

std::vector<CodeTreeLine> BuildCodeTree(CTalvorScriptTextDisposal& engine,
                                        const CStringArray& lines) {
    const int size = static_cast<int>(lines.GetSize());
    std::vector<ENUM_FLOWLOOP> flows(static_cast<std::size_t>(size));
    std::vector<CodeTreeLine> tree(static_cast<std::size_t>(size));
    for (int i = 0; i < size; ++i) {
        flows[i] = engine.CheckCodeFlow(lines[i]);
        tree[i].flow = flows[i];
        tree[i].title = engine.GetTreeTitleByCode(lines[i]);
    }
    const TreeBuilder builder(std::move(flows));
    for (int i = 0; i < size; ++i) {
        const Positions at = builder.At(i);
        tree[i].start = at.start;
        tree[i].middle = at.middle;
        tree[i].end = at.end;
    }
    FillDepths(builder, tree);
    FillExitWords(engine, builder, tree);
    return tree;
}

} // namespace talvor::engine
