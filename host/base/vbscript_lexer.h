// Splits VBScript source into tokens: names (plain and [bracketed]), keywords, literals,
// operators and statement ends. Comments and line continuations disappear here; comments are
// recorded as ranges for the tools that fold or colour them.
#pragma once

#include "host/base/vbscript_syntax_tree.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace talvor::host::vbscript {

enum class TokenKind : uint8_t {
    EndOfScript,
    NewLine, // a line end that is not continued
    Colon,
    Identifier,
    Keyword,
    Integer, // decimal, &H and &O
    Float,
    String,
    Date,
    LeftParen,
    RightParen,
    Comma,
    Dot,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
    Plus,
    Minus,
    Star,
    Slash,
    Backslash,
    Caret,
    Ampersand,
    Invalid, // a character VBScript has no use for; the lexer has reported it
};

// Reserved words. Words that only mean something in one place (Step, Explicit, Error, Resume,
// GoTo, Preserve, Default, Property, Get, Let) stay identifiers; the parser reads them there.
enum class Keyword : uint8_t {
    None,
    And,
    ByRef,
    ByVal,
    Call,
    Case,
    Class,
    Const,
    Dim,
    Do,
    Each,
    Else,
    ElseIf,
    Empty,
    End,
    Eqv,
    Erase,
    Exit,
    False,
    For,
    Function,
    If,
    Imp,
    In,
    Is,
    Loop,
    Me,
    Mod,
    New,
    Next,
    Not,
    Nothing,
    Null,
    On,
    Option,
    Or,
    Private,
    Public,
    Randomize,
    ReDim,
    Select,
    Set,
    Stop,
    Sub,
    Then,
    To,
    True,
    Until,
    Wend,
    While,
    With,
    Xor,
};

// Bits of Token::flags.
namespace TokenFlag {
constexpr uint8_t SpaceBefore = 1; // blank, tab, line start or continuation before it
constexpr uint8_t Bracketed = 2;   // an identifier written [like this]
constexpr uint8_t Continued = 4;   // a line continuation " _" stands before it
} // namespace TokenFlag

struct Token {
    TokenKind kind = TokenKind::EndOfScript;
    Keyword keyword = Keyword::None;
    uint8_t flags = 0;
    uint32_t line = 0;
    uint32_t column = 0;
    uint32_t offset = 0;
    uint32_t length = 0; // of the text the token stands for (a bracketed name without brackets)
};

struct LexResult {
    std::vector<Token> tokens; // always ends with EndOfScript
    std::vector<SyntaxError> errors;
    std::vector<CommentRange> comments;
};

// Never fails: an unterminated string or date runs to its line end, a stray character becomes
// an Invalid token; each is reported in errors.
LexResult Tokenize(std::string_view source);

const char* KeywordText(Keyword keyword); // as VBScript spells it: "ElseIf"

} // namespace talvor::host::vbscript
