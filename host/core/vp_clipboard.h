// CVPClipboard: an object that puts itself on the clipboard as an archive in a private format
// and takes itself back from it. The clipboard is process-wide; each format holds one value.
#pragma once

#include "platform/strings/cstring.h"

#include <string>

class CArchive;

class CVPClipboard {
public:
    explicit CVPClipboard(const char* format = "Talvor Clipboard")
        : m_strFormat(format ? format : "") {}
    virtual ~CVPClipboard() = default;

    // Writes SerializeClipboard's stream to the clipboard under the format; FALSE when the
    // archive failed (the clipboard then keeps what it had).
    virtual BOOL SaveClipboard();
    // Reads the format's stream through SerializeClipboard; FALSE when the clipboard has none
    // or the stream was damaged.
    virtual BOOL LoadClipboard();
    // Writes or reads the object; the base does nothing.
    virtual void SerializeClipboard(CArchive& ar);

    CString GetFormat() const { return m_strFormat; }

    // The process-wide clipboard of formatted data.
    static bool HasData(const char* format);
    static void SetData(const char* format, std::string bytes);
    static bool GetData(const char* format, std::string& bytes);
    static void Clear();

protected:
    CString m_strFormat;
};
