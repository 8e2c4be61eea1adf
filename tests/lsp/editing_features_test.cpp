// What the server offers an editor beyond navigation: semantic tokens, formatting by the
// syntax tree, completion with the form's controls, renaming, and the outline grouped by
// control.
#include "tests/lsp/lsp_session.h"

#include <algorithm>
#include <sstream>
#include <tuple>
#include <vector>

using talvor::testing::Json;
using talvor::testing::Session;

namespace {

struct Token {
    std::size_t line, column, length;
    std::string type;
    bool operator==(const Token&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Token& t) {
    return out << t.line << ":" << t.column << "+" << t.length << " " << t.type;
}

// The relative encoding of the protocol turned back into absolute tokens.
std::vector<Token> Decode(const Json& tokens, const Json& legend) {
    std::vector<Token> out;
    const Json& data = tokens["data"];
    std::size_t line = 0, column = 0;
    for (std::size_t i = 0; i + 4 < data.size(); i += 5) {
        const std::size_t deltaLine = data[i];
        line += deltaLine;
        column = deltaLine == 0 ? column + data[i + 1].get<std::size_t>()
                                : data[i + 1].get<std::size_t>();
        out.push_back({line, column, data[i + 2], legend["tokenTypes"][data[i + 3].get<int>()]});
    }
    return out;
}

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::stringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// Applies text edits that each stay within one line (ASCII text).
std::string Apply(const std::string& text, const Json& edits) {
    std::vector<std::string> lines = SplitLines(text);
    std::vector<Json> sorted(edits.begin(), edits.end());
    std::sort(sorted.begin(), sorted.end(), [](const Json& a, const Json& b) {
        const auto key = [](const Json& e) {
            return std::make_tuple(e["range"]["start"]["line"].get<int>(),
                                   e["range"]["start"]["character"].get<int>());
        };
        return key(a) > key(b);
    });
    for (const Json& edit : sorted) {
        const int line = edit["range"]["start"]["line"];
        EXPECT_EQ(edit["range"]["end"]["line"], line);
        const std::size_t from = edit["range"]["start"]["character"];
        const std::size_t to = edit["range"]["end"]["character"];
        lines.at(line).replace(from, to - from, edit["newText"].get<std::string>());
    }
    std::string joined;
    for (const std::string& line : lines)
        joined += line + "\n";
    return joined;
}

std::vector<std::string> Labels(const Json& completion) {
    std::vector<std::string> labels;
    for (const Json& item : completion["items"])
        labels.push_back(item["label"]);
    return labels;
}

bool Has(const std::vector<std::string>& list, const std::string& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

} // namespace

TEST(LanguageServerEditing, SemanticTokensCarryTheColourStateAndCountUtf16Units) {
    Session session;
    const Json legend = session.capabilities["semanticTokensProvider"]["legend"];
    ASSERT_TRUE(session.capabilities["semanticTokensProvider"]["full"].get<bool>());
    // "é" is two bytes in UTF-8 but one UTF-16 unit; "😀" four bytes, two units.
    session.Open("Dim s ' note\n"
                 "s = \"é\" & 42\n"
                 "s = \"😀\" & 7\n");
    const Json full = session.Ask("textDocument/semanticTokens/full", Json::object())["result"];
    const std::vector<Token> tokens = Decode(full, legend);
    const std::vector<Token> expected = {
        {0, 0, 3, "keyword"}, {0, 6, 6, "comment"}, {1, 4, 3, "string"},
        {1, 10, 2, "number"}, {2, 4, 4, "string"},  {2, 11, 1, "number"},
    };
    EXPECT_EQ(tokens, expected);

    // A range gives the same tokens as the full list for its lines.
    Json range;
    range["start"] = {{"line", 1}, {"character", 0}};
    range["end"] = {{"line", 2}, {"character", 0}};
    const Json ranged =
        session.Ask("textDocument/semanticTokens/range", {{"range", range}})["result"];
    std::vector<Token> slice = Decode(ranged, legend);
    for (Token& t : slice)
        t.line += 1; // the first token of a range is relative to the range's first line
    EXPECT_EQ(slice, std::vector<Token>(expected.begin() + 2, expected.begin() + 4));
}

TEST(LanguageServerEditing, FormattingIndentsByBlockDepthAndIsIdempotent) {
    Session session;
    const std::string messy = "Class Basket\n"
                              "Private items\n"
                              "      Public Sub Add(x)\n"
                              "If x > 0 Then\n"
                              "  items = items + x   ' count it\n"
                              "   ElseIf x = 0 Then\n"
                              "items = 0\n"
                              "    Else\n"
                              "Select Case x\n"
                              "Case -1\n"
                              "items = items - 1\n"
                              "Case Else\n"
                              "Call Report(x, _\n"
                              "              \"negative\")\n"
                              "End Select\n"
                              "End If\n"
                              "\n"
                              "End Sub\n"
                              "End Class\n";
    session.Open(messy);
    const Json edits =
        session.Ask("textDocument/formatting",
                    {{"options", {{"tabSize", 2}, {"insertSpaces", true}}}})["result"];
    const std::string formatted = Apply(messy, edits);
    EXPECT_EQ(formatted, "Class Basket\n"
                         "  Private items\n"
                         "  Public Sub Add(x)\n"
                         "    If x > 0 Then\n"
                         "      items = items + x   ' count it\n"
                         "    ElseIf x = 0 Then\n"
                         "      items = 0\n"
                         "    Else\n"
                         "      Select Case x\n"
                         "        Case -1\n"
                         "          items = items - 1\n"
                         "        Case Else\n"
                         "          Call Report(x, _\n"
                         "              \"negative\")\n"
                         "      End Select\n"
                         "    End If\n"
                         "\n"
                         "  End Sub\n"
                         "End Class\n");
    // Only leading white space changes: every edit starts at column 0 and ends before the
    // first character that is not a blank.
    for (const Json& edit : edits)
        EXPECT_EQ(edit["range"]["start"]["character"], 0);

    Session again;
    again.Open(formatted);
    EXPECT_EQ(again.Ask("textDocument/formatting",
                        {{"options", {{"tabSize", 2}, {"insertSpaces", true}}}})["result"],
              Json::array());
    // With tabs one tab per level.
    const Json tabbed =
        again.Ask("textDocument/formatting",
                  {{"options", {{"tabSize", 4}, {"insertSpaces", false}}}})["result"];
    EXPECT_EQ(SplitLines(Apply(formatted, tabbed)).at(4), "\t\t\titems = items + x   ' count it");

    // A script the parser can't read is left alone.
    Session broken;
    broken.Open("Sub A()\nIf x Then\n  y = 1\nEnd Sub\n");
    EXPECT_EQ(broken.Ask("textDocument/formatting", {{"options", {{"tabSize", 4}}}})["result"],
              Json::array());
}

TEST(LanguageServerEditing, CompletionOffersTheScriptsNamesKeywordsAndTheFormsControls) {
    Session session;
    session.server.SetFormSource(
        [](const std::string& uri) -> std::optional<talvor::lsp::FormOutline> {
            if (uri != talvor::testing::Uri)
                return std::nullopt;
            talvor::lsp::FormOutline form;
            form.name = "Form";
            form.events = {{"Load", {}}};
            form.controls = {{"cmdOK", {{"Click", {}}, {"KeyDown", {"KeyCode", "Shift"}}}}};
            return form;
        });
    session.Open("Const Rate = 3\nDim total\nSub cmdOK_Click()\n  total = Rate\nEnd Sub\n"
                 "Function Twice(n)\n  Twice = n * 2\nEnd Function\n");
    const Json completion = session.Ask("textDocument/completion",
                                        {{"position", {{"line", 3}, {"character", 2}}}})["result"];
    const std::vector<std::string> labels = Labels(completion);
    for (const char* expected : {"Rate", "total", "Twice", "n", "cmdOK", "cmdOK_KeyDown",
                                 "Form_Load", "ElseIf", "Preserve", "Dim", "VfxPadLeft"})
        EXPECT_TRUE(Has(labels, expected)) << expected;
    // Each name once, whatever its case or how often it is declared.
    EXPECT_EQ(std::count(labels.begin(), labels.end(), "cmdOK_Click"), 1);
    for (const Json& item : completion["items"])
        if (item["label"] == "cmdOK_KeyDown")
            EXPECT_EQ(item["detail"], "Sub cmdOK_KeyDown(KeyCode, Shift)");

    // The outline puts the handlers under their control.
    const Json symbols = session.Ask("textDocument/documentSymbol", Json::object())["result"];
    const auto control = std::find_if(symbols.begin(), symbols.end(),
                                      [](const Json& s) { return s["name"] == "cmdOK"; });
    ASSERT_NE(control, symbols.end());
    ASSERT_EQ((*control)["children"].size(), 1u);
    EXPECT_EQ((*control)["children"][0]["name"], "cmdOK_Click");
    EXPECT_TRUE(std::none_of(symbols.begin(), symbols.end(),
                             [](const Json& s) { return s["name"] == "cmdOK_Click"; }));
}

TEST(LanguageServerEditing, RenameRewritesEveryUseAndRefusesBadNames) {
    Session session;
    const std::string script = "Dim Total\nSub Add(x)\n  total = TOTAL + x\nEnd Sub\n"
                               "Sub Show()\n  MsgBox \"Total\" & Total\nEnd Sub\n";
    session.Open(script);
    const Json prepared =
        session.Ask("textDocument/prepareRename", {{"position", {{"line", 2}, {"character", 3}}}});
    EXPECT_EQ(prepared["result"]["placeholder"], "total");
    EXPECT_EQ(prepared["result"]["range"]["start"]["character"], 2);
    // Keywords and places without a name can't be renamed.
    EXPECT_TRUE(session
                    .Ask("textDocument/prepareRename",
                         {{"position", {{"line", 1}, {"character", 1}}}})["result"]
                    .is_null());

    auto rename = [&](const char* name) {
        return session.Ask("textDocument/rename",
                           {{"position", {{"line", 0}, {"character", 5}}}, {"newName", name}});
    };
    const Json edit = rename("Sum")["result"];
    const Json& edits = edit["changes"][talvor::testing::Uri];
    EXPECT_EQ(edits.size(), 4u); // the declaration and three uses; the string stays
    EXPECT_EQ(Apply(script, edits), "Dim Sum\nSub Add(x)\n  Sum = Sum + x\nEnd Sub\n"
                                    "Sub Show()\n  MsgBox \"Total\" & Sum\nEnd Sub\n");

    for (const char* bad : {"Dim", "1st", "a-b", "", "Show"}) {
        const Json answer = rename(bad);
        EXPECT_EQ(answer["error"]["code"], talvor::lsp::InvalidParams) << bad;
        EXPECT_NE(answer["error"]["message"].get<std::string>().find("cannot rename"),
                  std::string::npos);
    }
}
