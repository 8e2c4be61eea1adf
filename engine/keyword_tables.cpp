// The keyword members: words of the script language from the string resources of TalvorRes,
// the fixed pieces of the command handler built from them, and the reserved words of the
// host's profile.
#include "engine/script_text_disposal.h"

#include "platform/app/profile.h"
#include "platform/app/profile_sections.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

#include <initializer_list>

namespace {

constexpr UINT FlowKeywordsId = IDS_FLOW_KEYWORDS;
constexpr UINT ExitKeywordsId = IDS_EXIT_KEYWORDS;
constexpr UINT FormNamesId = IDS_FORM_NAMES;
constexpr UINT ProcedureKeywordsId = IDS_PROCEDURE_KEYWORDS;

constexpr const char* KeyWordsSection = talvor::platform::KeywordsSection;
constexpr const char* KeyWordsEntry = "_BASIC";
constexpr const char* DefaultKeyWords =
    " Alias,And,Any,As,Base,Boolean,Byref,Byte,Byval,Call,Case,Close,Compare,Const,Currency,"
    "Data,Date,Declare,Defbool,Defbyte,Defcur,Defdate,Defdbl,Defdec,Defint,Deflng,Defobj,"
    "Defsng,Defstr,Defvar,Dim,Do,Double,Each,Else,Elseif,End,Enum,Eqv,Erase,Error,Event,Exit,"
    "Explicit,False,For,Function,Get,Global,Gosub,Goto,If,IIf,Imp,Implements,In,Integer,Is,"
    "Let,Lib,Line,Lock,Long,Loop,Lset,New,Next,Not,Object,On,Open,Option,Optional,Or,Preserve,"
    "Print,Private,Property,Public,Put,Raiseevent,Redim,Resume,Return,Rset,Select,Set,Single,"
    "Static,Stop,String,Sub,Then,To,True,Type,Ubound,Unload,Unlock,Var,Variant,Wend,While,"
    "With,Write,Xor,#if,#End,#else,";

// Assigns the lines of string id, in order, to members. Stops at the first empty line or at
// the end of the text; lines past the members are ignored. Only blanks are trimmed, so any
// other white space stays part of the word.
void ReadLineList(UINT id, std::initializer_list<CString*> members) {
    CString text;
    if (!text.LoadString(id))
        return;
    int lineNumber = 0;
    for (CString* member : members) {
        CString line;
        if (!AfxExtractSubString(line, text, lineNumber++, '\n') || line.IsEmpty())
            return;
        line.Trim(' ');
        *member = line;
    }
}

} // namespace

void CTalvorScriptTextDisposal::InitKeyWords() {
    {
        talvor::resources::ResourceGuard guard;
        ReadLineList(FlowKeywordsId, {&m_strIf, &m_strThen, &m_strElse, &m_strEndIf, &m_strDoWhile,
                                      &m_strLoop, &m_strFor, &m_strTo, &m_strNext, &m_strLoopWhile,
                                      &m_strDo, &m_strExit, &m_strCall, &m_strSet, &m_strSelectCase,
                                      &m_strCase, &m_strCaseElse, &m_strEndSelect});
        ReadLineList(ExitKeywordsId, {&m_strExitDo, &m_strExitFor, &m_strExitFunction,
                                      &m_strExitProperty, &m_strExitSub});
        ReadLineList(FormNamesId, {&m_strSystemFuncName, &m_strSystemMe, &m_strSystemApplication,
                                   &m_strSystemScreen});
        ReadLineList(ProcedureKeywordsId,
                     {&m_strSub, &m_strEndSub, &m_strFunction, &m_strEndFunction, &m_strDim});
    }

    m_strTrue = "True";
    m_strFalse = "False";

    // The fixed pieces of the command handler function ScriptCmdMsg(nID, bCommand).
    m_strCmdFuncHead = m_strFunction + " " + "ScriptCmdMsg" + "(" + "nID, bCommand" + ")" + "\r\n";
    m_strCmdIf = m_strIf + " " + "bCommand" + " " + m_strThen + "\r\n";
    m_strCmdSelectHead =
        CString("ScriptCmdMsg") + " = 1" + "\r\n" + m_strSelectCase + " " + "nID" + "\r\n";
    m_strCmdSelectTail =
        m_strCaseElse + " " + "ScriptCmdMsg" + " = 0" + "\r\n" + m_strEndSelect + "\r\n";
    m_strUISelectHead = m_strDim + " " + "SystemUIEnable" + ", " + "SystemUICheck" + "\r\n" +
                        "SystemUIEnable" + " = 0" + "\r\n" + "SystemUICheck" + " = 0" + "\r\n" +
                        m_strSelectCase + " " + "nID" + "\r\n";
    m_strUISelectTail = m_strCaseElse + "\r\n" + "ScriptCmdMsg" + " = -1" + "\r\n" + m_strExit +
                        " " + m_strFunction + "\r\n" + m_strEndSelect + "\r\n" + m_strIf + " " +
                        "SystemUIEnable" + " <> 0 " + m_strThen + "\r\n" + "SystemUIEnable" +
                        " = 1" + "\r\n" + m_strEndIf + "\r\n" + m_strIf + " " + "SystemUICheck" +
                        " <> 0 " + m_strThen + "\r\n" + "SystemUICheck" + " = 1" + "\r\n" +
                        m_strEndIf + "\r\n" + "ScriptCmdMsg" + " = " + "SystemUICheck" + " * 2 + " +
                        "SystemUIEnable" + "\r\n";

    // Reserved words: comma-separated, empty pieces skipped, pieces kept as they stand (the
    // default's first word keeps its leading blank).
    CString words = AfxGetApp()->GetProfileString(KeyWordsSection, KeyWordsEntry, DefaultKeyWords);
    int position = 0;
    for (CString word = words.Tokenize(",", position); position >= 0;
         word = words.Tokenize(",", position))
        m_arrKeyWords.Add(word);
}
