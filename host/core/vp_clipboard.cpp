// The clipboard of formatted binary data, and objects that put themselves on it.
#include "host/core/vp_clipboard.h"

#include "platform/files/archive.h"

#include <map>

namespace {

std::map<std::string, std::string>& Board() {
    static std::map<std::string, std::string> board;
    return board;
}

} // namespace

bool CVPClipboard::HasData(const char* format) {
    return Board().count(format ? format : "") != 0;
}

void CVPClipboard::SetData(const char* format, std::string bytes) {
    Board()[format ? format : ""] = std::move(bytes);
}

bool CVPClipboard::GetData(const char* format, std::string& bytes) {
    auto it = Board().find(format ? format : "");
    if (it == Board().end())
        return false;
    bytes = it->second;
    return true;
}

void CVPClipboard::Clear() {
    Board().clear();
}

BOOL CVPClipboard::SaveClipboard() {
    CMemFile file;
    try {
        CArchive ar(&file, CArchive::store);
        SerializeClipboard(ar);
        ar.Close();
    } catch (CException* e) {
        e->Delete();
        return FALSE;
    }
    SetData(m_strFormat, file.Data());
    return TRUE;
}

BOOL CVPClipboard::LoadClipboard() {
    std::string bytes;
    if (!GetData(m_strFormat, bytes))
        return FALSE;
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    try {
        CArchive ar(&file, CArchive::load);
        SerializeClipboard(ar);
    } catch (CException* e) {
        e->Delete();
        return FALSE;
    }
    return TRUE;
}

void CVPClipboard::SerializeClipboard(CArchive&) {}
