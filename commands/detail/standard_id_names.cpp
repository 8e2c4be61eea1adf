// The table of standard command names.
#include "commands/detail/standard_id_names.h"

namespace talvor::commands {
namespace {

constexpr StandardIdName Table[] = {
    {"ID_FILE_NEW", 57600},
    {"ID_FILE_OPEN", 57601},
    {"ID_FILE_CLOSE", 57602},
    {"ID_FILE_SAVE", 57603},
    {"ID_FILE_SAVE_AS", 57604},
    {"ID_FILE_PRINT", 57607},
    {"ID_FILE_PRINT_DIRECT", 57608},
    {"ID_FILE_PRINT_PREVIEW", 57609},
    {"ID_FILE_PRINT_SETUP", 57606},
    {"ID_FILE_SEND_MAIL", 57612},
    {"ID_APP_EXIT", 57665},
    {"ID_EDIT_UNDO", 57643},
    {"ID_EDIT_REDO", 57644},
    {"ID_EDIT_CUT", 57635},
    {"ID_EDIT_COPY", 57634},
    {"ID_EDIT_PASTE", 57637},
    {"ID_EDIT_CLEAR", 57632},
    {"ID_EDIT_CLEAR_ALL", 57633},
    {"ID_EDIT_FIND", 57636},
    {"ID_FILE_UPDATE", 57610},
    {"ID_OLE_EDIT_PROPERTIES", 57860},
    {"ID_OLE_VERB_FIRST", 57872},
    {"ID_VIEW_PANEBARITEMLIST", 40319},
    {"ID_VIEW_TOOLBARITEMLIST", 40320},
    {"ID_VIEW_TOOLBAR", 59392},
    {"ID_VIEW_FULLSCREEN", 40006},
    {"ID_VIEW_STATUS_BAR", 59393},
    {"ID_CUSTOMIZE", 40003},
    {"ID_TOOL_OPTIONS", 40234},
    {"ID_PANE_HIDEALL", 40036},
    {"ID_PANE_CLOSEALL", 40034},
    {"ID_PANE_SHOWALL", 40037},
    {"ID_WINDOW_CLOSE", 40007},
    {"ID_WINDOW_CLOSEALL", 40008},
    {"ID_WINDOW_CASCADE", 57650},
    {"ID_WINDOW_TILE_HORZ", 57651},
    {"ID_WINDOW_TILE_VERT", 57652},
    {"ID_WINDOW_ARRANGE", 57649},
    {"ID_WINDOWLIST", 40002},
    {"ID_HELP_FINDER", 57667},
    {"ID_APP_DAYTIPS", 40101},
    {"ID_APP_SUPPORT", 40102},
    {"ID_APP_UPDATE", 40103},
    {"ID_APP_ABOUT", 57664},
    {"IDR_MENUBAR", 1},
    {"IDR_POPUPMENU", 2},
    {"IDR_STANDARD", 5402},
};

} // namespace

std::span<const StandardIdName> StandardIdNames() {
    return Table;
}

const char* FindStandardIdName(unsigned int id) {
    for (const StandardIdName& row : Table) {
        if (row.id == id)
            return row.name;
    }
    return nullptr;
}

} // namespace talvor::commands
