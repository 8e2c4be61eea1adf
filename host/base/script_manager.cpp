// Scripts are kept in load order; a position is the 1-based index behind the cursor, so it
// stays a plain value that a caller may copy.
#include "host/base/script_manager.h"

#include "host/base/script_type_info.h"
#include "host/base/vbscript_parser.h"

#include <cstdint>

CTVScript::CTVScript(const CString& text)
    : m_text(text), m_tree(talvor::host::vbscript::ParseScript(text.View())),
      m_procedures(m_tree.Procedures()) {}

long CTVScriptManager::LoadScript(const CString& text, BOOL compile, CTVScript** loaded) {
    m_scripts.push_back(std::make_unique<CTVScript>(text));
    CTVScript* script = m_scripts.back().get();
    if (loaded != nullptr)
        *loaded = script;
    return compile && !script->IsCompiled() ? 1 : 0;
}

void CTVScriptManager::RemoveAllScripts() {
    m_scripts.clear();
}

POSITION CTVScriptManager::GetFirstScriptPosition() const {
    return m_scripts.empty() ? nullptr : reinterpret_cast<POSITION>(std::uintptr_t{1});
}

CTVScript* CTVScriptManager::GetNextScript(POSITION& position) const {
    const auto index = reinterpret_cast<std::uintptr_t>(position);
    if (index == 0 || index > m_scripts.size()) {
        position = nullptr;
        return nullptr;
    }
    position = index < m_scripts.size() ? reinterpret_cast<POSITION>(index + 1) : nullptr;
    return m_scripts[index - 1].get();
}

HRESULT CTVScript::GetTypeInfo(ITypeInfo** typeInfo) const {
    if (typeInfo == nullptr)
        return E_POINTER;
    *typeInfo = nullptr;
    if (!IsCompiled())
        return E_FAIL;
    return talvor::host::CreateScriptTypeInfo(m_procedures, typeInfo);
}
