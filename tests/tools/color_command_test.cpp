// talvor color as a user runs it: marks equal to the reviewed golden files, a complete HTML page
// that gives back the text, language by name, code or extension, and clear errors.
#include "syntax/text_lines.h"
#include "tests/support/tool_run.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using talvor::testing::ToolRun;

ToolRun Talvor(const std::string& arguments, const std::string& configHome = "no-such-config") {
    // An empty configuration folder: no profile of this machine changes rules or keywords.
    return talvor::testing::RunTalvor(arguments,
                                      "XDG_CONFIG_HOME=" + ::testing::TempDir() + configHome);
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string WriteTemp(const std::string& name, const std::string& text) {
    const std::string path = ::testing::TempDir() + std::to_string(::getpid()) + "_" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

// The text form of a golden file that keeps run lengths (corpus files are kept that way): each
// length is replaced by that many bytes of the source line.
std::string TextForm(const std::string& golden, const std::string& source) {
    const std::vector<std::string_view> lines = talvor::syntax::SplitLines(source);
    std::string out;
    std::size_t lineIndex = 0, pos = 0;
    while (pos < golden.size()) {
        const std::size_t end = golden.find('\n', pos);
        const std::string_view styled(golden.data() + pos,
                                      (end == std::string::npos ? golden.size() : end) - pos);
        pos = end == std::string::npos ? golden.size() : end + 1;
        const std::string_view text =
            lineIndex < lines.size() ? lines[lineIndex] : std::string_view();
        ++lineIndex;
        out.append(styled.substr(0, 3));
        std::size_t used = 0;
        for (std::size_t i = 3; i < styled.size();) {
            if (styled[i] == '{') {
                const std::size_t close = styled.find('}', i);
                out.append(styled.substr(i, close - i + 1));
                i = close + 1;
                continue;
            }
            std::size_t count = 0;
            while (i < styled.size() && styled[i] >= '0' && styled[i] <= '9')
                count = count * 10 + static_cast<std::size_t>(styled[i++] - '0');
            out.append(text.substr(used, count));
            used += count;
        }
        out += '\n';
    }
    return out;
}

const std::string Corpus = std::string(TALVOR_CORPUS_DIR) + "/languages/";
const std::string Examples = std::string(TALVOR_SOURCE_DIR) + "/tests/syntax/examples/";

// The page's text with tags taken out and entities turned back.
std::string TextOfPage(const std::string& page) {
    const std::size_t begin = page.find("<pre>") + 5;
    const std::size_t end = page.rfind("</pre>");
    std::string text;
    for (std::size_t i = begin; i < end; ++i) {
        if (page[i] == '<') {
            i = page.find('>', i);
            continue;
        }
        if (page[i] == '&') {
            const std::size_t semicolon = page.find(';', i);
            const std::string entity = page.substr(i, semicolon - i + 1);
            text += entity == "&amp;" ? '&' : (entity == "&lt;" ? '<' : '>');
            i = semicolon;
            continue;
        }
        text += page[i];
    }
    return text;
}

TEST(ColorCommand, MarksEqualTheGoldenFiles) {
    const struct {
        const char* arguments;
        const char* golden;
    } cases[] = {
        {"color --marks 8-cpp/skiplist.h", "8-cpp/skiplist.h.styled"},
        {"color --marks --language Basic 3-basic/WebClient.cls", "3-basic/WebClient.cls.styled"},
        {"--code-page 65001 color --marks 14-html/date-picker-fallback.html",
         "14-html/date-picker-fallback.html.styled"},
        {"color --marks --code 2 2-asm/sokoban.asm", "2-asm/sokoban.asm.styled"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments);
        std::string arguments = c.arguments;
        arguments.insert(arguments.rfind(' ') + 1, Corpus);
        const ToolRun run = Talvor(arguments);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        const std::string source = ReadFile(arguments.substr(arguments.rfind(' ') + 1));
        EXPECT_TRUE(run.out == TextForm(ReadFile(Examples + c.golden), source))
            << "output differs from " << c.golden;
    }
}

TEST(ColorCommand, HtmlIsACompletePageThatKeepsTheText) {
    const std::string source = Examples + "8-cpp/all_colours.cpp";
    const ToolRun run = Talvor("color --html " + source);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out.rfind("<!DOCTYPE html>\n<html>", 0), 0u);
    EXPECT_EQ(run.out.substr(run.out.size() - 8), "</html>\n");
    // COLORREF is 0x00BBGGRR: keywords 0xFF0000 are blue, numbers 0x0000FF red.
    EXPECT_NE(run.out.find(".k { color: #0000ff; }"), std::string::npos);
    EXPECT_NE(run.out.find(".n { color: #ff0000; }"), std::string::npos);
    EXPECT_NE(run.out.find(".c { color: #008000; }"), std::string::npos);
    EXPECT_NE(run.out.find("<span class=\"k\">static</span>"), std::string::npos);
    EXPECT_NE(run.out.find("<span class=\"h\">'\\0'</span>"), std::string::npos);
    EXPECT_EQ(TextOfPage(run.out), ReadFile(source));
}

TEST(ColorCommand, HtmlIsUtf8WhateverTheCodePage) {
    // "caf\xE9" is 1252, "\xD6\xD0\xCE\xC4" is the GBK form of two Chinese characters.
    const std::string western = WriteTemp("colour_1252.bas", "' caf\xE9 & \x80\nx = \"\xE9\"\n");
    const std::string chinese = WriteTemp("colour_936.bas", "' \xD6\xD0\xCE\xC4\n");
    const std::string utf8 = WriteTemp("colour_utf8.bas", "' caf\xC3\xA9 \xE2\x82\xAC\n");
    const struct {
        std::string arguments;
        std::string text; // of the page, in UTF-8
    } cases[] = {
        {"--code-page 1252 color --html " + western,
         "' caf\xC3\xA9 & \xE2\x82\xAC\nx = \"\xC3\xA9\"\n"},
        // Under UTF-8 the 8-bit bytes form no character: each becomes U+FFFD.
        {"--code-page 65001 color --html " + western,
         "' caf\xEF\xBF\xBD & \xEF\xBF\xBD\nx = \"\xEF\xBF\xBD\"\n"},
        {"--code-page 936 color --html " + chinese, "' \xE4\xB8\xAD\xE6\x96\x87\n"},
        {"--code-page 65001 color --html " + utf8, "' caf\xC3\xA9 \xE2\x82\xAC\n"},
        {"--code-page 1252 color --html " + utf8,
         "' caf\xC3\x83\xC2\xA9 \xC3\xA2\xE2\x80\x9A\xC2\xAC\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments);
        const ToolRun run = Talvor(c.arguments);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        EXPECT_NE(run.out.find("<meta charset=\"utf-8\">"), std::string::npos);
        EXPECT_EQ(TextOfPage(run.out), c.text);
    }
    // The coloured runs survive the conversion: the string keeps its span.
    EXPECT_NE(Talvor("--code-page 1252 color --html " + western)
                  .out.find("<span class=\"s\">\"\xC3\xA9\"</span>"),
              std::string::npos);
}

TEST(ColorCommand, AnsiLeavesNormalTextToTheTerminalAndHonoursNoColor) {
    const std::string basic = WriteTemp("colour_ansi.bas", "Dim x ' note\n");
    const std::string config = "XDG_CONFIG_HOME=" + ::testing::TempDir() + "no-such-config";
    const std::string coloured = Talvor("color --ansi " + basic).out;
    EXPECT_EQ(coloured,
              "\x1b[38;2;0;0;255mDim\x1b[39m x\x1b[39m \x1b[38;2;0;128;0m' note\x1b[0m\n");
    EXPECT_EQ(coloured.find("38;2;0;0;0m"), std::string::npos) << "no black foreground";
    EXPECT_EQ(talvor::testing::RunTalvor("color --ansi " + basic, config + " NO_COLOR=1").out,
              "Dim x ' note\n");
    // An empty NO_COLOR is no request; marks and pages have no terminal colours to turn off.
    EXPECT_EQ(talvor::testing::RunTalvor("color --ansi " + basic, config + " NO_COLOR=").out,
              coloured);
    EXPECT_EQ(talvor::testing::RunTalvor("color --marks " + basic, config + " NO_COLOR=1").out,
              Talvor("color --marks " + basic).out);
}

TEST(ColorCommand, LanguageByNameCodeOrExtension) {
    const std::string text = "' note\nDim x\n";
    const std::string unknown = WriteTemp("colour_input.txt", text);
    const std::string basic = WriteTemp("colour_input.bas", text);
    EXPECT_EQ(Talvor("color --marks " + unknown).out, "00 {2}' note\n00 {2}Dim{2} x\n");
    const std::string coloured = "02 {2}{0}' note\n00 {2}{1}Dim{2} x\n";
    EXPECT_EQ(Talvor("color --marks " + basic).out, coloured);
    EXPECT_EQ(Talvor("color --marks --language Basic " + unknown).out, coloured);
    EXPECT_EQ(Talvor("color --marks --code 3 " + unknown).out, coloured);
    EXPECT_EQ(Talvor("color --marks --language 'Plain text' " + basic).out,
              "00 {2}' note\n00 {2}Dim{2} x\n");
    // The editor's trailing blank closes the word of "=begin" before it is classified.
    const std::string ruby = WriteTemp("colour_input.rb", "=begin\n");
    EXPECT_EQ(Talvor("color --marks " + ruby).out, "04 {2}{0}={1}begin\n");
    EXPECT_EQ(Talvor("color --marks --blank " + ruby).out, "04 {2}{0}=begin \n");
    EXPECT_NE(Talvor("color --ansi " + basic).out.find("\x1b[38;2;0;0;255mDim"), std::string::npos);
}

TEST(ColorCommand, ProfileOfTheHostReplacesKeywordsAndRules) {
    const std::string config = ::testing::TempDir() + "colour_config/talvor";
    ASSERT_EQ(std::system(("mkdir -p " + config).c_str()), 0);
    std::ofstream(config + "/profile.ini", std::ios::binary)
        << "[MainWnd\\DockingPaneLayouts\\PaneMacro\\Keywords]\nBasic=x\n"
        << "[MainWnd\\DockingPaneLayouts\\PaneMacro\\icrEdit__ParseRuleBasic]\n"
        << "LineCommentStr0=%\n";
    const std::string file = WriteTemp("colour_profile.bas", "Dim x ' y % z\n");
    EXPECT_EQ(Talvor("color --marks " + file, "colour_config").out,
              "02 {2}Dim{2} {1}x{2} ' y{2} {0}% z\n");
    EXPECT_EQ(Talvor("color --marks " + file).out, "02 {2}{1}Dim{2} x{2} {0}' y % z\n");
}

TEST(ColorCommand, BadInputIsAUserError) {
    const std::string file = WriteTemp("colour_bad.bas", "x\n");
    const struct {
        std::string arguments;
        const char* message;
    } cases[] = {
        {"color", "talvor: color: no file given"},
        {"color /no/such/file.bas", "talvor: color: cannot open '/no/such/file.bas'"},
        {"color --language basic " + file, "talvor: color: unknown language 'basic'"},
        {"color --code 36 " + file, "talvor: color: language code '36' is not 0 to 35"},
        {"color --code x " + file, "talvor: color: language code 'x' is not 0 to 35"},
        {"color --language Basic --code 3 " + file, "give --language or --code, not both"},
        {"color --html --ansi " + file, "give only one of --html, --ansi, --marks"},
        {"color --frob " + file, "talvor: color: unknown option '--frob'"},
        {"color --language", "--language needs a value"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments);
        const ToolRun run = Talvor(c.arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
        EXPECT_TRUE(run.out.empty());
    }
    EXPECT_EQ(Talvor("color --help").exitCode, 0);
}

} // namespace
