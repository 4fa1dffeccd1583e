#pragma once

#include <string>

#include <QIcon>
#include <QImage>

namespace quillmeter {

// The program's own icon: a quill as the needle of two ring gauges. Drawn from one description, so that the icon of the
// windows, the installed pictures and the scalable file are the same.
namespace ApplicationIcon {

// Square, with alpha; small sizes leave out what would blur.
QImage image(int pixels);
// For windows; painted when this is called.
QIcon icon();
std::string svg();
// One colour on a square of 16 units, for panels and lists that recolour it.
std::string symbolicSvg();

}  // namespace ApplicationIcon

}  // namespace quillmeter
