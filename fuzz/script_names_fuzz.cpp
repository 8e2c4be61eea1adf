// Arbitrary names and scripts through renaming, name checks and the cross-reference query.
// Byte 0 chooses the code page; the rest is old name, new name and script, separated by NUL
// bytes. Names go into patterns as they stand, so a name with pattern characters must give
// the documented failure, never a crash. For plain names, renaming to a name the script
// doesn't hold and back gives the script again (up to the case of letters of the name).
#include "engine/script_text_disposal.h"
#include "host/base/tv_container_doc.h"
#include "platform/app/message_box.h"
#include "platform/codepage/code_page.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void Check(bool condition) {
    if (!condition)
        std::abort();
}

bool IsPlainName(std::string_view name) {
    if (name.empty() || name.size() > 30)
        return false;
    for (char ch : name)
        if (!((ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9')))
            return false;
    return true;
}

std::string Folded(std::string_view text) {
    std::string folded(text);
    for (char& ch : folded)
        if (ch >= 'A' && ch <= 'Z')
            ch = static_cast<char>(ch - 'A' + 'a');
    return folded;
}

struct Form {
    Form() {
        for (const char* name : {"cmdOK", "txt"}) {
            auto* item = new CVXContainerItem(name, nullptr);
            item->GetEventsInterface().AddMethod(new CVXMethodInfo("Click", 1));
            item->GetEventsInterface().AddMethod(new CVXMethodInfo("Change", 2));
            doc.AddItem(item);
        }
        CTalvorScriptTextDisposal::GetDisposal().GetAllEventsInterfacesAndCtrlNames(
            &doc, interfaces, names);
    }
    CTVContainerDoc doc;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CStringArray names;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static bool ready = [] {
        talvor::platform::SetMessageBoxHandler([](const char*, UINT) { return IDOK; });
        return true;
    }();
    (void)ready;
    if (size < 1 || size > 20000)
        return 0;
    static const unsigned Pages[] = {1252, 936, 932, 65001};
    talvor::platform::SetSystemCodePage(Pages[data[0] & 3]);
    const std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t first = input.find('\0');
    const std::size_t second =
        first == std::string_view::npos ? first : input.find('\0', first + 1);
    if (second == std::string_view::npos)
        return 0;
    const std::string oldName(input.substr(0, first));
    const std::string newName(input.substr(first + 1, second - first - 1));
    const CString original(input.substr(second + 1));

    CTalvorScriptTextDisposal& engine = CTalvorScriptTextDisposal::GetDisposal();
    static Form form;
    CVXInterfaceInfo* events = form.interfaces[0];

    CString renamed = original;
    engine.ChangeNameToScriptTxt(renamed, oldName.c_str(), newName.c_str(), events);
    if (IsPlainName(oldName) && IsPlainName(newName) &&
        Folded(original.View()).find(Folded(newName)) == std::string::npos) {
        CString back = renamed;
        engine.ChangeNameToScriptTxt(back, newName.c_str(), oldName.c_str(), events);
        Check(Folded(back.View()) == Folded(original.View()));
    }
    if (IsPlainName(oldName) && newName == oldName) {
        CString same = original;
        engine.ChangeNameToScriptTxt(same, oldName.c_str(), oldName.c_str(), nullptr);
        Check(Folded(same.View()) == Folded(original.View()));
    }

    VB_VARIABLE_AND_PARAMETER_INFO vars;
    vars.arrVarName.Add(newName.c_str());
    for (int scope : {0, 1}) {
        DENOMINATE_ERROR_INFO result =
            engine.CheckName(oldName.c_str(), original, &form.doc, &vars, scope);
        Check(result.nErrorType >= DENOMINATE_OK && result.nErrorType <= DENOMINATE_SYSTEM);
        Check((result.nErrorType == DENOMINATE_BAD_CHAR) ==
              (engine.CheckNameByChar(oldName.c_str()) == 0));
        Check((result.nErrorType == DENOMINATE_OK) == engine.GetErrorClew(result).IsEmpty());
    }

    CArray<NAME_APPEAR_INFO, NAME_APPEAR_INFO> records;
    const int found = engine.GetAttachInfoByCtrlOrFunction(original, form.names, oldName.c_str(),
                                                           form.interfaces, records);
    Check(found == (oldName.empty() ? 0 : 1));
    for (const NAME_APPEAR_INFO& record : records)
        Check(record.nAppearType >= 1 && record.nAppearType <= 6 && !record.strOwner.IsEmpty());
    return 0;
}
