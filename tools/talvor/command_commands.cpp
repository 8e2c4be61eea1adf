// talvor commands: command bar designs in files: make one, show it, reset it, save it
// elsewhere, and copy a bar from one design into another through the clipboard form.
#include "tools/talvor/commands.h"

#include "commands/cmd_clipboard.h"
#include "commands/cmd_frame.h"
#include "host/bars/shortcut_manager.h"
#include "platform/app/message_box.h"
#include "platform/app/profile.h"
#include "platform/files/archive.h"
#include "platform/files/file_system.h"
#include "tools/talvor/commands_render.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <memory>
#include <string>

namespace talvor::tool {
namespace {

using Json = nlohmann::json;

const char* const CommandsHelp =
    "usage: talvor commands new DESIGN\n"
    "       talvor commands dump DESIGN [--json]\n"
    "       talvor commands reset DESIGN\n"
    "       talvor commands save DESIGN OUT [--menus-only]\n"
    "       talvor commands load DESIGN\n"
    "       talvor commands copy-bar DESIGN TITLE CLIP\n"
    "       talvor commands paste-bar DESIGN CLIP [--json]\n"
    "       talvor commands render DESIGN -o PICTURE.png\n"
    "\n"
    "DESIGN is a saved command bar design: the bars, the pool of controls offered in the\n"
    "designer, images, shortcuts and options.\n"
    "\n"
    "  new        writes a design with the standard menu bar, tool bar and pool\n"
    "  dump       every bar and control with ids, id names, captions and images\n"
    "  reset      puts the standard bars and pool back into a design\n"
    "  save       writes the design to OUT; --menus-only keeps only the whole menus of the\n"
    "             pool, as their items\n"
    "  load       reads a design and tells what it holds\n"
    "  copy-bar   writes the clipboard form of the bar titled TITLE to the file CLIP\n"
    "  paste-bar  adds the bar in CLIP to the design (under a free id and title) and saves\n"
    "  render     draws the bars with their icons and captions into a PNG picture\n";

// The frame of one run: its state comes from nowhere but the files named, never from the
// user's profile, and saving over a file the user named needs no question.
class Session {
public:
    Session() {
        AfxGetApp()->SetProfileStore(std::make_shared<platform::MemoryProfile>());
        m_former = platform::SetMessageBoxHandler([](const char*, UINT) { return IDOK; });
        m_frame.LoadFrame(0);
    }
    ~Session() { platform::SetMessageBoxHandler(m_former); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    CTalvorCmdFrame& Frame() { return m_frame; }
    bool Load(const std::string& path, std::string& error) {
        if (!m_frame.LoadFromFile(path.c_str())) {
            error = path + ": can't be opened";
            return false;
        }
        return true;
    }
    bool Save(const std::string& path, std::string& error) {
        m_frame.SaveToFile(path.c_str());
        if (!platform::FileExists(path)) {
            error = path + ": can't be written";
            return false;
        }
        return true;
    }

private:
    platform::MessageBoxHandler m_former;
    CTalvorCmdFrame m_frame;
};

const char* TypeName(const CVTControl* control) {
    switch (control->GetType()) {
    case vtControlPopup:
        return "popup";
    case vtControlStatic:
        return "static";
    case vtControlListBox:
        return "listbox";
    default:
        return "button";
    }
}

// The icon widths a control shows with: of its own icon id, else of its command id.
Json ImageOf(CVTImageManager* images, const CVTControl* control) {
    const long id = control->GetIconId() != 0 ? control->GetIconId() : control->GetID();
    CVTImageManagerIconSet* set = id > 0 ? images->GetIconSet(static_cast<UINT>(id)) : nullptr;
    if (set == nullptr)
        return nullptr;
    Json widths = Json::array();
    for (const auto& [width, icon] : set->GetIcons())
        widths.push_back(width);
    return Json{{"id", id}, {"widths", widths}};
}

Json ControlsJson(CVTImageManager* images, const CVTControls* controls, int depth = 0);

Json ControlJson(CVTImageManager* images, const CVTControl* control, int depth) {
    Json json = {{"type", TypeName(control)},
                 {"id", control->GetID()},
                 {"idName", control->GetIdName().Str()},
                 {"caption", control->GetCaption().Str()},
                 {"category", control->GetCategory().Str()},
                 {"beginGroup", control->GetBeginGroup() != 0},
                 {"visible", control->IsVisible() != 0},
                 {"image", ImageOf(images, control)}};
    auto* popup = dynamic_cast<const CVTControlPopup*>(control);
    if (popup != nullptr && popup->GetCommandBar() != nullptr &&
        depth < CVTCommandBars::MaxPopupDepth)
        json["controls"] = ControlsJson(images, popup->GetCommandBar()->GetControls(), depth + 1);
    return json;
}

Json ControlsJson(CVTImageManager* images, const CVTControls* controls, int depth) {
    Json list = Json::array();
    for (int i = 0; controls != nullptr && i < controls->GetCount(); ++i)
        list.push_back(ControlJson(images, controls->GetAt(i), depth));
    return list;
}

Json BarJson(CVTCommandBars* bars, CVTCommandBar* bar) {
    return {{"id", bar->GetBarID()},
            {"idName", bar->GetBarIDName().Str()},
            {"title", bar->GetTitle().Str()},
            {"class", bar->GetRuntimeClass()->m_lpszClassName},
            {"menuBar", bar == bars->GetMenuBar()},
            {"position", bar->GetPosition()},
            {"flags", bar->GetFlags()},
            {"docking", bar->GetDockingSides()},
            {"visible", bar->IsVisible() != 0},
            {"controls", ControlsJson(bars->GetImageManager(), bar->GetControls())}};
}

Json DesignJson(CTalvorCmdFrame& frame) {
    CVTCommandBars* bars = frame.GetCommandBars();
    Json json;
    json["bars"] = Json::array();
    for (int i = 0; i < bars->GetCount(); ++i)
        json["bars"].push_back(BarJson(bars, bars->GetAt(i)));
    json["pool"] = ControlsJson(bars->GetImageManager(), frame.GetDesignerControls());
    Json images = Json::array();
    for (const auto& [id, set] : bars->GetImageManager()->GetImages()) {
        Json widths = Json::array();
        for (const auto& [width, icon] : set->GetIcons())
            widths.push_back(width);
        images.push_back({{"id", id}, {"widths", widths}});
    }
    json["images"] = {{"maskColor", bars->GetImageManager()->GetMaskColor()}, {"sets", images}};
    Json shortcuts = Json::array();
    for (const VT_ACCEL& accel : VTShortcutManager()->GetShortcuts())
        shortcuts.push_back({{"virt", accel.fVirt}, {"key", accel.key}, {"cmd", accel.cmd}});
    json["shortcuts"] = shortcuts;
    const VT_COMMANDBARS_OPTIONS* options = bars->GetCommandBarsOptions();
    json["options"] = {{"alwaysShowFullMenus", options->bAlwaysShowFullMenus != 0},
                       {"largeIcons", options->bLargeIcons != 0},
                       {"screenTips", options->bToolBarScreenTips != 0},
                       {"iconSize", {options->cxIcons, options->cyIcons}}};
    return json;
}

void PrintControls(std::FILE* out, const Json& controls, int indent) {
    for (const Json& c : controls) {
        std::string line(static_cast<std::size_t>(indent), ' ');
        if (c["beginGroup"].get<bool>())
            std::fprintf(out, "%s----\n", line.c_str());
        // Appended piece by piece: GCC 12 warns falsely on "literal" + std::string.
        line.append(c["type"].get<std::string>())
            .append(" ")
            .append(std::to_string(c["id"].get<long>()));
        if (!c["idName"].get<std::string>().empty())
            line.append(" ").append(c["idName"].get<std::string>());
        line.append(" \"").append(c["caption"].get<std::string>()).append("\"");
        if (!c["category"].get<std::string>().empty())
            line.append(" [").append(c["category"].get<std::string>()).append("]");
        if (!c["image"].is_null())
            line += " (image)";
        if (!c["visible"].get<bool>())
            line += " (hidden)";
        std::fprintf(out, "%s\n", line.c_str());
        if (c.contains("controls"))
            PrintControls(out, c["controls"], indent + 2);
    }
}

void PrintDesign(std::FILE* out, const Json& design) {
    for (const Json& bar : design["bars"]) {
        std::fprintf(out, "bar %u %s\"%s\"%s: %zu controls\n", bar["id"].get<unsigned>(),
                     bar["idName"].get<std::string>().empty()
                         ? ""
                         : (bar["idName"].get<std::string>() + " ").c_str(),
                     bar["title"].get<std::string>().c_str(),
                     bar["menuBar"].get<bool>() ? " (menu bar)" : "", bar["controls"].size());
        PrintControls(out, bar["controls"], 2);
    }
    std::fprintf(out, "pool: %zu controls\n", design["pool"].size());
    PrintControls(out, design["pool"], 2);
    std::fprintf(out, "images: %zu icon sets; shortcuts: %zu\n", design["images"]["sets"].size(),
                 design["shortcuts"].size());
}

std::size_t CountControls(const CVTControls* controls) {
    std::size_t count = 0;
    for (int i = 0; controls != nullptr && i < controls->GetCount(); ++i) {
        ++count;
        if (auto* popup = dynamic_cast<const CVTControlPopup*>(controls->GetAt(i));
            popup && popup->GetCommandBar())
            count += CountControls(popup->GetCommandBar()->GetControls());
    }
    return count;
}

int Usage(const std::string& message) {
    std::fputs(CommandsHelp, stderr);
    return UserError(message);
}

} // namespace

int RunCommands(const Args& args, std::FILE* out) {
    if (args.empty() || args[0] == "--help" || args[0] == "-h") {
        std::fputs(CommandsHelp, args.empty() ? stderr : out);
        return args.empty() ? ExitUserError : ExitOk;
    }
    bool json = false, menusOnly = false;
    std::string picture;
    std::vector<std::string> words;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--json")
            json = true;
        else if (args[i] == "--menus-only")
            menusOnly = true;
        else if (args[i] == "-o" && i + 1 < args.size())
            picture = args[++i];
        else if (args[i].size() > 1 && args[i][0] == '-')
            return Usage("commands: unknown option '" + args[i] + "'");
        else
            words.push_back(args[i]);
    }
    const std::string& verb = args[0];
    auto need = [&](std::size_t count) { return words.size() == count; };
    std::string error;
    Session session;
    CTalvorCmdFrame& frame = session.Frame();

    if (verb == "new") {
        if (!need(1))
            return Usage("commands new: needs DESIGN");
        if (platform::FileExists(words[0]))
            return UserError(words[0] + ": exists already; 'reset' puts the standard bars into it");
        frame.ResetAllCommand();
        if (!session.Save(words[0], error))
            return UserError(error);
        std::fprintf(out, "%s: %d bars, %d controls in the pool\n", words[0].c_str(),
                     frame.GetCommandBars()->GetCount(), frame.GetDesignerControls()->GetCount());
        return ExitOk;
    }
    if (verb == "dump" || verb == "load") {
        if (!need(1))
            return Usage("commands " + verb + ": needs DESIGN");
        if (!session.Load(words[0], error))
            return UserError(error);
        const Json design = DesignJson(frame);
        if (verb == "load") {
            std::size_t onBars = 0;
            for (int i = 0; i < frame.GetCommandBars()->GetCount(); ++i)
                onBars += CountControls(frame.GetCommandBars()->GetAt(i)->GetControls());
            std::fprintf(
                out, "%s: %d bars with %zu controls, %zu controls in the pool, %zu icon sets\n",
                words[0].c_str(), frame.GetCommandBars()->GetCount(), onBars,
                CountControls(frame.GetDesignerControls()), design["images"]["sets"].size());
        } else if (json) {
            std::fprintf(out, "%s\n", design.dump(2).c_str());
        } else {
            PrintDesign(out, design);
        }
        return ExitOk;
    }
    if (verb == "reset") {
        if (!need(1))
            return Usage("commands reset: needs DESIGN");
        if (!session.Load(words[0], error))
            return UserError(error);
        frame.ResetAllCommand();
        if (!session.Save(words[0], error))
            return UserError(error);
        std::fprintf(out, "%s: standard bars and pool\n", words[0].c_str());
        return ExitOk;
    }
    if (verb == "save") {
        if (!need(2))
            return Usage("commands save: needs DESIGN and OUT");
        if (!session.Load(words[0], error))
            return UserError(error);
        if (menusOnly) {
            CVTControls* pool = frame.GetDesignerControls();
            frame.SaveToFile(words[1].c_str(), pool, 1);
        } else {
            frame.SaveToFile(words[1].c_str());
        }
        if (!platform::FileExists(words[1]))
            return UserError(words[1] + ": can't be written");
        std::fprintf(out, "%s: written\n", words[1].c_str());
        return ExitOk;
    }
    if (verb == "copy-bar") {
        if (!need(3))
            return Usage("commands copy-bar: needs DESIGN, TITLE and CLIP");
        if (!session.Load(words[0], error))
            return UserError(error);
        CVTCommandBar* bar = frame.GetCommandBars()->FindCommandBar(words[1].c_str(), TRUE);
        if (bar == nullptr)
            return UserError(words[0] + ": no bar titled \"" + words[1] + "\"");
        CFile file;
        if (!file.Open(words[2].c_str(), CFile::modeCreate | CFile::modeWrite | CFile::typeBinary))
            return UserError(words[2] + ": can't be written");
        CArchive ar(&file, CArchive::store);
        CTalvorCmdClipboard().SaveToClipboard(ar, bar);
        ar.Close();
        file.Close();
        std::fprintf(out, "%s: bar \"%s\" (id %u)\n", words[2].c_str(), bar->GetTitle().GetString(),
                     bar->GetBarID());
        return ExitOk;
    }
    if (verb == "paste-bar") {
        if (!need(2))
            return Usage("commands paste-bar: needs DESIGN and CLIP");
        if (!session.Load(words[0], error))
            return UserError(error);
        CFile file;
        if (!file.Open(words[1].c_str(), CFile::modeRead | CFile::typeBinary))
            return UserError(words[1] + ": can't be opened");
        CVTCommandBar* pasted;
        {
            CArchive ar(&file, CArchive::load);
            pasted = CTalvorCmdClipboard().LoadFromClipboard(ar, frame.GetCommandBars());
        }
        if (pasted == nullptr)
            return UserError(
                words[0] +
                ": the bar can't be pasted: the design has a menu bar (or a bar of id 2) already");
        const Json bar = BarJson(frame.GetCommandBars(), pasted);
        if (!session.Save(words[0], error))
            return UserError(error);
        if (json)
            std::fprintf(out, "%s\n", bar.dump(2).c_str());
        else
            std::fprintf(out, "%s: pasted bar \"%s\" id %u %s\n", words[0].c_str(),
                         pasted->GetTitle().GetString(), pasted->GetBarID(),
                         pasted->GetBarIDName().GetString());
        return ExitOk;
    }
    if (verb == "render") {
        if (!need(1) || picture.empty())
            return Usage("commands render: needs DESIGN and -o PICTURE.png");
        if (!session.Load(words[0], error))
            return UserError(error);
        if (!RenderCommandBars(frame.GetCommandBars(), frame.GetDesignerControls(), picture, error))
            return UserError(error);
        std::fprintf(out, "%s: written\n", picture.c_str());
        return ExitOk;
    }
    return Usage("commands: unknown command '" + verb + "'");
}

} // namespace talvor::tool
