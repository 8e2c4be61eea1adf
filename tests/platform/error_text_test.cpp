// Texts of failure codes: the message table, and the fallbacks of a component error object.
#include "platform/core/error_text.h"

#include <gtest/gtest.h>

namespace {

using namespace talvor::platform;

TEST(ErrorText, TableTextsEndInALineEndThatTheErrorObjectCuts) {
    std::string text;
    ASSERT_TRUE(FormatSystemMessage(ScriptRuntimeError(5017), text));
    EXPECT_EQ(text, "Syntax error in regular expression\r\n");
    EXPECT_EQ(ComErrorMessage(ScriptRuntimeError(5017)), "Syntax error in regular expression");

    const struct {
        HRESULT code;
        const char* text;
    } known[] = {
        {ScriptRuntimeError(5018), "Unexpected quantifier"},
        {ScriptRuntimeError(5019), "Expected ']' in regular expression"},
        {ScriptRuntimeError(5020), "Expected ')' in regular expression"},
        {ScriptRuntimeError(5021), "Invalid range in character set"},
        {ScriptRuntimeError(28), "Out of stack space"},
        {E_OUTOFMEMORY, "Not enough memory resources are available to complete this operation."},
        {E_FAIL, "Unspecified error"},
        {static_cast<HRESULT>(0x80040154u), "Class not registered"},
    };
    for (const auto& entry : known) {
        SCOPED_TRACE(entry.text);
        EXPECT_EQ(ComErrorMessage(entry.code), entry.text);
    }
}

TEST(ErrorText, CodesWithoutATextUseTheFallbacks) {
    std::string text = "untouched";
    EXPECT_FALSE(FormatSystemMessage(static_cast<HRESULT>(0x800A1234u), text));
    EXPECT_EQ(text, "untouched");
    EXPECT_EQ(ComErrorMessage(static_cast<HRESULT>(0x800A1234u)), "Unknown error 0x800A1234");
    EXPECT_EQ(ComErrorMessage(static_cast<HRESULT>(0x80040201u)), "IDispatch error #1");
    EXPECT_EQ(ComErrorMessage(static_cast<HRESULT>(0x8004FFFFu)), "IDispatch error #65023");
    // The first code of the range has the number 0, which an error object doesn't show.
    EXPECT_EQ(ComErrorMessage(static_cast<HRESULT>(0x80040200u)), "Unknown error 0x80040200");
    EXPECT_EQ(ComErrorMessage(static_cast<HRESULT>(0x800401FFu)), "Unknown error 0x800401FF");
    EXPECT_EQ(ComErrorMessage(static_cast<HRESULT>(0x80050200u)), "Unknown error 0x80050200");
}

} // namespace
