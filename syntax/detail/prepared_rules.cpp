// Reading a rule set into the form the scan loops use. Built per line, from the members as they
// stand, so a host that changes a rule string or the word bytes directly is heard at once.
#include "syntax/detail/prepared_rules.h"

#include "platform/codepage/code_page.h"

#include <array>
#include <cstring>

namespace talvor::syntax::detail {
namespace {

// The classes every rule set starts from, without and with lead bytes in the code page.
constexpr std::array<unsigned char, 256> BaseClasses(bool multiByte) {
    std::array<unsigned char, 256> table{};
    for (int c = 0; c < 256; ++c) {
        bool word =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
        unsigned char bits = word ? WordByte : 0;
        if (c == '\\')
            bits |= Backslash;
        if (multiByte && c >= 0x80)
            bits |= MaybeLead;
        table[static_cast<std::size_t>(c)] = bits;
    }
    return table;
}
constexpr std::array<unsigned char, 256> SingleByteClasses = BaseClasses(false);
constexpr std::array<unsigned char, 256> MultiByteClasses = BaseClasses(true);

RuleText Read(const char* text) {
    RuleText rule;
    if (text != nullptr) {
        rule.text = text;
        // Rules are a few bytes long; a call to strlen costs more than counting them.
        while (rule.length < 16 && text[rule.length] != '\0')
            ++rule.length;
        if (rule.length == 16)
            rule.length += static_cast<int>(std::strlen(text + 16));
    }
    return rule;
}

int Clip(int count, int most) {
    return count < 0 ? 0 : (count > most ? most : count);
}

} // namespace

PreparedRules::PreparedRules(const CTalvorSyntax& syntax) {
    multiByte = platform::IsMultiByteCodePage();
    std::memcpy(byteClass, (multiByte ? MultiByteClasses : SingleByteClasses).data(),
                sizeof byteClass);
    for (char c : syntax.m_strInString.View())
        byteClass[static_cast<unsigned char>(c)] |= WordByte;

    // Each examined slot is read once and its last byte marked in the same step; slots past a
    // count stay empty and match nothing.
    auto take = [this](RuleText& rule, const char* text, bool examined, unsigned char bit) {
        rule = examined ? Read(text) : RuleText{};
        if (rule.length > 0)
            byteClass[static_cast<unsigned char>(rule.text[rule.length - 1])] |= bit;
    };
    lineCommentCount = Clip(syntax.m_nLineCommentCount, 2);
    beginCommentCount = Clip(syntax.m_nBeginCommentExCount, 2);
    endCommentCount = Clip(syntax.m_nEndCommentExCount, 2);
    for (int slot = 0; slot < 2; ++slot) {
        take(lineComment[slot], syntax.m_pszLineComment[slot], slot < lineCommentCount,
             EndsLineComment);
        take(beginComment[slot], syntax.m_pszBeginCommentEx[slot], slot < beginCommentCount,
             EndsBlockComment);
        take(endComment[slot], syntax.m_pszEndCommentEx[slot], slot < endCommentCount, EndsCloser);
    }
    take(beginString, syntax.m_pszBeginString, syntax.m_nBeginStringCount > 0, EndsString);
    take(endString, syntax.m_pszEndString, syntax.m_nEndStringCount > 0, EndsCloser);
    take(beginChar, syntax.m_pszBeginChar, syntax.m_nBeginCharCount > 0, EndsChar);
    take(endChar, syntax.m_pszEndChar, syntax.m_nEndCharCount > 0, EndsCloser);
}

} // namespace talvor::syntax::detail
