// Arbitrary bytes read as an archive of objects, strings and counts: every damaged stream must
// end in a CArchiveException, never outside the data, and every object read must be freed.
#include "platform/files/archive.h"

#include <cstdint>
#include <set>

namespace {

class CNode;
// Every node alive: the archive hands out graphs that may share and cycle, and an exception
// can leave a half-read graph; the harness frees whatever is left after each input.
std::set<CNode*>& Live() {
    static std::set<CNode*> live;
    return live;
}

class CNode : public CObject {
public:
    CNode() { Live().insert(this); }
    ~CNode() override { Live().erase(this); }
    static const CRuntimeClass classCNode;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCNode; }
    void Serialize(CArchive& ar) override {
        if (ar.IsStoring()) {
            ar << m_strName << m_pChild;
        } else {
            ar >> m_strName;
            m_pChild = ar.ReadObject(&classCNode);
        }
    }
    CString m_strName;
    CObject* m_pChild = nullptr;
};
const CRuntimeClass CNode::classCNode = MakeRuntimeClass<CNode>("CNode", 1, &CObject::classCObject);

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CMemFile file(data, static_cast<UINT>(size));
    CArchive ar(&file, CArchive::load);
    try {
        for (int step = 0; step < 64; ++step) {
            CString text;
            ar >> text;
            (void)ar.ReadCount();
            (void)ar.ReadObject(nullptr);
        }
    } catch (CArchiveException* e) {
        e->Delete(); // a clean rejection is a correct answer
    }
    while (!Live().empty())
        delete *Live().begin();
    return 0;
}
