// Icon sets per command: taken from tool bar bitmaps, scaled on demand, saved and read back.
#include "host/bars/image_manager.h"

#include "platform/app/resource_module.h"
#include "platform/files/archive.h"

#include <cstdlib>

const CRuntimeClass CVTImageManager::classCVTImageManager =
    MakeRuntimeClass<CVTImageManager>("CVTImageManager", 1, &CObject::classCObject);

namespace {

constexpr WORD ImagesSchema = 1;
// Icons larger than this are refused as damaged when read.
constexpr LONG MaxIconSide = 256;

// Nearest-neighbour scaling keeps the hard edges of small tool bar icons.
CVTImageManagerIcon Scaled(const CVTImageManagerIcon& from, int width) {
    CVTImageManagerIcon icon;
    icon.width = width;
    icon.height = from.width > 0 ? from.height * width / from.width : width;
    if (icon.height < 1)
        icon.height = 1;
    icon.pixels.resize(static_cast<std::size_t>(icon.width) *
                       static_cast<std::size_t>(icon.height));
    for (int y = 0; y < icon.height; ++y) {
        const int sy = y * from.height / icon.height;
        for (int x = 0; x < icon.width; ++x) {
            const int sx = x * from.width / icon.width;
            icon.pixels[static_cast<std::size_t>(y * icon.width + x)] =
                from.pixels[static_cast<std::size_t>(sy * from.width + sx)];
        }
    }
    return icon;
}

} // namespace

CVTImageManagerIcon* CVTImageManagerIconSet::GetIcon(int width, BOOL create) {
    auto it = m_icons.find(width);
    if (it != m_icons.end())
        return &it->second;
    if (!create || m_icons.empty() || width <= 0 || width > MaxIconSide)
        return nullptr;
    const CVTImageManagerIcon* nearest = nullptr;
    for (const auto& [w, icon] : m_icons) {
        if (nearest == nullptr || std::abs(w - width) < std::abs(nearest->width - width))
            nearest = &icon;
    }
    return &m_icons.emplace(width, Scaled(*nearest, width)).first->second;
}

void CVTImageManagerIconSet::SetIcon(CVTImageManagerIcon icon) {
    const int width = icon.width;
    m_icons[width] = std::move(icon);
}

BOOL CVTImageManager::SetIcons(UINT id, int) {
    HINSTANCE module = AfxGetResourceHandle();
    if (module == nullptr)
        return FALSE;
    const talvor::platform::ToolBarResource* toolBar = module->FindToolBar(id);
    const talvor::platform::BitmapResource* bitmap = module->FindBitmap(id);
    if (toolBar == nullptr || bitmap == nullptr)
        return FALSE;
    const int w = toolBar->buttonWidth;
    const int h = toolBar->buttonHeight;
    // The mask colour as a pixel: COLORREF is 0x00BBGGRR, pixels are 0x00RRGGBB.
    const std::uint32_t mask =
        ((m_clrMask & 0xFF) << 16) | (m_clrMask & 0xFF00) | ((m_clrMask >> 16) & 0xFF);
    int index = 0;
    for (UINT command : toolBar->ids) {
        if (command == 0)
            continue; // separators have no image
        const int left = index * w;
        ++index;
        if (w <= 0 || h <= 0 || left + w > bitmap->width || h > bitmap->height)
            continue;
        CVTImageManagerIcon icon;
        icon.width = w;
        icon.height = h;
        icon.pixels.resize(static_cast<std::size_t>(w) * static_cast<std::size_t>(h));
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w; ++x) {
                std::uint32_t p =
                    bitmap->pixels[static_cast<std::size_t>(y * bitmap->width + left + x)] &
                    0xFFFFFFu;
                icon.pixels[static_cast<std::size_t>(y * w + x)] =
                    p == mask ? CVTImageManagerIcon::Transparent : p;
            }
        }
        SetIcon(command, std::move(icon));
    }
    return TRUE;
}

void CVTImageManager::SetIcon(UINT commandId, CVTImageManagerIcon icon) {
    auto& set = m_images[commandId];
    if (!set)
        set = std::make_unique<CVTImageManagerIconSet>(commandId);
    set->SetIcon(std::move(icon));
}

CVTImageManagerIconSet* CVTImageManager::GetIconSet(UINT commandId) const {
    auto it = m_images.find(commandId);
    return it == m_images.end() ? nullptr : it->second.get();
}

void CVTImageManager::Serialize(CArchive& ar, BOOL withIcons) {
    if (ar.IsStoring()) {
        ar << ImagesSchema << static_cast<DWORD>(m_clrMask) << static_cast<LONG>(withIcons ? 1 : 0);
        ar.WriteCount(m_images.size());
        for (const auto& [id, set] : m_images) {
            ar << static_cast<DWORD>(id);
            ar.WriteCount(set->m_icons.size());
            for (const auto& [width, icon] : set->m_icons) {
                ar << static_cast<LONG>(icon.width) << static_cast<LONG>(icon.height);
                if (withIcons)
                    ar.Write(icon.pixels.data(), static_cast<UINT>(icon.pixels.size() * 4));
            }
        }
        return;
    }
    WORD schema = 0;
    DWORD mask = 0;
    LONG hasPixels = 0;
    ar >> schema;
    if (schema != ImagesSchema)
        AfxThrowArchiveException(CArchiveException::badSchema);
    ar >> mask >> hasPixels;
    std::map<UINT, std::unique_ptr<CVTImageManagerIconSet>> images;
    const DWORD_PTR setCount = ar.ReadCount();
    for (DWORD_PTR i = 0; i < setCount; ++i) {
        DWORD id = 0;
        ar >> id;
        auto set = std::make_unique<CVTImageManagerIconSet>(id);
        const DWORD_PTR iconCount = ar.ReadCount();
        for (DWORD_PTR j = 0; j < iconCount; ++j) {
            LONG width = 0, height = 0;
            ar >> width >> height;
            if (width < 1 || height < 1 || width > MaxIconSide || height > MaxIconSide)
                AfxThrowArchiveException(CArchiveException::genericException);
            CVTImageManagerIcon icon;
            icon.width = width;
            icon.height = height;
            icon.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                               0);
            if (hasPixels) {
                const UINT bytes = static_cast<UINT>(icon.pixels.size() * 4);
                if (ar.Read(icon.pixels.data(), bytes) != bytes)
                    AfxThrowArchiveException(CArchiveException::endOfFile);
            }
            set->SetIcon(std::move(icon));
        }
        images[id] = std::move(set);
    }
    m_clrMask = mask;
    m_images.swap(images);
}
