// Reader for Windows resource-script text: the preprocessor lines the library's scripts use
// and STRINGTABLE blocks. One tokenizer walks the text; every fault names its line, and the
// included file it is in.
#include "platform/app/resource_script.h"

#include "platform/app/menu.h"

#include "platform/core/ascii.h"
#include "platform/files/file_system.h"

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <vector>

namespace talvor::platform {
namespace {

enum class TokenKind { End, Word, Number, String, Comma, Open, Close, Other };

// Included files may include others; a file that includes itself stops at the depth limit,
// one that includes itself twice at the count limit.
constexpr int MaxIncludeDepth = 16;
constexpr int MaxIncludes = 256;

std::map<std::string, std::string>& RegisteredIncludes() {
    static std::map<std::string, std::string> includes;
    return includes;
}

bool FindRegisteredInclude(const std::string& name, std::string& text) {
    const auto& includes = RegisteredIncludes();
    auto found = includes.find(name);
    if (found == includes.end()) {
        // "resources/talvor_res_ids.h" finds the header registered as "talvor_res_ids.h".
        std::size_t slash = name.find_last_of("/\\");
        if (slash == std::string::npos)
            return false;
        found = includes.find(name.substr(slash + 1));
        if (found == includes.end())
            return false;
    }
    text = found->second;
    return true;
}

// What every file of one script shares: the names defined so far and the includes not found.
struct ScriptState {
    const ResourceIncludeReader& readInclude;
    std::map<std::string, UINT> defines;
    std::vector<std::string> missingIncludes;
    int includeCount = 0;
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::string text; // word, decoded string, or the character
    std::uint64_t number = 0;
    int line = 1;
};

class ScriptReader {
public:
    ScriptReader(std::string_view script, ResourceModule& module, std::string& error,
                 ScriptState& state, std::string source = {}, int depth = 0)
        : m_text(script), m_module(module), m_error(error), m_state(state),
          m_source(std::move(source)), m_depth(depth) {}

    bool Read() {
        for (;;) {
            Token token;
            if (!Next(token))
                return false;
            if (token.kind == TokenKind::End)
                return true;
            if (token.kind != TokenKind::Word && token.kind != TokenKind::Number)
                return Fail(token.line, "unexpected '" + token.text + "' at top level");
            if (token.kind == TokenKind::Word && Upper(token.text) == "STRINGTABLE") {
                if (!ReadStringTable())
                    return false;
            } else if (token.kind == TokenKind::Word && Upper(token.text) == "LANGUAGE") {
                if (!SkipStatement(token.line))
                    return false;
            } else if (!ReadNamedResource(token)) {
                return false;
            }
        }
    }

private:
    static std::string Upper(std::string s) {
        for (char& c : s)
            c = AsciiUpper(c);
        return s;
    }

    bool Fail(int line, const std::string& what) {
        m_error = "resources: " + (m_source.empty() ? std::string() : m_source + ": ") + "line " +
                  std::to_string(line) + ": " + what;
        return false;
    }

    // LANGUAGE x, y: two values separated by a comma.
    bool SkipStatement(int line) {
        Token a, comma, b;
        if (!Next(a) || !Next(comma) || !Next(b))
            return false;
        if (comma.kind != TokenKind::Comma)
            return Fail(line, "LANGUAGE needs two values separated by a comma");
        return true;
    }

    bool ReadStringTable() {
        Token token;
        // Optional memory flags (DISCARDABLE, PRELOAD, ...) stand before BEGIN.
        for (;;) {
            if (!Next(token))
                return false;
            if (token.kind == TokenKind::Open)
                break;
            if (token.kind != TokenKind::Word)
                return Fail(token.line, "expected BEGIN after STRINGTABLE");
        }
        for (;;) {
            if (!Next(token))
                return false;
            if (token.kind == TokenKind::Close)
                return true;
            if (token.kind == TokenKind::End)
                return Fail(token.line, "STRINGTABLE without END");
            std::optional<UINT> id = IdOf(token);
            if (!id)
                return false;
            int idLine = token.line;
            if (!Next(token))
                return false;
            if (token.kind == TokenKind::Comma && !Next(token))
                return false;
            if (token.kind != TokenKind::String)
                return Fail(token.line, "expected a string after id " + std::to_string(*id));
            if (!m_module.AddString(*id, token.text))
                return Fail(idLine, "string id " + std::to_string(*id) + " is defined twice");
        }
    }

    // "id MENU", "id TOOLBAR w, h": a resource with an id in front of its kind.
    bool ReadNamedResource(const Token& idToken) {
        // A word that names no id is a statement this reader doesn't know.
        if (idToken.kind == TokenKind::Word && m_state.defines.count(idToken.text) == 0)
            return Fail(idToken.line, "unsupported resource statement '" + idToken.text + "'");
        std::optional<UINT> id = IdOf(idToken);
        if (!id)
            return false;
        Token kind;
        if (!Next(kind))
            return false;
        const std::string upper = kind.kind == TokenKind::Word ? Upper(kind.text) : std::string();
        if (upper == "MENU") {
            auto menu = std::make_shared<MenuData>();
            if (!SkipToBegin("MENU") || !ReadMenuItems(*menu, 0))
                return false;
            m_module.AddMenu(*id, std::move(menu));
            return true;
        }
        if (upper == "TOOLBAR")
            return ReadToolBar(*id, kind.line);
        if (upper == "BITMAP")
            return ReadBitmap(*id, kind.line);
        return Fail(kind.line, "unsupported resource statement '" + kind.text + "'");
    }

    // Memory flags (DISCARDABLE, PRELOAD, ...) may stand before BEGIN.
    bool SkipToBegin(const char* what) {
        Token token;
        for (;;) {
            if (!Next(token))
                return false;
            if (token.kind == TokenKind::Open)
                return true;
            if (token.kind != TokenKind::Word)
                return Fail(token.line, std::string("expected BEGIN after ") + what);
        }
    }

    // Item options behind an item: GRAYED, INACTIVE, CHECKED, MENUBARBREAK, MENUBREAK, HELP.
    bool ReadItemOptions(Token& token, UINT& flags) {
        for (;;) {
            if (token.kind == TokenKind::Comma) {
                if (!Next(token))
                    return false;
                continue;
            }
            if (token.kind != TokenKind::Word)
                return true;
            const std::string option = Upper(token.text);
            if (option == "GRAYED")
                flags |= MF_GRAYED;
            else if (option == "INACTIVE")
                flags |= MF_DISABLED;
            else if (option == "CHECKED")
                flags |= MF_CHECKED;
            else if (option == "MENUBARBREAK")
                flags |= MF_MENUBARBREAK;
            else if (option == "MENUBREAK")
                flags |= MF_MENUBREAK;
            else if (option == "HELP")
                flags |= MF_HELP;
            else
                return true; // the next item's keyword
            if (!Next(token))
                return false;
        }
    }

    // The items of a menu or popup, after its BEGIN up to and including its END. The token
    // behind an item is read ahead, so the loop carries it.
    bool ReadMenuItems(MenuData& menu, int depth) {
        if (depth > 32)
            return Fail(m_line, "popups nested deeper than 32 levels");
        Token token;
        if (!Next(token))
            return false;
        for (;;) {
            if (token.kind == TokenKind::Close)
                return true;
            if (token.kind == TokenKind::End)
                return Fail(token.line, "MENU without END");
            const std::string keyword =
                token.kind == TokenKind::Word ? Upper(token.text) : std::string();
            const int line = token.line;
            if (keyword == "MENUITEM") {
                MenuItem item;
                if (!Next(token))
                    return false;
                if (token.kind == TokenKind::Word && Upper(token.text) == "SEPARATOR") {
                    item.flags = MF_SEPARATOR;
                    menu.items.push_back(std::move(item));
                    if (!Next(token))
                        return false;
                    continue;
                }
                if (token.kind != TokenKind::String)
                    return Fail(line, "expected a caption or SEPARATOR after MENUITEM");
                item.text = token.text;
                if (!Next(token))
                    return false;
                if (token.kind == TokenKind::Comma && !Next(token))
                    return false;
                std::optional<UINT> id = IdOf(token);
                if (!id)
                    return false;
                item.id = *id;
                if (!Next(token) || !ReadItemOptions(token, item.flags))
                    return false;
                menu.items.push_back(std::move(item));
                continue;
            }
            if (keyword == "POPUP") {
                MenuItem item;
                if (!Next(token))
                    return false;
                if (token.kind != TokenKind::String)
                    return Fail(line, "expected a caption after POPUP");
                item.text = token.text;
                if (!Next(token) || !ReadItemOptions(token, item.flags))
                    return false;
                if (token.kind != TokenKind::Open)
                    return Fail(token.line, "expected BEGIN after POPUP \"" + item.text + "\"");
                item.popup = std::make_shared<MenuData>();
                if (!ReadMenuItems(*item.popup, depth + 1))
                    return false;
                menu.items.push_back(std::move(item));
                if (!Next(token))
                    return false;
                continue;
            }
            return Fail(line,
                        "expected MENUITEM, POPUP or END in a menu, found '" + token.text + "'");
        }
    }

    // id BITMAP "file": the file is found as an included file is, beside the script or among
    // the registered includes; its bytes are decoded when the bitmap is first used.
    bool ReadBitmap(UINT id, int line) {
        Token file;
        if (!Next(file))
            return false;
        if (file.kind != TokenKind::String)
            return Fail(line, "BITMAP needs a file name in quotes");
        BitmapResource bitmap;
        if (!(m_state.readInclude && m_state.readInclude(file.text, bitmap.encoded)) &&
            !FindRegisteredInclude(file.text, bitmap.encoded))
            return Fail(line, "bitmap file \"" + file.text + "\" not found");
        if (bitmap.encoded.empty())
            return Fail(line, "bitmap file \"" + file.text + "\" is empty");
        m_module.AddBitmap(id, std::move(bitmap));
        return true;
    }

    // id TOOLBAR width, height BEGIN BUTTON id | SEPARATOR ... END
    bool ReadToolBar(UINT id, int line) {
        Token width, comma, height;
        if (!Next(width) || !Next(comma) || !Next(height))
            return false;
        if (width.kind != TokenKind::Number || comma.kind != TokenKind::Comma ||
            height.kind != TokenKind::Number || width.number == 0 || height.number == 0 ||
            width.number > 256 || height.number > 256)
            return Fail(line, "TOOLBAR needs a button width and height from 1 to 256");
        ToolBarResource toolBar;
        toolBar.buttonWidth = static_cast<int>(width.number);
        toolBar.buttonHeight = static_cast<int>(height.number);
        if (!SkipToBegin("TOOLBAR"))
            return false;
        for (;;) {
            Token token;
            if (!Next(token))
                return false;
            if (token.kind == TokenKind::Close)
                break;
            if (token.kind == TokenKind::End)
                return Fail(token.line, "TOOLBAR without END");
            const std::string keyword =
                token.kind == TokenKind::Word ? Upper(token.text) : std::string();
            if (keyword == "SEPARATOR") {
                toolBar.ids.push_back(0);
            } else if (keyword == "BUTTON") {
                if (!Next(token))
                    return false;
                std::optional<UINT> button = IdOf(token);
                if (!button)
                    return false;
                toolBar.ids.push_back(*button);
            } else {
                return Fail(token.line, "expected BUTTON, SEPARATOR or END in a tool bar");
            }
        }
        m_module.AddToolBar(id, std::move(toolBar));
        return true;
    }

    std::optional<UINT> IdOf(const Token& token) {
        if (token.kind == TokenKind::Number) {
            if (token.number > 0xFFFF) {
                Fail(token.line, "string id " + std::to_string(token.number) + " is above 65535");
                return std::nullopt;
            }
            return static_cast<UINT>(token.number);
        }
        if (token.kind == TokenKind::Word) {
            auto found = m_state.defines.find(token.text);
            if (found != m_state.defines.end())
                return found->second;
            std::string what = "unknown symbol '" + token.text + "'";
            for (const std::string& missing : m_state.missingIncludes)
                what += " (#include \"" + missing + "\" was not found)";
            Fail(token.line, what);
            return std::nullopt;
        }
        Fail(token.line, "expected a string id, found '" + token.text + "'");
        return std::nullopt;
    }

    void SkipToLineEnd() {
        while (m_pos < m_text.size() && m_text[m_pos] != '\n')
            ++m_pos;
    }

    // #include "name" or <name>: the file's definitions (and statements) are read in place.
    bool Include(std::string_view rest) {
        std::size_t open = rest.find_first_of("\"<");
        std::size_t close = open == std::string_view::npos
                                ? open
                                : rest.find(rest[open] == '"' ? '"' : '>', open + 1);
        if (close == std::string_view::npos || close == open + 1)
            return Fail(m_line, "#include needs a file name in quotes or angle brackets");
        std::string name(rest.substr(open + 1, close - open - 1));
        std::string text;
        bool found = (m_state.readInclude && m_state.readInclude(name, text)) ||
                     FindRegisteredInclude(name, text);
        if (!found) {
            m_state.missingIncludes.push_back(name);
            return true;
        }
        if (++m_state.includeCount > MaxIncludes)
            return Fail(m_line, "#include \"" + name + "\" is one more than " +
                                    std::to_string(MaxIncludes) + " included files");
        if (m_depth + 1 >= MaxIncludeDepth)
            return Fail(m_line, "#include \"" + name + "\" nests deeper than " +
                                    std::to_string(MaxIncludeDepth) + " files");
        return ScriptReader(text, m_module, m_error, m_state, name, m_depth + 1).Read();
    }

    // A preprocessor line: #define NAME value is kept, #include is read, the others are
    // passed over.
    bool Directive() {
        std::size_t start = m_pos;
        SkipToLineEnd();
        std::string_view line = m_text.substr(start, m_pos - start);
        std::size_t p = 1;
        auto skipBlanks = [&] {
            while (p < line.size() && (line[p] == ' ' || line[p] == '\t'))
                ++p;
        };
        auto word = [&] {
            std::size_t s = p;
            while (p < line.size() && !std::isspace(static_cast<unsigned char>(line[p])))
                ++p;
            return std::string(line.substr(s, p - s));
        };
        skipBlanks();
        std::string directive = word();
        if (directive == "include")
            return Include(line.substr(p));
        if (directive != "define")
            return true;
        skipBlanks();
        std::string name = word();
        skipBlanks();
        std::string value = word();
        if (name.empty() || value.empty())
            return Fail(m_line, "#define needs a name and a value");
        char* end = nullptr;
        unsigned long long number = std::strtoull(value.c_str(), &end, 0);
        if (end == value.c_str() || *end != '\0' || number > 0xFFFF)
            return Fail(m_line, "#define " + name + " needs a number up to 65535");
        m_state.defines[name] = static_cast<UINT>(number);
        return true;
    }

    bool ReadString(Token& token) {
        ++m_pos; // opening quote
        for (;;) {
            if (m_pos >= m_text.size())
                return Fail(token.line, "string without closing quote");
            char c = m_text[m_pos++];
            if (c == '\n')
                return Fail(token.line, "string without closing quote");
            if (c == '"') {
                if (m_pos < m_text.size() && m_text[m_pos] == '"') { // "" is one quote
                    token.text.push_back('"');
                    ++m_pos;
                    continue;
                }
                return true;
            }
            if (c != '\\') {
                token.text.push_back(c);
                continue;
            }
            if (m_pos >= m_text.size())
                return Fail(token.line, "string without closing quote");
            char e = m_text[m_pos++];
            switch (e) {
            case 'n':
                token.text.push_back('\n');
                break;
            case 't':
                token.text.push_back('\t');
                break;
            case 'r':
                token.text.push_back('\r');
                break;
            case 'a':
                token.text.push_back('\a');
                break;
            case '\\':
                token.text.push_back('\\');
                break;
            case '"':
                token.text.push_back('"');
                break;
            case 'x': {
                int value = 0, digits = 0;
                while (digits < 2 && m_pos < m_text.size() && HexDigitValue(m_text[m_pos]) >= 0) {
                    value = value * 16 + HexDigitValue(m_text[m_pos++]);
                    ++digits;
                }
                if (digits == 0)
                    return Fail(token.line, "\\x without hexadecimal digits");
                token.text.push_back(static_cast<char>(value));
                break;
            }
            default:
                if (e >= '0' && e <= '7') {
                    int value = e - '0', digits = 1;
                    while (digits < 3 && m_pos < m_text.size() && m_text[m_pos] >= '0' &&
                           m_text[m_pos] <= '7') {
                        value = value * 8 + (m_text[m_pos++] - '0');
                        ++digits;
                    }
                    token.text.push_back(static_cast<char>(value & 0xFF));
                } else {
                    token.text.push_back('\\'); // unknown escapes stay as written
                    token.text.push_back(e);
                }
            }
        }
    }

    bool Next(Token& token) {
        token = Token();
        for (;;) {
            while (m_pos < m_text.size() &&
                   std::isspace(static_cast<unsigned char>(m_text[m_pos]))) {
                if (m_text[m_pos] == '\n') {
                    ++m_line;
                    m_lineStart = true;
                }
                ++m_pos;
            }
            token.line = m_line;
            if (m_pos >= m_text.size())
                return true;
            char c = m_text[m_pos];
            if (c == '/' && m_pos + 1 < m_text.size() && m_text[m_pos + 1] == '/') {
                SkipToLineEnd();
                continue;
            }
            if (c == '/' && m_pos + 1 < m_text.size() && m_text[m_pos + 1] == '*') {
                std::size_t close = m_text.find("*/", m_pos + 2);
                if (close == std::string_view::npos)
                    return Fail(m_line, "comment without closing */");
                for (std::size_t i = m_pos; i < close; ++i)
                    if (m_text[i] == '\n')
                        ++m_line;
                m_pos = close + 2;
                continue;
            }
            if (c == '#' && m_lineStart) {
                if (!Directive())
                    return false;
                continue;
            }
            break;
        }
        m_lineStart = false;
        char c = m_text[m_pos];
        if (c == '"') {
            token.kind = TokenKind::String;
            return ReadString(token);
        }
        if (c == ',' || c == '{' || c == '}') {
            token.kind =
                c == ',' ? TokenKind::Comma : (c == '{' ? TokenKind::Open : TokenKind::Close);
            token.text = std::string(1, c);
            ++m_pos;
            return true;
        }
        if (std::isdigit(static_cast<unsigned char>(c))) {
            std::size_t start = m_pos;
            while (m_pos < m_text.size() && std::isalnum(static_cast<unsigned char>(m_text[m_pos])))
                ++m_pos;
            token.text = std::string(m_text.substr(start, m_pos - start));
            std::string digits = token.text;
            if (!digits.empty() && (digits.back() == 'L' || digits.back() == 'l'))
                digits.pop_back();
            char* end = nullptr;
            errno = 0;
            token.number = std::strtoull(digits.c_str(), &end, 0);
            if (end == digits.c_str() || *end != '\0' || errno == ERANGE)
                return Fail(token.line, "bad number '" + token.text + "'");
            token.kind = TokenKind::Number;
            return true;
        }
        if (std::isalpha(static_cast<unsigned char>(c)) || c == '_') {
            std::size_t start = m_pos;
            while (
                m_pos < m_text.size() &&
                (std::isalnum(static_cast<unsigned char>(m_text[m_pos])) || m_text[m_pos] == '_'))
                ++m_pos;
            token.text = std::string(m_text.substr(start, m_pos - start));
            std::string upper = Upper(token.text);
            if (upper == "BEGIN")
                token.kind = TokenKind::Open;
            else if (upper == "END")
                token.kind = TokenKind::Close;
            else
                token.kind = TokenKind::Word;
            return true;
        }
        token.kind = TokenKind::Other;
        token.text = std::string(1, c);
        ++m_pos;
        return true;
    }

    std::string_view m_text;
    ResourceModule& m_module;
    std::string& m_error;
    ScriptState& m_state;
    std::string m_source; // the included file's name; empty for the script itself
    int m_depth;
    std::size_t m_pos = 0;
    int m_line = 1;
    bool m_lineStart = true;
};

} // namespace

bool ParseResourceScript(std::string_view script, ResourceModule& module, std::string& error,
                         const ResourceIncludeReader& readInclude) {
    ScriptState state{readInclude, {}, {}};
    return ScriptReader(script, module, error, state).Read();
}

bool ParseResourceScriptFile(const std::string& path, ResourceModule& module, std::string& error) {
    std::string text;
    if (!ReadWholeFile(path, text, error))
        return false;
    std::size_t slash = path.find_last_of('/');
    std::string folder = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
    auto readBeside = [&folder](const std::string& name, std::string& included) {
        std::string ignored;
        std::string includePath = (!name.empty() && name[0] == '/') ? name : folder + name;
        return FileExists(includePath) && ReadWholeFile(includePath, included, ignored);
    };
    if (ParseResourceScript(text, module, error, readBeside))
        return true;
    error = path + ": " + error;
    return false;
}

void RegisterResourceInclude(const std::string& name, std::string text) {
    RegisteredIncludes()[name] = std::move(text);
}

} // namespace talvor::platform
