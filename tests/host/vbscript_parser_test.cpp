// The parser's reading of each statement and expression form, its errors, and its limits.
#include "host/base/vbscript_parser.h"

#include <gtest/gtest.h>

#include <string>

namespace talvor::host::vbscript {
namespace {

std::string Tree(const std::string& script) {
    const SyntaxTree tree = ParseScript(script);
    std::string errors;
    for (const SyntaxError& error : tree.errors)
        errors += " !" + std::to_string(error.position.line) + ":" +
                  std::to_string(error.position.column) + " " + error.message;
    return SExpression(tree, 0) + errors;
}

// The value of "x = EXPRESSION".
std::string Expression(const std::string& expression) {
    const SyntaxTree tree = ParseScript("x = " + expression);
    if (tree.HasErrors())
        return "error: " + tree.errors.front().message;
    const Node& assignment = tree.At(tree.Root().firstChild);
    return SExpression(tree, tree.At(assignment.firstChild).nextSibling);
}

std::string FirstError(const std::string& script) {
    const SyntaxTree tree = ParseScript(script);
    if (!tree.HasErrors())
        return "no error";
    const SyntaxError& error = tree.errors.front();
    return std::to_string(error.position.line) + ":" + std::to_string(error.position.column) +
           ": " + error.message;
}

struct Case {
    const char* in;
    const char* out;
};

const Case Precedence[] = {
    {"1 + 2 * 3", "(+ 1 (* 2 3))"},
    {"-2 ^ 2", "(neg (^ 2 2))"},
    {"2 ^ -1", "(^ 2 (neg 1))"},
    {"2 ^ 3 ^ 2", "(^ (^ 2 3) 2)"},
    {"a \\ b * c", "(\\ a (* b c))"},
    {"a Mod b \\ c", "(Mod a (\\ b c))"},
    {"a + b Mod c", "(+ a (Mod b c))"},
    {"a - b - c", "(- (- a b) c)"},
    {"a & b + c", "(& a (+ b c))"},
    {"a = b & c", "(= a (& b c))"},
    {"a < b = c", "(= (< a b) c)"},
    {"Not a = b", "(Not (= a b))"},
    {"a And Not b Or c", "(Or (And a (Not b)) c)"},
    {"a Or b And c", "(Or a (And b c))"},
    {"a Xor b Or c", "(Xor a (Or b c))"},
    {"a Eqv b Xor c", "(Eqv a (Xor b c))"},
    {"a Imp b Eqv c", "(Imp a (Eqv b c))"},
    {"x Is Nothing", "(Is x Nothing)"},
    {"Not x Is Nothing", "(Not (Is x Nothing))"},
    {"-a * -b", "(* (neg a) (neg b))"},
    {"(1 + 2) * 3", "(* (paren (+ 1 2)) 3)"},
    {"a <> b Or c >= d And e <= f", "(Or (<> a b) (And (>= c d) (<= e f)))"},
    {"a > b Xor c / d", "(Xor (> a b) (/ c d))"},
};

TEST(VbscriptExpressions, OperatorPrecedence) {
    for (const Case& c : Precedence) {
        SCOPED_TRACE(c.in);
        EXPECT_EQ(Expression(c.in), c.out);
    }
}

const Case Operands[] = {
    {"&H1F", "&H1F"},
    {"&hFFFF&", "&hFFFF&"},
    {"&O17", "&O17"},
    {"1.5E-3", "1.5E-3"},
    {".5 + 1", "(+ .5 1)"},
    {"#1/2/2003#", "#1/2/2003#"},
    {"#12:30:00 PM#", "#12:30:00 PM#"},
    {"\"say \"\"hi\"\"\"", "\"say \"\"hi\"\"\""},
    {"\"\"", "\"\""},
    {"True Or False", "(Or True False)"},
    {"Empty & Null", "(& Empty Null)"},
    {"f(1, , 3)", "(call f 1 _ 3)"},
    {"f()", "(call f)"},
    {"a(1)(2)", "(call (call a 1) 2)"},
    {"a.b(1).c", "(. (call (. a b) 1) c)"},
    {"obj.End + obj.Select", "(+ (. obj End) (. obj Select))"},
    {"[my var] + 1", "(+ my var 1)"},
    {"New Foo", "(new Foo)"},
    {"Me.Value", "(. Me Value)"},
    {"x & y", "(& x y)"},
    {"x&y", "(& x y)"},
    {"a &hx", "(& a hx)"},
    {"Sqr(2) ^ 2", "(^ (call Sqr 2) 2)"},
    {"objects(\"a\").Item(i + 1)", "(call (. (call objects \"a\") Item) (+ i 1))"},
    {"1 + _\n  2", "(+ 1 2)"},
};

TEST(VbscriptExpressions, OperandsAndLiterals) {
    for (const Case& c : Operands) {
        SCOPED_TRACE(c.in);
        EXPECT_EQ(Expression(c.in), c.out);
    }
}

const Case Statements[] = {
    {"Call foo(1, 2)", "(Script (CallStatement (call foo 1 2)))"},
    {"Call foo", "(Script (CallStatement foo))"},
    {"foo 1, , 3", "(Script (CallStatement (call foo 1 _ 3)))"},
    {"foo(1)", "(Script (CallStatement (call foo 1)))"},
    {"foo (1), 2", "(Script (CallStatement (call foo (paren 1) 2)))"},
    {"foo (1) + 2, 3", "(Script (CallStatement (call foo (+ (paren 1) 2) 3)))"},
    {"WScript.Echo \"a\" & b", "(Script (CallStatement (call (. WScript Echo) (& \"a\" b))))"},
    {"obj.Method", "(Script (CallStatement (. obj Method)))"},
    {"a(1).b = 2", "(Script (Assignment (. (call a 1) b) 2))"},
    {"Set x = New Foo", "(Script (SetAssignment x (new Foo)))"},
    {"Set x.y = Nothing", "(Script (SetAssignment (. x y) Nothing))"},
    {"x = 1 : y = 2", "(Script (Assignment x 1) (Assignment y 2))"},
    {"Dim a, b(3), c(), d(1, 2)",
     "(Script (VariableDeclaration (Declarator a) (Declarator b 3) (Declarator c) "
     "(Declarator d 1 2)))"},
    {"Dim db : Set db = Open(p) : Check",
     "(Script (VariableDeclaration (Declarator db)) (SetAssignment db (call Open p)) "
     "(CallStatement Check))"},
    {"ReDim Preserve a(n + 1, 2), b(3)",
     "(Script (ReDim (Declarator a (+ n 1) 2) (Declarator b 3)))"},
    {"Const A = 1, B = \"x\"",
     "(Script (ConstDeclaration (ConstDeclarator A 1) (ConstDeclarator B \"x\")))"},
    {"Private Const C = -1", "(Script (ConstDeclaration (ConstDeclarator C (neg 1))))"},
    {"Public g1, g2", "(Script (VariableDeclaration (Declarator g1) (Declarator g2)))"},
    {"Erase a", "(Script (Erase a))"},
    {"Randomize\nRandomize 5\nStop", "(Script (Randomize) (Randomize 5) (Stop))"},
    {"Option Explicit\nDim x", "(Script (OptionExplicit) (VariableDeclaration (Declarator x)))"},
    {"On Error Resume Next\nOn Error GoTo 0", "(Script (OnErrorResumeNext) (OnErrorGoToZero))"},
    {"If a Then b = 1 Else b = 2",
     "(Script (If a (Block (Assignment b 1)) (Else (Block (Assignment b 2)))))"},
    {"If a Then b : c Else d",
     "(Script (If a (Block (CallStatement b) (CallStatement c)) (Else (Block (CallStatement "
     "d)))))"},
    {"if c then call Usage end if", "(Script (If c (Block (CallStatement Usage))))"},
    {"If a Then x Else If b Then y Else z",
     "(Script (If a (Block (CallStatement x)) (Else (Block (If b (Block (CallStatement y)) "
     "(Else (Block (CallStatement z))))))))"},
    {"If a Then\n x\nElseIf b Then\n y\nElse z\nEnd If",
     "(Script (If a (Block (CallStatement x)) (ElseIf b (Block (CallStatement y))) (Else "
     "(Block (CallStatement z)))))"},
    {"Select Case x\n' note\nCase 1, 2\n y\nCase Else\n z\nEnd Select",
     "(Script (SelectCase x (Case 1 2 (Block (CallStatement y))) (CaseElse (Block "
     "(CallStatement z)))))"},
    {"Select Case x : Case 1 : y : End Select",
     "(Script (SelectCase x (Case 1 (Block (CallStatement y)))))"},
    {"Do While a\n x\nLoop", "(Script (DoLoop a (Block (CallStatement x))))"},
    {"Do\n x\nLoop Until a", "(Script (DoLoop a (Block (CallStatement x))))"},
    {"Do : Exit Do : Loop", "(Script (DoLoop (Block (Exit))))"},
    {"While a\n x\nWend", "(Script (WhileLoop a (Block (CallStatement x))))"},
    {"For i = 1 To 10 Step 2\n x\nNext", "(Script (ForLoop i 1 10 2 (Block (CallStatement x))))"},
    {"For Each f In folder.Files : Exit For : Next",
     "(Script (ForEachLoop f (. folder Files) (Block (Exit))))"},
    {"With obj\n .a = 1\n .b .c, 2\n Echo .d\nEnd With",
     "(Script (With obj (Block (Assignment .a 1) (CallStatement (call .b .c 2)) "
     "(CallStatement (call Echo .d)))))"},
    {"Set v = GetObject(\"w\") _\n   .ExecQuery(q)",
     "(Script (SetAssignment v (call (. (call GetObject \"w\") ExecQuery) q)))"},
    {"Rem a comment\nx = 1 : REM another\n' and one more", "(Script (Assignment x 1))"},
    {"Sub S(ByVal a, ByRef b, c())\n Exit Sub\nEnd Sub",
     "(Script (Procedure S (Parameter a) (Parameter b) (Parameter c) (Block (Exit))))"},
    {"Class C\n Private m\n Public Default Function F : F = m : End Function\n"
     " Property Let P(v) : m = v : End Property\nEnd Class",
     "(Script (ClassDeclaration C (Block (VariableDeclaration (Declarator m)) (Procedure F "
     "(Block (Assignment F m))) (Procedure P (Parameter v) (Block (Assignment m v))))))"},
};

TEST(VbscriptStatements, EachFormReadsAsItsNode) {
    for (const Case& c : Statements) {
        SCOPED_TRACE(c.in);
        EXPECT_EQ(Tree(c.in), c.out);
    }
}

TEST(VbscriptStatements, EmptyArgumentsLieInsideTheirCall) {
    for (const char* script : {"obj.Add \"k\", \r\nx = 1", "Call f(1, , )", "f , "}) {
        SCOPED_TRACE(script);
        const SyntaxTree tree = ParseScript(script);
        ASSERT_FALSE(tree.HasErrors());
        const Node& call = tree.At(tree.At(tree.Root().firstChild).firstChild);
        ASSERT_EQ(call.kind, NodeKind::CallOrIndex);
        const Node& last = tree.At(call.lastChild);
        EXPECT_EQ(last.kind, NodeKind::MissingArgument);
        EXPECT_GE(last.begin.offset, call.begin.offset);
        EXPECT_LE(last.end.offset, call.end.offset);
    }
}

TEST(VbscriptStatements, LoopConditionsAndExitKindsAreKept) {
    const SyntaxTree tree = ParseScript("Do\nLoop Until a\nDo While b\nLoop\n"
                                        "Function F\n Exit Function\nEnd Function");
    const std::vector<NodeIndex> top = tree.Children(0);
    ASSERT_EQ(top.size(), 3u);
    EXPECT_EQ(tree.At(top[0]).detail, static_cast<uint8_t>(LoopCondition::UntilAtBottom));
    EXPECT_EQ(tree.At(top[1]).detail, static_cast<uint8_t>(LoopCondition::WhileAtTop));
    const NodeIndex body = tree.At(top[2]).lastChild;
    EXPECT_EQ(tree.At(tree.At(body).firstChild).detail, static_cast<uint8_t>(ExitKind::Function));
}

TEST(VbscriptProcedures, NameKindParametersAndLines) {
    const SyntaxTree tree = ParseScript("' head\r\n"
                                        "Private Sub Form_Load(ByVal a, b())\r\n"
                                        "  x = 1\r\n"
                                        "End Sub\r\n"
                                        "Function  Twice _\r\n"
                                        "   (n)\r\n"
                                        "  Twice = 2 * n\r\n"
                                        "End Function\r\n"
                                        "Class Account\r\n"
                                        "  Public Default Property Get Balance\r\n"
                                        "  End Property\r\n"
                                        "  Property Set Owner(o) : End Property\r\n"
                                        "End Class\r\n");
    ASSERT_FALSE(tree.HasErrors()) << tree.errors.front().message;
    const std::vector<ProcedureInfo> procedures = tree.Procedures();
    ASSERT_EQ(procedures.size(), 4u);

    const ProcedureInfo& load = procedures[0];
    EXPECT_EQ(load.name, "Form_Load");
    EXPECT_EQ(load.kind, ProcedureKind::Sub);
    EXPECT_EQ(load.visibility, Visibility::Private);
    EXPECT_EQ(load.begin.line, 2u);
    EXPECT_EQ(load.begin.column, 1u);
    EXPECT_EQ(load.end.line, 4u);
    EXPECT_EQ(load.end.column, 8u);
    EXPECT_EQ(load.nameAt.column, 13u);
    ASSERT_EQ(load.parameters.size(), 2u);
    EXPECT_TRUE(load.parameters[0].byVal);
    EXPECT_FALSE(load.parameters[0].isArray);
    EXPECT_EQ(load.parameters[1].name, "b");
    EXPECT_FALSE(load.parameters[1].byVal);
    EXPECT_TRUE(load.parameters[1].isArray);

    const ProcedureInfo& twice = procedures[1];
    EXPECT_EQ(twice.kind, ProcedureKind::Function);
    EXPECT_EQ(twice.nameAt.line, 5u);
    EXPECT_EQ(twice.nameAt.column, 11u);
    EXPECT_EQ(twice.end.line, 8u);
    ASSERT_EQ(twice.parameters.size(), 1u);
    EXPECT_EQ(twice.parameters[0].name, "n");

    EXPECT_EQ(procedures[2].name, "Balance");
    EXPECT_EQ(procedures[2].kind, ProcedureKind::PropertyGet);
    EXPECT_TRUE(procedures[2].isDefault);
    EXPECT_EQ(procedures[2].className, "Account");
    EXPECT_EQ(procedures[3].kind, ProcedureKind::PropertySet);
    EXPECT_EQ(procedures[3].begin.line, procedures[3].end.line);
}

TEST(VbscriptProcedures, CommentsAreRecordedWithTheirLines) {
    const SyntaxTree tree = ParseScript("x = 1 ' one\nRem two\n\ty = \"'not\" ' three");
    ASSERT_EQ(tree.comments.size(), 3u);
    EXPECT_EQ(tree.comments[0].begin.column, 7u);
    EXPECT_EQ(tree.comments[1].begin.line, 2u);
    EXPECT_EQ(tree.comments[2].begin.column, 13u);
    EXPECT_EQ(tree.comments[2].end.column, 20u);
}

const Case Errors[] = {
    {"If a Then\nx = 1\n",
     "3:1: 'If' on line 1 is not closed: expected 'End If', found end of script"},
    {"Sub S\n If a Then\n  x\nEnd Sub",
     "4:1: 'If' on line 2 is not closed: expected 'End If', found 'End Sub'"},
    {"Sub a\nSub b\nEnd Sub", "2:1: 'Sub' on line 1 is not closed: expected 'End Sub', found "
                              "'Sub'"},
    {"x = \"abc", "1:5: unterminated string: the closing '\"' is missing on this line"},
    {"x = #1/2/2003\ny = 1", "1:5: unterminated date literal: the closing '#' is missing on "
                             "this line"},
    {"x = [a b", "1:5: unterminated bracketed name: the closing ']' is missing on this line"},
    {"Next", "1:1: 'Next' without 'For'"},
    {"For i = 1 To 3\nLoop\nNext", "2:1: 'Loop' without 'Do'"},
    {"Wend", "1:1: 'Wend' without 'While'"},
    {"x = 1\nEnd If", "2:1: 'End If' without 'If'"},
    {"Case 1", "1:1: 'Case' outside 'Select Case'"},
    {"End Foo", "1:1: 'End' must be followed by If, Select, With, Sub, Function, Property or "
                "Class"},
    {"Do While a\nLoop Until b", "2:6: a 'Do' loop cannot test a condition at both ends"},
    {"x = 1 +", "1:8: expected an expression, found end of script"},
    {"x = 1 +\ny = 2", "1:8: expected an expression, found end of line"},
    {"x = (1 + 2", "1:11: expected ')' to close the parenthesis, found end of script"},
    {"x = y z", "1:7: expected end of statement, found 'z'"},
    {"If a b Then", "1:6: expected 'Then' after the condition of 'If', found 'b'"},
    {"Sub f\nExit For\nEnd Sub", "2:1: 'Exit For' outside a 'For' loop"},
    {"Function f\nExit Sub\nEnd Function", "2:1: 'Exit Sub' outside a 'Sub'"},
    {"For i = 1 To 2\nSub s\nExit For\nEnd Sub\nNext",
     "2:1: 'Sub' must stand at the top level of the script or in a class"},
    {".x = 1", "1:1: '.x' outside a 'With' block"},
    {"Sub f\nPrivate x\nEnd Sub",
     "2:1: 'Private' cannot stand inside a procedure; declare with 'Dim'"},
    {"Class C\nx = 1\nEnd Class",
     "2:1: only declarations and procedures may stand in a class body, found 'x'"},
    {"x = 1\nOption Explicit", "2:1: 'Option Explicit' must come before every other statement"},
    {"x = &O19", "1:5: malformed octal number: '9' is not an octal digit"},
    {"x = 1e", "1:5: malformed number: the exponent has no digits"},
    {"x = 12abc", "1:5: malformed number: a letter follows the digits"},
    {"Dim a(n)", "1:7: expected a whole number as array bound, found 'n'"},
    {"Dim If", "1:5: expected a name after 'Dim', found keyword 'If'"},
    {"If a Then For i = 1 To 2", "1:11: 'For' starts a block and cannot stand in a single-line "
                                 "'If'"},
    {"Select Case x\ny = 1\nCase 1\nEnd Select",
     "2:1: expected 'Case' after 'Select Case', found 'y'"},
    {"x = $", "1:5: unexpected character '$'"},
    {"x = 1 _ y", "1:7: unexpected character '_': a line continuation must end its line"},
    {"Function F\nEnd Sub", "2:1: 'Function' on line 1 ends with 'End Sub'; expected 'End "
                            "Function'"},
    {"Set x 5", "1:7: expected '=' after the target of 'Set', found '5'"},
    {"On Error Resume", "1:10: expected 'Resume Next' or 'GoTo 0' after 'On Error', found "
                        "'Resume'"},
    {"Public Default Sub S\nEnd Sub",
     "1:8: 'Default' is allowed only on a 'Public' procedure of a class"},
    {"x = Loop", "1:5: expected an expression, found keyword 'Loop'"},
    {"x = 1 \"abcdefghijklmnopqrstuvwxyz0123\xE4\xB8\xAD\"",
     "1:7: expected end of statement, found string \"abcdefghijklmnopqrstuvwxyz0123..."},
    {"x = 1\nobj.Add(\"k\", 1)", "2:8: parentheses around more than one argument of a call "
                                 "statement; write the arguments without them, or use 'Call'"},
    {"f (a, b) + 1", "1:5: expected ')' to close the parenthesis, found ','"},
};

TEST(VbscriptErrors, FirstErrorHasLineColumnAndMessage) {
    for (const Case& c : Errors) {
        SCOPED_TRACE(c.in);
        EXPECT_EQ(FirstError(c.in), c.out);
    }
}

TEST(VbscriptErrors, EachErrorCoversWhatIsWrong) {
    const Case lengths[] = {
        {"x = \"abc", "4"}, {"x = y zz", "2"},  {"x = 1 +", "0"},  {"Next", "4"},
        {"x = $", "1"},     {"x = 12abc", "2"}, {"y = #1/2", "4"}, {"If a\n", "0"},
    };
    for (const Case& c : lengths) {
        SCOPED_TRACE(c.in);
        const SyntaxTree tree = ParseScript(c.in);
        ASSERT_TRUE(tree.HasErrors());
        EXPECT_EQ(std::to_string(tree.errors.front().length), c.out);
    }
}

TEST(VbscriptErrors, OneErrorPerLineAndTheParseGoesOn) {
    const SyntaxTree tree = ParseScript("x = $ $ $\nSub S\n y = )\nEnd Sub\nz = (");
    ASSERT_EQ(tree.errors.size(), 3u);
    EXPECT_EQ(tree.errors[0].position.line, 1u);
    EXPECT_EQ(tree.errors[1].position.line, 3u);
    EXPECT_EQ(tree.errors[2].position.line, 5u);
    ASSERT_EQ(tree.Procedures().size(), 1u);
    EXPECT_EQ(tree.Procedures()[0].end.line, 4u);
}

TEST(VbscriptLimits, DeepNestingIsRefusedNotOverflowed) {
    const std::string depthMessage = "nesting deeper than " + std::to_string(MaxNestingDepth) +
                                     " levels; the rest of the script is not read";
    std::string parens = "x = " + std::string(100000, '(') + "1";
    std::string negations = "x = " + std::string(100000, '-') + "1";
    std::string nots = "x = ";
    std::string ifs, calls = "x = ";
    for (int i = 0; i < 50000; ++i) {
        nots += "Not ";
        ifs += "If a Then\n";
        calls += "f(";
    }
    std::string singleLine = "If a Then ";
    for (int i = 0; i < 50000; ++i)
        singleLine += "If a Then ";
    for (const std::string* script : {&parens, &negations, &nots, &ifs, &calls, &singleLine}) {
        const SyntaxTree tree = ParseScript(*script);
        ASSERT_TRUE(tree.HasErrors());
        EXPECT_EQ(tree.errors.front().message, depthMessage);
    }
    // Just below the limit reads fine.
    std::string fine = "x = " + std::string(150, '(') + "1" + std::string(150, ')');
    EXPECT_FALSE(ParseScript(fine).HasErrors());
}

TEST(VbscriptLimits, LongOperatorChainsAreRefusedPastTheLimit) {
    const std::string limitMessage = "statement with more than " +
                                     std::to_string(MaxStatementOperations) +
                                     " operators, member accesses and calls; the rest of the "
                                     "script is not read";
    std::string concatenation = "x = a", members = "x = a", calls = "x = f";
    for (int i = 0; i < 20000; ++i) {
        concatenation += " & a";
        members += ".b";
        calls += "(1)";
    }
    for (const std::string* script : {&concatenation, &members, &calls}) {
        const SyntaxTree tree = ParseScript(*script + "\nSub S\nEnd Sub");
        ASSERT_FALSE(tree.errors.empty());
        EXPECT_EQ(tree.errors.front().message, limitMessage);
    }
    // The count is per statement: many long statements are fine.
    std::string manyLong;
    for (int line = 0; line < 10; ++line) {
        manyLong += "x = 1";
        for (int i = 0; i < MaxStatementOperations - 1; ++i)
            manyLong += " + 1";
        manyLong += "\n";
    }
    EXPECT_FALSE(ParseScript(manyLong).HasErrors());
}

// Every node lies inside the source and inside its parent; the count of bad nodes.
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

TEST(VbscriptLimits, NodeRangesNestInsideTheirParents) {
    // Inputs the fuzz target reduced: blocks and arguments that begin at a line end or the end
    // of the script.
    for (const char* script :
         {"Sub x = (1 + _\n", "Sub A\n  If x Then\n    : Exit Sub : End\n",
          "obj.Add \"k\", \r\nx = 1", "If a Then\n", "If a Then :", "Do\n", "Select Case x\n",
          "Class C", "f(1, ", "If a Then If (b = 0) And c Then\r\n  x\r\nEnd If"}) {
        SCOPED_TRACE(script);
        EXPECT_EQ(NodesOutsideTheirParent(ParseScript(script), 0), 0);
    }
}

TEST(VbscriptLimits, LineEndsOfEveryKindCountLines) {
    const SyntaxTree tree = ParseScript("a = 1\rb = 2\r\nc = 3\nd = \"\xE4\xB8\xAD\" + e");
    ASSERT_FALSE(tree.HasErrors());
    const std::vector<NodeIndex> top = tree.Children(0);
    ASSERT_EQ(top.size(), 4u);
    EXPECT_EQ(tree.At(top[1]).begin.line, 2u);
    EXPECT_EQ(tree.At(top[2]).begin.line, 3u);
    EXPECT_EQ(tree.At(top[3]).begin.line, 4u);
    EXPECT_EQ(tree.At(top[3]).end.column, 14u); // bytes, not characters
}

} // namespace
} // namespace talvor::host::vbscript
