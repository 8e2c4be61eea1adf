// The host's script manager: the scripts of a document, each parsed by the VBScript parser
// when it is loaded, with its procedures and syntax errors. Nothing is run.
#pragma once

#include "host/base/vbscript_syntax_tree.h"
#include "platform/com/type_info.h"
#include "platform/core/win_types.h"
#include "platform/strings/cstring.h"

#include <memory>
#include <vector>

// One loaded script: its text, syntax tree, procedures and syntax errors.
class CTVScript {
public:
    explicit CTVScript(const CString& text);

    const CString& GetText() const { return m_text; }
    // True when the text parsed without a syntax error.
    BOOL IsCompiled() const { return m_tree.errors.empty(); }
    // Every Sub, Function and Property Get/Let/Set, classes' members included, in source order.
    const std::vector<talvor::host::vbscript::ProcedureInfo>& GetProcedures() const {
        return m_procedures;
    }
    // Syntax errors by position, at most one per line; empty when the script compiled.
    const std::vector<talvor::host::vbscript::SyntaxError>& GetErrors() const {
        return m_tree.errors;
    }
    const talvor::host::vbscript::SyntaxTree& GetSyntaxTree() const { return m_tree; }
    // A type description of the procedures the script defines outside its classes (name,
    // invoke kind, parameter names), with one reference for the caller: S_OK; E_FAIL for a
    // script with syntax errors, E_POINTER for a null out pointer.
    HRESULT GetTypeInfo(ITypeInfo** typeInfo) const;

private:
    CString m_text;
    talvor::host::vbscript::SyntaxTree m_tree;
    std::vector<talvor::host::vbscript::ProcedureInfo> m_procedures;
};

class CTVScriptManager {
public:
    // Parses text as one more script of the manager; the script is kept even when it has
    // syntax errors, so they can be shown. The result is 0 when it compiled; 1 when compile is
    // not 0 and the text has a syntax error (with compile 0 the result is always 0). loaded,
    // when not null, receives the script, which the manager owns.
    long LoadScript(const CString& text, BOOL compile = TRUE, CTVScript** loaded = nullptr);
    void RemoveAllScripts();
    int GetScriptCount() const { return static_cast<int>(m_scripts.size()); }

    // Null when there are no scripts.
    POSITION GetFirstScriptPosition() const;
    // The script at position, which moves on (to null after the last). A null or stale
    // position gives null and leaves position null.
    CTVScript* GetNextScript(POSITION& position) const;

private:
    std::vector<std::unique_ptr<CTVScript>> m_scripts;
};
