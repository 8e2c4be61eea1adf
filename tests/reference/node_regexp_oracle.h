// Node's RegExp as a reference engine: runs regular expression cases through
// tests/reference/node_regexp_oracle.js in one Node process and reads its answers back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace talvor::testing {

// One question, in the 8-bit form the facade takes, and the code page that gives its wide form.
struct OracleCase {
    std::string what;
    std::string pattern;
    std::string text;
    short global = -1;
    short ignoreCase = -1;
    unsigned codePage = 1252;
    std::string replacement;
};

struct OracleMatch {
    long index = 0;
    long length = 0;
    std::u16string value;
};

struct OracleAnswer {
    bool rejected = false; // RegExp threw a SyntaxError
    bool test = false;
    std::vector<OracleMatch> matches;
    std::u16string replaced;
};

// Node's path, or empty when it is not installed.
std::string NodePath();

// Text as UTF-16 code units in four hex digits each, and back.
std::string HexUnits(std::u16string_view text);
std::u16string FromHexUnits(const std::string& hex);

// The wide form of text in the code page, which becomes the system code page.
std::u16string WideIn(unsigned codePage, const std::string& text);

// Answers of Node for all cases, in order. False with a message when Node can't be run or
// its output can't be read.
bool AskNode(const std::vector<OracleCase>& cases, std::vector<OracleAnswer>& answers,
             std::string& error);

} // namespace talvor::testing
