// The syntax tree of a VBScript source text: one flat array of nodes linked first child / next
// sibling, so a parse makes no allocation per node and the tree copies and moves as plain data.
// Names and literals are kept as byte ranges of the source the tree holds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace talvor::host::vbscript {

using NodeIndex = uint32_t;
constexpr NodeIndex NoNode = 0xFFFFFFFFu;

// Lines and columns count from 1; a column counts bytes of its line (a tab is one byte).
struct SourcePosition {
    uint32_t line = 0;
    uint32_t column = 0;
    uint32_t offset = 0; // byte offset in the source
};

// Children of each kind, in order:
//   Script, Block           statements (a Block begins right behind the head that opens it)
//   ClassDeclaration        text = name; Block of members
//   Procedure               text = name; Parameter..., Block
//   Parameter               text = name
//   VariableDeclaration     Declarator... (Dim, Private or Public: see Visibility)
//   Declarator              text = name; bound expressions of an array
//   ConstDeclaration        ConstDeclarator...
//   ConstDeclarator         text = name; the value
//   ReDim                   Declarator... (bounds as expressions)
//   Erase                   Identifier...
//   Assignment, SetAssignment  target, value
//   CallStatement           the called expression: Identifier, MemberAccess, WithMember or
//                           CallOrIndex (arguments without parentheses become a CallOrIndex)
//   If                      condition, Block (then), ElseIf..., Else?
//   ElseIf                  condition, Block
//   Else, CaseElse          Block
//   SelectCase              expression, Case..., CaseElse?
//   Case                    expressions..., Block
//   DoLoop                  condition?, Block (see LoopCondition)
//   WhileLoop               condition, Block
//   ForLoop                 Identifier, from, to, step?, Block
//   ForEachLoop             Identifier, collection, Block
//   With                    object, Block
//   Randomize               seed?
//   Identifier              text = name
//   WithMember              text = member name (".name" inside With)
//   MemberAccess            text = member name; the object
//   CallOrIndex             callee, arguments (MissingArgument for an empty one)
//   New                     text = class name
//   Parenthesized           the inner expression
//   Unary                   operand (see op)
//   Binary                  left, right (see op)
//   literals                text = the literal as written
enum class NodeKind : uint8_t {
    Script,
    Block,
    OptionExplicit,
    ClassDeclaration,
    Procedure,
    Parameter,
    VariableDeclaration,
    Declarator,
    ConstDeclaration,
    ConstDeclarator,
    ReDim,
    Erase,
    Assignment,
    SetAssignment,
    CallStatement,
    If,
    ElseIf,
    Else,
    SelectCase,
    Case,
    CaseElse,
    DoLoop,
    WhileLoop,
    ForLoop,
    ForEachLoop,
    With,
    Exit,
    OnErrorResumeNext,
    OnErrorGoToZero,
    Randomize,
    Stop,
    // Expressions.
    Identifier,
    WithMember,
    MemberAccess,
    CallOrIndex,
    MissingArgument,
    IntegerLiteral,
    FloatLiteral,
    StringLiteral,
    DateLiteral,
    TrueLiteral,
    FalseLiteral,
    NothingLiteral,
    EmptyLiteral,
    NullLiteral,
    Me,
    New,
    Parenthesized,
    Unary,
    Binary,
};

enum class Operator : uint8_t {
    None,
    Exponent,
    Negate,
    UnaryPlus,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Add,
    Subtract,
    Concatenate,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
    Is,
    Not,
    And,
    Or,
    Xor,
    Eqv,
    Imp,
};

enum class ProcedureKind : uint8_t { Sub, Function, PropertyGet, PropertyLet, PropertySet };
enum class Visibility : uint8_t { Unspecified, Dim, Private, Public };
enum class ExitKind : uint8_t { Do, For, Function, Sub, Property };
enum class LoopCondition : uint8_t { None, WhileAtTop, UntilAtTop, WhileAtBottom, UntilAtBottom };

// Bits of Node::flags.
namespace NodeFlag {
constexpr uint8_t ByVal = 1;         // Parameter
constexpr uint8_t ByRef = 2;         // Parameter, written out
constexpr uint8_t Array = 4;         // Parameter or Declarator with "()"
constexpr uint8_t Preserve = 8;      // ReDim Preserve
constexpr uint8_t Default = 16;      // Public Default procedure
constexpr uint8_t SingleLine = 32;   // If written on one line
constexpr uint8_t ExplicitCall = 64; // CallStatement with the Call keyword
} // namespace NodeFlag

struct Node {
    NodeKind kind = NodeKind::Script;
    uint8_t flags = 0;
    Operator op = Operator::None;
    // ProcedureKind of a Procedure, ExitKind of an Exit, LoopCondition of a DoLoop, Visibility
    // of a Procedure, ClassDeclaration, VariableDeclaration or ConstDeclaration (in the high
    // nibble for a Procedure, whose low nibble holds the kind).
    uint8_t detail = 0;
    SourcePosition begin; // first byte of the first token
    SourcePosition end;   // just behind the last token
    uint32_t textOffset = 0;
    uint32_t textLength = 0;
    NodeIndex firstChild = NoNode;
    NodeIndex nextSibling = NoNode;
    NodeIndex lastChild = NoNode;
};

struct SyntaxError {
    SourcePosition position;
    std::string message; // lower-case start, no period: "expected 'Then' after the condition"
    uint32_t length = 0; // bytes from position that the error covers; 0 at a line end
};

struct ParameterInfo {
    std::string name;
    bool byVal = false; // ByRef unless written ByVal
    bool isArray = false;
};

struct ProcedureInfo {
    std::string name;
    ProcedureKind kind = ProcedureKind::Sub;
    Visibility visibility = Visibility::Unspecified;
    bool isDefault = false;
    std::string className; // empty outside a class
    std::vector<ParameterInfo> parameters;
    SourcePosition begin;  // the head's first token (Public/Private when written)
    SourcePosition end;    // behind "End Sub" / "End Function" / "End Property"
    SourcePosition nameAt; // the name in the head
    NodeIndex node = NoNode;
};

struct CommentRange {
    SourcePosition begin; // the "'" or "Rem"
    SourcePosition end;   // end of its line
};

class SyntaxTree {
public:
    std::string source;
    std::vector<Node> nodes; // nodes[0] is the Script
    std::vector<SyntaxError> errors;
    std::vector<CommentRange> comments;

    const Node& Root() const { return nodes.front(); }
    const Node& At(NodeIndex index) const { return nodes[index]; }
    std::string_view Text(const Node& node) const {
        return std::string_view(source).substr(node.textOffset, node.textLength);
    }
    // The children of a node as indices, in order.
    std::vector<NodeIndex> Children(NodeIndex index) const;
    // Every Sub, Function and Property of the script and of its classes, in source order.
    std::vector<ProcedureInfo> Procedures() const;
    bool HasErrors() const { return !errors.empty(); }
};

// A node and its children as one line: expressions as "(+ a (* b 2))", "(call f x _)",
// "(. obj Name)", ".Name"; statements as "(Kind text children...)". For tests and dumps.
std::string SExpression(const SyntaxTree& tree, NodeIndex index);

const char* NodeKindName(NodeKind kind);
const char* OperatorName(Operator op);
const char* ProcedureKindName(ProcedureKind kind); // "Sub", "Function", "Property Get", ...

} // namespace talvor::host::vbscript
