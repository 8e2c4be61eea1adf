// Sections of the host application's profile in which the library finds its settings. The
// host's tools write them; the library and its tests name them only through these constants.
#pragma once

namespace talvor::platform {

// Keyword lists by language name, and the engine's reserved words under "_BASIC".
inline constexpr const char* KeywordsSection = "MainWnd\\DockingPaneLayouts\\PaneMacro\\Keywords";
// Colouring rules of a language: the section name is followed by the language's name, in the
// long form first and the short form second.
inline constexpr const char* ParseRuleSection =
    "MainWnd\\DockingPaneLayouts\\PaneMacro\\icrEdit__ParseRule";
inline constexpr const char* ParseRuleSectionShort = "icrEdit__ParseRule";
// The editor's font and colours, the section name followed by the language's name.
inline constexpr const char* EditorFontSection =
    "MainWnd\\DockingPaneLayouts\\PaneMacro\\icrEdit_Font";
inline constexpr const char* EditorColorSection =
    "MainWnd\\DockingPaneLayouts\\PaneMacro\\icrEdit_Color";
// The last filter chosen when a file is inserted, and the file type list of that dialog.
inline constexpr const char* InsertFileSection =
    "MainWnd\\DockingPaneLayouts\\PaneMacro\\InsertFile";
inline constexpr const char* FileTypesSection = "FileTypes";

} // namespace talvor::platform
