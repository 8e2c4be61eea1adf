// Node's RegExp as a reference engine: cases go to Node as hex-coded UTF-16 in a temporary
// file, answers come back one line per case.
#include "tests/reference/node_regexp_oracle.h"

#include "platform/codepage/code_page.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace talvor::testing {

// Node's path, or empty when it is not installed.
std::string NodePath() {
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

std::string HexUnits(std::u16string_view text) {
    static const char Digits[] = "0123456789abcdef";
    std::string hex;
    for (char16_t unit : text)
        for (int shift = 12; shift >= 0; shift -= 4)
            hex.push_back(Digits[(unit >> shift) & 0xF]);
    return hex;
}

std::u16string FromHexUnits(const std::string& hex) {
    std::u16string text;
    for (std::size_t i = 0; i + 4 <= hex.size(); i += 4)
        text.push_back(static_cast<char16_t>(std::stoul(hex.substr(i, 4), nullptr, 16)));
    return text;
}

std::u16string WideIn(unsigned codePage, const std::string& text) {
    platform::SetSystemCodePage(codePage);
    return platform::ToWide(text);
}

// Answers of Node for all cases, in order. False with a message when Node can't be run or
// its output can't be read.
bool AskNode(const std::vector<OracleCase>& cases, std::vector<OracleAnswer>& answers,
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
        "'" + node + "' '" TALVOR_SOURCE_DIR "/tests/reference/node_regexp_oracle.js' '" + path +
        "'";
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

} // namespace talvor::testing
