#pragma once

#include <string_view>
#include <vector>

class QColor;
class QImage;
class QPainter;
class QRectF;

namespace quillmeter {

// Every symbol of the program, drawn by its own glyphs; a name that has none is drawn as a neutral glyph. Stateless,
// for the main thread and for threads that paint images. Needs QtGui, but no running application.
namespace SymbolPainter {

bool knows(std::string_view name);
// In no particular order.
std::vector<std::string_view> names();

// Paints the symbol into the box, centred, as large as its shorter edge lets it be, on whole device pixels.
void paint(QPainter& painter, std::string_view name, const QRectF& box, const QColor& color);

// A square image of `size` points edge length, transparent around the symbol.
QImage image(std::string_view name, double size, const QColor& color, double devicePixelRatio = 1);

}  // namespace SymbolPainter

}  // namespace quillmeter
