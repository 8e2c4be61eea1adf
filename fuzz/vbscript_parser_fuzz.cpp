// Arbitrary text through the VBScript parser. Besides staying inside the input and the
// nesting limit, the tree must be well formed (ranges inside the source and inside their
// parents, errors sorted, one per line), and a script that parses clean must give the same
// tree with its line ends written as CRLF, LF or CR.
#include "host/base/vbscript_parser.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace talvor::host::vbscript;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

void CheckNode(const SyntaxTree& tree, NodeIndex index, int depth) {
    // Each nesting level adds at most a few tree levels, each operation of a statement one.
    Check(depth < 16 * MaxNestingDepth + MaxStatementOperations);
    const Node& node = tree.At(index);
    Check(node.begin.offset <= node.end.offset);
    Check(node.end.offset <= tree.source.size());
    Check(node.textOffset + static_cast<uint64_t>(node.textLength) <= tree.source.size());
    for (NodeIndex child = node.firstChild; child != NoNode; child = tree.At(child).nextSibling) {
        Check(child < tree.nodes.size());
        const Node& c = tree.At(child);
        Check(c.begin.offset >= node.begin.offset && c.end.offset <= node.end.offset);
        CheckNode(tree, child, depth + 1);
    }
}

std::string WithLineEnds(const std::string& text, const char* lineEnd) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' || text[i] == '\n') {
            if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
            out += lineEnd;
        } else {
            out += text[i];
        }
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 65536)
        return 0;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const SyntaxTree tree = ParseScript(text);
    Check(!tree.nodes.empty() && tree.Root().kind == NodeKind::Script);
    CheckNode(tree, 0, 0);
    for (std::size_t i = 0; i < tree.errors.size(); ++i) {
        Check(tree.errors[i].position.offset <= size);
        Check(!tree.errors[i].message.empty());
        if (i > 0)
            Check(tree.errors[i - 1].position.line < tree.errors[i].position.line);
    }
    for (const ProcedureInfo& procedure : tree.Procedures())
        Check(procedure.begin.line <= procedure.nameAt.line &&
              procedure.nameAt.line <= procedure.end.line);
    if (tree.HasErrors())
        return 0;
    const std::string shape = SExpression(tree, 0);
    for (const char* lineEnd : {"\r\n", "\n", "\r"}) {
        const SyntaxTree other = ParseScript(WithLineEnds(text, lineEnd));
        Check(!other.HasErrors());
        Check(SExpression(other, 0) == shape);
    }
    return 0;
}
