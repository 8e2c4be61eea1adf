// Arbitrary bytes from a language client: framed or not, JSON or not, any method with any
// parameters. The reader must cut or skip every header, and the server must answer every
// request with a result or an error, never a crash. Answers are taken as the transport takes
// them, as text, which must be valid JSON.
#include "lsp/language_server.h"
#include "lsp/message_framing.h"

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 1 << 16)
        return 0;
    talvor::lsp::MessageReader reader;
    talvor::lsp::LanguageServer server;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    // Fed in two parts, so a header cut anywhere is read on.
    reader.Feed(std::string_view(bytes).substr(0, size / 2));
    reader.Feed(std::string_view(bytes).substr(size / 2));
    std::string body, error;
    int messages = 0;
    for (;;) {
        const bool whole = reader.Next(body, error);
        if (!whole && error.empty())
            break;
        if (!whole)
            continue;
        for (const std::string& text : server.ReceiveTextAsText(body)) {
            const auto answer = talvor::lsp::Json::parse(text, nullptr, false);
            if (answer.is_discarded())
                __builtin_trap(); // every answer is JSON
            if (answer.contains("id") && !answer.contains("result") && !answer.contains("error"))
                __builtin_trap(); // a response must carry a result or an error
        }
        server.Idle();
        if (++messages > 1000 || server.Exited())
            break;
    }
    return 0;
}
