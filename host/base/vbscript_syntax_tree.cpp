// Walks of the syntax tree that later features share: children in order, the procedure list.
#include "host/base/vbscript_syntax_tree.h"

namespace talvor::host::vbscript {
namespace {

void AddProcedure(const SyntaxTree& tree, NodeIndex index, std::string_view className,
                  std::vector<ProcedureInfo>& out) {
    const Node& node = tree.At(index);
    ProcedureInfo info;
    info.name = std::string(tree.Text(node));
    info.kind = static_cast<ProcedureKind>(node.detail & 0x0F);
    info.visibility = static_cast<Visibility>(node.detail >> 4);
    info.isDefault = (node.flags & NodeFlag::Default) != 0;
    info.className = std::string(className);
    info.begin = node.begin;
    info.end = node.end;
    info.node = index;
    info.nameAt = node.begin;
    for (NodeIndex child = node.firstChild; child != NoNode; child = tree.At(child).nextSibling) {
        const Node& parameter = tree.At(child);
        if (parameter.kind != NodeKind::Parameter)
            continue;
        info.parameters.push_back({std::string(tree.Text(parameter)),
                                   (parameter.flags & NodeFlag::ByVal) != 0,
                                   (parameter.flags & NodeFlag::Array) != 0});
    }
    // The name's own position, counted on from the head's start (a head may be continued).
    if (node.textLength > 0) {
        SourcePosition at = node.begin;
        for (uint32_t i = node.begin.offset; i < node.textOffset; ++i) {
            const char c = tree.source[i];
            const bool lineBreak =
                c == '\n' ||
                (c == '\r' && (i + 1 >= tree.source.size() || tree.source[i + 1] != '\n'));
            at.line += lineBreak ? 1 : 0;
            at.column = lineBreak ? 1 : at.column + 1;
        }
        at.offset = node.textOffset;
        info.nameAt = at;
    }
    out.push_back(std::move(info));
}

} // namespace

std::vector<NodeIndex> SyntaxTree::Children(NodeIndex index) const {
    std::vector<NodeIndex> children;
    for (NodeIndex child = nodes[index].firstChild; child != NoNode;
         child = nodes[child].nextSibling)
        children.push_back(child);
    return children;
}

std::vector<ProcedureInfo> SyntaxTree::Procedures() const {
    std::vector<ProcedureInfo> out;
    if (nodes.empty())
        return out;
    for (NodeIndex index = Root().firstChild; index != NoNode; index = At(index).nextSibling) {
        const Node& node = At(index);
        if (node.kind == NodeKind::Procedure) {
            AddProcedure(*this, index, {}, out);
        } else if (node.kind == NodeKind::ClassDeclaration && node.firstChild != NoNode) {
            const Node& body = At(node.firstChild);
            for (NodeIndex member = body.firstChild; member != NoNode;
                 member = At(member).nextSibling) {
                if (At(member).kind == NodeKind::Procedure)
                    AddProcedure(*this, member, Text(node), out);
            }
        }
    }
    return out;
}

std::string SExpression(const SyntaxTree& tree, NodeIndex index) {
    if (index == NoNode)
        return "?";
    const Node& node = tree.At(index);
    const std::string text(tree.Text(node));
    std::string out;
    auto children = [&] {
        for (NodeIndex child = node.firstChild; child != NoNode; child = tree.At(child).nextSibling)
            out += " " + SExpression(tree, child);
    };
    switch (node.kind) {
    case NodeKind::Identifier:
    case NodeKind::IntegerLiteral:
    case NodeKind::FloatLiteral:
    case NodeKind::StringLiteral:
    case NodeKind::DateLiteral:
    case NodeKind::TrueLiteral:
    case NodeKind::FalseLiteral:
    case NodeKind::NothingLiteral:
    case NodeKind::EmptyLiteral:
    case NodeKind::NullLiteral:
        return text;
    case NodeKind::Me:
        return "Me";
    case NodeKind::MissingArgument:
        return "_";
    case NodeKind::WithMember:
        return "." + text;
    case NodeKind::New:
        return "(new " + text + ")";
    case NodeKind::MemberAccess:
        out = "(.";
        children();
        return out + " " + text + ")";
    case NodeKind::CallOrIndex:
        out = "(call";
        children();
        return out + ")";
    case NodeKind::Parenthesized:
        out = "(paren";
        children();
        return out + ")";
    case NodeKind::Unary:
    case NodeKind::Binary:
        out = std::string("(") + OperatorName(node.op);
        if (node.op == Operator::Negate)
            out = "(neg";
        children();
        return out + ")";
    default:
        break;
    }
    out = std::string("(") + NodeKindName(node.kind);
    if (!text.empty())
        out += " " + text;
    children();
    return out + ")";
}

const char* NodeKindName(NodeKind kind) {
    static const char* const Names[] = {"Script",
                                        "Block",
                                        "OptionExplicit",
                                        "ClassDeclaration",
                                        "Procedure",
                                        "Parameter",
                                        "VariableDeclaration",
                                        "Declarator",
                                        "ConstDeclaration",
                                        "ConstDeclarator",
                                        "ReDim",
                                        "Erase",
                                        "Assignment",
                                        "SetAssignment",
                                        "CallStatement",
                                        "If",
                                        "ElseIf",
                                        "Else",
                                        "SelectCase",
                                        "Case",
                                        "CaseElse",
                                        "DoLoop",
                                        "WhileLoop",
                                        "ForLoop",
                                        "ForEachLoop",
                                        "With",
                                        "Exit",
                                        "OnErrorResumeNext",
                                        "OnErrorGoToZero",
                                        "Randomize",
                                        "Stop",
                                        "Identifier",
                                        "WithMember",
                                        "MemberAccess",
                                        "CallOrIndex",
                                        "MissingArgument",
                                        "IntegerLiteral",
                                        "FloatLiteral",
                                        "StringLiteral",
                                        "DateLiteral",
                                        "TrueLiteral",
                                        "FalseLiteral",
                                        "NothingLiteral",
                                        "EmptyLiteral",
                                        "NullLiteral",
                                        "Me",
                                        "New",
                                        "Parenthesized",
                                        "Unary",
                                        "Binary"};
    const auto index = static_cast<std::size_t>(kind);
    return index < std::size(Names) ? Names[index] : "?";
}

const char* OperatorName(Operator op) {
    static const char* const Names[] = {
        "",   "^", "-", "+",  "*",  "/",  "\\",  "Mod", "+",  "-",   "&",   "=",
        "<>", "<", ">", "<=", ">=", "Is", "Not", "And", "Or", "Xor", "Eqv", "Imp"};
    const auto index = static_cast<std::size_t>(op);
    return index < std::size(Names) ? Names[index] : "?";
}

const char* ProcedureKindName(ProcedureKind kind) {
    switch (kind) {
    case ProcedureKind::Sub:
        return "Sub";
    case ProcedureKind::Function:
        return "Function";
    case ProcedureKind::PropertyGet:
        return "Property Get";
    case ProcedureKind::PropertyLet:
        return "Property Let";
    case ProcedureKind::PropertySet:
        return "Property Set";
    }
    return "?";
}

} // namespace talvor::host::vbscript
