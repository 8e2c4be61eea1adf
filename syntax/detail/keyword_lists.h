// The built-in keyword lists that the rows of g_LanguageTable point to.
#pragma once

namespace talvor::syntax::detail {
extern const char KeywordsAda[];
extern const char KeywordsAml[];
extern const char KeywordsAsm[];
extern const char KeywordsBasic[];
extern const char KeywordsBat[];
extern const char KeywordsBlue[];
extern const char KeywordsClipper[];
extern const char KeywordsCobol[];
extern const char KeywordsCpp[];
extern const char KeywordsCSharp[];
extern const char KeywordsDataflex[];
extern const char KeywordsEiffel[];
extern const char KeywordsFortran[];
extern const char KeywordsHlbl[];
extern const char KeywordsHtml[];
extern const char KeywordsIni[];
extern const char KeywordsJava[];
extern const char KeywordsJsp[];
extern const char KeywordsLimbo[];
extern const char KeywordsLisp[];
extern const char KeywordsModula2[];
extern const char KeywordsObjectPascal[];
extern const char KeywordsParadox[];
extern const char KeywordsPerl[];
extern const char KeywordsPhp[];
extern const char KeywordsPl1[];
extern const char KeywordsProgress[];
extern const char KeywordsPython[];
extern const char KeywordsRexx[];
extern const char KeywordsRuby[];
extern const char KeywordsSql[];
extern const char KeywordsVhdl[];
extern const char KeywordsXml[];

} // namespace talvor::syntax::detail
