#pragma once

#include <QImage>

namespace quillmeter {

// The picture with at most 256 colours, chosen to suit it: pictures of an interface need few, and their files are less
// than half as large. Opaque pictures only.
QImage indexedImage(const QImage& image);

}  // namespace quillmeter
