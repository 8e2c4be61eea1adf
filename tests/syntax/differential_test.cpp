// The library's line parser against the plain reference parser, on every line of the real
// corpus, from every kind of start cookie, in single-byte, double-byte and UTF-8 code pages.
#include "tests/reference/reference_line_parser.h"
#include "tests/syntax/parser_harness.h"

#include "platform/codepage/code_page.h"
#include "syntax/text_lines.h"
#include "tests/support/corpus.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::testing {
namespace {

// The corpus folder whose name starts with prefix ("8-" gives "8-cpp"), or "".
std::string CorpusFolderOf(const std::string& prefix) {
    for (const char* folder :
         {"0-ada",   "2-asm",    "3-basic",     "4-bat",     "6-clipper",  "7-cobol",
          "8-cpp",   "9-csharp", "10-dataflex", "11-eiffel", "12-fortran", "15-ini",
          "16-java", "17-jsp",   "18-limbo",    "19-lisp",   "20-modula2", "21-object-pascal",
          "23-perl", "24-php",   "26-progress", "27-python", "29-rexx",    "30-ruby",
          "32-sql",  "33-vhdl"}) {
        if (std::string(folder).rfind(prefix, 0) == 0)
            return folder;
    }
    return "";
}

// Compares one line; returns false (after reporting) on a difference.
bool SameAsReference(ParserUnderTest& parser, unsigned long cookie, std::string_view text,
                     const std::string& where) {
    const std::string line(text);
    CString argument(line);
    std::vector<COLORINFO> runs(line.size() + 1);
    int count = 0;
    const unsigned long out = parser.ParseLine(cookie, argument, runs.data(), count);
    const ReferenceResult expected = ReferenceParseLine(parser, cookie, line);
    const std::string actualRuns = FormatRuns(runs.data(), count);
    const std::string expectedRuns =
        FormatRuns(expected.runs.data(), static_cast<int>(expected.runs.size()));
    if (out == expected.cookie && actualRuns == expectedRuns)
        return true;
    ADD_FAILURE() << where << " cookie in " << cookie << "\n  line: " << line
                  << "\n  runs: " << actualRuns << " -> " << out << "\n  want: " << expectedRuns
                  << " -> " << expected.cookie;
    return false;
}

// Checks every line of a file from a cookie that changes from line to line.
void CheckFile(ParserUnderTest& parser, const std::string& path, const std::string& where,
               int& failures) {
    const unsigned long cookies[] = {0x00, 0x02, 0x04, 0x10, 0x20, 0x14, 0x30, 0x36};
    const std::string text = ReadFileBytes(path);
    std::size_t lineNumber = 0;
    for (std::string_view line : syntax::SplitLines(text)) {
        ++lineNumber;
        if (failures > 5)
            return;
        const unsigned long cookie = cookies[lineNumber % std::size(cookies)];
        if (!SameAsReference(parser, cookie, line,
                             path + ":" + std::to_string(lineNumber) + " " + where))
            ++failures;
    }
}

TEST(Differential, EveryCorpusFileInItsLanguageAndCodePage) {
    int failures = 0;
    for (unsigned codePage :
         {platform::CodePageWestern, platform::CodePageSimplifiedChinese, platform::CodePageUtf8}) {
        platform::SetSystemCodePage(codePage);
        for (const LANGUAGE_INFO& row : g_LanguageTable) {
            if (syntax::UsesTagParser(row.m_nLanguage))
                continue;
            ParserUnderTest parser;
            UseLanguage(parser, row.m_nLanguage);
            const std::string prefix = std::to_string(row.m_nLanguage) + "-";
            const std::string folder = CorpusFolderOf(prefix);
            if (folder.empty())
                continue; // no real text for this language
            for (const std::string& path : CorpusFiles("languages/" + folder))
                CheckFile(parser, path, "code page " + std::to_string(codePage), failures);
        }
    }
}

TEST(Differential, RulesMeetTextTheyWereNotMadeFor) {
    // Text rich in quotes, comments, escapes and directives, read in every language.
    std::vector<std::string> files;
    for (const char* folder : {"8-cpp", "3-basic", "21-object-pascal", "30-ruby", "6-clipper",
                               "26-progress", "32-sql", "23-perl"}) {
        for (const std::string& path : CorpusFiles(std::string("languages/") + folder))
            files.push_back(path);
    }
    int failures = 0;
    for (UINT language = 0; language <= 36; ++language) {
        if (syntax::UsesTagParser(language))
            continue;
        ParserUnderTest parser;
        UseLanguage(parser, language);
        for (const std::string& path : files)
            CheckFile(parser, path, "as language " + std::to_string(language), failures);
    }
}

TEST(Differential, AdversarialLines) {
    // Escapes, look-back across closers, multi-byte characters next to quotes and slashes.
    const char* lines[] = {
        "\"\\\\\\\"\\\"\" x",
        "'\\''\\\\'",
        "/*/**/*/",
        "a//b/*c*/d",
        "\"a\\",
        "\\\"\\\\\"x\"",
        "\x81\\\"x\"",
        "\xC3\xA9\"\xC3\"",
        "x\xE2\x82\xAC/*",
        "rem\x81rem",
        "=begin=end",
        "(**)(*)*)",
        "{}{}}",
        "$$$$$",
        "[[]]",
        "'''",
        "\"\"\"",
        "&H&HFF 0x0x1",
    };
    for (unsigned codePage :
         {platform::CodePageWestern, platform::CodePageSimplifiedChinese, platform::CodePageUtf8}) {
        platform::SetSystemCodePage(codePage);
        for (UINT language : {3u, 8u, 9u, 13u, 21u, 26u, 28u, 30u, 31u, 35u}) {
            ParserUnderTest parser;
            UseLanguage(parser, language);
            for (const char* line : lines) {
                for (unsigned long cookie : {0x00ul, 0x02ul, 0x04ul, 0x10ul, 0x20ul, 0x30ul}) {
                    SameAsReference(parser, cookie, line,
                                    "language " + std::to_string(language) + " cp " +
                                        std::to_string(codePage));
                }
            }
        }
    }
}

} // namespace
} // namespace talvor::testing
