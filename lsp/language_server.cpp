// Lifecycle, document synchronisation and request dispatch of the language server.
#include "lsp/language_server.h"

#include "lsp/detail/editing_queries.h"
#include "lsp/detail/script_queries.h"
#include "platform/codepage/code_page.h"
#include "syntax/document_colourer.h"
#include "syntax/languages.h"

#include <stdexcept>

namespace talvor::lsp {
namespace {

// A request the server refuses with a JSON-RPC error.
struct RequestError : std::runtime_error {
    RequestError(int code, const std::string& message) : std::runtime_error(message), code(code) {}
    int code;
};

Json ErrorResponse(const Json& id, int code, const std::string& message) {
    return Json{{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", code}, {"message", message}}}};
}

const Json& Field(const Json& object, const char* name) {
    static const Json missing;
    if (!object.is_object())
        return missing;
    const auto found = object.find(name);
    return found == object.end() ? missing : *found;
}

std::string RequireString(const Json& object, const char* name) {
    const Json& value = Field(object, name);
    if (!value.is_string())
        throw RequestError(InvalidParams, std::string("missing string field '") + name + "'");
    return value.get<std::string>();
}

Position RequirePosition(const Json& value) {
    const Json& line = Field(value, "line");
    const Json& character = Field(value, "character");
    auto unsignedNumber = [](const Json& value) {
        return value.is_number_unsigned() ||
               (value.is_number_integer() && value.get<long long>() >= 0);
    };
    if (!unsignedNumber(line) || !unsignedNumber(character))
        throw RequestError(InvalidParams, "a position needs unsigned 'line' and 'character'");
    return Position{line.get<std::size_t>(), character.get<std::size_t>()};
}

Json Capabilities() {
    return Json{
        {"positionEncoding", "utf-16"},
        {"textDocumentSync", {{"openClose", true}, {"change", 2}}},
        {"documentSymbolProvider", true},
        {"foldingRangeProvider", true},
        {"definitionProvider", true},
        {"referencesProvider", true},
        {"documentHighlightProvider", true},
        {"hoverProvider", true},
        {"semanticTokensProvider",
         {{"legend", detail::SemanticTokenLegend()}, {"full", true}, {"range", true}}},
        {"completionProvider", {{"resolveProvider", false}}},
        {"renameProvider", {{"prepareProvider", true}}},
        {"documentFormattingProvider", true},
    };
}

} // namespace

LanguageServer::LanguageServer()
    : m_syntax(std::make_unique<CTalvorSyntax>()),
      m_colourer(std::make_unique<syntax::DocumentColourer>(*m_syntax)) {
    m_colourer->LoadLanguage(syntax::CodeOf(syntax::Language::Basic));
}

LanguageServer::~LanguageServer() = default;

std::vector<Json> LanguageServer::ReceiveText(std::string_view body) {
    Json message = Json::parse(body, nullptr, false);
    if (message.is_discarded())
        return {ErrorResponse(nullptr, ParseError, "the message is not valid JSON")};
    return Receive(message);
}

std::vector<std::string> LanguageServer::ReceiveTextAsText(std::string_view body) {
    std::vector<Json> values;
    std::string response;
    Json message = Json::parse(body, nullptr, false);
    if (message.is_discarded())
        values.push_back(ErrorResponse(nullptr, ParseError, "the message is not valid JSON"));
    else
        values = Receive(message, &response);
    std::vector<std::string> texts;
    for (const Json& value : values)
        texts.push_back(value.dump(-1, ' ', false, Json::error_handler_t::replace));
    if (!response.empty())
        texts.push_back(std::move(response));
    return texts;
}

std::vector<Json> LanguageServer::Receive(const Json& message) {
    return Receive(message, nullptr);
}

std::vector<Json> LanguageServer::Receive(const Json& message, std::string* responseText) {
    std::vector<Json> out;
    const Json& method = Field(message, "method");
    const Json& id = Field(message, "id");
    const bool isRequest = !id.is_null();
    if (!message.is_object() || !method.is_string()) {
        if (message.is_object() && (message.contains("result") || message.contains("error")))
            return out; // a response to a request of ours: none is sent yet
        out.push_back(ErrorResponse(id.is_string() || id.is_number() ? id : Json(nullptr),
                                    InvalidRequest, "a message needs a string 'method'"));
        return out;
    }
    const std::string name = method.get<std::string>();
    if (isRequest && m_cancelled.erase(id.dump()) > 0) {
        out.push_back(ErrorResponse(id, RequestCancelled, "the request was cancelled"));
        return out;
    }
    try {
        std::string resultText;
        Json result =
            Dispatch(name, Field(message, "params"), out, responseText ? &resultText : nullptr);
        if (isRequest && !resultText.empty()) {
            *responseText = R"({"jsonrpc":"2.0","id":)" + id.dump() + R"(,"result":)";
            *responseText += resultText;
            *responseText += '}';
        } else if (isRequest) {
            // Moved in, not listed in an initializer: a list would copy a large result.
            Json response{{"jsonrpc", "2.0"}, {"id", id}};
            response["result"] = std::move(result);
            out.push_back(std::move(response));
        }
    } catch (const RequestError& error) {
        if (isRequest)
            out.push_back(ErrorResponse(id, error.code, error.what()));
    } catch (const std::exception& error) {
        if (isRequest)
            out.push_back(ErrorResponse(id, InternalError, error.what()));
    }
    return out;
}

Json LanguageServer::Dispatch(const std::string& method, const Json& params, std::vector<Json>& out,
                              std::string* resultText) {
    if (method == "initialize")
        return Initialize(params);
    if (method == "exit") {
        m_exited = true;
        return nullptr;
    }
    if (!m_initialized)
        throw RequestError(ServerNotInitialized, "the server is not initialized yet");
    if (method == "initialized" || method == "$/setTrace")
        return nullptr;
    if (method == "shutdown") {
        m_shutdown = true;
        return nullptr;
    }
    if (method == "$/cancelRequest") {
        const Json& id = Field(params, "id");
        if (id.is_string() || id.is_number())
            m_cancelled.insert(id.dump());
        return nullptr;
    }
    if (m_shutdown)
        throw RequestError(InvalidRequest, "the server is shutting down");
    if (method == "textDocument/didOpen") {
        DidOpen(params);
        return nullptr;
    }
    if (method == "textDocument/didChange") {
        DidChange(params);
        return nullptr;
    }
    if (method == "textDocument/didClose") {
        DidClose(params, out);
        return nullptr;
    }
    if (method == "textDocument/didSave")
        return nullptr;
    if (method == "textDocument/documentSymbol") {
        const TextDocument& document = RequireDocument(params);
        if (resultText != nullptr) {
            *resultText = detail::DocumentSymbolsText(document, FormOf(document.Uri()));
            return nullptr;
        }
        return detail::DocumentSymbols(document, FormOf(document.Uri()));
    }
    if (method == "textDocument/semanticTokens/full")
        return SemanticTokens(params, false);
    if (method == "textDocument/semanticTokens/range")
        return SemanticTokens(params, true);
    if (method == "textDocument/formatting")
        return Formatting(params);
    if (method == "textDocument/rename")
        return Rename(params);
    if (method == "textDocument/foldingRange")
        return detail::FoldingRanges(RequireDocument(params));
    const bool positional =
        method == "textDocument/definition" || method == "textDocument/references" ||
        method == "textDocument/documentHighlight" || method == "textDocument/hover" ||
        method == "textDocument/completion" || method == "textDocument/prepareRename";
    if (positional) {
        const TextDocument& document = RequireDocument(params);
        const Position position = RequirePosition(Field(params, "position"));
        if (method == "textDocument/definition")
            return detail::Definition(document, position);
        if (method == "textDocument/references") {
            const Json& declarations = Field(Field(params, "context"), "includeDeclaration");
            return detail::References(document, position,
                                      !declarations.is_boolean() || declarations.get<bool>());
        }
        if (method == "textDocument/documentHighlight")
            return detail::Highlights(document, position);
        if (method == "textDocument/completion")
            return detail::Completion(document, position, FormOf(document.Uri()));
        if (method == "textDocument/prepareRename")
            return detail::PrepareRename(document, position);
        return detail::Hover(document, position);
    }
    throw RequestError(MethodNotFound, "method '" + method + "' is not supported");
}

Json LanguageServer::Initialize(const Json& params) {
    if (m_initialized)
        throw RequestError(InvalidRequest, "the server is initialized already");
    const Json& codePage = Field(Field(params, "initializationOptions"), "codePage");
    unsigned page = platform::CodePageUtf8;
    if (codePage.is_number_unsigned())
        page = codePage.get<unsigned>();
    else if (!codePage.is_null())
        throw RequestError(InvalidParams, "initializationOptions.codePage must be a number");
    if (!platform::SetSystemCodePage(page))
        throw RequestError(InvalidParams, "code page " + std::to_string(page) + " is unknown");
    m_initialized = true;
    return Json{{"capabilities", Capabilities()},
                {"serverInfo", {{"name", "talvor"}, {"version", TALVOR_VERSION}}}};
}

void LanguageServer::DidOpen(const Json& params) {
    const Json& item = Field(params, "textDocument");
    const std::string uri = RequireString(item, "uri");
    const Json& version = Field(item, "version");
    m_documents[uri] = TextDocument(uri, version.is_number_integer() ? version.get<long>() : 0,
                                    FromUtf8(RequireString(item, "text")));
    m_forms.erase(uri);
    if (m_formSource) {
        if (std::optional<FormOutline> form = m_formSource(uri))
            m_forms[uri] = std::move(*form);
    }
    m_changed.insert(uri);
}

void LanguageServer::DidChange(const Json& params) {
    const Json& item = Field(params, "textDocument");
    const std::string uri = RequireString(item, "uri");
    const auto found = m_documents.find(uri);
    if (found == m_documents.end())
        throw RequestError(InvalidParams, "document '" + uri + "' is not open");
    const Json& version = Field(item, "version");
    const long number = version.is_number_integer() ? version.get<long>() : 0;
    const Json& changes = Field(params, "contentChanges");
    if (!changes.is_array())
        throw RequestError(InvalidParams, "missing array 'contentChanges'");
    for (const Json& change : changes) {
        const std::string text = FromUtf8(RequireString(change, "text"));
        const Json& range = Field(change, "range");
        if (range.is_null()) {
            found->second.SetText(text, number);
            continue;
        }
        found->second.Replace(RequirePosition(Field(range, "start")),
                              RequirePosition(Field(range, "end")), text, number);
    }
    m_changed.insert(uri);
}

void LanguageServer::DidClose(const Json& params, std::vector<Json>& out) {
    const std::string uri = RequireString(Field(params, "textDocument"), "uri");
    m_documents.erase(uri);
    m_forms.erase(uri);
    m_changed.erase(uri);
    // A closed document keeps no diagnostics in the client.
    out.push_back(Json{{"jsonrpc", "2.0"},
                       {"method", "textDocument/publishDiagnostics"},
                       {"params", {{"uri", uri}, {"diagnostics", Json::array()}}}});
}

const TextDocument& LanguageServer::RequireDocument(const Json& params) const {
    const std::string uri = RequireString(Field(params, "textDocument"), "uri");
    const TextDocument* document = Document(uri);
    if (document == nullptr)
        throw RequestError(InvalidParams, "document '" + uri + "' is not open");
    return *document;
}

const FormOutline* LanguageServer::FormOf(const std::string& uri) const {
    const auto found = m_forms.find(uri);
    return found == m_forms.end() ? nullptr : &found->second;
}

Json LanguageServer::SemanticTokens(const Json& params, bool ranged) {
    const TextDocument& document = RequireDocument(params);
    std::size_t first = 0, end = document.LineCount();
    if (ranged) {
        const Json& range = Field(params, "range");
        const Position from = RequirePosition(Field(range, "start"));
        const Position to = RequirePosition(Field(range, "end"));
        if (to.line < from.line)
            throw RequestError(InvalidParams, "the range ends before it starts");
        first = from.line;
        // A range ending at the start of a line doesn't take that line.
        end = to.character == 0 && to.line > from.line ? to.line : to.line + 1;
    }
    return detail::SemanticTokens(*m_colourer, document, first, end);
}

Json LanguageServer::Formatting(const Json& params) {
    const TextDocument& document = RequireDocument(params);
    const Json& options = Field(params, "options");
    const Json& tabSize = Field(options, "tabSize");
    const Json& insertSpaces = Field(options, "insertSpaces");
    std::size_t indent = 4;
    if (tabSize.is_number_integer() && tabSize.get<long long>() >= 0 &&
        tabSize.get<long long>() <= 16)
        indent = tabSize.get<std::size_t>();
    else if (!tabSize.is_null())
        throw RequestError(InvalidParams, "options.tabSize must be a number from 0 to 16");
    return detail::Formatting(document, indent,
                              !insertSpaces.is_boolean() || insertSpaces.get<bool>());
}

Json LanguageServer::Rename(const Json& params) {
    const TextDocument& document = RequireDocument(params);
    const Position position = RequirePosition(Field(params, "position"));
    std::string refusal;
    Json edit =
        detail::Rename(document, position, FromUtf8(RequireString(params, "newName")), refusal);
    if (!refusal.empty())
        throw RequestError(InvalidParams, "cannot rename: " + refusal);
    return edit;
}

const TextDocument* LanguageServer::Document(const std::string& uri) const {
    const auto found = m_documents.find(uri);
    return found == m_documents.end() ? nullptr : &found->second;
}

std::vector<Json> LanguageServer::Idle() {
    std::vector<Json> out;
    for (const std::string& uri : m_changed) {
        const TextDocument& document = m_documents.at(uri);
        out.push_back(Json{{"jsonrpc", "2.0"},
                           {"method", "textDocument/publishDiagnostics"},
                           {"params",
                            {{"uri", uri},
                             {"version", document.Version()},
                             {"diagnostics", detail::Diagnostics(document)}}}});
    }
    m_changed.clear();
    return out;
}

} // namespace talvor::lsp
