// The facade's answers to the cases of the Node oracle, and what differs between the two.
#pragma once

#include "platform/codepage/code_page.h"
#include "tests/reference/node_regexp_oracle.h"
#include "tests/support/test_environment.h"
#include "text/regular_expressions.h"

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace talvor::testing {

// What the facade gives for one case, in the same shape, with the message it showed.
struct FacadeAnswer {
    int test = 0, info = 0, replace = 0;
    CArray<tagREGEXPINFO, tagREGEXPINFO> matches;
    CString result;
    std::vector<std::string> messages;
};

inline const char* Untouched() {
    return "\x01untouched";
}

inline FacadeAnswer AskFacade(const OracleCase& c) {
    platform::SetSystemCodePage(c.codePage);
    ClearShownMessages();
    FacadeAnswer answer;
    answer.test = TVPfxTestByRegExp(c.pattern.c_str(), c.text.c_str(), c.global, c.ignoreCase);
    answer.info = TVPfxGetInfoByRegExp(c.pattern.c_str(), c.text.c_str(), answer.matches, c.global,
                                       c.ignoreCase);
    answer.result = Untouched();
    answer.replace = TVPfxReplaceByRegExp(c.pattern.c_str(), c.text.c_str(), c.replacement.c_str(),
                                          answer.result, c.global, c.ignoreCase);
    answer.messages = ShownMessages();
    ClearShownMessages();
    return answer;
}

inline std::string Printable(const std::string& text) {
    std::string shown;
    for (unsigned char c : text) {
        if (c >= 0x20 && c < 0x7F && c != '\\') {
            shown.push_back(static_cast<char>(c));
        } else {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            shown += hex;
        }
    }
    return shown;
}

// Empty when the facade agrees with Node; otherwise what differs.
inline std::string Difference(const OracleCase& c, const OracleAnswer& node,
                              const FacadeAnswer& facade) {
    platform::SetSystemCodePage(c.codePage);
    std::ostringstream out;
    if (node.rejected) {
        if (facade.messages.empty() || facade.test || facade.info || facade.replace)
            out << "node rejects the pattern, the facade does not";
        return out.str();
    }
    if (!facade.messages.empty()) {
        out << "the facade fails: " << facade.messages.front();
        return out.str();
    }
    if (facade.test != node.test || facade.info != node.test || facade.replace != node.test) {
        out << "test: node " << node.test << ", facade " << facade.test << "/" << facade.info << "/"
            << facade.replace;
        return out.str();
    }
    if (!node.test) {
        if (facade.matches.GetSize() != 0 || facade.result != Untouched())
            out << "a miss changed the outputs";
        return out.str();
    }
    if (facade.matches.GetSize() != static_cast<INT_PTR>(node.matches.size())) {
        out << "matches: node " << node.matches.size() << ", facade " << facade.matches.GetSize();
        return out.str();
    }
    for (std::size_t i = 0; i < node.matches.size(); ++i) {
        const OracleMatch& expected = node.matches[i];
        const tagREGEXPINFO& got = facade.matches[static_cast<INT_PTR>(i)];
        const std::string value = platform::FromWide(expected.value);
        if (got.nFirstIndex != expected.index || got.nLength != expected.length ||
            got.strValue.View() != value) {
            out << "match " << i << ": node " << expected.index << "," << expected.length << ",'"
                << Printable(value) << "', facade " << got.nFirstIndex << "," << got.nLength << ",'"
                << Printable(got.strValue.GetString()) << "'";
            return out.str();
        }
    }
    const std::string replaced = platform::FromWide(node.replaced);
    if (facade.result.View() != replaced)
        out << "replace: node '" << Printable(replaced) << "', facade '"
            << Printable(facade.result.GetString()) << "'";
    return out.str();
}

} // namespace talvor::testing
