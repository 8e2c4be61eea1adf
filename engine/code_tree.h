// The code tree of a statement body in one pass: for every line its flow class, node text,
// nesting, block positions and, on an Exit line, the Exit statement that leaves the block it
// stands in. Each line is classified once; heads are paired with their ends on stacks, so the
// whole tree costs time in proportion to the body, where asking GetFlowPosByKeyWord and
// GetExitStr line by line walks the body again for each line.
#pragma once

#include "engine/script_text_disposal.h"

#include <vector>

namespace talvor::engine {

struct CodeTreeLine {
    ENUM_FLOWLOOP flow = FLOW_NONE; // CheckCodeFlow of the line
    CString title;                  // GetTreeTitleByCode of the line
    // Nesting: the lines between a block's start and end are one level deeper (its Else line
    // is not); in a Select block the lines behind each Case are one level deeper again.
    int depth = 0;
    // What GetFlowPosByKeyWord gives with this line's index as nIndex.
    int start = -1;
    int middle = -1;
    int end = -1;
    // On an Exit line, what GetExitStr gives for it ("Exit For", "Exit Do", "Exit Sub");
    // empty on every other line.
    CString exitWord;
};

// The tree of lines, one entry per line, with exactly the answers of the per-line operations.
std::vector<CodeTreeLine> BuildCodeTree(CTalvorScriptTextDisposal& engine,
                                        const CStringArray& lines);

} // namespace talvor::engine
