#pragma once

class QWidget;

namespace quillmeter {

// What the popover needs of the window system beyond what the toolkit offers.
namespace WindowSystem {

// Whether windows may have transparent corners: Wayland always composes, an X server while a compositor runs.
bool composes();
// Whether a window can choose its place.
bool placesWindows();
// Lets a window that is shown on a click in another program's panel take the focus: managers that guard against
// stolen focus know of no input to us at that moment and take the word of a panel only.
void takeFocus(QWidget& window);

}  // namespace WindowSystem

}  // namespace quillmeter
