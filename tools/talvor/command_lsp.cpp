// talvor lsp: the language server over standard input and output. This file is the transport
// only: it reads framed messages, hands them to the server, writes what comes back, and asks
// the server for diagnostics once the client has been quiet for a moment.
#include "tools/talvor/commands.h"

#include "engine/script_text_disposal.h"
#include "lsp/language_server.h"
#include "lsp/message_framing.h"
#include "platform/files/file_system.h"
#include "tools/talvor/form_description.h"

#include <cerrno>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

namespace talvor::tool {
namespace {

// How long the client must be quiet before diagnostics go out: a burst of keystrokes gives
// one parse, not one per key.
constexpr int DebounceMilliseconds = 150;

void Send(std::FILE* out, const std::vector<std::string>& messages) {
    for (const std::string& message : messages) {
        const std::string framed = lsp::FrameMessage(message);
        std::fwrite(framed.data(), 1, framed.size(), out);
    }
    if (!messages.empty())
        std::fflush(out);
}

void Send(std::FILE* out, const std::vector<lsp::Json>& messages) {
    std::vector<std::string> texts;
    for (const lsp::Json& message : messages)
        texts.push_back(message.dump(-1, ' ', false, lsp::Json::error_handler_t::replace));
    Send(out, texts);
}

// The local path of a "file:" URI, percent escapes decoded; empty for any other URI.
std::string PathOfUri(const std::string& uri) {
    const std::string scheme = "file://";
    if (uri.compare(0, scheme.size(), scheme) != 0)
        return {};
    std::string path;
    for (std::size_t i = scheme.size(); i < uri.size(); ++i) {
        const auto hex = [](char c) {
            return c >= '0' && c <= '9'   ? c - '0'
                   : c >= 'a' && c <= 'f' ? c - 'a' + 10
                   : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                          : -1;
        };
        if (uri[i] == '%' && i + 2 < uri.size() && hex(uri[i + 1]) >= 0 && hex(uri[i + 2]) >= 0) {
            path.push_back(static_cast<char>(hex(uri[i + 1]) * 16 + hex(uri[i + 2])));
            i += 2;
        } else {
            path.push_back(uri[i]);
        }
    }
    return path;
}

// The form of a script NAME.vbs is the form description NAME.json beside it. A description
// that can't be read gives no form; the reason goes to standard error, the client's log.
std::optional<lsp::FormOutline> FormBesideScript(const std::string& uri) {
    std::string path = PathOfUri(uri);
    const std::size_t dot = path.rfind('.');
    if (path.empty() || dot == std::string::npos || path.find('/', dot) != std::string::npos)
        return std::nullopt;
    path.replace(dot, std::string::npos, ".json");
    std::string text, error;
    if (!platform::FileExists(path))
        return std::nullopt;
    FormDescription form;
    if (!platform::ReadWholeFile(path, text, error) || !ParseFormDescription(text, form, error)) {
        std::fprintf(stderr, "talvor: %s: %s\n", path.c_str(), error.c_str());
        return std::nullopt;
    }
    auto events = [](const std::vector<EventDescription>& list) {
        std::vector<lsp::FormEvent> out;
        for (const EventDescription& event : list)
            out.push_back({event.name, event.params});
        return out;
    };
    lsp::FormOutline outline;
    outline.name = CTalvorScriptTextDisposal::GetDisposal().m_strSystemFuncName.Str();
    outline.events = events(form.events);
    for (const ControlDescription& control : form.controls)
        outline.controls.push_back({control.name, events(control.events)});
    return outline;
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
    server.SetFormSource(FormBesideScript);
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
            Send(out, server.ReceiveTextAsText(body));
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
