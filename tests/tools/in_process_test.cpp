// Subcommands called in-process, as the demo and a language server call them: results go to
// the stream they are given, and what they throw becomes an exit code and a message.
#include "platform/files/exceptions.h"
#include "tools/talvor/commands.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>
#include <string>

using namespace talvor::tool;

namespace {

// A stream in memory for a subcommand's results.
class MemoryStream {
public:
    MemoryStream() : m_file(::open_memstream(&m_data, &m_size)) {}
    ~MemoryStream() {
        if (m_file != nullptr)
            std::fclose(m_file);
        std::free(m_data);
    }
    std::FILE* File() const { return m_file; }
    std::string Text() {
        std::fflush(m_file);
        return std::string(m_data, m_size);
    }

private:
    char* m_data = nullptr;
    std::size_t m_size = 0;
    std::FILE* m_file;
};

struct Result {
    int code;
    std::string out, err;
};

Result RunCommand(CommandFunction run, const Args& args) {
    MemoryStream out;
    ::testing::internal::CaptureStderr();
    int code = RunGuarded(run, args, out.File());
    std::string err = ::testing::internal::GetCapturedStderr();
    return {code, out.Text(), err};
}

const std::string Samples = std::string(TALVOR_SOURCE_DIR) + "/samples";

} // namespace

TEST(ToolInProcess, ResultsGoToTheGivenStream) {
    ::testing::internal::CaptureStdout();
    Result parse =
        RunCommand(RunScript, {"parse", Samples + "/order_form.json", Samples + "/order_form.vbs"});
    Result color = RunCommand(RunColor, {Samples + "/order_form.vbs", "--language", "Basic"});
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(parse.code, ExitOk) << parse.err;
    EXPECT_EQ(parse.out.rfind("global block: ", 0), 0u) << parse.out;
    EXPECT_EQ(color.code, ExitOk) << color.err;
    EXPECT_FALSE(color.out.empty());
    EXPECT_EQ(color.out.find("\x1b["), std::string::npos) << "a memory stream is no terminal";

    Result missing = RunCommand(RunScript, {"parse", "/no/such.json", "/no/such.vbs"});
    EXPECT_EQ(missing.code, ExitUserError);
    EXPECT_EQ(missing.out, "");
    EXPECT_EQ(missing.err.rfind("talvor: ", 0), 0u) << missing.err;
}

TEST(ToolInProcess, FrameworkExceptionsBecomeExitCodes) {
    struct Case {
        const char* what;
        CommandFunction run;
        int code;
        const char* message;
    } cases[] = {
        {"file not found",
         [](const Args&, std::FILE*) -> int {
             AfxThrowFileException(CFileException::fileNotFound, 2, "/no/such/file");
         },
         ExitUserError, "the file was not found"},
        {"short archive",
         [](const Args&, std::FILE*) -> int {
             AfxThrowArchiveException(CArchiveException::endOfFile, "design.bin");
         },
         ExitUserError, "the end of the archive was reached before the data"},
        {"archive used against its direction",
         [](const Args&, std::FILE*) -> int {
             AfxThrowArchiveException(CArchiveException::readOnly);
         },
         ExitInternalError, "talvor: internal error: the archive is open for reading only"},
        {"standard exception",
         [](const Args&, std::FILE*) -> int { throw std::runtime_error("broken invariant"); },
         ExitInternalError, "talvor: internal error: broken invariant"},
        {"out of memory", [](const Args&, std::FILE*) -> int { throw std::bad_alloc(); },
         ExitInternalError, "talvor: internal error: out of memory"},
        {"anything else", [](const Args&, std::FILE*) -> int { throw 42; }, ExitInternalError,
         "talvor: internal error: an exception of unknown type"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Result result = RunCommand(c.run, {});
        EXPECT_EQ(result.code, c.code);
        EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
        EXPECT_EQ(result.err.rfind("talvor: ", 0), 0u) << result.err;
    }
}
