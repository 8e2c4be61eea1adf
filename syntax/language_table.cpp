// The language table: code, name shown to the user, default comment string, keyword list.
// Codes 28 and 31 have no row; 35 stands for plain text and has none either.
#include "syntax/syntax.h"

#include "syntax/detail/keyword_lists.h"

using namespace talvor::syntax::detail;

const LANGUAGE_INFO g_LanguageTable[33] = {
    {0, "Ada", "--", KeywordsAda},
    {1, "AML", "/*", KeywordsAml},
    {2, "ASM", ";", KeywordsAsm},
    {3, "Basic", "'", KeywordsBasic},
    {4, "BAT", "rem", KeywordsBat},
    {5, "Blue", "--", KeywordsBlue},
    {6, "Clipper", "&&", KeywordsClipper},
    {7, "COBOL", "*>", KeywordsCobol},
    {8, "C++", "//", KeywordsCpp},
    {9, "C#", "//", KeywordsCSharp},
    {10, "Dataflex", "//", KeywordsDataflex},
    {11, "Eiffel", "--", KeywordsEiffel},
    {12, "FORTRAN", "!", KeywordsFortran},
    {13, "HLBL", "", KeywordsHlbl},
    {14, "HTML", "", KeywordsHtml},
    {15, "INI", ";", KeywordsIni},
    {16, "Java", "//", KeywordsJava},
    {17, "JSP", "//", KeywordsJsp},
    {18, "LIMBO", "#", KeywordsLimbo},
    {19, "LISP", ";", KeywordsLisp},
    {20, "Modula2", "", KeywordsModula2},
    {21, "Object Pascal", "//", KeywordsObjectPascal},
    {22, "Paradox", ";", KeywordsParadox},
    {23, "Perl", "//", KeywordsPerl},
    {24, "PHP", "//", KeywordsPhp},
    {25, "PL1", "", KeywordsPl1},
    {26, "Progress", "", KeywordsProgress},
    {27, "Python", "#", KeywordsPython},
    {29, "REXX", "", KeywordsRexx},
    {30, "RUBY", "#", KeywordsRuby},
    {32, "SQL", "--", KeywordsSql},
    {33, "VHDL", "--", KeywordsVhdl},
    {34, "XML", "", KeywordsXml},
};
