// The framework's exceptions. As in the framework they are thrown as pointers made with new;
// whoever catches one calls Delete() on it.
#pragma once

#include "platform/strings/cstring.h"

class CException {
public:
    virtual ~CException() = default;
    // Frees the exception object; the catcher's duty.
    void Delete() { delete this; }
    // Copies the text of the error into buffer (cut to size); FALSE when there is none.
    virtual BOOL GetErrorMessage(char* buffer, UINT size, UINT* helpContext = nullptr) const;
    virtual CString ErrorText() const = 0;
};

class CFileException : public CException {
public:
    enum {
        none = 0,
        genericException = 1,
        fileNotFound = 2,
        badPath = 3,
        tooManyOpenFiles = 4,
        accessDenied = 5,
        invalidFile = 6,
        removeCurrentDir = 7,
        directoryFull = 8,
        badSeek = 9,
        hardIO = 10,
        sharingViolation = 11,
        lockViolation = 12,
        diskFull = 13,
        endOfFile = 14
    };
    CFileException(int cause = none, LONG osError = -1, const char* fileName = nullptr)
        : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}
    CString ErrorText() const override;
    // The cause that fits an errno value.
    static int CauseFromErrno(int error);

    int m_cause;
    LONG m_lOsError;
    CString m_strFileName;
};

class CArchiveException : public CException {
public:
    enum {
        none = 0,
        genericException = 1,
        readOnly = 2,
        endOfFile = 3,
        writeOnly = 4,
        badIndex = 5,
        badClass = 6,
        badSchema = 7,
        bufferFull = 8
    };
    explicit CArchiveException(int cause = none, const char* fileName = nullptr)
        : m_cause(cause), m_strFileName(fileName) {}
    CString ErrorText() const override;

    int m_cause;
    CString m_strFileName;
};

[[noreturn]] void AfxThrowFileException(int cause, LONG osError = -1,
                                        const char* fileName = nullptr);
[[noreturn]] void AfxThrowArchiveException(int cause, const char* fileName = nullptr);
