// Caption text without mnemonic marks.
#include "host/bars/paint_manager.h"

CString CVTPaintManager::StripMnemonics(const CString& text) {
    std::string in = text.Str();
    // A trailing "(&X)" is how captions of double-byte languages carry their mnemonic.
    if (in.size() >= 4 && in[in.size() - 1] == ')' && in[in.size() - 4] == '(' &&
        in[in.size() - 3] == '&')
        in.resize(in.size() - 4);
    std::string out;
    out.reserve(in.size());
    for (std::size_t i = 0; i < in.size(); ++i) {
        if (in[i] == '&') {
            if (i + 1 < in.size() && in[i + 1] == '&') {
                out.push_back('&');
                ++i;
            }
            continue;
        }
        out.push_back(in[i]);
    }
    return CString(std::move(out));
}
