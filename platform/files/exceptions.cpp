// Texts of the framework's exceptions and the throw helpers.
#include "platform/files/exceptions.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

BOOL CException::GetErrorMessage(char* buffer, UINT size, UINT* helpContext) const {
    if (helpContext != nullptr)
        *helpContext = 0;
    if (buffer == nullptr || size == 0)
        return FALSE;
    CString text = ErrorText();
    std::size_t n = std::min<std::size_t>(static_cast<std::size_t>(text.GetLength()), size - 1);
    std::memcpy(buffer, text.GetString(), n);
    buffer[n] = '\0';
    return TRUE;
}

int CFileException::CauseFromErrno(int error) {
    switch (error) {
    case 0:
        return none;
    case ENOENT:
        return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
        return badPath;
    case EMFILE:
    case ENFILE:
        return tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return accessDenied;
    case EBADF:
        return invalidFile;
    case ENOSPC:
    case EDQUOT:
        return diskFull;
    case ESPIPE:
    case EINVAL:
        return badSeek;
    case EIO:
        return hardIO;
    case EBUSY:
    case ETXTBSY:
        return sharingViolation;
    default:
        return genericException;
    }
}

CString CFileException::ErrorText() const {
    static const char* const Texts[] = {"no error",
                                        "an unspecified error occurred",
                                        "the file was not found",
                                        "the path is invalid",
                                        "too many open files",
                                        "access to the file was denied",
                                        "the file handle is invalid",
                                        "the current folder cannot be removed",
                                        "the folder is full",
                                        "the seek failed",
                                        "a hardware input/output error occurred",
                                        "a sharing violation occurred",
                                        "a locking violation occurred",
                                        "the disk is full",
                                        "the end of the file was reached"};
    CString text =
        (m_cause >= 0 && m_cause <= endOfFile) ? Texts[m_cause] : "an unknown file error";
    if (!m_strFileName.IsEmpty())
        text = m_strFileName + ": " + text;
    return text;
}

CString CArchiveException::ErrorText() const {
    static const char* const Texts[] = {"no error",
                                        "an unspecified error occurred",
                                        "the archive is open for reading only",
                                        "the end of the archive was reached before the data",
                                        "the archive is open for writing only",
                                        "the archive refers to an object that does not exist",
                                        "the archive names an unknown class",
                                        "the archive holds a class of another schema",
                                        "the archive's buffer is full"};
    CString text =
        (m_cause >= 0 && m_cause <= bufferFull) ? Texts[m_cause] : "an unknown archive error";
    if (!m_strFileName.IsEmpty())
        text = m_strFileName + ": " + text;
    return text;
}

void AfxThrowFileException(int cause, LONG osError, const char* fileName) {
    throw new CFileException(cause, osError, fileName);
}

void AfxThrowArchiveException(int cause, const char* fileName) {
    throw new CArchiveException(cause, fileName);
}
