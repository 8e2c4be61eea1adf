// Pictures of command bar designs. Each bar is drawn as a strip of its controls (icon, then
// caption without mnemonics and without the shortcut behind a tab); the menus of the menu bar
// are drawn opened below it, and the pool is listed by category at the end.
#include "tools/talvor/commands_render.h"

#include "host/bars/command_bars.h"
#include "platform/draw/bitmap.h"
#include "platform/draw/dc.h"
#include "platform/draw/font.h"
#include "platform/draw/png_file.h"

#include <algorithm>
#include <map>
#include <vector>

namespace talvor::tool {
namespace {

constexpr int Margin = 8;
constexpr int IconSize = 16;
constexpr int RowHeight = 24;
constexpr int CanvasWidth = 960;
constexpr COLORREF Background = 0x00F0F0F0;
constexpr COLORREF BarFace = 0x00FFFFFF;
constexpr COLORREF BarEdge = 0x00A0A0A0;
constexpr COLORREF TitleText = 0x00606060;
constexpr COLORREF CaptionText = 0x00000000;
constexpr COLORREF HiddenText = 0x00A0A0A0;

CString Shown(const CVTControl* control) {
    CString caption = CVTPaintManager::StripMnemonics(control->GetCaption());
    // A tool bar button without a caption of its own shows the caption of its command
    // elsewhere in the design (the menu item of the same id).
    CVTControls* list = control->GetControls();
    CVTCommandBars* bars = list ? list->GetCommandBars() : nullptr;
    if (caption.IsEmpty() && bars != nullptr) {
        for (int i = 0; i < bars->GetCount() && caption.IsEmpty(); ++i) {
            const CVTControls* controls = bars->GetAt(i)->GetControls();
            const CVTControl* other = controls ? controls->FindControl(control->GetID()) : nullptr;
            if (other != nullptr && other != control)
                caption = CVTPaintManager::StripMnemonics(other->GetCaption());
        }
    }
    const int tab = caption.Find('\t');
    if (tab >= 0)
        caption = caption.Left(tab);
    if (caption.IsEmpty())
        caption.Format("#%ld", control->GetID());
    return caption;
}

// Draws or, with dc null, only measures.
class Painter {
public:
    Painter(CDC* dc, CVTImageManager* images) : m_dc(dc), m_images(images) {}

    int TextWidth(const CString& text) const {
        return m_measure ? static_cast<int>(m_measure->GetTextExtent(text).cx)
                         : text.GetLength() * 7;
    }
    void SetMeasure(CDC* measure) { m_measure = measure; }

    void Text(int x, int y, const CString& text, COLORREF colour) {
        if (m_dc == nullptr)
            return;
        m_dc->SetTextColor(colour);
        m_dc->TextOut(x, y, text);
    }

    void Icon(int x, int y, const CVTControl* control) {
        const long id = control->GetIconId() != 0 ? control->GetIconId() : control->GetID();
        CVTImageManagerIconSet* set =
            id > 0 && m_images ? m_images->GetIconSet(static_cast<UINT>(id)) : nullptr;
        CVTImageManagerIcon* icon = set ? set->GetIcon(IconSize, TRUE) : nullptr;
        if (icon == nullptr || m_dc == nullptr)
            return;
        for (int row = 0; row < icon->height; ++row) {
            for (int column = 0; column < icon->width; ++column) {
                const std::uint32_t p =
                    icon->pixels[static_cast<std::size_t>(row * icon->width + column)];
                if (p == CVTImageManagerIcon::Transparent)
                    continue;
                m_dc->SetPixel(x + column, y + row, platform::ColorFromPixel(p));
            }
        }
    }

    // A horizontal strip of the controls of a bar; gives the height used.
    int Strip(int y, const CVTCommandBar* bar, const char* label) {
        CString title;
        title.Format("%s \"%s\"  id %u%s", label, bar->GetTitle().GetString(), bar->GetBarID(),
                     bar->GetBarIDName().IsEmpty() ? ""
                                                   : (" " + bar->GetBarIDName().Str()).c_str());
        Text(Margin, y, title, TitleText);
        y += 18;
        if (m_dc != nullptr) {
            m_dc->FillSolidRect(Margin, y, CanvasWidth - 2 * Margin, RowHeight, BarFace);
            m_dc->Draw3dRect(Margin, y, CanvasWidth - 2 * Margin, RowHeight, BarEdge, BarEdge);
        }
        int x = Margin + 4;
        for (int i = 0; i < bar->GetControlCount(); ++i) {
            const CVTControl* control = bar->GetControl(i);
            if (control->GetBeginGroup() && i > 0) {
                if (m_dc != nullptr)
                    m_dc->FillSolidRect(x + 2, y + 4, 1, RowHeight - 8, BarEdge);
                x += 6;
            }
            const bool hasIcon = HasIcon(control);
            if (hasIcon) {
                Icon(x, y + (RowHeight - IconSize) / 2, control);
                x += IconSize + 3;
            }
            const bool isPopup = control->GetType() == vtControlPopup;
            // Tool bar buttons with an icon show the icon alone, as tool bars do.
            if (!hasIcon || isPopup || bar->GetRuntimeClass() == &CVTMenuBar::classCVTMenuBar) {
                CString caption = Shown(control);
                if (isPopup && bar->GetRuntimeClass() != &CVTMenuBar::classCVTMenuBar)
                    caption += " >";
                Text(x, y + 5, caption, control->IsVisible() ? CaptionText : HiddenText);
                x += TextWidth(caption);
            }
            x += 10;
        }
        return 18 + RowHeight + 10;
    }

    // The controls of a list in a column: icon, caption, id name; popups one level deep.
    int Column(int x, int y, const CString& heading, const std::vector<const CVTControl*>& controls,
               int width) {
        Text(x, y, heading, TitleText);
        int row = y + 18;
        if (m_dc != nullptr) {
            const int height = static_cast<int>(controls.size()) * 20 + 6;
            m_dc->FillSolidRect(x, row, width, height, BarFace);
            m_dc->Draw3dRect(x, row, width, height, BarEdge, BarEdge);
        }
        row += 3;
        for (const CVTControl* control : controls) {
            Icon(x + 4, row + 2, control);
            CString caption = Shown(control);
            if (control->GetType() == vtControlPopup)
                caption += " >";
            Text(x + IconSize + 10, row + 2, caption,
                 control->IsVisible() ? CaptionText : HiddenText);
            row += 20;
        }
        return row - y + 10;
    }

private:
    bool HasIcon(const CVTControl* control) const {
        const long id = control->GetIconId() != 0 ? control->GetIconId() : control->GetID();
        return id > 0 && m_images && m_images->GetIconSet(static_cast<UINT>(id)) != nullptr;
    }

    CDC* m_dc;
    CDC* m_measure = nullptr;
    CVTImageManager* m_images;
};

// Lays out the whole picture; gives the height.
int Layout(Painter& painter, CVTCommandBars* bars, CVTControls* pool) {
    int y = Margin;
    constexpr int ColumnWidth = 180;
    for (int i = 0; i < bars->GetCount(); ++i) {
        CVTCommandBar* bar = bars->GetAt(i);
        const bool menu = bar == bars->GetMenuBar();
        y += painter.Strip(y, bar, menu ? "menu bar" : "bar");
        if (!menu)
            continue;
        // The menus opened, side by side, wrapping at the canvas's edge.
        int x = Margin, tallest = 0;
        for (int j = 0; j < bar->GetControlCount(); ++j) {
            auto* popup = dynamic_cast<const CVTControlPopup*>(bar->GetControl(j));
            if (popup == nullptr || popup->GetCommandBar() == nullptr)
                continue;
            if (x + ColumnWidth > CanvasWidth - Margin) {
                x = Margin;
                y += tallest;
                tallest = 0;
            }
            std::vector<const CVTControl*> items;
            for (int k = 0; k < popup->GetCommandBar()->GetControlCount(); ++k)
                items.push_back(popup->GetCommandBar()->GetControl(k));
            tallest = std::max(tallest, painter.Column(x, y, Shown(popup), items, ColumnWidth - 8));
            x += ColumnWidth;
        }
        y += tallest;
    }
    if (pool != nullptr && pool->GetCount() > 0) {
        std::vector<CString> order;
        std::map<std::string, std::vector<const CVTControl*>> byCategory;
        for (int i = 0; i < pool->GetCount(); ++i) {
            const CString category = pool->GetAt(i)->GetCategory();
            if (byCategory.find(category.Str()) == byCategory.end())
                order.push_back(category);
            byCategory[category.Str()].push_back(pool->GetAt(i));
        }
        int x = Margin, tallest = 0;
        for (const CString& category : order) {
            if (x + ColumnWidth > CanvasWidth - Margin) {
                x = Margin;
                y += tallest;
                tallest = 0;
            }
            CString heading = "pool: ";
            heading += category.IsEmpty() ? CString("(no category)") : category;
            tallest = std::max(tallest, painter.Column(x, y, heading, byCategory[category.Str()],
                                                       ColumnWidth - 8));
            x += ColumnWidth;
        }
        y += tallest;
    }
    return y + Margin;
}

} // namespace

bool RenderCommandBars(CVTCommandBars* bars, CVTControls* pool, const std::string& path,
                       std::string& error) {
    CFont font;
    font.CreatePointFont(90, "DejaVu Sans");
    CDC measure;
    measure.CreateCompatibleDC(nullptr);
    CBitmap scratch;
    scratch.CreateFilledBitmap(1, 1, Background);
    measure.SelectObject(&scratch);
    measure.SelectObject(&font);
    Painter sizer(nullptr, bars->GetImageManager());
    sizer.SetMeasure(&measure);
    const int height = std::min(Layout(sizer, bars, pool), 16000);

    CBitmap bitmap;
    if (!bitmap.CreateFilledBitmap(CanvasWidth, height, Background)) {
        error = "commands render: can't make a picture of " + std::to_string(height) + " rows";
        return false;
    }
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    dc.SelectObject(&bitmap);
    dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    Painter painter(&dc, bars->GetImageManager());
    painter.SetMeasure(&dc);
    Layout(painter, bars, pool);
    return platform::WritePng(bitmap, path, error);
}

} // namespace talvor::tool
