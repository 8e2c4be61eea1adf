// A plain line parser for differential checks: the rules of ParseLine written out step by step,
// with none of the library's byte tables or skipping loops. The library's parser must give the
// same runs and cookie for any line, cookie and rule set; tests and the fuzz target compare them.
#pragma once

#include "syntax/syntax.h"

#include <string>
#include <vector>

namespace talvor::testing {

// The keyword test as documented: binary search with the code page's comparisons.
bool ReferenceIsKeyword(const CTalvorSyntax& syntax, const std::string& word);

// The number rules as documented, by language.
bool ReferenceIsNumber(UINT language, const std::string& w);

struct ReferenceResult {
    std::vector<COLORINFO> runs;
    unsigned long cookie;
};

// Not for the languages of the tag parser (HTML and XML), which have a parser of their own.
ReferenceResult ReferenceParseLine(const CTalvorSyntax& syntax, unsigned long cookie,
                                   const std::string& line);

} // namespace talvor::testing
