// Edits of a statement list behind the code tree: new, modify, delete, insert, add Else and
// the four moves. Blocks stay well formed: an opening statement comes with its closing lines,
// partner lines follow a changed or deleted line, and Exit statements are reworded for the
// loop they come to stand in.
#include "engine/script_text_disposal.h"

namespace {

using Engine = CTalvorScriptTextDisposal;

bool IsFamilyOfIf(ENUM_FLOWLOOP flow) {
    return flow >= FLOW_IF && flow <= FLOW_END_IF;
}
bool IsFamilyOfLoop(ENUM_FLOWLOOP flow) {
    return flow >= FLOW_FOR && flow <= FLOW_LOOP_WHILE;
}
bool IsSimple(ENUM_FLOWLOOP flow) {
    return flow == FLOW_NONE || flow == FLOW_EXIT;
}

// One line of the list and its block. role is the class the operations act on: a line of
// the If or loop family whose partner lines are not where a whole block needs them (a
// one-line If, a stray Next) plays the part of a plain statement and stands alone.
struct Statement {
    ENUM_FLOWLOOP role = FLOW_NONE;
    int start = -1;
    int middle = -1;
    int end = -1;
};

Statement Describe(Engine& engine, CStringArray& lines, int index) {
    Statement line;
    line.role = engine.CheckCodeFlow(lines[index]);
    int at = index;
    engine.GetFlowPosByKeyWord(lines, at, line.start, line.middle, line.end);
    if (!IsFamilyOfIf(line.role) && !IsFamilyOfLoop(line.role))
        return line;

    bool whole = line.start >= 0 && line.end > line.start && line.end < lines.GetSize();
    switch (line.role) {
    case FLOW_IF:
    case FLOW_FOR:
    case FLOW_DO_WHILE:
    case FLOW_DO:
        whole = whole && index == line.start;
        break;
    case FLOW_ELSE:
        whole = whole && index == line.middle;
        break;
    default: // the closing lines
        whole = whole && index == line.end;
        break;
    }
    if (whole && index != line.start) {
        // The block seen from its opening line must be the same block: a walk that found no
        // partner gives 0, which may hold an unrelated opening line.
        int from = line.start, start = -1, middle = -1, end = -1;
        engine.GetFlowPosByKeyWord(lines, from, start, middle, end);
        whole = start == line.start && middle == line.middle && end == line.end;
    }
    if (!whole)
        line = Statement{FLOW_NONE, index, -1, -1};
    return line;
}

void RepairExit(Engine& engine, CStringArray& lines, int i) {
    if (i >= 0 && i < lines.GetSize() && engine.CheckCodeFlow(lines[i]) == FLOW_EXIT)
        lines[i] = engine.GetExitStr(lines, i);
}

void Swap(CStringArray& lines, int a, int b) {
    CString kept = lines[a];
    lines[a] = lines[b];
    lines[b] = kept;
}

void InsertAll(CStringArray& lines, int at, const CStringArray& inserted) {
    for (INT_PTR k = 0; k < inserted.GetSize(); ++k)
        lines.InsertAt(at + k, inserted[k]);
}

int LastIndex(const CStringArray& lines) {
    return static_cast<int>(lines.GetSize()) - 1;
}

int Modify(Engine& engine, CStringArray& lines, const CString& code, const Statement& cur,
           int index) {
    CStringArray skeleton;
    const ENUM_FLOWLOOP n = engine.GetArryByFlowType(skeleton, code);
    const CString exitText = engine.GetExitStr(lines, cur.start);
    const int s = cur.start, m = cur.middle, e = cur.end;
    // The one line that a plain statement or an Exit statement gives.
    CString replacement = n == FLOW_EXIT || skeleton.IsEmpty() ? exitText : skeleton[0];

    if (IsSimple(cur.role)) {
        if (n == FLOW_NONE || n == FLOW_EXIT) {
            lines[s] = replacement;
            return s;
        }
        // A statement with lines of its own replaces the line; a text that only closes a
        // block has none, and the line simply goes.
        const bool wasLast = index == LastIndex(lines);
        lines.RemoveAt(index);
        if (wasLast) {
            for (const CString& line : skeleton)
                lines.Add(line);
            return LastIndex(lines);
        }
        InsertAll(lines, index, skeleton);
        return index;
    }

    if (IsFamilyOfIf(cur.role)) {
        if (n == FLOW_IF) {
            lines[s] = skeleton[0];
            return s;
        }
        if (n == FLOW_NONE || n == FLOW_EXIT) {
            // The block dissolves into one statement; removal goes from the highest position
            // down so that the others stay valid.
            if (cur.role == FLOW_IF) {
                lines[s] = replacement;
                lines.RemoveAt(e);
                if (m >= 0)
                    lines.RemoveAt(m);
                return s;
            }
            if (cur.role == FLOW_ELSE) {
                lines[m] = replacement;
                lines.RemoveAt(e);
                lines.RemoveAt(s);
                return m - 1;
            }
            lines[e] = replacement;
            if (m >= 0)
                lines.RemoveAt(m);
            lines.RemoveAt(s);
            return m >= 0 ? e - 2 : e - 1;
        }
        // A code text that only closes a block has no head and end to give: nothing changes.
        if (skeleton.GetSize() < 2)
            return -1;
        lines[s] = skeleton[0];
        lines[e] = skeleton[1];
        if (m >= 0)
            lines.RemoveAt(m);
        return s;
    }

    // The loop family.
    if (n == FLOW_NONE || n == FLOW_EXIT) {
        if (index == s) {
            lines[s] = replacement;
            lines.RemoveAt(e);
            return s;
        }
        lines[e] = replacement;
        lines.RemoveAt(s);
        return e - 1;
    }
    if (skeleton.GetSize() < 2)
        return -1;
    lines[s] = skeleton[0];
    lines[e] = skeleton[1];
    if (n == FLOW_IF) {
        if (e == LastIndex(lines))
            lines.Add(skeleton[2]);
        else
            lines.InsertAt(e + 1, skeleton[2]);
    }
    return s;
}

int Delete(Engine& engine, CStringArray& lines, const Statement& cur, int index) {
    int removedAt = index;
    if (IsSimple(cur.role)) {
        lines.RemoveAt(index);
    } else {
        // The body stays and comes one level up; its Exit statements now serve the block
        // around it.
        lines.RemoveAt(cur.end);
        if (cur.middle >= 0)
            lines.RemoveAt(cur.middle);
        lines.RemoveAt(cur.start);
        removedAt = cur.start;
        const int lastOfBody = cur.end - 2 - (cur.middle >= 0 ? 1 : 0);
        for (int i = cur.start; i <= lastOfBody; ++i)
            RepairExit(engine, lines, i);
    }
    return removedAt < lines.GetSize() ? removedAt : LastIndex(lines);
}

int MoveUp(Engine& engine, CStringArray& lines, const Statement& cur, int index) {
    if (index == 0)
        return 0;
    const Statement prev = Describe(engine, lines, index - 1);
    const ENUM_FLOWLOOP t = cur.role, pt = prev.role;
    if (t == FLOW_NONE || (t != FLOW_EXIT && pt == FLOW_NONE)) {
        Swap(lines, index, index - 1);
        return index - 1;
    }
    if (t == FLOW_EXIT) {
        Swap(lines, index, index - 1);
        if (!IsSimple(pt))
            lines[index - 1] = engine.GetExitStr(lines, index - 1);
        return index - 1;
    }
    if (pt == FLOW_EXIT) {
        Swap(lines, index, index - 1);
        lines[index] = engine.GetExitStr(lines, index);
        return index - 1;
    }

    // Both lines are flow lines.
    if ((index == cur.end && (index - 1 == cur.start || index - 1 == cur.middle)) ||
        (index == cur.middle && index - 1 == cur.start))
        return index;
    const int start2 = prev.start, end2 = prev.end;
    if (start2 < 0 || end2 < 0)
        return -1;
    if (end2 < index) {
        // The line above closes a block: this one line jumps over that whole block.
        CString moved = lines[index];
        lines.RemoveAt(index);
        lines.InsertAt(start2, moved);
        return start2;
    }
    if (end2 > index && index == cur.start) {
        // The line above opens an enclosing block, which this block leaves: that line goes
        // behind this block. Where the line above is the Else of an enclosing If, the Else
        // goes behind this block instead of the If line, so the block passes from the Else
        // part into the Then part and the If stays well formed.
        const int taken = index - 1 == prev.middle ? index - 1 : start2;
        CString moved = lines[taken];
        if (cur.end == LastIndex(lines))
            lines.Add(moved);
        else
            lines.InsertAt(cur.end + 1, moved);
        lines.RemoveAt(taken);
        return taken;
    }
    return start2;
}

int MoveDown(Engine& engine, CStringArray& lines, const Statement& cur, int index) {
    if (index == LastIndex(lines))
        return index;
    const Statement next = Describe(engine, lines, index + 1);
    const ENUM_FLOWLOOP t = cur.role, nt = next.role;
    if (t == FLOW_NONE || (t != FLOW_EXIT && nt == FLOW_NONE)) {
        Swap(lines, index, index + 1);
        return index + 1;
    }
    if (t == FLOW_EXIT) {
        Swap(lines, index, index + 1);
        if (!IsSimple(nt))
            lines[index + 1] = engine.GetExitStr(lines, index + 1);
        return index + 1;
    }
    if (nt == FLOW_EXIT) {
        Swap(lines, index, index + 1);
        lines[index] = engine.GetExitStr(lines, index);
        return index + 1;
    }

    if ((index == cur.start && (index + 1 == cur.middle || index + 1 == cur.end)) ||
        (index == cur.middle && index + 1 == cur.end))
        return index;
    const int start2 = next.start, end2 = next.end;
    if (start2 < 0 || end2 < 0)
        return index;
    if (index < start2) {
        // The next line opens a block: this one line goes behind that whole block.
        CString moved = lines[index];
        lines.RemoveAt(index);
        if (end2 == lines.GetSize())
            lines.Add(moved);
        else
            lines.InsertAt(end2, moved);
        return end2;
    }
    if (index > start2 && index == cur.end) {
        // The next line belongs to an enclosing block; it goes in front of this block, which
        // so leaves the enclosing block (or, for an Else, passes into the Else part).
        CString moved = lines[index + 1];
        lines.RemoveAt(index + 1);
        lines.InsertAt(cur.start, moved);
        return index + 1;
    }
    return -1;
}

// The lines of a whole block, start to end, taken out of the list.
CStringArray TakeBlock(CStringArray& lines, const Statement& cur) {
    CStringArray block;
    for (int i = cur.start; i <= cur.end; ++i)
        block.Add(lines[i]);
    lines.RemoveAt(cur.start, cur.end - cur.start + 1);
    return block;
}

int MoveTop(Engine& engine, CStringArray& lines, const Statement& cur, int index) {
    if (index == 0)
        return 0;
    if (IsSimple(cur.role)) {
        CString moved = lines[index];
        lines.RemoveAt(index);
        lines.InsertAt(0, moved);
        if (cur.role == FLOW_EXIT)
            lines[0] = engine.GetExitStr(lines, 0);
    } else {
        InsertAll(lines, 0, TakeBlock(lines, cur));
    }
    return 0;
}

int MoveBottom(Engine& engine, CStringArray& lines, const Statement& cur, int index) {
    if (index == LastIndex(lines))
        return index;
    if (IsSimple(cur.role)) {
        CString moved = lines[index];
        lines.RemoveAt(index);
        lines.Add(moved);
        if (cur.role == FLOW_EXIT)
            lines[LastIndex(lines)] = engine.GetExitStr(lines, LastIndex(lines));
    } else {
        for (const CString& line : TakeBlock(lines, cur))
            lines.Add(line);
    }
    return LastIndex(lines);
}

} // namespace

int CTalvorScriptTextDisposal::CodeOperate(CStringArray& lines, CString code, ENUM_CODE_OPERATE op,
                                           int index) {
    if (index < 0 || (!lines.IsEmpty() && index >= lines.GetSize()))
        return -1;
    Statement cur;
    if (!lines.IsEmpty())
        cur = Describe(*this, lines, index);
    else
        cur = Statement{FLOW_NONE, -1, -1, -1};
    if (op != CODE_OPERATE_NEW && cur.start < 0 && cur.middle < 0 && cur.end < 0)
        return -1;
    if (op < CODE_OPERATE_NEW || op > CODE_OPERATE_MOVE_BOTTOM)
        return -1;

    CStringArray skeleton;
    switch (op) {
    case CODE_OPERATE_NEW:
        GetArryByFlowType(skeleton, code);
        CopyStrArry(lines, skeleton);
        for (int i = 0; i < lines.GetSize(); ++i)
            RepairExit(*this, lines, i);
        return lines.IsEmpty() ? -1 : 0;
    case CODE_OPERATE_MODIFY:
        return Modify(*this, lines, code, cur, index);
    case CODE_OPERATE_DELETE:
        return Delete(*this, lines, cur, index);
    case CODE_OPERATE_INSERT_BEFORE: {
        GetArryByFlowType(skeleton, code);
        InsertAll(lines, index, skeleton);
        for (int i = index; i < index + skeleton.GetSize(); ++i)
            RepairExit(*this, lines, i);
        return index;
    }
    case CODE_OPERATE_INSERT_AFTER: {
        GetArryByFlowType(skeleton, code);
        const bool wasLast = index == LastIndex(lines);
        const int first = index + 1;
        InsertAll(lines, first, skeleton);
        if (wasLast) {
            // Appended behind the last line: repaired from the last inserted line up. With
            // nothing to insert there is no line to select.
            for (int i = LastIndex(lines); i >= first; --i)
                RepairExit(*this, lines, i);
            return skeleton.IsEmpty() ? -1 : first;
        }
        for (int i = first; i < first + skeleton.GetSize(); ++i)
            RepairExit(*this, lines, i);
        return first;
    }
    case CODE_OPERATE_ADD_ELSE: {
        // An Else needs a block with a closing line and no Else yet.
        if (cur.middle >= 0 || cur.end < 0)
            return -1;
        GetArryByFlowType(skeleton, code);
        lines.InsertAt(cur.end, m_strElse);
        InsertAll(lines, cur.end + 1, skeleton);
        for (int i = cur.end + 1; i <= cur.end + skeleton.GetSize(); ++i)
            RepairExit(*this, lines, i);
        return cur.end;
    }
    case CODE_OPERATE_MOVE_UP:
        return MoveUp(*this, lines, cur, index);
    case CODE_OPERATE_MOVE_DOWN:
        return MoveDown(*this, lines, cur, index);
    case CODE_OPERATE_MOVE_TOP:
        return MoveTop(*this, lines, cur, index);
    case CODE_OPERATE_MOVE_BOTTOM:
        return MoveBottom(*this, lines, cur, index);
    }
    return -1;
}
