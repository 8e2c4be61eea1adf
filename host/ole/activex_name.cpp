#include "host/ole/activex_name.h"

namespace {

std::function<CString(const char*)>& Source() {
    static std::function<CString(const char*)> source;
    return source;
}

} // namespace

CString VfxGetActiveXName(const char* clsid) {
    if (clsid == nullptr || !Source())
        return CString();
    return Source()(clsid);
}

namespace talvor::host {

void SetActiveXNameSource(std::function<CString(const char* clsid)> source) {
    Source() = std::move(source);
}

} // namespace talvor::host
