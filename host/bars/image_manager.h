// Images of the commands: an icon set per command id, each set holding the icon in one or more
// widths. Icons come from a tool bar resource and its bitmap, where the mask colour marks the
// pixels that are transparent.
#pragma once

#include "host/bars/bar_object.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

class CArchive;

// Pixels 0x00RRGGBB row by row; transparent pixels have the top byte 0xFF.
struct CVTImageManagerIcon {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
    static constexpr std::uint32_t Transparent = 0xFF000000u;
};

class CVTImageManagerIconSet {
public:
    explicit CVTImageManagerIconSet(UINT id = 0) : m_nId(id) {}
    UINT GetID() const { return m_nId; }
    // The icon of that width, or null. With create nonzero a missing width is made by scaling
    // the nearest width there is (null only when the set holds no icon at all).
    CVTImageManagerIcon* GetIcon(int width, BOOL create = FALSE);
    void SetIcon(CVTImageManagerIcon icon);
    const std::map<int, CVTImageManagerIcon>& GetIcons() const { return m_icons; }

private:
    friend class CVTImageManager;
    UINT m_nId;
    std::map<int, CVTImageManagerIcon> m_icons; // by width
};

class CVTImageManager : public CVTCmdTarget {
public:
    COLORREF GetMaskColor() const { return m_clrMask; }
    void SetMaskColor(COLORREF colour) { m_clrMask = colour; }
    // Takes an icon per button of the tool bar resource id from its bitmap (resource of the
    // same id), the mask colour made transparent. state is kept for the caller's sake (0 is
    // the normal state). FALSE when the resource source lacks the tool bar or the bitmap.
    BOOL SetIcons(UINT id, int state = 0);
    // Gives a command an icon of its own (replacing one of that width).
    void SetIcon(UINT commandId, CVTImageManagerIcon icon);
    // The icon set of a command, or null.
    CVTImageManagerIconSet* GetIconSet(UINT commandId) const;
    // All sets, by command id.
    const std::map<UINT, std::unique_ptr<CVTImageManagerIconSet>>& GetImages() const {
        return m_images;
    }
    void RemoveAll() { m_images.clear(); }

    // Mask colour and every icon set. Loading replaces the whole content only after the
    // stream has been read; a stream that ends early leaves the manager as it was.
    void Serialize(CArchive& ar, BOOL withIcons);
    void Serialize(CArchive& ar) override { Serialize(ar, TRUE); }
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTImageManager; }
    static const CRuntimeClass classCVTImageManager;

private:
    COLORREF m_clrMask = 0x00C0C0C0;
    std::map<UINT, std::unique_ptr<CVTImageManagerIconSet>> m_images;
};
