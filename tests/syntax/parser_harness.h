// What the syntax tests share: a class that reaches the protected operations under test,
// readable run lists, and whole-file colouring through the document colourer.
#pragma once

#include "platform/app/profile.h"
#include "platform/app/profile_sections.h"
#include "syntax/document_colourer.h"
#include "syntax/languages.h"
#include "syntax/line_cookie.h"
#include "syntax/styled_line.h"
#include "syntax/syntax.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace talvor::testing {

struct ParserUnderTest : CTalvorSyntax {
    using CTalvorSyntax::DeleteAllocString;
    using CTalvorSyntax::GetLanguageByStringShow;
    using CTalvorSyntax::GetLanguageName;
    using CTalvorSyntax::GetLineCommentString;
    using CTalvorSyntax::GetStringShowByLanguage;
    using CTalvorSyntax::IsNumber;
    using CTalvorSyntax::IsSynWord;
    using CTalvorSyntax::LoadParseRule;
    using CTalvorSyntax::LoadSynWord;
    using CTalvorSyntax::ParseLine;
    using CTalvorSyntax::ParseLineForHtml;
    using CTalvorSyntax::SortSynWordArray;
};

inline constexpr const char* KeywordSection = talvor::platform::KeywordsSection;
inline constexpr const char* RuleSection = talvor::platform::ParseRuleSection;

// Selects the language and loads it. With keywords (comma-separated) the profile replaces the
// built-in list, exactly as a host would.
inline void UseLanguage(ParserUnderTest& parser, UINT language, const char* keywords = nullptr) {
    parser.SetLanguage(language);
    if (keywords != nullptr) {
        CString name = parser.GetLanguageName(language);
        AfxGetApp()->WriteProfileString(KeywordSection, name, keywords);
    }
    parser.LoadSynWord();
}

struct ParsedLine {
    std::string runs;
    unsigned long cookie;
    int count;
};

// "(0,2) (0,1) (3,2)": start and colour index of each run, in list order.
inline std::string FormatRuns(const COLORINFO* runs, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            text += ' ';
        char run[32];
        std::snprintf(run, sizeof run, "(%d,%d)", runs[i].m_nCharPos, runs[i].m_nColorIndex);
        text += run;
    }
    return text;
}

// Parses one line into a buffer of exactly the size the parser is promised (length + 1, HTML
// and XML 2 * length + 1); the test fails if the cookie differs without a run list.
inline ParsedLine Parse(ParserUnderTest& parser, unsigned long cookie, const std::string& line) {
    CString text(line);
    const UINT language = parser.GetLanguage();
    const bool html = syntax::UsesTagParser(language);
    const std::size_t room = html ? 2 * line.size() + 1 : line.size() + 1;
    std::vector<COLORINFO> runs(room);
    int count = 0;
    unsigned long out = parser.ParseLine(cookie, text, runs.data(), count);
    EXPECT_LE(static_cast<std::size_t>(count), room);
    int none = 0;
    if (!(html && parser.m_nBeginCommentExCount == 0)) {
        EXPECT_EQ(parser.ParseLine(cookie, text, nullptr, none), out) << "without a run list";
    }
    EXPECT_EQ(none, 0);
    EXPECT_EQ(text.Str(), line) << "the parser changed its line";
    return {FormatRuns(runs.data(), count), out, count};
}

// One line of a .styled golden file (see syntax/styled_line.h).
inline std::string StyleLine(std::string_view line, const COLORINFO* runs, int count,
                             unsigned long cookieAtEnd,
                             syntax::StyledForm form = syntax::StyledForm::Text) {
    std::string out;
    syntax::AppendStyledLine(out, line, runs, count, cookieAtEnd, form);
    return out;
}

// Every line of a text in golden form, cookies carried across hard line ends.
inline std::string StyleText(ParserUnderTest& parser, const std::vector<std::string_view>& lines,
                             syntax::StyledForm form = syntax::StyledForm::Text) {
    std::string out;
    std::vector<CString> texts(lines.begin(), lines.end());
    syntax::DocumentColourer(parser).ColourLines(texts, [&](const syntax::ColouredLine& line) {
        syntax::AppendStyledLine(out, line.text, line.runs, line.count, line.cookieAtEnd, form);
    });
    return out;
}

} // namespace talvor::testing
