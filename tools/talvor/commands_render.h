// Pictures of command bar designs: each bar as a strip of its buttons with icons and captions.
#pragma once

#include <string>

class CVTCommandBars;
class CVTControls;

namespace talvor::tool {

// Draws every bar of bars (the menu bar with its menus opened below it), then the pool, and
// writes the picture as PNG; false with a message when the file can't be written.
bool RenderCommandBars(CVTCommandBars* bars, CVTControls* pool, const std::string& path,
                       std::string& error);

} // namespace talvor::tool
