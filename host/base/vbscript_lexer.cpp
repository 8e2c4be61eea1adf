// One pass over the bytes with a class table. Bytes above 0x7F are taken as letters, so names
// written in a double-byte or UTF-8 code page read as names and strings keep their bytes.
#include "host/base/vbscript_lexer.h"

#include <algorithm>
#include <array>
#include <string>

namespace talvor::host::vbscript {
namespace {

enum CharClass : uint8_t {
    Other = 0,
    Letter = 1,
    Digit = 2,
    Blank = 4,
    LineEnd = 8,
    HexDigit = 16,
};

constexpr std::array<uint8_t, 256> MakeClasses() {
    std::array<uint8_t, 256> classes{};
    for (int c = 'a'; c <= 'z'; ++c)
        classes[c] = Letter;
    for (int c = 'A'; c <= 'Z'; ++c)
        classes[c] = Letter;
    for (int c = 0x80; c <= 0xFF; ++c)
        classes[c] = Letter;
    for (int c = '0'; c <= '9'; ++c)
        classes[c] = Digit | HexDigit;
    for (int c = 'a'; c <= 'f'; ++c)
        classes[c] |= HexDigit;
    for (int c = 'A'; c <= 'F'; ++c)
        classes[c] |= HexDigit;
    classes[' '] = Blank;
    classes['\t'] = Blank;
    classes['\v'] = Blank;
    classes['\f'] = Blank;
    classes['\r'] = LineEnd;
    classes['\n'] = LineEnd;
    return classes;
}

constexpr std::array<uint8_t, 256> Classes = MakeClasses();

inline uint8_t ClassOf(char c) {
    return Classes[static_cast<unsigned char>(c)];
}

struct KeywordEntry {
    const char* text;
    Keyword keyword;
};

// Lower-case spelling, grouped by length for the lookup below.
constexpr KeywordEntry KeywordTable[] = {
    {"do", Keyword::Do},
    {"if", Keyword::If},
    {"in", Keyword::In},
    {"is", Keyword::Is},
    {"me", Keyword::Me},
    {"on", Keyword::On},
    {"or", Keyword::Or},
    {"to", Keyword::To},
    {"and", Keyword::And},
    {"dim", Keyword::Dim},
    {"end", Keyword::End},
    {"eqv", Keyword::Eqv},
    {"for", Keyword::For},
    {"imp", Keyword::Imp},
    {"mod", Keyword::Mod},
    {"new", Keyword::New},
    {"not", Keyword::Not},
    {"set", Keyword::Set},
    {"sub", Keyword::Sub},
    {"xor", Keyword::Xor},
    {"call", Keyword::Call},
    {"case", Keyword::Case},
    {"each", Keyword::Each},
    {"else", Keyword::Else},
    {"exit", Keyword::Exit},
    {"loop", Keyword::Loop},
    {"next", Keyword::Next},
    {"null", Keyword::Null},
    {"stop", Keyword::Stop},
    {"then", Keyword::Then},
    {"true", Keyword::True},
    {"wend", Keyword::Wend},
    {"with", Keyword::With},
    {"byref", Keyword::ByRef},
    {"byval", Keyword::ByVal},
    {"class", Keyword::Class},
    {"const", Keyword::Const},
    {"empty", Keyword::Empty},
    {"erase", Keyword::Erase},
    {"false", Keyword::False},
    {"redim", Keyword::ReDim},
    {"until", Keyword::Until},
    {"while", Keyword::While},
    {"elseif", Keyword::ElseIf},
    {"option", Keyword::Option},
    {"public", Keyword::Public},
    {"select", Keyword::Select},
    {"nothing", Keyword::Nothing},
    {"private", Keyword::Private},
    {"function", Keyword::Function},
    {"randomize", Keyword::Randomize},
};

constexpr std::size_t LongestKeyword = 9;

inline char Lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c;
}

Keyword LookUpKeyword(const char* text, std::size_t length) {
    if (length < 2 || length > LongestKeyword)
        return Keyword::None;
    char lower[LongestKeyword];
    for (std::size_t i = 0; i < length; ++i)
        lower[i] = Lower(text[i]);
    for (const KeywordEntry& entry : KeywordTable) {
        if (entry.text[0] != lower[0])
            continue;
        std::size_t i = 1;
        while (i < length && entry.text[i] == lower[i])
            ++i;
        if (i == length && entry.text[length] == '\0')
            return entry.keyword;
    }
    return Keyword::None;
}

bool IsRem(const char* text, std::size_t length) {
    return length == 3 && Lower(text[0]) == 'r' && Lower(text[1]) == 'e' && Lower(text[2]) == 'm';
}

class Lexer {
public:
    explicit Lexer(std::string_view source) : m_text(source) {}

    LexResult Run() {
        // Room for about one token per five bytes keeps reallocation rare on real scripts.
        m_result.tokens.reserve(m_text.size() / 5 + 16);
        if (m_text.substr(0, 3) == "\xEF\xBB\xBF")
            m_pos = m_lineStart = 3;
        while (m_pos < m_text.size())
            Next();
        m_spaceBefore = true;
        Push(TokenKind::EndOfScript, m_pos, 0);
        return std::move(m_result);
    }

private:
    std::string_view m_text;
    std::size_t m_pos = 0;
    std::size_t m_lineStart = 0;
    uint32_t m_line = 1;
    bool m_spaceBefore = true;
    bool m_continued = false;
    LexResult m_result;

    SourcePosition PositionAt(std::size_t offset) const {
        return {m_line, static_cast<uint32_t>(offset - m_lineStart + 1),
                static_cast<uint32_t>(offset)};
    }

    // The error covers the token just pushed when it starts there, else one byte.
    void Error(std::size_t offset, std::string message) {
        uint32_t length = 1;
        if (!m_result.tokens.empty() && m_result.tokens.back().offset == offset)
            length = std::max<uint32_t>(1, m_result.tokens.back().length);
        m_result.errors.push_back({PositionAt(offset), std::move(message), length});
    }

    Token& Push(TokenKind kind, std::size_t offset, std::size_t length) {
        Token token;
        token.kind = kind;
        token.flags =
            (m_spaceBefore ? TokenFlag::SpaceBefore : 0) | (m_continued ? TokenFlag::Continued : 0);
        token.line = m_line;
        token.column = static_cast<uint32_t>(offset - m_lineStart + 1);
        token.offset = static_cast<uint32_t>(offset);
        token.length = static_cast<uint32_t>(length);
        m_spaceBefore = false;
        m_continued = false;
        m_result.tokens.push_back(token);
        return m_result.tokens.back();
    }

    // Consumes "\r\n", "\n" or a lone "\r" at m_pos and starts the next line.
    void EndLine() {
        if (m_text[m_pos] == '\r' && m_pos + 1 < m_text.size() && m_text[m_pos + 1] == '\n')
            ++m_pos;
        ++m_pos;
        ++m_line;
        m_lineStart = m_pos;
        m_spaceBefore = true;
    }

    std::size_t LineEndFrom(std::size_t offset) const {
        while (offset < m_text.size() && !(ClassOf(m_text[offset]) & LineEnd))
            ++offset;
        return offset;
    }

    void Comment(std::size_t start) {
        const std::size_t end = LineEndFrom(start);
        m_result.comments.push_back({PositionAt(start), PositionAt(end)});
        m_pos = end;
    }

    void Next() {
        const char c = m_text[m_pos];
        const uint8_t cls = ClassOf(c);
        if (cls & Blank) {
            ++m_pos;
            m_spaceBefore = true;
            return;
        }
        if (cls & LineEnd) {
            Push(TokenKind::NewLine, m_pos, 0);
            EndLine();
            return;
        }
        if (cls & Letter)
            return Name();
        if (cls & Digit)
            return Number(m_pos);
        const std::size_t start = m_pos;
        switch (c) {
        case '\'':
            return Comment(start);
        case '"':
            return String();
        case '#':
            return Delimited(TokenKind::Date, '#', "date literal");
        case '[':
            return Delimited(TokenKind::Identifier, ']', "bracketed name");
        case '_':
            return Continuation();
        case '.':
            // No member name starts with a digit, so ".5" is always a number.
            if (m_pos + 1 < m_text.size() && (ClassOf(m_text[m_pos + 1]) & Digit))
                return Number(m_pos);
            return Single(TokenKind::Dot);
        case '&':
            return Ampersand();
        case '<':
            if (Peek(1) == '>')
                return Double(TokenKind::NotEqual);
            if (Peek(1) == '=')
                return Double(TokenKind::LessEqual);
            return Single(TokenKind::Less);
        case '>':
            if (Peek(1) == '=')
                return Double(TokenKind::GreaterEqual);
            return Single(TokenKind::Greater);
        case '=':
            return Single(TokenKind::Equal);
        case ':':
            return Single(TokenKind::Colon);
        case '(':
            return Single(TokenKind::LeftParen);
        case ')':
            return Single(TokenKind::RightParen);
        case ',':
            return Single(TokenKind::Comma);
        case '+':
            return Single(TokenKind::Plus);
        case '-':
            return Single(TokenKind::Minus);
        case '*':
            return Single(TokenKind::Star);
        case '/':
            return Single(TokenKind::Slash);
        case '\\':
            return Single(TokenKind::Backslash);
        case '^':
            return Single(TokenKind::Caret);
        default:
            break;
        }
        Push(TokenKind::Invalid, start, 1);
        if (static_cast<unsigned char>(c) < 0x20)
            Error(start, "unexpected control character 0x" + Hex(static_cast<unsigned char>(c)));
        else
            Error(start, std::string("unexpected character '") + c + "'");
        ++m_pos;
    }

    static std::string Hex(unsigned value) {
        const char* digits = "0123456789abcdef";
        return {digits[value >> 4], digits[value & 15]};
    }

    char Peek(std::size_t ahead) const {
        return m_pos + ahead < m_text.size() ? m_text[m_pos + ahead] : '\0';
    }

    void Single(TokenKind kind) {
        Push(kind, m_pos, 1);
        ++m_pos;
    }

    void Double(TokenKind kind) {
        Push(kind, m_pos, 2);
        m_pos += 2;
    }

    void Name() {
        const std::size_t start = m_pos;
        ++m_pos;
        while (m_pos < m_text.size() &&
               (ClassOf(m_text[m_pos]) & (Letter | Digit) || m_text[m_pos] == '_'))
            ++m_pos;
        const std::size_t length = m_pos - start;
        if (IsRem(m_text.data() + start, length))
            return Comment(start);
        const Keyword keyword = LookUpKeyword(m_text.data() + start, length);
        Token& token = Push(keyword == Keyword::None ? TokenKind::Identifier : TokenKind::Keyword,
                            start, length);
        token.keyword = keyword;
    }

    std::size_t SkipDigits(std::size_t offset, uint8_t cls) const {
        while (offset < m_text.size() && (ClassOf(m_text[offset]) & cls))
            ++offset;
        return offset;
    }

    void Number(std::size_t start) {
        std::size_t end = SkipDigits(start, Digit);
        TokenKind kind = TokenKind::Integer;
        if (end < m_text.size() && m_text[end] == '.') {
            kind = TokenKind::Float;
            end = SkipDigits(end + 1, Digit);
        }
        if (end < m_text.size() && (m_text[end] == 'e' || m_text[end] == 'E')) {
            std::size_t exponent = end + 1;
            if (exponent < m_text.size() && (m_text[exponent] == '+' || m_text[exponent] == '-'))
                ++exponent;
            const std::size_t digitsEnd = SkipDigits(exponent, Digit);
            if (digitsEnd == exponent) {
                m_pos = end;
                Push(TokenKind::Invalid, start, end - start);
                Error(start, "malformed number: the exponent has no digits");
                m_pos = SkipName(end);
                return;
            }
            kind = TokenKind::Float;
            end = digitsEnd;
        }
        if (end < m_text.size() && (ClassOf(m_text[end]) & Letter || m_text[end] == '_')) {
            Push(TokenKind::Invalid, start, end - start);
            Error(start, "malformed number: a letter follows the digits");
            m_pos = SkipName(end);
            return;
        }
        Push(kind, start, end - start);
        m_pos = end;
    }

    std::size_t SkipName(std::size_t offset) const {
        while (offset < m_text.size() &&
               (ClassOf(m_text[offset]) & (Letter | Digit) || m_text[offset] == '_'))
            ++offset;
        return offset;
    }

    // "&H1F", "&O17" (each may end in a type "&"), or the concatenation operator.
    void Ampersand() {
        const char radix = Lower(Peek(1));
        const uint8_t cls = radix == 'h' ? HexDigit : radix == 'o' ? Digit : 0;
        const std::size_t digits = m_pos + 2;
        if (cls == 0 || digits >= m_text.size() || !(ClassOf(m_text[digits]) & cls))
            return Single(TokenKind::Ampersand);
        std::size_t end = SkipDigits(digits, cls);
        if (radix == 'o') {
            for (std::size_t i = digits; i < end; ++i) {
                if (m_text[i] > '7') {
                    Push(TokenKind::Invalid, m_pos, end - m_pos);
                    Error(m_pos, std::string("malformed octal number: '") + m_text[i] +
                                     "' is not an octal digit");
                    m_pos = end;
                    return;
                }
            }
        }
        if (end < m_text.size() && m_text[end] == '&')
            ++end;
        Push(TokenKind::Integer, m_pos, end - m_pos);
        m_pos = end;
    }

    void String() {
        const std::size_t start = m_pos;
        std::size_t i = m_pos + 1;
        for (;;) {
            while (i < m_text.size() && m_text[i] != '"' && !(ClassOf(m_text[i]) & LineEnd))
                ++i;
            if (i < m_text.size() && m_text[i] == '"') {
                if (i + 1 < m_text.size() && m_text[i + 1] == '"') {
                    i += 2; // a doubled quote stands for one quote inside the string
                    continue;
                }
                Push(TokenKind::String, start, i + 1 - start);
                m_pos = i + 1;
                return;
            }
            break;
        }
        Push(TokenKind::String, start, i - start);
        Error(start, "unterminated string: the closing '\"' is missing on this line");
        m_pos = i;
    }

    // A date "#...#" or a bracketed name "[...]": one line at most, the text without its
    // delimiters is the token.
    void Delimited(TokenKind kind, char close, const char* what) {
        const std::size_t start = m_pos;
        std::size_t i = m_pos + 1;
        while (i < m_text.size() && m_text[i] != close && !(ClassOf(m_text[i]) & LineEnd))
            ++i;
        if (i >= m_text.size() || m_text[i] != close) {
            Push(TokenKind::Invalid, start, i - start);
            Error(start, std::string("unterminated ") + what + ": the closing '" + close +
                             "' is missing on this line");
            m_pos = i;
            return;
        }
        if (kind == TokenKind::Date) {
            if (i == start + 1)
                Error(start, "empty date literal '##'");
            Push(kind, start, i + 1 - start);
        } else {
            Push(kind, start + 1, i - start - 1).flags |= TokenFlag::Bracketed;
        }
        m_pos = i + 1;
    }

    // " _" at a line end joins the next line to this one.
    void Continuation() {
        const std::size_t start = m_pos;
        std::size_t i = m_pos + 1;
        while (i < m_text.size() && (ClassOf(m_text[i]) & Blank))
            ++i;
        if (i < m_text.size() && !(ClassOf(m_text[i]) & LineEnd)) {
            Push(TokenKind::Invalid, start, 1);
            Error(start, "unexpected character '_': a line continuation must end its line");
            m_pos = start + 1;
            return;
        }
        m_pos = i;
        if (m_pos < m_text.size())
            EndLine();
        m_spaceBefore = true;
        m_continued = true;
    }
};

} // namespace

LexResult Tokenize(std::string_view source) {
    return Lexer(source).Run();
}

const char* KeywordText(Keyword keyword) {
    static const char* const Texts[] = {
        "",        "And",    "ByRef",     "ByVal",  "Call",    "Case", "Class", "Const",  "Dim",
        "Do",      "Each",   "Else",      "ElseIf", "Empty",   "End",  "Eqv",   "Erase",  "Exit",
        "False",   "For",    "Function",  "If",     "Imp",     "In",   "Is",    "Loop",   "Me",
        "Mod",     "New",    "Next",      "Not",    "Nothing", "Null", "On",    "Option", "Or",
        "Private", "Public", "Randomize", "ReDim",  "Select",  "Set",  "Stop",  "Sub",    "Then",
        "To",      "True",   "Until",     "Wend",   "While",   "With", "Xor"};
    const auto index = static_cast<std::size_t>(keyword);
    return index < std::size(Texts) ? Texts[index] : "";
}

} // namespace talvor::host::vbscript
