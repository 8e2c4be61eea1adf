// The colour table in archive form: 68 bytes in record order, read back into the same members,
// and a short archive that fails with the framework's exception.
#include "tests/syntax/parser_harness.h"

#include "platform/files/archive.h"
#include "platform/files/file.h"
#include "tests/support/test_environment.h"

#include <cstring>
#include <gtest/gtest.h>

namespace talvor::testing {
namespace {

// Every colour gets a value of its own, so any exchange of two shows.
void GiveDistinctColours(CTalvorSyntax& syntax) {
    COLORREF* members[] = {&syntax.m_clrBkColor,
                           &syntax.m_clrCommentColor,
                           &syntax.m_clrSyntaxColor,
                           &syntax.m_clrNormalColor,
                           &syntax.m_clrStringColor,
                           &syntax.m_clrCharColor,
                           &syntax.m_clrNumberColor,
                           &syntax.m_clrUnderLine,
                           &syntax.m_clrBkCurLine,
                           &syntax.m_clrLineEnd,
                           &syntax.m_clrLinNumberBkColor,
                           &syntax.m_clrLinNumberNormal,
                           &syntax.m_clrCurLinNumber,
                           &syntax.m_clrLinNumberSep,
                           &syntax.m_clrCross,
                           &syntax.m_clrBKSelText,
                           &syntax.m_clrTab};
    COLORREF value = 0x00010203;
    for (COLORREF* member : members) {
        *member = value;
        value += 0x00010101;
    }
}

std::string Store(CTalvorSyntax& syntax) {
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    syntax.SerializeColor(archive);
    archive.Close();
    return file.Data();
}

DWORD At(const std::string& bytes, std::size_t index) {
    DWORD value = 0;
    std::memcpy(&value, bytes.data() + 4 * index, 4);
    return value;
}

TEST(ColorSerialization, StoresSeventeenValuesTabBeforeSelection) {
    ParserUnderTest syntax;
    GiveDistinctColours(syntax);
    const std::string bytes = Store(syntax);
    ASSERT_EQ(bytes.size(), 68u);
    const COLORREF expected[] = {
        syntax.m_clrBkColor,      syntax.m_clrCommentColor,     syntax.m_clrSyntaxColor,
        syntax.m_clrNormalColor,  syntax.m_clrStringColor,      syntax.m_clrCharColor,
        syntax.m_clrNumberColor,  syntax.m_clrUnderLine,        syntax.m_clrBkCurLine,
        syntax.m_clrLineEnd,      syntax.m_clrLinNumberBkColor, syntax.m_clrLinNumberNormal,
        syntax.m_clrCurLinNumber, syntax.m_clrLinNumberSep,     syntax.m_clrCross,
        syntax.m_clrTab,          syntax.m_clrBKSelText};
    for (std::size_t i = 0; i < 17; ++i)
        EXPECT_EQ(At(bytes, i), expected[i]) << "value " << i;
    // Little-endian: the first byte of the default background is its red part.
    ParserUnderTest defaults;
    const std::string plain = Store(defaults);
    EXPECT_EQ(static_cast<unsigned char>(plain[4]), 0x00); // comment 0x008000
    EXPECT_EQ(static_cast<unsigned char>(plain[5]), 0x80);
}

TEST(ColorSerialization, LoadsWhatWasStored) {
    ParserUnderTest source;
    GiveDistinctColours(source);
    const std::string bytes = Store(source);
    ParserUnderTest target;
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    target.SerializeColor(archive);
    EXPECT_EQ(Store(target), bytes);
    EXPECT_EQ(target.m_clrTab, source.m_clrTab);
    EXPECT_EQ(target.m_clrBKSelText, source.m_clrBKSelText);
}

TEST(ColorSerialization, ShortArchiveThrows) {
    ParserUnderTest source;
    const std::string bytes = Store(source).substr(0, 40);
    ParserUnderTest target;
    target.m_clrTab = 0x123456;
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    int cause = CArchiveException::none;
    try {
        target.SerializeColor(archive);
    } catch (CArchiveException* e) { // the framework throws pointers; the catcher deletes
        cause = e->m_cause;
        e->Delete();
    }
    EXPECT_EQ(cause, CArchiveException::endOfFile);
    EXPECT_EQ(target.m_clrBkColor, source.m_clrBkColor); // the values before the end are read
    EXPECT_EQ(target.m_clrTab, 0x123456u);
}

} // namespace
} // namespace talvor::testing
