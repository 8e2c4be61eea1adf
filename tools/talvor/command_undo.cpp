// talvor undo: the snapshot history of a design ("demo"), and the storages and streams of any
// compound file ("ls").
#include "tools/talvor/commands.h"

#include "host/base/designer_frame.h"
#include "platform/files/file_system.h"
#include "platform/storage/storage.h"
#include "tools/talvor/form_description.h"
#include "undo/undo_doc.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

namespace talvor::tool {
namespace {
using namespace talvor::platform::storage;

constexpr DWORD ReadMode = STGM_READ | STGM_SHARE_EXCLUSIVE;

struct Element {
    std::string path;
    bool storage = false;
    unsigned long long size = 0;
};

// Every element below storage, depth first in name order; false with a message on failure.
bool ListElements(IStorage* storage, const std::string& prefix, std::vector<Element>& out,
                  std::string& error) {
    IEnumSTATSTG* elements = nullptr;
    if (FAILED(storage->EnumElements(0, nullptr, 0, &elements))) {
        error = StorageErrorText();
        return false;
    }
    STATSTG stat;
    bool ok = true;
    while (ok && elements->Next(1, &stat, nullptr) == S_OK) {
        std::string name = ElementNameText(stat.pwcsName);
        // Names may hold control characters ("\x05SummaryInformation"); show them as \xNN.
        std::string shown;
        for (unsigned char c : name) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02x", c);
            shown += c < 0x20 ? std::string(hex) : std::string(1, static_cast<char>(c));
        }
        Element element{prefix + shown, stat.type == STGTY_STORAGE, stat.cbSize.QuadPart};
        out.push_back(element);
        if (element.storage) {
            IStorage* child = nullptr;
            if (FAILED(
                    storage->OpenStorage(stat.pwcsName, nullptr, ReadMode, nullptr, 0, &child))) {
                error = StorageErrorText();
                ok = false;
            } else {
                ok = ListElements(child, element.path + "/", out, error);
                child->Release();
            }
        }
        CoTaskMemFree(stat.pwcsName);
    }
    elements->Release();
    return ok;
}

void PrintElements(std::FILE* out, const std::vector<Element>& elements) {
    std::size_t storages = 0, streams = 0;
    unsigned long long bytes = 0;
    for (const Element& e : elements) {
        if (e.storage) {
            ++storages;
            std::fprintf(out, "  %-40s storage\n", (e.path + "/").c_str());
        } else {
            ++streams;
            bytes += e.size;
            std::fprintf(out, "  %-40s %llu bytes\n", e.path.c_str(), e.size);
        }
    }
    std::fprintf(out, "  %zu storages, %zu streams, %llu bytes of stream data\n", storages, streams,
                 bytes);
}

int RunLs(const Args& args, std::FILE* out) {
    bool json = false;
    std::string path;
    for (const std::string& arg : args) {
        if (arg == "--json")
            json = true;
        else if (path.empty())
            path = arg;
        else
            return UserError("undo ls: give one FILE (see talvor undo --help)");
    }
    if (path.empty())
        return UserError("undo ls: give the FILE to list");
    IStorage* root = nullptr;
    if (FAILED(StgOpenStorage(path.c_str(), nullptr, ReadMode, nullptr, 0, &root)))
        return UserError("undo ls: " + StorageErrorText());
    std::vector<Element> elements;
    std::string error;
    const bool ok = ListElements(root, "", elements, error);
    root->Release();
    if (!ok)
        return UserError("undo ls: " + error);
    if (json) {
        nlohmann::json list = nlohmann::json::array();
        for (const Element& e : elements) {
            nlohmann::json item = {{"path", e.path}, {"type", e.storage ? "storage" : "stream"}};
            if (!e.storage)
                item["size"] = e.size;
            list.push_back(item);
        }
        std::fprintf(out, "%s\n", list.dump(2).c_str());
        return ExitOk;
    }
    std::fprintf(out, "%s:\n", path.c_str());
    PrintElements(out, elements);
    return ExitOk;
}

// Object and action indices of the name tables.
constexpr unsigned ObjectControl = 1;
constexpr unsigned ObjectForm = 3;
constexpr unsigned ActionAdd = 0, ActionDelete = 1, ActionMove = 3, ActionRename = 7,
                   ActionSetProperties = 9;

// The form in a few words: the count and the last control with its caption and position.
std::string DescribeForm(const CTVContainerDoc& form) {
    const int count = form.GetControlCount();
    std::string text = std::to_string(count) + " controls";
    if (count == 0)
        return text;
    const CVXContainerDoc::Control* last = form.GetControl(count - 1);
    text.append(", last ").append(last->m_strName.GetString());
    text.append(" \"").append(form.GetProperty(count - 1, "Caption").GetString()).append("\"");
    text.append(" at ").append(form.GetProperty(count - 1, "Left").GetString());
    return text;
}

int RunUndoDemo(const Args& args, std::FILE* out) {
    if (args.size() > 1)
        return UserError("undo demo: give at most a FORM description (see talvor undo --help)");
    const std::string formPath =
        args.empty() ? std::string(TALVOR_SOURCE_DIR) + "/samples/order_form.json" : args[0];
    std::string json, error;
    FormDescription description;
    if (!platform::ReadWholeFile(formPath, json, error))
        return UserError("undo demo: " + error);
    if (!ParseFormDescription(json, description, error))
        return UserError("undo demo: " + formPath + ": " + error);

    CTVMDIFrameWnd frame;
    CTVContainerDoc form;
    frame.SetContainer(&form);
    frame.SetWindowText(description.name.c_str());
    frame.MoveWindow(0, 0, 800, 600);
    int left = 8;
    for (const ControlDescription& control : description.controls) {
        const int c = form.AddControl(control.name.c_str(), "VX.Control");
        form.SetProperty(c, "Caption", control.name.c_str());
        form.SetProperty(c, "Left", std::to_string(left).c_str());
        left += 80;
    }

    CTalvorUndoDoc doc;
    if (doc.GetPathName().IsEmpty())
        return InternalError("undo demo: no temporary compound file could be created");
    doc.SetOperationObject(&frame);
    std::fprintf(out, "Design '%s' (%s); history in %s\n\n", description.name.c_str(),
                 formPath.c_str(), doc.GetPathName().GetString());

    auto record = [&](unsigned object, unsigned action, const char* what) {
        if (!doc.Add(object, action, TRUE)) {
            std::fprintf(out, "  snapshot failed: %s\n", what);
            return false;
        }
        std::fprintf(out, "  %u  %-28s %s\n", doc.GetCurr(),
                     doc.GetOperationName(doc.GetCurr()).GetString(), DescribeForm(form).c_str());
        return true;
    };
    bool ok = true;
    std::fprintf(out, "Edits, each followed by a snapshot:\n");
    ok &= record(ObjectForm, ActionAdd, "initial state");
    const int added = form.AddControl("cmdHelp", "VX.Button");
    form.SetProperty(added, "Caption", "Help");
    form.SetProperty(added, "Left", "400");
    ok &= record(ObjectControl, ActionAdd, "add");
    form.SetProperty(added, "Caption", "&Help...");
    ok &= record(ObjectControl, ActionSetProperties, "caption");
    form.SetProperty(added, "Left", "480");
    ok &= record(ObjectControl, ActionMove, "move");
    form.GetControl(added)->m_strName = "cmdAbout";
    ok &= record(ObjectControl, ActionRename, "rename");

    auto load = [&](const char* verb, int (CTalvorUndoDoc::*move)()) {
        if (!(doc.*move)() || !doc.LoadFrame()) {
            std::fprintf(out, "  %s: nothing to %s\n", verb, verb);
            return false;
        }
        std::fprintf(out, "  %-5s to %u (%s): %s\n", verb, doc.GetCurr(),
                     doc.GetOperationName(doc.GetCurr()).GetString(), DescribeForm(form).c_str());
        return true;
    };
    std::fprintf(out, "\nUndo three times, redo once (a move, then LoadFrame):\n");
    ok &= load("undo", &CTalvorUndoDoc::MovePrev);
    ok &= load("undo", &CTalvorUndoDoc::MovePrev);
    ok &= load("undo", &CTalvorUndoDoc::MovePrev);
    ok &= load("redo", &CTalvorUndoDoc::MoveNext);

    std::fprintf(out, "\nA new edit after the undos goes to the end of the list:\n");
    form.RemoveAll();
    ok &= record(ObjectControl, ActionDelete, "delete all");

    std::fprintf(out, "\nThe history (> marks the current snapshot):\n");
    for (unsigned i = 0; i < doc.GetCount(); ++i)
        std::fprintf(out, "  %c %u  %s\n", i == doc.GetCurr() ? '>' : ' ', i,
                     doc.GetOperationName(i).GetString());

    std::fprintf(out, "\nThe storages of the history file:\n");
    std::vector<Element> elements;
    IStorage* root = nullptr;
    if (FAILED(StgOpenStorage(doc.GetPathName(), nullptr, ReadMode, nullptr, 0, &root)))
        return InternalError("undo demo: " + StorageErrorText());
    ok &= ListElements(root, "", elements, error);
    root->Release();
    PrintElements(out, elements);
    std::fprintf(out, "\nThe file is deleted with the history.\n");
    return ok ? ExitOk : ExitInternalError;
}

} // namespace

int RunUndo(const Args& args, std::FILE* out) {
    if (args.empty() || args[0] == "--help" || args[0] == "-h") {
        std::fprintf(out,
                     "usage: talvor undo demo [FORM]\n"
                     "       talvor undo ls FILE [--json]\n\n"
                     "demo  runs a design (by default the controls of samples/order_form.json)\n"
                     "      through edits with a snapshot each, undoes and redoes them, and shows\n"
                     "      the operation names and the storages of the history file.\n"
                     "ls    lists the storages and streams of any compound file.\n");
        return args.empty() ? ExitUserError : ExitOk;
    }
    const Args rest(args.begin() + 1, args.end());
    if (args[0] == "demo")
        return RunUndoDemo(rest, out);
    if (args[0] == "ls")
        return RunLs(rest, out);
    return UserError("undo: unknown subcommand '" + args[0] + "' (demo, ls)");
}

} // namespace talvor::tool
