// talvor lsp: the language server over standard input and output. This file is the transport
// only: it reads framed messages, hands them to the server, writes what comes back, and asks
// the server for diagnostics once the client has been quiet for a moment.
#include "tools/talvor/commands.h"

#include "lsp/language_server.h"
#include "lsp/message_framing.h"

#include <cerrno>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

namespace talvor::tool {
namespace {

// How long the client must be quiet before diagnostics go out: a burst of keystrokes gives
// one parse, not one per key.
constexpr int DebounceMilliseconds = 150;

void Send(std::FILE* out, const std::vector<lsp::Json>& messages) {
    for (const lsp::Json& message : messages) {
        const std::string framed =
            lsp::FrameMessage(message.dump(-1, ' ', false, lsp::Json::error_handler_t::replace));
        std::fwrite(framed.data(), 1, framed.size(), out);
    }
    if (!messages.empty())
        std::fflush(out);
}

} // namespace

int RunLsp(const Args& args, std::FILE* out) {
    if (!args.empty() && (args[0] == "--help" || args[0] == "-h")) {
        std::fprintf(out, "usage: talvor lsp [--stdio]\n\n"
                          "A Language Server Protocol server for VBScript form scripts over\n"
                          "standard input and output (see README: editors).\n");
        return ExitOk;
    }
    for (const std::string& arg : args)
        if (arg != "--stdio")
            return UserError("lsp: unknown argument '" + arg + "' (see talvor lsp --help)");
    lsp::LanguageServer server;
    lsp::MessageReader reader;
    bool diagnosticsDue = false;
    char buffer[64 * 1024];
    for (;;) {
        std::string body, error;
        for (;;) {
            const bool whole = reader.Next(body, error);
            if (!whole && error.empty())
                break;
            if (!error.empty()) {
                std::fprintf(stderr, "talvor: %s\n", error.c_str());
                continue;
            }
            Send(out, server.ReceiveText(body));
            diagnosticsDue = true;
            if (server.Exited())
                return server.ExitCode();
        }
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = poll(&input, 1, diagnosticsDue ? DebounceMilliseconds : -1);
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready == 0) {
            Send(out, server.Idle());
            diagnosticsDue = false;
            continue;
        }
        const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) // the client went away without "exit"
            return server.Exited() ? server.ExitCode() : 1;
        reader.Feed(std::string_view(buffer, static_cast<std::size_t>(count)));
    }
}

} // namespace talvor::tool
