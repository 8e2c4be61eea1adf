// CVPState: the maker library's base of objects whose state a host saves and restores through
// an archive (window layouts, editor options).
#pragma once

class CArchive;

class CVPState {
public:
    virtual ~CVPState() = default;
    // Stores or loads the object's state by the archive's direction; the base keeps none.
    virtual void SerializeState(CArchive&) {}
};
