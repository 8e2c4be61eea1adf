// The one place where the tool turns faults into messages and exit codes, exceptions
// included. The framework throws its exceptions as pointers, which a catch of std::exception
// does not see.
#include "tools/talvor/commands.h"

#include "platform/files/exceptions.h"

#include <exception>
#include <new>

namespace talvor::tool {
namespace {

// The exception's text, and the exception freed, as its catcher must.
std::string TextOf(CException* exception) {
    std::string text = exception->ErrorText().Str();
    exception->Delete();
    return text;
}

} // namespace

int UserError(const std::string& message) {
    std::fprintf(stderr, "talvor: %s\n", message.c_str());
    return ExitUserError;
}

int InternalError(const std::string& message) {
    std::fprintf(stderr, "talvor: internal error: %s\n", message.c_str());
    return ExitInternalError;
}

int RunGuarded(CommandFunction run, const Args& args, std::FILE* out) {
    try {
        return run(args, out);
    } catch (CFileException* exception) {
        return UserError(TextOf(exception));
    } catch (CArchiveException* exception) {
        // Reading where the archive was made for writing (or the reverse) is the tool's fault;
        // every other cause is in the data the user gave.
        bool misuse = exception->m_cause == CArchiveException::readOnly ||
                      exception->m_cause == CArchiveException::writeOnly;
        std::string text = TextOf(exception);
        return misuse ? InternalError(text) : UserError(text);
    } catch (CException* exception) {
        return InternalError(TextOf(exception));
    } catch (const std::bad_alloc&) {
        return InternalError("out of memory");
    } catch (const std::exception& exception) {
        return InternalError(exception.what());
    } catch (...) {
        return InternalError("an exception of unknown type");
    }
}

} // namespace talvor::tool
