// Both line parsers on arbitrary bytes: every language code 0 to 36, any start cookie, three
// code pages, the built-in rules or rules taken from the input. Checks the run-list bound with
// a buffer of exactly the promised size, non-decreasing run starts inside the line, colour
// indices, the same cookie without a run list, and, outside HTML and XML, the same runs as the
// plain reference parser.
//
// Input: byte 0 language (mod 37); bytes 1-4 start cookie; byte 5 options: bits 0-1 code page
// (1252, 936, 65001, 1252), bit 2 rules from the input, bit 3 escapes, bit 4 exact case.
// With bit 2, byte 6 is the length of a rule block whose fields, split at 0x01, are: word bytes,
// line comments 0 and 1, block comment openers 0 and 1, closers 0 and 1, string opener and
// closer, literal opener and closer. The rest is the line.
#include "platform/app/profile.h"
#include "platform/codepage/code_page.h"
#include "syntax/document_colourer.h"
#include "syntax/languages.h"
#include "tests/reference/reference_line_parser.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

[[noreturn]] void Fail(const char* what, unsigned language, const std::string& line) {
    std::fprintf(stderr, "line_parser_fuzz: %s (language %u, %zu bytes)\n", what, language,
                 line.size());
    std::abort();
}

// One loaded rule set per language code, loaded on first use.
CTalvorSyntax& Loaded(unsigned language) {
    static CTalvorSyntax loaded[37];
    static bool ready[37];
    if (!ready[language]) {
        talvor::syntax::DocumentColourer(loaded[language]).LoadLanguage(language);
        ready[language] = true;
    }
    return loaded[language];
}

char* Copy(const std::string& text) {
    if (text.empty())
        return nullptr;
    char* copy = new char[text.size() + 1];
    std::memcpy(copy, text.c_str(), text.size() + 1); // stops at a NUL inside, as C strings do
    return copy;
}

// Replaces the rule set with the fields of the block; a field's count is its slot plus 1.
void UseRules(CTalvorSyntax& parser, const std::string& block) {
    std::vector<std::string> fields(11);
    std::size_t field = 0;
    for (char c : block) {
        if (c == '\x01') {
            if (++field == fields.size())
                break;
            continue;
        }
        fields[field] += c;
    }
    parser.m_strInString = CString(fields[0]);
    parser.m_nInStringCount = parser.m_strInString.GetLength();
    char** slots[] = {&parser.m_pszLineComment[0],    &parser.m_pszLineComment[1],
                      &parser.m_pszBeginCommentEx[0], &parser.m_pszBeginCommentEx[1],
                      &parser.m_pszEndCommentEx[0],   &parser.m_pszEndCommentEx[1],
                      &parser.m_pszBeginString,       &parser.m_pszEndString,
                      &parser.m_pszBeginChar,         &parser.m_pszEndChar};
    int* counts[] = {&parser.m_nLineCommentCount,    &parser.m_nLineCommentCount,
                     &parser.m_nBeginCommentExCount, &parser.m_nBeginCommentExCount,
                     &parser.m_nEndCommentExCount,   &parser.m_nEndCommentExCount,
                     &parser.m_nBeginStringCount,    &parser.m_nEndStringCount,
                     &parser.m_nBeginCharCount,      &parser.m_nEndCharCount};
    const int slotIndex[] = {0, 1, 0, 1, 0, 1, 0, 0, 0, 0};
    for (int i = 0; i < 10; ++i) {
        *counts[i] = 0;
    }
    for (int i = 0; i < 10; ++i) {
        delete[] * slots[i];
        *slots[i] = Copy(fields[static_cast<std::size_t>(i) + 1]);
        if (*slots[i] != nullptr)
            *counts[i] = slotIndex[i] + 1;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // Rules and keywords come from the built-in tables, never from a profile on this machine.
    AfxGetApp()->SetProfileStore(std::make_shared<talvor::platform::MemoryProfile>());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 6)
        return 0;
    const unsigned language = data[0] % 37;
    const unsigned long cookie =
        static_cast<unsigned long>(data[1]) | (static_cast<unsigned long>(data[2]) << 8) |
        (static_cast<unsigned long>(data[3]) << 16) | (static_cast<unsigned long>(data[4]) << 24);
    const std::uint8_t options = data[5];
    const unsigned codePages[] = {
        talvor::platform::CodePageWestern, talvor::platform::CodePageSimplifiedChinese,
        talvor::platform::CodePageUtf8, talvor::platform::CodePageWestern};
    talvor::platform::SetSystemCodePage(codePages[options & 3]);
    std::size_t at = 6;

    CTalvorSyntax custom;
    CTalvorSyntax* parser = &Loaded(language);
    if (options & 4) {
        if (at >= size)
            return 0;
        const std::size_t blockSize = data[at++];
        if (blockSize > size - at)
            return 0;
        custom = *parser;
        UseRules(custom, std::string(reinterpret_cast<const char*>(data + at), blockSize));
        custom.m_bEscape = (options & 8) ? 1 : 0;
        custom.m_bCase = (options & 16) ? 1 : 0;
        parser = &custom;
        at += blockSize;
    }
    const std::string line(reinterpret_cast<const char*>(data + at), size - at);
    const bool html = talvor::syntax::UsesTagParser(language);

    CString text(line);
    talvor::syntax::DocumentColourer colourer(*parser);
    const std::size_t bound = html ? 2 * line.size() + 1 : line.size() + 1;
    if (colourer.RunRoom(line.size()) != bound)
        Fail("run room is not the promised bound", language, line);
    const talvor::syntax::LineColours colours = colourer.ColourLine(cookie, text);
    const COLORINFO* runs = colours.runs;
    const int count = colours.count;
    const unsigned long out = colours.cookie;
    if (count < 0 || static_cast<std::size_t>(count) > bound)
        Fail("more runs than the bound", language, line);
    for (int i = 0; i < count; ++i) {
        if (runs[i].m_nCharPos < 0 || runs[i].m_nCharPos > static_cast<int>(line.size()))
            Fail("run starts outside the line", language, line);
        if (i > 0 && runs[i].m_nCharPos < runs[i - 1].m_nCharPos)
            Fail("run starts go back", language, line);
        if (runs[i].m_nColorIndex < COLOR_COMMENT || runs[i].m_nColorIndex > COLOR_CHAR)
            Fail("unknown colour index", language, line);
    }
    if (text.Str() != line)
        Fail("the line was changed", language, line);

    // Without a run list only the cookie is worked out; it must be the same. (The HTML parser
    // without comment rules returns the start cookie then, as documented.)
    const unsigned long alone = colourer.CookieAtEnd(cookie, text);
    const bool htmlWithoutComments = html && parser->m_nBeginCommentExCount == 0;
    if (alone != (htmlWithoutComments ? cookie : out))
        Fail("cookie differs without a run list", language, line);

    if (!html) {
        const talvor::testing::ReferenceResult expected =
            talvor::testing::ReferenceParseLine(*parser, cookie, line);
        if (expected.cookie != out || expected.runs.size() != static_cast<std::size_t>(count))
            Fail("differs from the reference parser", language, line);
        for (int i = 0; i < count; ++i) {
            if (expected.runs[static_cast<std::size_t>(i)].m_nCharPos != runs[i].m_nCharPos ||
                expected.runs[static_cast<std::size_t>(i)].m_nColorIndex != runs[i].m_nColorIndex)
                Fail("differs from the reference parser", language, line);
        }
    }
    return 0;
}
