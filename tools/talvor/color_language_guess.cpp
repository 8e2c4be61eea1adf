// File extensions of the colouring languages.
#include "tools/talvor/color_language_guess.h"

#include <cctype>

namespace talvor::tool {
namespace {

struct Extension {
    const char* extension;
    UINT language;
};

const Extension Extensions[] = {
    {"adb", 0},   {"ads", 0},  {"ada", 0},   {"aml", 1},  {"asm", 2},   {"s", 2},     {"inc", 2},
    {"bas", 3},   {"cls", 3},  {"frm", 3},   {"vbs", 3},  {"vb", 3},    {"bat", 4},   {"cmd", 4},
    {"blu", 5},   {"prg", 6},  {"ch", 6},    {"cbl", 7},  {"cob", 7},   {"cpy", 7},   {"c", 8},
    {"cc", 8},    {"cpp", 8},  {"cxx", 8},   {"h", 8},    {"hh", 8},    {"hpp", 8},   {"hxx", 8},
    {"cs", 9},    {"pkg", 10}, {"wo", 10},   {"vw", 10},  {"e", 11},    {"f", 12},    {"for", 12},
    {"f77", 12},  {"f90", 12}, {"f95", 12},  {"hlb", 13}, {"htm", 14},  {"html", 14}, {"ini", 15},
    {"conf", 15}, {"cfg", 15}, {"java", 16}, {"jsp", 17}, {"b", 18},    {"lisp", 19}, {"lsp", 19},
    {"el", 19},   {"cl", 19},  {"mod", 20},  {"def", 20}, {"pas", 21},  {"dpr", 21},  {"pp", 21},
    {"ssl", 22},  {"fsl", 22}, {"pl", 23},   {"pm", 23},  {"php", 24},  {"pli", 25},  {"pl1", 25},
    {"p", 26},    {"w", 26},   {"i", 26},    {"py", 27},  {"rexx", 29}, {"rex", 29},  {"rb", 30},
    {"sql", 32},  {"vhd", 33}, {"vhdl", 33}, {"xml", 34}, {"xsd", 34},  {"xsl", 34},  {"pom", 34},
};

} // namespace

UINT GuessLanguageFromFileName(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string::npos || dot == 0)
        return 35;
    std::string extension = name.substr(dot + 1);
    for (char& c : extension)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const Extension& e : Extensions) {
        if (extension == e.extension)
            return e.language;
    }
    return 35;
}

} // namespace talvor::tool
