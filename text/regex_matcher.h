// The matcher behind the regular expression facade: one object of the process that owns the
// regular expression engine object. Included by text/regular_expressions.h.
#pragma once

namespace talvor::platform {
class RegExpEngine;
}

// The matcher singleton: owns the regular expression engine object, whose Pattern, Global
// and IgnoreCase every facade call sets before it uses them, so nothing carries over from one
// call to the next. Compiled patterns are kept in a bounded cache behind it.
class CTalvorRegExp {
public:
    virtual ~CTalvorRegExp();
    // The one matcher of the process, built on first use. It is never destroyed, so a call at
    // process end (from another object's destructor) still works. After TVPfxRegExpRelease
    // the next call builds a new engine object.
    static CTalvorRegExp& GetRegExp();
    // The engine object; null only between TVPfxRegExpRelease and the next GetRegExp().
    talvor::platform::RegExpEngine* Engine() const { return m_pRegExp; }
    // Gives up the engine object and the cached patterns. Calling it again does nothing.
    void Release();

private:
    CTalvorRegExp();
    CTalvorRegExp(const CTalvorRegExp&) = delete;
    CTalvorRegExp& operator=(const CTalvorRegExp&) = delete;

    talvor::platform::RegExpEngine* m_pRegExp = nullptr;
};

// Gives up the engine object and the compiled patterns. The host calls it once at the end.
// A later facade call does not fail: it builds a new engine object, as the first call did; a
// second release does nothing.
void TVPfxRegExpRelease();
