// The keyword lists and the keyword store: the stored form of every list, the exact lists,
// loading with profile override and case folding, the insertion sort, and the binary search.
#include "tests/syntax/parser_harness.h"

#include "platform/codepage/code_page.h"
#include "tests/support/test_environment.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

namespace talvor::testing {
namespace {

std::vector<std::string> Entries(const std::string& list) {
    std::vector<std::string> entries;
    std::size_t start = 0;
    while (start < list.size()) {
        std::size_t comma = list.find(',', start);
        if (comma == std::string::npos)
            comma = list.size();
        entries.push_back(list.substr(start, comma - start));
        start = comma + 1;
    }
    return entries;
}

std::vector<std::string> ArrayOf(CTalvorSyntax& syntax) {
    std::vector<std::string> words;
    for (const CString& word : *syntax.GetKeyWords())
        words.push_back(word.Str());
    return words;
}

// Heads and sizes the lists are written to: a guide, so sizes may differ a little.
struct ListGuide {
    UINT code;
    const char* head;
    int bytes;
    int entries;
};
const ListGuide Guides[] = {
    {0, " abort,abs,abstract,accept,", 415, 69},
    {1, "", 0, 0},
    {2, " eax,ebx,ecx,edx,", 1966, 361},
    {3, " Alias,And,Any,As,", 637, 109},
    {4, " do,echo,errorlevel,exist,", 367, 64},
    {5, " class,is,uses,internal,", 434, 60},
    {6, " .and.,.f.,.not.,.or.,", 882, 139},
    {7, " ACCEPT,ACCESS,ADD,ADVANCING,", 1292, 164},
    {8, " #define,#else,#elif,#elseif,", 879, 116},
    {9, " #define,#else,#elif,#elseif,", 851, 117},
    {10, " abs,accept,acos,append_output,", 1405, 145},
    {11, " and,as,check,class,", 842, 108},
    {12, " ALLOCATABLE,CHARACTER,COMMON,COMPLEX,", 1598, 234},
    {13, " AND,ARRAY,AS,ASM,", 293, 44},
    {14, " center,codebase,quality,pluginspage,", 1015, 159},
    {15, "", 0, 0},
    {16, " abstract,boolean,break,byte,", 333, 49},
    {17, " abstract,boolean,break,byte,", 355, 52},
    {18, " adt,alt,break,case,", 204, 41},
    {19, " ABS,ADD1,AND,APPEND,", 623, 105},
    {20, " and,begin,by,case,", 422, 73},
    {21, " Absolute,Abstract,And,Array,", 731, 103},
    {22, " and,as,case,caseInsensitive,", 1048, 132},
    {23, " __DATA__,__END__,__FILE__,__LINE__,", 1554, 219},
    {24, " __FILE__,__LINE__,BOOL,BREAK,", 324, 48},
    {25, " act,activate,alloc,allocate,", 1480, 237},
    {26, " BIN,BYTE,CHAR,CHARACTER,", 167, 24},
    {27, " and,assert,break,class,", 156, 29},
    {29, " address,arg,by,call,", 733, 116},
    {30, " alias,and,begin,BEGIN,", 1504, 193},
    {32, " 1CE,1OL,ABS,AFTER,", 1001, 156},
    {33, " abs,access,after,alias,", 786, 115},
    {34, " !DOCTYPE,!ENTITY,!ELEMENT,!ATTLIST,", 130, 16},
};

TEST(KeywordLists, EveryListHasTheStoredFormHeadAndSize) {
    ASSERT_EQ(std::size(Guides), std::size(g_LanguageTable));
    for (std::size_t i = 0; i < std::size(Guides); ++i) {
        const ListGuide& guide = Guides[i];
        const LANGUAGE_INFO& row = g_LanguageTable[i];
        SCOPED_TRACE(row.m_pszName);
        ASSERT_EQ(row.m_nLanguage, guide.code);
        const std::string list = row.m_pszKeyWords;
        if (guide.entries == 0) {
            EXPECT_TRUE(list.empty());
            continue;
        }
        EXPECT_EQ(list.rfind(guide.head, 0), 0u) << "starts with " << guide.head;
        EXPECT_EQ(list.back(), ',');
        const std::vector<std::string> entries = Entries(list.substr(1));
        EXPECT_EQ(static_cast<int>(entries.size()), guide.entries);
        EXPECT_NEAR(static_cast<double>(list.size()), guide.bytes, guide.bytes * 0.25);
        for (const std::string& entry : entries)
            EXPECT_FALSE(entry.empty()) << "no empty entry";
    }
}

TEST(KeywordLists, ExactListsAsStored) {
    const struct {
        std::size_t row;
        const char* text;
    } exact[] = {
        {3, " Alias,And,Any,As,Base,Boolean,Byref,Byte,Byval,Call,Case,Close,Compare,Const,"
            "Currency,Data,Date,Declare,Defbool,Defbyte,Defcur,Defdate,Defdbl,Defdec,Defint,"
            "Deflng,Defobj,Defsng,Defstr,Defvar,Dim,Do,Double,Each,Else,Elseif,End,Enum,Eqv,Erase,"
            "Error,Event,Exit,Explicit,False,For,Function,Get,Global,Gosub,Goto,If,IIf,Imp,"
            "Implements,In,Integer,Is,Let,Lib,Line,Lock,Long,Loop,Lset,New,Next,Not,Object,On,"
            "Open,Option,Optional,Or,Preserve,Print,Private,Property,Public,Put,Raiseevent,Redim,"
            "Resume,Return,Rset,Select,Set,Single,Static,Stop,String,Sub,Then,To,True,Type,Ubound,"
            "Unload,Unlock,Var,Variant,Wend,While,With,Write,Xor,#if,#End,#else,"},
        {26, " BIN,BYTE,CHAR,CHARACTER,COM-HANDLE,DATE,DEC,DECIMAL,DOUBLE,FLOAT,HANDLE,INT,"
             "INTEGER,LOG,LOGICAL,LONG,MEMPTR,RAW,RECID,ROWID,SHORT,UNSIGNED-SHORT,WIDGET,"
             "WIDGET-HANDLE,"},
        {27, " and,assert,break,class,continue,def,del,elif,else,except,exec,finally,for,from,"
             "global,if,import,in,is,lambda,None,not,or,pass,print,raise,return,try,while,"},
        {32, " !DOCTYPE,!ENTITY,!ELEMENT,!ATTLIST,!NOTATION,CDATA,ID,IDREF,IDREFS,ENTITY,"
             "ENTITIES,NMTOKEN,NMTOKENS,^#REQUIRED,^#IMPLIED,^#FIXED,"},
    };
    for (const auto& e : exact)
        EXPECT_STREQ(g_LanguageTable[e.row].m_pszKeyWords, e.text)
            << g_LanguageTable[e.row].m_pszName;
}

TEST(KeywordStore, EveryStoredWordIsFoundAfterLoading) {
    // Sort and search must agree: each entry (but the first, which keeps its blank) is found,
    // in the case the language folds to, in every language.
    for (const LANGUAGE_INFO& row : g_LanguageTable) {
        SCOPED_TRACE(row.m_pszName);
        ParserUnderTest syntax;
        syntax.SetLanguage(row.m_nLanguage);
        syntax.LoadSynWord();
        const std::vector<std::string> entries = Entries(
            std::string(row.m_pszKeyWords).substr(std::string(row.m_pszKeyWords).empty() ? 0 : 1));
        ASSERT_EQ(syntax.GetKeyWords()->GetSize(), static_cast<INT_PTR>(entries.size()));
        for (std::size_t i = 1; i < entries.size(); ++i) {
            CString word(entries[i]);
            EXPECT_TRUE(syntax.IsSynWord(word)) << entries[i];
        }
        if (!entries.empty()) {
            CString first(entries[0]);
            EXPECT_FALSE(syntax.IsSynWord(first)) << "the first entry keeps its leading blank";
            std::string withBlank = " ";
            withBlank += entries[0];
            CString blankFirst(withBlank);
            EXPECT_TRUE(syntax.IsSynWord(blankFirst));
        }
        const std::vector<std::string> words = ArrayOf(syntax);
        EXPECT_TRUE(std::is_sorted(words.begin(), words.end()));
        if (!syntax.m_bCase) {
            for (const std::string& word : words) {
                CString lower(word);
                lower.MakeLower();
                EXPECT_EQ(word, lower.Str()) << "folded when the language ignores case";
            }
        }
    }
}

TEST(KeywordStore, ProfileListReplacesTheBuiltInOne) {
    ParserUnderTest basic;
    UseLanguage(basic, 3, "Foo,,bar,,");
    EXPECT_EQ(ArrayOf(basic), (std::vector<std::string>{"bar", "foo"}));
    CString foo("FOO"), alias("alias");
    EXPECT_TRUE(basic.IsSynWord(foo));
    EXPECT_FALSE(basic.IsSynWord(alias));

    basic.LoadSynWord(); // loading twice gives the same array, not a doubled one
    EXPECT_EQ(ArrayOf(basic), (std::vector<std::string>{"bar", "foo"}));

    ParserUnderTest cpp;
    UseLanguage(cpp, 8, " Zeta, alpha,Alpha"); // case kept; blanks kept, nothing trimmed
    EXPECT_EQ(ArrayOf(cpp), (std::vector<std::string>{" Zeta", " alpha", "Alpha"}));

    ParserUnderTest empty;
    UseLanguage(empty, 27, ""); // an empty stored value is an empty list
    EXPECT_TRUE(empty.GetKeyWords()->IsEmpty());
}

TEST(KeywordStore, LanguagesWithoutAListHaveNoKeywords) {
    for (UINT code : {1u, 15u, 28u, 31u, 35u, 99u}) {
        ParserUnderTest syntax;
        syntax.SetLanguage(code);
        syntax.LoadSynWord();
        EXPECT_TRUE(syntax.GetKeyWords()->IsEmpty()) << code;
        CString word("and");
        EXPECT_FALSE(syntax.IsSynWord(word)) << code;
    }
    // Rules and numbers still work there.
    ParserUnderTest ini;
    UseLanguage(ini, 15);
    EXPECT_EQ(Parse(ini, 0, "[a] x=12 ; c").runs, "(0,2) (0,4) (3,2) (5,2) (6,3) (8,2) (9,0)");
}

TEST(KeywordStore, DuplicatesStayAndAreFound) {
    ParserUnderTest ruby;
    UseLanguage(ruby, 30); // "begin" and "BEGIN" fold to two equal entries
    const std::vector<std::string> words = ArrayOf(ruby);
    EXPECT_EQ(std::count(words.begin(), words.end(), "begin"), 2);
    CString word("Begin");
    EXPECT_TRUE(ruby.IsSynWord(word));
}

TEST(KeywordStore, InsertionSortOrdersByExactComparison) {
    const std::vector<std::vector<std::string>> inputs = {
        {},
        {"one"},
        {"b", "a"},
        {"c", "b", "a", "b", "c"},
        {"a", "B", "b", "A", "_", "#if", " x", "z", "Z"},
        {"same", "same", "same"},
    };
    for (const auto& input : inputs) {
        ParserUnderTest syntax;
        for (const std::string& word : input)
            syntax.GetKeyWords()->Add(CString(word));
        syntax.SortSynWordArray();
        std::vector<std::string> expected = input;
        std::stable_sort(expected.begin(), expected.end());
        EXPECT_EQ(ArrayOf(syntax), expected);
    }
}

TEST(KeywordStore, CaseFoldingFollowsTheCodePage) {
    platform::SetSystemCodePage(platform::CodePageUtf8);
    ParserUnderTest basic;
    UseLanguage(basic, 3,
                "Gr\xC3\x96\xC3\x9F"
                "e,\xC3\x89t\xC3\xA9"); // "GrÖße", "Été"
    EXPECT_EQ(ArrayOf(basic), (std::vector<std::string>{"gr\xC3\xB6\xC3\x9F"
                                                        "e",
                                                        "\xC3\xA9t\xC3\xA9"}));
    CString upper("GR\xC3\x96\xC3\x9F"
                  "E"),
        mixed("\xC3\x89T\xC3\xA9");
    EXPECT_TRUE(basic.IsSynWord(upper));
    EXPECT_TRUE(basic.IsSynWord(mixed));
    EXPECT_EQ(Parse(basic, 0,
                    "GR\xC3\xB6\xC3\x9F"
                    "E x")
                  .runs,
              "(0,2) (0,1) (7,2)");
    // A multi-byte character never starts a word, so "Été" in a line is no keyword.
    EXPECT_EQ(Parse(basic, 0, "\xC3\x89T\xC3\x89 x").runs, "(0,2) (5,2)");

    platform::SetSystemCodePage(platform::CodePageWestern);
    UseLanguage(basic, 3, "\xC9t\xE9"); // "Été" in 1252
    CString western("\xC9T\xC9");
    EXPECT_TRUE(basic.IsSynWord(western));
}

} // namespace
} // namespace talvor::testing
