// The shared data of the maker library.
#include "host/core/vp_aux_data.h"

#include <cstring>

CVPAuxData::CVPAuxData() : m_lfFont{} {
    m_lfFont.lfHeight = -13;
    m_lfFont.lfWeight = 400;
    SetFontFace("DejaVu Sans Mono");
}

CVPAuxData& CVPAuxData::Get() {
    static CVPAuxData data;
    return data;
}

void CVPAuxData::SetFontFace(const char* face) {
    std::memset(m_lfFont.lfFaceName, 0, sizeof m_lfFont.lfFaceName);
    if (face)
        std::strncpy(m_lfFont.lfFaceName, face, sizeof m_lfFont.lfFaceName - 1);
}
