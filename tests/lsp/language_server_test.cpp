// The language server's logic, messages in and out: lifecycle, incremental edits counted in
// UTF-16 units, diagnostics that come and go, the outline, folding, names and their uses, and
// answers to bad requests.
#include "tests/lsp/lsp_session.h"

#include "lsp/language_server.h"
#include "lsp/message_framing.h"
#include "platform/codepage/code_page.h"

#include <gtest/gtest.h>

using talvor::lsp::Json;
using talvor::lsp::LanguageServer;

namespace {

using talvor::testing::Session;
using talvor::testing::Uri;

const char* const Script = "Option Explicit\n"
                           "Dim total\n"
                           "' Adds one item\n"
                           "' and counts it\n"
                           "Sub AddItem(price)\n"
                           "    If price > 0 Then\n"
                           "        total = total + price\n"
                           "    End If\n"
                           "End Sub\n"
                           "Class Basket\n"
                           "    Public Function Count()\n"
                           "        Count = 1\n"
                           "    End Function\n"
                           "End Class\n";

} // namespace

TEST(LanguageServer, LifecycleAndCapabilities) {
    LanguageServer server;
    auto out = server.Receive(Session::Request(1, "textDocument/documentSymbol", {}));
    EXPECT_EQ(out.at(0)["error"]["code"], talvor::lsp::ServerNotInitialized);
    {
        Session session;
        EXPECT_EQ(session.capabilities["textDocumentSync"]["change"], 2);
        EXPECT_EQ(session.capabilities["positionEncoding"], "utf-16");
        out = session.server.Receive(Session::Request(2, "shutdown", nullptr));
        EXPECT_TRUE(out.at(0).contains("result"));
        EXPECT_FALSE(session.server.Exited());
        session.server.Receive(Session::Notification("exit", nullptr));
        EXPECT_TRUE(session.server.Exited());
        EXPECT_EQ(session.server.ExitCode(), 0);
    }
    LanguageServer abrupt;
    abrupt.Receive(Session::Notification("exit", nullptr));
    EXPECT_EQ(abrupt.ExitCode(), 1); // exit without shutdown
}

TEST(LanguageServer, DiagnosticsComeWithAnEditAndGoWithItsFix) {
    Session session;
    session.Open(Script);
    EXPECT_EQ(session.Diagnostics().size(), 0u);
    session.Edit(7, 4, 10, ""); // "End If" removed
    const Json broken = session.Diagnostics();
    ASSERT_EQ(broken.size(), 1u);
    EXPECT_NE(broken[0]["message"].get<std::string>().find("End If"), std::string::npos);
    EXPECT_EQ(broken[0]["severity"], 1);
    session.Edit(7, 4, 4, "End If");
    EXPECT_EQ(session.Diagnostics().size(), 0u);
    EXPECT_TRUE(session.server.Idle().empty()); // nothing changed since
}

TEST(LanguageServer, PositionsCountUtf16UnitsInEveryCodePage) {
    struct Case {
        unsigned codePage;
        std::string line; // UTF-8, as the client sends it
    } cases[] = {
        {65001, "s = \"\xf0\x9f\x98\x80\" : x = 1\n"},       // one surrogate pair
        {936, "s = \"\xe4\xb8\xad\xe6\x96\x87\" : x = 1\n"}, // two Chinese characters
        {1252, "s = \"\xc3\xa9\xc3\xa8\" : x = 1\n"},        // two accented letters
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.codePage);
        Session session(Json{{"codePage", c.codePage}});
        session.Open("Dim s, x\n" + c.line);
        // "x" stands behind 5 + 2 + 4 UTF-16 units in each case.
        const int x = 11;
        const Json highlights = session.Ask("textDocument/documentHighlight",
                                            {{"position", {{"line", 1}, {"character", x}}}});
        ASSERT_EQ(highlights["result"].size(), 2u) << highlights.dump();
        EXPECT_EQ(highlights["result"][1]["range"]["start"]["character"], x);
        session.Edit(1, x, x + 1, "y");
        const Json uses =
            session.Ask("textDocument/references", {{"position", {{"line", 1}, {"character", x}}},
                                                    {"context", {{"includeDeclaration", true}}}});
        EXPECT_EQ(uses["result"].size(), 1u) << uses.dump(); // y: only this use
        EXPECT_EQ(session.server.Document(Uri)->Line(1).substr(0, 4), "s = ");
    }
}

TEST(LanguageServer, OutlineFoldingAndNavigation) {
    Session session;
    session.Open(Script);
    const Json symbols = session.Ask("textDocument/documentSymbol", Json::object())["result"];
    ASSERT_EQ(symbols.size(), 3u) << symbols.dump();
    EXPECT_EQ(symbols[0]["name"], "total");
    EXPECT_EQ(symbols[1]["name"], "AddItem");
    EXPECT_EQ(symbols[1]["range"]["start"]["line"], 4);
    EXPECT_EQ(symbols[1]["range"]["end"]["line"], 8);
    EXPECT_EQ(symbols[2]["name"], "Basket");
    EXPECT_EQ(symbols[2]["children"][0]["name"], "Count");

    const Json folds = session.Ask("textDocument/foldingRange", Json::object())["result"];
    auto folded = [&](int start, int end) {
        for (const Json& fold : folds)
            if (fold["startLine"] == start && fold["endLine"] == end)
                return true;
        return false;
    };
    EXPECT_TRUE(folded(4, 7)) << folds.dump();  // the Sub, up to the line before End Sub
    EXPECT_TRUE(folded(5, 6)) << folds.dump();  // the If
    EXPECT_TRUE(folded(9, 12)) << folds.dump(); // the Class
    EXPECT_TRUE(folded(2, 3)) << folds.dump();  // the comment lines

    const Json definition =
        session.Ask("textDocument/definition", {{"position", {{"line", 11}, {"character", 9}}}});
    ASSERT_EQ(definition["result"].size(), 1u);
    EXPECT_EQ(definition["result"][0]["range"]["start"]["line"], 10);
    const Json references =
        session.Ask("textDocument/references", {{"position", {{"line", 6}, {"character", 9}}},
                                                {"context", {{"includeDeclaration", false}}}});
    EXPECT_EQ(references["result"].size(), 2u); // total = total + price
    const Json hover =
        session.Ask("textDocument/hover", {{"position", {{"line", 4}, {"character", 6}}}});
    EXPECT_NE(hover["result"]["contents"]["value"].get<std::string>().find("Sub AddItem(price)"),
              std::string::npos);
}

TEST(LanguageServer, BadRequestsGetErrorsNeverACrash) {
    Session session;
    struct Case {
        const char* what;
        std::string body;
        int code;
    } cases[] = {
        {"not JSON", "{\"jsonrpc\": ", talvor::lsp::ParseError},
        {"no method", R"({"jsonrpc":"2.0","id":7})", talvor::lsp::InvalidRequest},
        {"unknown method", R"({"jsonrpc":"2.0","id":7,"method":"x/y"})",
         talvor::lsp::MethodNotFound},
        {"unopened document",
         R"({"jsonrpc":"2.0","id":7,"method":"textDocument/documentSymbol","params":{"textDocument":{"uri":"file:///none"}}})",
         talvor::lsp::InvalidParams},
        {"bad position",
         R"({"jsonrpc":"2.0","id":7,"method":"textDocument/hover","params":{"textDocument":{"uri":"file:///form.vbs"},"position":{"line":-1}}})",
         talvor::lsp::InvalidParams},
    };
    session.Open(Script);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto out = session.server.ReceiveText(c.body);
        ASSERT_EQ(out.size(), 1u);
        EXPECT_EQ(out[0]["error"]["code"], c.code);
    }
    // A position past the end of the document is clamped, not refused.
    const Json far =
        session.Ask("textDocument/hover", {{"position", {{"line", 900}, {"character", 9}}}});
    EXPECT_TRUE(far.contains("result"));
    // A cancelled request is answered with the cancellation.
    session.server.Receive(Session::Notification("$/cancelRequest", {{"id", 99}}));
    const auto cancelled = session.server.Receive(
        Session::Request(99, "textDocument/foldingRange", {{"textDocument", {{"uri", Uri}}}}));
    EXPECT_EQ(cancelled.at(0)["error"]["code"], talvor::lsp::RequestCancelled);
}

TEST(MessageFraming, BodiesAreCutByTheirLengthAndBadHeadersSkipped) {
    talvor::lsp::MessageReader reader;
    std::string body, error;
    const std::string first = talvor::lsp::FrameMessage("{\"a\":1}");
    reader.Feed(first.substr(0, 10));
    EXPECT_FALSE(reader.Next(body, error));
    EXPECT_TRUE(error.empty());
    reader.Feed(first.substr(10) + "Content-Type: x\r\n\r\n" + "content-length:  2 \r\n\r\n{}");
    ASSERT_TRUE(reader.Next(body, error));
    EXPECT_EQ(body, "{\"a\":1}");
    EXPECT_FALSE(reader.Next(body, error)); // a header without a length is skipped
    EXPECT_FALSE(error.empty());
    ASSERT_TRUE(reader.Next(body, error)); // the length's name in any case, blanks around it
    EXPECT_EQ(body, "{}");
    reader.Feed("Content-Length: 99999999999\r\n\r\n");
    EXPECT_FALSE(reader.Next(body, error));
    EXPECT_NE(error.find("larger than the limit"), std::string::npos);
}
