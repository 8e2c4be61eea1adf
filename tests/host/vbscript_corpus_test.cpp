// The parser on real scripts written by other people: every VBScript file of the corpus reads
// without an error, and damaged copies of them fail at the line where the damage is.
#include "host/base/vbscript_parser.h"
#include "tests/support/corpus.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace talvor::host::vbscript {
namespace {

using talvor::testing::CorpusFiles;
using talvor::testing::ReadFileBytes;

bool EndsWithNoCase(const std::string& text, const std::string& tail) {
    if (text.size() < tail.size())
        return false;
    for (std::size_t i = 0; i < tail.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(text[text.size() - tail.size() + i])) !=
            tail[i])
            return false;
    }
    return true;
}

// The VBScript files: plain scripts and the script blocks taken out of pages, not the pages.
std::vector<std::string> ScriptFiles() {
    std::vector<std::string> scripts;
    for (const std::string& path : CorpusFiles("vbscript")) {
        if (EndsWithNoCase(path, ".vbs"))
            scripts.push_back(path);
    }
    return scripts;
}

std::string Errors(const SyntaxTree& tree) {
    std::string text;
    for (const SyntaxError& error : tree.errors)
        text += std::to_string(error.position.line) + ":" + std::to_string(error.position.column) +
                ": " + error.message + "\n";
    return text;
}

// Two corpus files hold real mistakes of their authors; the parser must find exactly those.
struct KnownErrors {
    const char* file;
    const char* errors;
};
const KnownErrors CorpusMistakes[] = {
    // A header of "//" comment lines in front of VBScript code.
    {"wcs__Shared.vbs", "1:1: expected a statement, found '/'\n2:1: expected a statement, found "
                        "'/'\n3:1: expected a statement, found '/'\n4:1: expected a statement, "
                        "found '/'\n5:1: expected a statement, found '/'\n6:1: expected a "
                        "statement, found '/'\n7:1: expected a statement, found '/'\n"},
    // German notes left in the code, ByRef in a call, and a Function ended by "End Sub".
    {"mariusjoe__utils_general.vbs",
     "540:24: expected end of statement, found 'string'\n"
     "692:39: expected an expression, found keyword 'ByRef'\n"
     "1050:1: 'Function' on line 1035 ends with 'End Sub'; expected 'End Function'\n"},
};

const char* ExpectedErrors(const std::string& path) {
    for (const KnownErrors& known : CorpusMistakes) {
        if (path.size() >= std::strlen(known.file) &&
            path.compare(path.size() - std::strlen(known.file), std::string::npos, known.file) == 0)
            return known.errors;
    }
    return "";
}

TEST(VbscriptCorpus, EveryScriptParsesWithoutError) {
    const std::vector<std::string> scripts = ScriptFiles();
    ASSERT_GE(scripts.size(), 60u) << "the corpus is missing";
    for (const std::string& path : scripts) {
        SCOPED_TRACE(path);
        const SyntaxTree tree = ParseScript(ReadFileBytes(path));
        EXPECT_EQ(Errors(tree), ExpectedErrors(path));
    }
}

int NodesOutsideTheirParent(const SyntaxTree& tree, NodeIndex index) {
    const Node& node = tree.At(index);
    int bad = node.begin.offset > node.end.offset || node.end.offset > tree.source.size();
    for (NodeIndex child = node.firstChild; child != NoNode; child = tree.At(child).nextSibling) {
        const Node& c = tree.At(child);
        bad += c.begin.offset < node.begin.offset || c.end.offset > node.end.offset;
        bad += NodesOutsideTheirParent(tree, child);
    }
    return bad;
}

TEST(VbscriptCorpus, NodeRangesNestAndProceduresMatchTheirText) {
    for (const std::string& path : ScriptFiles()) {
        SCOPED_TRACE(path);
        const SyntaxTree tree = ParseScript(ReadFileBytes(path));
        EXPECT_EQ(NodesOutsideTheirParent(tree, 0), 0);
        for (const ProcedureInfo& procedure : tree.Procedures()) {
            // The name in the tree is the text at its position.
            const std::string_view at(tree.source.data() + procedure.nameAt.offset,
                                      procedure.name.size());
            EXPECT_EQ(at, procedure.name);
            EXPECT_LE(procedure.begin.line, procedure.end.line);
        }
    }
}

// The scripts that parse clean, with their trees.
struct CleanScript {
    std::string path;
    std::string text;
    SyntaxTree tree;
};

const std::vector<CleanScript>& CleanScripts() {
    static const std::vector<CleanScript> scripts = [] {
        std::vector<CleanScript> clean;
        for (const std::string& path : ScriptFiles()) {
            std::string text = ReadFileBytes(path);
            SyntaxTree tree = ParseScript(text);
            if (!tree.HasErrors())
                clean.push_back({path, std::move(text), std::move(tree)});
        }
        return clean;
    }();
    return scripts;
}

// Byte offsets of line starts (line 1 at index 0), with CR, LF and CRLF ends.
std::vector<std::size_t> LineStarts(const std::string& text) {
    std::vector<std::size_t> starts{0};
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 >= text.size() || text[i + 1] != '\n')))
            starts.push_back(i + 1);
    }
    return starts;
}

std::string WithoutLine(const std::string& text, uint32_t line) {
    const std::vector<std::size_t> starts = LineStarts(text);
    const std::size_t begin = starts[line - 1];
    const std::size_t end = line < starts.size() ? starts[line] : text.size();
    return text.substr(0, begin) + text.substr(end);
}

std::string WithLineBefore(const std::string& text, uint32_t line, const std::string& insert) {
    const std::vector<std::size_t> starts = LineStarts(text);
    const std::size_t at = line - 1 < starts.size() ? starts[line - 1] : text.size();
    return text.substr(0, at) + insert + "\r\n" + text.substr(at);
}

void ForEachNode(const SyntaxTree& tree, NodeIndex index,
                 const std::function<void(NodeIndex, NodeIndex)>& visit, NodeIndex parent) {
    visit(index, parent);
    for (NodeIndex child = tree.At(index).firstChild; child != NoNode;
         child = tree.At(child).nextSibling)
        ForEachNode(tree, child, visit, index);
}

// An If block at the top of a procedure body, without its End If, is reported not closed at
// the procedure's End line, naming the If's line.
TEST(VbscriptCorpus, RemovedEndIfFailsAtTheProcedureEnd) {
    int tried = 0;
    for (const CleanScript& script : CleanScripts()) {
        for (const ProcedureInfo& procedure : script.tree.Procedures()) {
            const Node& proc = script.tree.At(procedure.node);
            const NodeIndex body = proc.lastChild;
            for (NodeIndex index = script.tree.At(body).firstChild; index != NoNode;
                 index = script.tree.At(index).nextSibling) {
                const Node& node = script.tree.At(index);
                if (node.kind != NodeKind::If || (node.flags & NodeFlag::SingleLine) ||
                    node.end.line == procedure.end.line)
                    continue;
                SCOPED_TRACE(script.path + " If on line " + std::to_string(node.begin.line));
                const SyntaxTree broken = ParseScript(WithoutLine(script.text, node.end.line));
                ASSERT_TRUE(broken.HasErrors());
                const SyntaxError& error = broken.errors.front();
                // One line less above the procedure's end.
                EXPECT_EQ(error.position.line, procedure.end.line - 1);
                EXPECT_EQ(error.message.substr(0, error.message.find(", found")),
                          "'If' on line " + std::to_string(node.begin.line) +
                              " is not closed: expected 'End If'");
                EXPECT_EQ(broken.errors.size(), 1u) << Errors(broken);
                ++tried;
                break; // one If per procedure keeps the run short
            }
        }
    }
    EXPECT_GT(tried, 50);
}

// A string without its closing quote is reported on its own line, and nothing before it.
TEST(VbscriptCorpus, UnclosedStringFailsOnItsLine) {
    int tried = 0;
    for (const CleanScript& script : CleanScripts()) {
        int perScript = 0;
        ForEachNode(
            script.tree, 0,
            [&](NodeIndex index, NodeIndex) {
                const Node& node = script.tree.At(index);
                if (node.kind != NodeKind::StringLiteral || perScript >= 5)
                    return;
                ++perScript;
                SCOPED_TRACE(script.path + ":" + std::to_string(node.begin.line));
                std::string text = script.text;
                text.erase(node.end.offset - 1, 1);
                const SyntaxTree broken = ParseScript(text);
                ASSERT_TRUE(broken.HasErrors());
                EXPECT_EQ(broken.errors.front().position.line, node.begin.line);
                ++tried;
            },
            NoNode);
    }
    EXPECT_GT(tried, 200);
}

// "Next" as the first line of a procedure body, and in front of the whole script.
TEST(VbscriptCorpus, StrayNextFailsOnItsLine) {
    int tried = 0;
    for (const CleanScript& script : CleanScripts()) {
        SCOPED_TRACE(script.path);
        const SyntaxTree atTop = ParseScript(WithLineBefore(script.text, 1, "Next"));
        ASSERT_TRUE(atTop.HasErrors());
        EXPECT_EQ(Errors(atTop).substr(0, 26), "1:1: 'Next' without 'For'\n");
        for (const ProcedureInfo& procedure : script.tree.Procedures()) {
            const Node& body = script.tree.At(script.tree.At(procedure.node).lastChild);
            if (body.firstChild == NoNode)
                continue;
            const uint32_t line = script.tree.At(body.firstChild).begin.line;
            if (line == procedure.begin.line)
                continue; // a one-line procedure
            SCOPED_TRACE(procedure.name);
            const SyntaxTree broken = ParseScript(WithLineBefore(script.text, line, "  Next"));
            ASSERT_TRUE(broken.HasErrors());
            EXPECT_EQ(broken.errors.front().position.line, line);
            EXPECT_EQ(broken.errors.front().position.column, 3u);
            EXPECT_EQ(broken.errors.front().message, "'Next' without 'For'");
            EXPECT_EQ(broken.errors.size(), 1u) << Errors(broken);
            ++tried;
        }
    }
    EXPECT_GT(tried, 150);
}

} // namespace
} // namespace talvor::host::vbscript
