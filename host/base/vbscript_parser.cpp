// Recursive descent over the token array. Blocks know which closing words the constructs
// around them wait for, so a closing word that fits no open construct is reported where it
// stands, and one that fits an outer construct ends the inner one with "not closed" there.
#include "host/base/vbscript_parser.h"

#include "host/base/vbscript_lexer.h"

#include <algorithm>
#include <string>
#include <utility>

namespace talvor::host::vbscript {
namespace {

// The words that end a block; a block stops in front of them.
enum class Closer : uint8_t {
    None,
    EndIf,
    EndSub,
    EndFunction,
    EndProperty,
    EndClass,
    EndSelect,
    EndWith,
    EndOther, // "End" with a word behind it that closes nothing
    Else,
    ElseIf,
    Case,
    Loop,
    Next,
    Wend,
};

const char* CloserText(Closer closer) {
    switch (closer) {
    case Closer::EndIf:
        return "End If";
    case Closer::EndSub:
        return "End Sub";
    case Closer::EndFunction:
        return "End Function";
    case Closer::EndProperty:
        return "End Property";
    case Closer::EndClass:
        return "End Class";
    case Closer::EndSelect:
        return "End Select";
    case Closer::EndWith:
        return "End With";
    case Closer::EndOther:
        return "End";
    case Closer::Else:
        return "Else";
    case Closer::ElseIf:
        return "ElseIf";
    case Closer::Case:
        return "Case";
    case Closer::Loop:
        return "Loop";
    case Closer::Next:
        return "Next";
    case Closer::Wend:
        return "Wend";
    case Closer::None:
        break;
    }
    return "";
}

enum class Construct : uint8_t {
    Script,
    If,
    Select,
    Do,
    While,
    For,
    With,
    Sub,
    Function,
    Property,
    Class
};

const char* ConstructText(Construct construct) {
    switch (construct) {
    case Construct::Script:
        return "script";
    case Construct::If:
        return "If";
    case Construct::Select:
        return "Select Case";
    case Construct::Do:
        return "Do";
    case Construct::While:
        return "While";
    case Construct::For:
        return "For";
    case Construct::With:
        return "With";
    case Construct::Sub:
        return "Sub";
    case Construct::Function:
        return "Function";
    case Construct::Property:
        return "Property";
    case Construct::Class:
        return "Class";
    }
    return "";
}

// The closer that ends a construct for good.
Closer FinalCloser(Construct construct) {
    switch (construct) {
    case Construct::If:
        return Closer::EndIf;
    case Construct::Select:
        return Closer::EndSelect;
    case Construct::Do:
        return Closer::Loop;
    case Construct::While:
        return Closer::Wend;
    case Construct::For:
        return Closer::Next;
    case Construct::With:
        return Closer::EndWith;
    case Construct::Sub:
        return Closer::EndSub;
    case Construct::Function:
        return Closer::EndFunction;
    case Construct::Property:
        return Closer::EndProperty;
    case Construct::Class:
        return Closer::EndClass;
    case Construct::Script:
        break;
    }
    return Closer::None;
}

bool IsProcedureCloser(Closer closer) {
    return closer == Closer::EndSub || closer == Closer::EndFunction ||
           closer == Closer::EndProperty;
}

bool IsProcedure(Construct construct) {
    return construct == Construct::Sub || construct == Construct::Function ||
           construct == Construct::Property;
}

bool Accepts(Construct construct, Closer closer) {
    if (closer == FinalCloser(construct))
        return true;
    // "End Sub" closing a Function is told there, and closes it all the same.
    if (IsProcedure(construct))
        return IsProcedureCloser(closer);
    if (construct == Construct::If)
        return closer == Closer::Else || closer == Closer::ElseIf;
    if (construct == Construct::Select)
        return closer == Closer::Case;
    return false;
}

// What a closer with no open construct to close is told.
std::string StrayCloserMessage(Closer closer) {
    switch (closer) {
    case Closer::EndIf:
    case Closer::Else:
    case Closer::ElseIf:
        return std::string("'") + CloserText(closer) + "' without 'If'";
    case Closer::EndSelect:
        return "'End Select' without 'Select Case'";
    case Closer::Case:
        return "'Case' outside 'Select Case'";
    case Closer::Loop:
        return "'Loop' without 'Do'";
    case Closer::Next:
        return "'Next' without 'For'";
    case Closer::Wend:
        return "'Wend' without 'While'";
    case Closer::EndOther:
        return "'End' must be followed by If, Select, With, Sub, Function, Property or Class";
    default:
        break;
    }
    return std::string("'") + CloserText(closer) + "' without '" +
           std::string(CloserText(closer) + 4) + "'";
}

struct Open {
    Construct construct;
    uint32_t line;
    bool reported; // its missing closer is already told; don't tell it twice
};

// Counts one level of nesting for as long as it lives.
class DepthGuard {
public:
    explicit DepthGuard(int& depth) : m_depth(depth) { ++m_depth; }
    ~DepthGuard() { --m_depth; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;

private:
    int& m_depth;
};

enum class Level : uint8_t {
    Imp,
    Eqv,
    Xor,
    Or,
    And,
    Not,
    Compare,
    Concatenate,
    Additive,
    Modulo,
    IntegerDivide,
    Multiplicative,
    Negate,
    Power,
};

class Parser {
public:
    Parser(SyntaxTree& tree, LexResult& lexed) : m_tree(tree), m_tokens(lexed.tokens) {}

    void Run() {
        const NodeIndex script = NewNode(NodeKind::Script, Cur());
        m_open.push_back({Construct::Script, 1, false});
        ParseBlock(script);
        // A block stops in front of any closer; at the top level none fits, so it's told there.
        while (!Is(TokenKind::EndOfScript)) {
            ErrorAt(Cur(), StrayCloserMessage(CloserAt()));
            SkipLine();
            ParseBlock(script);
        }
        m_tree.nodes[script].end = PositionAt(m_tokens.back());
    }

private:
    SyntaxTree& m_tree;
    const std::vector<Token>& m_tokens;
    std::size_t m_pos = 0;
    std::vector<Open> m_open;
    int m_depth = 0;
    int m_inline = 0;            // inside a single-line If
    bool m_sawStatement = false; // a statement other than Option Explicit at the top level
    bool m_closeFailed = false;  // the last construct read has no closer
    int m_operations = 0;        // in the statement being read; see MaxStatementOperations

    // ---- tokens

    const Token& Cur() const { return m_tokens[m_pos]; }
    const Token& PeekToken(std::size_t ahead) const {
        return m_tokens[std::min(m_pos + ahead, m_tokens.size() - 1)];
    }
    bool Is(TokenKind kind) const { return Cur().kind == kind; }
    bool IsKeyword(Keyword keyword) const { return Cur().keyword == keyword; }
    static bool IsKeyword(const Token& token, Keyword keyword) { return token.keyword == keyword; }
    void Advance() {
        if (m_pos + 1 < m_tokens.size())
            ++m_pos;
    }

    std::string_view TextOf(const Token& token) const {
        return std::string_view(m_tree.source).substr(token.offset, token.length);
    }

    // A word that is a keyword only here: "Step", "Explicit", "Error", "Property", ...
    bool IsWord(const Token& token, std::string_view word) const {
        if (token.kind != TokenKind::Identifier || (token.flags & TokenFlag::Bracketed) ||
            token.length != word.size())
            return false;
        std::string_view text = TextOf(token);
        for (std::size_t i = 0; i < word.size(); ++i) {
            char c = text[i];
            if (c >= 'A' && c <= 'Z')
                c = static_cast<char>(c + ('a' - 'A'));
            if (c != word[i])
                return false;
        }
        return true;
    }
    bool IsWord(std::string_view word) const { return IsWord(Cur(), word); }

    static SourcePosition PositionAt(const Token& token) {
        return {token.line, token.column, token.offset};
    }
    SourcePosition EndOfPrevious() const {
        const Token& token = m_tokens[m_pos == 0 ? 0 : m_pos - 1];
        const uint32_t length = token.kind == TokenKind::NewLine ? 0 : token.length;
        const uint32_t brackets = (token.flags & TokenFlag::Bracketed) ? 1 : 0;
        return {token.line, token.column + length + 2 * brackets - brackets,
                token.offset + length + brackets};
    }

    std::string Describe(const Token& token) const {
        // "End" with its word: "found 'End Sub'".
        if (token.keyword == Keyword::End && &token == &Cur()) {
            const Closer closer = CloserAt();
            if (closer != Closer::EndOther)
                return std::string("'") + CloserText(closer) + "'";
        }
        switch (token.kind) {
        case TokenKind::EndOfScript:
            return "end of script";
        case TokenKind::NewLine:
            return "end of line";
        default:
            break;
        }
        std::string_view text = TextOf(token);
        // A long token is cut, but not inside a UTF-8 sequence.
        std::size_t cut = std::min<std::size_t>(text.size(), 32);
        while (cut < text.size() && cut > 0 &&
               (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
            --cut;
        std::string shown(text.substr(0, cut));
        if (cut < text.size())
            shown += "...";
        if (token.kind == TokenKind::String)
            return "string " + shown;
        if (token.flags & TokenFlag::Bracketed)
            return "'[" + shown + "]'";
        return "'" + shown + "'";
    }

    bool AtStatementEnd() const {
        if (Is(TokenKind::NewLine) || Is(TokenKind::Colon) || Is(TokenKind::EndOfScript))
            return true;
        return m_inline > 0 && (IsKeyword(Keyword::Else) || CloserAt() == Closer::EndIf);
    }

    void SkipLine() {
        while (!Is(TokenKind::NewLine) && !Is(TokenKind::EndOfScript))
            Advance();
    }

    void SkipSeparators() {
        while (Is(TokenKind::NewLine) || Is(TokenKind::Colon))
            Advance();
    }

    // The closer at the current token, if any.
    Closer CloserAt() const {
        switch (Cur().keyword) {
        case Keyword::Else:
            return Closer::Else;
        case Keyword::ElseIf:
            return Closer::ElseIf;
        case Keyword::Case:
            return Closer::Case;
        case Keyword::Loop:
            return Closer::Loop;
        case Keyword::Next:
            return Closer::Next;
        case Keyword::Wend:
            return Closer::Wend;
        case Keyword::End:
            break;
        default:
            return Closer::None;
        }
        const Token& word = PeekToken(1);
        switch (word.keyword) {
        case Keyword::If:
            return Closer::EndIf;
        case Keyword::Sub:
            return Closer::EndSub;
        case Keyword::Function:
            return Closer::EndFunction;
        case Keyword::Class:
            return Closer::EndClass;
        case Keyword::Select:
            return Closer::EndSelect;
        case Keyword::With:
            return Closer::EndWith;
        default:
            break;
        }
        return IsWord(word, "property") ? Closer::EndProperty : Closer::EndOther;
    }

    // ---- errors

    void ErrorAt(const Token& token, std::string message) {
        const bool lineEnd =
            token.kind == TokenKind::NewLine || token.kind == TokenKind::EndOfScript;
        m_tree.errors.push_back(
            {PositionAt(token), std::move(message), lineEnd ? 0 : token.length});
    }

    // Refuses nesting past the limit: the rest of the script is not read.
    bool TooDeep() {
        if (m_depth <= MaxNestingDepth)
            return false;
        if (m_pos + 1 < m_tokens.size()) {
            ErrorAt(Cur(), "nesting deeper than " + std::to_string(MaxNestingDepth) +
                               " levels; the rest of the script is not read");
            m_pos = m_tokens.size() - 1;
        }
        return true;
    }

    // ---- nodes

    NodeIndex NewNode(NodeKind kind, const Token& first) {
        Node node;
        node.kind = kind;
        node.begin = PositionAt(first);
        node.end = node.begin;
        m_tree.nodes.push_back(node);
        return static_cast<NodeIndex>(m_tree.nodes.size() - 1);
    }

    // A node that starts right behind the last token read: an empty argument, which has no
    // token of its own, and a block, whose first token may be a line end or the script's end.
    NodeIndex NewNodeBehind(NodeKind kind) {
        Node node;
        node.kind = kind;
        node.begin = node.end = EndOfPrevious();
        m_tree.nodes.push_back(node);
        return static_cast<NodeIndex>(m_tree.nodes.size() - 1);
    }

    NodeIndex NewMissingArgument() { return NewNodeBehind(NodeKind::MissingArgument); }

    NodeIndex NewNamed(NodeKind kind, const Token& first, const Token& name) {
        const NodeIndex node = NewNode(kind, first);
        SetText(node, name);
        return node;
    }

    void SetText(NodeIndex node, const Token& token) {
        m_tree.nodes[node].textOffset = token.offset;
        m_tree.nodes[node].textLength = token.length;
    }

    // An empty block ends where it begins, not behind the token before it.
    void Finish(NodeIndex node) {
        if (node == NoNode)
            return;
        Node& n = m_tree.nodes[node];
        const SourcePosition end = EndOfPrevious();
        n.end = end.offset < n.begin.offset ? n.begin : end;
    }

    void AddChild(NodeIndex parent, NodeIndex child) {
        if (child == NoNode)
            return;
        Node& p = m_tree.nodes[parent];
        if (p.lastChild == NoNode)
            p.firstChild = child;
        else
            m_tree.nodes[p.lastChild].nextSibling = child;
        p.lastChild = child;
    }

    // A name token (identifier or bracketed) for a declaration; reports and returns false
    // when something else stands there.
    bool ExpectName(const char* after) {
        if (Is(TokenKind::Identifier))
            return true;
        if (Is(TokenKind::Keyword))
            ErrorAt(Cur(), "expected a name after " + std::string(after) + ", found keyword " +
                               Describe(Cur()));
        else
            ErrorAt(Cur(),
                    "expected a name after " + std::string(after) + ", found " + Describe(Cur()));
        return false;
    }

    bool Expect(TokenKind kind, const char* what, const char* context) {
        if (Is(kind)) {
            Advance();
            return true;
        }
        ErrorAt(Cur(),
                std::string("expected ") + what + " " + context + ", found " + Describe(Cur()));
        return false;
    }

    bool ExpectKeyword(Keyword keyword, const char* context) {
        if (IsKeyword(keyword)) {
            Advance();
            return true;
        }
        ErrorAt(Cur(), std::string("expected '") + KeywordText(keyword) + "' " + context +
                           ", found " + Describe(Cur()));
        return false;
    }

    // ---- blocks

    const Open* InnermostProcedure() const {
        for (auto it = m_open.rbegin(); it != m_open.rend(); ++it) {
            if (IsProcedure(it->construct))
                return &*it;
        }
        return nullptr;
    }
    Open* InnermostProcedure() {
        return const_cast<Open*>(std::as_const(*this).InnermostProcedure());
    }

    bool InClassBody() const { return m_open.back().construct == Construct::Class; }

    // Statements up to a closer that an open construct waits for, or the end of the script.
    void ParseBlock(NodeIndex block) {
        for (;;) {
            SkipSeparators();
            if (Is(TokenKind::EndOfScript))
                return;
            const Closer closer = CloserAt();
            if (closer != Closer::None) {
                for (auto it = m_open.rbegin(); it != m_open.rend(); ++it) {
                    if (Accepts(it->construct, closer))
                        return;
                }
                ErrorAt(Cur(), StrayCloserMessage(closer));
                SkipLine();
                continue;
            }
            // A procedure head inside a procedure means its End is missing: the block ends
            // here, the open procedure is told not closed, and the new one is read on its own.
            if (InnermostProcedure() != nullptr && IsProcedureHead())
                return;
            const std::size_t before = m_pos;
            m_closeFailed = false;
            m_operations = 0;
            ParseStatement(block);
            // A block left open stops in front of an outer closer, which must stay for it.
            if (!m_closeFailed && !AtStatementEnd()) {
                ErrorAt(Cur(), "expected end of statement, found " + Describe(Cur()));
                SkipLine();
            }
            m_closeFailed = false;
            if (m_pos == before)
                Advance();
        }
    }

    // Pushes a construct for the life of its block.
    class OpenScope {
    public:
        OpenScope(Parser& parser, Construct construct, uint32_t line)
            : m_parser(parser), m_guard(parser.m_depth) {
            parser.m_open.push_back({construct, line, false});
        }
        ~OpenScope() { m_parser.m_open.pop_back(); }
        OpenScope(const OpenScope&) = delete;
        OpenScope& operator=(const OpenScope&) = delete;

    private:
        Parser& m_parser;
        DepthGuard m_guard;
    };

    NodeIndex ParseBody(NodeIndex parent) {
        const NodeIndex block = NewNodeBehind(NodeKind::Block);
        AddChild(parent, block);
        if (!TooDeep())
            ParseBlock(block);
        Finish(block);
        return block;
    }

    bool IsProcedureHead() const {
        std::size_t ahead = 0;
        if (IsKeyword(Keyword::Private) || IsKeyword(Keyword::Public)) {
            ahead = 1;
            if (IsWord(PeekToken(1), "default"))
                ahead = 2;
        }
        const Token& head = PeekToken(ahead);
        return IsKeyword(head, Keyword::Sub) || IsKeyword(head, Keyword::Function) ||
               (IsWord(head, "property") && IsPropertyKind(PeekToken(ahead + 1)));
    }

    // Consumes the closer that ends the innermost construct, or reports it missing there.
    bool Close(Closer closer) {
        const Closer found = CloserAt();
        if (found != closer && IsProcedureCloser(closer) && IsProcedureCloser(found)) {
            const Open& open = m_open.back();
            ErrorAt(Cur(), std::string("'") + ConstructText(open.construct) + "' on line " +
                               std::to_string(open.line) + " ends with '" + CloserText(found) +
                               "'; expected '" + CloserText(closer) + "'");
            Advance();
            Advance();
            return true;
        }
        if (found == closer) {
            Advance();
            if (closer != Closer::Loop && closer != Closer::Next && closer != Closer::Wend)
                Advance(); // the word behind "End"
            return true;
        }
        Open& open = m_open.back();
        if (!open.reported && !TooDeep()) {
            ErrorAt(Cur(), std::string("'") + ConstructText(open.construct) + "' on line " +
                               std::to_string(open.line) + " is not closed: expected '" +
                               CloserText(closer) + "', found " + Describe(Cur()));
        }
        open.reported = true;
        m_closeFailed = true;
        return false;
    }

    // ---- statements

    void ParseStatement(NodeIndex parent) {
        const Token& first = Cur();
        const bool topLevel = m_open.back().construct == Construct::Script;
        if (topLevel && !IsKeyword(Keyword::Option))
            m_sawStatement = true;
        if (InClassBody() && !IsMemberStart()) {
            ErrorAt(first, "only declarations and procedures may stand in a class body, found " +
                               Describe(first));
            SkipLine();
            return;
        }
        switch (first.keyword) {
        case Keyword::Dim:
            return ParseDeclaration(parent, Visibility::Dim, first);
        case Keyword::Private:
        case Keyword::Public:
            return ParseVisibility(parent);
        case Keyword::Const:
            return ParseConst(parent, Visibility::Unspecified, first);
        case Keyword::Sub:
        case Keyword::Function:
            return ParseProcedure(parent, Visibility::Unspecified, false, first);
        case Keyword::Class:
            return ParseClass(parent);
        case Keyword::If:
            return ParseIf(parent);
        case Keyword::Select:
            return ParseSelect(parent);
        case Keyword::Do:
            return ParseDo(parent);
        case Keyword::While:
            return ParseWhile(parent);
        case Keyword::For:
            return ParseFor(parent);
        case Keyword::With:
            return ParseWith(parent);
        case Keyword::Exit:
            return ParseExit(parent);
        case Keyword::On:
            return ParseOnError(parent);
        case Keyword::Option:
            return ParseOption(parent, topLevel);
        case Keyword::ReDim:
            return ParseReDim(parent);
        case Keyword::Erase:
            return ParseErase(parent);
        case Keyword::Set:
            return ParseSet(parent);
        case Keyword::Call:
            return ParseCall(parent);
        case Keyword::Randomize:
            return ParseRandomize(parent);
        case Keyword::Stop: {
            const NodeIndex node = NewNode(NodeKind::Stop, first);
            Advance();
            Finish(node);
            AddChild(parent, node);
            return;
        }
        default:
            break;
        }
        if (IsWord("property") && IsPropertyKind(PeekToken(1)))
            return ParseProcedure(parent, Visibility::Unspecified, false, first);
        if (Is(TokenKind::Identifier) || Is(TokenKind::Dot) || IsKeyword(Keyword::Me))
            return ParseAssignmentOrCall(parent);
        ErrorAt(first, "expected a statement, found " +
                           std::string(first.kind == TokenKind::Keyword ? "keyword " : "") +
                           Describe(first));
        SkipLine();
    }

    bool IsPropertyKind(const Token& token) const {
        return IsWord(token, "get") || IsWord(token, "let") || IsKeyword(token, Keyword::Set);
    }

    bool IsMemberStart() const {
        switch (Cur().keyword) {
        case Keyword::Dim:
        case Keyword::Private:
        case Keyword::Public:
        case Keyword::Const:
        case Keyword::Sub:
        case Keyword::Function:
            return true;
        default:
            break;
        }
        return IsWord("property") && IsPropertyKind(PeekToken(1));
    }

    bool BlockStatementAllowed(const Token& first) {
        if (m_inline == 0)
            return true;
        ErrorAt(first, "'" + std::string(TextOf(first)) +
                           "' starts a block and cannot stand in a single-line 'If'");
        SkipLine();
        return false;
    }

    void ParseVisibility(NodeIndex parent) {
        const Token& first = Cur();
        const Visibility visibility =
            IsKeyword(Keyword::Private) ? Visibility::Private : Visibility::Public;
        if (InnermostProcedure() != nullptr) {
            ErrorAt(first, "'" + std::string(TextOf(first)) +
                               "' cannot stand inside a procedure; declare with 'Dim'");
            SkipLine();
            return;
        }
        Advance();
        bool isDefault = false;
        if (IsWord("default")) {
            if (visibility != Visibility::Public || !InClassBody())
                ErrorAt(Cur(), "'Default' is allowed only on a 'Public' procedure of a class");
            isDefault = true;
            Advance();
            if (!IsKeyword(Keyword::Sub) && !IsKeyword(Keyword::Function) &&
                !(IsWord("property") && IsWord(PeekToken(1), "get"))) {
                ErrorAt(Cur(), "expected 'Function', 'Sub' or 'Property Get' after 'Default', "
                               "found " +
                                   Describe(Cur()));
                SkipLine();
                return;
            }
        }
        if (IsKeyword(Keyword::Sub) || IsKeyword(Keyword::Function) ||
            (IsWord("property") && IsPropertyKind(PeekToken(1))))
            return ParseProcedure(parent, visibility, isDefault, first);
        if (IsKeyword(Keyword::Const))
            return ParseConst(parent, visibility, first);
        ParseDeclaration(parent, visibility, first);
    }

    // Dim/Private/Public a, b(3), c()
    void ParseDeclaration(NodeIndex parent, Visibility visibility, const Token& first) {
        const NodeIndex node = NewNode(NodeKind::VariableDeclaration, first);
        m_tree.nodes[node].detail = static_cast<uint8_t>(visibility);
        AddChild(parent, node);
        if (visibility == Visibility::Dim)
            Advance();
        for (;;) {
            if (!ExpectName(first.keyword == Keyword::Dim       ? "'Dim'"
                            : first.keyword == Keyword::Private ? "'Private'"
                                                                : "'Public'"))
                break;
            const NodeIndex declarator = NewNamed(NodeKind::Declarator, Cur(), Cur());
            Advance();
            AddChild(node, declarator);
            if (Is(TokenKind::LeftParen)) {
                m_tree.nodes[declarator].flags |= NodeFlag::Array;
                Advance();
                if (!Is(TokenKind::RightParen))
                    ParseBounds(declarator, false);
                Expect(TokenKind::RightParen, "')'", "to close the array bounds");
            }
            Finish(declarator);
            if (!Is(TokenKind::Comma))
                break;
            Advance();
        }
        Finish(node);
    }

    // Array bounds: whole numbers in a declaration, any expression in ReDim.
    void ParseBounds(NodeIndex declarator, bool expressions) {
        for (;;) {
            if (expressions) {
                AddChild(declarator, ParseExpression());
            } else if (Is(TokenKind::Integer)) {
                const NodeIndex bound = NewNamed(NodeKind::IntegerLiteral, Cur(), Cur());
                Advance();
                Finish(bound);
                AddChild(declarator, bound);
            } else {
                ErrorAt(Cur(), "expected a whole number as array bound, found " + Describe(Cur()));
                return;
            }
            if (!Is(TokenKind::Comma))
                return;
            Advance();
        }
    }

    void ParseConst(NodeIndex parent, Visibility visibility, const Token& first) {
        const NodeIndex node = NewNode(NodeKind::ConstDeclaration, first);
        m_tree.nodes[node].detail = static_cast<uint8_t>(visibility);
        AddChild(parent, node);
        Advance(); // Const
        for (;;) {
            if (!ExpectName("'Const'"))
                break;
            const NodeIndex declarator = NewNamed(NodeKind::ConstDeclarator, Cur(), Cur());
            AddChild(node, declarator);
            Advance();
            if (!Expect(TokenKind::Equal, "'='", "after the constant's name"))
                break;
            AddChild(declarator, ParseExpression());
            Finish(declarator);
            if (!Is(TokenKind::Comma))
                break;
            Advance();
        }
        Finish(node);
    }

    void ParseProcedure(NodeIndex parent, Visibility visibility, bool isDefault,
                        const Token& first) {
        const Token& head = Cur();
        ProcedureKind kind = ProcedureKind::Sub;
        Construct construct = Construct::Sub;
        const char* headText = "'Sub'";
        if (IsKeyword(Keyword::Function)) {
            kind = ProcedureKind::Function;
            construct = Construct::Function;
            headText = "'Function'";
        } else if (!IsKeyword(Keyword::Sub)) {
            Advance(); // Property
            kind = IsWord("get")   ? ProcedureKind::PropertyGet
                   : IsWord("let") ? ProcedureKind::PropertyLet
                                   : ProcedureKind::PropertySet;
            construct = Construct::Property;
            headText = "'Property'";
        }
        if (Open* outer = InnermostProcedure()) {
            // Read it as a procedure anyway, so its own End closes it and not the outer one.
            ErrorAt(head, std::string("'") + ConstructText(outer->construct) + "' on line " +
                              std::to_string(outer->line) + " is not closed: expected '" +
                              CloserText(FinalCloser(outer->construct)) + "' before this " +
                              headText);
            outer->reported = true;
        } else if (m_open.back().construct != Construct::Script && !InClassBody()) {
            ErrorAt(head, std::string(headText) +
                              " must stand at the top level of the script or in a class");
        } else if (m_inline > 0) {
            ErrorAt(head, std::string(headText) + " cannot stand in a single-line 'If'");
        }
        Advance();
        const NodeIndex node = NewNode(NodeKind::Procedure, first);
        Node& n = m_tree.nodes[node];
        n.detail = static_cast<uint8_t>(static_cast<uint8_t>(kind) |
                                        (static_cast<uint8_t>(visibility) << 4));
        if (isDefault)
            n.flags |= NodeFlag::Default;
        AddChild(parent, node);
        if (!ExpectName(headText)) {
            SkipLine();
        } else {
            SetText(node, Cur());
            Advance();
            if (Is(TokenKind::LeftParen))
                ParseParameters(node);
        }
        OpenScope scope(*this, construct, head.line);
        if (!AtStatementEnd()) {
            ErrorAt(Cur(),
                    "expected end of line after the procedure head, found " + Describe(Cur()));
            SkipLine();
        }
        ParseBody(node);
        Close(FinalCloser(construct));
        Finish(node);
    }

    void ParseParameters(NodeIndex procedure) {
        Advance(); // (
        if (Is(TokenKind::RightParen)) {
            Advance();
            return;
        }
        for (;;) {
            const Token& first = Cur();
            uint8_t flags = 0;
            if (IsKeyword(Keyword::ByVal)) {
                flags = NodeFlag::ByVal;
                Advance();
            } else if (IsKeyword(Keyword::ByRef)) {
                flags = NodeFlag::ByRef;
                Advance();
            }
            if (!ExpectName("'(' or ','")) {
                SkipTo(TokenKind::RightParen);
                break;
            }
            const NodeIndex parameter = NewNamed(NodeKind::Parameter, first, Cur());
            Advance();
            if (Is(TokenKind::LeftParen) && PeekToken(1).kind == TokenKind::RightParen) {
                flags |= NodeFlag::Array;
                Advance();
                Advance();
            }
            m_tree.nodes[parameter].flags = flags;
            Finish(parameter);
            AddChild(procedure, parameter);
            if (!Is(TokenKind::Comma))
                break;
            Advance();
        }
        Expect(TokenKind::RightParen, "')'", "to close the parameter list");
    }

    void SkipTo(TokenKind kind) {
        while (!Is(kind) && !Is(TokenKind::NewLine) && !Is(TokenKind::EndOfScript))
            Advance();
    }

    void ParseClass(NodeIndex parent) {
        const Token& first = Cur();
        if (m_open.back().construct != Construct::Script || m_inline > 0)
            ErrorAt(first, "'Class' must stand at the top level of the script");
        Advance();
        const NodeIndex node = NewNode(NodeKind::ClassDeclaration, first);
        AddChild(parent, node);
        if (ExpectName("'Class'")) {
            SetText(node, Cur());
            Advance();
        }
        OpenScope scope(*this, Construct::Class, first.line);
        ParseBody(node);
        Close(Closer::EndClass);
        Finish(node);
    }

    void ParseIf(NodeIndex parent) {
        const Token& first = Cur();
        Advance();
        const NodeIndex node = NewNode(NodeKind::If, first);
        AddChild(parent, node);
        AddChild(node, ParseExpression());
        if (!ExpectKeyword(Keyword::Then, "after the condition of 'If'")) {
            SkipLine();
            Finish(node);
            return;
        }
        if (!Is(TokenKind::NewLine) && !Is(TokenKind::EndOfScript))
            return ParseSingleLineIf(node);
        if (!BlockStatementAllowed(first)) {
            Finish(node);
            return;
        }
        OpenScope scope(*this, Construct::If, first.line);
        ParseBody(node);
        while (IsKeyword(Keyword::ElseIf)) {
            const NodeIndex branch = NewNode(NodeKind::ElseIf, Cur());
            Advance();
            AddChild(node, branch);
            AddChild(branch, ParseExpression());
            if (!ExpectKeyword(Keyword::Then, "after the condition of 'ElseIf'"))
                SkipLine();
            ParseBody(branch);
            Finish(branch);
        }
        if (IsKeyword(Keyword::Else)) {
            const NodeIndex branch = NewNode(NodeKind::Else, Cur());
            Advance();
            AddChild(node, branch);
            ParseBody(branch);
            Finish(branch);
        }
        Close(Closer::EndIf);
        Finish(node);
    }

    // "If c Then a : b Else d [End If]" on one line.
    void ParseSingleLineIf(NodeIndex node) {
        m_tree.nodes[node].flags |= NodeFlag::SingleLine;
        DepthGuard guard(m_depth);
        if (TooDeep())
            return;
        ParseInlineStatements(node);
        if (IsKeyword(Keyword::Else)) {
            const NodeIndex branch = NewNode(NodeKind::Else, Cur());
            Advance();
            AddChild(node, branch);
            ParseInlineStatements(branch);
            Finish(branch);
        }
        if (CloserAt() == Closer::EndIf) {
            Advance();
            Advance();
        }
        Finish(node);
    }

    void ParseInlineStatements(NodeIndex parent) {
        const NodeIndex block = NewNodeBehind(NodeKind::Block);
        AddChild(parent, block);
        ++m_inline;
        for (;;) {
            while (Is(TokenKind::Colon))
                Advance();
            if (AtStatementEnd())
                break;
            const std::size_t before = m_pos;
            if (CloserAt() != Closer::None) {
                ErrorAt(Cur(), "'" + std::string(CloserText(CloserAt())) +
                                   "' cannot stand in a single-line 'If'");
                SkipLine();
                break;
            }
            m_operations = 0;
            ParseStatement(block);
            if (!AtStatementEnd()) {
                ErrorAt(Cur(), "expected end of statement, found " + Describe(Cur()));
                SkipLine();
                break;
            }
            if (m_pos == before)
                Advance();
        }
        --m_inline;
        Finish(block);
    }

    void ParseSelect(NodeIndex parent) {
        const Token& first = Cur();
        if (!BlockStatementAllowed(first))
            return;
        Advance();
        const NodeIndex node = NewNode(NodeKind::SelectCase, first);
        AddChild(parent, node);
        if (!ExpectKeyword(Keyword::Case, "after 'Select'")) {
            SkipLine();
        } else {
            AddChild(node, ParseExpression());
            if (!AtStatementEnd()) {
                ErrorAt(Cur(), "expected end of statement, found " + Describe(Cur()));
                SkipLine();
            }
        }
        OpenScope scope(*this, Construct::Select, first.line);
        SkipSeparators();
        if (!Is(TokenKind::EndOfScript) && CloserAt() == Closer::None) {
            ErrorAt(Cur(), "expected 'Case' after 'Select Case', found " + Describe(Cur()));
            while (!Is(TokenKind::EndOfScript) && CloserAt() == Closer::None) {
                SkipLine();
                SkipSeparators();
            }
        }
        bool sawElse = false;
        while (IsKeyword(Keyword::Case)) {
            const Token& caseToken = Cur();
            Advance();
            NodeIndex branch;
            if (IsKeyword(Keyword::Else)) {
                branch = NewNode(NodeKind::CaseElse, caseToken);
                Advance();
                if (sawElse)
                    ErrorAt(caseToken, "a second 'Case Else' in one 'Select Case'");
                sawElse = true;
            } else {
                branch = NewNode(NodeKind::Case, caseToken);
                if (sawElse)
                    ErrorAt(caseToken, "'Case' after 'Case Else'");
                for (;;) {
                    AddChild(branch, ParseExpression());
                    if (!Is(TokenKind::Comma))
                        break;
                    Advance();
                }
            }
            AddChild(node, branch);
            ParseBody(branch);
            Finish(branch);
        }
        Close(Closer::EndSelect);
        Finish(node);
    }

    void ParseDo(NodeIndex parent) {
        const Token& first = Cur();
        if (!BlockStatementAllowed(first))
            return;
        Advance();
        const NodeIndex node = NewNode(NodeKind::DoLoop, first);
        AddChild(parent, node);
        LoopCondition condition = LoopCondition::None;
        if (IsKeyword(Keyword::While) || IsKeyword(Keyword::Until)) {
            condition =
                IsKeyword(Keyword::While) ? LoopCondition::WhileAtTop : LoopCondition::UntilAtTop;
            Advance();
            AddChild(node, ParseExpression());
        }
        OpenScope scope(*this, Construct::Do, first.line);
        ParseBody(node);
        if (Close(Closer::Loop) && (IsKeyword(Keyword::While) || IsKeyword(Keyword::Until))) {
            if (condition != LoopCondition::None)
                ErrorAt(Cur(), "a 'Do' loop cannot test a condition at both ends");
            condition = IsKeyword(Keyword::While) ? LoopCondition::WhileAtBottom
                                                  : LoopCondition::UntilAtBottom;
            Advance();
            // The condition comes first among the children, as with a test at the top.
            const NodeIndex expression = ParseExpression();
            if (expression != NoNode) {
                Node& loop = m_tree.nodes[node];
                m_tree.nodes[expression].nextSibling = loop.firstChild;
                loop.firstChild = expression;
                if (loop.lastChild == NoNode)
                    loop.lastChild = expression;
            }
        }
        m_tree.nodes[node].detail = static_cast<uint8_t>(condition);
        Finish(node);
    }

    void ParseWhile(NodeIndex parent) {
        const Token& first = Cur();
        if (!BlockStatementAllowed(first))
            return;
        Advance();
        const NodeIndex node = NewNode(NodeKind::WhileLoop, first);
        AddChild(parent, node);
        AddChild(node, ParseExpression());
        OpenScope scope(*this, Construct::While, first.line);
        ParseBody(node);
        Close(Closer::Wend);
        Finish(node);
    }

    void ParseFor(NodeIndex parent) {
        const Token& first = Cur();
        if (!BlockStatementAllowed(first))
            return;
        Advance();
        const bool each = IsKeyword(Keyword::Each);
        if (each)
            Advance();
        const NodeIndex node = NewNode(each ? NodeKind::ForEachLoop : NodeKind::ForLoop, first);
        AddChild(parent, node);
        bool headRead = false;
        if (ExpectName(each ? "'For Each'" : "'For'")) {
            const NodeIndex variable = NewNamed(NodeKind::Identifier, Cur(), Cur());
            Advance();
            Finish(variable);
            AddChild(node, variable);
            if (each) {
                if (ExpectKeyword(Keyword::In, "after the variable of 'For Each'")) {
                    AddChild(node, ParseExpression());
                    headRead = true;
                }
            } else if (Expect(TokenKind::Equal, "'='", "after the variable of 'For'")) {
                AddChild(node, ParseExpression());
                if (ExpectKeyword(Keyword::To, "after the start value of 'For'")) {
                    AddChild(node, ParseExpression());
                    if (IsWord("step")) {
                        Advance();
                        AddChild(node, ParseExpression());
                    }
                    headRead = true;
                }
            }
        }
        if (!headRead)
            SkipLine();
        OpenScope scope(*this, Construct::For, first.line);
        ParseBody(node);
        Close(Closer::Next);
        Finish(node);
    }

    void ParseWith(NodeIndex parent) {
        const Token& first = Cur();
        if (!BlockStatementAllowed(first))
            return;
        Advance();
        const NodeIndex node = NewNode(NodeKind::With, first);
        AddChild(parent, node);
        AddChild(node, ParseExpression());
        OpenScope scope(*this, Construct::With, first.line);
        ParseBody(node);
        Close(Closer::EndWith);
        Finish(node);
    }

    void ParseExit(NodeIndex parent) {
        const Token& first = Cur();
        Advance();
        ExitKind kind;
        Construct wanted;
        if (IsKeyword(Keyword::Do)) {
            kind = ExitKind::Do;
            wanted = Construct::Do;
        } else if (IsKeyword(Keyword::For)) {
            kind = ExitKind::For;
            wanted = Construct::For;
        } else if (IsKeyword(Keyword::Function)) {
            kind = ExitKind::Function;
            wanted = Construct::Function;
        } else if (IsKeyword(Keyword::Sub)) {
            kind = ExitKind::Sub;
            wanted = Construct::Sub;
        } else if (IsWord("property")) {
            kind = ExitKind::Property;
            wanted = Construct::Property;
        } else {
            ErrorAt(Cur(), "expected Do, For, Function, Sub or Property after 'Exit', found " +
                               Describe(Cur()));
            SkipLine();
            return;
        }
        const Token& word = Cur();
        Advance();
        const NodeIndex node = NewNode(NodeKind::Exit, first);
        m_tree.nodes[node].detail = static_cast<uint8_t>(kind);
        Finish(node);
        AddChild(parent, node);
        // A loop is left only from inside it and within the same procedure.
        bool found = false;
        for (auto it = m_open.rbegin(); it != m_open.rend() && !found; ++it) {
            if (it->construct == wanted)
                found = true;
            else if (it->construct == Construct::Sub || it->construct == Construct::Function ||
                     it->construct == Construct::Property)
                break;
        }
        if (!found)
            ErrorAt(first, "'Exit " + std::string(TextOf(word)) + "' outside " +
                               (wanted == Construct::Do || wanted == Construct::For
                                    ? "a '" + std::string(ConstructText(wanted)) + "' loop"
                                    : "a '" + std::string(ConstructText(wanted)) + "'"));
    }

    void ParseOnError(NodeIndex parent) {
        const Token& first = Cur();
        Advance();
        if (!IsWord("error")) {
            ErrorAt(Cur(), "expected 'Error' after 'On', found " + Describe(Cur()));
            SkipLine();
            return;
        }
        Advance();
        NodeKind kind;
        if (IsWord("resume") && IsKeyword(PeekToken(1), Keyword::Next)) {
            kind = NodeKind::OnErrorResumeNext;
        } else if (IsWord("goto") && PeekToken(1).kind == TokenKind::Integer &&
                   TextOf(PeekToken(1)) == "0") {
            kind = NodeKind::OnErrorGoToZero;
        } else {
            ErrorAt(Cur(), "expected 'Resume Next' or 'GoTo 0' after 'On Error', found " +
                               Describe(Cur()));
            SkipLine();
            return;
        }
        Advance();
        Advance();
        const NodeIndex node = NewNode(kind, first);
        Finish(node);
        AddChild(parent, node);
    }

    void ParseOption(NodeIndex parent, bool topLevel) {
        const Token& first = Cur();
        Advance();
        if (!IsWord("explicit")) {
            ErrorAt(Cur(), "expected 'Explicit' after 'Option', found " + Describe(Cur()));
            SkipLine();
            return;
        }
        Advance();
        if (!topLevel || m_sawStatement)
            ErrorAt(first, "'Option Explicit' must come before every other statement");
        m_sawStatement = true;
        const NodeIndex node = NewNode(NodeKind::OptionExplicit, first);
        Finish(node);
        AddChild(parent, node);
    }

    void ParseReDim(NodeIndex parent) {
        const Token& first = Cur();
        Advance();
        const NodeIndex node = NewNode(NodeKind::ReDim, first);
        AddChild(parent, node);
        if (IsWord("preserve")) {
            m_tree.nodes[node].flags |= NodeFlag::Preserve;
            Advance();
        }
        for (;;) {
            if (!ExpectName("'ReDim'"))
                break;
            const NodeIndex declarator = NewNamed(NodeKind::Declarator, Cur(), Cur());
            m_tree.nodes[declarator].flags |= NodeFlag::Array;
            AddChild(node, declarator);
            Advance();
            if (!Expect(TokenKind::LeftParen, "'(' and the new bounds", "after the array name"))
                break;
            ParseBounds(declarator, true);
            Expect(TokenKind::RightParen, "')'", "to close the array bounds");
            Finish(declarator);
            if (!Is(TokenKind::Comma))
                break;
            Advance();
        }
        Finish(node);
    }

    void ParseErase(NodeIndex parent) {
        const Token& first = Cur();
        Advance();
        const NodeIndex node = NewNode(NodeKind::Erase, first);
        AddChild(parent, node);
        if (ExpectName("'Erase'")) {
            const NodeIndex name = NewNamed(NodeKind::Identifier, Cur(), Cur());
            Advance();
            Finish(name);
            AddChild(node, name);
        }
        Finish(node);
    }

    void ParseSet(NodeIndex parent) {
        const Token& first = Cur();
        Advance();
        const NodeIndex node = NewNode(NodeKind::SetAssignment, first);
        AddChild(parent, node);
        if (!Is(TokenKind::Identifier) && !Is(TokenKind::Dot) && !IsKeyword(Keyword::Me)) {
            ErrorAt(Cur(), "expected the object variable after 'Set', found " + Describe(Cur()));
            SkipLine();
            return;
        }
        AddChild(node, ParseChain(nullptr));
        if (Expect(TokenKind::Equal, "'='", "after the target of 'Set'"))
            AddChild(node, ParseExpression());
        Finish(node);
    }

    void ParseCall(NodeIndex parent) {
        const Token& first = Cur();
        Advance();
        const NodeIndex node = NewNode(NodeKind::CallStatement, first);
        m_tree.nodes[node].flags |= NodeFlag::ExplicitCall;
        AddChild(parent, node);
        if (!Is(TokenKind::Identifier) && !Is(TokenKind::Dot) && !IsKeyword(Keyword::Me)) {
            ErrorAt(Cur(),
                    "expected the name of a procedure after 'Call', found " + Describe(Cur()));
            SkipLine();
            return;
        }
        AddChild(node, ParseChain(nullptr));
        Finish(node);
    }

    void ParseRandomize(NodeIndex parent) {
        const Token& first = Cur();
        Advance();
        const NodeIndex node = NewNode(NodeKind::Randomize, first);
        AddChild(parent, node);
        if (!AtStatementEnd())
            AddChild(node, ParseExpression());
        Finish(node);
    }

    // "a = 1", "obj.Method", "Method arg1, , arg3", "Method (arg) + 1, arg2".
    void ParseAssignmentOrCall(NodeIndex parent) {
        const Token& first = Cur();
        ChainEnd chainEnd;
        const NodeIndex target = ParseChain(&chainEnd);
        if (Is(TokenKind::Equal)) {
            Advance();
            const NodeIndex node = NewNode(NodeKind::Assignment, first);
            AddChild(node, target);
            AddChild(node, ParseExpression());
            Finish(node);
            AddChild(parent, node);
            return;
        }
        NodeIndex call = target;
        if (AtStatementEnd() && chainEnd.lastArguments == target && ArgumentCount(target) >= 2) {
            const Token& paren = m_tokens[chainEnd.parenToken];
            ErrorAt(paren, "parentheses around more than one argument of a call statement; "
                           "write the arguments without them, or use 'Call'");
        }
        if (!AtStatementEnd()) {
            // Arguments without parentheses. When the chain ended in "(...)", those parentheses
            // belong to the first argument: read them again as an expression.
            NodeIndex callee = target;
            if (chainEnd.lastArguments != NoNode) {
                callee = chainEnd.callee;
                m_pos = chainEnd.parenToken;
                m_tree.nodes.resize(chainEnd.lastArguments);
                m_tree.errors.resize(chainEnd.errorCount);
                m_tree.nodes[callee].nextSibling = NoNode;
            }
            call = NewNode(NodeKind::CallOrIndex, first);
            AddChild(call, callee);
            ParseArgumentList(call);
            Finish(call);
        }
        const NodeIndex node = NewNode(NodeKind::CallStatement, first);
        AddChild(node, call);
        Finish(node);
        AddChild(parent, node);
    }

    void ParseArgumentList(NodeIndex call) {
        for (;;) {
            if (Is(TokenKind::Comma) || AtStatementEnd()) {
                AddChild(call, NewMissingArgument());
            } else {
                AddChild(call, ParseExpression());
            }
            if (!Is(TokenKind::Comma))
                return;
            Advance();
        }
    }

    // ---- expressions

    struct ChainEnd {
        NodeIndex lastArguments = NoNode; // the CallOrIndex of a final "(...)"
        NodeIndex callee = NoNode;        // what stood before it
        std::size_t parenToken = 0;
        std::size_t errorCount = 0; // errors told before the "(", all that stay on a re-read
    };

    int ArgumentCount(NodeIndex call) const {
        int count = -1; // the first child is the callee
        for (NodeIndex child = m_tree.nodes[call].firstChild; child != NoNode;
             child = m_tree.nodes[child].nextSibling)
            ++count;
        return count;
    }

    // A name with its member accesses and argument lists: a.b(1).c
    NodeIndex ParseChain(ChainEnd* chainEnd) {
        const Token& first = Cur();
        NodeIndex node;
        if (Is(TokenKind::Dot)) {
            Advance();
            node = NewNode(NodeKind::WithMember, first);
            if (!ReadMemberName(node))
                return node;
            if (!InsideWith())
                ErrorAt(first, "'." + std::string(TextOf(m_tokens[m_pos - 1])) +
                                   "' outside a 'With' block");
        } else if (IsKeyword(Keyword::Me)) {
            node = NewNode(NodeKind::Me, first);
            Advance();
        } else {
            node = NewNamed(NodeKind::Identifier, first, first);
            Advance();
        }
        Finish(node);
        for (;;) {
            // "Echo .Name" in a With block passes a member of the With object; a dot with a
            // blank before it starts a new expression unless a line continuation put it there.
            const uint8_t flags = Cur().flags;
            if (Is(TokenKind::Dot) &&
                (!(flags & TokenFlag::SpaceBefore) || (flags & TokenFlag::Continued))) {
                if (!CountOperation())
                    return node;
                Advance();
                const NodeIndex access = NewNode(NodeKind::MemberAccess, first);
                AddChild(access, node);
                node = access;
                if (!ReadMemberName(node))
                    return node;
                Finish(node);
                if (chainEnd != nullptr)
                    chainEnd->lastArguments = NoNode;
            } else if (Is(TokenKind::LeftParen)) {
                if (!CountOperation())
                    return node;
                const std::size_t parenToken = m_pos;
                const NodeIndex call = NewNode(NodeKind::CallOrIndex, first);
                if (chainEnd != nullptr)
                    *chainEnd = {call, node, parenToken, m_tree.errors.size()};
                AddChild(call, node);
                node = call;
                Advance();
                DepthGuard guard(m_depth);
                if (TooDeep())
                    return node;
                if (!Is(TokenKind::RightParen))
                    ParseCallArguments(call);
                Expect(TokenKind::RightParen, "')'", "to close the argument list");
                Finish(node);
            } else {
                return node;
            }
        }
    }

    bool ReadMemberName(NodeIndex node) {
        if (Is(TokenKind::Identifier) || Is(TokenKind::Keyword)) {
            SetText(node, Cur());
            Advance();
            return true;
        }
        ErrorAt(Cur(), "expected a member name after '.', found " + Describe(Cur()));
        Finish(node);
        return false;
    }

    bool InsideWith() const {
        return std::any_of(m_open.begin(), m_open.end(),
                           [](const Open& open) { return open.construct == Construct::With; });
    }

    void ParseCallArguments(NodeIndex call) {
        for (;;) {
            if (Is(TokenKind::Comma) || Is(TokenKind::RightParen))
                AddChild(call, NewMissingArgument());
            else
                AddChild(call, ParseExpression());
            if (!Is(TokenKind::Comma))
                return;
            Advance();
        }
    }

    NodeIndex ParseExpression() {
        DepthGuard guard(m_depth);
        if (TooDeep())
            return NoNode;
        return ParseLevel(Level::Imp);
    }

    static Operator BinaryOperatorAt(const Token& token, Level level) {
        switch (level) {
        case Level::Imp:
            return token.keyword == Keyword::Imp ? Operator::Imp : Operator::None;
        case Level::Eqv:
            return token.keyword == Keyword::Eqv ? Operator::Eqv : Operator::None;
        case Level::Xor:
            return token.keyword == Keyword::Xor ? Operator::Xor : Operator::None;
        case Level::Or:
            return token.keyword == Keyword::Or ? Operator::Or : Operator::None;
        case Level::And:
            return token.keyword == Keyword::And ? Operator::And : Operator::None;
        case Level::Compare:
            switch (token.kind) {
            case TokenKind::Equal:
                return Operator::Equal;
            case TokenKind::NotEqual:
                return Operator::NotEqual;
            case TokenKind::Less:
                return Operator::Less;
            case TokenKind::Greater:
                return Operator::Greater;
            case TokenKind::LessEqual:
                return Operator::LessEqual;
            case TokenKind::GreaterEqual:
                return Operator::GreaterEqual;
            default:
                return token.keyword == Keyword::Is ? Operator::Is : Operator::None;
            }
        case Level::Concatenate:
            return token.kind == TokenKind::Ampersand ? Operator::Concatenate : Operator::None;
        case Level::Additive:
            return token.kind == TokenKind::Plus    ? Operator::Add
                   : token.kind == TokenKind::Minus ? Operator::Subtract
                                                    : Operator::None;
        case Level::Modulo:
            return token.keyword == Keyword::Mod ? Operator::Modulo : Operator::None;
        case Level::IntegerDivide:
            return token.kind == TokenKind::Backslash ? Operator::IntegerDivide : Operator::None;
        case Level::Multiplicative:
            return token.kind == TokenKind::Star    ? Operator::Multiply
                   : token.kind == TokenKind::Slash ? Operator::Divide
                                                    : Operator::None;
        default:
            return Operator::None;
        }
    }

    // Counts one more level of a left-leaning chain; false when the statement has too many.
    bool CountOperation() {
        if (++m_operations <= MaxStatementOperations)
            return true;
        if (m_pos + 1 < m_tokens.size()) {
            ErrorAt(Cur(), "statement with more than " + std::to_string(MaxStatementOperations) +
                               " operators, member accesses and calls; the rest of the script "
                               "is not read");
            m_pos = m_tokens.size() - 1;
        }
        return false;
    }

    NodeIndex Binary(Operator op, const Token& first, NodeIndex left, NodeIndex right) {
        const NodeIndex node = NewNode(NodeKind::Binary, first);
        m_tree.nodes[node].op = op;
        AddChild(node, left);
        AddChild(node, right);
        Finish(node);
        return node;
    }

    NodeIndex Unary(Operator op, const Token& first, NodeIndex operand) {
        const NodeIndex node = NewNode(NodeKind::Unary, first);
        m_tree.nodes[node].op = op;
        AddChild(node, operand);
        Finish(node);
        return node;
    }

    NodeIndex ParseLevel(Level level) {
        const Token& first = Cur();
        if (level == Level::Not) {
            if (!IsKeyword(Keyword::Not))
                return ParseLevel(Level::Compare);
            Advance();
            DepthGuard guard(m_depth);
            if (TooDeep())
                return NoNode;
            return Unary(Operator::Not, first, ParseLevel(Level::Not));
        }
        if (level == Level::Negate) {
            if (!Is(TokenKind::Minus) && !Is(TokenKind::Plus))
                return ParseLevel(Level::Power);
            const Operator op = Is(TokenKind::Minus) ? Operator::Negate : Operator::UnaryPlus;
            Advance();
            DepthGuard guard(m_depth);
            if (TooDeep())
                return NoNode;
            return Unary(op, first, ParseLevel(Level::Negate));
        }
        if (level == Level::Power) {
            NodeIndex left = ParseOperand();
            while (Is(TokenKind::Caret)) {
                Advance();
                if (!CountOperation())
                    return left;
                // "2 ^ -1": a sign may open the right operand.
                const NodeIndex right = Is(TokenKind::Minus) || Is(TokenKind::Plus)
                                            ? ParseLevel(Level::Negate)
                                            : ParseOperand();
                left = Binary(Operator::Exponent, first, left, right);
            }
            return left;
        }
        const Level next = static_cast<Level>(static_cast<uint8_t>(level) + 1);
        NodeIndex left = ParseLevel(next);
        for (;;) {
            const Operator op = BinaryOperatorAt(Cur(), level);
            if (op == Operator::None)
                return left;
            Advance();
            if (!CountOperation())
                return left;
            left = Binary(op, first, left, ParseLevel(next));
        }
    }

    NodeIndex Literal(NodeKind kind) {
        const NodeIndex node = NewNamed(kind, Cur(), Cur());
        Advance();
        Finish(node);
        return node;
    }

    NodeIndex ParseOperand() {
        const Token& first = Cur();
        switch (first.kind) {
        case TokenKind::Integer:
            return Literal(NodeKind::IntegerLiteral);
        case TokenKind::Float:
            return Literal(NodeKind::FloatLiteral);
        case TokenKind::String:
            return Literal(NodeKind::StringLiteral);
        case TokenKind::Date:
            return Literal(NodeKind::DateLiteral);
        case TokenKind::Identifier:
        case TokenKind::Dot:
            return ParseChain(nullptr);
        case TokenKind::LeftParen: {
            Advance();
            const NodeIndex node = NewNode(NodeKind::Parenthesized, first);
            AddChild(node, ParseExpression());
            Expect(TokenKind::RightParen, "')'", "to close the parenthesis");
            Finish(node);
            return node;
        }
        case TokenKind::Minus:
        case TokenKind::Plus:
            return ParseLevel(Level::Negate);
        case TokenKind::Keyword:
            break;
        default:
            ErrorAt(first, "expected an expression, found " + Describe(first));
            return NoNode;
        }
        switch (first.keyword) {
        case Keyword::True:
            return Literal(NodeKind::TrueLiteral);
        case Keyword::False:
            return Literal(NodeKind::FalseLiteral);
        case Keyword::Nothing:
            return Literal(NodeKind::NothingLiteral);
        case Keyword::Empty:
            return Literal(NodeKind::EmptyLiteral);
        case Keyword::Null:
            return Literal(NodeKind::NullLiteral);
        case Keyword::Me:
            return ParseChain(nullptr);
        case Keyword::Not:
            return ParseLevel(Level::Not);
        case Keyword::New: {
            Advance();
            const NodeIndex node = NewNode(NodeKind::New, first);
            if (ExpectName("'New'")) {
                SetText(node, Cur());
                Advance();
            }
            Finish(node);
            return node;
        }
        default:
            break;
        }
        ErrorAt(first, "expected an expression, found keyword " + Describe(first));
        return NoNode;
    }
};

} // namespace

SyntaxTree ParseScript(std::string_view source) {
    SyntaxTree tree;
    // Positions are 32-bit; a larger text is refused whole rather than read with wrong ones.
    if (source.size() >= MaxScriptBytes) {
        tree.nodes.push_back(Node{});
        tree.errors.push_back({{1, 1, 0},
                               "script of " + std::to_string(source.size()) +
                                   " bytes is larger than the parser reads (" +
                                   std::to_string(MaxScriptBytes) + " bytes)"});
        return tree;
    }
    tree.source.assign(source);
    LexResult lexed = Tokenize(tree.source);
    // Real scripts make about two nodes for every three tokens; growing the array would copy it.
    tree.nodes.reserve(lexed.tokens.size() * 3 / 4 + 16);
    Parser(tree, lexed).Run();
    tree.comments = std::move(lexed.comments);
    // Lexer and parser errors by position; behind the first error of a line the others on it
    // mostly follow from it, so only the first is kept.
    // The lexer's come first, so at one position its more precise word wins.
    std::vector<SyntaxError> errors = std::move(lexed.errors);
    errors.insert(errors.end(), std::make_move_iterator(tree.errors.begin()),
                  std::make_move_iterator(tree.errors.end()));
    std::stable_sort(errors.begin(), errors.end(), [](const SyntaxError& a, const SyntaxError& b) {
        return a.position.offset < b.position.offset;
    });
    errors.erase(std::unique(errors.begin(), errors.end(),
                             [](const SyntaxError& a, const SyntaxError& b) {
                                 return a.position.line == b.position.line;
                             }),
                 errors.end());
    tree.errors = std::move(errors);
    return tree;
}

} // namespace talvor::host::vbscript
