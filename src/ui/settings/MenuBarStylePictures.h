#pragma once

#include <string>

#include "menubar/model/CompactIconOptions.h"
#include "ui/UiServices.h"
#include "ui/settings/MenuBarStyleTile.h"

namespace quillmeter {

// What the choosers of a style show of it: its name, a sentence, and the picture with the figures of this moment.
namespace MenuBarStylePictures {

std::string title(MenuBarStyle style);
std::string text(MenuBarStyle style);
bool hasRings(MenuBarStyle style);
MenuBarStylePicture picture(MenuBarStyle style, const UiServices& services, const CompactIconOptions& options,
                            double devicePixelRatio);

}  // namespace MenuBarStylePictures

}  // namespace quillmeter
