// A language server that has been initialized, with one document open at a time, for tests
// that talk to it in messages.
#pragma once

#include "lsp/language_server.h"
#include "platform/codepage/code_page.h"

#include <gtest/gtest.h>

#include <string>

namespace talvor::testing {

using talvor::lsp::Json;
using talvor::lsp::LanguageServer;

inline const char* const Uri = "file:///form.vbs";

struct Session {
    Session(Json options = Json::object()) {
        former = talvor::platform::SystemCodePage();
        const auto out =
            server.Receive(Request(1, "initialize", {{"initializationOptions", options}}));
        capabilities = out.at(0)["result"]["capabilities"];
        server.Receive(Json{{"jsonrpc", "2.0"}, {"method", "initialized"}, {"params", {}}});
    }
    ~Session() { talvor::platform::SetSystemCodePage(former); }

    static Json Request(int id, const char* method, Json params) {
        return Json{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}};
    }
    static Json Notification(const char* method, Json params) {
        return Json{{"jsonrpc", "2.0"}, {"method", method}, {"params", params}};
    }
    Json Ask(const char* method, Json params) {
        params["textDocument"] = {{"uri", Uri}};
        const auto out = server.Receive(Request(++lastId, method, params));
        EXPECT_EQ(out.size(), 1u);
        return out.empty() ? Json() : out[0];
    }
    void Open(const std::string& text) {
        server.Receive(Notification(
            "textDocument/didOpen",
            {{"textDocument",
              {{"uri", Uri}, {"languageId", "vbscript"}, {"version", 1}, {"text", text}}}}));
    }
    void Edit(int line, int from, int to, const std::string& text) {
        server.Receive(Notification("textDocument/didChange",
                                    {{"textDocument", {{"uri", Uri}, {"version", ++version}}},
                                     {"contentChanges",
                                      {{{"range",
                                         {{"start", {{"line", line}, {"character", from}}},
                                          {"end", {{"line", line}, {"character", to}}}}},
                                        {"text", text}}}}}));
    }
    Json Diagnostics() {
        const auto out = server.Idle();
        EXPECT_EQ(out.size(), 1u);
        return out.empty() ? Json() : out[0]["params"]["diagnostics"];
    }

    LanguageServer server;
    Json capabilities;
    unsigned former = 0;
    int lastId = 1;
    int version = 1;
};

} // namespace talvor::testing
