// Golden colouring of real files: every corpus file of a language, and the language's own
// all_colours example, coloured and compared with its reviewed .styled file three ways: top to
// bottom; from a cookie cache emptied at random lines; and with the other kind of line ends.
// Corpus files are not ours, so their .styled files hold the lengths of the text between the
// marks instead of the text (`talvor color --marks FILE` shows it with the text for a review).
// On a mismatch the runner writes <file>.styled.new beside the .styled, names file:line and
// prints that line with its text.
#include "tests/syntax/parser_harness.h"

#include "platform/codepage/code_page.h"
#include "platform/files/file_system.h"
#include "syntax/cookie_cache.h"
#include "syntax/text_lines.h"
#include "tests/support/corpus.h"
#include "tests/support/test_environment.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <random>

namespace talvor::testing {
namespace {

std::string ExamplesDir() {
    return std::string(TALVOR_SOURCE_DIR) + "/tests/syntax/examples";
}

std::vector<std::string> ListDir(const std::string& dir, bool wantFolders) {
    return talvor::platform::ListFolder(dir, wantFolders ? talvor::platform::FolderEntries::Folders
                                                         : talvor::platform::FolderEntries::Files);
}

bool EndsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Text with non-ASCII bytes that form valid UTF-8 is coloured with UTF-8 as the system code
// page, anything else with 1252, as a host would pick for such a file.
unsigned CodePageFor(const std::string& text) {
    bool nonAscii = false;
    for (std::size_t i = 0; i < text.size();) {
        auto b = static_cast<unsigned char>(text[i]);
        if (b < 0x80) {
            ++i;
            continue;
        }
        nonAscii = true;
        std::size_t n = (b >= 0xC2 && b <= 0xDF)   ? 2
                        : (b >= 0xE0 && b <= 0xEF) ? 3
                        : (b >= 0xF0 && b <= 0xF4) ? 4
                                                   : 0;
        if (n == 0 || i + n > text.size())
            return platform::CodePageWestern;
        for (std::size_t k = 1; k < n; ++k) {
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return platform::CodePageWestern;
        }
        i += n;
    }
    return nonAscii ? platform::CodePageUtf8 : platform::CodePageWestern;
}

std::string OtherLineEnds(const std::string& text) {
    std::string out;
    const bool crlf = text.find("\r\n") != std::string::npos;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (crlf && text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue; // CRLF becomes LF
        if (!crlf && text[i] == '\n')
            out += '\r'; // LF becomes CRLF
        out += text[i];
    }
    return out;
}

// Lines of a .styled text, each with its "\n".
std::vector<std::string> StyledLines(const std::string& styled) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < styled.size()) {
        std::size_t end = styled.find('\n', start);
        end = end == std::string::npos ? styled.size() : end + 1;
        lines.push_back(styled.substr(start, end - start));
        start = end;
    }
    return lines;
}

// The scripts of the VBScript corpus: its ".vbs" files, whatever the case of the extension.
std::vector<std::string> VbscriptFiles() {
    std::vector<std::string> scripts;
    for (const std::string& path : CorpusFiles("vbscript")) {
        std::string lower = path;
        for (char& c : lower)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (EndsWith(lower, ".vbs"))
            scripts.push_back(path);
    }
    return scripts;
}

struct Example {
    UINT language;
    std::string source;  // full path of the text
    std::string styled;  // full path of its .styled file
    unsigned codePage{}; // 0: chosen from the text
    // Files of the shared corpus are not ours: their golden files keep the lengths of the text
    // between the marks, not the text. Our own examples keep the text.
    syntax::StyledForm form = syntax::StyledForm::Lengths;
};

std::vector<Example> AllExamples() {
    std::vector<Example> examples;
    for (const std::string& folder : ListDir(ExamplesDir(), true)) {
        const UINT language = static_cast<UINT>(std::stoul(folder));
        const std::string dir = ExamplesDir() + "/" + folder;
        for (const std::string& path : CorpusFiles("languages/" + folder)) {
            const std::string name = path.substr(path.rfind('/') + 1);
            examples.push_back({language, path, dir + "/" + name + ".styled"});
        }
        // The real VBScript corpus is Basic too; its golden files sit in a folder of their own.
        if (language == syntax::CodeOf(syntax::Language::Basic)) {
            for (const std::string& path : VbscriptFiles()) {
                const std::string name = path.substr(path.rfind('/') + 1);
                // Scripts of a Windows host: 1252, whatever bytes they hold.
                examples.push_back({language, path, dir + "/vbscript/" + name + ".styled",
                                    platform::CodePageWestern});
            }
        }
        for (const std::string& name : ListDir(dir, false)) {
            if (!EndsWith(name, ".styled") && !EndsWith(name, ".styled.new"))
                examples.push_back({language, dir + "/" + name, dir + "/" + name + ".styled", 0,
                                    syntax::StyledForm::Text});
        }
    }
    return examples;
}

// First line where two styled texts differ (1-based), or 0.
std::size_t FirstDifference(const std::string& actual, const std::string& expected) {
    const std::vector<std::string> a = StyledLines(actual), e = StyledLines(expected);
    for (std::size_t i = 0; i < std::max(a.size(), e.size()); ++i) {
        if (i >= a.size() || i >= e.size() || a[i] != e[i])
            return i + 1;
    }
    return 0;
}

TEST(GoldenExamples, EveryLanguageHasAnAllColoursExample) {
    std::size_t folders = 0;
    for (const std::string& folder : ListDir(ExamplesDir(), true)) {
        ++folders;
        bool found = false;
        for (const std::string& name : ListDir(ExamplesDir() + "/" + folder, false))
            found = found || name.rfind("all_colours.", 0) == 0;
        EXPECT_TRUE(found) << folder;
    }
    EXPECT_EQ(folders, std::size(g_LanguageTable));
}

TEST(GoldenExamples, ColouringMatchesTheReviewedFiles) {
    const std::vector<Example> examples = AllExamples();
    ASSERT_GE(examples.size(), 33u + 56u + 67u) << "corpus at " << CorpusDir();
    for (const Example& example : examples) {
        SCOPED_TRACE(example.source);
        const std::string text = ReadFileBytes(example.source);
        platform::SetSystemCodePage(example.codePage != 0 ? example.codePage : CodePageFor(text));
        ParserUnderTest parser;
        UseLanguage(parser, example.language);
        const std::vector<std::string_view> lines = syntax::SplitLines(text);

        // Top to bottom.
        const std::string actual = StyleText(parser, lines, example.form);
        std::string expected, error;
        platform::ReadWholeFile(example.styled, expected, error);
        if (std::size_t line = FirstDifference(actual, expected)) {
            platform::WriteFileAtomically(example.styled + ".new", actual, error);
            const std::vector<std::string> shown = StyledLines(StyleText(parser, lines));
            ADD_FAILURE() << example.styled << ":" << line << ": colouring differs; see "
                          << example.styled << ".new\n  now: "
                          << (line <= shown.size() ? shown[line - 1] : std::string("(no line)"));
            continue;
        }

        // From a cookie cache with holes, as a paint after scrolling and editing finds it.
        std::vector<unsigned long> ends;
        for (const std::string& styledLine : StyledLines(expected))
            ends.push_back(std::stoul(styledLine.substr(0, styledLine.find(' ')), nullptr, 16));
        std::mt19937 random(static_cast<unsigned>(text.size()));
        const std::vector<std::string> expectedLines = StyledLines(expected);
        syntax::DocumentColourer colourer(parser);
        auto lineAt = [&lines](std::size_t k, CString& text) {
            text = CString(lines[k]);
            return true;
        };
        for (int round = 0; round < 3 && !lines.empty(); ++round) {
            syntax::CookieCache cache;
            cache.Create(lines.size());
            for (std::size_t i = 0; i < lines.size(); ++i)
                cache.Store(i, ends[i]);
            for (std::size_t i = 0; i < lines.size(); ++i) {
                if (random() % 4 == 0)
                    cache.Forget(i);
            }
            // Paint screens of 40 lines at random places.
            for (int screen = 0; screen < 8; ++screen) {
                const std::size_t first = random() % lines.size();
                unsigned long cookie = cache.StartOf(first, colourer, lineAt);
                for (std::size_t i = first; i < std::min(lines.size(), first + 40); ++i) {
                    const syntax::LineColours colours = colourer.ColourLine(cookie, lines[i]);
                    cache.Store(i, colours.cookie);
                    EXPECT_EQ(StyleLine(lines[i], colours.runs, colours.count, colours.cookie,
                                        example.form),
                              expectedLines[i])
                        << example.styled << ":" << i + 1 << " painted from a cached cookie";
                    cookie = colourer.CookieForNextLine(colours.cookie, true);
                }
            }
            for (std::size_t i = 0; i < lines.size(); ++i)
                EXPECT_TRUE(cache.Entry(i) == ends[i] ||
                            cache.Entry(i) == syntax::CookieCache::Unknown)
                    << example.styled << ":" << i + 1 << " cached cookie";
        }

        // The same text with the other line ends.
        const std::string converted = OtherLineEnds(text);
        const std::vector<std::string_view> convertedLines = syntax::SplitLines(converted);
        EXPECT_EQ(FirstDifference(StyleText(parser, convertedLines, example.form), expected), 0u)
            << example.styled << " with " << (converted.size() > text.size() ? "CRLF" : "LF");
    }
}

} // namespace
} // namespace talvor::testing
