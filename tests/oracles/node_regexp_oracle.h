// Runs regular expression cases through Node's RegExp (tests/oracles/regex_oracle.js) and
// through the facade, and compares the two. One Node process answers all cases of a call.
#pragma once

#include "platform/codepage/code_page.h"
#include "tests/support/test_environment.h"
#include "text/regular_expressions.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace talvor::testing {

// One question, in the 8-bit form the facade takes, and the code page that gives its wide form.
struct OracleCase {
    std::string what;
    std::string pattern;
    std::string text;
    short global = -1;
    short ignoreCase = -1;
    unsigned codePage = platform::CodePageWestern;
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
inline std::string NodePath() {
    if (const char* path = std::getenv("PATH")) {
        std::stringstream dirs(path);
        std::string dir;
        while (std::getline(dirs, dir, ':'))
            for (const char* name : {"node", "nodejs"}) {
                std::string candidate = (dir.empty() ? "." : dir) + "/" + name;
                if (::access(candidate.c_str(), X_OK) == 0)
                    return candidate;
            }
    }
    for (const char* candidate : {"/usr/bin/node", "/usr/bin/nodejs", "/usr/local/bin/node"})
        if (::access(candidate, X_OK) == 0)
            return candidate;
    return {};
}

inline std::string HexUnits(std::u16string_view text) {
    static const char Digits[] = "0123456789abcdef";
    std::string hex;
    for (char16_t unit : text)
        for (int shift = 12; shift >= 0; shift -= 4)
            hex.push_back(Digits[(unit >> shift) & 0xF]);
    return hex;
}

inline std::u16string FromHexUnits(const std::string& hex) {
    std::u16string text;
    for (std::size_t i = 0; i + 4 <= hex.size(); i += 4)
        text.push_back(static_cast<char16_t>(std::stoul(hex.substr(i, 4), nullptr, 16)));
    return text;
}

inline std::u16string WideIn(unsigned codePage, const std::string& text) {
    platform::SetSystemCodePage(codePage);
    return platform::ToWide(text);
}

// Answers of Node for all cases, in order. False with a message when Node can't be run or
// its output can't be read.
inline bool AskNode(const std::vector<OracleCase>& cases, std::vector<OracleAnswer>& answers,
                    std::string& error) {
    const std::string node = NodePath();
    char path[] = "/tmp/talvor_regex_oracle_XXXXXX";
    const int fd = ::mkstemp(path);
    if (fd < 0) {
        error = "oracle: can't create a temporary file";
        return false;
    }
    ::close(fd);
    {
        std::ofstream out(path, std::ios::binary);
        for (std::size_t i = 0; i < cases.size(); ++i) {
            const OracleCase& c = cases[i];
            std::string flags = std::string(c.global ? "g" : "") + (c.ignoreCase ? "i" : "");
            out << i << '\t' << (flags.empty() ? "-" : flags) << '\t'
                << HexUnits(WideIn(c.codePage, c.pattern)) << '\t'
                << HexUnits(WideIn(c.codePage, c.text)) << '\t'
                << HexUnits(WideIn(c.codePage, c.replacement)) << '\n';
        }
    }
    const std::string command =
        "'" + node + "' '" TALVOR_SOURCE_DIR "/tests/oracles/regex_oracle.js' '" + path + "'";
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) {
        ::unlink(path);
        error = "oracle: can't run " + command;
        return false;
    }
    std::string output;
    char buffer[65536];
    std::size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        output.append(buffer, got);
    const int status = ::pclose(pipe);
    ::unlink(path);
    if (status != 0) {
        error = "oracle: node failed with status " + std::to_string(status);
        return false;
    }
    answers.assign(cases.size(), OracleAnswer());
    std::vector<bool> seen(cases.size(), false);
    std::stringstream lines(output);
    std::string line;
    while (std::getline(lines, line)) {
        std::vector<std::string> fields;
        std::stringstream split(line);
        std::string field;
        while (std::getline(split, field, '\t'))
            fields.push_back(field);
        if (line.back() == '\t')
            fields.emplace_back();
        const std::size_t id = std::stoul(fields.at(0));
        if (id >= cases.size()) {
            error = "oracle: answer to an unknown case: " + line;
            return false;
        }
        seen[id] = true;
        OracleAnswer& answer = answers[id];
        if (fields.size() == 2 && fields[1] == "E") {
            answer.rejected = true;
            continue;
        }
        if (fields.size() != 4) {
            error = "oracle: can't read the line: " + line;
            return false;
        }
        answer.test = fields[1] == "1";
        std::stringstream list(fields[2]);
        std::string item;
        while (std::getline(list, item, ';')) {
            OracleMatch match;
            const std::size_t comma1 = item.find(',');
            const std::size_t comma2 = item.find(',', comma1 + 1);
            match.index = std::stol(item.substr(0, comma1));
            match.length = std::stol(item.substr(comma1 + 1, comma2 - comma1 - 1));
            match.value = FromHexUnits(item.substr(comma2 + 1));
            answer.matches.push_back(match);
        }
        answer.replaced = FromHexUnits(fields[3]);
    }
    for (std::size_t i = 0; i < cases.size(); ++i)
        if (!seen[i]) {
            error = "oracle: no answer to case " + std::to_string(i);
            return false;
        }
    return true;
}

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
