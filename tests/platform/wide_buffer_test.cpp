// Conversion into kept buffers with the ASCII fast path: ASCII before other characters, at
// every distance from the eight-byte blocks, must convert exactly as the characters alone do,
// in every page; a buffer that held a longer text gives no stale units; the ASCII answer is
// true for ASCII text alone.
#include "platform/codepage/code_page.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using talvor::platform::FromWide;
using talvor::platform::SetSystemCodePage;
using talvor::platform::ToWide;

struct PageText {
    unsigned codePage;
    std::string other; // characters beyond ASCII, and a byte that is no character of the page
};

const PageText Pages[] = {
    {1252, "\x80\xE9\xFF\x81"},    {65001, "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80\xFF"},
    {936, "\xD6\xD0\xCE\xC4\x80"}, {932, "\x82\xA0\xB1\x81\x40"},
    {949, "\xB0\xA1\xFF"},         {1251, "\xC0\xE0"},
};

class WideBuffer : public ::testing::TestWithParam<PageText> {
protected:
    void SetUp() override { ASSERT_TRUE(SetSystemCodePage(GetParam().codePage)); }
    void TearDown() override { SetSystemCodePage(1252); }
};

TEST_P(WideBuffer, AsciiBeforeOtherCharactersConvertsAsEachPartAlone) {
    const std::string& other = GetParam().other;
    std::u16string wide = u"stale units from a longer text that came before this one";
    std::string narrow = "stale bytes from a longer text that came before this one";
    for (std::size_t prefix = 0; prefix <= 19; ++prefix) {
        SCOPED_TRACE(prefix);
        const std::string ascii = std::string("If x = 1 Then y = \"z\"").substr(0, prefix);
        const std::string text = ascii + other + " tail";
        EXPECT_FALSE(ToWide(text, wide));
        EXPECT_EQ(wide, ToWide(ascii) + ToWide(other) + u" tail");
        FromWide(wide, narrow);
        EXPECT_EQ(narrow, FromWide(ToWide(ascii)) + FromWide(ToWide(other)) + " tail");
        EXPECT_EQ(narrow, FromWide(wide));
    }
}

TEST_P(WideBuffer, AsciiTextIsOneUnitPerByteAndSaysSo) {
    std::u16string wide = u"a longer text than the next one, to be cut";
    for (const std::string& text : {std::string(), std::string("x"),
                                    std::string(" Loop While (n < 10) "), std::string(37, 0x7F)}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(ToWide(text, wide));
        ASSERT_EQ(wide.size(), text.size());
        for (std::size_t i = 0; i < text.size(); ++i)
            EXPECT_EQ(wide[i], static_cast<char16_t>(text[i]));
        std::string narrow = "a longer text than the next one, to be cut";
        FromWide(wide, narrow);
        EXPECT_EQ(narrow, text);
    }
}

INSTANTIATE_TEST_SUITE_P(Pages, WideBuffer, ::testing::ValuesIn(Pages),
                         [](const ::testing::TestParamInfo<PageText>& info) {
                             return "CP" + std::to_string(info.param.codePage);
                         });

} // namespace
