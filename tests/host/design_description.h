// A design frame's command bars as text: every bar with its identity, place and controls, the
// bars of popups below their popup, and which bar is the menu bar. Two frames whose texts are
// equal show the same bars.
#pragma once

#include "host/bars/command_bars.h"

#include <string>

namespace talvor::testing {

inline std::string DescribeControls(const CVTControls* controls, int depth);

inline std::string DescribeBar(const CVTCommandBar* bar, int depth) {
    std::string text = std::string(static_cast<std::size_t>(depth) * 2, ' ') +
                       bar->GetRuntimeClass()->m_lpszClassName + " " +
                       std::to_string(bar->GetBarID()) + " '" + bar->GetTitle().GetString() +
                       "' pos " + std::to_string(bar->GetPosition()) + " visible " +
                       std::to_string(bar->IsVisible()) + "\n";
    return text + (bar->GetControls() ? DescribeControls(bar->GetControls(), depth + 1) : "");
}

inline std::string DescribeControls(const CVTControls* controls, int depth) {
    std::string text;
    for (int i = 0; i < controls->GetCount(); ++i) {
        const CVTControl* c = controls->GetAt(i);
        text += std::string(static_cast<std::size_t>(depth) * 2, ' ') +
                c->GetRuntimeClass()->m_lpszClassName + " " + std::to_string(c->GetID()) + " '" +
                c->GetCaption().GetString() + "'" + (c->GetBeginGroup() ? " group" : "") + "\n";
        if (auto* popup = dynamic_cast<const CVTControlPopup*>(c); popup && popup->GetCommandBar())
            text += DescribeBar(popup->GetCommandBar(), depth + 1);
    }
    return text;
}

inline std::string DescribeBars(const CVTCommandBars* bars) {
    if (!bars)
        return "no bars\n";
    std::string text =
        "large icons " +
        std::to_string(const_cast<CVTCommandBars*>(bars)->GetCommandBarsOptions()->bLargeIcons) +
        "\n";
    for (int i = 0; i < bars->GetCount(); ++i) {
        text += DescribeBar(bars->GetAt(i), 0);
        if (bars->GetAt(i) == bars->GetMenuBar())
            text += "(the menu bar)\n";
        if (bars->GetAt(i)->GetCommandBars() != bars)
            text += "(bound to another set)\n";
    }
    return text;
}

} // namespace talvor::testing
