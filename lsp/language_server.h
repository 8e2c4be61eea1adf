// The language server for VBScript form scripts: messages in, messages out, no I/O. The
// transport (talvor lsp) reads framed messages, hands each to Receive, sends what comes back,
// and calls Idle when no input waits, which publishes the diagnostics of changed documents
// once per burst of edits.
#pragma once

#include "lsp/form_outline.h"
#include "lsp/text_document.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class CTalvorSyntax;
namespace talvor::syntax {
class DocumentColourer;
}

namespace talvor::lsp {

using Json = nlohmann::json;

// JSON-RPC error codes the server answers with.
enum ErrorCode : int {
    ParseError = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    InternalError = -32603,
    ServerNotInitialized = -32002,
    RequestCancelled = -32800,
};

class LanguageServer {
public:
    LanguageServer();
    ~LanguageServer();

    // Where the server finds the form a script belongs to when the script opens; without a
    // source, or when it answers nothing, the script has no form.
    using FormSource = std::function<std::optional<FormOutline>(const std::string& uri)>;
    void SetFormSource(FormSource source) { m_formSource = std::move(source); }

    // One message body as the client sent it; malformed JSON gives a ParseError response.
    std::vector<Json> ReceiveText(std::string_view body);
    // One parsed message: the responses and notifications to send, in order.
    std::vector<Json> Receive(const Json& message);
    // As ReceiveText, with each message to send as the JSON text the transport frames. Large
    // results (the outline) are written as text directly instead of as values first.
    std::vector<std::string> ReceiveTextAsText(std::string_view body);
    // Diagnostics of every document changed since the last call.
    std::vector<Json> Idle();

    // True once "exit" came; the process should end with ExitCode().
    bool Exited() const { return m_exited; }
    // 0 after "shutdown" then "exit", 1 for an "exit" without "shutdown".
    int ExitCode() const { return m_shutdown ? 0 : 1; }

    // The open document of a URI, or null.
    const TextDocument* Document(const std::string& uri) const;

private:
    // The messages to send for one message. With responseText, a result the server can write
    // as text goes there as the whole response, to be sent after the messages returned.
    std::vector<Json> Receive(const Json& message, std::string* responseText);
    // The result of a request; with resultText, a result written as text goes there instead.
    Json Dispatch(const std::string& method, const Json& params, std::vector<Json>& out,
                  std::string* resultText);
    Json Initialize(const Json& params);
    void DidOpen(const Json& params);
    void DidChange(const Json& params);
    void DidClose(const Json& params, std::vector<Json>& out);
    const TextDocument& RequireDocument(const Json& params) const;
    const FormOutline* FormOf(const std::string& uri) const;
    Json SemanticTokens(const Json& params, bool ranged);
    Json Formatting(const Json& params);
    Json Rename(const Json& params);

    std::unique_ptr<CTalvorSyntax> m_syntax; // colours VBScript for the semantic tokens
    std::unique_ptr<syntax::DocumentColourer> m_colourer;
    FormSource m_formSource;
    std::map<std::string, FormOutline> m_forms; // of open documents that have one

    std::map<std::string, TextDocument> m_documents;
    std::set<std::string> m_changed;   // documents whose diagnostics are due
    std::set<std::string> m_cancelled; // ids of requests the client gave up, as JSON text
    bool m_initialized = false;
    bool m_shutdown = false;
    bool m_exited = false;
};

} // namespace talvor::lsp
