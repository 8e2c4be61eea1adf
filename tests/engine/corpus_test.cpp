// Real scripts written by others: every file through the whole-script round trip, every line
// classified and titled, and the blocks of every procedure walked and edited.
#include "engine/script_text_disposal.h"
#include "tests/engine/engine_test_support.h"
#include "tests/reference/reference_whole_script.h"
#include "tests/support/corpus.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

// The scripts and the pages that hold script, not the manifest and the read-me.
std::vector<std::string> Scripts() {
    std::vector<std::string> scripts;
    for (const std::string& path : talvor::testing::CorpusFiles("vbscript")) {
        std::string extension = path.substr(path.find_last_of('.') + 1);
        CString lower(extension);
        lower.MakeLower();
        if (lower == "vbs" || lower == "asp" || lower == "hta")
            scripts.push_back(path);
    }
    return scripts;
}

// Every procedure of a script, as GetDataByEventCode gives it.
std::vector<VB_SUB_PROGRAMME_INFO> Procedures(const CString& script) {
    TestForm form({}, {});
    VB_ALL_PROGRAMME_INFO info;
    CStringArray lines;
    form.Parse(script, info, lines);
    std::vector<VB_SUB_PROGRAMME_INFO> procedures;
    for (const CStringArray* blocks : {&info.arrSubCode, &info.arrFunctionCode}) {
        for (const CString& block : *blocks) {
            procedures.emplace_back();
            Engine().GetDataByEventCode(block, &procedures.back());
        }
    }
    return procedures;
}

TEST(Corpus, ScriptsComeThroughASecondRoundTripUnchanged) {
    std::vector<std::string> scripts = Scripts();
    ASSERT_GE(scripts.size(), 71u) << "corpus missing under " << talvor::testing::CorpusDir();
    int withProcedures = 0;
    for (const std::string& path : scripts) {
        SCOPED_TRACE(path);
        CString script(talvor::testing::ReadFileBytes(path));
        TestForm form({}, {});
        VB_ALL_PROGRAMME_INFO fast, plain;
        CStringArray fastLines, plainLines;
        form.Parse(script, fast, fastLines);
        Engine().ChangeScripText(script, plainLines);
        ReferenceParse(Engine(), plainLines, form.m_names, form.m_form, form.m_interfaces, plain);
        EXPECT_EQ(fast.strGlobal, plain.strGlobal);
        EXPECT_EQ(Join(fast.arrSubCode), Join(plain.arrSubCode));
        EXPECT_EQ(Join(fast.arrFunctionCode), Join(plain.arrFunctionCode));
        EXPECT_EQ(Join(fastLines), Join(plainLines));

        CString once = Engine().SetScriptTextByCodeInfo(&fast);
        EXPECT_EQ(form.RoundTrip(once), once);
        if (!fast.arrSubCode.IsEmpty() || !fast.arrFunctionCode.IsEmpty())
            ++withProcedures;
    }
    EXPECT_GT(withProcedures, 30); // others have "Private Sub", indented or lower-case heads
}

TEST(Corpus, EveryLineIsClassifiedAndTitled) {
    int flowLines = 0, lines = 0;
    for (const std::string& path : Scripts()) {
        SCOPED_TRACE(path);
        CStringArray all;
        Engine().ChangeScripText(CString(talvor::testing::ReadFileBytes(path)), all);
        for (const CString& line : all) {
            ENUM_FLOWLOOP flow = Engine().CheckCodeFlow(line);
            EXPECT_GE(flow, FLOW_NONE);
            EXPECT_LE(flow, FLOW_EXIT);
            flowLines += flow != FLOW_NONE;
            CString title = Engine().GetTreeTitleByCode(line);
            // A plain line is titled as written, or as a call or assignment of an object.
            if (flow == FLOW_NONE && !title.IsEmpty() && title != line) {
                EXPECT_GE(title.Find("    "), 0) << line << " -> " << title;
            }
            ++lines;
        }
    }
    EXPECT_GT(lines, 10000);
    EXPECT_GT(flowLines, 1000);
    EXPECT_TRUE(talvor::testing::ShownMessages().empty());
}

TEST(Corpus, BlocksOfEveryProcedureAreWalkedAndEdited) {
    int walked = 0;
    for (const std::string& path : Scripts()) {
        SCOPED_TRACE(path);
        for (VB_SUB_PROGRAMME_INFO& procedure :
             Procedures(CString(talvor::testing::ReadFileBytes(path)))) {
            CStringArray& body = procedure.arrCode;
            const int size = static_cast<int>(body.GetSize());
            for (int i = 0; i < size; ++i) {
                int index = i, start, middle, end;
                Engine().GetFlowPosByKeyWord(body, index, start, middle, end);
                for (int position : {index, start, middle, end}) {
                    EXPECT_GE(position, -1);
                    EXPECT_LT(position, size);
                }
                ++walked;
            }
            // Each operation once on a copy, at the middle line: the list stays a list of the
            // same lines or the result says it could not be done.
            for (int op = CODE_OPERATE_MODIFY; op <= CODE_OPERATE_MOVE_BOTTOM; ++op) {
                CStringArray copy = body;
                int result = Engine().CodeOperate(copy, "If (x) Then",
                                                  static_cast<ENUM_CODE_OPERATE>(op), size / 2);
                EXPECT_GE(result, -1);
                EXPECT_LT(result, copy.GetSize());
            }
        }
    }
    EXPECT_GT(walked, 2000);
}

} // namespace
} // namespace talvor::engine::testing
