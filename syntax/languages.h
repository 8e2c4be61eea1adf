// The colouring languages by name rather than by number, and the questions about a language
// that callers outside the parsers ask: which parser it takes, which file names are its, which
// code a name stands for. Every fact comes from the one language table.
#pragma once

#include "platform/core/win_types.h"

#include <string_view>

namespace talvor::syntax {

// The language codes of CTalvorSyntax::m_nLanguage. 28 and 31 have built-in rules but no name;
// plain text has neither, and codes above it behave like it but for numbers.
enum class Language : UINT {
    Ada = 0,
    Aml = 1,
    Asm = 2,
    Basic = 3,
    Bat = 4,
    Blue = 5,
    Clipper = 6,
    Cobol = 7,
    Cpp = 8,
    CSharp = 9,
    Dataflex = 10,
    Eiffel = 11,
    Fortran = 12,
    Hlbl = 13,
    Html = 14,
    Ini = 15,
    Java = 16,
    Jsp = 17,
    Limbo = 18,
    Lisp = 19,
    Modula2 = 20,
    ObjectPascal = 21,
    Paradox = 22,
    Perl = 23,
    Php = 24,
    Pl1 = 25,
    Progress = 26,
    Python = 27,
    Nameless28 = 28,
    Rexx = 29,
    Ruby = 30,
    Nameless31 = 31,
    Sql = 32,
    Vhdl = 33,
    Xml = 34,
    PlainText = 35,
};

constexpr UINT CodeOf(Language language) {
    return static_cast<UINT>(language);
}

// The highest code a host may select; every code above plain text is plain text too.
inline constexpr UINT PlainTextCode = CodeOf(Language::PlainText);

// True for the languages whose lines go to the tag parser (HTML and XML).
bool UsesTagParser(UINT language);

// The code of the language whose name is exactly name (case matters), or -1. "Plain text" is
// the plain text code.
int LanguageByName(std::string_view name);

// The language a file name suggests by its extension, case ignored; plain text when the
// extension is missing or no language claims it.
UINT LanguageForFileName(std::string_view path);

} // namespace talvor::syntax
