// Ids of the strings, menus and tool bars of TalvorRes. The resource script includes this file
// and so do the code and tests that load them, so each id is written once. The ids are
// preprocessor names because resource scripts know no other kind.
#pragma once

// Words of the script language, one role per line.
#define IDS_FLOW_KEYWORDS 8514
#define IDS_EXIT_KEYWORDS 8515
#define IDS_FORM_NAMES 8518
#define IDS_PROCEDURE_KEYWORDS 8574

// Titles of the code tree.
#define IDS_IF_TITLES 8509
#define IDS_LOOP_TITLES 8510
#define IDS_FOR_TITLES 8511
#define IDS_EXIT_TITLES 8512
#define IDS_CALL_TITLES 8519

// Messages of the name check, one line per kind of error.
#define IDS_NAME_ERRORS 8473

// Editor.
#define IDS_RICH_EDIT_MISSING 8390
#define IDS_UNDO_ACTIONS 8399
#define IDS_REDO_ACTIONS 8400
#define IDR_EDITOR_CONTEXT_MENU 5428

// Commands of the editor's context menu.
#define ID_EDIT_SELECT_ALL 57642
#define ID_EDIT_MOVERIGHT 6000
#define ID_EDIT_MOVELEFT 6001
#define ID_EDIT_COMMENT 6003
#define ID_EDIT_UNCOMMENT 6004
#define ID_EDIT_UCASE 6007
#define ID_EDIT_LCASE 6008
#define ID_EDIT_INSERTFILE 6010
#define ID_EDIT_INVERT 6011
#define ID_EDIT_CAPITALIZE 6012
#define ID_EDIT_SENTANCECASE 6018

// Language and code page picker.
#define IDS_DEFAULT_LANGUAGE 8378
#define IDS_SYSTEM_DEFAULT_LANGUAGE 8380
#define IDS_USER_DEFAULT_LANGUAGE 8381

// Command designer.
#define IDS_REPLACE_EXISTING_FILE 8332
#define IDS_MENUS_CATEGORY 8334
#define IDS_MENU_BAR_TITLE 8353
#define IDS_STANDARD_BAR_TITLE 5402
#define IDR_STANDARD_TOOLBAR 5402
#define IDR_STANDARD_ICONS 5404
#define IDR_DESIGNER_MENU 5416

// Standard commands of the designer's menu and tool bar.
#define ID_FILE_NEW 57600
#define ID_FILE_OPEN 57601
#define ID_FILE_CLOSE 57602
#define ID_FILE_SAVE 57603
#define ID_FILE_SAVE_AS 57604
#define ID_FILE_PRINT 57607
#define ID_FILE_PRINT_PREVIEW 57609
#define ID_APP_EXIT 57665
#define ID_EDIT_UNDO 57643
#define ID_EDIT_REDO 57644
#define ID_EDIT_CUT 57635
#define ID_EDIT_COPY 57634
#define ID_EDIT_PASTE 57637
#define ID_EDIT_CLEAR 57632
#define ID_EDIT_FIND 57636
#define ID_VIEW_TOOLBAR 59392
#define ID_VIEW_STATUS_BAR 59393
#define ID_VIEW_FULLSCREEN 40006
#define ID_CUSTOMIZE 40003
#define ID_WINDOW_CASCADE 57650
#define ID_WINDOW_TILE_HORZ 57651
#define ID_WINDOW_TILE_VERT 57652
#define ID_WINDOW_ARRANGE 57649
#define ID_WINDOW_CLOSEALL 40008
#define ID_HELP_FINDER 57667
#define ID_APP_DAYTIPS 40101
#define ID_APP_ABOUT 57664

// Undo history: the actions, one per line, and the objects they act on.
#define IDS_UNDO_ACTION_NAMES 8405
#define IDS_OBJECT_TOOL_BAR 8111
#define IDS_OBJECT_MENU 8124
#define IDS_OBJECT_COMMAND 8153
#define IDS_OBJECT_PROPERTY 8233
#define IDS_OBJECT_CONTROL 8234
#define IDS_OBJECT_EVENT 8235
#define IDS_OBJECT_SCRIPT 8236
#define IDS_OBJECT_CONTROLS 8237
#define IDS_OBJECT_FORM 8238
#define IDS_OBJECT_TAB_ORDER 8239
#define IDS_OBJECT_ALIAS 8240
#define IDS_OBJECT_GROUP 8245
#define IDS_OBJECT_LABEL 5418
#define IDS_OBJECT_BUTTON 5424
#define IDS_OBJECT_CHECK_BOX 5425
#define IDS_OBJECT_TEXT_BOX 5426
#define IDS_OBJECT_PICTURE 5427
