// Writing JSON text directly, for results too large to build as JSON values first (the outline
// of a 50,000-line script). Strings are escaped by the JSON library itself unless they need
// no escaping at all, so the text reads back as the values would have written it.
#pragma once

#include <nlohmann/json.hpp>

#include <charconv>
#include <string>
#include <string_view>

namespace talvor::lsp::detail {

// Appends utf8 as a JSON string; invalid UTF-8 becomes U+FFFD, as the transport writes it.
inline void AppendJsonString(std::string& out, std::string_view utf8) {
    bool plain = true;
    for (const char c : utf8) {
        const auto b = static_cast<unsigned char>(c);
        if (b < 0x20 || b >= 0x7F || c == '"' || c == '\\') {
            plain = false;
            break;
        }
    }
    if (plain) {
        out += '"';
        out += utf8;
        out += '"';
        return;
    }
    out += nlohmann::json(std::string(utf8))
               .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

inline void AppendJsonNumber(std::string& out, std::size_t value) {
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, written.ptr);
}

} // namespace talvor::lsp::detail
