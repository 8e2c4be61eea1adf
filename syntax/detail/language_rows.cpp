// The language table: one row per language, in code order. Adding a language means its row
// here, its keyword list and its folder of examples. DQ is one double quote; rules are, in
// order: word bytes, line comment openers 0 and 1, block comment openers 0 and 1, their closers
// 0 and 1, string opener and closer, character literal opener and closer.
#include "syntax/detail/language_rows.h"

#include "syntax/detail/keyword_lists.h"

#include <array>
#include <iterator>

namespace talvor::syntax::detail {
namespace {

constexpr const char* DQ = "\"";

constexpr LanguageRow Rows[] = {
    {.code = Language::Ada,
     .name = "Ada",
     .comment = "--",
     .keywords = KeywordsAda,
     .rules = {"", {"--", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "adb ads ada"},
    {.code = Language::Aml,
     .name = "AML",
     .comment = "/*",
     .keywords = KeywordsAml,
     .rules = {"&", {"/*", ""}, {"", ""}, {"", ""}, "%", "%", "[", "]"},
     .extensions = "aml"},
    {.code = Language::Asm,
     .name = "ASM",
     .comment = ";",
     .keywords = KeywordsAsm,
     .rules = {"", {";", ""}, {"[", ""}, {"]", ""}, "", "", "", ""},
     .extensions = "asm s inc"},
    {.code = Language::Basic,
     .name = "Basic",
     .comment = "'",
     .keywords = KeywordsBasic,
     .rules = {"&#", {"'", "rem"}, {"", ""}, {"", ""}, DQ, DQ, "", ""},
     .hexNumbers = {{"&O", "&H"}, 3},
     .extensions = "bas cls frm vbs vb"},
    {.code = Language::Bat,
     .name = "BAT",
     .comment = "rem",
     .keywords = KeywordsBat,
     .rules = {"", {"rem", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "bat cmd"},
    {.code = Language::Blue,
     .name = "Blue",
     .comment = "--",
     .keywords = KeywordsBlue,
     .rules = {"", {"--", "=="}, {DQ, ""}, {DQ, ""}, "", "", "", ""},
     .extensions = "blu"},
    {.code = Language::Clipper,
     .name = "Clipper",
     .comment = "&&",
     .keywords = KeywordsClipper,
     .rules = {".", {"&&", "//"}, {"/*", ""}, {"*/", ""}, "", "", "", ""},
     .extensions = "prg ch"},
    {.code = Language::Cobol,
     .name = "COBOL",
     .comment = "*>",
     .keywords = KeywordsCobol,
     .rules = {"-", {"*>", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "cbl cob cpy"},
    {.code = Language::Cpp,
     .name = "C++",
     .comment = "//",
     .keywords = KeywordsCpp,
     .rules = {"#", {"//", ""}, {"/*", ""}, {"*/", ""}, DQ, DQ, "'", "'"},
     .hexNumbers = {{"0x"}, 3},
     .escapeAndCase = true,
     .extensions = "c cc cpp cxx h hh hpp hxx"},
    {.code = Language::CSharp,
     .name = "C#",
     .comment = "//",
     .keywords = KeywordsCSharp,
     .rules = {"#", {"//", ""}, {"/*", ""}, {"*/", ""}, DQ, DQ, "'", "'"},
     .escapeAndCase = true,
     .extensions = "cs"},
    {.code = Language::Dataflex,
     .name = "Dataflex",
     .comment = "//",
     .keywords = KeywordsDataflex,
     .rules = {"$", {"//", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "pkg wo vw"},
    {.code = Language::Eiffel,
     .name = "Eiffel",
     .comment = "--",
     .keywords = KeywordsEiffel,
     .rules = {"", {"--", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "e"},
    {.code = Language::Fortran,
     .name = "FORTRAN",
     .comment = "!",
     .keywords = KeywordsFortran,
     .rules = {".", {"!", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "f for f77 f90 f95"},
    {.code = Language::Hlbl,
     .name = "HLBL",
     .comment = "",
     .keywords = KeywordsHlbl,
     .rules = {"#", {"", ""}, {"{", "/*"}, {"}", "*/"}, "[", "]", "$$", "$$"},
     .extensions = "hlb"},
    {.code = Language::Html,
     .name = "HTML",
     .comment = "",
     .keywords = KeywordsHtml,
     .rules = {"-#", {"", ""}, {"<!--", ""}, {"-->", ""}, DQ, DQ, "'", "'"},
     .hexNumbers = {{"#"}, 3},
     .parser = LineParser::Tags,
     .extensions = "htm html"},
    {.code = Language::Ini,
     .name = "INI",
     .comment = ";",
     .keywords = KeywordsIni,
     .rules = {"", {";", ""}, {"", ""}, {"", ""}, "[", "]", "", ""},
     .extensions = "ini conf cfg"},
    {.code = Language::Java,
     .name = "Java",
     .comment = "//",
     .keywords = KeywordsJava,
     .rules = {"", {"//", ""}, {"/*", ""}, {"*/", ""}, "", "", "", ""},
     .extensions = "java"},
    {.code = Language::Jsp,
     .name = "JSP",
     .comment = "//",
     .keywords = KeywordsJsp,
     .rules = {"", {"//", ""}, {"/*", ""}, {"*/", ""}, "", "", "", ""},
     .extensions = "jsp"},
    {.code = Language::Limbo,
     .name = "LIMBO",
     .comment = "#",
     .keywords = KeywordsLimbo,
     .rules = {"", {"#", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "b"},
    {.code = Language::Lisp,
     .name = "LISP",
     .comment = ";",
     .keywords = KeywordsLisp,
     .rules = {"", {";", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "lisp lsp el cl"},
    {.code = Language::Modula2,
     .name = "Modula2",
     .comment = "",
     .keywords = KeywordsModula2,
     .rules = {"", {"", ""}, {"(*", ""}, {"*)", ""}, "", "", "", ""},
     .extensions = "mod def"},
    {.code = Language::ObjectPascal,
     .name = "Object Pascal",
     .comment = "//",
     .keywords = KeywordsObjectPascal,
     .rules = {"$", {"//", ""}, {"{", "(*"}, {"}", "*)"}, "'", "'", "[", "]"},
     .hexNumbers = {{"$"}, 1},
     .extensions = "pas dpr pp"},
    {.code = Language::Paradox,
     .name = "Paradox",
     .comment = ";",
     .keywords = KeywordsParadox,
     .rules = {"", {";", ""}, {"{", ""}, {"}", ""}, "", "", "", ""},
     .extensions = "ssl fsl"},
    {.code = Language::Perl,
     .name = "Perl",
     .comment = "//",
     .keywords = KeywordsPerl,
     .rules = {"", {"//", "#"}, {"/*", ""}, {"*/", ""}, "", "", "", ""},
     .extensions = "pl pm"},
    {.code = Language::Php,
     .name = "PHP",
     .comment = "//",
     .keywords = KeywordsPhp,
     .rules = {"", {"//", "#"}, {"/*", ""}, {"*/", ""}, "", "", "", ""},
     .extensions = "php"},
    {.code = Language::Pl1,
     .name = "PL1",
     .comment = "",
     .keywords = KeywordsPl1,
     .rules = {"-", {"", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "pli pl1"},
    {.code = Language::Progress,
     .name = "Progress",
     .comment = "",
     .keywords = KeywordsProgress,
     .rules = {"-", {"", ""}, {"/*", "{"}, {"*/", "}"}, "", "", "", ""},
     .extensions = "p w i"},
    {.code = Language::Python,
     .name = "Python",
     .comment = "#",
     .keywords = KeywordsPython,
     .rules = {"", {"#", ""}, {"", ""}, {"", ""}, DQ, DQ, "", ""},
     .extensions = "py"},
    {.code = Language::Nameless28,
     .rules = {"!?-", {";--", ""}, {"", ""}, {"", ""}, "{", "}", "<", ">"}},
    {.code = Language::Rexx,
     .name = "REXX",
     .comment = "",
     .keywords = KeywordsRexx,
     .rules = {"", {"", ""}, {"/*", ""}, {"*/", ""}, "", "", "", ""},
     .extensions = "rexx rex"},
    {.code = Language::Ruby,
     .name = "RUBY",
     .comment = "#",
     .keywords = KeywordsRuby,
     .rules = {"", {"#", ""}, {"=begin", ""}, {"=end", ""}, "", "", "", ""},
     .extensions = "rb"},
    {.code = Language::Nameless31, .rules = {"", {"!", ""}, {DQ, ""}, {DQ, ""}, "", "", "", ""}},
    {.code = Language::Sql,
     .name = "SQL",
     .comment = "--",
     .keywords = KeywordsSql,
     .rules = {"", {"--", ""}, {"/*", ""}, {"*/", ""}, "", "", "", ""},
     .extensions = "sql"},
    {.code = Language::Vhdl,
     .name = "VHDL",
     .comment = "--",
     .keywords = KeywordsVhdl,
     .rules = {"", {"--", ""}, {"", ""}, {"", ""}, "", "", "", ""},
     .extensions = "vhd vhdl"},
    {.code = Language::Xml,
     .name = "XML",
     .comment = "",
     .keywords = KeywordsXml,
     .rules = {"", {"", ""}, {"<!--", ""}, {"-->", ""}, "", "", "", ""},
     .parser = LineParser::Tags,
     .extensions = "xml xsd xsl pom"},
    {.code = Language::PlainText, .hasRules = false, .numbers = false},
};

constexpr bool InCodeOrder() {
    for (std::size_t i = 0; i < std::size(Rows); ++i) {
        if (CodeOf(Rows[i].code) != i)
            return false;
    }
    return CodeOf(Rows[std::size(Rows) - 1].code) == PlainTextCode;
}
static_assert(InCodeOrder(), "one row per code, in code order, plain text last");

constexpr std::size_t NamedCount() {
    std::size_t count = 0;
    for (const LanguageRow& row : Rows)
        count += row.name != nullptr ? 1 : 0;
    return count;
}

// The named rows as the host sees them.
constexpr std::array<LANGUAGE_INFO, NamedCount()> NamedRows() {
    std::array<LANGUAGE_INFO, NamedCount()> named{};
    std::size_t i = 0;
    for (const LanguageRow& row : Rows) {
        if (row.name != nullptr)
            named[i++] = {CodeOf(row.code), row.name, row.comment, row.keywords};
    }
    return named;
}
constexpr std::array<LANGUAGE_INFO, NamedCount()> Named = NamedRows();
static_assert(Named.size() == std::size(g_LanguageTable), "g_LanguageTable holds every name");

} // namespace

std::span<const LanguageRow> LanguageRows() {
    return Rows;
}

const LANGUAGE_INFO* FindNamedRow(UINT code) {
    const LanguageRow* row = FindLanguageRow(code);
    if (row == nullptr || row->name == nullptr)
        return nullptr;
    for (const LANGUAGE_INFO& named : g_LanguageTable) {
        if (named.m_nLanguage == code)
            return &named;
    }
    return nullptr;
}

} // namespace talvor::syntax::detail

using talvor::syntax::detail::Named;

const LANGUAGE_INFO g_LanguageTable[33] = {
    Named[0],  Named[1],  Named[2],  Named[3],  Named[4],  Named[5],  Named[6],
    Named[7],  Named[8],  Named[9],  Named[10], Named[11], Named[12], Named[13],
    Named[14], Named[15], Named[16], Named[17], Named[18], Named[19], Named[20],
    Named[21], Named[22], Named[23], Named[24], Named[25], Named[26], Named[27],
    Named[28], Named[29], Named[30], Named[31], Named[32],
};
