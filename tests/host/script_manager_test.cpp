// The script manager over the parser: loading, the walk over scripts, procedures and errors.
#include "host/base/script_manager.h"

#include <gtest/gtest.h>

namespace {

TEST(ScriptManager, LoadsScriptsAndWalksThemInOrder) {
    CTVScriptManager manager;
    EXPECT_EQ(manager.GetFirstScriptPosition(), nullptr);
    CTVScript* first = nullptr;
    EXPECT_EQ(manager.LoadScript("Sub A(x)\nEnd Sub\nFunction B\nEnd Function", 1, &first), 0);
    EXPECT_EQ(manager.LoadScript("Property Get C\nEnd Property", 1, nullptr), 0);

    POSITION position = manager.GetFirstScriptPosition();
    CTVScript* script = manager.GetNextScript(position);
    ASSERT_EQ(script, first);
    ASSERT_EQ(script->GetProcedures().size(), 2u);
    EXPECT_EQ(script->GetProcedures()[0].name, "A");
    EXPECT_EQ(script->GetProcedures()[0].parameters.size(), 1u);
    EXPECT_EQ(script->GetProcedures()[1].kind, talvor::host::vbscript::ProcedureKind::Function);
    ASSERT_NE(position, nullptr);
    script = manager.GetNextScript(position);
    ASSERT_NE(script, nullptr);
    EXPECT_EQ(script->GetProcedures()[0].kind, talvor::host::vbscript::ProcedureKind::PropertyGet);
    EXPECT_EQ(position, nullptr);
    EXPECT_EQ(manager.GetNextScript(position), nullptr);

    manager.RemoveAllScripts();
    EXPECT_EQ(manager.GetFirstScriptPosition(), nullptr);
    EXPECT_EQ(manager.GetScriptCount(), 0);
}

TEST(ScriptManager, SyntaxErrorsFailTheLoadButKeepTheScript) {
    CTVScriptManager manager;
    CTVScript* script = nullptr;
    EXPECT_EQ(manager.LoadScript("Sub A\n If x Then\nEnd Sub\nSub B : End Sub", 1, &script), 1);
    ASSERT_NE(script, nullptr);
    EXPECT_FALSE(script->IsCompiled());
    ASSERT_EQ(script->GetErrors().size(), 1u);
    EXPECT_EQ(script->GetErrors()[0].position.line, 3u);
    EXPECT_EQ(script->GetProcedures().size(), 2u); // what could be read is there
    EXPECT_EQ(manager.GetScriptCount(), 1);
    EXPECT_EQ(manager.LoadScript("x = (", 0, nullptr), 0); // not asked to compile
}

} // namespace
